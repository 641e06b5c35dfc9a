// What an adaptive filter has learned, through a file and back into the unit: heard at its output.
#include <algorithm>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include "SoundRun.h"
#include "TempFolder.h"
#include "model/Kinds.h"
#include "persist/MemSelect.h"
#include "unit/sound/LiveSound.h"

namespace sound_test::filter_file {
namespace {

using namespace measure;
using Direction = vc::MemSelect::Direction;

double Power(std::span<const float> sound) {
  double sum = 0;
  for (const float sample : sound) sum += double{sample} * double{sample};
  return sum;
}

// A canceller with the right channel as its reference, on a unit that hears nothing but what a test puts in.
struct CancellerRun : support::SoundRun {
  support::TempFolder folder;
  std::unique_ptr<unit::sound::LiveSound> live;
  std::uint32_t seed = 1;

  explicit CancellerRun(std::int16_t configMode) : SoundRun(configMode) {
    const std::string silence = folder.Path() + "/silence.wav";
    auto writer = std::get<unit::sound::SoundWriter>(unit::sound::SoundWriter::Create(silence, 12000));
    writer.Write(Signal(100), Signal(100));
    writer.Close();
    live = std::get<0>(unit::sound::LiveSound::Open({.in = silence, .out = ""}));
    live->Attach(unit.Now());
    record.workingFolder = folder.Path();
    Put(1, vc::FilterKind::RefCanceller);
    for (const auto& [field, text] :
         {std::pair{"ch2Taps", "600"}, {"ch2Mu", "64"}, {"ch2AutoNormalize", "1"}, {"filterAdapt", "1"}}) {
      Edit(field, text, 1);
    }
    Edit("adaptEnabled", "1");
    Settle();
  }

  // Noise that reaches the left channel over a way of its own as well: by how much of it is left behind the
  // canceller, dB.
  double Left(std::size_t size) {
    const Signal noise = Noise(size, 0.2F, ++seed);
    Signal left(size), right(size);
    for (std::size_t i = 10; i < size; ++i) left[i] = 0.6F * noise[i - 10];
    for (std::size_t i = 300; i < size; ++i) left[i] -= 0.3F * noise[i - 300];
    const double before = Power(left);
    Signal out(size), silence(1000);  // nothing of what was before is under the taps
    live->engine.Process(silence, silence, silence, silence);
    live->engine.Process(left, noise, out, right);
    return Decibels(std::sqrt(Power(out) / before));
  }
  // At the taps that the filter has in the record; in the unit, those of a whole stage work.
  unit::sound::Coefficients Learned() const {
    unit::sound::Coefficients learned = live->engine.Learned(1);
    learned.resize(600);
    return learned;
  }
  void Exchange(Direction direction) {
    session.windows.Get<vc::MemSelect>("MemSelect").Prepare(direction, vc::IndivFileType::RefCanceller, {});
    session.windows.Open("MemSelect");
    EXPECT_EQ(Type("txtFileName", "hall"), "");
    EXPECT_EQ(Click("btnOK"), "");
    EXPECT_EQ(Top().name, "MasterControl");
  }
};

TEST(FilterFile, WhatWasLearnedCancelsAgainAtOnceWithoutAdapting) {
  for (const std::int16_t configMode : {vc::ConfigMode::Mono, vc::ConfigMode::StereoLinked}) {
    SCOPED_TRACE(configMode);
    CancellerRun run(configMode);
    run.Left(20 * 12000);
    run.Edit("filterAdapt", "0", 1);
    run.Settle();
    ASSERT_LT(run.Left(12000), -25);
    const unit::sound::Coefficients learned = run.Learned();
    run.Exchange(Direction::Store);
    run.Click("btnFilterClear(1)");
    run.Settle();
    EXPECT_GT(run.Left(12000), -0.5);
    run.Edit("ch2Taps", "200", 1);  // and its stage gets another size
    run.Settle();
    run.Exchange(Direction::Recall);
    run.test.loop.RunFor(50);
    EXPECT_LT(run.Left(12000), -25);
    EXPECT_EQ(run.Learned(), learned);
    EXPECT_EQ(run.record.filterAdapt[1], 0);
    EXPECT_EQ(run.live->engine.Readings().unitMode & 0xFF, 0) << "nothing adapts";
  }
}

}  // namespace
}  // namespace sound_test::filter_file
