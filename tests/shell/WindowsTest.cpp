// The table of windows: each is there under its name, and opens as its row says.
#include <gtest/gtest.h>

#include "PanelRun.h"

namespace vc {
namespace {

TEST(WindowTable, EveryRowOpensItsWindowByName) {
  support::PanelRun run;
  Session& session = run.session;
  for (const WindowRow& row : Windows::Rows()) {
    session.windows.Open(row.name);
    ASSERT_EQ(run.Top().name, row.name);
    const Forms::Entry& entry = session.forms.open.back();
    const bool ownedByOpener = row.modality == Modality::OverOwner && row.owner.empty();
    EXPECT_EQ(entry.modality, ownedByOpener ? Modality::Modal : row.modality) << row.name;
    EXPECT_EQ(entry.owner, session.forms.Find(row.owner)) << row.name;
    EXPECT_EQ(session.forms.Operable(session.master.form), row.modality == Modality::Modeless) << row.name;
    session.windows.Close(row.name);
    EXPECT_EQ(&run.Top(), &session.master.form) << row.name;
  }
  EXPECT_THROW(session.windows.Open("NoSuchWindow"), Fault);
}

TEST(WindowTable, AWindowIsFilledWheneverItOpens) {
  support::PanelRun run;
  for (const char* text : {"first", "second"}) {
    run.record.setupDescription = text;
    run.Click("mnuViewDescription");
    EXPECT_EQ(run.Get("txtDescription"), text);
    run.CloseTop();
  }
}

}  // namespace
}  // namespace vc
