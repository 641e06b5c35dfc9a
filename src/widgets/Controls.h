// The plain kinds of control, as models. Setting a value from the program and from a face is the same call: a
// change of value raises the control's event, an equal value raises nothing.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Surface.h"
#include "widgets/Form.h"

namespace vc {

struct Label {
  Label(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;
  bool elided = false;     // stays in one line, without its middle where that is too short
  bool heading = false;    // in large letters, on a splash
  bool keepsRoom = false;  // while it is hidden, so that nothing moves when it comes and goes

  // Letters of a colour that means something, such as a trace's, on the ground on which they are read best;
  // those of the window where it has none.
  void SetColour(Colour letters) { core.Store(colour, std::optional(letters), "Colour"); }
  const std::optional<Colour>& OwnColour() const { return colour; }

 private:
  std::optional<Colour> colour;
};

struct TextBox {
  TextBox(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;
  std::string unit;  // stands beside the number
  // Its text is a number of this slider and stands beside it, behind those that are declared before it. Under
  // the slider's own caption it has none of its own.
  const Slider* shows = nullptr;
  bool readOnly = false;
  // Of a read-only text and of one in a bank or beside others: room is kept for this one, so that nothing
  // beside it moves.
  std::string widest;
  bool multiLine = false;
  bool inColumns = false;        // by blanks, so that all letters have to be of one width
  int columns = 60, lines = 12;  // of characters that several lines of text have room for at least
  std::function<void()> changed;
  std::function<void()> gotFocus, lostFocus;
  std::function<void(int code)> keyPress;  // character code, 13 for Enter; no key is swallowed
  // What is typed counts when the box is left, and on Enter: both events lead there.
  void WhenTaken(const std::function<void()>& take);

  const std::string& Text() const { return text; }
  void SetText(const std::string& value);

  // The operator types. The text counts when it is taken, by leaving the box or by Enter; until then it can
  // be put back to what it was.
  void Type(const std::string& value);
  bool Typed() const { return text != taken; }
  // As it counts at this moment, whatever is being typed.
  const std::string& Taken() const { return taken; }
  void PutBack() { SetText(taken); }

  void GotFocus() const { core.Raise(gotFocus); }
  void LostFocus();
  void KeyPress(int code);

 private:
  std::string text, taken;
};
inline constexpr int EnterKey = 13;

struct Button {
  Button(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;
  std::function<void()> clicked;
  void Click() const { core.Raise(clicked); }
};

struct Slider {
  Slider(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;
  double KeyArrowStepSize = 1.0, KeyPageStepSize = 1.0, MouseWheelStepSize = 1.0;
  bool ReverseScale = false;
  bool whole = false;  // it stands at whole numbers only
  bool snaps = false;  // whoever hears of a new position may move it on to one of its own
  std::function<void()> changed;
  // How a position reads and how it is read, where something shows it; see SliderEntry.
  std::function<std::string(double position)> show;
  std::function<double(const std::string& text)> parse;
  std::function<double()> defaultPosition;      // none where it has no default
  std::vector<const ControlCore*> alsoShownBy;  // their views are told "Handles" when it moves

  double Position() const { return position; }
  double PositionMin() const { return positionMin; }
  double PositionMax() const { return positionMax; }
  // Bounded to the range.
  void SetPosition(double value);
  // Along the scale, in the direction of the screen.
  void MoveBy(double distance) { SetPosition(position + (ReverseScale ? -distance : distance)); }
  // Moves the position into the new range.
  void SetRange(double lower, double upper);
  // A position as the number that is shown for it; the position itself where nothing shows it.
  double Shown(double at) const;
  // Goes where this number is shown; nowhere where none leads to it.
  void SetShown(double number);

  // The operator's keys: "Left", "Shift+Left" for ten steps, "Ctrl+Left" for a hundred, "PgUp", "Home". False
  // for any other. In a bank "Left" and "Right" are not the slider's: they lead to its neighbours.
  bool Press(std::string_view combination);
  // The operator wants the default, which is a step of its own. What has been moved since the slider is held
  // is put back first.
  void SetDefault();

  // Between the two, all movements are one drag of the operator. A release also ends a run of single steps.
  void Hold();
  void Release();
  bool Held() const { return holding; }
  std::function<void()> released;

 private:
  bool holding = false;
  double heldFrom = 0.0;
  double position = 0.0, positionMin = 0.0, positionMax = 100.0;
};

// Two arrows that step a whole number beside the text that shows it: a slider without a groove. Whatever
// moves a slider moves this one: keys, a hold, its default, texts and handles.
struct UpDown {
  UpDown(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  Slider slider;  // at whole numbers; it is no control of the form by itself
  ControlCore& core = slider.core;

  std::int32_t Value() const { return static_cast<std::int32_t>(slider.Position()); }
  std::int32_t Min() const { return static_cast<std::int32_t>(slider.PositionMin()); }
  std::int32_t Max() const { return static_cast<std::int32_t>(slider.PositionMax()); }
  std::int32_t Increment() const { return static_cast<std::int32_t>(slider.KeyArrowStepSize); }
  // Bounded to the range; another value raises the slider's event.
  void SetValue(std::int32_t value) { slider.SetPosition(value); }
  // Moves the value into the new range.
  void SetRange(std::int32_t least, std::int32_t most) { slider.SetRange(least, most); }
};

// The slider that a slider or an up-down control is moved by; null for any other kind.
Slider* SliderIn(const AnyControl& control);
// The texts that show the slider's number, in declared order.
std::vector<TextBox*> TextsOf(const Slider& slider);
// The controls of a form as declared, but the texts of a slider right behind it.
std::vector<AnyControl> ReadingOrder(const Form& form);

struct ListBox {
  ListBox(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;
  bool tall = false;             // the rows are on show at once, and can be activated
  int columns = 24, lines = 10;  // of characters that a tall list has room for at least
  std::function<void()> changed;
  std::function<void()> activated;  // double click or Enter on the chosen row
  // Without a chosen row it does nothing.
  void Activate() const;

  const std::vector<std::string>& Items() const { return items; }
  int ListIndex() const { return listIndex; }  // 0-based, -1 where no row is chosen
  std::string Text() const;
  void SetItems(std::vector<std::string> rows);
  // A row outside the list chooses none.
  void SetListIndex(int row);

 private:
  std::vector<std::string> items;
  int listIndex = -1;
};

// One of several choices, of which exactly one stands.
struct OptionGroup;
struct OptionButton {
  OptionButton(Place place, const std::string& name, const std::string& caption, int index,
               OptionGroup& owner, int itsChoice);
  ControlCore core;
  OptionGroup& group;
  const int choice;  // what its group has selected while it stands
  bool Value() const;
};

struct OptionGroup {
  // First index and captions; the buttons are named name(firstIndex) and so on, and chosen by their index.
  OptionGroup(Place place, const std::string& name, int firstIndex, const std::vector<std::string>& captions);
  // Names and captions of buttons that are no array; they are chosen by numbers from 0.
  struct Named {
    std::string name, caption;
  };
  OptionGroup(Place place, const std::vector<Named>& named);
  std::vector<std::unique_ptr<OptionButton>> buttons;
  std::function<void()> changed;

