#include "host/PdfPrinters.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

namespace host {
namespace {

// PDF counts in points, 20 twips, upwards from the lower left corner of the sheet.
constexpr int TwipsPerPoint = 20;
constexpr int SheetWidth = 595, SheetHeight = 842, Margin = 36;        // points
constexpr double LetterWidth = 0.6, LineHeight = 1.15, Ascent = 0.83;  // of Courier, in its size

// Bold counts 1, italic 2.
constexpr std::array<const char*, 4> Faces{"Courier", "Courier-Bold", "Courier-Oblique",
                                           "Courier-BoldOblique"};

std::string Number(double value) {
  std::array<char, 32> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.2f", value);
  return {text.data(), static_cast<std::size_t>(length)};
}

double Across(double twips) { return Margin + twips / TwipsPerPoint; }
double Up(double twips) { return SheetHeight - Margin - twips / TwipsPerPoint; }

// One byte a letter: what the encoding of western Europe has, and a question mark for anything else.
std::string Letters(const std::string& text) {
  std::string letters;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const unsigned char next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0;
    if (byte < 0x80) {
      letters += text[i];
    } else if ((byte == 0xC2 || byte == 0xC3) && (next & 0xC0) == 0x80) {
      letters += static_cast<char>(byte == 0xC2 ? next : next + 0x40);
      ++i;
    } else if ((byte & 0xC0) == 0xC0) {
      letters += '?';  // its further bytes add nothing
    }
  }
  return letters;
}

std::string Quoted(const std::string& text) {
  std::string quoted = "(";
  for (const char letter : Letters(text)) {
    if (letter == '(' || letter == ')' || letter == '\\') quoted += '\\';
    quoted += static_cast<unsigned char>(letter) < ' ' ? ' ' : letter;
  }
  return quoted + ")";
}

// Objects by their numbers, from 1.
class PdfText {
 public:
  void Put(const std::string& object) {
    places.push_back(text.size());
    text += std::to_string(places.size()) + " 0 obj\n" + object + "\nendobj\n";
  }
  void PutStream(const std::string& content) {
    Put("<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content + "endstream");
  }
  // With the table of places at its end; the first object is the catalogue.
  std::string Whole(const std::string& title) {
    const std::size_t table = text.size();
    const std::string size = std::to_string(places.size() + 1);
    text += "xref\n0 " + size + "\n0000000000 65535 f \n";
    for (const std::size_t place : places) {
      std::array<char, 32> row{};
      std::snprintf(row.data(), row.size(), "%010zu 00000 n \n", place);
      text += row.data();
    }
    text += "trailer\n<< /Size " + size + " /Root 1 0 R /Info << /Title " + Quoted(title) +
            " >> >>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
    return std::move(text);
  }

 private:
  std::string text = "%PDF-1.4\n";
  std::vector<std::size_t> places;
};

std::string Reference(std::size_t number) { return std::to_string(number) + " 0 R"; }

// Without a file it is a document that goes nowhere.
class PdfDocument : public vc::PrintDocument {
 public:
  PdfDocument(std::unique_ptr<vc::NewFile> target, std::string title)
      : file(std::move(target)), name(std::move(title)) {}

  std::vector<std::string> Fonts() const override { return {Faces[0]}; }
  void SetFont(const vc::PrintFont& wanted) override { font = wanted; }
  vc::Size TextSize(const std::string& text) const override {
    const double size = font.points * TwipsPerPoint;
    const auto letters = static_cast<double>(Letters(text).size());
    return {static_cast<int>(std::lround(letters * LetterWidth * size)),
            static_cast<int>(std::lround(LineHeight * size))};
  }
  vc::Size Printable() const override {
    return {(SheetWidth - 2 * Margin) * TwipsPerPoint, (SheetHeight - 2 * Margin) * TwipsPerPoint};
  }
  void DrawText(int left, int top, const std::string& text) override {
    const int face = (font.bold ? 1 : 0) + (font.italic ? 2 : 0);
    pages.back() += "BT /F" + std::to_string(face) + " " + std::to_string(font.points) + " Tf " +
                    Number(Across(left)) + " " + Number(Up(top) - Ascent * font.points) + " Td " +
                    Quoted(text) + " Tj ET\n";
  }
  void DrawPolyline(std::span<const vc::Point> points, vc::LineStyle style) override {
    if (points.empty()) return;
    std::string path = style == vc::LineStyle::Solid ? "[] 0 d 0.5 w\n" : "[1 2] 0 d 0.5 w\n";
    for (const vc::Point& point : points) {
      path +=
          Number(Across(point.x)) + " " + Number(Up(point.y)) + (&point == points.data() ? " m\n" : " l\n");
    }
    pages.back() += path + "S\n";
  }
  int PageNumber() const override { return static_cast<int>(pages.size()); }
  bool NewPage() override {
    pages.emplace_back();
    return true;
  }
  bool End() override {
    return file == nullptr || (file->Write(Written()) && file->Flush() && file->Replace());
  }

 private:
  std::string Written() const;

  std::unique_ptr<vc::NewFile> file;
  std::string name;
  vc::PrintFont font{Faces[0], 9};
  std::vector<std::string> pages{std::string()};
};

// The catalogue, the list of pages and the fonts, then each page with what is on it.
std::string PdfDocument::Written() const {
  constexpr std::size_t firstFont = 3, firstPage = firstFont + Faces.size();
  std::string kids, fonts;
  for (std::size_t i = 0; i < pages.size(); ++i) kids += Reference(firstPage + 2 * i) + " ";
  for (std::size_t i = 0; i < Faces.size(); ++i) {
    fonts += "/F" + std::to_string(i) + " " + Reference(firstFont + i) + " ";
  }
  PdfText pdf;
  pdf.Put("<< /Type /Catalog /Pages 2 0 R >>");
  pdf.Put("<< /Type /Pages /Count " + std::to_string(pages.size()) + " /Kids [ " + kids +
          "] /MediaBox [ 0 0 " + std::to_string(SheetWidth) + " " + std::to_string(SheetHeight) +
          " ] /Resources << /Font << " + fonts + ">> >> >>");
  for (const char* face : Faces) {
    pdf.Put(std::string("<< /Type /Font /Subtype /Type1 /Encoding /WinAnsiEncoding /BaseFont /") + face +
            " >>");
  }
  for (std::size_t i = 0; i < pages.size(); ++i) {
    pdf.Put("<< /Type /Page /Parent 2 0 R /Contents " + Reference(firstPage + 2 * i + 1) + " >>");
    pdf.PutStream(pages[i]);
  }
  return pdf.Whole(name);
}

}  // namespace

std::unique_ptr<vc::PrintDocument> PdfPrinters::Begin(const vc::PrintJob& job) {
  if (job.printer != vc::SaveAsPdf) return nullptr;
  auto file = files.CreateBeside(job.file);
  return file ? std::make_unique<PdfDocument>(std::move(file), job.title) : nullptr;
}

bool PdfPrinters::Preview(const vc::PrintJob& job, const vc::PrintDrawing& drawing) {
  PdfDocument pages(nullptr, job.title);
  if (!drawing(pages)) return false;
  tell(job, pages.PageNumber());
  return true;
}

}  // namespace host
