// The operator's desk: message boxes, the mouse pointer, the folder where the program may write.
#pragma once

#include <string>
#include <string_view>

namespace vc {

// Message box codes: which picture and which buttons a box has.
namespace box {
inline constexpr int AskOkCancel = 1;
inline constexpr int Critical = 16;
inline constexpr int CriticalYesNo = 20;
inline constexpr int Exclamation = 48;
inline constexpr int ExclamationYesNoCancel = 51;
inline constexpr int ExclamationYesNo = 52;
inline constexpr int ExclamationYesNoLast = 308;  // Enter takes the last button, as it does in every such box
inline constexpr int Information = 64;
inline constexpr int InformationYesNo = 0x44;

enum class Buttons { Ok, OkCancel, YesNoCancel, YesNo };
// The low four bits of a code name the buttons.
constexpr Buttons ButtonsOf(int code) {
  switch (code & 15) {
    case 1:
      return Buttons::OkCancel;
    case 3:
      return Buttons::YesNoCancel;
    case 4:
      return Buttons::YesNo;
    default:
      return Buttons::Ok;
  }
}
}  // namespace box

enum class Answer { Ok, Cancel, Yes, No };

// The look of the windows; System follows what the desktop says.
enum class Theme { System, Light, Dark };

// The answer that changes nothing: Cancel, No, or Ok where there is nothing else.
constexpr Answer SafeAnswer(box::Buttons buttons) {
  switch (buttons) {
    case box::Buttons::OkCancel:
    case box::Buttons::YesNoCancel:
      return Answer::Cancel;
    case box::Buttons::YesNo:
      return Answer::No;
    case box::Buttons::Ok:
      break;
  }
  return Answer::Ok;
}

class Desk {
 public:
  virtual ~Desk() = default;
  // Shows a box and returns the operator's answer, one that the box offers.
  virtual Answer Box(int code, const std::string& title, const std::string& text) = 0;
  virtual void Beep() = 0;
  virtual void SetHourglass(bool shown) = 0;
  // Something long ("Sending settings") is under way and has come so far; done equal to total ends it. It is
  // called between the steps of a blocking routine: it may draw, but must let no event handler run.
  virtual void ShowProgress(std::string_view what, int done, int total) = 0;
  // The program blocks and has waited for the unit for so long; 0 ends it. As ShowProgress, it lets no
  // handler run.
  virtual void ShowWaiting(int tenths) = 0;
  // Has the system open a document or a web page in the program that it has for it; false where there is
  // none.
  virtual bool Open(const std::string& target) = 0;
  virtual void SetTheme(Theme theme) = 0;
  // Where the program reads and writes its own files, without a separator at the end: the executable's
  // folder, or the user's data folder where the program is installed in the system's, or cannot write there.
  virtual std::string InstallFolder() const = 0;
  // Where the operator's own files are looked for as long as he has chosen no folder: his home, where the
  // program is installed in the system's folders, or else the install folder.
  virtual std::string DocumentFolder() const = 0;
  // Where the files lie that come with the program; nothing is written there.
  virtual std::string ProgramFolder() const = 0;
  // Where the programs lie that come with it, often the same.
  virtual std::string ExecutableFolder() const = 0;
  // The program folder is the place of the settings, too, but cannot be written: the install folder stands in
  // for it.
  virtual bool ProgramFolderReadOnly() const = 0;
};

}  // namespace vc
