#include "ui/frm_view_statistics.h"

#include <QApplication>
#include <QEvent>
#include <QMetaObject>
#include <QVBoxLayout>

#include "base/fault.h"
#include "ui/uc_stats.h"
#include "ui/widget_text.h"

namespace qvrcom::ui {
namespace {

constexpr const char* kFileName = "CSVFileName";
constexpr const char* kLoad = "LoadAndDisplay";

// A plug-in's grid is known by its members' names alone.
void require_members(const QWidget& grid) {
  const QMetaObject& members = *grid.metaObject();
  if (members.indexOfProperty(kFileName) < 0 || members.indexOfMethod("LoadAndDisplay()") < 0 ||
      members.indexOfSignal("CloseRequested()") < 0) {
    throw base::Fault(
        "Component cannot be used",
        std::string("\"") + ucStats::kComponentName +
            "\" lacks one of CSVFileName, LoadAndDisplay() and CloseRequested(). Install a version "
            "of it that has them.");
  }
}

}  // namespace

frmViewStatistics::frmViewStatistics(const VisualComponents& components, const platform::Files& files,
                                     QWidget* parent)
    : QDialog(parent), files_(files), grid_(components.create(ucStats::kComponentName, this)) {
  require_members(*grid_);
  setObjectName(QStringLiteral("frmViewStatistics"));
  setWindowTitle(QStringLiteral("Statistics"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  grid_->setObjectName(QStringLiteral("ucStats1"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(grid_);
  connect(grid_, SIGNAL(CloseRequested()), this, SLOT(reject()));
  resize(900, 560);
}

// Showing a window does not activate it on every desktop.
bool frmViewStatistics::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate || event->type() == QEvent::Show) Form_Activate();
  return QDialog::event(event);
}

void frmViewStatistics::Form_Activate() {
  if (!files_.file_exists(csv_file_)) return;
  grid_->setProperty(kFileName, qt_text(csv_file_));
  QMetaObject::invokeMethod(grid_, kLoad);
}

void StatisticsViewerWindow::show_modal() {
  frmViewStatistics dialog(components_, files_, QApplication::activeWindow());
  dialog.hand_over(csv_file_);
  dialog.exec();
}

}  // namespace qvrcom::ui
