#include "widgets/Controls.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "text/Convert.h"

namespace vc {
namespace {

template <typename Control>
void Register(Control* control) {
  control->core.form.controls.emplace_back(control);
}

}  // namespace

Label::Label(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption) {
  Register(this);
}

TextBox::TextBox(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption) {
  Register(this);
}

void TextBox::SetText(const std::string& value) {
  if (text == value) return;
  taken = value;
  Type(value);
}

void TextBox::WhenTaken(const std::function<void()>& take) {
  lostFocus = take;
  keyPress = [take](int code) {
    if (code == EnterKey) take();
  };
}

void TextBox::Type(const std::string& value) {
  if (core.Store(text, value, "Text")) core.Raise(changed);
}

void TextBox::LostFocus() {
  taken = text;
  core.Raise(lostFocus);
}

void TextBox::KeyPress(int code) {
  if (code == EnterKey && !multiLine) taken = text;
  core.Raise([this, code] {
    if (keyPress) keyPress(code);
  });
}

Button::Button(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption) {
  Register(this);
}

Slider::Slider(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption) {
  Register(this);
}

void Slider::SetPosition(double value) {
  const double wanted = whole ? std::nearbyint(value) : value;
  const double bounded = std::max(positionMin, std::min(wanted, positionMax));
  if (!core.Store(position, bounded, "Position")) return;
  for (const ControlCore* other : alsoShownBy) other->Changed("Handles");
  core.Raise(changed);
}

double Slider::Shown(double at) const { return show ? ParseNumber(show(at)).value_or(at) : at; }

void Slider::SetShown(double number) {
  try {
    SetPosition(parse ? parse(ShortestText(number)) : number);
    Release();
  } catch (const Fault&) {
    // the slider stays where it is
  }
}

bool Slider::Press(std::string_view combination) {
  struct Stroke {
    std::string_view key;
    double steps, pages;
  };
  constexpr double ten = 10, hundred = 100;
  constexpr std::array<Stroke, 6> strokes{
      {{"Left", -1, 0}, {"Down", -1, 0}, {"Right", 1, 0}, {"Up", 1, 0}, {"PgDown", 0, -1}, {"PgUp", 0, 1}}};
  if (combination == "Home") return SetPosition(positionMin), true;
  if (combination == "End") return SetPosition(positionMax), true;
  const bool tens = combination.starts_with("Shift+"), hundreds = combination.starts_with("Ctrl+");
  if (tens || hundreds) combination.remove_prefix(combination.find('+') + 1);
  const auto* stroke = std::ranges::find(strokes, combination, &Stroke::key);
  const bool inBank = core.frame != nullptr && core.frame->arrangement == Arrangement::Bank;
  const bool sideways = combination == "Left" || combination == "Right";
  if (stroke == strokes.end() || (inBank && sideways)) return false;
  const double times = tens ? ten : hundreds ? hundred : 1;
  MoveBy(stroke->steps * times * KeyArrowStepSize + stroke->pages * KeyPageStepSize);
  return true;
}

void Slider::SetDefault() {
  if (!defaultPosition) return;
  if (holding && position != heldFrom) {
    SetPosition(heldFrom);
  } else {
    Release();  // of what came before
  }
  SetPosition(defaultPosition());
  Release();
}

void Slider::Hold() {
  holding = true;
  heldFrom = position;
}

void Slider::Release() {
  holding = false;
  core.Raise(released);
}

void Slider::SetRange(double lower, double upper) {
  core.Store(positionMin, lower, "PositionMin");
  core.Store(positionMax, std::max(lower, upper), "PositionMax");
  SetPosition(position);
}

UpDown::UpDown(Place place, const std::string& name, const std::string& caption, int index)
    : slider(place, name, caption, index) {
  core.form.controls.back() = this;  // in the place of its slider
  constexpr double page = 10;
  slider.KeyPageStepSize = page;
  slider.whole = true;
}

Slider* SliderIn(const AnyControl& control) {
  if (auto* const* slider = std::get_if<Slider*>(&control)) return *slider;
  auto* const* upDown = std::get_if<UpDown*>(&control);
  return upDown == nullptr ? nullptr : &(*upDown)->slider;
}

std::vector<TextBox*> TextsOf(const Slider& slider) {
  std::vector<TextBox*> texts;
  for (const AnyControl& control : slider.core.form.controls) {
    auto* const* text = std::get_if<TextBox*>(&control);
    if (text != nullptr && (*text)->shows == &slider) texts.push_back(*text);
  }
  return texts;
}

std::vector<AnyControl> ReadingOrder(const Form& form) {
  std::vector<AnyControl> order;
  for (const AnyControl& control : form.controls) {
    auto* const* text = std::get_if<TextBox*>(&control);
    if (text != nullptr && (*text)->shows != nullptr) continue;
    order.push_back(control);
    const Slider* slider = SliderIn(control);
    if (slider != nullptr) std::ranges::copy(TextsOf(*slider), std::back_inserter(order));
  }
  return order;
}

ListBox::ListBox(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption) {
  Register(this);
}

void ListBox::Activate() const {
  if (listIndex >= 0) core.Raise(activated);
}

std::string ListBox::Text() const {
  return listIndex < 0 ? std::string{} : items[static_cast<std::size_t>(listIndex)];
}

void ListBox::SetItems(std::vector<std::string> rows) {
  items = std::move(rows);
  core.Changed("Items");
  if (listIndex >= static_cast<int>(items.size())) SetListIndex(-1);
}

void ListBox::SetListIndex(int row) {
  const int known = row >= 0 && row < static_cast<int>(items.size()) ? row : -1;
  if (core.Store(listIndex, known, "ListIndex")) core.Raise(changed);
}

OptionButton::OptionButton(Place place, const std::string& name, const std::string& caption, int index,
                           OptionGroup& owner, int itsChoice)
    : core(place, name, index, caption), group(owner), choice(itsChoice) {
  Register(this);
}

bool OptionButton::Value() const { return group.Selected() == choice; }

OptionGroup::OptionGroup(Place place, const std::string& name, int firstIndex,
                         const std::vector<std::string>& captions) {
  for (const std::string& caption : captions) {
    buttons.push_back(std::make_unique<OptionButton>(place, name, caption, firstIndex, *this, firstIndex));
    ++firstIndex;
  }
}

OptionGroup::OptionGroup(Place place, const std::vector<Named>& named) {
  for (const Named& one : named) {
    const int choice = static_cast<int>(buttons.size());
    buttons.push_back(std::make_unique<OptionButton>(place, one.name, one.caption, NoIndex, *this, choice));
  }
}

void OptionGroup::Select(int choice) {
  if (choice == selected) return;
  selected = choice;
  for (const auto& button : buttons) button->core.Changed("Value");
  if (!buttons.empty()) buttons.front()->core.Raise(changed);
}

std::string OptionGroup::SelectedCaption() const {
  for (const auto& button : buttons) {
    if (button->choice == selected) return button->core.Caption();
  }
  return {};
}

CheckBox::CheckBox(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption) {
  Register(this);
}

void CheckBox::SetValue(bool on) {
  if (core.Store(value, on, "Value")) core.Raise(changed);
}

Picture::Picture(Place place, const std::string& name, const std::string& caption, int images,
                 Drawing drawing, int index)
    : core(place, name, index, caption), imageCount(images), draw(std::move(drawing)) {
  Register(this);
}

MenuEntry::MenuEntry(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption), parent(place.menu) {
  Register(this);
  if (parent != nullptr) parent->children.push_back(this);
}

void MenuEntry::Click() const {
  core.form.TakeTyped();
  core.Raise(clicked);
}

void MenuEntry::SetChecked(bool on) {
  checkable = true;
  core.Store(checked, on, "Checked");
}

}  // namespace vc
