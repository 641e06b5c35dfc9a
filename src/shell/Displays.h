// The analysis displays: the spectrum analyzer and the coefficient display, of which one at most is open
// beside the chain, and what the tick polls meanwhile.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "analysis/Display.h"

namespace vc {

struct ChainPanels;
struct MasterControl;
struct PeriodicService;
struct Printouts;
struct Windows;

namespace display {
inline constexpr std::int16_t None = 0, Coefficients = 1, Spectrum = 2;
}  // namespace display

// A display of either kind, as its owner holds it.
struct AnyDisplay {
  std::shared_ptr<void> object;
  Panel* panel = nullptr;
  DisplayFoot* foot = nullptr;
  Timer* timer = nullptr;  // draws what the poll has brought
};

struct DisplayRow {
  std::int16_t which;
  std::string_view form;
  std::int16_t pollMode;
  std::string_view saved;  // what the files that it is saved in are called, before their number
  AnyDisplay (*make)(const DisplayContext& context);
};

struct Displays {
  // What they work on. Some of these come to be only after them.
  struct Around {
    RecordEdits& edits;
    CoefReader& coefReader;
    const RegisterImage& image;
    Clock& clock;
    Forms& forms;
    MasterControl& master;
    PeriodicService& periodic;
    ChainPanels& panels;
    Windows& windows;
    Pictures& pictures;
    Printouts& printouts;
    const SystemSettings& settings;
    Desk& desk;
  };
  explicit Displays(const Around& parts) : around(parts) {}

  static std::span<const DisplayRow> Rows();
  // display::None, Coefficients or Spectrum, which opens its window in the place of another one. The master
  // panel's buttons and the poll follow.
  void Show(std::int16_t which);
  // What the display that is open shows at this moment.
  std::optional<DisplayReading> Reading() const;
  std::int16_t Shown() const { return row == nullptr ? display::None : row->which; }
  // Shows the record anew, after something else than the display has changed it.
  void Refresh();
  // The display stays for as long as a filter's panel is open beside it.
  void KeepOpen(bool on) const;
  // A panel has the analyzer to itself, or gives it back.
  void LendAnalyzer(bool lent);
  // The tick requests what the display shows: after a connect, which begins with the levels.
  void Poll() const;

 private:
  DisplayContext Context();
  void Open();
  void Print(const DisplayReading& reading, Form& over) const;
  void Save(const Drawing& picture, const std::string& numbers, Form& over) const;
  void Forget();

  Around around;
  const DisplayRow* row = nullptr;  // of the display that is on
  AnyDisplay open;
  AnyDisplay closing;  // it may be the display whose handler has led to its end
  bool analyzerLent = false;
};

}  // namespace vc
