// The setup report: the way from the menus to the printer or into a file.
#pragma once

#include <string>

#include "model/SystemSettings.h"
#include "platform/Clock.h"
#include "platform/Desk.h"
#include "platform/Files.h"
#include "report/ReportPages.h"
#include "text/Wire.h"
#include "widgets/Form.h"

namespace vc {

struct Printouts;
struct Windows;

struct Reports {
  // What they work on. Some of these come to be only after them.
  struct Around {
    const SystemSettings& settings;
    Clock& clock;
    Desk& desk;
    Files& files;
    Windows& windows;
    Printouts& printouts;
    Form& over;  // that the windows lie above
    // The lines of the report, made under the hourglass; false where they could not be built.
    Wire<bool(std::string& report)> generate;
    // Of what is on the displays and in the record now.
    Wire<ReportPictures()> pictures;
  };
  explicit Reports(const Around& parts) : around(parts) {}

  // Asks for the printer, and for the file, which is replaced or goes on behind what it has.
  void AskForPrinter() const;
  void AskForFile(bool append) const;
  // What is printed is made before anything is shown of it.
  void Print(const std::string& printer, bool DoubleSpaced) const;

 private:
  bool Generate(std::string& report) const;
  bool Write(const std::string& path, bool append) const;

  Around around;
};

}  // namespace vc
