#include "desktop/tour/BoxDriver.h"

#include <utility>

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

namespace tour {
namespace {

constexpr int LookMilliseconds = 30;

}  // namespace

BoxDriver::BoxDriver(std::function<void(QMessageBox& box)> seen) : told(std::move(seen)) {
  QObject::connect(&timer, &QTimer::timeout, &timer, [this] { Look(); });
  timer.start(LookMilliseconds);
}

void BoxDriver::Look() {
  auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  if (box == nullptr || !box->isVisible()) return;
  timer.stop();  // photographing a box lets events run
  Answer(*box);
  timer.start();
}

void BoxDriver::Answer(QMessageBox& box) {
  lastTitle = box.windowTitle().toStdString();
  lastText = box.text().toStdString();
  told(box);
  QAbstractButton* button = box.escapeButton();
  if (answers.empty()) {
    ++unexpected;
  } else {
    button = box.button(answers.front());
    answers.pop_front();
  }
  // A box that does not offer what was wanted must not hang the tour.
  if (button == nullptr) button = box.escapeButton();
  QTest::mouseClick(button, Qt::LeftButton);
}

}  // namespace tour
