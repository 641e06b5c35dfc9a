#include "host/CairoSurface.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace host {
namespace {

constexpr double TextHeight = 12.0, CurveWidth = 1.5;
constexpr std::array<double, 2> Dots{1.0, 2.0};

struct PaperColour {
  vc::Colour number, colour;
};
constexpr std::array<PaperColour, 14> PaperColours{{{vc::FrameLine, vc::MakeColour(0xC5, 0xCD, 0xD5)},
                                                    {vc::WindowBack, vc::MakeColour(0xFF, 0xFF, 0xFF)},
                                                    {vc::WindowText, vc::MakeColour(0x1D, 0x29, 0x35)},
                                                    {vc::Highlight, vc::MakeColour(0x2A, 0x6C, 0xB0)},
                                                    {vc::HighlightText, vc::MakeColour(0xFF, 0xFF, 0xFF)},
                                                    {vc::ButtonFace, vc::MakeColour(0xFF, 0xFF, 0xFF)},
                                                    {vc::GrayText, vc::MakeColour(0x5F, 0x6C, 0x78)},
                                                    {vc::ButtonText, vc::MakeColour(0x1D, 0x29, 0x35)},
                                                    {vc::GridLine, vc::MakeColour(0xE4, 0xE8, 0xEC)},
                                                    {vc::HotLight, vc::MakeColour(0x2A, 0x6C, 0xB0)},
                                                    {vc::PassBack, vc::MakeColour(0xEA, 0xF0, 0xF7)},
                                                    {vc::StopBack, vc::MakeColour(0xEF, 0xF0, 0xF1)},
                                                    {vc::FaintCurve, vc::MakeColour(0x9F, 0xBD, 0xDB)},
                                                    {vc::BarBack, vc::MakeColour(0xDD, 0xE8, 0xF2)}}};

void AddRectangle(cairo_t* context, const vc::Rectangle& area) {
  cairo_rectangle(context, area.left, area.top, area.width, area.height);
}

// Of the character that begins here: 1 to 4 bytes, 0 where it is none.
std::size_t CharacterLength(std::string_view rest) {
  const auto first = static_cast<unsigned char>(rest.front());
  if (first < 0x80) return 1;
  if (first < 0xC2 || first > 0xF4) return 0;
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (rest.size() < length) return 0;
  const bool whole = std::all_of(rest.begin() + 1, rest.begin() + static_cast<std::ptrdiff_t>(length),
                                 [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; });
  const auto second = static_cast<unsigned char>(rest[1]);
  const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
  const bool beyond = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
  return whole && !overlong && !beyond ? length : 0;
}

// One text that is none would make an end of the whole picture.
std::string Readable(std::string_view text) {
  std::string readable;
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    readable += length == 0 ? "?" : std::string(text.substr(0, length));
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return readable;
}

}  // namespace

