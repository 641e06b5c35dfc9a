// Why a device may not be opened, and what gives the right to it.
#pragma once

#include <string>

#include <sys/types.h>

namespace host {

// Who may read and write a device, as its owner, its group and its mode say.
struct DeviceRights {
  std::string owner, group;
  mode_t mode = 0;
  bool rootGroup = false;  // to be in that one would be a right to much more than the device
};

// Who wants to.
struct DeviceUser {
  std::string name;
  bool inGroup = false;   // this process is in the device's group
  bool enrolled = false;  // the user is in it, from the next login on at the latest
};

// What is to be said behind "No permission to use PATH", which is what must be done where anything can be.
std::string AdviceOnRights(const DeviceRights& rights, const DeviceUser& user);

// "No permission to use PATH", with the advice that this very device and this user call for.
std::string WhyNoPermission(const std::string& path);

}  // namespace host
