// Pictures of windows on disk, in both themes.
#pragma once

#include <filesystem>
#include <string>

#include <QWidget>

namespace tour {

class Album {
 public:
  // The folder is made if it is missing.
  explicit Album(std::filesystem::path folder);

  // Saves the window with the menus that are open over it as NAME.png, and in the dark theme as
  // NAME-dark.png. False where a file could not be written.
  bool Save(QWidget& window, const std::string& name) const;

 private:
  bool SaveOnce(QWidget& window, const std::string& file) const;

  std::filesystem::path folder;
};

}  // namespace tour
