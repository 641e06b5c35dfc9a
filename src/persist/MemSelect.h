// "Store" and "Recall" of one filter: keeps its table in a file of its own, or takes it from one.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "persist/FileChooser.h"
#include "persist/IndivFiles.h"
#include "persist/SetupContext.h"

namespace vc {

struct MemSelect {
  explicit MemSelect(SetupContext& setupContext);

  enum class Direction { Store, Recall };

  Form form{"MemSelect", ""};
  FileChooser chooser;
  // The table as it was before the last recall of its kind; recalled at once.
  Button btnPrevious{form, "btnPrevious", "&Previous Filter Settings"};
  Button btnOK{form, "btnOK", "OK"};
  Button btnCancel{form, "btnCancel", "Cancel"};

  // What the window is to do when it is opened, for the stage of the type's family whose panel is open. told
  // hears that the record has another table, for as long as the window is open.
  void Prepare(Direction wanted, std::int16_t fileType, std::function<void()> told);
  // In the folder and with the name of the last file of this extension in this run.
  void Fill();

 private:
  // Of the last file that was stored or recalled, and the working folder at that time.
  struct LastFile {
    std::string folder, name, workingFolder;
  };
  enum class Outcome { Taken, NotSent, NotKept };

  const IndivFileRow& File() const;
  void InitializeWindowTitle();
  void FollowName();
  std::string ChosenName() const;
  std::string PreviousPath() const;
  void Remember(const std::string& path);
  bool Store();
  bool MayWrite(const std::string& name) const;
  bool Write(const std::string& name);
  bool RecallNamed();
  bool RecallPrevious();
  bool Recall(const std::string& path);
  Outcome Take(const IndivTable& table);
  bool KeepPrevious();
  Outcome SendLearned(const std::vector<std::int32_t>& coefficients);
  // True with nothing read for a kind that learns nothing.
  bool ReadLearned(std::vector<std::int32_t>& coefficients);
  // Always false.
  bool Complain(const std::string& text) const;

  SetupContext& context;
  Direction direction = Direction::Store;
  std::int16_t type = IndivFileType::SpectralEqualizer;
  int stage = 1;
  std::function<void()> recalled;
  std::map<std::string_view, LastFile> lastFiles;  // by extension
};

}  // namespace vc
