// "Line Trace": what passes on the line while the window is open, in words, row by row.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>

#include "link/LineTrace.h"
#include "platform/Platform.h"
#include "text/Wire.h"
#include "widgets/Controls.h"
#include "widgets/Forms.h"
#include "widgets/Listing.h"

namespace vc {

struct FrmLineTrace {
  struct Around {
    LineTrace& trace;
    LineTap& tap;
    Forms& forms;
    EventLoop& events;
    // Asks for a file and writes the text into it.
    Wire<void(const std::string& text, Form& over)> save;
  };
  explicit FrmLineTrace(const Around& parts);
  FrmLineTrace(const FrmLineTrace&) = delete;
  FrmLineTrace& operator=(const FrmLineTrace&) = delete;

  Form form{"FrmLineTrace", "Line Trace"};
  Frame fraFilter{form, "fraFilter", "", Arrangement::Columns};
  ListBox cmbWay{fraFilter, "cmbWay", "Direction"};
  TextBox txtSearch{fraFilter, "txtSearch", "With the Text"};
  Frame fraKinds{form, "fraKinds", "", Arrangement::Columns};
  CheckBox chkRegisters{fraKinds, "chkRegisters", "&Register Writes"};
  CheckBox chkPolls{fraKinds, "chkPolls", "&Polls"};
  CheckBox chkCoefficients{fraKinds, "chkCoefficients", "Coefficients and &Data"};
  CheckBox chkOther{fraKinds, "chkOther", "&Other"};
  CheckBox chkErrors{fraKinds, "chkErrors", "&Errors"};
  Listing lstTrace{
      form, "lstTrace", "Rows", {{"ms", 9, true}, {"after ms", 7, true}, {"Direction", 8}, {"Frame", 44}}};
  Label lblRows{form, "lblRows", ""};
  Button btnPause{form, "btnPause", "P&ause"};
  Button btnClear{form, "btnClear", "C&lear"};
  Button btnSave{form, "btnSave", "&Save..."};
  Button btnClose{form, "btnClose", "Close"};

  // Begins to trace, which ends when the window goes.
  void Fill();
  // The rows on show as a file has them, below what must be known of them.
  std::string FileText() const;

 private:
  void BindFilters();
  void Pause();
  void Clear();
  void ChooseAnew();
  void Follow();
  bool Shown(const LineRow& row) const;
  std::string FilterText() const;
  std::string RowsText() const;
  void ShowState();
  const LineRow& RowAt(std::size_t number) const { return trace.At(chosen[number - lstTrace.First()]); }

  Around around;
  LineTrace& trace;
  std::unique_ptr<Timer> tmrFollow;
  std::deque<std::size_t> chosen;  // numbers of the trace's rows that the filters show
  std::size_t looked = 0;          // rows of the trace below this one have been looked at
};

}  // namespace vc
