#include "persist/SetupTrail.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>

#include "persist/SafeFile.h"

namespace vc {
namespace {

// The first line; the second is the open file, each further one a file that was used.
constexpr std::string_view Heading = "veltrana.recent 1";

// A name may hold any byte but zero; a line may not.
std::string Line(const std::string& path) {
  std::string line;
  for (const char character : path) {
    if (character == '\\') {
      line += "\\\\";
    } else if (character == '\n') {
      line += "\\n";
    } else {
      line += character;
    }
  }
  return line + "\n";
}

std::optional<std::string> Path(std::string_view line) {
  std::string path;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\0') return std::nullopt;
    if (line[i] != '\\') {
      path += line[i];
      continue;
    }
    const char escaped = ++i < line.size() ? line[i] : '\0';
    if (escaped != '\\' && escaped != 'n') return std::nullopt;
    path += escaped == 'n' ? '\n' : '\\';
  }
  return path.empty() || std::filesystem::path(path).is_absolute() ? std::optional(path) : std::nullopt;
}

// Nothing where any of it is none.
std::vector<std::string> Paths(std::string_view text) {
  std::vector<std::string> paths;
  bool heading = true;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) return {};
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    const auto path = heading ? std::nullopt : Path(line);
    if (heading ? line != Heading : !path || (path->empty() && !paths.empty())) return {};
    if (path) paths.push_back(*path);
    heading = false;
  }
  return paths;
}

}  // namespace

void SetupTrail::Load() {
  recent.clear();
  open.clear();
  Follow();
}

// Of a file that cannot be read what is known of it stays.
void SetupTrail::Follow() {
  std::string text;
  if (!ReadWholeFile(files, file, text)) return;
  const std::vector<std::string> paths = Paths(text);
  if (paths.empty()) return;
  recent.clear();
  open = paths.front();
  for (auto path = paths.begin() + 1; path != paths.end() && recent.size() < MostFiles; ++path) {
    if (std::ranges::find(recent, *path) == recent.end()) recent.push_back(*path);
  }
}

bool SetupTrail::Save() {
  std::string text = std::string(Heading) + "\n" + Line(open);
  for (const std::string& path : recent) text += Line(path);
  return WriteWholeFile(files, file, text);
}

bool SetupTrail::Used(const std::string& path) {
  Follow();
  const std::vector<std::string> before = recent;
  std::erase(recent, path);
  recent.insert(recent.begin(), path);
  if (recent.size() > MostFiles) recent.resize(MostFiles);
  return recent == before || Save();
}

bool SetupTrail::Drop(const std::string& path) {
  Follow();
  std::erase(recent, path);
  return Save();
}

bool SetupTrail::KeepOpen(const std::string& path) {
  if (open == path) return true;
  Follow();
  open = path;
  return Save();
}

}  // namespace vc
