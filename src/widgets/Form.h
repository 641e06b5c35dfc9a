// A window of the program: named controls in reading order. A control registers itself with its form when it
// is declared; the desktop, the console, the report and the tests all read that one list.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vc {

struct Form;
struct Frame;
struct Label;
struct TextBox;
struct Button;
struct GraphicButton;
struct Slider;
struct UpDown;
struct ListBox;
struct Listing;
struct OptionButton;
struct CheckBox;
struct LevelBar;
struct ProgressBar;
struct Plot;
struct Waterfall;
struct Picture;
struct MenuEntry;

// One of the kinds of control. Faces dispatch on the kind, never on which control it is.
using AnyControl =
    std::variant<Frame*, Label*, TextBox*, Button*, GraphicButton*, Slider*, UpDown*, ListBox*, Listing*,
                 OptionButton*, CheckBox*, LevelBar*, ProgressBar*, Plot*, Waterfall*, Picture*, MenuEntry*>;

// Where a control is declared: in a form, in one of its frames, or in a menu.
struct Place {
  Place(Form& owner)
      : form(&owner) {}     // NOLINT(google-explicit-constructor): `TextBox{form, ...}` reads best
  Place(Frame& owner);      // NOLINT(google-explicit-constructor)
  Place(MenuEntry& owner);  // NOLINT(google-explicit-constructor)
  Form* form;
  Frame* frame = nullptr;
  MenuEntry* menu = nullptr;
};

inline constexpr int NoIndex = -1;

// What every control has.
struct ControlCore {
  ControlCore(Place place, std::string controlName, int controlIndex, std::string controlCaption);
  ControlCore(const ControlCore&) = delete;
  ControlCore& operator=(const ControlCore&) = delete;

  Form& form;
  Frame* frame;  // none for a control that lies in the form itself
  const std::string name;
  const int index;             // within its array, NoIndex for a control of its own
  std::string spokenBehind{};  // read aloud behind the control's name
  std::string tip{};           // what is good to know before it is used; shown where the pointer rests on it

  // "cmbFilter(2)", or the plain name.
  std::string FullName() const;
  const std::string& Caption() const { return caption; }
  // What is read aloud: the frame's caption and the control's, without access-key marks.
  std::string AccessibleName() const;
  bool Enabled() const { return enabled; }  // its own state; a disabled frame disables what lies in it
  bool Usable() const;                      // enabled and shown, with all the frames around it
  bool Visible() const { return visible; }
  bool Shown() const;   // visible, as are all the frames around it
  bool Active() const;  // enabled, as are all the frames around it

  void SetCaption(const std::string& text);
  void SetEnabled(bool on);
  void SetVisible(bool on);

  // Stores a property and tells the view, if it differs.
  template <typename T>
  bool Store(T& property, const T& value, std::string_view propertyName) {
    if (property == value) return false;
    property = value;
    Changed(propertyName);
    return true;
  }
  void Changed(std::string_view property) const;
  // Runs an event handler, unless it is not set or the form's handlers are mute.
  void Raise(const std::function<void()>& handler) const;

 private:
  std::string caption;
  bool enabled = true;
  bool visible = true;
};

// What a form is to the operator: a window like any other; one with so much to show that everything stands
// close together; or a greeting without a frame, while the program is about to work.
enum class FormLook { Window, Dense, Splash };

// Asks for the page of a form, in any of them.
inline constexpr const char* HelpKey = "F1";

struct Form {
  Form(std::string formName, std::string formCaption, FormLook formLook = FormLook::Window)
      : name(std::move(formName)), look(formLook), caption(std::move(formCaption)) {}
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string name;
  const FormLook look;
  std::vector<AnyControl> controls;  // in reading order, frames before what lies in them

  const std::string& Caption() const { return caption; }
  void SetCaption(const std::string& text);

  // It stays open while the form that it opens over is worked with, so it opens at its right and not over its
  // middle.
  bool opensAside = false;

  // Where the keyboard is when the form opens; its first control where there is none.
  const ControlCore* initialFocus = nullptr;
  // Takes the keyboard to a control of the open form.
  void Focus(const ControlCore& control) const;

