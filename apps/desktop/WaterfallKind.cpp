// How a waterfall joins a window.
#include "desktop/Kinds.h"
#include "desktop/WaterfallView.h"
#include "widgets/Plot.h"
#include "widgets/PlotHandle.h"
#include "widgets/Waterfall.h"

namespace desktop {

void BindKind(Binder& binder, vc::Waterfall& waterfall) {
  Pane& pane = binder.PaneOf(waterfall.core);
  auto& above = dynamic_cast<PlotView&>(*binder.WidgetOf(waterfall.plot.core));
  auto* view = new WaterfallView(waterfall, above, pane.Container());
  pane.AddWide(view);
  const auto follow = [view] { view->Follow(); };
  binder.Bind(waterfall.core,
              {.widget = view, .showCaption = follow, .showValue = [follow](std::string_view) { follow(); }});
}

}  // namespace desktop
