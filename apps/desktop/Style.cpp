#include "desktop/Style.h"

#include <algorithm>

#include <QListWidget>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPolygonF>
#include <QStyleOption>
#include <QVariant>

#include "desktop/FrameView.h"
#include "desktop/Theme.h"

namespace desktop {
namespace {

constexpr const char* CompactProperty = "compact";

// Lines of the font.
int Lines(const QStyleOption& option, double lines) { return qRound(lines * option.fontMetrics.height()); }

// A line of one pixel around an area, with corners so round.
void DrawBox(QPainter& painter, const QRect& area, double corner, const QPen& pen, const QBrush& ground) {
  const double half = 0.5;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(pen);
  painter.setBrush(ground);
  painter.drawRoundedRect(QRectF(area).adjusted(half, half, -half, -half), corner, corner);
  painter.restore();
}

void DrawFocus(QPainter& painter, const QRect& area, const QPalette& palette) {
  const double corner = 2.5;
  DrawBox(painter, area, corner, palette.color(QPalette::Highlight), Qt::NoBrush);
}

// A ring or a box in the colour of a text, so that it is seen on any ground, filled where it is chosen.
void DrawMark(QPainter& painter, const QStyleOption& option, bool round) {
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool on = option.state.testFlag(QStyle::State_On);
  const QColor line = option.palette.color(QPalette::Active, QPalette::PlaceholderText);
  const QColor full = enabled ? option.palette.color(QPalette::Link) : line;
  const QColor ground = option.palette.color(QPalette::Active, QPalette::Base);
  const double half = 0.5;
  const QRectF area = QRectF(option.rect).adjusted(half, half, -half, -half);
  const double corner = round ? area.height() / 2 : 2.5, inset = area.height() * 0.3;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(on ? full : line, 1));
  painter.setBrush(on ? full : ground);
  painter.drawRoundedRect(area, corner, corner);
  if (on && round) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawEllipse(area.adjusted(inset, inset, -inset, -inset));
  } else if (on) {
    painter.setPen(QPen(ground, 2));
    painter.drawPolyline(QPolygonF{QPointF(area.left() + inset * 0.7, area.center().y()),
                                   QPointF(area.left() + area.width() * 0.42, area.bottom() - inset * 0.9),
                                   QPointF(area.right() - inset * 0.6, area.top() + inset)});
  }
  painter.restore();
}

// Room around a button's words, and the least for them, in lines.
struct ButtonRoom {
  double aside, above, words;
};
ButtonRoom RoomOf(const QWidget* button) {
  if (button != nullptr && IsOnCard(*button)) return {.aside = 0.3, .above = 0.4, .words = 1.0};
  const bool compact = button != nullptr && button->property(CompactProperty).toBool();
  if (compact) return {.aside = 0.4, .above = 0.4, .words = 3.2};
  return {.aside = 1.1, .above = 0.35, .words = 4.0};
}

QSize ButtonSize(const QStyleOption& option, const QSize& words, const QWidget* button) {
  const ButtonRoom room = RoomOf(button);
  const int line = 1;
  return {std::max(words.width(), Lines(option, room.words)) + 2 * (Lines(option, room.aside) + line),
          words.height() + 2 * (Lines(option, room.above) + line)};
}

void DrawButtonGround(QPainter& painter, const QStyleOptionButton& option) {
  const QPalette& palette = option.palette;
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool over = option.state.testFlag(QStyle::State_MouseOver);
  const bool standsOut = option.state.testFlag(QStyle::State_HasFocus) ||
                         option.features.testFlag(QStyleOptionButton::DefaultButton);
  const auto ground = !enabled                                      ? QPalette::Window
                      : option.state.testFlag(QStyle::State_Sunken) ? QPalette::Midlight
                      : over                                        ? QPalette::AlternateBase
                                                                    : QPalette::Button;
  const auto line = !enabled    ? QPalette::Mid
                    : standsOut ? QPalette::Highlight
                    : over      ? QPalette::Dark
                                : QPalette::Mid;
  constexpr double corner = 0.3;
  DrawBox(painter, option.rect, Lines(option, corner), palette.color(line), palette.color(ground));
}