CairoSurface::CairoSurface(cairo_t* target) : context(target) {
  cairo_select_font_face(context, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_set_font_options(context, options);
  cairo_font_options_destroy(options);
}

vc::Colour CairoSurface::Translated(vc::Colour colour) const {
  if (!vc::IsSystemColour(colour)) return colour;
  const auto* row = std::ranges::find(PaperColours, colour, &PaperColour::number);
  return row == PaperColours.end() ? Translated(vc::WindowBack) : row->colour;
}

void CairoSurface::SetColour(vc::Colour colour) {
  constexpr double most = 255.0;
  const vc::Colour known = Translated(colour);
  cairo_set_source_rgb(context, vc::RedOf(known) / most, vc::GreenOf(known) / most, vc::BlueOf(known) / most);
}

void CairoSurface::FillRectangle(const vc::Rectangle& area, vc::Colour colour) {
  SetColour(colour);
  AddRectangle(context, area);
  cairo_fill(context);
}

void CairoSurface::FillEllipse(const vc::Rectangle& area, vc::Colour colour) {
  if (area.width <= 0 || area.height <= 0) return;
  SetColour(colour);
  cairo_save(context);
  cairo_translate(context, area.left + area.width / 2.0, area.top + area.height / 2.0);
  cairo_scale(context, area.width / 2.0, area.height / 2.0);
  cairo_new_path(context);
  cairo_arc(context, 0.0, 0.0, 1.0, 0.0, 2.0 * std::numbers::pi);
  cairo_restore(context);
  cairo_fill(context);
}

void CairoSurface::FillPolygon(std::span<const vc::Point> corners, vc::Colour colour) {
  SetColour(colour);
  cairo_new_path(context);
  for (const vc::Point& corner : corners) cairo_line_to(context, corner.x, corner.y);
  cairo_close_path(context);
  cairo_fill(context);
}

void CairoSurface::FrameRectangle(const vc::Rectangle& area, vc::Colour colour) {
  SetColour(colour);
  cairo_set_line_width(context, 1.0);
  cairo_set_dash(context, nullptr, 0, 0.0);
  cairo_rectangle(context, area.left + 0.5, area.top + 0.5, area.width - 1.0, area.height - 1.0);
  cairo_stroke(context);
}

void CairoSurface::DrawEdge(const vc::Rectangle& area, vc::EdgeStyle /*style*/) {
  FrameRectangle(area, vc::FrameLine);
}

void CairoSurface::Stroke(double fromX, double fromY, double toX, double toY, vc::LineStyle style,
                          vc::Colour colour) {
  SetColour(colour);
  cairo_set_line_width(context, 1.0);
  cairo_set_dash(context, Dots.data(), style == vc::LineStyle::Dotted ? 2 : 0, 0.0);
  cairo_move_to(context, fromX, fromY);
  cairo_line_to(context, toX, toY);
  cairo_stroke(context);
}

void CairoSurface::DrawAcross(int left, int top, int length, vc::LineStyle style, vc::Colour colour) {
  Stroke(left, top + 0.5, left + length, top + 0.5, style, colour);
}

void CairoSurface::DrawDown(int left, int top, int length, vc::LineStyle style, vc::Colour colour) {
  Stroke(left + 0.5, top, left + 0.5, top + length, style, colour);
}

void CairoSurface::DrawPolyline(std::span<const vc::Point> points, vc::Colour colour,
                                const vc::Rectangle& clip) {
  // The library's numbers end at 2^23; what is so far away is cut off anyway.
  constexpr double farthest = 1e5;
  cairo_save(context);
  AddRectangle(context, clip);
  cairo_clip(context);
  SetColour(colour);
  cairo_set_line_width(context, CurveWidth);
  cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
  cairo_set_dash(context, nullptr, 0, 0.0);
  for (const vc::Point& point : points) {
    cairo_line_to(context, std::clamp(point.x, -farthest, farthest),
                  std::clamp(point.y, -farthest, farthest));
  }
  cairo_stroke(context);
  cairo_restore(context);
}

void CairoSurface::DrawPixels(std::span<const std::uint32_t> pixels, const vc::Size& size,
                              const vc::Rectangle& area, const vc::Rectangle& clip) {
  cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height);
  const auto width = static_cast<std::size_t>(size.width), height = static_cast<std::size_t>(size.height);
  if (cairo_surface_status(image) == CAIRO_STATUS_SUCCESS && pixels.size() >= width * height) {
    cairo_surface_flush(image);
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(image));
    unsigned char* row = cairo_image_surface_get_data(image);
    for (std::size_t y = 0; y < height; ++y, row += stride) {
      const auto from = std::as_bytes(pixels.subspan(y * width, width));
      std::transform(from.begin(), from.end(), row,
                     [](std::byte byte) { return std::to_integer<unsigned char>(byte); });
    }
    cairo_surface_mark_dirty(image);
    cairo_save(context);
    AddRectangle(context, clip);
    cairo_clip(context);
    cairo_translate(context, area.left, area.top);
    cairo_scale(context, area.width / static_cast<double>(size.width),
                area.height / static_cast<double>(size.height));
    cairo_set_source_surface(context, image, 0.0, 0.0);
    cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_NEAREST);
    cairo_paint(context);
    cairo_restore(context);
  }
  cairo_surface_destroy(image);
}

void CairoSurface::SetTextHeight() const { cairo_set_font_size(context, TextHeight * textScale); }

void CairoSurface::DrawText(const vc::Rectangle& area, const std::string& text) {
  SetTextHeight();
  SetColour(foreColour);
  cairo_font_extents_t font{};
  cairo_font_extents(context, &font);
  cairo_move_to(context, area.left, area.top + font.ascent);
  cairo_show_text(context, Readable(text).c_str());
  cairo_new_path(context);
}

vc::Size CairoSurface::TextSize(const std::string& text) const {
  SetTextHeight();
  cairo_font_extents_t font{};
  cairo_font_extents(context, &font);
  cairo_text_extents_t extents{};
  cairo_text_extents(context, Readable(text).c_str(), &extents);
  return {static_cast<int>(std::lround(extents.x_advance)), static_cast<int>(std::lround(font.height))};
}

}  // namespace host
