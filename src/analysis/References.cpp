#include "analysis/References.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace vc {
namespace {

// They can be told from the live traces and from the marker on an instrument's screen.
constexpr std::array<Colour, MostReferences> Colours{0x78D078, 0x4FA5FF, 0xE08CE0, 0xC8C8C8};

std::vector<double> FrequenciesAt(double sampleRate) {
  std::vector<double> frequencies;
  frequencies.reserve(TraceLines);
  for (int line = 0; line < TraceLines; ++line) frequencies.push_back(LineFrequency(sampleRate, line));
  return frequencies;
}

// A name has to find room beside the others, and ends behind a whole character.
std::string Fitting(const std::string& name) {
  constexpr std::size_t most = 24;
  if (name.size() <= most) return name;
  std::size_t end = most;
  while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) --end;
  return name.substr(0, end);
}

}  // namespace

References::References(Panel& owner, Place place, const ShownTraces& live, const SpecMarker& specMarker)
    : fraReferences(place, "fraReferences", "References"),
      fraKeep(fraReferences, "fraKeep", ""),
      btnKeepTrace1(fraKeep, "btnKeepTrace1", "Keep Trace 1"),
      btnKeepTrace2(fraKeep, "btnKeepTrace2", "Keep Trace 2"),
      cmbReference(fraReferences, "cmbReference", "Reference"),
      txtReferenceName(fraReferences, "txtReferenceName", "Name"),
      fraDifference(fraReferences, "fraDifference", "", Arrangement::Columns),
      btnRemoveReference(fraDifference, "btnRemoveReference", "Remove"),
      lblDifference(fraDifference, "lblDifference", ""),
      panel(owner),
      traces(live),
      marker(specMarker) {
  fraKeep.look = fraDifference.look = FrameLook::Flat;
  fraKeep.buttonsPerRow = 2;
  txtReferenceName.widest = "A short name";
  btnKeepTrace1.clicked = [this] { Keep(traces.first); };
  btnKeepTrace2.clicked = [this] { Keep(traces.second); };
  btnRemoveReference.clicked = [this] { Remove(); };
  cmbReference.changed = [this] { Show(); };
  txtReferenceName.WhenTaken([this] { Rename(); });
  List(NoIndex);
}

std::vector<PlotTrace> References::Curves() const {
  std::vector<PlotTrace> curves;
  for (const Kept& one : kept) {
    curves.push_back({.name = one.name,
                      .values = LevelsOf(one.levels),
                      .colour = one.colour,
                      .places = FrequenciesAt(one.sampleRate)});
  }
  return curves;
}

void References::Keep(const ShownTrace& trace) {
  if (kept.size() == MostReferences || !trace.received) return;
  const auto taken = [this](Colour colour) {
    return std::ranges::any_of(kept, [colour](const Kept& one) { return one.colour == colour; });
  };
  const Colour colour = *std::ranges::find_if_not(Colours, taken);
  kept.push_back({"Reference " + std::to_string(++named), &trace, trace.levels,
                  static_cast<double>(panel.settings.sampleRate), colour});
  List(static_cast<int>(kept.size()) - 1);
}

void References::Remove() {
  const int chosen = cmbReference.ListIndex();
  if (Chosen() == nullptr) return;
  kept.erase(kept.begin() + chosen);
  List(std::min(chosen, static_cast<int>(kept.size()) - 1));
}

// One without a name would not be told.
void References::Rename() {
  const int chosen = cmbReference.ListIndex();
  if (Chosen() == nullptr) return txtReferenceName.SetText("");
  const std::string wished = Fitting(txtReferenceName.Text());
  if (!wished.empty() && wished != Chosen()->name) {
    kept[static_cast<std::size_t>(chosen)].name = wished;
    List(chosen);
  }
  txtReferenceName.SetText(Chosen()->name);
  Show();
}

void References::List(int chosen) {
  std::vector<std::string> names;
  for (const Kept& one : kept) names.push_back(one.name);
  {
    const Mute inert(panel.form);
    cmbReference.SetItems(std::move(names));
    cmbReference.SetListIndex(chosen);
  }
  Show();
  if (changed) changed();
}

const References::Kept* References::Chosen() const {
  const auto row = static_cast<std::size_t>(cmbReference.ListIndex());  // no row is beyond the end
  return row < kept.size() ? &kept[row] : nullptr;
}

void References::Show() {
  const bool room = kept.size() < MostReferences;
  btnKeepTrace1.core.SetEnabled(room && traces.first.Told());
  btnKeepTrace2.core.SetEnabled(room && traces.second.Told());
  const Kept* chosen = Chosen();
  for (ControlCore* core : {&cmbReference.core, &txtReferenceName.core, &btnRemoveReference.core}) {
    core->SetEnabled(chosen != nullptr);
  }
  if (!txtReferenceName.Typed()) txtReferenceName.SetText(chosen == nullptr ? "" : chosen->name);
  lblDifference.core.SetCaption(chosen == nullptr ? "" : Difference(*chosen));
}

// At another sample rate the lines of a reference have other frequencies: the nearest one is read.
std::string References::Difference(const Kept& reference) const {
  if (!marker.On() || !reference.of->Told()) return "";
  const double place =
      LineFrequency(static_cast<double>(panel.settings.sampleRate), marker.GetSpecMarkerValue());
  const double there = place / LineFrequency(reference.sampleRate, 0) - 1;
  if (there > TraceLines - 1) return "";
  const auto line = static_cast<std::size_t>(std::max(0L, std::lround(there)));
  const auto level = [](const SpectrumTrace& trace, std::size_t at) { return LevelOf(trace.at(at)); };
  const double difference =
      level(reference.of->levels, static_cast<std::size_t>(marker.GetSpecMarkerValue())) -
      level(reference.levels, line);
  return std::string(reference.of->name) + ": " + (difference > 0 ? "+" : "") + FixedText(difference, 1) +
         " dB";
}

}  // namespace vc
