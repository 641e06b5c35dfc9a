#include "host/DeviceRights.h"

#include <algorithm>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host {
namespace {

constexpr mode_t GroupUse = S_IRGRP | S_IWGRP, OthersUse = S_IROTH | S_IWOTH;

bool All(mode_t mode, mode_t bits) { return (mode & bits) == bits; }

// An identity that the databases have no name for goes by its number.
std::string NameOfUser(uid_t id) {
  const passwd* row = getpwuid(id);
  return row != nullptr ? row->pw_name : std::to_string(id);
}

std::string NameOfGroup(gid_t id) {
  const group* row = getgrgid(id);
  return row != nullptr ? row->gr_name : std::to_string(id);
}

bool ProcessIsIn(gid_t group) {
  const int count = getgroups(0, nullptr);
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(count, 0)));
  if (count > 0) getgroups(count, groups.data());
  return getegid() == group || std::ranges::find(groups, group) != groups.end();
}

bool DatabaseHasIn(const std::string& user, gid_t group) {
  const passwd* row = getpwnam(user.c_str());
  if (row == nullptr) return false;
  int count = 0;
  getgrouplist(user.c_str(), row->pw_gid, nullptr, &count);
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(count, 0)));
  getgrouplist(user.c_str(), row->pw_gid, groups.data(), &count);
  return std::ranges::find(groups, group) != groups.end();
}

}  // namespace

std::string AdviceOnRights(const DeviceRights& rights, const DeviceUser& user) {
  const bool byGroup = All(rights.mode, GroupUse);
  if (All(rights.mode, OthersUse) || (byGroup && user.inGroup)) {
    return "the system forbids it, although the rights of the device would allow it";
  }
  if (!byGroup || rights.rootGroup) return "only the user \"" + rights.owner + "\" may use it";
  const std::string members = "only members of the group \"" + rights.group + "\" may use it";
  if (user.enrolled) return members + ", and " + user.name + " is one from the next login on: log in again";
  return members + ": sudo adduser " + user.name + " " + rights.group + ", then log in again";
}

std::string WhyNoPermission(const std::string& path) {
  const std::string refused = "No permission to use " + path;
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) return refused + ": the folder that it lies in may not be entered";
  const std::string user = NameOfUser(geteuid());
  return refused + ": " +
         AdviceOnRights({NameOfUser(info.st_uid), NameOfGroup(info.st_gid), info.st_mode, info.st_gid == 0},
                        {user, ProcessIsIn(info.st_gid), DatabaseHasIn(user, info.st_gid)});
}

}  // namespace host
