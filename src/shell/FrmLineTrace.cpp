#include "shell/FrmLineTrace.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "model/FrameText.h"
#include "text/WallText.h"

namespace vc {
namespace {

constexpr int FollowMilliseconds = 100;
enum Way { BothWays, ToUnit, FromUnit };

std::string Lower(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char letter) { return std::tolower(letter); });
  return text;
}

std::string Counted(std::size_t number, const std::string& one) {
  return std::to_string(number) + " " + one + (number == 1 ? "" : "s");
}

}  // namespace

FrmLineTrace::FrmLineTrace(const Around& parts)
    : around(parts),
      trace(parts.trace),
      tmrFollow(parts.events.CreateTimer(FollowMilliseconds, [this] { Follow(); })) {
  form.okButton = &btnClose;
  form.opensAside = true;
  form.initialFocus = &lstTrace.core;
  form.unloaded = [this] {
    tmrFollow->SetEnabled(false);
    trace.End();
  };
  lstTrace.cells = [this](std::size_t number) -> std::vector<std::string> {
    const LineRow& row = RowAt(number);
    return {StampText(row), DelayText(row), WayText(row.way), FrameText(row)};
  };
  lstTrace.stands = [this](std::size_t number) { return (KindsOf(RowAt(number)) & lineKind::Errors) != 0; };
  btnPause.clicked = [this] { Pause(); };
  btnClear.clicked = [this] { Clear(); };
  btnSave.clicked = [this] {
    Follow();
    around.save(FileText(), form);
  };
  btnClose.clicked = [this] { around.forms.Unload(form); };
  BindFilters();
}

void FrmLineTrace::BindFilters() {
  fraFilter.look = fraKinds.look = FrameLook::Flat;
  cmbWay.SetItems({"Both", "To the Unit", "From the Unit"});
  cmbWay.SetListIndex(BothWays);
  cmbWay.changed = [this] { ChooseAnew(); };
  for (CheckBox* kind : {&chkRegisters, &chkPolls, &chkCoefficients, &chkOther, &chkErrors}) {
    kind->SetValue(true);
    kind->changed = [this] { ChooseAnew(); };
  }
  txtSearch.changed = [this] { ChooseAnew(); };
}

void FrmLineTrace::Fill() {
  trace.Begin(around.tap);
  tmrFollow->SetEnabled(true);
  ChooseAnew();
}

void FrmLineTrace::Pause() {
  if (trace.Listening()) {
    trace.End();
  } else {
    trace.Begin(around.tap);
  }
  Follow();
}

void FrmLineTrace::Clear() {
  trace.Clear();
  ChooseAnew();
}

void FrmLineTrace::ChooseAnew() {
  chosen.clear();
  looked = trace.First();
  const std::size_t from = lstTrace.Behind();
  trace.Settle();
  for (; looked < trace.Behind(); ++looked) {
    if (Shown(trace.At(looked))) chosen.push_back(looked);
  }
  lstTrace.Replace(from, from + chosen.size());
  ShowState();
}

void FrmLineTrace::Follow() {
  trace.Settle();
  std::size_t first = lstTrace.First();
  for (; !chosen.empty() && chosen.front() < trace.First(); chosen.pop_front()) ++first;
  for (looked = std::max(looked, trace.First()); looked < trace.Behind(); ++looked) {
    if (Shown(trace.At(looked))) chosen.push_back(looked);
  }
  lstTrace.Roll(first, first + chosen.size());
  ShowState();
}

bool FrmLineTrace::Shown(const LineRow& row) const {
  const int way = cmbWay.ListIndex();
  if (way == ToUnit && row.way != LineWay::ToUnit) return false;
  if (way == FromUnit && row.way != LineWay::FromUnit) return false;
  unsigned kinds = 0;
  for (const auto& [box, kind] : {std::pair{&chkRegisters, lineKind::Registers},
                                  {&chkPolls, lineKind::Polls},
                                  {&chkCoefficients, lineKind::Coefficients},
                                  {&chkOther, lineKind::Other},
                                  {&chkErrors, lineKind::Errors}}) {
    if (box->Value()) kinds |= kind;
  }
  if ((KindsOf(row) & kinds) == 0) return false;
  const std::string& wanted = txtSearch.Text();
  return wanted.empty() || Lower(FrameText(row)).find(Lower(wanted)) != std::string::npos;
}

void FrmLineTrace::ShowState() {
  btnPause.core.SetCaption(trace.Listening() ? "P&ause" : "Go On");
  lblRows.core.SetCaption((trace.Listening() ? "" : "Paused: nothing is traced.  ") + RowsText());
}

std::string FrmLineTrace::RowsText() const {
  const std::size_t kept = trace.Behind() - trace.First();
  std::string text = Counted(kept, "row");
  if (chosen.size() != kept) text = std::to_string(chosen.size()) + " of " + text + " on show";
  if (trace.Dropped() == 0) return text + ".";
  return text + ".  The " + Counted(trace.Dropped(), "row") + " before them fell out: the last " +
         std::to_string(LineTrace::MostRows) + " are kept.";
}

std::string FrmLineTrace::FilterText() const {
  std::string kinds;
  for (const CheckBox* box : {&chkRegisters, &chkPolls, &chkCoefficients, &chkOther, &chkErrors}) {
    if (box->Value()) kinds += (kinds.empty() ? "" : ", ") + WithoutAccessKey(box->core.Caption());
  }
  return "Direction: " + cmbWay.Text() + "\nKinds: " + (kinds.empty() ? "none" : kinds) +
         "\nWith the text: " + txtSearch.Text() + "\n";
}

std::string FrmLineTrace::FileText() const {
  std::string text = "Line trace, begun " + DateTimeText(trace.Began()) + "\n" + RowsText() + "\n" +
                     FilterText() + "\n" + std::string(LineTextHeading) + "\n";
  for (const std::size_t number : chosen) text += LineText(trace.At(number)) + "\n";
  return text;
}

}  // namespace vc
