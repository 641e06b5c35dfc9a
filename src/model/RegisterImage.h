// What the unit is to be: its registers and per-stage programs as the settings record asks for them. Entries
// are by physical position: 1..6 filter stages, 7 and 8 broadband stages, 9 and 10 equalizers.
#pragma once

#include <cstdint>

#include "model/Rows.h"
#include "model/SynthesisBlock.h"
#include "model/SystemSettings.h"

namespace vc {

inline constexpr int FilterPositions = 6;
inline constexpr int BroadbandPosition = 7;  // of broadband stage 1; the right one follows
inline constexpr int EqualizerPosition = 9;  // of equalizer 1; the right one follows

namespace dsp {
inline constexpr std::int16_t Adaptive = 0;  // also what runs coefficients or noise reduction
inline constexpr std::int16_t Finite = 1;
inline constexpr std::int16_t Parametric = 2;
inline constexpr std::int16_t Compressor = 3;
inline constexpr std::int16_t Idle = 7;
}  // namespace dsp

// Algorithms of the on-board synthesis; 0 means that the coefficients come from the host.
namespace algorithm {
inline constexpr std::int16_t FromHost = 0;
inline constexpr std::int16_t TwentyBand = 8;
inline constexpr std::int16_t Parametric = 9;
inline constexpr std::int16_t Compressor = 11;
}  // namespace algorithm

inline constexpr std::int16_t NoKind = -1;       // of a position that is idle
inline constexpr std::int16_t UnknownKind = -2;  // of a position that was never computed

template <typename T>
using PerFilterPosition = Row<T, 1, FilterPositions>;
template <typename T>
using PerRoutedPosition = Row<T, 1, 8>;
template <typename T>
using PerPosition = Row<T, 1, 10>;

struct RegisterImage {
  std::int16_t configMode = UnknownKind;  // the layout that the image was last computed for
  PerPosition<std::int16_t> stageKind;    // the kind that a position was last computed for
  // The kind that a position last ran, and a flag that it ran a finished table: a filter that is taken out
  // and put back has its table again.
  PerFilterPosition<std::int16_t> heldKind, heldTable;
  PerPosition<std::int16_t> stageClass;
  PerPosition<std::int16_t> stageAlgorithm;
  PerPosition<std::uint16_t> stageParam1, stageParam2, stageParam3, stageParam4;
  PerPosition<StageBlock> stageBlock;   // the parameters as they go out
  PerPosition<std::int16_t> stageSize;  // taps minus one

  PerRoutedPosition<std::int16_t> stageAdaptive;
  PerRoutedPosition<std::int16_t> stageNormalize;
  PerRoutedPosition<std::int16_t> stageAdaptSelect;
  PerRoutedPosition<std::int16_t> stageThreshold;  // linear, 32767 is full scale
  PerRoutedPosition<std::int16_t> stageAtten;
  PerRoutedPosition<std::int16_t> stageGain;
  PerRoutedPosition<std::int16_t> stageSrcA, stageSrcB, stageSrcC;  // source codes, 5 bits
  PerRoutedPosition<std::int16_t> stageOut;                         // what the next stage listens to

  PerFilterPosition<std::int16_t> stageMu;
  PerFilterPosition<std::int16_t> stageBlocks;
  PerFilterPosition<std::int16_t> stageSpan;
  PerFilterPosition<std::int16_t> stageFreeze;      // copy of filterAdapt: 0 is frozen
  PerFilterPosition<std::int16_t> stageNeedsReset;  // flags, -1 where set
  PerPosition<std::int16_t> stageNeedsCoefs;

  PerSide<std::int16_t> equalizerSource;  // what feeds the channel's equalizer
  PerSide<std::int16_t> outputSource;     // what the channel's output carries
};

// Fills the image of one filter position from a stage of the record. kind is NoKind for an idle position.
// Sources are not touched: RouteChain works them out for all positions together.
void ComputeStageRegisters(RegisterImage& image, const SystemSettings& settings, int stage, int position,
                           std::int16_t kind);

// The same for an equalizer (1, 2) and a broadband stage (1, 2) by its kind; source is the record's entry
// that it takes its values from, which in Stereo Linked is the left one for both sides.
void ComputeEqualizer(RegisterImage& image, const SystemSettings& settings, int equalizer, int source,
                      std::int16_t kind);
void ComputeBroadband(RegisterImage& image, const SystemSettings& settings, int broadband, int source,
                      bool idle);

// Sources, outputs and what feeds equalizers and outputs, for the whole chain.
void RouteChain(RegisterImage& image, const SystemSettings& settings);

// Brings the image up to the record: computes every position whose stage was marked, cleared or changed its
// kind, takes back those marks, and routes the chain. Depths that a block bounds are corrected in the record.
void RefreshImage(RegisterImage& image, SystemSettings& settings);

// Nothing of what the unit holds is known: every position will be computed anew.
void ForgetImage(RegisterImage& image);

// The stage of the record that runs at a filter position, by the layout of the chain.
int StageAtPosition(std::int16_t configMode, int position);

}  // namespace vc
