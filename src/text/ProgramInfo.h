// What the program calls itself. Every message that names the unit inserts the title.
#pragma once

#include <string>

namespace vc {

inline const std::string ApplicationTitle = "Veltrana";

// Who makes the unit, and where they are found.
inline const std::string MakerName = "NRV";
inline const std::string MakerSite = "https://www.nrv.example/";

inline constexpr int VersionMajor = 1;
inline constexpr int VersionMinor = 0;
inline constexpr int VersionRevision = 0;

inline std::string VersionText() {
  return std::to_string(VersionMajor) + "." + std::to_string(VersionMinor) + "." +
         std::to_string(VersionRevision);
}

}  // namespace vc
