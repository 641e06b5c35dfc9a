#include "PrintServer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>

#include "text/Convert.h"

namespace support {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

constexpr milliseconds Patience(10000 * TIME_ALLOWANCE), Look(20);

bool Await(const std::function<bool()>& done) {
  for (milliseconds waited(0); waited < Patience; waited += Look) {
    if (done()) return true;
    std::this_thread::sleep_for(Look);
  }
  return done();
}

// Of what administrators run, too.
std::string ProgramPath(const std::string& name) {
  for (const char* place : {"/usr/sbin/", "/usr/local/sbin/", "/usr/bin/"}) {
    if (fs::exists(place + name)) return place + name;
  }
  throw vc::Fault{"There is no program " + name + ": install cups-daemon, cups-client and poppler-utils"};
}

// Leaves beside each document the words that it has come with.
constexpr const char* Device =
    "#!/bin/sh\n"
    "[ $# -gt 0 ] || exit 0\n"
    "place=${DEVICE_URI#keep:}\n"
    "cat \"$6\" > \"$place/$1.pdf\"\n"
    "printf '%s\\n%s\\n' \"$4\" \"$3\" > \"$place/$1.words.new\"\n"
    "mv \"$place/$1.words.new\" \"$place/$1.words\"\n";

}  // namespace

PrintServer::PrintServer() {
  for (const char* name : {"state", "cache", "spool", "temporary", "programs", "programs/backend", "out"}) {
    fs::create_directory(Path(name));
  }
  fs::create_directory_symlink("/usr/lib/cups/daemon", Path("programs/daemon"));
  Write("cups-files.conf", "ServerRoot " + folder.Path() + "\nStateDir " + Path("state") + "\nCacheDir " +
                               Path("cache") + "\nRequestRoot " + Path("spool") + "\nTempDir " +
                               Path("temporary") + "\nServerBin " + Path("programs") + "\nAccessLog " +
                               Path("access_log") + "\nErrorLog " + Path("error_log") + "\nPageLog " +
                               Path("page_log") + "\nSandboxing Relaxed\n");
  Write("cupsd.conf",
        "Listen " + Path("socket") +
            "\nBrowsing Off\nDefaultAuthType None\n<Location />\n  Order allow,deny\n  Allow "
            "all\n</Location>\n<Policy default>\n  <Limit All>\n    Order allow,deny\n    Allow "
            "all\n  </Limit>\n</Policy>\n");
  Write("programs/backend/keep", Device, true);
  server = std::make_unique<Program>(
      ProgramPath("cupsd"),
      std::vector<std::string>{"-f", "-c", Path("cupsd.conf"), "-s", Path("cups-files.conf")});
  setenv("CUPS_SERVER", Path("socket").c_str(), 1);
  if (!Await(
          [this] { return std::system("lpstat -r > /dev/null 2>&1") == 0 && fs::exists(Path("socket")); })) {
    throw vc::Fault{"cupsd does not answer on its socket in " + folder.Path()};
  }
}

void PrintServer::Write(const std::string& name, const std::string& text, bool program) const {
  std::ofstream(Path(name)) << text;
  if (program) fs::permissions(Path(name), fs::perms::owner_all);  // what others may run loses its rights
}

void PrintServer::AddQueue(const std::string& name) const {
  OutputOf(ProgramPath("lpadmin") + " -p " + name + " -E -v keep:" + Path("out") + " 2>&1");
}

void PrintServer::RemoveQueue(const std::string& name) const {
  OutputOf(ProgramPath("lpadmin") + " -x " + name + " 2>&1");
}

PrintServer::Arrival PrintServer::AwaitNext() {
  const std::string name = Path("out/" + std::to_string(arrived + 1));
  if (!Await([&] { return fs::exists(name + ".words"); })) return {};
  ++arrived;
  Arrival arrival{name + ".pdf", ""};
  std::ifstream words(name + ".words");
  words >> arrival.copies >> std::ws;
  std::getline(words, arrival.title);
  return arrival;
}

void PrintServer::Refuse(const std::string& name) const {
  OutputOf(ProgramPath("cupsreject") + " " + name + " 2>&1");
}

std::string OutputOf(const std::string& command) {
  std::string output;
  std::FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) throw vc::Fault{command};
  std::array<char, 4096> block{};
  for (std::size_t got = 0; (got = std::fread(block.data(), 1, block.size(), pipe)) > 0;) {
    output.append(block.data(), got);
  }
  if (pclose(pipe) != 0) throw vc::Fault{command + ": " + output};
  return output;
}

std::string PdfText(const std::string& file) {
  return OutputOf(ProgramPath("pdftotext") + " -layout '" + file + "' -");
}

int PdfPages(const std::string& file) {
  const std::string text = PdfText(file);
  return static_cast<int>(std::ranges::count(text, '\f'));
}

}  // namespace support
