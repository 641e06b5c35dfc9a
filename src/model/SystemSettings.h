// The one record of what the operator has configured on the unit. A single instance lives for the whole run;
// every panel edits it in place. The table of its fields, with ranges and defaults, is in Fields.h.
#pragma once

#include <cstdint>
#include <string>

#include "model/Loans.h"
#include "model/Rows.h"

namespace vc {

inline constexpr int FilterStages = 6;  // stages 1..6; stage s + 3 is the right partner of s in stereo
inline constexpr int PairStages = 3;    // filter stages of one channel in the stereo modes
inline constexpr int OffMode = 9999;    // BroadbandParms::mode of a record that is switched off as a whole

// Noise smoothing of a broadband stage, laid out as the 48 bytes that go to the unit.
struct BroadbandParms {
  std::int32_t mode = 0;  // 0..1, or OffMode
  std::int32_t span = 0;  // smoothing span in points
  float coefA = 0;        // 0.0..1.0, as the four below
  float coefB = 0;
  float coefC = 0;
  float coefD = 0;
  float coefE = 0;
  Row<std::uint8_t, 0, 19> flags;  // reserved

  bool operator==(const BroadbandParms&) const = default;
};

template <typename T>
using PerStage = Row<T, 1, FilterStages>;
template <typename T>
using PerEqualizer = Row<T, 9, 10>;  // by stage number: 9 left or mono, 10 right
template <typename T>
using PerSide = Row<T, 1, 2>;  // by equalizer or broadband number: 1 left or mono, 2 right

// Where settingsChanged stands at it, the next tick brings the unit up to the record; from above it counts
// down.
inline constexpr std::int16_t SendAt = 5;

// Plain data. Integers are 16-bit as in the file and on the wire; a field's unit and range are in its row of
// the table of fields. A fresh object holds zeros until InitSettings runs.
struct SystemSettings {
  // Connection and chain.
  std::string setupDescription;
  std::string workingFolder;
  std::int16_t comPort = 0;
  std::int16_t baudIndex = 0;
  std::int16_t numFilters = 0;  // per channel
  std::int16_t configMode = 0;
  std::int16_t bandwidthIndex = 0;
  std::int16_t channelSwap = 0;
  std::int16_t adaptEnabled = 0;
  std::int16_t procEnabled = 0;
  std::int16_t levelControlsShown = 0;
  PerSide<std::int16_t> levelControl;  // half decibels, 192 is 0 dB

  // Input and output processors.
  std::int16_t ihpfEnabled = 0;
  std::int16_t ihpfCutoff = 0;  // Hz
  std::int16_t ohpfEnabled = 0;
  std::int16_t ohpfCutoff = 0;  // Hz
  std::int16_t agcEnabled = 0;
  std::int16_t agcLinked = 0;
  std::int16_t agcRelease = 0;
  std::int16_t agcGain = 0;
  std::int16_t limiterEnabled = 0;
  std::int16_t limiterLinked = 0;
  std::int16_t limiterRelease = 0;
  std::int16_t limiterThreshold = 0;

  // Analyzer display.
  std::int16_t specAverages = 0;
  std::int16_t specDisplayMode = 0;
  std::int16_t specRun = 0;
  std::int16_t blueGain = 0;  // dB
  std::int16_t blueSignal = 0;
  std::int16_t yellowGain = 0;  // dB
  std::int16_t yellowSignal = 0;
  std::int16_t averagerMode = 0;

  // Kinds and switches of the chain.
  PerStage<std::int16_t> filterType;
  PerStage<std::int16_t> filterActive;
  PerStage<std::int16_t> filterAdapt;
  PerSide<std::int16_t> eqType;
  PerSide<std::int16_t> eqActive;
  PerSide<std::int16_t> broadbandType;
  PerSide<std::int16_t> broadbandActive;

