// The rules of a change of kind.
#include "model/KindChange.h"

#include "model/BuiltRows.h"
#include "model/Kinds.h"
#include "model/Stages.h"

namespace vc {
namespace {

constexpr std::int16_t UnityGain = 16;

void ClearMultiples(SystemSettings& settings, int stage) {
  settings.mnotchFreq[stage].Fill(0);
  settings.mslotFreq[stage].Fill(0);
  settings.mnotchWidth[stage].Fill(NarrowestWidth);
  settings.mslotWidth[stage].Fill(NarrowestWidth);
  settings.filterAtten[stage] = FullEffect;
}

void ClearSpectralInverse(SystemSettings& settings, int stage) {
  settings.sifCurve[stage].Fill(0);
  settings.filterAtten[stage] = FullEffect;
  settings.filterGain[stage] = UnityGain;
}

void ClearForKind(SystemSettings& settings, int stage, std::int16_t kind) {
  if (kind == FilterKind::MultipleNotch || kind == FilterKind::MultipleSlot) ClearMultiples(settings, stage);
  if (kind == FilterKind::SpectralInverse) ClearSpectralInverse(settings, stage);
  if (kind == FilterKind::HiResGraphic) settings.hiResCurve[stage].Fill(0);
}

bool HadBorrowed(const SystemSettings& settings, int stage) {
  const int position = PositionOfStage(settings.configMode, stage);
  return IsAdaptive(settings.filterType[stage]) && settings.extraStages[position] > 0;
}

template <typename Kinds>
std::int16_t ListedOr(const Kinds& kinds, std::int16_t kind, std::int16_t otherwise) {
  return static_cast<std::size_t>(kind) < kinds.size() ? kind : otherwise;
}

}  // namespace

bool ChangeFilterKind(SystemSettings& settings, int stage, std::int16_t kind) {
  const bool fitDue = HadBorrowed(settings, stage);
  const std::int16_t listed = ListedOr(FilterKinds(), kind, FilterKind::RefCanceller);
  settings.filterType[stage] = listed;
  if (!settings.loadingSetup) ClearForKind(settings, stage, listed);
  ForgetRows(settings, stage);
  if (!fitDue) {
    settings.filterDirty[stage] = -1;
    settings.filterBuilt[stage] = 0;
  }
  return fitDue;
}

void ChangeEqKind(SystemSettings& settings, int equalizer, std::int16_t kind) {
  settings.eqType[equalizer] = ListedOr(EqKinds(), kind, EqKind::Compressor);
  if (!settings.loadingSetup && settings.eqType[equalizer] == EqKind::SpectralGraphic) {
    settings.edgeCurve[equalizer].Fill(0);
  }
  settings.eqChanged[equalizer] = -1;
}

}  // namespace vc
