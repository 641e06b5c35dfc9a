#include "persist/SaveDisplay.h"

#include <utility>

namespace vc {

SaveDisplay::SaveDisplay(SetupContext& setupContext, const std::string& formName, const std::string& caption)
    : form(formName, caption),
      target(form, setupContext, [this](const std::string& path) { return Save(path); }),
      context(setupContext) {
  // The files may be large, and whoever made the window keeps it.
  form.unloaded = [this] { types = {}; };
}

void SaveDisplay::Take(const std::string& title, std::vector<FileType> choices) {
  name = title;
  types = std::move(choices);
}

void SaveDisplay::Fill() {
  std::vector<TargetType> choices;
  for (const FileType& type : types) choices.push_back({type.caption, type.extension});
  target.Fill(name, std::move(choices));
}

bool SaveDisplay::Save(const std::string& path) {
  std::string fault;
  context.Work([&] {
    fault = Write(path);
    return fault.empty();
  });
  if (!fault.empty()) target.TellNotSaved(fault);
  return fault.empty();
}

std::string SaveDisplay::Write(const std::string& path) const {
  const FileType& type = types.at(target.Type());
  if (type.bytes.empty()) return "The " + type.caption + " could not be made.";
  const auto made = context.files.CreateBeside(path);
  if (!made) return "The right to write there is missing.";
  if (!made->Write(type.bytes) || !made->Flush()) return "The disk is full, or has failed.";
  if (!made->Replace()) return "What has this name cannot be replaced.";
  context.files.Settle();
  return {};
}

}  // namespace vc
