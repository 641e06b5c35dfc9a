// Who holds a device open.
#pragma once

#include <string>

namespace host {

// " by NAME (process N)" for every other process that is known to hold the path open, joined with " and";
// empty where none can be seen.
std::string UsersOf(const std::string& path);

}  // namespace host
