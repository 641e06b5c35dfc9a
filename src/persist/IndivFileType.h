// The files that hold one filter's table apart from a setup: a description a type, which the reader, the
// writer, the windows and the page that documents the formats walk.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/Kinds.h"
#include "model/SystemSettings.h"
#include "persist/LineRuns.h"

namespace vc {

// What has the tables of a type: equalizer 1 or 2, filter stage 1..6, broadband stage 1 or 2.
enum class IndivFamily { Equalizer, FilterStage, BroadbandStage };

// A field as a file lists it, with the inner indices that it has there; without a name a line of 0 that is
// read and dropped.
struct IndivLine {
  std::string_view field;
  IndexRange inner{};
};

struct IndivFileRow {
  std::string_view extension;  // with its point
  std::string_view title;
  IndivFamily family;
  std::span<const IndivLine> lines;
  bool learned = false;     // what the unit has learned stands behind the lines, as a coefficient block
  bool linksSides = false;  // while the channels are linked, both sides are given what is loaded
};

// By type.
std::span<const IndivFileRow> IndivFileRows();
// A type that there is not raises a Fault of this text.
const IndivFileRow& IndivFile(std::int16_t type, const char* unknown);

// The lines of a type for a stage of its family, without the coefficient block.
std::vector<LineRun> IndivRuns(const IndivFileRow& row, int stage);

std::string_view GetIndivSettingsFileExt(std::int16_t type);
// The stage of the type's family whose panel was opened last.
int GetIndivStage(const SystemSettings& settings, std::int16_t type);
// The type of an adaptive kind of filter.
std::int16_t AdaptiveFileType(std::int16_t filterType);

// The formats as a part of a Markdown page.
std::string IndivFilesPage();

}  // namespace vc
