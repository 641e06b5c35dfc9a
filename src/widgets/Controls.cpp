#include "widgets/Controls.h"

#include <algorithm>

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
  if (core.Store(text, value, "Text")) core.Raise(changed);
}

void TextBox::KeyPress(int code) const {
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
  const double bounded = std::max(positionMin, std::min(value, positionMax));
  if (core.Store(position, bounded, "Position")) core.Raise(changed);
}

void Slider::Release() {
  held = false;
  core.Raise(released);
}

void Slider::SetRange(double lower, double upper) {
  core.Store(positionMin, lower, "PositionMin");
  core.Store(positionMax, std::max(lower, upper), "PositionMax");
  SetPosition(position);
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
                           OptionGroup& owner)
    : core(place, name, index, caption), group(owner) {
  Register(this);
}

bool OptionButton::Value() const { return group.Selected() == core.index; }

OptionGroup::OptionGroup(Place place, const std::string& name, int firstIndex,
                         const std::vector<std::string>& captions) {
  for (const std::string& caption : captions) {
    buttons.push_back(std::make_unique<OptionButton>(place, name, caption, firstIndex++, *this));
  }
}

void OptionGroup::Select(int index) {
  if (index == selected) return;
  selected = index;
  for (const auto& button : buttons) button->core.Changed("Value");
  if (!buttons.empty()) buttons.front()->core.Raise(changed);
}

CheckBox::CheckBox(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption) {
  Register(this);
}

void CheckBox::SetValue(bool on) {
  if (core.Store(value, on, "Value")) core.Raise(changed);
}

Picture::Picture(Place place, const std::string& name, const std::string& caption, int images,
                 Drawing drawing)
    : core(place, name, NoIndex, caption), imageCount(images), draw(std::move(drawing)) {
  Register(this);
}

MenuEntry::MenuEntry(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption), parent(place.menu) {
  Register(this);
  if (parent != nullptr) parent->children.push_back(this);
}

void MenuEntry::SetChecked(bool on) {
  checkable = true;
  core.Store(checked, on, "Checked");
}

}  // namespace vc
