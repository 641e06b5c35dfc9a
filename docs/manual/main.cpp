// make_manual [--check] FOLDER: writes the manual into the program's folder; with --check it only says
// whether what lies there is what would be written. The status is 1 where it is not, and where the words are
// wrong.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <system_error>

#include <unistd.h>

#include "manual/Manual.h"
#include "manual/OpenForms.h"
#include "shell/Help.h"

namespace {

namespace fs = std::filesystem;

std::string Content(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

int Tell(const manual::Errata& errata, const char* how) {
  for (const std::string& each : errata) std::cerr << how << each << '\n';
  return static_cast<int>(errata.size());
}

// A page that the manual no longer has.
bool Stale(const manual::Manual& made, const fs::path& folder, const fs::path& file) {
  return file.extension() == ".html" && !made.files.contains(fs::relative(file, folder).generic_string());
}

int Write(const manual::Manual& made, const fs::path& folder) {
  int failed = 0;
  std::error_code error;
  for (const auto& [path, content] : made.files) {
    fs::create_directories((folder / path).parent_path(), error);
    std::ofstream file(folder / path, std::ios::binary);
    file << content;
    file.close();
    if (file) continue;
    std::cerr << (folder / path).string() << " cannot be written\n";
    ++failed;
  }
  fs::directory_iterator entry(folder / vc::HelpFolder, error);
  for (; !error && entry != fs::directory_iterator{}; entry.increment(error)) {
    std::error_code ignored;
    if (Stale(made, folder, entry->path())) fs::remove(entry->path(), ignored);
  }
  return failed;
}

int Check(const manual::Manual& made, const fs::path& folder) {
  int stale = 0;
  for (const auto& [path, content] : made.files) {
    if (Content(folder / path) == content) continue;
    std::cerr << (folder / path).string() << " is out of date: make_manual makes it anew\n";
    ++stale;
  }
  return stale;
}

// Empty, and gone when the program ends.
struct Scratch {
  fs::path folder = fs::temp_directory_path() / ("make_manual-" + std::to_string(getpid()));
  Scratch() { fs::create_directories(folder); }
  ~Scratch() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
};

manual::Manual Make() {
  const Scratch scratch;
  manual::OpenForms forms(scratch.folder.string());
  return manual::MakeManual(MANUAL_SOURCE, manual::FactsOfAll(forms));
}

}  // namespace

int main(int count, char** words) {
  const bool check = count == 3 && std::string(words[1]) == "--check";
  if (count != 2 && !check) {
    std::cerr << "usage: make_manual [--check] FOLDER\n";
    return 2;
  }
  try {
    const manual::Manual made = Make();
    const fs::path folder = words[count - 1];
    int wrong = Tell(made.wrong, "wrong: ");
    if (check) {
      Tell(made.missing, "missing: ");
    } else if (!made.missing.empty()) {
      std::cerr << "The manual misses " << made.missing.size() << " things: make_manual --check tells them\n";
    }
    wrong += check ? Check(made, folder) : Write(made, folder);
    return wrong == 0 ? 0 : 1;
  } catch (const vc::Fault& fault) {
    std::cerr << "make_manual: " << fault.description << '\n';
  } catch (const std::exception& error) {
    std::cerr << "make_manual: " << error.what() << '\n';
  }
  return 1;
}