  // What ends the form: the button that leaves everything as it was, where it has one, and the one that takes
  // what was set.
  const Button* cancelButton = nullptr;
  const Button* okButton = nullptr;

  // Key combinations that work anywhere on the form, "Alt+A".
  std::map<std::string, std::function<void()>> keys;
  // Those of these, and of the shortcuts of the menus, that act once however long they are held.
  std::set<std::string> unrepeated;
  // The operator presses a combination: one of the keys, the shortcut of a menu entry, or Escape and F1,
  // which every form knows. Returns what is wrong, or the empty text.
  std::string Press(const std::string& combination);
  // Takes what was typed into a text box, as leaving the box does.
  void TakeTyped();

  // Why it cannot be closed now, in words; empty where it can. Whoever tries is told by closeRefused.
  std::string refusal;
  std::function<void()> closeRefused;
  bool MayClose() const;

  std::function<void()> activated;  // the form became the active window
  // The operator closed the window. Without a handler that is the button that ends the form; a form that has
  // none is unloaded.
  std::function<void()> closeRequested;
  std::function<void()> unloaded;
  std::function<void(const std::string& message)> complain;  // about a fault of the program
  std::function<void()> helpAsked;                           // F1: what the manual says of it

  // Set by the one view that shows the form.
  std::function<void(const ControlCore& control, std::string_view property)> controlChanged;
  std::function<void()> captionChanged;
  std::function<void(const ControlCore& control)> focusWanted;

  // While it is above 0 no control raises an event.
  int muted = 0;

 private:
  // Puts back what was typed and not taken yet; where nothing was, the form ends.
  void Escape();

  std::string caption;
};

// Keeps the handlers of a form inert for a scope, while it is filled from the record.
struct Mute {
  explicit Mute(Form& target) : form(target) { ++form.muted; }
  ~Mute() { --form.muted; }
  Mute(const Mute&) = delete;
  Mute& operator=(const Mute&) = delete;
  Form& form;
};

// How the contents of a frame are laid out. A flow is columns with the signal's way drawn between them; lanes
// are rows of equal height in it. The rows of a table are the frames in it: what they hold stands in columns
// behind their captions, and scrolls where the screen has no room for all of them. A bank is sliders that
// stand side by side, equally wide, their captions below and their numbers above.
enum class Arrangement { Rows, Columns, Flow, Lanes, Table, Bank };

// A mark beside the sliders of a bank: at which position, and what it says.
struct BankTick {
  double position;
  std::string text;
};

// How a frame stands out: by a line around it; as a sheet of its own; as the ground on which sheets lie; or
// by its caption alone.
enum class FrameLook { Line, Card, Panel, Flat };

// Whether what a frame stands for is in the signal's way, for those frames that stand for such a thing.
enum class Standing { Plain, Out, In };

struct Frame {
  Frame(Place place, const std::string& name, const std::string& caption,
        Arrangement arranged = Arrangement::Rows, int index = NoIndex);
  ControlCore core;
  Arrangement arrangement;
  FrameLook look = FrameLook::Line;
  int buttonsPerRow = 0;   // of buttons that follow each other; 0 puts all of them into one row
  bool collapses = false;  // takes no room while it is disabled
  // Of a table, above its columns, that of the rows' captions first; of a bank one, beside the captions.
  std::vector<std::string> headings;
  std::vector<BankTick> scale;

  Standing InTheWay() const { return standing; }
  void SetStanding(Standing stands) { core.Store(standing, stands, "Standing"); }
  // How many channels go through what the frame stands for. Lanes with one have it run through them in turn,
  // with more they lie beside each other.
  int Channels() const { return channels; }
  void SetChannels(int count) { core.Store(channels, count, "Channels"); }

 private:
  int channels = 1;
  Standing standing = Standing::Plain;
};

// The control's core, whatever its kind.
ControlCore& CoreOf(const AnyControl& control);

// How a caption shows any text, in one line: "&&" for each "&".
std::string AsCaption(std::string_view text);
// Text without the "&" that marks an access key; "&&" stands for one "&".
std::string WithoutAccessKey(std::string_view caption);

}  // namespace vc
