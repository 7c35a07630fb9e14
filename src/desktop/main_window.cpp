#include "desktop/main_window.h"

#include <QButtonGroup>
#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "ui/elements.h"

namespace qvrcom::desktop {
namespace {

constexpr int kColumnWidth = 140;

QFrame* vertical_line(QWidget* parent) {
  auto* line = new QFrame(parent);
  line->setFrameStyle(QFrame::VLine | QFrame::Sunken);
  return line;
}

// Some styles hardly tell a checked button from another one.
void set_bold(QWidget& widget, bool bold) {
  QFont font = widget.font();
  font.setBold(bold);
  widget.setFont(font);
}

}  // namespace

MainWindow::MainWindow(QWidget* parent)
    : QWidget(parent),
      buttons_(new QButtonGroup(this)),
      column_(new QVBoxLayout),
      pages_(new QStackedWidget(this)) {
  setObjectName(QStringLiteral("mainWindow"));
  setWindowTitle(QStringLiteral("QVRCOM+"));
  column_->setSpacing(4);
  column_->addStretch();
  auto* all = new QHBoxLayout(this);
  all->addLayout(column_);
  all->addWidget(vertical_line(this));
  all->addWidget(pages_, 1);
  connect(buttons_, &QButtonGroup::idClicked, this, &MainWindow::show_page);
  connect(new QShortcut(QKeySequence::Quit, this), &QShortcut::activated, this, &QWidget::close);
  resize(920, 520);
}

void MainWindow::add_page(const QString& caption, QWidget* page) {
  const int index = pages_->addWidget(page);
  auto* button = ui::captioned<QPushButton>("", caption, this);
  button->setObjectName(QStringLiteral("page-") + ui::shown_caption(caption));
  button->setCheckable(true);
  button->setAutoDefault(true);
  button->setFixedWidth(kColumnWidth);
  connect(button, &QPushButton::toggled, button, [button](bool chosen) { set_bold(*button, chosen); });
  buttons_->addButton(button, index);
  column_->insertWidget(index, button);
  if (index == 0) button->setChecked(true);
}

void MainWindow::show_page(int index) {
  buttons_->button(index)->setChecked(true);
  pages_->setCurrentIndex(index);
}

}  // namespace qvrcom::desktop
