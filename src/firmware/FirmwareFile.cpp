#include "firmware/FirmwareFile.h"

#include <filesystem>

#include "firmware/Xmodem.h"
#include "text/modFile.h"

namespace vc {
namespace {

std::string WhyNot(Files& files, const std::string& path, std::string& bytes) {
  if (files.KindOf(path) == FileKind::Nothing) return " is missing";
  if (!files.ReadStart(path, LongestFirmware + 1, bytes)) return " cannot be read";
  if (bytes.empty()) return " is empty";
  if (bytes.size() > LongestFirmware) return " is longer than any firmware";
  const auto covered = static_cast<std::size_t>(xmodem::PacketCount(bytes.size())) * xmodem::DataSize;
  return covered < bytes.size() ? " has an end that would not be sent: it is cut off or damaged" : "";
}

}  // namespace

std::string FirmwarePath(const Desk& desk, Files& files, std::string_view name) {
  const std::string installed = JoinPath(desk.InstallFolder(), name);
  const std::string shipped = JoinPath(desk.ProgramFolder(), name);
  const bool elsewhere = files.KindOf(installed) == FileKind::Nothing;
  return elsewhere && files.KindOf(shipped) != FileKind::Nothing ? shipped : installed;
}

FirmwareImage ReadFirmware(Files& files, const std::string& path) {
  std::string bytes;
  const std::string why = WhyNot(files, path, bytes);
  if (!why.empty()) return {{}, std::filesystem::path(path).filename().string() + why};
  return {{bytes.begin(), bytes.end()}, {}};
}

std::string FirmwareFilesText(const Desk& desk, Files& files) {
  std::string text;
  for (const std::string_view name : FirmwareFileNames) {
    const FirmwareImage image = ReadFirmware(files, FirmwarePath(desk, files, name));
    if (!image.Sendable()) text += (text.empty() ? "" : "; ") + image.why;
  }
  return text;
}

}  // namespace vc
