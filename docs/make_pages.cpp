// Writes the pages that are made from the program's own tables, or checks that they are still true.
#include <array>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "model/RegisterTable.h"
#include "persist/IndivFileType.h"
#include "persist/SetupLines.h"

namespace {

std::string FileFormatsPage() { return vc::SetupFilePage() + vc::IndivFilesPage(); }

struct Page {
  const char* file;
  std::string (*make)();
};
constexpr std::array<Page, 2> Pages{
    {{"registers.md", vc::RegisterPage}, {"file-formats.md", FileFormatsPage}}};

std::string Content(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

}  // namespace

int main(int count, char** words) {
  const bool check = count == 3 && std::string(words[1]) == "--check";
  if (count != 2 && !check) {
    std::cerr << "usage: make_pages [--check] FOLDER\n";
    return 2;
  }
  int stale = 0;
  for (const Page& page : Pages) {
    const std::string path = std::string(words[count - 1]) + "/" + page.file;
    if (!check) {
      std::ofstream(path, std::ios::binary) << page.make();
    } else if (Content(path) != page.make()) {
      std::cerr << path << " is out of date: build/docs/make_pages docs makes it anew\n";
      ++stale;
    }
  }
  return stale == 0 ? 0 : 1;
}
