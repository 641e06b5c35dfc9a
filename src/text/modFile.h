// Small file routines: no call throws, the result tells.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vc {

// Adds each byte of the file to sum (modulo 2^32), up to the end of the file; false if it cannot be read.
bool FileChecksum(const std::string& path, std::int32_t& sum);

// True if the file can be opened for input.
bool FileExists(const std::string& path);

// Writes the text plus CR and LF, from the end of the file if append is -1, else over what was there.
// False where the file cannot be written.
bool WriteLogFile(const std::string& path, std::string_view text, std::int16_t append);

// Folder and file name, joined with the platform's separator; a separator that the name begins with does not
// count ("\ObjectLog.txt" is the file ObjectLog.txt in the folder).
std::string JoinPath(std::string_view folder, std::string_view name);

// The whole path of a file named from the folder in which the program was started. As it is where that folder
// is not known.
std::string WholePath(const std::string& name);

}  // namespace vc
