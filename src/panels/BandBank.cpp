#include "panels/BandBank.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "panels/BandCaptions.h"

namespace vc {

BandBank::BandBank(Panel& owner, BandTable edited)
    : table(std::move(edited)),
      fraBands(owner.form, "fraBands", table.caption, Arrangement::Bank),
      bands(MakeBands(owner)),
      fraTogether(owner.form, "fraTogether", "", Arrangement::Columns),
      btnReduce(table.reduces ? std::make_unique<Button>(fraTogether, "btnReduce", "Reduce") : nullptr),
      panel(owner) {
  fraBands.headings = {"Hz"};
  for (const std::string& number : table.scale) fraBands.scale.push_back({table.law.parse(number), number});
  panel.parameters.emplace_back([this] { ShowCaptions(); });
  BindButtons();
}

std::vector<std::unique_ptr<SliderText>> BandBank::MakeBands(Panel& owner) {
  std::vector<std::unique_ptr<SliderText>> made;
  for (int band = 0; band < BandCount; ++band) {
    made.push_back(std::make_unique<SliderText>(owner, fraBands, "", "sldrGain", "txtGain", table.law,
                                                Fixed(table.range.lower, table.range.upper),
                                                BandOf(owner, band), band));
    made.back()->entry.text.widest = table.law.show(table.range.lower);
  }
  return made;
}

Parameter BandBank::BandOf(Panel& owner, int band) {
  Parameter parameter = InRecord(owner, {&table.row, [this, band](const SystemSettings& settings) {
                                           return std::array{table.entries(settings).front(), band};
                                         }});
  parameter.store = [this, band](double value, const ControlCore& source, const std::string& /*title*/) {
    Move(band, value, source);
  };
  return parameter;
}

void BandBank::BindButtons() {
  const double lower = table.range.lower, upper = table.range.upper;
  btnMaximize.clicked = [this, lower] { MoveAll(btnMaximize, Heard::AsItIs, [=](double) { return lower; }); };
  btnZero.clicked = [this, upper] { MoveAll(btnZero, Heard::SwitchedIn, [=](double) { return upper; }); };
  if (btnReduce) {
    btnReduce->clicked = [this] {
      MoveAll(*btnReduce, Heard::SwitchedIn, [this](double position) { return position - table.law.step; });
    };
  }
  btnNormalize.clicked = [this, upper] {
    double highest = PositionOf(0);
    for (int band = 1; band < BandCount; ++band) highest = std::max(highest, PositionOf(band));
    MoveAll(btnNormalize, Heard::SwitchedIn, [=](double position) { return position + upper - highest; });
  };
  btnStore.clicked = [this] { Exchange(TableExchange::Store); };
  btnRecall.clicked = [this] { Exchange(TableExchange::Recall); };
}

void BandBank::ShowCaptions() {
  for (int band = 0; band < BandCount; ++band) {
    const std::string caption = BandCaption(FrequencyOf(band));
    SliderText& shown = *bands.at(static_cast<std::size_t>(band));
    shown.field.slider.core.SetCaption(caption);
    shown.entry.text.core.SetCaption(caption);
  }
}

std::vector<ReportLine> BandBank::Report(const char* words, const std::function<ReportPiece(int band)>& value,
                                         const char* ending) const {
  std::vector<ReportLine> lines{ReportLine("Slider Settings:")};
  for (int band = 0; band < BandCount; ++band) {
    const Slider& slider = bands.at(static_cast<std::size_t>(band))->slider;
    const ReportPiece frequency([&slider] { return slider.core.Caption(); });
    lines.push_back(ReportLine(frequency, words, value(band), ending).Deeper());
  }
  return lines;
}

double BandBank::FrequencyOf(int band) const {
  return BandFrequencies(panel.settings.bandwidthIndex)[static_cast<std::size_t>(band)];
}

double BandBank::PositionOf(int band) const {
  const double stored = NumberOf(panel.settings, table.row, table.entries(panel.settings).front(), band);
  return std::clamp(table.law.position(stored), table.range.lower, table.range.upper);
}

// Positions that are no whole numbers come to rest at millionths, so that there and back leads to where it
// was.
void BandBank::Add(std::vector<FieldEdit>& edits, int band, double position) const {
  constexpr double fine = 1e6;
  const double rounded = std::round(position * fine) / fine;
  const double value = table.law.stored(std::clamp(rounded, table.range.lower, table.range.upper));
  for (const int entry : table.entries(panel.settings)) edits.emplace_back(&table.row, entry, band, value);
}

void BandBank::Move(int band, double value, const ControlCore& source) {
  std::vector<FieldEdit> edits;
  for (const int entry : table.entries(panel.settings)) edits.emplace_back(&table.row, entry, band, value);
  const bool linked = chkLinkSliders.Value();
  const double distance = table.law.position(value) - PositionOf(band);
  for (int other = 0; linked && other < BandCount; ++other) {
    if (other != band) Add(edits, other, PositionOf(other) + distance);
  }
  panel.Edit(source, linked ? table.caption : source.AccessibleName(), edits);
}

void BandBank::MoveAll(const Button& button, Heard heard,
                       const std::function<double(double position)>& moved) {
  const std::string& title = button.core.Caption();
  panel.context.edits.history.Edit(title, "", [&](const SystemSettings&) {
    std::vector<FieldEdit> edits;
    for (int band = 0; band < BandCount; ++band) Add(edits, band, moved(PositionOf(band)));
    panel.Edit(button.core, title, edits);
    if (heard == Heard::SwitchedIn) panel.SwitchIn();
  });
}

void BandBank::Exchange(TableExchange::Direction direction) {
  panel.context.exchangeTable({direction, table.fileType, [this] {
                                 panel.Fill();
                                 panel.SwitchIn();
                               }});
}

BandHandles::BandHandles(Plot& plot, BandBank& bank, const HandleAxis::Law& level,
                         const HandleAxis::Law& position) {
  for (int band = 0; band < BandCount; ++band) {
    handles.push_back(
        std::make_unique<PlotHandle>(plot, "Band " + std::to_string(band + 1),
                                     HandleAxis::Standing([&bank, band] { return bank.FrequencyOf(band); }),
                                     HandleAxis(&bank.SliderOf(band), level, position)));
  }
}

}  // namespace vc
