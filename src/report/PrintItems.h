// What is printed one below the other, from a place on a page on and over as many pages as it takes.
#pragma once

#include <functional>
#include <span>
#include <vector>

namespace vc {

// All lengths are twips.
struct PrintItem {
  int height;
  std::function<void(int top)> draw;
};

struct ItemPlace {
  int page = 1, top = 0;
  bool operator==(const ItemPlace&) const = default;
};

// Where each one stands, on the first page from `top` on; every page has room from `head` to `pageHeight`.
// What fits on no page has one to itself and goes beyond its foot.
std::vector<ItemPlace> PlaceItems(std::span<const PrintItem> items, int top, int head, int pageHeight);

// Draws them there. False where a page could not be begun.
bool DrawItems(std::span<const PrintItem> items, std::span<const ItemPlace> places,
               const std::function<bool()>& nextPage);

}  // namespace vc
