// What we ask of the host's printers. All lengths are in twips, 1440 an inch, from the upper left corner of
// that part of the page which can be printed on.
#pragma once

#include <any>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/Surface.h"

namespace vc {

struct PrintFont {
  std::string name;
  int points = 9;
  bool bold = false, italic = false;
  bool operator==(const PrintFont&) const = default;
};

// A document in the making, on its first page. Destroyed before its End it is given up: of a file nothing is
// left, of a printer's job what has not been printed yet. What cannot be drawn is told by the next NewPage or
// End.
class PrintDocument {
 public:
  virtual ~PrintDocument() = default;
  // Names of what SetFont takes, at least one.
  virtual std::vector<std::string> Fonts() const = 0;
  // For all texts from now on, over all pages.
  virtual void SetFont(const PrintFont& font) = 0;
  // Of a line of text in the present font; its height does not hang on the text.
  virtual Size TextSize(const std::string& text) const = 0;
  virtual Size Printable() const = 0;
  // One line of text, its upper left corner there.
  virtual void DrawText(int left, int top, const std::string& text) = 0;
  // All of the points joined by a thin black line.
  virtual void DrawPolyline(std::span<const Point> points, LineStyle style) = 0;
  // Of the page that is drawn on, from 1.
  virtual int PageNumber() const = 0;
  virtual bool NewPage() = 0;
  // The document is whole and on its way; nothing may follow. False where it could not be had.
  virtual bool End() = 0;
};

// Draws a document from its first page to its End; false where that failed. It may be run more than once, for
// other paper as well, and draws the same each time, whatever has changed in the program meanwhile.
using PrintDrawing = std::function<bool(PrintDocument& document)>;

// What is to go onto paper.
struct PrintTask {
  std::string title;  // in the queue of a printer
  PrintDrawing drawing;
  std::function<void()> failed;  // tells the operator
};

// The printer that every host has: it asks for no device but for the name of a file.
inline constexpr const char* SaveAsPdf = "Save as PDF";

struct PrintJob {
  std::string printer;  // one of Printers::Names
  std::string title;
  std::string file{};  // of SaveAsPdf, whole with its folder; what has this name is replaced at the End
  // What the dialog has let the operator set beside the printer, such as the number of copies: for these
  // Printers alone.
  std::any setup{};
};

class Printers {
 public:
  virtual ~Printers() = default;
  // The system's printers by their names, SaveAsPdf last.
  virtual std::vector<std::string> Names() = 0;
  // The one that is taken where nobody chooses.
  virtual std::string Preferred() = 0;
  // Null where there is no such printer, or it takes no document.
  virtual std::unique_ptr<PrintDocument> Begin(const PrintJob& job) = 0;
  // The system's dialog, which begins with the job's printer. False where it was cancelled. SaveAsPdf may be
  // chosen without the name of a file.
  virtual bool Choose(PrintJob& job) = 0;
  // Shows the pages before paper is used; true where the operator wants them printed,
  // false, too, where they could not be drawn. No file is touched.
  virtual bool Preview(const PrintJob& job, const PrintDrawing& drawing) = 0;
};

}  // namespace vc
