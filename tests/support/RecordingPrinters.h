// Printers that keep what was printed. Their letters are all of one width.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/Printing.h"

namespace support {

struct PrintedText {
  int left, top;
  std::string text;
};

struct PrintedLine {
  std::vector<vc::Point> points;
  vc::LineStyle style;
  bool operator==(const PrintedLine&) const = default;
};

struct PrintedPage {
  std::vector<PrintedText> texts;
  std::vector<PrintedLine> lines;

  // Line by line.
  std::string Text() const {
    std::string all;
    for (const PrintedText& one : texts) all += one.text + "\n";
    return all;
  }
};

struct Printout {
  vc::PrintJob job;
  std::vector<vc::PrintFont> fonts;
  std::vector<PrintedPage> pages{1};
  bool ended = false;

  std::string Text() const {
    std::string all;
    for (const PrintedPage& page : pages) all += page.Text();
    return all;
  }
};

class RecordingPrinters : public vc::Printers {
 public:
  std::vector<std::string> names{"Office", vc::SaveAsPdf};
  std::string preferred = names.front();
  std::vector<std::string> fonts{"Serif", "Courier New"};
  vc::Size printable{11000, 4000};
  int failingPage = 0;  // which cannot be begun
  bool endFails = false;
  bool chosen = true;               // the dialog is not cancelled
  std::string choice;               // what is chosen there; the job's own where empty
  bool wanted = true;               // once it has been seen
  std::function<void()> previewed;  // while it is looked at
  std::vector<Printout> printouts, previews;

  static constexpr int LetterWidth = 108, LetterHeight = 200;
  int letterHeight = LetterHeight;  // as it is told

  std::vector<std::string> Names() override { return names; }
  std::string Preferred() override { return preferred; }
  std::unique_ptr<vc::PrintDocument> Begin(const vc::PrintJob& job) override {
    if (std::ranges::find(names, job.printer) == names.end()) return nullptr;
    return Opened(printouts, job);
  }
  bool Choose(vc::PrintJob& job) override {
    if (chosen && !choice.empty()) job.printer = choice;
    return chosen;
  }
  bool Preview(const vc::PrintJob& job, const vc::PrintDrawing& drawing) override {
    const bool drawn = drawing(*Opened(previews, job));
    if (previewed) previewed();
    return drawn && wanted;
  }

 private:
  class Document : public vc::PrintDocument {
   public:
    Document(RecordingPrinters& owner, std::vector<Printout>& list)
        : printers(owner), outs(list), index(list.size() - 1) {}
    std::vector<std::string> Fonts() const override { return printers.fonts; }
    void SetFont(const vc::PrintFont& font) override { Out().fonts.push_back(font); }
    vc::Size TextSize(const std::string& text) const override {
      return {LetterWidth * static_cast<int>(text.size()), printers.letterHeight};
    }
    vc::Size Printable() const override { return printers.printable; }
    void DrawText(int left, int top, const std::string& text) override {
      Out().pages.back().texts.push_back({left, top, text});
    }
    void DrawPolyline(std::span<const vc::Point> points, vc::LineStyle style) override {
      Out().pages.back().lines.push_back({{points.begin(), points.end()}, style});
    }
    int PageNumber() const override { return static_cast<int>(outs[index].pages.size()); }
    bool NewPage() override {
      if (PageNumber() + 1 == printers.failingPage) return false;
      Out().pages.emplace_back();
      return true;
    }
    bool End() override { return Out().ended = !printers.endFails; }

   private:
    Printout& Out() { return outs[index]; }

    RecordingPrinters& printers;
    std::vector<Printout>& outs;
    std::size_t index;
  };

  std::unique_ptr<vc::PrintDocument> Opened(std::vector<Printout>& list, const vc::PrintJob& job) {
    list.push_back({job, {}, std::vector<PrintedPage>(1), false});
    return std::make_unique<Document>(*this, list);
  }
};

}  // namespace support
