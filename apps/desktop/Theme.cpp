#include "desktop/Theme.h"

#include <array>

#include <QApplication>
#include <QPalette>
#include <QString>

#include "desktop/QtText.h"
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

// Group boxes with a quiet line and a coloured title, flat buttons; everything in units of the font.
constexpr const char* SheetText = R"(
QGroupBox { border: 1px solid @mid; border-radius: 0.4em; margin-top: 0.8em; }
QGroupBox::title { subcontrol-origin: margin; subcontrol-position: top left; left: 0.5em; padding: 0 0.3em;
                   color: @title; }
QGroupBox::title:disabled { color: @faded; }
QGroupBox:disabled { border-style: dashed; }
QGroupBox[captioned="false"] { border: none; margin-top: 0; }
QWidget[splash="true"] { background: @accent; }
QWidget[splash="true"] QLabel { color: white; }
QWidget[splash="true"] QLabel[title="true"] { font-size: @bigpt; }
QLabel#progressNote { background: @button; color: @text; border: 1px solid @accent; border-radius: 0.3em;
                     padding: 0.2em 0.6em; }
QListWidget, QPlainTextEdit { border: 1px solid @mid; border-radius: 0.2em; }
QListWidget:focus, QPlainTextEdit:focus { border-color: @accent; }
QPushButton { background: @button; color: @text; border: 1px solid @mid; border-radius: 0.3em;
              padding: 0.35em 1.1em; min-width: 4em; }
QPushButton[compact="true"] { padding: 0.4em 0.4em; min-width: 3.2em; }
QGroupBox[card="true"] QPushButton { padding: 0.4em 0.3em; min-width: 1em; }
QPushButton:hover { background: @hover; border-color: @dark; }
QPushButton:focus, QPushButton:default { border-color: @accent; }
QPushButton:pressed { background: @midlight; }
QPushButton:disabled { background: @window; color: @faded; border-color: @mid; }
QGroupBox[standing="out"] QLabel { color: @muted; }
QGroupBox[standing="out"] QPushButton { color: @muted; }
QPushButton[drawn="true"], QGroupBox QPushButton[drawn="true"] {
  min-width: 0; padding: 0; border: none; background: transparent; }
QRadioButton[segment="true"] { background: @button; color: @text; border: 1px solid @mid; padding: 0.35em 0.6em;
                               margin-right: -1px; spacing: 0; }
QRadioButton[segment="true"]::indicator { width: 0; height: 0; }
QRadioButton[segment="true"]:hover { background: @hover; }
QRadioButton[segment="true"]:focus { border-color: @link; }
QRadioButton[segment="true"]:checked { background: @link; color: @base; border-color: @link; }
QRadioButton[segment="true"]:disabled { background: @window; color: @faded; }
QRadioButton[segment="true"]:checked:focus { border: 2px solid @text; padding: 0.25em 0.55em; }
)";

QString SheetOf(Theme theme, const QPalette& palette) {
  const bool light = theme == Theme::Light;
  QString sheet = QLatin1String(SheetText);
  const auto put = [&sheet](const char* mark, const QColor& colour) {
    sheet.replace(QLatin1String(mark), colour.name());
  };
  put("@title", QColor(light ? TitleLight : TitleDark));
  put("@faded", QColor(light ? FadedLight : FadedDark));
  put("@muted", palette.color(QPalette::PlaceholderText));
  put("@hover", palette.color(QPalette::AlternateBase));
  put("@dark", palette.color(QPalette::Dark));
  put("@midlight", palette.color(QPalette::Midlight));
  put("@mid", palette.color(QPalette::Mid));
  put("@button", palette.color(QPalette::Button));
  put("@text", palette.color(QPalette::ButtonText));
  put("@accent", palette.color(QPalette::Highlight));
  put("@link", palette.color(QPalette::Link));
  put("@base", palette.color(QPalette::Base));
  put("@window", palette.color(QPalette::Window));
  constexpr double big = 1.8;
  return sheet.replace(QLatin1String("@big"), QString::number(big * PointSize(QApplication::font())));
}

}  // namespace

Theme SystemTheme() {
  constexpr int middle = 128;
  const QPalette ours = QApplication::palette();
  const bool dressed = ours.resolveMask() != 0;
  if (dressed) QApplication::setPalette({});  // which lets the system's through
  const int lightness = QApplication::palette().color(QPalette::Window).lightness();
  if (dressed) QApplication::setPalette(ours);
  return lightness < middle ? Theme::Dark : Theme::Light;
}

void ApplyTheme(Theme theme) {
  QApplication::setStyle(new Style);
  // The style is the application's, which the analysis does not know.
  const QPalette palette = PaletteOf(theme);  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
  QApplication::setPalette(palette);
  static_cast<QApplication*>(QCoreApplication::instance())->setStyleSheet(SheetOf(theme, palette));
}

}  // namespace desktop
