#include "report/PrintItems.h"

#include <cstddef>

namespace vc {

std::vector<ItemPlace> PlaceItems(std::span<const PrintItem> items, int top, int head, int pageHeight) {
  std::vector<ItemPlace> places;
  places.reserve(items.size());
  ItemPlace next{1, top};
  for (const PrintItem& item : items) {
    if (next.top > head && next.top + item.height > pageHeight) next = {next.page + 1, head};
    places.push_back(next);
    next.top += item.height;
  }
  return places;
}

bool DrawItems(std::span<const PrintItem> items, std::span<const ItemPlace> places,
               const std::function<bool()>& nextPage) {
  int page = 1;
  for (std::size_t i = 0; i < items.size(); ++i) {
    for (; page < places[i].page; ++page) {
      if (!nextPage()) return false;
    }
    items[i].draw(places[i].top);
  }
  return true;
}

}  // namespace vc
