#include "model/modDTMF.h"

#include <array>
#include <cstddef>

namespace vc {

int DtmfFrequency(int tone) {
  constexpr std::array hertz{697, 770, 852, 941, 1209, 1336, 1477, 1633};
  const auto place = static_cast<std::size_t>(tone - 1);  // none, and what is below, is past the end too
  return place < hertz.size() ? hertz[place] : hertz.back();
}

}  // namespace vc
