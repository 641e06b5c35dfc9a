// Asks for a sound file, one that is there or one that is to come to be, for a window that shows its name.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "persist/FileChooser.h"
#include "persist/SetupContext.h"
#include "text/Wire.h"

namespace vc {

struct SoundFileWish {
  std::string title;                           // of the window
  std::string path;                            // to begin with; empty where nothing is chosen yet
  bool there;                                  // it must be a file that is there
  Wire<void(const std::string& path)> chosen;  // the window has gone with an answer
};

struct ChooseSound {
  explicit ChooseSound(SetupContext& setupContext);

  Form form{"ChooseSound", "Choose a Recording"};
  FileChooser chooser;
  Label lblFault{form, "lblFault", ""};
  Button btnOK{form, "btnOK", "OK"};
  Button btnCancel{form, "btnCancel", "Cancel"};

  // From now on until the next one.
  void Take(const SoundFileWish& wanted) { wish.emplace(wanted); }
  // Begins at the file that is chosen, else in the folder of the last one.
  void Fill();

 private:
  void FollowName();
  std::string Fault() const;
  void Choose();

  SetupContext& context;
  std::optional<SoundFileWish> wish;
  std::string lastFolder;
};

}  // namespace vc
