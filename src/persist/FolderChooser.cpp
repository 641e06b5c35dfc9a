#include "persist/FolderChooser.h"

#include <filesystem>
#include <utility>

#include "persist/FileNames.h"
#include "text/Wire.h"

namespace vc {
namespace {

namespace fs = std::filesystem;

constexpr const char* Upwards = "..";

// Absolute, without "." and "..", and without a separator at its end.
std::string Tidy(const std::string& path) {
  std::error_code ignored;
  const fs::path tidy = fs::absolute(path, ignored).lexically_normal();
  return tidy.has_filename() || !tidy.has_relative_path() ? tidy.string() : tidy.parent_path().string();
}

}  // namespace

FolderChooser::FolderChooser(Form& form, Files& hostFiles, Desk& operatorDesk)
    : txtFolder(form, "txtFolder", "Folder"),
      lblFolder(form, "lblFolder", ""),
      fraLists(form, "fraLists", "", Arrangement::Columns),
      folderVw(fraLists, "folderVw", "Folders"),
      files(hostFiles),
      desk(operatorDesk) {
  lblFolder.core.SetVisible(false);
  folderVw.tall = true;
  folderVw.columns = 20;
  folderVw.activated = [this] { GoTo(folderVw.Text()); };
  txtFolder.WhenTaken([this] { TakeText(); });
}

bool FolderChooser::GoTo(const std::string& path) {
  const std::string target = Tidy(PathFrom(folder, path));
  std::error_code ignored;
  if (!fs::is_directory(target, ignored)) return false;
  folder = target;
  txtFolder.SetText(folder);
  ShowEntries();
  return true;
}

void FolderChooser::TakeText() {
  if (txtFolder.Text() == folder || GoTo(txtFolder.Text())) return;
  desk.Beep();
  txtFolder.SetText(folder);
}

void FolderChooser::ShowEntries() {
  const auto entries = files.List(folder);
  lblFolder.core.SetCaption(entries ? "" : "This folder cannot be read.");
  lblFolder.core.SetVisible(!entries);
  std::vector<std::string> rows;
  if (fs::path(folder).has_relative_path()) rows.emplace_back(Upwards);
  for (const FolderEntry& entry : entries.value_or(std::vector<FolderEntry>{})) {
    if (entry.folder) rows.push_back(entry.name);
  }
  folderVw.SetListIndex(-1);
  folderVw.SetItems(std::move(rows));
  Raise(entered, entries.value_or(std::vector<FolderEntry>{}));
}

}  // namespace vc
