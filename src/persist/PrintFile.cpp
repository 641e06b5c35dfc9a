#include "persist/PrintFile.h"

#include "persist/FileNames.h"

namespace vc {

PrintFile::PrintFile(SetupContext& setupContext)
    : target(form, setupContext, [this](const std::string& path) {
        const bool taken = request && request->take(path);
        if (taken) last = path;
        return taken;
      }) {}

void PrintFile::Take(const PrintFileRequest& asked) {
  request.emplace(asked);
  target.taken = asked.taken;
  target.question =
      asked.append ? " already exists. Do you wish to append to it?" : FileTarget::OverwriteQuestion;
}

void PrintFile::Fill() {
  if (!request) return;
  form.SetCaption(request->title);
  target.Fill(request->name, {request->type});
  FileChooser& chooser = target.chooser;
  const std::string name = LastPart(last);
  if (request->append && HasExtension(name, request->type.extension) && chooser.Path(name) == last) {
    chooser.txtFileName.SetText(name);
  }
}

}  // namespace vc
