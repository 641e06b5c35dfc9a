#include "desktop/Theme.h"

#include <array>

#include <QApplication>

#include "desktop/Style.h"

namespace desktop {
namespace {

// One colour of the look in both themes, 0xRRGGBB.
struct Tint {
  QPalette::ColorRole role;
  QRgb light, dark;
};
constexpr std::array<Tint, 19> Tints{{{QPalette::Window, 0xF3F5F7, 0x2A3139},
                                      {QPalette::WindowText, 0x1D2935, 0xE2E7EC},
                                      {QPalette::Base, 0xFFFFFF, 0x14181C},
                                      {QPalette::AlternateBase, 0xEDF0F3, 0x313942},
                                      {QPalette::Text, 0x1D2935, 0xE2E7EC},
                                      {QPalette::Button, 0xFDFEFE, 0x353E47},
                                      {QPalette::ButtonText, 0x1D2935, 0xE2E7EC},
                                      {QPalette::BrightText, 0xFFFFFF, 0xFFFFFF},
                                      {QPalette::PlaceholderText, 0x5F6C78, 0xAAB5BF},
                                      {QPalette::Highlight, 0x2A6CB0, 0x2F76BA},
                                      {QPalette::HighlightedText, 0xFFFFFF, 0xFFFFFF},
                                      {QPalette::Link, 0x2A6CB0, 0x6FAEE8},
                                      {QPalette::LinkVisited, 0x6A4FA3, 0xA48BD8},
                                      {QPalette::Light, 0xFFFFFF, 0x5C6874},
                                      {QPalette::Midlight, 0xE4E8EC, 0x45515C},
                                      {QPalette::Mid, 0xC5CDD5, 0x55616D},
                                      {QPalette::Dark, 0x98A4AF, 0x181C21},
                                      {QPalette::Shadow, 0x64717D, 0x0A0D10},
                                      {QPalette::ToolTipText, 0x1D2935, 0xE2E7EC}}};
constexpr QRgb FadedLight = 0x65707C, FadedDark = 0x9EA9B4;
constexpr QRgb TitleLight = 0x2A5C91, TitleDark = 0x8BBBEA;

}  // namespace

QPalette PaletteOf(Theme theme) {
  const bool light = theme == Theme::Light;
  QPalette palette;
  for (const Tint& tint : Tints) palette.setColor(tint.role, QColor(light ? tint.light : tint.dark));
  palette.setColor(QPalette::ToolTipBase, palette.color(QPalette::Button));
  const QColor faded(light ? FadedLight : FadedDark);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, faded);
  }
  palette.setColor(QPalette::Disabled, QPalette::Highlight, palette.color(QPalette::Mid));
  return palette;
}

Theme SystemTheme() {
  const QPalette ours = QApplication::palette();
  const bool dressed = ours.resolveMask() != 0;
  if (dressed) QApplication::setPalette({});  // which lets the system's through
  const bool dark = IsDark(QApplication::palette());
  if (dressed) QApplication::setPalette(ours);
  return dark ? Theme::Dark : Theme::Light;
}

void ApplyTheme(Theme theme) {
  QApplication::setStyle(new Style);
  // The style is the application's, which the analysis does not know.
  const QPalette palette = PaletteOf(theme);  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
  QApplication::setPalette(palette);
}

bool IsDark(const QPalette& palette) {
  constexpr int middle = 128;
  return palette.color(QPalette::Window).lightness() < middle;
}

QColor TitleColour(const QPalette& palette) { return {IsDark(palette) ? TitleDark : TitleLight}; }

}  // namespace desktop