  // One-channel adaptive filter.
  PerStage<std::int16_t> ch1Taps;
  PerStage<std::int16_t> ch1Mu;        // 2^-14
  PerStage<std::int16_t> ch1PredSpan;  // samples
  PerStage<std::int16_t> ch1AutoNormalize;
  PerStage<std::int16_t> ch1ProcessOutput;
  PerStage<std::int16_t> ch1AdaptSelect;
  PerStage<std::int16_t> ch1Thresh;  // dB

  // Reference canceller.
  PerStage<std::int16_t> ch2Taps;
  PerStage<std::int16_t> ch2Mu;     // 2^-14
  PerStage<std::int16_t> ch2Delay;  // samples
  PerStage<std::int16_t> ch2AutoNormalize;
  PerStage<std::int16_t> ch2ProcessOutput;
  PerStage<std::int16_t> ch2AdaptSelect;
  PerStage<std::int16_t> ch2Thresh;  // dB
  PerStage<std::int16_t> ch2DelayChan;
  PerStage<std::int16_t> ch2RightChannel;

  // Cut-off and band filters: Hz, slope code, dB.
  PerStage<std::int16_t> lpfCutoff;
  PerStage<std::int16_t> lpfTransSlope;
  PerStage<std::int16_t> lpfAtten;
  PerStage<std::int16_t> hpfCutoff;
  PerStage<std::int16_t> hpfTransSlope;
  PerStage<std::int16_t> hpfAtten;
  PerStage<std::int16_t> bpfLoCutoff;
  PerStage<std::int16_t> bpfHiCutoff;
  PerStage<std::int16_t> bpfTransSlope;
  PerStage<std::int16_t> bpfAtten;
  PerStage<std::int16_t> bsfLoCutoff;
  PerStage<std::int16_t> bsfHiCutoff;
  PerStage<std::int16_t> bsfTransSlope;
  PerStage<std::int16_t> bsfAtten;

  // Comb and inverse comb share these.
  PerStage<std::int16_t> combFreq;   // period in samples
  PerStage<std::int16_t> combLimit;  // Hz
  PerStage<std::int16_t> combDepth;  // dB
  PerStage<std::int16_t> combHarmonic;

  // Notch and slot, single (Hz, width code, dB) and multiple (Hz, width; frequency 0 is "out").
  PerStage<std::int16_t> notchFreq;
  PerStage<std::int16_t> notchWidth;
  PerStage<std::int16_t> notchAtten;
  PerStage<std::int16_t> slotFreq;
  PerStage<std::int16_t> slotWidth;
  PerStage<std::int16_t> slotAtten;
  Grid<std::int16_t, 1, FilterStages, 1, 16> mnotchFreq;
  Grid<std::int16_t, 1, FilterStages, 1, 16> mnotchWidth;
  Grid<std::int16_t, 1, FilterStages, 1, 16> mslotFreq;
  Grid<std::int16_t, 1, FilterStages, 1, 16> mslotWidth;

  // Master attenuation and output gain; entries 7 and 8 belong to the broadband stages.
  Row<std::int16_t, 1, 8> filterAtten;  // 32767 is full effect, 0 none
  Row<std::int16_t, 1, 8> filterGain;   // linear, 16 is unity

  // Graphic and spectral curves, dB.
  Grid<std::int16_t, 1, FilterStages, 0, 19> bandGain;  // slider values 0..40
  Grid<std::int16_t, 9, 10, 0, 19> eqBandGain;
  Grid<float, 1, FilterStages, 0, 512> hiResCurve;
  Grid<float, 1, 2, 0, 128> edgeCurve;
  Grid<float, 1, FilterStages, 0, 512> sifCurve;
  Grid<float, 1, FilterStages, 0, 460> customCurve;
  PerStage<std::int16_t> sifLoAttack;  // line of the 460-line grid
  PerStage<std::int16_t> sifHiAttack;
  PerStage<std::int16_t> sifROSSelect;
  PerStage<std::int16_t> sifModeSelect;
  PerStage<std::int16_t> sifAverages;
  PerStage<std::int16_t> sifGain;  // dB

