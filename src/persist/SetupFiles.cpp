#include "persist/SetupFiles.h"

#include "model/FieldAccess.h"
#include "persist/FileNames.h"

namespace vc {
namespace {

bool Write(SetupContext& context, const std::string& path, const std::string& text, std::int16_t protect) {
  std::string& description = context.settings.setupDescription;
  const std::string before = description;
  description = text;  // for the file, and kept only if that has been written
  // A folder's name with nothing behind it would become a hidden file in it.
  const bool written = !LastPart(path).empty() && LastPart(path) != SetupExtension &&
                       context.setups.SaveSetupFile(path, protect);
  description = before;
  if (written) {
    context.edits.Apply({{&RowOf<&SystemSettings::setupDescription>(), 0, 0, text}}, {"File Description"});
    context.stored(LastPart(path));
    context.open.Take(path);
  }
  return written;
}

bool Read(SetupContext& context, const std::string& path) {
  if (!context.setups.RecallSetupFile(path, KeepConnection)) return false;
  context.recalled(LastPart(path));
  context.open.Take(path);
  return true;
}

void TellCompanions(const SetupContext& context) {
  const std::string fault = context.setups.CompanionFault();
  if (fault.empty()) return;
  context.Warn(box::Exclamation, "Unable to Save File", fault + "  The setup itself has been recalled.");
}

}  // namespace

bool StoreSetup(SetupContext& context, const std::string& path, const std::string& description,
                std::int16_t protect) {
  if (!context.Work([&] { return Write(context, path, description, protect); })) return false;
  context.Remember(path);
  context.used(path);
  return true;
}

void TellNotStored(const SetupContext& context, const std::string& name) {
  context.Warn(box::Exclamation, "Unable to Save File",
               name + ".  Disk Full or " + name + " cannot be opened.  Cancelling parameter store...");
}

bool ProtectedInTheWay(const SetupContext& context, const std::string& path, const std::string& name) {
  SetupHeader header;
  if (!context.setups.ReadFileHeader(path, header) || !CheckModelId(header.identifier)) return false;
  if (header.protect != 1) return false;
  context.Warn(box::Exclamation, "Protected File Already Exists",
               name +
                   " already exists and is protected. You will need to select a different filename if you "
                   "wish to store this setup.");
  return true;
}

bool IsSetup(const SetupContext& context, const std::string& path, const std::string& name) {
  SetupHeader header;
  if (context.setups.ReadFileHeader(path, header) && CheckModelId(header.identifier)) return true;
  context.Warn(box::Exclamation, "Invalid Settings File",
               name + " is not a valid settings file.  Please choose another file.");
  return false;
}

bool RecallSetup(SetupContext& context, const std::string& path, const std::string& name,
                 const std::string& step) {
  bool read = false;
  context.edits.history.Exchange(step, [&] { read = context.Work([&] { return Read(context, path); }); });
  if (!read) {
    context.Warn(box::Exclamation, "Unable to Load File", name + " cannot be opened.");
    return false;
  }
  context.Remember(path);
  context.used(path);
  TellCompanions(context);
  return true;
}

}  // namespace vc
