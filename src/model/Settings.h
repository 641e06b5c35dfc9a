// Defaults and limits of the whole record, driven by the table of fields. Nothing here reports anything: what
// is out of range is moved into range in silence.
#pragma once

#include "model/SystemSettings.h"

namespace vc {

// Every field to its default, the derived limits to their plain values (narrowest bandwidth, nothing
// borrowed), presets and plot grids computed, ranges applied. Leaves the marks and choices of the run and
// workingFolder alone; linkReady becomes false. Runs at start-up and at the head of every setup load.
void InitSettings(SystemSettings& settings);

// Every mask and every range that does not depend on a derived limit: after a setup file was read.
void ValidateSettings(SystemSettings& settings);

// Every range that depends on bandwidthHz, maxTaps, maxSpan or maxFilterSize: after those have changed.
void ClampSettingsToLimits(SystemSettings& settings);

// After an edit: what has another range than before, because it depends on the edited field, follows. What
// waits for a fit is left to it.
void SettleDependents(SystemSettings& settings, const SystemSettings& before);

// Numbers that have no register value become the nearest that has one: an averager that the unit does not
// know is off, a comb is as deep as its word can say.
void CorrectForUnit(SystemSettings& settings);

// In Mono there is nothing to unlink: gain control and limiter count as linked.
void LinkChannelsInMono(SystemSettings& settings);

}  // namespace vc
