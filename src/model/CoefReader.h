// Reads back from the unit the coefficients that it is running in a filter stage, block by block.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "link/modDeviceComm.h"
#include "model/SystemSettings.h"
#include "text/Wire.h"

namespace vc {

// What the blocking read needs of the session around it.
struct CoefHooks {
  Wire<void(bool on)> mainTimer;
  Wire<bool()> mainTimerEnabled;
  // Lets what is due run, without waiting.
  Wire<void()> runEvents;
  // Brings the unit up to the record.
  Wire<void()> sendChanges;
  Wire<void()> blockRead;  // one more of a blocking read
  // The program is to end.
  Wire<bool()> ending;
};

// Coefficients by tap, -2^23..2^23-1, where 2^23 is full scale.
using CoefSpan = std::span<std::int32_t, CoefCapacity>;

struct CoefReader {
  CoefReader(SystemSettings& record, modDeviceComm& link, CoefHooks wires);

  CoefHooks hooks;
  std::array<std::int32_t, CoefCapacity> CoefReadback{};  // of the stage on display
  std::array<bool, CoefBlocks> blocksRead{};              // which blocks of it have come
  std::int16_t CoefBlockCounter = 0;                      // 0..31, block being read
  std::int16_t coefFilterIndex = 0;                       // stage on display, counted from 0
  unsigned revision = 0;                                  // counts the changes of both

  // One step of the polled request for the next block of a stage (1..6, the nearest where it is none). The
  // blocks go round by the stage's size; a step with no reply outstanding moves the counter on and asks, so
  // that a counter of 0 makes block 1 of a large stage the first one. A block that has not come, or that was
  // asked of another stage, is asked for again. False where the port is closed.
  bool RequestCoefBlock(int stage, std::int16_t& blockCounter, CoefSpan destination);
  // Puts a stage (1..6) on display; what was read of another one goes.
  void Display(int stage);
  // What was read of the stage on display goes, and its reading begins anew.
  void Clear();
  // One step for the stage on display.
  void PollDisplayed() { RequestCoefBlock(coefFilterIndex + 1, CoefBlockCounter, CoefReadback); }

  // Reads all coefficients of a stage, with its adaptation frozen and the main timer held off meanwhile.
  // Events run between the steps. False, and the destination as it was, for no such stage, a closed port, a
  // program that ends, a call inside another one, the first block that does not
  // come, or a stage that changes its size under the read.
  bool ReadFilterCoefficients(int stage, CoefSpan destination);

 private:
  std::int16_t Freeze(int entry);
  void Thaw(int entry, std::int16_t adaptation);
  void SetAdaptation(int entry, std::int16_t adaptation);
  void HoldTimer();
  bool ReadBlocks(int stage, CoefSpan blocks);
  void TakeBlock(std::int16_t block, CoefSpan destination);
  bool ReadNextBlock(int stage, std::int16_t& blockCounter, CoefSpan blocks);

  SystemSettings& settings;
  modDeviceComm& device;
  bool reading = false;
  bool owed = false;         // the block that was asked for last has not come
  std::uint16_t asked = 0;   // the address of it
  bool timerWanted = false;  // the main timer ran before a blocking read, or was started under it
};

// The coefficients (1..8192) of a filter stage (1..6): the taps of an adaptive filter, the stage's size for
// any other kind. In Stereo Linked a right stage has those of its left partner.
int CoefficientCount(const SystemSettings& settings, int stage);

}  // namespace vc