  // Parametric filters and equalizers, four substages each.
  Grid<float, 1, FilterStages, 0, 3> parCenter;  // fraction of the sample rate
  Grid<float, 1, FilterStages, 0, 3> parRatio;
  Grid<std::int16_t, 1, FilterStages, 0, 3> parBoost;   // dB
  Grid<std::int16_t, 1, FilterStages, 0, 3> parActive;  // -1 in, 0 out
  PerStage<std::int16_t> parLevel;
  Grid<float, 9, 10, 0, 3> eqParCenter;
  Grid<float, 9, 10, 0, 3> eqParRatio;
  Grid<std::int16_t, 9, 10, 0, 3> eqParBoost;
  Grid<std::int16_t, 9, 10, 0, 3> eqParActive;
  PerEqualizer<std::int16_t> eqParLevel;

  // Compressors and expanders: dB, ratios, ms.
  PerStage<std::int16_t> lceCompThresh;
  PerStage<std::int16_t> lceLimitThresh;
  PerStage<float> lceCompRatio;
  PerStage<float> lceExpRatio;
  PerStage<std::int16_t> lceAttack;
  PerStage<std::int16_t> lceRelease;
  PerEqualizer<std::int16_t> eqLceCompThresh;
  PerEqualizer<std::int16_t> eqLceLimitThresh;
  PerEqualizer<float> eqLceCompRatio;
  PerEqualizer<float> eqLceExpRatio;
  PerEqualizer<std::int16_t> eqLceAttack;
  PerEqualizer<std::int16_t> eqLceRelease;

  // Broadband stages.
  PerSide<BroadbandParms> broadbandParms;
  Grid<float, 1, 2, 0, 19> noiseEqVals;

  Row<float, 1, 4> reservedFloats;  // kept in the setup file, used by nothing

  // Derived from the bandwidth and the fit; never saved.
  float sampleRate = 0;  // Hz
  std::int16_t bandwidthHz = 0;
  std::int16_t maxDspStages = 0;
  std::int16_t adaptiveStageTaps = 0;
  std::int16_t generalStageTaps = 0;
  PerStage<std::int16_t> maxTaps;
  PerStage<std::int16_t> maxSpan;  // samples
  PerStage<std::int16_t> maxFilterSize;
  PerStage<std::int16_t> extraStages;          // by position, see PositionOfStage
  Row<BroadbandParms, 0, 2> broadbandPresets;  // by broadbandType, then the off record
  Row<std::int16_t, 0, 512> curvePlotX;        // plot positions of the 513-point curves
  Row<std::int16_t, 0, 114> edgePlotX;         // of the spectral graphic equalizer
  Row<std::int16_t, 0, 459> linePlotX;         // of the 460-line grid

  // Run-time marks and choices; never saved. A raised flag is -1.
  bool linkReady = false;
  bool loadingSetup = false;
  std::int16_t settingsChanged = 0;  // ticks until the change has settled; see SendAt
  PerStage<std::int16_t> stageChanged;
  PerStage<std::int16_t> filterDirty;
  PerStage<std::int16_t> filterBuilt;
  // The rows of notches or slots that the stage's table was built of, whatever has been set since.
  Grid<std::int16_t, 1, FilterStages, 1, 16> builtFreq;
  Grid<std::int16_t, 1, FilterStages, 1, 16> builtWidth;
  PerSide<std::int16_t> eqChanged;
  PerSide<std::int16_t> broadbandChanged;
  PerSide<std::int16_t> broadbandClear;
  std::int16_t fitPending = 0;
  std::int16_t curFilter = 1;
  std::int16_t curEq = 1;
  std::int16_t curBroadband = 1;
  std::int16_t auxFunction = 0;
  std::int16_t auxMemory = 0;
  std::int16_t unitOptionLatched = 0;
  Row<std::int32_t, 1, 4> reservedLongs;  // sent to the unit, always 0

  Loans loans;  // the one member that is no field

  bool operator==(const SystemSettings&) const = default;
};

}  // namespace vc
