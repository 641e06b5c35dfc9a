// The lists: one row with the others behind it, or tall, with the rows on show.
#include <algorithm>
#include <functional>
#include <utility>

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>
#include <QStylePainter>
#include <QWheelEvent>

#include "desktop/FittedText.h"
#include "desktop/FrameView.h"
#include "desktop/Kinds.h"
#include "desktop/QtText.h"
#include "widgets/Controls.h"

namespace desktop {
namespace {

// A list's wheel, too, acts only where the focus is. The size follows the rows by itself: the toolkit's ways
// of doing so resize the list behind the layout's back, or make all that pops up before anyone has clicked.
class DropDownView : public QComboBox {
 public:
  // A short one can do with the room that a few letters take.
  DropDownView(QWidget* parent, bool isShort) : QComboBox(parent), shortOne(isShort) {
    setFocusPolicy(Qt::StrongFocus);
  }

  QSize sizeHint() const override { return SizeOver(std::max(LeastWords(), RowWords())); }
  QSize minimumSizeHint() const override { return shortOne ? SizeOver(LeastWords()) : sizeHint(); }

  void showPopup() override {
    constexpr int beside = 2;  // lines: the margins and the frame
    view()->setMinimumWidth(view()->sizeHintForColumn(0) + beside * LineHeight(*this));
    QComboBox::showPopup();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const QRect room = TextRoom(*this);
    const FittedText fitted = Fitted(option.currentText, font(), room.width());
    painter.setFont(fitted.font);
    painter.setPen(TextInk(*this));
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, fitted.text);
  }

  void wheelEvent(QWheelEvent* event) override {
    if (hasFocus()) {
      QComboBox::wheelEvent(event);
    } else {
      event->ignore();
    }
  }

 private:
  int LeastWords() const {
    constexpr int fewLetters = 8, margin = 20;
    return margin + (shortOne ? fewLetters * fontMetrics().horizontalAdvance(u'X') : 0);
  }
  int RowWords() const {
    int longest = 0;
    for (int row = 0; row < count(); ++row) {
      longest = std::max(longest, fontMetrics().horizontalAdvance(itemText(row)));
    }
    return longest + LineHeight(*this) / 2;
  }
  QSize SizeOver(int words) const {
    constexpr int leastHeight = 18, beyond = 2;
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QSize room(words, std::max(LineHeight(*this) + beyond, leastHeight));
    return style()->sizeFromContents(QStyle::CT_ComboBox, &option, room, this);
  }

  bool shortOne;
};

void ShowItems(QComboBox& view, const vc::ListBox& list) {
  QStringList items;
  for (const std::string& item : list.Items()) items.push_back(ToQt(item));
  QStringList shown;
  for (int row = 0; row < view.count(); ++row) shown.push_back(view.itemText(row));
  if (shown == items) return;
  view.clear();
  view.addItems(items);
  view.updateGeometry();
}

// A row's text is only a picture of the item, which may hold any bytes: rows are told by their numbers.
QString RowPicture(const std::string& item) {
  QString picture = ToQt(item);
  for (QChar& character : picture) {
    if (!character.isPrint()) character = QChar::ReplacementCharacter;
  }
  return picture;
}

class TallListView : public QListWidget {
 public:
  TallListView(QWidget* parent, std::function<void()> rowActivated)
      : QListWidget(parent), activate(std::move(rowActivated)) {
    setUniformItemSizes(true);
    setSelectionMode(SingleSelection);
    setTextElideMode(Qt::ElideMiddle);  // a long name keeps its beginning and its extension
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  }

  void ShowModel(const vc::ListBox& list) {
    const QSignalBlocker silent(this);
    if (items != list.Items()) {
      items = list.Items();
      clear();
      for (const std::string& item : items) AddRow(RowPicture(item));
    }
    chosen = list.ListIndex();
    ShowChosen();
  }

  int RowHeight() const { return LineHeight(*this) * 4 / 3; }
  // The contents scroll: they ask for no more than the least that has been set.
  QSize sizeHint() const override { return minimumSize(); }

  int SelectedRow() const {
    const auto rows = selectionModel()->selectedIndexes();
    return rows.isEmpty() ? -1 : rows.front().row();
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
      QListWidget::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {  // one press must not go through several folders
      activate();
    }
  }

  // The toolkit would make the first row the current one, and the next key would pass it by.
  void focusInEvent(QFocusEvent* event) override {
    QListWidget::focusInEvent(event);
    const QSignalBlocker silent(this);
    ShowChosen();
  }

 private:
  void AddRow(const QString& picture) {
    auto* row = new QListWidgetItem(picture, this);
    row->setSizeHint({0, RowHeight()});
    row->setToolTip(picture.toHtmlEscaped());
  }

  void ShowChosen() {
    if (currentRow() == chosen && SelectedRow() == chosen) return;
    setCurrentRow(chosen);
    if (chosen < 0) clearSelection();
  }

  std::function<void()> activate;
  std::vector<std::string> items;  // on show
  int chosen = -1;
};

void BindDropDown(Binder& binder, vc::ListBox& list) {
  Pane& pane = binder.PaneOf(list.core);
  auto* view = new DropDownView(pane.Container(), pane.Is(vc::FrameLook::Card));
  QLabel* caption = CaptionOf(pane, view);
  pane.AddField({caption, view});
  QObject::connect(view, &QComboBox::activated, view, [&binder, &list](int row) {
    binder.Operate(list.core, [&list, row] { list.SetListIndex(row); });
  });
  const auto show = [view, &list, dense = pane.Dense()](std::string_view property) {
    if (property == "Items" || property == EveryProperty) ShowItems(*view, list);
    view->setCurrentIndex(list.ListIndex());
    if (dense) view->setToolTip(ToQt(list.Text()).toHtmlEscaped());  // it may not have room for all of it
    Binder::Speak(view, list.Text(), {});
  };
  binder.Bind(list.core, {.widget = view, .caption = caption, .showValue = show});
}

void BindTall(Binder& binder, vc::ListBox& list) {
  Pane& pane = binder.PaneOf(list.core);
  const auto activate = [&binder, &list] { binder.Operate(list.core, [&list] { list.Activate(); }); };
  auto* view = new TallListView(pane.Container(), activate);
  view->setMinimumSize(DigitsWide(*view, list.columns), list.lines * view->RowHeight());
  QLabel* caption = CaptionOf(pane, view);
  pane.AddTall(caption, view, list.columns);
  // The toolkit's own signal would, on some desktops, take a single click for an activation.
  QObject::connect(view, &QListWidget::itemDoubleClicked, view, activate);
  QObject::connect(view, &QListWidget::itemSelectionChanged, view, [&binder, &list, view] {
    binder.Operate(list.core, [&list, row = view->SelectedRow()] { list.SetListIndex(row); });
  });
  const auto show = [view, &list](std::string_view /*property*/) {
    view->ShowModel(list);
    Binder::Speak(view, list.Text(), {});
  };
  binder.Bind(list.core, {.widget = view, .caption = caption, .showValue = show});
}

}  // namespace

void BindKind(Binder& binder, vc::ListBox& list) {
  if (list.tall) {
    BindTall(binder, list);
  } else {
    BindDropDown(binder, list);
  }
}

}  // namespace desktop
