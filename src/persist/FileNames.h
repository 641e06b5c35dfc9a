// Names of files as the operator types them. They are bytes: a name that is no UTF-8 is as good as any.
#pragma once

#include <string>
#include <string_view>

namespace vc {

// True where something stands before the extension; it is compared without regard to case.
bool HasExtension(std::string_view name, std::string_view extension);
// The name with the extension, which is added where it is not there. Blanks at its end do not count.
std::string WithExtension(std::string name, std::string_view extension);
// Nothing, or nothing but blanks.
bool IsBlank(std::string_view text);
// The last part of a path, empty where the path names no file ("folder/", "..").
std::string LastPart(const std::string& path);
// All of a path but its last part.
std::string FolderOf(const std::string& path);
// A path from the folder on; a name that begins at the root stands for itself.
std::string PathFrom(const std::string& folder, const std::string& name);

}  // namespace vc