  int Selected() const { return selected; }  // what is chosen, NoIndex at first
  std::string SelectedCaption() const;       // empty where none is chosen
  void Select(int choice);

 private:
  int selected = NoIndex;
};

struct CheckBox {
  CheckBox(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;
  std::function<void()> changed;
  bool Value() const { return value; }
  void SetValue(bool on);

 private:
  bool value = false;
};

// A picture of which one image of a list is shown.
struct Picture {
  using Drawing = std::function<void(Surface& surface, const Rectangle& area, int image)>;
  Picture(Place place, const std::string& name, const std::string& caption, int images, Drawing drawing,
          int index = NoIndex);
  ControlCore core;
  std::function<void()> clicked;  // none where a click means nothing; it takes no keyboard
  const int imageCount;
  const Drawing draw;
  Size lines{4, 2};                    // the room that it takes, in lines of text
  int Image() const { return image; }  // 1..imageCount
  void SetImage(int number) { core.Store(image, number, "Image"); }
  void Click() const { core.Raise(clicked); }

 private:
  int image = 1;
};

// An entry of the form's menu bar, or a whole menu where other entries are declared in it.
struct MenuEntry {
  MenuEntry(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;
  MenuEntry* const parent;
  std::vector<MenuEntry*> children;
  bool checkable = false;
  std::string shortcut;  // "Ctrl+Z"; works wherever the form's keys do
  std::function<void()> clicked;
  void Click() const;
  bool Checked() const { return checked; }
  void SetChecked(bool on);

 private:
  bool checked = false;
};

// Count controls of one kind, indexed First to First + Count - 1.
template <typename Control, int First, std::size_t Count>
struct ControlArray {
  ControlArray(Place place, const std::string& name, const std::array<std::string, Count>& captions)
      : ControlArray(place, name, captions, std::make_index_sequence<Count>{}) {}

  std::array<Control, Count> items;
  Control& operator()(int index) { return items.at(static_cast<std::size_t>(index - First)); }
  auto begin() { return items.begin(); }
  auto end() { return items.end(); }

 private:
  template <std::size_t... I>
  ControlArray(Place place, const std::string& name, const std::array<std::string, Count>& captions,
               std::index_sequence<I...> /*rows*/)
      : items{Control{place, name, captions[I], First + static_cast<int>(I)}...} {}
};

}  // namespace vc
