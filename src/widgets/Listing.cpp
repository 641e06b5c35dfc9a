#include "widgets/Listing.h"

#include <algorithm>
#include <utility>

namespace vc {

Listing::Listing(Place place, const std::string& name, const std::string& caption,
                 std::vector<ListingColumn> shown)
    : core(place, name, NoIndex, caption), columns(std::move(shown)) {
  place.form->controls.emplace_back(this);
}

void Listing::Roll(std::size_t nowFirst, std::size_t nowBehind) {
  if (nowFirst == first && nowBehind == behind) return;
  first = std::max(first, nowFirst);
  behind = std::max(behind, std::max(nowBehind, first));
  core.Changed("Rows");
}

void Listing::Replace(std::size_t nowFirst, std::size_t nowBehind) {
  first = nowFirst;
  behind = std::max(nowFirst, nowBehind);
  ++edition;
  core.Changed("Rows");
}

std::string Listing::Text() const {
  std::string text;
  for (const ListingColumn& column : columns) text += (text.empty() ? "" : "\t") + column.heading;
  for (std::size_t number = first; number < behind; ++number) {
    char before = '\n';
    for (const std::string& cell : cells(number)) text.append(1, std::exchange(before, '\t')).append(cell);
  }
  return text;
}

}  // namespace vc
