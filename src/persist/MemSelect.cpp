#include "persist/MemSelect.h"

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "model/CoefReader.h"
#include "model/Loans.h"
#include "persist/FileNames.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr const char* PreviousName = "Previous Filter Settings";

}  // namespace

MemSelect::MemSelect(SetupContext& setupContext)
    : chooser(form, setupContext.files, setupContext.desk, "", "Filter Files", [this] { FollowName(); }),
      context(setupContext) {
  chooser.fileVw.activated = [this] {
    if (direction == Direction::Recall) btnOK.Click();
  };
  chooser.txtFileName.keyPress = [this](int code) {
    if (code == EnterKey && btnOK.core.Usable()) btnOK.Click();
  };
  btnOK.clicked = [this] {
    context.Attempt(form, [this] { return direction == Direction::Store ? Store() : RecallNamed(); });
  };
  btnPrevious.clicked = [this] { context.Attempt(form, [this] { return RecallPrevious(); }); };
  form.unloaded = [this] { recalled = nullptr; };
  context.BindCancel(form, btnCancel);
  InitializeWindowTitle();
}

void MemSelect::Prepare(Direction wanted, std::int16_t fileType, std::function<void()> told) {
  direction = wanted;
  type = fileType;
  stage = GetIndivStage(context.settings, type);
  recalled = std::move(told);
}

const IndivFileRow& MemSelect::File() const {
  return IndivFile(type, "InitializeWindowTitle: Invalid Individual filter settings type");
}

void MemSelect::InitializeWindowTitle() {
  const bool store = direction == Direction::Store;
  form.SetCaption((store ? "Store " : "Recall ") + std::string(File().title));
}

void MemSelect::Fill() {
  InitializeWindowTitle();
  chooser.extension = GetIndivSettingsFileExt(type);
  chooser.fileVw.core.SetCaption("Filter Files (*" + chooser.extension + ")");
  const bool recall = direction == Direction::Recall;
  form.initialFocus = recall ? &chooser.fileVw.core : &chooser.txtFileName.core;
  btnPrevious.core.SetVisible(recall);
  btnPrevious.core.SetEnabled(context.files.KindOf(PreviousPath()) == FileKind::File);
  const LastFile& last = lastFiles[File().extension];
  std::error_code ignored;
  const bool there =
      last.workingFolder == context.WorkingFolder() && std::filesystem::is_directory(last.folder, ignored);
  chooser.Open(there ? last.folder : context.WorkingFolder(), there ? last.name : "");
}

void MemSelect::FollowName() { btnOK.core.SetEnabled(!IsBlank(chooser.txtFileName.Text())); }

std::string MemSelect::ChosenName() const {
  const std::string& name = chooser.txtFileName.Text();
  const bool there = context.files.KindOf(chooser.Path(name)) == FileKind::File;
  return there && direction == Direction::Recall ? name : WithExtension(name, chooser.extension);
}

// The working folder's, or the one that lies where the program keeps its files since that one cannot be
// written.
std::string MemSelect::PreviousPath() const {
  const std::string name = WithExtension(PreviousName, GetIndivSettingsFileExt(type));
  const std::string usual = PathFrom(context.CopyFolder(), name);
  const std::string instead = PathFrom(context.desk.InstallFolder(), name);
  return context.files.WrittenAt(instead) > context.files.WrittenAt(usual) ? instead : usual;
}

void MemSelect::Remember(const std::string& path) {
  lastFiles[File().extension] = {FolderOf(path), LastPart(path), context.WorkingFolder()};
}

bool MemSelect::Complain(const std::string& text) const {
  const char* error = direction == Direction::Store ? " Store Error" : " Recall Error";
  context.Warn(box::Exclamation, std::string(File().title) + error, text);
  return false;
}

bool MemSelect::Store() {
  const std::string name = ChosenName();
  const std::string failure = "Error storing " + name + " file.";
  if (File().learned && !context.setups.hooks.portOpen()) return Complain(failure);
  if (!MayWrite(name)) return false;
  if (!context.Work([this, &name] { return Write(name); })) {
    chooser.folders.Refresh();
    return Complain(failure);
  }
  Remember(chooser.Path(name));
  return true;
}

