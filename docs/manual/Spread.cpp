#include "manual/Spread.h"

#include <vector>

#include "text/Convert.h"

namespace manual {
namespace {

std::vector<vc::Slider*> OthersOf(const vc::Slider& slider) {
  std::vector<vc::Slider*> others;
  for (const vc::AnyControl& control : slider.core.form.controls) {
    vc::Slider* other = vc::SliderIn(control);
    if (other != nullptr && other != &slider) others.push_back(other);
  }
  return others;
}

struct Ends {
  std::optional<double> least, most;
  Spread shown;

  void Take(const std::string& text) {
    const auto number = vc::ParseNumber(text);
    if (!number) return;
    if (!least || *number < *least) least = number, shown.lower = text;
    if (!most || *number > *most) most = number, shown.upper = text;
  }
};

void TakeBoth(Ends& ends, vc::Slider& slider, const vc::TextBox& box) {
  for (const double end : {slider.PositionMin(), slider.PositionMax()}) {
    slider.SetPosition(end);
    if (slider.Position() == end) ends.Take(box.Text());
  }
}

}  // namespace

std::optional<Spread> SpreadOf(vc::Slider& slider, const vc::TextBox& box) {
  Ends alone, all;
  TakeBoth(alone, slider, box);
  TakeBoth(all, slider, box);
  for (const bool upper : {false, true}) {
    // Twice: one may be held back by another that has not moved yet.
    for (int round = 0; round < 2; ++round) {
      for (vc::Slider* other : OthersOf(slider)) {
        other->SetPosition(upper ? other->PositionMax() : other->PositionMin());
      }
    }
    TakeBoth(all, slider, box);
  }
  if (!all.least || !alone.least) return {};
  all.shown.hangs = *all.least < *alone.least || *all.most > *alone.most;
  return all.shown;
}

}  // namespace manual
