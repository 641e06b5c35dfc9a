// The reports of all setups whose texts have been read by eye, through a real print queue and back.
#include <cctype>
#include <sstream>

#include <gtest/gtest.h>

#include "PrintServer.h"
#include "Queues.h"
#include "ReportSetups.h"
#include "desktop/QtPrinters.h"
#include "report/GraphPictures.h"

namespace desktop {
namespace {

using support::queues;

// How a text lies on its page does not count.
std::string Squeezed(std::string text) {
  std::erase_if(text, [](unsigned char letter) { return std::isspace(letter) != 0; });
  return text;
}

std::size_t Count(const std::string& text, const std::string& what) {
  std::size_t count = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
  return count;
}

// All lines in their order, and a frame of levels for each token of a curve.
void ExpectWhole(const std::string& report, const std::string& paper, std::size_t traces) {
  std::istringstream lines(report);
  std::size_t at = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('%')) continue;
    const std::string wanted = Squeezed(line);
    const std::size_t found = paper.find(wanted, at);
    ASSERT_NE(found, std::string::npos) << line;
    at = found + wanted.size();
  }
  const std::size_t curves = Count(report, "\n%SI") + Count(report, "\n%SG") + Count(report, "\n%EG");
  EXPECT_EQ(Count(paper, "0dB-10-20-30-40-50-60"), curves + traces);
}

class SetupsOnPaper : public testing::TestWithParam<std::string> {};

TEST_P(SetupsOnPaper, AreReadBackFromTheQueue) {
  support::ConsoleRun run;
  const std::string text = support::ReportOfSetup(run, GetParam());
  const vc::Session& session = run.session;
  const std::optional<vc::DisplayReading> display = session.displays.Reading();
  const auto* spectrum = display ? std::get_if<vc::SpectrumReading>(&*display) : nullptr;
  QtPrinters printers{run.files};
  queues->AddQueue("Office");
  int single = 0;
  for (const bool DoubleSpaced : {false, true}) {
    const auto document = printers.Begin({"Office", GetParam()});
    ASSERT_TRUE(document);
    ASSERT_TRUE(vc::PrintReportText(
        *document, {text, session.settings.setupDescription, run.clock.Wall(), DoubleSpaced},
        vc::GraphPictures({session.settings, run.clock.Wall(), display}), run.desk));
    const std::string file = queues->AwaitNext().file;
    const int pages = support::PdfPages(file);
    const std::string paper = support::PdfText(file);
    for (int page = 1; page <= pages; ++page) {
      EXPECT_EQ(Count(paper, "Page " + std::to_string(page) + " of " + std::to_string(pages) + "\n"), 1U);
    }
    ExpectWhole(text, Squeezed(paper), spectrum == nullptr ? 0 : spectrum->traces.size());
    if (DoubleSpaced) {
      EXPECT_GT(pages, single);
    } else {
      single = pages;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Setups, SetupsOnPaper, testing::ValuesIn(support::SetupNames()),
                         [](const auto& setup) {
                           std::string name = setup.param;
                           std::ranges::replace(name, '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace desktop
