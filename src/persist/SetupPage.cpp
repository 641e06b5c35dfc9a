// The page that tells the setup file line by line, made from the walk itself.
#include <string>

#include "persist/SetupLines.h"

namespace vc {
namespace {

std::string_view UseText(LineUse use) {
  switch (use) {
    case LineUse::Stored:
      return "stored";
    case LineUse::Connection:
      return "stored where connection values are asked for";
    case LineUse::Description:
      return "stored but while the program starts or begins a new setup";
    case LineUse::Protection:
      return "read by the store window";
    case LineUse::Dropped:
    case LineUse::CoefficientBlocks:
      break;
  }
  return "dropped";
}

constexpr std::string_view Introduction =
    R"(# The setup file

A setup (extension `.nrv`), the last state (`veltrana.set`) and the factory setup (`Factory Defaults.nrv`) are the same
kind of file: plain text, one value a line, each line ended by CR and LF (LF alone is accepted). A line's place is its
meaning: there is no version number, no length and no checksum. A file that ends early leaves the defaults in all that
it does not reach. The reader stops at the first line that is no number where one is due; what stood before it counts.

- An **integer** is plain digits with a minus sign where needed, within 16 bits (the members of `broadbandParms` within
  32). A fraction is rounded to nearest.
- A **float** is the shortest decimal form of its 32-bit value with a point as decimal mark; no NaN, no infinity.
- A **text** stands in double quotes, a quote inside is doubled. It may hold line ends. It is UTF-8; bytes that are not
  are kept as they are.

Values out of their ranges are moved into them in silence once the file is read.

The first line says whose file it is: `ZORQ`, `KYVN`, `VELT` and `VELTRA` are accepted where a setup is recalled.

At the place marked below stand the blocks of what the unit had learned, for each adaptive filter in use (1 to
`numFilters`, in Stereo Independent also 4 to 3 + `numFilters`): a line `"Coefficients"`, the stage, the count (1 to
8192), and one 32-bit integer a line. A file saved without a unit has none. A setup that brings blocks leaves each in a
file `Previous Filter 1 Settings.cof` (or `Left Filter`, `Right Filter`) in the working folder: the filter's six
settings, one a line, then the block. The operator sends it to the unit by recalling that file.

Behind its last line a reader does not look. There the last state has the other one of the two setups, A and B, where
there is one: a line `"Other setup A"` or `"Other setup B"`, which says which of them it is, and then its lines as above,
without coefficient blocks. The lines before it are of the one that is heard.

This page is made from the program's own walk over the lines.

| lines | type | what | reader |
|---|---|---|---|
)";

constexpr std::string_view TrailPage = R"(
# The recent files

`veltrana.recent` lies beside the last state: lines of text, each ended by LF. The first is `veltrana.recent 1`, the second
the path of the open setup file, or empty. Up to eight further ones are the setup files stored or recalled last, the latest
in front. Paths are absolute and bytes as they are, but for a backslash (`\\`) and a line end (`\n`). A file in which any
line is none of these counts as empty.
)";

}  // namespace

std::string SetupFilePage() {
  std::string page(Introduction);
  int line = 1;
  WalkSetup([&](const LineRun& run) {
    if (run.use == LineUse::CoefficientBlocks) {
      page += "| | | **here stand the coefficient blocks** | |\n";
      return true;
    }
    page.append(RunRow(run, line)).append(" ").append(UseText(run.use)).append(" |\n");
    line += run.Lines();
    return true;
  });
  page += "\n" + std::to_string(line - 1) + " lines, without the coefficient blocks.\n";
  page += TrailPage;
  return page;
}

}  // namespace vc
