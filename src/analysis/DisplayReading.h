// What a display shows at one moment, held by value: what is measured afterwards does not change it.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "model/SpectrumReader.h"

namespace vc {

struct TraceReading {
  std::string title;            // "Blue Trace"
  std::string signal;           // as its list has it
  std::string gain;             // dB
  std::optional<RawTrace> raw;  // as it is drawn; nothing where nothing has come
  std::string magnitude;        // dB, at the marker
};

struct SpectrumReading {
  struct Marker {
    int line;  // 0..459
    std::string txtMarkerFreq;
  };
  std::vector<TraceReading> traces;  // those on show, the blue one first
  std::optional<Marker> marker;
  std::string averagerMode;             // as its list has it
  std::optional<std::string> averages;  // their number, where the mode has one
};

struct CoefficientReading {
  struct Marker {
    int offset;  // behind the first coefficient on show
    std::string number, time, value;
  };
  int stage = 1;                  // 1..6
  std::string filter;             // what runs there
  std::vector<float> CoefValues;  // those on show, of full scale; not a number where none has been read
  double halfScale = 1;           // from the middle of the picture to its top and to its bottom
  std::string axisTop, axisBottom, timeFirst, timeLast;
  std::optional<Marker> marker;
};

using DisplayReading = std::variant<SpectrumReading, CoefficientReading>;

}  // namespace vc