bool MemSelect::MayWrite(const std::string& name) const {
  const FileKind kind = context.files.KindOf(chooser.Path(name));
  if (kind == FileKind::Nothing || kind == FileKind::Folder) return true;
  return context.Warn(box::InformationYesNo, "File Already Exists",
                      name + " already exists. Do you wish to overwrite?") == Answer::Yes;
}

bool MemSelect::Write(const std::string& name) {
  // A folder's name with nothing behind it would become a hidden file in it.
  if (!HasExtension(LastPart(name), chooser.extension)) return false;
  std::vector<std::int32_t> coefficients;
  const bool written = ReadLearned(coefficients) && WriteIndivFile(context.files, chooser.Path(name), type,
                                                                   stage, context.settings, coefficients);
  context.files.Settle();
  return written;
}

bool MemSelect::ReadLearned(std::vector<std::int32_t>& coefficients) {
  if (!File().learned) return true;
  LearnedStages read;
  const bool done = context.setups.hooks.portOpen() && context.setups.ReadLearned({{stage}}, read);
  if (done) coefficients = std::move(read[stage]);
  return done;
}

bool MemSelect::RecallNamed() {
  const std::string path = chooser.Path(ChosenName());
  if (!Recall(path)) return false;
  Remember(path);
  return true;
}

bool MemSelect::RecallPrevious() { return Recall(PreviousPath()); }

bool MemSelect::Recall(const std::string& path) {
  const std::string name = LastPart(path);
  const auto table = std::make_unique<IndivTable>(IndivTable{OperatorsRecord(context.settings), {}});
  const IndivResult read = ReadIndivFile(context.files, path, type, stage, *table);
  if (read == IndivResult::NoFile) return Complain("Error recalling " + name + " file.");
  if (read == IndivResult::NoTable) return Complain(name + ".  Invalid individual filter settings file.");
  Outcome outcome = Outcome::NotKept;
  context.Work([&] {
    outcome = Take(*table);
    return true;
  });
  if (outcome == Outcome::NotKept) {
    return Complain("Error storing " + LastPart(PreviousPath()) + " file.");
  }
  if (outcome == Outcome::NotSent) {
    Complain("Error transmitting the coefficients to the " + ApplicationTitle +
             ".  Please retry recalling the coefficients");
  }
  const std::function<void()> told = recalled;  // whoever hears it may close this window
  Raise(told);
  return true;
}

MemSelect::Outcome MemSelect::Take(const IndivTable& table) {
  if (!KeepPrevious()) return Outcome::NotKept;
  const std::string title = "Recall " + std::string(File().title);
  if (!File().learned) {
    TakeIndivTable(context.edits, type, stage, table.record, title);
    return Outcome::Taken;
  }
  // The stage has its new size before the coefficients come.
  context.edits.history.Edit(title, "", [&](const SystemSettings&) {
    TakeIndivTable(context.edits, type, stage, table.record, title);
    context.edits.SendChanges();
  });
  return SendLearned(table.coefficients);
}

bool MemSelect::KeepPrevious() {
  std::vector<std::int32_t> coefficients;
  // Of a unit that is not there nothing can be read back, and then the copy is left out.
  if (!ReadLearned(coefficients)) return !context.setups.hooks.portOpen();
  const std::string name = WithExtension(PreviousName, chooser.extension);
  const auto writeTo = [&](const std::string& folder) {
    return WriteIndivFile(context.files, PathFrom(folder, name), type, stage, context.settings, coefficients);
  };
  const bool kept = writeTo(context.CopyFolder()) || writeTo(context.desk.InstallFolder());
  context.files.Settle();
  return kept;
}

MemSelect::Outcome MemSelect::SendLearned(const std::vector<std::int32_t>& coefficients) {
  const auto taps = static_cast<std::size_t>(CoefficientCount(context.settings, stage));
  const auto fitting = std::span(coefficients).first(std::min(coefficients.size(), taps));
  context.desk.SetHourglass(true);  // a fit has put the pointer back
  return context.sendLearned(stage, fitting) == Transmission::Impossible ? Outcome::NotSent : Outcome::Taken;
}

}  // namespace vc
