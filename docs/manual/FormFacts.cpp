#include "manual/FormFacts.h"

#include <algorithm>

#include "manual/OpenForms.h"
#include "manual/Spread.h"
#include "widgets/ControlText.h"
#include "widgets/Controls.h"

namespace manual {
namespace {

// What one slider of a panel shows over all that the others can be set to; empty where it hangs on none of
// them.
std::string RangeWithOthers(OpenForms& forms, const ControlGroup& group) {
  vc::Session& session = forms.session;
  vc::Slider* slider = vc::SliderIn(group.controls.front());
  if (slider == nullptr || group.controls.size() > 1 || !session.panels.IsOpen()) return {};
  const vc::SystemSettings before = session.settings;
  bool hangs = false;
  std::string ranges;
  const auto boxes = vc::TextsOf(*slider);
  for (const vc::TextBox* box : boxes) {
    const auto spread = SpreadOf(*slider, *box);
    session.settings = before;
    session.panels.Refresh();
    if (!spread) return {};
    hangs = hangs || spread->hangs;
    const std::string caption =
        boxes.size() > 1 && !box->core.Caption().empty() ? box->core.Caption() + " " : "";
    ranges += (ranges.empty() ? "" : "; ") + caption + spread->lower + " to " + spread->upper +
              (box->unit.empty() ? "" : " " + box->unit);
  }
  return hangs ? ranges + ", as other settings here leave it" : std::string{};
}

FormFacts FactsOf(OpenForms& forms, const vc::Form& form) {
  FormFacts facts{.name = form.name, .caption = form.Caption()};
  for (const ControlGroup& group : GroupsOf(form)) {
    FormFacts::Row row{{}, FactsOf(group)};
    for (const vc::AnyControl& control : group.controls) {
      const std::string& name = vc::CoreOf(control).name;
      if (row.names.empty() || row.names.back() != name) row.names.push_back(name);
    }
    const std::string range = RangeWithOthers(forms, group);
    if (!range.empty()) row.facts.range = range;
    facts.rows.push_back(row);
  }
  for (const vc::AnyControl& control : form.controls) {
    const vc::ControlCore& core = vc::CoreOf(control);
    const std::string caption = CaptionOf(control);
    facts.captions.emplace(core.name, caption);
    facts.captions.emplace(core.FullName(), caption);
  }
  for (const auto& [combination, pressed] : form.keys) facts.keys.push_back(combination);
  return facts;
}

std::vector<FormFacts> Now(OpenForms& forms) {
  std::vector<FormFacts> all;
  forms.ForEach([&](vc::Form& form) { all.push_back(FactsOf(forms, form)); });
  return all;
}

void AddRanges(FormFacts& facts, const FormFacts& wide, const std::string& where) {
  for (std::size_t i = 0; i < facts.rows.size(); ++i) {
    std::string& range = facts.rows[i].facts.range;
    const std::string& other = wide.rows[i].facts.range;
    if (range != other) range += " (" + where + " " + other + ")";
  }
}

}  // namespace

std::vector<FormFacts> FactsOfAll(OpenForms& forms) {
  std::vector<FormFacts> all = Now(forms);
  vc::Session& session = forms.session;
  const vc::AnyControl* bandwidth = vc::FindControl(session.master.form, "cmbBandwidth");
  const auto* list = bandwidth == nullptr ? nullptr : std::get<vc::ListBox*>(*bandwidth);
  if (list == nullptr) throw vc::Fault{"the master panel has no list of bandwidths"};
  vc::SetControl(*bandwidth, list->Items().back());
  const std::vector<FormFacts> wide = Now(forms);
  for (std::size_t i = 0; i < all.size(); ++i)
    AddRanges(all[i], wide[i], "at a bandwidth of " + list->Text());
  return all;
}

}  // namespace manual
