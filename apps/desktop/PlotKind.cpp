// How plots and progress bars join a window.
#include "desktop/HandleView.h"
#include "desktop/Kinds.h"
#include "desktop/PlotView.h"
#include "desktop/ProgressBarView.h"
#include "widgets/Plot.h"
#include "widgets/ProgressBar.h"

namespace desktop {
namespace {

// Without the dot, which moves many times a second.
std::string Spoken(const vc::Plot& plot) {
  if (plot.told) return plot.told();
  const std::string pointed = plot.CursorText();
  return pointed.empty() ? plot.Summary() : pointed;
}

}  // namespace

void BindKind(Binder& binder, vc::Plot& plot) {
  Pane& pane = binder.PaneOf(plot.core);
  auto* view = new PlotView(
      plot, pane.Container(), binder.Rasters(),
      [&binder](const vc::ControlCore& core, const auto& action) { binder.Operate(core, action); });
  pane.AddWide(view);
  binder.Bind(plot.core, {.widget = view,
                          .showCaption = [view] { view->Follow(); },
                          .showValue =
                              [view, &plot](std::string_view property) {
                                view->Follow();
                                const bool live =
                                    plot.told && property != "Cursor" && property != EveryProperty;
                                if (!live) Binder::Speak(view, Spoken(plot), {});
                              }});
  for (HandleView* handle : view->Handles()) binder.TakeInOrder(handle);
}

void BindKind(Binder& binder, vc::ProgressBar& bar) {
  Pane& pane = binder.PaneOf(bar.core);
  auto* view = new ProgressBarView(bar, pane.Container());
  QLabel* caption = CaptionOf(pane, view);
  if (bar.Horizontal()) {
    pane.AddField({caption, view});
  } else {
    pane.AddTall(caption, view, 0);
  }
  binder.Bind(bar.core,
              {.widget = view, .caption = caption, .showValue = [view, &bar](std::string_view property) {
                 if (property == "Orientation" || property == EveryProperty) view->Arrange();
                 view->update();
                 Binder::Speak(view, bar.Reading(), {});
               }});
}

}  // namespace desktop
