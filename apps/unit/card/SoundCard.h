// Live sound: from and to the sound cards of this computer, at the unit's rate.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace unit::sound {

// What the cards are opened by: no two names of a list are alike.
struct CardNames {
  std::vector<std::string> inputs, outputs;
};

// The cards that are there now, of all kinds that PortAudio knows. Both lists are empty where there is no
// sound device, and where the sound system does not answer within two seconds. A tenth of a second is usual;
// it may be called from any thread.
CardNames SoundCards();

struct OpenOutput;
struct OpenInput;

// Plays what is written. All calls come from one thread, which comes before ordinary ones while a card is
// open (Urgency); none of them waits for the card, but opening and closing, which take two seconds at most.
class CardOutput {
 public:
  // rate: the unit's, 7200..36000 Hz. Else why not, in words.
  static std::variant<std::unique_ptr<CardOutput>, std::string> Open(const std::string& name, int rate);
  ~CardOutput();

  // Goes on at another rate.
  void SetRate(int rate);
  // How many frames of the unit's rate can go now. A block of 256 is written whenever there is room for it,
  // and is due no sooner than by as many frames as are missing; from the first block on what comes too late
  // is a drop-out.
  std::size_t Room() const;
  // Two spans of the same length, at most Room(); what is beyond is lost. Full scale is 1.
  void Write(std::span<const float> left, std::span<const float> right);
  // What is written from now on follows on silence, which is no drop-out: after a pause by intention.
  void Rest();

  std::uint64_t DropOuts() const;
  // Empty while all is well; else what has become of the card, in words. It plays no more then.
  std::string Trouble() const;
  // Seconds from the writing of a block to its first sample's sounding.
  double Latency() const;

 private:
  explicit CardOutput(std::unique_ptr<OpenOutput> opened);
  std::unique_ptr<OpenOutput> open;
};

// Hears what the card hears; one channel alone is both. As with an output, but:
class CardInput {
 public:
  static std::variant<std::unique_ptr<CardInput>, std::string> Open(const std::string& name, int rate);
  ~CardInput();

  void SetRate(int rate);
  // How many frames of the unit's rate are there. A block is read whenever it is ready or, where something
  // else has a beat of its own (a card that plays), at that beat: the two need not agree exactly.
  std::size_t Ready() const;
  // Two spans of the same length, with zeros where nothing is there.
  void Read(std::span<float> left, std::span<float> right);
  // What was heard until now is forgotten, which is no drop-out: after a pause by intention.
  void Rest();

  std::uint64_t DropOuts() const;
  std::string Trouble() const;
  // Seconds from a block's first sample at the card to the reading of the block.
  double Latency() const;

 private:
  explicit CardInput(std::unique_ptr<OpenInput> opened);
  std::unique_ptr<OpenInput> open;
};

}  // namespace unit::sound