// Where the title of a group begins, how far from its line, and how high its upper half is, in lines.
constexpr double TitleAside = 0.5, TitleRoom = 0.3, TitleAbove = 0.8;

QRect GroupPart(const QStyleOptionGroupBox& option, QStyle::SubControl part) {
  const bool titled = !option.text.isEmpty();
  const QRect frame = option.rect.adjusted(0, titled ? Lines(option, TitleAbove) : 0, 0, 0);
  if (part == QStyle::SC_GroupBoxFrame) return frame;
  if (part == QStyle::SC_GroupBoxContents) return titled ? frame.adjusted(1, 1, -1, -1) : frame;
  const int words = option.fontMetrics.size(Qt::TextShowMnemonic, option.text).width();
  const int width = titled ? words + 2 * Lines(option, TitleRoom) : 0;
  return {option.rect.left() + Lines(option, TitleAside), option.rect.top(), width,
          option.fontMetrics.height()};
}

void DrawGroup(QPainter& painter, const QStyleOptionGroupBox& option) {
  if (option.text.isEmpty()) return;
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const QRect title = GroupPart(option, QStyle::SC_GroupBoxLabel);
  const auto pen = QPen(option.palette.color(QPalette::Mid), 1, enabled ? Qt::SolidLine : Qt::DashLine);
  constexpr double corner = 0.4;
  painter.save();
  painter.setClipRegion(QRegion(option.rect) - title);
  DrawBox(painter, GroupPart(option, QStyle::SC_GroupBoxFrame), Lines(option, corner), pen, Qt::NoBrush);
  painter.restore();
  painter.setPen(enabled ? TitleColour(option.palette) : option.palette.color(QPalette::WindowText));
  painter.drawText(title, Qt::AlignCenter | Qt::TextShowMnemonic, option.text);
}

bool IsCheckable(const QStyleOptionGroupBox& option) {
  return option.subControls.testFlag(QStyle::SC_GroupBoxCheckBox);
}

bool HoldsRows(const QWidget* widget) {
  return qobject_cast<const QListWidget*>(widget) != nullptr ||
         qobject_cast<const QPlainTextEdit*>(widget) != nullptr;
}

void DrawRowsFrame(QPainter& painter, const QStyleOption& option) {
  const bool focused = option.state.testFlag(QStyle::State_HasFocus);
  constexpr double corner = 0.2;
  DrawBox(painter, option.rect, Lines(option, corner),
          option.palette.color(focused ? QPalette::Highlight : QPalette::Mid), Qt::NoBrush);
}

}  // namespace

void MakeCompact(QWidget& button) { button.setProperty(CompactProperty, true); }

Style::Style() : QProxyStyle(QStringLiteral("Fusion")) {}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  if (element == PE_FrameFocusRect) return DrawFocus(*painter, option->rect, option->palette);
  if (element == PE_IndicatorRadioButton) return DrawMark(*painter, *option, true);
  if (element == PE_IndicatorCheckBox) return DrawMark(*painter, *option, false);
  if (element == PE_Frame && HoldsRows(widget)) return DrawRowsFrame(*painter, *option);
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
  if (button != nullptr && element == CE_PushButtonBevel) return DrawButtonGround(*painter, *button);
  if (button != nullptr && element == CE_PushButtonLabel && widget != nullptr && IsOut(*widget)) {
    QStyleOptionButton quiet = *button;
    quiet.palette.setColor(QPalette::ButtonText, quiet.palette.color(QPalette::PlaceholderText));
    return QProxyStyle::drawControl(element, &quiet, painter, widget);
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
  const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
  if (group != nullptr && !IsCheckable(*group)) return DrawGroup(*painter, *group);
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  const bool rings = control == CC_Slider || control == CC_ComboBox;
  if (rings && option->state.testFlag(State_HasFocus)) DrawFocus(*painter, option->rect, option->palette);
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                              const QWidget* widget) const {
  if (type == CT_PushButton && option != nullptr) return ButtonSize(*option, contents, widget);
  const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
  if (group != nullptr && group->text.isEmpty()) return {};  // what it holds says how large it is
  return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                            const QWidget* widget) const {
  const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
  if (group != nullptr && !IsCheckable(*group)) return GroupPart(*group, part);
  return QProxyStyle::subControlRect(control, option, part, widget);
}

}  // namespace desktop
