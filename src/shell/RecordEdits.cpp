// Edits of the record by field name: what an edit of a field entails beyond its value.
#include <array>

#include "model/BroadbandPresets.h"
#include "model/FieldText.h"
#include "model/KindChange.h"
#include "model/Kinds.h"
#include "model/Settings.h"
#include "shell/Session.h"

namespace vc {
namespace {

// The value has been stored when the rule runs; before is the record as it was.
struct EditRule {
  std::string_view field;
  void (*follow)(Session& session, const SystemSettings& before, int index);
};

void FollowBandwidth(Session& session, const SystemSettings& /*before*/, int /*index*/) {
  session.config.ConfigureStages(false);
}

void FollowConfiguration(Session& session, const SystemSettings& before, int /*index*/) {
  const bool unlinked = before.configMode == ConfigMode::StereoLinked &&
                        session.settings.configMode == ConfigMode::StereoIndependent;
  if (unlinked) return;  // the difference is all that has to go out
  session.download.ForgetBandwidth();
  session.config.ConfigureStages(false);
}

void AskForFit(Session& session, const SystemSettings& /*before*/, int /*index*/) {
  session.settings.fitPending = -1;
}

void FollowFilterKind(Session& session, const SystemSettings& before, int stage) {
  const std::int16_t kind = session.settings.filterType[stage];
  if (kind == before.filterType[stage]) return;
  session.settings.filterType[stage] = before.filterType[stage];
  if (ChangeFilterKind(session.settings, stage, kind)) session.config.ConfigureStages(true);
}

void FollowEqKind(Session& session, const SystemSettings& before, int equalizer) {
  const std::int16_t kind = session.settings.eqType[equalizer];
  if (kind != before.eqType[equalizer]) ChangeEqKind(session.settings, equalizer, kind);
}

void FollowBroadbandKind(Session& session, const SystemSettings& before, int stage) {
  const std::int16_t kind = session.settings.broadbandType[stage];
  session.settings.broadbandType[stage] = before.broadbandType[stage];
  ChangeBroadbandKind(session.settings, stage, kind);
}

void HoldLinks(Session& session, const SystemSettings& /*before*/, int /*index*/) {
  LinkChannelsInMono(session.settings);
}

// A table that is edited by name counts as finished.
void BuildTable(Session& session, const SystemSettings& /*before*/, int stage) {
  session.settings.filterBuilt[stage] = -1;
}

constexpr std::array<EditRule, 16> EditRules{{{"bandwidthIndex", FollowBandwidth},
                                              {"configMode", FollowConfiguration},
                                              {"agcLinked", HoldLinks},
                                              {"limiterLinked", HoldLinks},
                                              {"numFilters", AskForFit},
                                              {"ch1Taps", AskForFit},
                                              {"ch2Taps", AskForFit},
                                              {"filterType", FollowFilterKind},
                                              {"eqType", FollowEqKind},
                                              {"broadbandType", FollowBroadbandKind},
                                              {"mnotchFreq", BuildTable},
                                              {"mnotchWidth", BuildTable},
                                              {"mslotFreq", BuildTable},
                                              {"mslotWidth", BuildTable},
                                              {"hiResCurve", BuildTable},
                                              {"sifCurve", BuildTable}}};

}  // namespace

bool Session::EditRecord(const FieldRow& row, int i, int j, std::string_view text, std::string& error) {
  const SystemSettings before = settings;
  if (!SetFieldText(settings, row, i, j, text, error)) return false;
  for (const EditRule& rule : EditRules) {
    if (rule.field == row.name) rule.follow(*this, before, i);
  }
  MarkEdited(settings);
  return true;
}

}  // namespace vc
