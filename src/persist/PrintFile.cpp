#include "persist/PrintFile.h"

namespace vc {

PrintFile::PrintFile(SetupContext& setupContext)
    : target(form, setupContext, [this](const std::string& path) { return request && request->take(path); }) {
}

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
}

}  // namespace vc
