#include "host/PortMap.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <tuple>

#include "host/FolderWalk.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// Splits "ttyS10" into "ttyS" and 10, so that it sorts behind "ttyS2".
std::pair<std::string, long> NaturalKey(const std::string& name) {
  const auto digits = name.find_last_not_of("0123456789") + 1;
  const bool numbered = digits < name.size() && name.size() - digits < 9;
  return {name.substr(0, digits), numbered ? std::stol(name.substr(digits)) : -1};
}

// The UART driver keeps places for ports that do not exist; their type is 0.
bool IsPresentUart(const fs::path& entry) {
  std::ifstream file(entry / "type");
  int type = 0;
  return file >> type && type != 0;
}

struct Device {
  bool usb = false;
  std::string socket;  // where a USB adapter sits
  std::string name;
  auto Key() const { return std::tuple(usb, socket, NaturalKey(name)); }
};

bool Describe(const fs::path& entry, Device& device) {
  std::error_code error;
  const fs::path hardware = fs::canonical(entry / "device", error);
  if (error) return false;  // a terminal without hardware: consoles, pseudo-terminals
  device.name = entry.filename().string();
  const fs::path subsystem = fs::canonical(entry / "device" / "subsystem", error);
  const std::string bus = error ? std::string{} : subsystem.filename().string();
  device.usb = bus.starts_with("usb");
  if (device.usb) device.socket = hardware.string();
  return device.usb || IsPresentUart(entry);
}

bool IsPortName(const std::string& name) {
  return name.size() == 4 && name.starts_with("COM") && name[3] >= '1' && name[3] <= '9';
}

// A link of an adapter that is not plugged in at this moment is none.
bool IsLeftLink(const fs::path& link) {
  std::error_code error;
  return fs::read_symlink(link, error).string().starts_with("/dev/pts/") && !fs::exists(link, error);
}

}  // namespace

std::string PortMap::LinkOf(const std::string& portName) const {
  for (const std::string& folder : {linkFolder, ownFolder}) {
    std::error_code error;
    const fs::path link = fs::path(folder) / portName;
    if (!folder.empty() && fs::is_symlink(fs::symlink_status(link, error))) return link.string();
  }
  return {};
}

std::string PortMap::PathOf(const std::string& portName) const {
  if (!IsPortName(portName)) return {};
  std::string link = LinkOf(portName);
  if (!link.empty()) return link;
  const auto devices = Devices();
  const auto place = static_cast<std::size_t>(portName[3] - '1');
  return place < devices.size() ? devices[place] : std::string{};
}

std::string PortMap::PlaceForLine(const std::string& portName) const {
  if (!IsPortName(portName)) return {};
  const fs::path folder = ownFolder.empty() ? linkFolder : ownFolder;
  const fs::path place = folder / portName, present = PathOf(portName);
  std::error_code error;
  if (!present.empty()) return present == place && IsLeftLink(place) ? place.string() : std::string{};
  fs::create_directories(folder, error);
  return fs::symlink_status(place, error).type() == fs::file_type::not_found ? place.string() : std::string{};
}

std::vector<std::string> PortMap::Devices() const {
  std::vector<Device> found;
  ForEachIn(classFolder, [&found](const fs::directory_entry& entry) {
    if (Device device; Describe(entry.path(), device)) found.push_back(device);
  });
  std::ranges::sort(found, {}, &Device::Key);
  std::vector<std::string> paths;
  paths.reserve(found.size());
  for (const Device& device : found) paths.push_back((fs::path(deviceFolder) / device.name).string());
  return paths;
}

}  // namespace host
