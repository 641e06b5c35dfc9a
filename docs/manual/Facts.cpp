#include "manual/Facts.h"

#include <algorithm>
#include <type_traits>

#include "text/Convert.h"
#include "widgets/ControlText.h"
#include "widgets/Controls.h"
#include "widgets/GraphicButton.h"

namespace manual {
namespace {

template <typename Kind>
Kind* As(const vc::AnyControl& control) {
  Kind* const* found = std::get_if<Kind*>(&control);
  return found == nullptr ? nullptr : *found;
}

bool NeedsWords(const vc::AnyControl& control) {
  if (As<vc::Frame>(control) != nullptr || As<vc::Label>(control) != nullptr) return false;
  if (const auto* text = As<vc::TextBox>(control)) return text->shows == nullptr;
  if (const auto* entry = As<vc::MenuEntry>(control)) return entry->children.empty();
  return true;
}

const vc::OptionGroup* OptionsOf(const vc::AnyControl& control) {
  const auto* option = As<vc::OptionButton>(control);
  return option == nullptr ? nullptr : &option->group;
}

bool Together(const vc::AnyControl& one, const vc::AnyControl& other) {
  if (OptionsOf(one) != nullptr) return OptionsOf(one) == OptionsOf(other);
  const vc::ControlCore &first = vc::CoreOf(one), &second = vc::CoreOf(other);
  return first.index != vc::NoIndex && first.name == second.name;
}

std::string Plain(const std::string& caption) {
  std::string text = vc::WithoutAccessKey(caption);
  while (text.ends_with(':') || text.ends_with(' ')) text.pop_back();
  return text;
}

std::string Joined(const std::vector<std::string>& words, const std::string& between) {
  std::string all;
  for (const std::string& word : words) all += (all.empty() ? "" : between) + word;
  return all;
}

// The same of all, or each with its place.
std::string OfAll(const std::vector<std::string>& places, const std::vector<std::string>& said) {
  if (std::ranges::adjacent_find(said, std::not_equal_to<>()) == said.end()) return said.front();
  std::vector<std::string> each;
  for (std::size_t i = 0; i < said.size(); ++i) {
    each.push_back((places[i].empty() ? "" : places[i] + ": ") + said[i]);
  }
  return Joined(each, "; ");
}

std::string WithUnit(const std::string& text, const std::string& unit) {
  return unit.empty() ? text : text + " " + unit;
}

std::string UnitOf(const vc::Slider& slider) {
  const auto texts = vc::TextsOf(slider);
  return texts.empty() ? std::string{} : texts.front()->unit;
}

std::string ShownAt(const vc::Slider& slider, double position) {
  return slider.show ? slider.show(position) : vc::ShortestText(position);
}

// From the less to the more, whichever way the slider runs.
std::string FromTo(std::string lower, std::string upper, const std::string& unit) {
  const auto low = vc::ParseNumber(lower), high = vc::ParseNumber(upper);
  if (low && high && *low > *high) std::swap(lower, upper);
  return WithUnit(lower + " to " + upper, unit);
}

// A slider with several numbers goes to both of its ends and back, as each number has a law of its own.
std::string RangesOf(vc::Slider& slider) {
  const auto texts = vc::TextsOf(slider);
  if (texts.size() < 2) {
    return FromTo(ShownAt(slider, slider.PositionMin()), ShownAt(slider, slider.PositionMax()),
                  UnitOf(slider));
  }
  const double stood = slider.Position();
  std::vector<std::string> captions, lower, ranges;
  slider.SetPosition(slider.PositionMin());
  for (const vc::TextBox* text : texts) lower.push_back(text->Text());
  slider.SetPosition(slider.PositionMax());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    captions.push_back(Plain(texts[i]->core.Caption()));
    ranges.push_back(FromTo(lower[i], texts[i]->Text(), texts[i]->unit));
  }
  slider.SetPosition(stood);
  return OfAll(captions, ranges);
}

std::string DefaultOf(const vc::Slider& slider) {
  if (!slider.defaultPosition) return {};
  return WithUnit(ShownAt(slider, slider.defaultPosition()), UnitOf(slider));
}

std::string OnOff(bool on) { return on ? "on" : "off"; }

struct OneFact {
  std::string range, factory;
  std::vector<std::string> choices;
};

OneFact FactOf(const vc::AnyControl& control) {
  if (vc::Slider* slider = vc::SliderIn(control)) return {RangesOf(*slider), DefaultOf(*slider), {}};
  if (const auto* check = As<vc::CheckBox>(control)) return {"", OnOff(check->Value()), {}};
  if (const auto* button = As<vc::GraphicButton>(control)) {
    const bool latch = button->style == vc::GraphicButton::Style::Latching;
    return {"", latch ? OnOff(button->Value() != 0) : "", {}};
  }
  // What lies in a folder is no choice of the program's, and one row alone is none.
  if (const auto* list = As<vc::ListBox>(control);
      list != nullptr && !list->tall && list->Items().size() > 1) {
    return {"", list->Text(), list->Items()};
  }
  return {};
}

// "File > " of an entry of the menu "File".
std::string MenusAround(const vc::MenuEntry& entry) {
  if (entry.parent == nullptr) return {};
  return MenusAround(*entry.parent) + Plain(entry.parent->core.Caption()) + " > ";
}

std::string FrameCaption(const vc::ControlCore& core) {
  const vc::Frame* around = core.frame;
  while (around != nullptr && around->core.Caption().empty()) around = around->core.frame;
  return around == nullptr ? std::string{} : Plain(around->core.Caption());
}

std::string OwnCaption(const vc::AnyControl& control) {
  const vc::ControlCore& core = vc::CoreOf(control);
  const std::string caption = Plain(core.Caption());
  if (!caption.empty()) return caption;
  const std::string around = FrameCaption(core);
  return around.empty() ? core.name : around;
}

// What is not there in a new setup has a caption that says so and no other; it goes unnamed.
std::vector<std::string> CaptionsOf(const std::vector<vc::AnyControl>& controls) {
  std::vector<std::string> usable, all;
  for (const vc::AnyControl& control : controls) {
    const std::string caption = OwnCaption(control);
    if (std::ranges::find(all, caption) == all.end()) all.push_back(caption);
    const bool here = vc::CoreOf(control).Usable() && std::ranges::find(usable, caption) == usable.end();
    if (here) usable.push_back(caption);
  }
  return usable.empty() ? all : usable;
}

std::string ArrayCaption(const std::vector<vc::AnyControl>& controls) {
  constexpr std::size_t most = 4;
  const std::vector<std::string> captions = CaptionsOf(controls);
  const auto* entry = As<vc::MenuEntry>(controls.front());
  const std::string menus = entry == nullptr ? "" : MenusAround(*entry);
  if (captions.size() <= most) return menus + Joined(captions, ", ");
  return menus + captions.front() + ", " + captions[1] + " ... " + captions.back();
}

Facts OptionFacts(const vc::OptionGroup& options) {
  Facts facts{.kind = "options", .caption = FrameCaption(options.buttons.front()->core)};
  for (const auto& button : options.buttons) facts.choices.push_back(Plain(button->core.Caption()));
  if (facts.caption.empty()) facts.caption = Joined(facts.choices, ", ");
  facts.factory = Plain(options.SelectedCaption());
  return facts;
}

}  // namespace

