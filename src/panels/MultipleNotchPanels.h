// The panels of multiple notches and multiple slots: sixteen rows that are set here and go out when they are
// built.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "panels/ResponseCurve.h"
#include "panels/SliderText.h"
#include "widgets/PlotHandle.h"

namespace vc {

struct MultipleKind {
  const char* form;
  const char* title;
  std::int16_t kind;
  const char *rowCaption, *lastCaption;  // the first one in front of the row's number
  const char* stopbandCaption;
  const FieldRow &frequency, &width;
};
extern const MultipleKind CtlMNotch, CtlMSlot;

// One notch or slot of the list, 0..15: at a frequency in Hz or out, so many bins of the filter's grid wide.
struct BandRow {
  BandRow(Panel& panel, ResponseCurve& response, Frame& table, const MultipleKind& kind, int number);

  Frame frame;
  SliderText frequency;
  SliderText width;
  PlotHandle handle;

  bool IsOut() const { return frequency.field.slider.Position() == 0; }
};

struct MultiplePanel {
  MultiplePanel(const PanelContext& context, const MultipleKind& multipleKind);

  static constexpr int Rows = 16;

  const MultipleKind& kind;
  Panel panel;
  Frame fraAll{panel.form, "fraAll", "", Arrangement::Columns};
  Frame fraFilter{fraAll, "fraFilter", ""};
  ResponseCurve response;
  Frame fraAtten;
  SliderText atten;
  Label lblBuilt{fraFilter, "lblBuilt", ""};
  Button btnBuild{fraFilter, "btnBuild", "Build"};
  Button btnDestroy{fraFilter, "btnDestroy", "Destroy"};
  Frame fraRows{fraAll, "fraRows", "", Arrangement::Table};
  std::array<BandRow, Rows> rows;
  PlotHandle stopHandle;
  PanelFoot foot{panel, "btnFilterActive", "Active"};

 private:
  template <int... Numbers>
  std::array<BandRow, Rows> MakeRows(std::integer_sequence<int, Numbers...> numbers);
  void OfferHandles();
  void Describe();
  ResponseCurve::Setting Around() const;
  double AttenuationDb() const;
  // As it is built and, where the rows that are set would make another one, that one behind it.
  std::vector<PlotTrace> Curves(const PlotAxis& frequencies);
  PlotTrace BuiltCurve(const PlotAxis& frequencies);
  void Build();
  void Destroy();
  void ShowWhetherBuilt();

  // All that the curve of the built filter depends on, and the curve: while rows are moved it stays.
  struct Built {
    Row<std::int16_t, 1, Rows> frequency, width;
    std::int16_t atten, taps;
    float sampleRate;
    PlotAxis frequencies;
    bool operator==(const Built&) const = default;
  };
  std::optional<Built> drawn;
  PlotTrace drawnCurve;
};

}  // namespace vc
