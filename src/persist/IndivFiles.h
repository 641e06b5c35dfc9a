// Reading and writing the files of one filter, and taking on what one holds.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/RecordEdits.h"
#include "model/SystemSettings.h"
#include "persist/IndivFileType.h"
#include "platform/Files.h"

namespace vc {

// A record in which one filter's table is what counts, and what that filter has learned, where it is of an
// adaptive kind: -2^23..2^23-1, 1 to 8192 of them.
struct IndivTable {
  SystemSettings record;
  std::vector<std::int32_t> coefficients;
};

// To and from the lines of an open file. A type that there is not raises a Fault; stage is one of the type's
// family. The load clears the table first and takes values as they stand, coefficients bounded to 24 bits; it
// is false at the first line that is no value and at the end of a text that is too short.
bool LoadIndivSettings(std::int16_t type, LineReader& file, int stage, IndivTable& table);
bool StoreIndivSettings(std::int16_t type, LineWriter& file, int stage, SystemSettings& settings,
                        const std::vector<std::int32_t>& coefficients);

enum class IndivResult { Good, NoFile, NoTable };

// Into a record that holds what the file does not carry. Where it is not good, the table is a part of it.
IndivResult ReadIndivFile(Files& files, const std::string& path, std::int16_t type, int stage,
                          IndivTable& table);
// The operator's own values, each within its range. False where the file could not be written whole; the old
// one then stands.
bool WriteIndivFile(Files& files, const std::string& path, std::int16_t type, int stage,
                    const SystemSettings& settings, const std::vector<std::int32_t>& coefficients);

// Edits the record to what was read, within its ranges, as one finished step; the unit is brought up to it
// where the kind's fields ask for that.
void TakeIndivTable(RecordEdits& edits, std::int16_t type, int stage, const SystemSettings& read,
                    const std::string& title);

}  // namespace vc