std::string CaptionOf(const vc::AnyControl& control) {
  const auto* entry = As<vc::MenuEntry>(control);
  return (entry == nullptr ? "" : MenusAround(*entry)) + OwnCaption(control);
}

const std::string& ControlGroup::Name() const { return vc::CoreOf(controls.front()).name; }

bool ControlGroup::Bears(const std::string& name) const {
  return std::ranges::any_of(controls,
                             [&name](const vc::AnyControl& each) { return vc::CoreOf(each).name == name; });
}

std::vector<ControlGroup> GroupsOf(const vc::Form& form) {
  std::vector<ControlGroup> groups;
  for (const vc::AnyControl& control : form.controls) {
    if (!NeedsWords(control)) continue;
    const auto found = std::ranges::find_if(
        groups, [&control](const ControlGroup& group) { return Together(group.controls.front(), control); });
    if (found == groups.end()) {
      groups.push_back({{control}});
    } else {
      found->controls.push_back(control);
    }
  }
  return groups;
}

Facts FactsOf(const ControlGroup& group) {
  const vc::AnyControl& first = group.controls.front();
  if (const vc::OptionGroup* options = OptionsOf(first)) return OptionFacts(*options);
  std::vector<std::string> places, ranges, factories;
  OneFact last;
  for (const vc::AnyControl& control : group.controls) {
    last = FactOf(control);
    places.push_back(vc::CoreOf(control).index == vc::NoIndex ? OwnCaption(control)
                                                              : std::to_string(vc::CoreOf(control).index));
    ranges.push_back(last.range);
    factories.push_back(last.factory);
  }
  const vc::ControlCore& core = vc::CoreOf(first);
  Facts facts{.count = static_cast<int>(group.controls.size()),
              .kind = vc::KindOf(first),
              .caption = ArrayCaption(group.controls),
              .range = OfAll(places, ranges),
              .choices = last.choices,
              .factory = OfAll(places, factories)};
  facts.around = FrameCaption(core);
  if (const auto* entry = As<vc::MenuEntry>(first)) facts.key = entry->shortcut;
  return facts;
}

}  // namespace manual
