// The text boxes: a line, several lines, or words that are only read.
#include <memory>
#include <optional>
#include <utility>

#include <QFontDatabase>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QTimer>

#include "desktop/Kinds.h"
#include "desktop/QtText.h"
#include "desktop/TextEvents.h"
#include "desktop/WrappedLabel.h"
#include "widgets/Controls.h"

namespace desktop {
namespace {

constexpr int NumberDigits = 9, DenseNumberDigits = 6, StatusDigits = 32, DenseStatusDigits = 26;

// What a widget shows of a text is only a picture of it: bytes that are no UTF-8 and foreign line ends have
// none. As long as the operator leaves the picture as it was, the text keeps its bytes.
class Pictured {
 public:
  // True where the model's text is another one than the operator has left in the widget.
  bool Differs(const std::string& modelText, const QString& shown) const {
    return TextFor(shown) != modelText;
  }
  void Take(const std::string& modelText, const QString& shown) {
    text = modelText;
    picture = shown;
  }
  std::string TextFor(const QString& shown) const { return shown == picture ? text : FromQt(shown); }

 private:
  std::string text;
  QString picture;
};

QString Lines(const std::string& text) {
  return ToQt(text)
      .replace(QLatin1String("\r\n"), QLatin1String("\n"))
      .replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

// What the widget itself does on events: when the focus comes, and where it could take typing back.
struct Editing {
  std::function<void()> selectAll;
  std::function<void()> keep;  // what was typed has been taken: it is no more the box's own to undo
  std::function<bool()> canUndo, canRedo;
};

// Joins the events of a text widget to the box.
void Listen(Binder& binder, vc::TextBox& text, QWidget* view, const Editing& editing) {
  const auto tell = [&binder, &text](auto event) {
    return [&binder, &text, event] { binder.Operate(text.core, [&text, event] { (text.*event)(); }); };
  };
  auto* afterClick = new QTimer(view);  // once the click that brought the focus has set its caret
  afterClick->setSingleShot(true);
  QObject::connect(afterClick, &QTimer::timeout, view, editing.selectAll);
  const auto gotFocus = [afterClick, selectAll = editing.selectAll, raise = tell(&vc::TextBox::GotFocus)] {
    selectAll();
    afterClick->start();
    raise();
  };
  const auto keyPressed = [&binder, &text, keep = editing.keep](int code) {
    binder.Operate(text.core, [&text, code] { text.KeyPress(code); });
    if (code == vc::EnterKey) keep();
  };
  const auto lostFocus = [keep = editing.keep, raise = tell(&vc::TextBox::LostFocus)] {
    raise();
    keep();
  };
  new TextEvents(view, {gotFocus, lostFocus, keyPressed, editing.canUndo, editing.canRedo});
}

QLabel* WordsBeside(QWidget* view, const std::string& words) {
  auto* label = new QLabel(view->parentWidget());
  label->setBuddy(view);
  label->setText(ToQt(words));
  return label;
}

// Where a text stands: with the slider whose number it is, else in a row of its own.
struct Stand {
  Pane& pane;
  std::optional<NumberStand> number{};
  void Describe() const {
    if (number) number->describe();
  }
};

// The labels around a text.
struct Around {
  QLabel* caption;
  QLabel* unit;
};

Around Place(const Stand& stand, const vc::TextBox& text, QWidget* view) {
  const bool repeats = text.shows != nullptr && text.core.Caption() == text.shows->core.Caption();
  const bool withUnit = !text.unit.empty() && (!stand.number || stand.pane.TakesUnit());
  const bool captioned =
      !repeats && !text.core.Caption().empty() && (stand.number || stand.pane.TakesCaption());
  QLabel* caption = !captioned ? nullptr : WordsBeside(view, text.core.Caption());
  QLabel* unit = withUnit ? WordsBeside(view, text.unit) : nullptr;
  if (stand.number) {
    stand.number->place({caption, view, unit, ToQt(text.widest)});
  } else {
    stand.pane.AddField({.caption = caption, .field = view, .unit = unit});
  }
  return {caption, unit};
}

void BindStatus(Binder& binder, vc::TextBox& text, const Stand& stand) {
  auto* view = new WrappedLabel(stand.pane.Container());
  view->setTextInteractionFlags(Qt::TextSelectableByMouse);
  const bool number = stand.number || !text.unit.empty();
  const int words = stand.pane.Dense() ? DenseStatusDigits : StatusDigits;
  view->setMinimumWidth(DigitsWide(*view, number ? NumberDigits : words));
  const auto aside = stand.pane.Banked() ? Qt::AlignHCenter : Qt::AlignRight;
  if (stand.number) view->setAlignment(aside | Qt::AlignVCenter);
  view->Reserve(ToQt(text.widest));
  const auto [caption, unit] = Place(stand, text, view);
  const auto show = [view, &text, stand](std::string_view) {
    stand.Describe();
    if (view->text() != ToQt(text.Text())) view->setText(ToQt(text.Text()));
    Binder::Speak(view, text.Text(), text.unit);
  };
  binder.Bind(text.core, {.widget = view, .caption = caption, .unit = unit, .showValue = show});
}

class MemoView : public QPlainTextEdit {
 public:
  using QPlainTextEdit::QPlainTextEdit;
  // The text scrolls: it asks for no more than the least that has been set.
  QSize sizeHint() const override { return minimumSize(); }
};

void BindMemo(Binder& binder, vc::TextBox& text) {
  auto* view = new MemoView(binder.PaneOf(text.core).Container());
  view->setReadOnly(text.readOnly);
  view->setTabChangesFocus(true);
  if (text.inColumns) view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  view->setMinimumSize(DigitsWide(*view, text.columns), (text.lines + 1) * LineHeight(*view));
  QLabel* caption = WordsBeside(view, text.core.Caption());
  binder.PaneOf(text.core).AddTall(caption, view, text.columns);
  Listen(binder, text, view,
         {[] {}, [] {}, [view] { return view->document()->isUndoAvailable(); },
          [view] { return view->document()->isRedoAvailable(); }});
  const auto pictured = std::make_shared<Pictured>();
  QObject::connect(view, &QPlainTextEdit::textChanged, view, [&binder, &text, view, pictured] {
    binder.Operate(text.core, [&] { text.Type(pictured->TextFor(view->toPlainText())); });
  });
  const auto show = [view, &text, pictured](std::string_view) {
    if (!pictured->Differs(text.Text(), view->toPlainText())) return;
    const QSignalBlocker silent(view);
    view->setPlainText(Lines(text.Text()));
    pictured->Take(text.Text(), view->toPlainText());
  };
  binder.Bind(text.core, {.widget = view, .caption = caption, .showValue = show});
}

void ShowLine(QLineEdit& view, const std::string& text, Pictured& pictured) {
  if (!pictured.Differs(text, view.text())) return;
  view.setText(ToQt(text));
  pictured.Take(text, view.text());
  if (view.hasFocus()) view.selectAll();  // what is typed next takes its place
}

// Setting the text forgets the steps of typing. The next number is then typed over this one.
void KeepTyping(QLineEdit& view) {
  if (view.isUndoAvailable() || view.isRedoAvailable()) view.setText(view.text());
  if (view.hasFocus()) view.selectAll();
}

void BindLine(Binder& binder, vc::TextBox& text, const Stand& stand) {
  auto* view = new QLineEdit(stand.pane.Container());
  if (stand.number || !text.unit.empty()) {
    view->setFixedWidth(DigitsWide(*view, stand.pane.Dense() ? DenseNumberDigits : NumberDigits));
    view->setAlignment(stand.pane.Banked() ? Qt::AlignHCenter : Qt::AlignRight);
  } else if (!text.widest.empty()) {
    view->setFixedWidth(DigitsWide(*view, static_cast<int>(text.widest.size()) + 2));
  }
  const auto [caption, unit] = Place(stand, text, view);
  Listen(binder, text, view,
         {[view] { view->selectAll(); }, [view] { KeepTyping(*view); },
          [view] { return view->isUndoAvailable(); }, [view] { return view->isRedoAvailable(); }});
  const auto pictured = std::make_shared<Pictured>();
  QObject::connect(view, &QLineEdit::textEdited, view, [&binder, &text, pictured](const QString& typed) {
    binder.Operate(text.core, [&] { text.Type(pictured->TextFor(typed)); });
  });
  const auto show = [view, &text, pictured, stand](std::string_view) {
    stand.Describe();
    ShowLine(*view, text.Text(), *pictured);
    Binder::Speak(view, text.Text(), text.unit);
  };
  binder.Bind(text.core, {.widget = view, .caption = caption, .unit = unit, .showValue = show});
}

}  // namespace

void BindNumber(Binder& binder, vc::TextBox& text, const NumberStand& numberStand) {
  const Stand stand{binder.PaneOf(text.shows->core), numberStand};
  if (text.readOnly) {
    BindStatus(binder, text, stand);
  } else {
    BindLine(binder, text, stand);
  }
}

void BindKind(Binder& binder, vc::TextBox& text) {
  if (text.shows != nullptr) return;  // it is built with its slider
  const Stand stand{binder.PaneOf(text.core)};
  if (text.multiLine) {
    BindMemo(binder, text);
  } else if (text.readOnly) {
    BindStatus(binder, text, stand);
  } else {
    BindLine(binder, text, stand);
  }
}

}  // namespace desktop
