#include "desktop/statistics_page.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/in_sight.h"
#include "ui/elements.h"

namespace qvrcom::desktop {
namespace {

constexpr int kControlWidth = 560;

}  // namespace

StatisticsPage::StatisticsPage(const ui::StatisticsMainParts& parts, QWidget* parent)
    : QWidget(parent),
      seen_(parts.request.sites),
      control_(new ui::ucStatisticsMain(parts, this)),
      start_panel_(make_start_panel()) {
  setObjectName(QStringLiteral("statisticsPage"));
  control_->setMaximumWidth(kControlWidth);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins({});
  all->addWidget(control_);
  all->addWidget(start_panel_);
  all->addStretch();
  start_panel_->hide();
  setFocusProxy(control_);
  seen_.look();
  // While the book cannot be read the list stays: the control would tell so in a box each time.
  new InSight(this, [this] {
    if (seen_.look() && seen_.trouble().empty()) control_->reload_sites();
  });
  connect(control_, &ui::ucStatisticsMain::RemoveMe, this, [this] { show_control(false); });
  connect(cmdOpen_, &QPushButton::clicked, this, [this] { show_control(true); });
}

void StatisticsPage::reload_sites() {
  seen_.look();
  control_->reload_sites();
}

QWidget* StatisticsPage::make_start_panel() {
  auto* panel = new QWidget(this);
  auto* text = new QLabel(QStringLiteral("Retrieve the statistics of a partition from a site, or view a "
                                         "statistics file that was retrieved earlier."),
                          panel);
  text->setWordWrap(true);
  cmdOpen_ = ui::captioned<QPushButton>("cmdOpenStatistics", QStringLiteral("&Open Statistics"), panel);
  cmdOpen_->setAutoDefault(true);
  auto* all = new QVBoxLayout(panel);
  all->addWidget(text);
  all->addWidget(cmdOpen_, 0, Qt::AlignLeft);
  return panel;
}

void StatisticsPage::show_control(bool shown) {
  control_->setVisible(shown);
  start_panel_->setVisible(!shown);
  QWidget* next = shown ? static_cast<QWidget*>(control_) : cmdOpen_;
  setFocusProxy(next);
  next->setFocus();
}

}  // namespace qvrcom::desktop
