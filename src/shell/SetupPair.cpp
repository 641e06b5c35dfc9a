#include "shell/SetupPair.h"

#include <algorithm>
#include <utility>

#include "model/FieldChanges.h"
#include "model/Loans.h"
#include "widgets/Controls.h"

namespace vc {
namespace {

constexpr int HandMilliseconds = 50;

bool HoldsSlider(const Form& form) {
  return std::ranges::any_of(form.controls, [](const AnyControl& control) {
    const Slider* slider = SliderIn(control);
    return slider != nullptr && slider->Held();
  });
}

}  // namespace

SetupPair::SetupPair(const Around& parts)
    : around(parts), tmrHand(parts.events.CreateTimer(HandMilliseconds, [this] { Await(); })) {}

// A store, a recall or the start is under way, and takes the record for its own.
bool SetupPair::MayAct() const { return !around.setup.working && !around.setup.settings.loadingSetup; }

bool SetupPair::HandHolds() const {
  return std::ranges::any_of(around.setup.forms.open,
                             [](const Forms::Entry& entry) { return HoldsSlider(*entry.form); });
}

void SetupPair::Switch() {
  if (!MayAct()) return;
  if (tmrHand->Enabled()) return tmrHand->SetEnabled(false);
  if (HandHolds()) return tmrHand->SetEnabled(true);
  Cross();
}

void SetupPair::Await() {
  if (HandHolds()) return;
  tmrHand->SetEnabled(false);
  if (MayAct()) Cross();
}

void SetupPair::Hear(Side side) {
  const bool will = (side == heard) != tmrHand->Enabled();
  if (!will) Switch();
  around.shown();  // a button that is pressed shows itself as the one that is heard
}

SetupPair::KeptPointer SetupPair::Present() const {
  return std::make_shared<const Kept>(Kept{around.edits.history.Kept(), around.edits.formerLevels});
}

// What is typed is of the setup into which it was typed, and so is a fit that an edit of it still waits for.
void SetupPair::Cross() {
  around.setup.forms.TakeTyped();
  if (around.setup.settings.fitPending != 0) around.edits.SendChanges();
  EditHistory& history = around.edits.history;
  if (history.CrossAgain()) return;
  const KeptPointer leaves = Present(), before = other, comes = other ? other : leaves;
  if (!other) fileOfOther = {"", around.setup.open.Held().taken};
  KeptSetup setup = comes->setup;
  setup.record.workingFolder = around.setup.settings.workingFolder;  // no setup's, as for a recall
  history.Cross("Switch to " + NameOf(Other()), setup, [this, leaves, before, comes](bool back) {
    back ? Turn(before, *leaves) : Turn(leaves, *comes);
  });
}

void SetupPair::Turn(const KeptPointer& stays, const Kept& comes) {
  heard = Other();
  other = stays;
  around.edits.formerLevels = comes.formerLevels;
  ++revision;
  around.setup.open.Swap(fileOfOther);
  around.shown();
}

bool SetupPair::Alike(const Kept& one) const {
  return other && ChangesBetween(one.setup.record, other->setup.record).Empty() &&
         one.setup.built == other->setup.built;
}

bool SetupPair::OtherChanged() const { return other && SetupDiffers(fileOfOther.taken, other->setup.record); }

void SetupPair::Copy() {
  if (!MayAct()) return;
  around.setup.forms.TakeTyped();
  const KeptPointer copied = Present();
  if (Alike(*copied)) return;
  if (OtherChanged() && !around.mayOverwrite(NameOf(Other()))) return;
  struct Aside {
    KeptPointer setup;
    SetupOfFile file;
  };
  const auto aside = std::make_shared<Aside>(Aside{copied, {"", around.setup.open.Held().taken}});
  around.edits.history.Note("Copy " + NameOf(heard) + " to " + NameOf(Other()), [this, aside](bool /*back*/) {
    std::swap(other, aside->setup);
    std::swap(fileOfOther, aside->file);
    ++revision;
  });
}

void SetupPair::Begin(Side heardNow, const std::optional<SystemSettings>& kept) {
  heard = heardNow;
  other.reset();
  if (kept) {
    PerStage<std::int16_t> finished;
    finished.Fill(-1);
    fileOfOther = {"", *kept};
    other = std::make_shared<const Kept>(Kept{{*kept, finished}, {}});
  }
  ++revision;
  around.shown();
}

void SetupPair::JudgeOther(const SystemSettings& by) {
  if (!other) return;
  fileOfOther = {"", by};
  fileOfOther.taken.setupDescription = other->setup.record.setupDescription;
}

}  // namespace vc
