// How a listing joins a window.
#include "desktop/Kinds.h"
#include "desktop/ListingView.h"

namespace desktop {

void BindKind(Binder& binder, vc::Listing& listing) {
  Pane& pane = binder.PaneOf(listing.core);
  auto* view = new ListingView(listing, pane.Container());
  int characters = 0;
  for (const vc::ListingColumn& column : listing.columns) characters += column.characters;
  pane.AddTall(nullptr, view, characters);
  binder.Bind(listing.core, {.widget = view, .showValue = [view](std::string_view) { view->Follow(); }});
}

}  // namespace desktop
