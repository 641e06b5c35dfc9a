// The entries of a folder, one by one.
#pragma once

#include <filesystem>
#include <system_error>

namespace host {

// False where the folder cannot be read to its end. A plain loop over the iterator would throw there.
template <typename Visit>
bool ForEachIn(const std::filesystem::path& folder, Visit visit) {
  std::error_code error;
  const std::filesystem::directory_iterator end;
  for (std::filesystem::directory_iterator entry(folder, error); !error && entry != end;
       entry.increment(error)) {
    visit(*entry);
  }
  return !error;
}

}  // namespace host
