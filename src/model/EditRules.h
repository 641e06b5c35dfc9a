// What edits of fields entail, as the table of fields names it: which parts of the register image are marked
// to be made anew, and the rules between fields.
#pragma once

#include "model/SystemSettings.h"

namespace vc {

struct FieldRow;
struct RecordEdits;

// Raises the marks that element (i, ...) of the field needs to go out, and lets it wait as long as its row
// says.
void MarkEdited(SystemSettings& settings, const FieldRow& row, int i);

// Raised for element (i, ...) of a field.
namespace marks {
void None(SystemSettings& settings, int i);
void Stages(SystemSettings& settings, int i);     // all six, whichever stage it was
void Equalizer(SystemSettings& settings, int i);  // by equalizer 1, 2 or by its entry 9, 10
void StagesAndEqualizer(SystemSettings& settings, int i);
void Broadband(SystemSettings& settings, int i);  // by broadband stage 1, 2
void StagesAndBroadband(SystemSettings& settings, int i);
void StagesOrBroadband(SystemSettings& settings, int i);  // by entry: 1..6 the stages, 7 and 8 broadband
}  // namespace marks

// What a finished edit of a part of a stage's table does.
namespace finish {
void BuildTable(SystemSettings& settings, int stage);
}

// They run when the value has been stored; before is the record as it was. A rule may put another value in
// its place, and may have the unit fitted anew.
namespace follow {
void Bandwidth(RecordEdits& edits, const SystemSettings& before, int i);
void Configuration(RecordEdits& edits, const SystemSettings& before, int i);
void NumFilters(RecordEdits& edits, const SystemSettings& before, int i);
void Links(RecordEdits& edits, const SystemSettings& before, int i);
void LevelControls(RecordEdits& edits, const SystemSettings& before, int i);
void AnalyzerSignal(RecordEdits& edits, const SystemSettings& before, int i);
void Ch1Taps(RecordEdits& edits, const SystemSettings& before, int stage);
void Ch2Taps(RecordEdits& edits, const SystemSettings& before, int stage);
void FilterKind(RecordEdits& edits, const SystemSettings& before, int stage);
void EqKind(RecordEdits& edits, const SystemSettings& before, int equalizer);
void BroadbandKind(RecordEdits& edits, const SystemSettings& before, int stage);
}  // namespace follow

}  // namespace vc
