// Sound that goes on in time: from what is heard, through the engine, to where it is to go.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "unit/Unit.h"
#include "unit/sound/CleanedSound.h"
#include "unit/sound/Comparison.h"
#include "unit/sound/Engine.h"
#include "unit/sound/Peaks.h"
#include "unit/sound/SoundSink.h"
#include "unit/sound/SoundSource.h"

namespace unit::sound {

struct SoundOptions {
  std::string in;   // file that is heard; empty for the scene
  std::string out;  // file for what leaves the unit, empty for none
  bool looped = false;
  bool lenient = false;    // what is wrong with the file that is heard is only told
  std::uint64_t seed = 1;  // of the scene
};

class LiveSound {
 public:
  // Else a line that says what is wrong.
  static std::variant<std::unique_ptr<LiveSound>, std::string> Open(const SoundOptions& options);

  // From now on the unit's sound is this one, which must outlive it: it follows every command at the block
  // in which that comes, and answers what the host asks of it.
  void Attach(Unit& unit);

  // Processes all blocks for which it is time by then, in microseconds of the unit's time: those for which a
  // sound card that plays has room; else those that are ready from one that is heard; else those that end by
  // then. What it is more than half a second late with is left out.
  void RunUntil(std::int64_t now);
  // When the next block ends, as far as that can be told.
  std::int64_t NextBlock() const;

  // One block, whatever the time. Past the end of the input it is silence.
  void RunBlock();
  bool InputEnded() const;
  double Seconds() const { return seconds; }  // of sound so far

  // Another source or sink from now on; the filters and what they have learned stay as they are. A file
  // stands at its start and does not play. Gives an empty text, or a line that says what is wrong: then
  // nothing has changed.
  std::string SetSource(const SourceWish& wish);
  std::string SetSink(SinkKind kind, const std::string& name);
  const SoundSource& Source() const { return source; }
  SoundSource& Source() { return source; }
  const SoundSink& Sink() const { return sink; }
  // What the card's name is that plays; empty where none does.
  const std::string& CardName() const { return cardName; }
  // What a sound card plays as processed sound while this recording is heard: a file that it has become,
  // whose first sample belongs to that second of it; or, by nothing, what leaves the chain. Gives what
  // SetSource gives.
  std::string SetAfter(const std::string& path, double begins);
  void ClearAfter() { after.reset(); }
  const std::optional<CleanedSound>& After() const { return after; }
  // Of a file; null for what is none.
  const Peaks* Waveform() const { return peaks.get(); }

  // Blocks that came too late to or from the sound cards that are in use.
  std::uint64_t DropOuts() const;
  // Seconds from what is heard to its sounding.
  double Latency() const;

  // The end: completes the file that is written. Without it there is none.
  void Close();
  // Told of a line that says what is wrong with a file, of each once: nothing more is written after a
  // failure, and the sound that is heard goes on behind its flaw. And of a card that has gone: where it was
  // heard the source holds still, where it played it plays no more.
  std::function<void(const std::string&)> failed = [](const std::string&) {};
  // Nothing was wrong so far with either of the files that it was opened with that counts.
  bool Whole() const { return whole; }

  Engine engine;
  Comparison comparison{engine.SampleRate()};  // of what a sound card plays; a file gets the processed sound

 private:
  LiveSound(SoundSource heard, SoundOptions wanted);

  double BlockTime() const { return 1e6 * BlockFrames / engine.SampleRate(); }
  CardOutput* PlayedCard() const;
  CardInput* HeardCard() const;
  bool OnCards() const { return PlayedCard() != nullptr || HeardCard() != nullptr; }
  std::size_t FramesDue() const;
  void Follow(const Frame& frame);
  void TakeTables(const Synthesis& synthesis);
  void Settle();
  void FollowRate();
  // second: of the recording that is heard, at which the block begins; none while nothing runs.
  void Put(const Comparison::Input& heard, const Comparison::Stereo& processed, std::optional<double> second);
  std::string HeardFile() const;
  std::string WhyNotHeard(const std::string& path) const;
  void CheckCards();
  void RestCards();
  void LoseCard(const std::string& trouble);
  void Fail(const std::string& what);
  void EndSink();
  void TellFlaw(bool atEnd);

  SoundSource source;
  std::optional<CleanedSound> after;
  SoundSink sink;
  std::string cardName;
  std::unique_ptr<Peaks> peaks;
  SoundOptions options;
  Unit* attached = nullptr;
  bool changed = false;  // the unit holds something that the engine does not know
  int rate = 0;
  std::int64_t reached = 0;  // the time of the last call of RunUntil
  double done = 0;           // microseconds up to which the sound has been processed
  double seconds = 0;        // of sound
  bool whole = true, flawCounts = true;
  bool cardLost = false;  // that is heard
};

}  // namespace unit::sound
