// Every kind that has a picture, set on the host, sent over the line and measured in the unit's sound: what
// the picture shows is what is heard.
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "EvenFrequencies.h"
#include "SoundRun.h"
#include "model/FilterResponse.h"
#include "model/Kinds.h"

namespace sound_test::response {
namespace {

using namespace measure;
using support::SoundRun;
using vc::BlockFamily;
using vc::ConfigMode;
using vc::EqKind;
using vc::FilterKind;

struct FieldEdit {
  std::string field, text;
  int element = 0;
};

// A block of a kind, what is set in it, and how far down and up it is then asked to go, in dB.
struct Shape {
  std::string name;
  BlockFamily family;
  std::int16_t kind;
  std::vector<FieldEdit> edits;
  std::optional<double> bottom = {};  // none where it is what the transform makes of it
  double top = 0;
};

const std::vector<Shape>& Shapes() {
  constexpr auto filter = BlockFamily::Filter;
  static const std::vector<Shape> shapes{
      {"comb",
       filter,
       FilterKind::Comb,
       {{"combFreq", "100"}, {"combLimit", "1000"}, {"combDepth", "40"}},
       -40},
      {"odd comb, shallow", filter, FilterKind::Comb, {{"combHarmonic", "1"}, {"combDepth", "10"}}, -10},
      {"even comb, an odd period",
       filter,
       FilterKind::Comb,
       {{"combHarmonic", "2"}, {"combFreq", "45"}},
       -10},
      {"slow comb",
       filter,
       FilterKind::Comb,
       {{"combHarmonic", "0"}, {"combFreq", "800"}, {"combLimit", "2500"}, {"combDepth", "60"}},
       -60},
      {"odd comb, an odd period", filter, FilterKind::Comb, {{"combHarmonic", "1"}, {"combFreq", "21"}}, -60},
      {"inverse comb",
       filter,
       FilterKind::InverseComb,
       {{"combHarmonic", "0"}, {"combFreq", "60"}, {"combLimit", "2000"}, {"combDepth", "30"}},
       -30},
      {"odd inverse comb",
       filter,
       FilterKind::InverseComb,
       {{"combHarmonic", "1"}, {"combDepth", "60"}},
       -60},
      {"even inverse comb",
       filter,
       FilterKind::InverseComb,
       {{"combHarmonic", "2"}, {"combDepth", "10"}},
       -10},
      {"notch",
       filter,
       FilterKind::Notch,
       {{"notchFreq", "1000"}, {"notchWidth", "400"}, {"notchAtten", "40"}},
       -40},
      {"notch as narrow as the stage holds", filter, FilterKind::Notch, {{"notchWidth", "32767"}}, -40},
      {"wide notch",
       filter,
       FilterKind::Notch,
       {{"notchFreq", "2000"}, {"notchWidth", "60"}, {"notchAtten", "60"}},
       -60},
      {"slot",
       filter,
       FilterKind::Slot,
       {{"slotFreq", "1500"}, {"slotWidth", "300"}, {"slotAtten", "45"}},
       -45},
      {"multiple notch",
       filter,
       FilterKind::MultipleNotch,
       {{"mnotchFreq", "800", 1},
        {"mnotchWidth", "9", 1},
        {"mnotchFreq", "2000", 7},
        {"mnotchWidth", "1", 7},
        {"mnotchFreq", "20", 16},
        {"mnotchWidth", "4", 16},
        {"filterAtten", "32439"}}},
      {"multiple notch, taken out by a half", filter, FilterKind::MultipleNotch, {{"filterAtten", "16384"}}},
      {"multiple slot",
       filter,
       FilterKind::MultipleSlot,
       {{"mslotFreq", "700", 1},
        {"mslotWidth", "40", 1},
        {"mslotFreq", "2500", 2},
        {"mslotWidth", "15", 2},
        {"filterAtten", "31731"}}},
      {"three sections",
       filter,
       FilterKind::TriParametric,
       {{"parCenter", "0.05", 0},
        {"parRatio", "6", 0},
        {"parBoost", "-40", 0},
        {"parCenter", "0.15", 1},
        {"parRatio", "2.5", 1},
        {"parBoost", "9", 1},
        {"parCenter", "0.4", 2},
        {"parRatio", "3", 2},
        {"parBoost", "-60", 2},
        {"parActive", "0", 3},
        {"parLevel", "172"}},
       -70,
       -1},
      {"a section out",
       filter,
       FilterKind::TriParametric,
       {{"parActive", "0", 2}, {"parLevel", "192"}},
       -40,
       9},
      {"two sections",
       BlockFamily::Equalizer,
       EqKind::DualParametric,
       {{"eqParCenter", "0.3", 0},
        {"eqParRatio", "1", 0},
        {"eqParBoost", "-25", 0},
        {"eqParCenter", "0.01", 1},
        {"eqParRatio", "4", 1},
        {"eqParBoost", "16", 1},
        {"eqParActive", "0", 2},
        {"eqParActive", "0", 3}},
       -25,
       16},
  };
  return shapes;
}

// Where a block stands, and from which output it is heard.
struct Place {
  std::int16_t configMode;
  int side;   // 1 left, 2 right
  int heard;  // the output, 0 left, 1 right
};
constexpr Place Places[] = {
    {ConfigMode::Mono, 1, 0}, {ConfigMode::StereoLinked, 1, 1}, {ConfigMode::StereoIndependent, 2, 1}};

int NumberOf(const Shape& shape, const Place& place) {
  const bool rightFilter = shape.family == BlockFamily::Filter && place.side == 2;
  return rightFilter ? vc::PairStages + 1 : place.side;
}

// In place of what stood on that side before.
void Set(SoundRun& run, const Shape& shape, const Place& place) {
  const bool filter = shape.family == BlockFamily::Filter;
  const int stage = place.side == 2 ? vc::PairStages + 1 : 1;
  const int number = filter ? stage : place.side;
  run.Edit("filterActive", filter ? "1" : "0", stage);
  run.Edit("eqActive", filter ? "0" : "1", place.side);
  run.Edit(filter ? "filterType" : "eqType", std::to_string(shape.kind), number);
  for (const FieldEdit& edit : shape.edits) {
    run.Edit(edit.field, edit.text, filter ? number : number + 8, edit.element);
  }
  if (filter) run.record.filterBuilt[number] = -1;  // as the button sets it
}

Signal Heard(SoundRun& run, int output) {
  constexpr float height = 0.125F;  // nothing is clipped
  Signal impulse(4096);
  impulse[0] = height;
  Signal response = run.Through({impulse, impulse})[static_cast<std::size_t>(output)];
  for (float& sample : response) sample /= height;
  return response;
}

void ExpectHeardAsDrawn(SoundRun& run, const Shape& shape, const Place& place) {
  const int number = NumberOf(shape, place);
  const vc::BlockKind block{shape.family, number, shape.kind};
  Set(run, shape, place);
  run.Take();
  std::vector<double> frequencies = vc::support::EvenFrequencies(run.record, 101);
  const std::vector<double> telling = TellingFrequencies(run.record, block);
  frequencies.insert(frequencies.end(), telling.begin(), telling.end());
  const std::vector<float> drawn = FilterResponse(run.record, block, frequencies);
  ASSERT_EQ(drawn.size(), frequencies.size());
  if (shape.bottom) {
    EXPECT_NEAR(*std::min_element(drawn.begin(), drawn.end()), *shape.bottom, 1);
    EXPECT_NEAR(*std::max_element(drawn.begin(), drawn.end()), shape.top, 1);
  }
  const Signal response = Heard(run, place.heard);
  for (std::size_t i = 0; i < drawn.size(); ++i) {
    ASSERT_NEAR(GainAt(response, frequencies[i], run.Rate()), drawn[i], 0.3) << frequencies[i] << " Hz";
  }
}

TEST(Sound, EveryKindIsHeardAsItsPictureShowsIt) {
  for (const Place& place : Places) {
    for (const char* bandwidth : {"0", "1", "5"}) {
      SoundRun run(place.configMode, bandwidth);
      run.Edit("numFilters", "1");
      for (const Shape& shape : Shapes()) {
        SCOPED_TRACE(shape.name + ", bandwidth " + bandwidth + ", mode " + std::to_string(place.configMode));
        ExpectHeardAsDrawn(run, shape, place);
      }
    }
  }
}

}  // namespace
}  // namespace sound_test::response
