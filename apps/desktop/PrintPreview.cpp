#include "desktop/PrintPreview.h"

#include <algorithm>
#include <functional>

#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrintPreviewWidget>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStringList>
#include <QVBoxLayout>

#include "desktop/PagedDocument.h"
#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr QSize Room(980, 660);  // as far as the screen has it

class PreviewWindow : public QDialog {
 public:
  PreviewWindow(QPrinter& printer, const vc::PrintJob& job, const vc::PrintDrawing& drawing);

  // Has all pages drawn; false where that failed.
  bool DrawAll();

 private:
  void Draw(QPrinter& device, const vc::PrintDrawing& drawing);
  void GoTo(int page);
  void ShowPage();
  QPushButton* AddButton(QHBoxLayout& row, const char* name, const QString& caption,
                         const std::function<void()>& clicked);
  void AddPageKeys();

  QPrintPreviewWidget view;
  QLabel place;
  QPushButton *previous = nullptr, *next = nullptr;
  QStringList texts;  // of the pages
  bool drawn = false;
};

PreviewWindow::PreviewWindow(QPrinter& printer, const vc::PrintJob& job, const vc::PrintDrawing& drawing)
    : QDialog(QApplication::activeWindow()), view(&printer) {
  setObjectName("PrintPreview");
  setWindowTitle("Print Preview - " + ToQt(job.title));
  setWindowModality(Qt::ApplicationModal);
  connect(&view, &QPrintPreviewWidget::paintRequested, this,
          [this, &drawing](QPrinter* device) { Draw(*device, drawing); });
  connect(&view, &QPrintPreviewWidget::previewChanged, this, [this] { ShowPage(); });

  auto* above = new QHBoxLayout;
  previous = AddButton(*above, "btnPreviousPage", "P&revious", [this] { GoTo(view.currentPage() - 1); });
  place.setObjectName("lblPage");
  above->addWidget(&place);
  next = AddButton(*above, "btnNextPage", "&Next", [this] { GoTo(view.currentPage() + 1); });
  above->addStretch();
  AddButton(*above, "btnWholePage", "&Whole Page", [this] { view.fitInView(); });
  AddButton(*above, "btnPageWidth", "Page W&idth", [this] { view.fitToWidth(); });
  AddButton(*above, "btnLarger", "&Larger", [this] { view.zoomIn(); });
  AddButton(*above, "btnSmaller", "&Smaller", [this] { view.zoomOut(); });

  auto* below = new QHBoxLayout;
  auto* goal = new QLabel("To " + ToQt(job.file.empty() ? job.printer : job.file));
  goal->setObjectName("lblGoal");
  below->addWidget(goal, 1);
  AddButton(*below, "btnPrint", job.file.empty() ? "&Print" : "Save as &PDF", [this] { accept(); });
  AddButton(*below, "btnCancel", "Cancel", [this] { reject(); });

  view.setObjectName("pages");
  auto* rows = new QVBoxLayout(this);
  rows->addLayout(above);
  rows->addWidget(&view, 1);
  rows->addLayout(below);
  AddPageKeys();
  for (QPushButton* button : findChildren<QPushButton*>()) {
    button->ensurePolished();  // the theme's style sheet lets it become narrower than its caption
    button->setMinimumWidth(button->sizeHint().width());
  }
  view.fitToWidth();
  view.setFocus();  // not a button: an Enter that was meant for the window before must not print
  resize(Room.boundedTo(screen()->availableSize() * 0.9));
}

QPushButton* PreviewWindow::AddButton(QHBoxLayout& row, const char* name, const QString& caption,
                                      const std::function<void()>& clicked) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, clicked);
  row.addWidget(button);
  return button;
}

void PreviewWindow::AddPageKeys() {
  const auto bind = [this](const char* keys, const std::function<void()>& pressed) {
    connect(new QShortcut(QKeySequence(QString::fromLatin1(keys)), this), &QShortcut::activated, this,
            pressed);
  };
  bind("PgDown", [this] { GoTo(view.currentPage() + 1); });
  bind("PgUp", [this] { GoTo(view.currentPage() - 1); });
  bind("Home", [this] { GoTo(1); });
  bind("End", [this] { GoTo(view.pageCount()); });
}

void PreviewWindow::Draw(QPrinter& device, const vc::PrintDrawing& drawing) {
  texts.clear();
  PagedDocument document({&device, [] { return true; }});
  drawn = drawing(document);
  texts = document.texts;
}

bool PreviewWindow::DrawAll() {
  view.updatePreview();
  ShowPage();
  return drawn;
}

void PreviewWindow::GoTo(int page) {
  view.setCurrentPage(std::clamp(page, 1, std::max(view.pageCount(), 1)));
  ShowPage();
}

void PreviewWindow::ShowPage() {
  const int page = view.currentPage();
  place.setText(QString("Page %1 of %2").arg(page).arg(view.pageCount()));
  previous->setEnabled(page > 1);
  next->setEnabled(page < view.pageCount());
  view.setAccessibleName(place.text());
  view.setAccessibleDescription(texts.value(page - 1));
}

}  // namespace

bool ShowPreview(QPrinter& printer, const vc::PrintJob& job, const vc::PrintDrawing& drawing) {
  PreviewWindow window(printer, job, drawing);
  return window.DrawAll() && window.exec() == QDialog::Accepted;
}

}  // namespace desktop
