// The curves that are drawn by hand: over the frequencies of a filter stage (CtlHiRes), of an equalizer
// (CtlEDGE), and as the output shape of a spectral inverse filter (CtlCustomCurve).
#pragma once

#include <cstddef>
#include <cstdint>

#include "model/Fields.h"
#include "widgets/Plot.h"

namespace vc {

struct CurveKind {
  const char *form, *title, *editTitle;
  const FieldRow& row;                  // of the curve, by the block and the line
  std::int16_t SystemSettings::*block;  // the number of the one that is edited
  int lines;                            // that are edited
  double ratePerLine;                   // line i lies at i * sampleRate / ratePerLine
  bool lastIsRepeated;                  // in the entry behind it
  const char* switchName;               // null where the panel has none
  std::int16_t fileType;                // IndivFileType of the curve
  // What the coefficients of the curve really have over the frequencies, at so many places.
  PlotTrace (*response)(const SystemSettings& settings, const PlotAxis& frequencies, std::size_t points);
  // Where a report has a graph of it: the token, or null, and whether an empty line goes before.
  const char* reportToken;
  bool reportSpaced;
  const char* note;  // what the curve is for, where the title does not say it
};
extern const CurveKind CtlHiRes, CtlEDGE, CtlCustomCurve;

}  // namespace vc
