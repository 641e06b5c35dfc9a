#include "desktop/MessageBox.h"

#include <algorithm>

#include <QApplication>
#include <QMessageBox>
#include <QRegularExpression>

#include "desktop/QtText.h"

namespace desktop {
namespace {

using vc::Answer;

QMessageBox::Icon IconOf(int code) {
  constexpr int iconBits = 0x70;
  switch (code & iconBits) {
    case vc::box::Critical:
      return QMessageBox::Critical;
    case vc::box::Exclamation:
      return QMessageBox::Warning;
    case vc::box::Information:
      return QMessageBox::Information;
    default:
      return vc::box::ButtonsOf(code) == vc::box::Buttons::Ok ? QMessageBox::NoIcon : QMessageBox::Question;
  }
}

QMessageBox::StandardButtons ButtonsOf(int code) {
  switch (vc::box::ButtonsOf(code)) {
    case vc::box::Buttons::OkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case vc::box::Buttons::YesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case vc::box::Buttons::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case vc::box::Buttons::Ok:
      break;
  }
  return QMessageBox::Ok;
}

QMessageBox::StandardButton ButtonOf(Answer answer) {
  switch (answer) {
    case Answer::Cancel:
      return QMessageBox::Cancel;
    case Answer::Yes:
      return QMessageBox::Yes;
    case Answer::No:
      return QMessageBox::No;
    case Answer::Ok:
      break;
  }
  return QMessageBox::Ok;
}

Answer AnswerOf(int pressed, Answer safe) {
  for (const Answer answer : {Answer::Ok, Answer::Cancel, Answer::Yes, Answer::No}) {
    if (pressed == ButtonOf(answer)) return answer;
  }
  return safe;
}

// Words that are longer than a line, as names of files may be, get places where they can be broken.
QString Breakable(const QString& text) {
  constexpr int longest = 32, between = 8;
  static const QRegularExpression longWord(QStringLiteral("\\S{%1,}").arg(longest));
  QString broken;
  qsizetype done = 0;
  for (auto found = longWord.globalMatch(text); found.hasNext();) {
    const QRegularExpressionMatch word = found.next();
    broken += text.mid(done, word.capturedStart() - done);
    for (qsizetype at = word.capturedStart(); at < word.capturedEnd(); at += between) {
      constexpr QChar zeroWidthSpace(0x200B);
      broken += text.mid(at, std::min<qsizetype>(between, word.capturedEnd() - at)) + zeroWidthSpace;
    }
    done = word.capturedEnd();
  }
  return broken + text.mid(done);
}

// Texts come with the line ends of any system.
QString Lines(const std::string& text) {
  return ToQt(text)
      .replace(QLatin1String("\r\n"), QLatin1String("\n"))
      .replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

}  // namespace

Answer ShowBox(int code, const std::string& title, const std::string& text, const std::string& remark) {
  const Answer safe = vc::SafeAnswer(vc::box::ButtonsOf(code));
  QMessageBox box(IconOf(code), ToQt(title), {}, ButtonsOf(code), QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.setText(Breakable(Lines(text)));
  box.setInformativeText(ToQt(remark));
  box.setWindowModality(Qt::ApplicationModal);
  box.setDefaultButton(ButtonOf(safe));
  box.setEscapeButton(ButtonOf(safe));
  return AnswerOf(box.exec(), safe);
}

}  // namespace desktop
