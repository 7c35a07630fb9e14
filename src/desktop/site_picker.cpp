#include "desktop/site_picker.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "control/site_list.h"
#include "desktop/in_sight.h"
#include "desktop/tables.h"
#include "ui/elements.h"

namespace qvrcom::desktop {
namespace {

constexpr int kPartitions = 64;

QComboBox* site_list(QWidget* parent) {
  auto* list = ui::named(new QComboBox(parent), "cmbSite", QStringLiteral("Site:"));
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list->setMinimumContentsLength(24);
  list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  return list;
}

// The line inside the field has the focus, so it needs the name too.
QSpinBox* partition_field(QWidget* parent) {
  auto* field = ui::named(new QSpinBox(parent), "txtPartition", QStringLiteral("Partition:"));
  field->setRange(1, kPartitions);
  field->findChild<QLineEdit*>()->setAccessibleName(field->accessibleName());
  return field;
}

std::vector<const sitebook::SiteRecord*> by_title(const std::vector<sitebook::SiteRecord>& sites) {
  std::vector<std::pair<QString, const sitebook::SiteRecord*>> titled;
  for (const sitebook::SiteRecord& site : sites)
    titled.emplace_back(ui::qt_text(sitebook::title_of(site)), &site);
  std::stable_sort(titled.begin(), titled.end(), [order = ValueOrder()](const auto& left, const auto& right) {
    return order.less(left.first, right.first);
  });
  std::vector<const sitebook::SiteRecord*> sorted;
  for (const auto& [title, site] : titled)
    sorted.push_back(site);
  return sorted;
}

// Why no session can be held with this site, as a request would say it; "" when nothing is known against it.
std::string obstacle_of(const sitebook::SiteRecord& site) {
  if (site.card_type == "OLD")
    return "No session can be started for this site: its control card is of the old kind.";
  const std::string reasons = sitebook::reasons_of(sitebook::session_problems_of(site));
  return reasons.empty() ? reasons : "No session can be started for this site. " + reasons;
}

}  // namespace

SitePicker::SitePicker(sitebook::SiteBook& sites, Asks asks, QWidget* parent)
    : QWidget(parent),
      seen_(sites),
      line_(new QHBoxLayout),
      cmbSite_(site_list(this)),
      lblProblem_(ui::named(new QLabel(this), "lblSiteProblem", QStringLiteral("State of the site book"))) {
  line_->addWidget(ui::label_for(cmbSite_, "lblSite", QStringLiteral("&Site:"), this));
  line_->addWidget(cmbSite_, 1);
  if (asks == Asks::kSiteAndPartition) {
    txtPartition_ = partition_field(this);
    line_->addWidget(ui::label_for(txtPartition_, "lblPartition", QStringLiteral("&Partition:"), this));
    line_->addWidget(txtPartition_);
  }
  lblProblem_->setWordWrap(true);
  lblProblem_->setTextFormat(Qt::PlainText);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins({});
  all->addLayout(line_);
  all->addWidget(lblProblem_);
  connect(cmbSite_, &QComboBox::currentIndexChanged, this, &SitePicker::choose);
  setFocusProxy(cmbSite_);
  new InSight(this, [this] {
    if (seen_.look()) fill();
  });
  reload();
}

void SitePicker::append(QWidget* widget) {
  line_->addWidget(widget);
}

void SitePicker::reload() {
  seen_.look();
  fill();
}

void SitePicker::fill() {
  rows_ = by_title(seen_.sites());
  {
    const QSignalBlocker quiet(cmbSite_);
    cmbSite_->clear();
    cmbSite_->addItem(
        QLatin1String(rows_.empty() ? control::SiteList::kNoSite : control::SiteList::kPlaceholder));
    for (const sitebook::SiteRecord* row : rows_)
      cmbSite_->addItem(ui::qt_text(sitebook::title_of(*row)), row->site_id);
    cmbSite_->setCurrentIndex(std::max(0, chosen_ == 0 ? 0 : cmbSite_->findData(chosen_)));
  }
  choose();
}

void SitePicker::choose() {
  const std::int32_t before = std::exchange(chosen_, site() == nullptr ? 0 : site()->site_id);
  const std::string reason = obstacle();
  usable_ = reason.empty();
  lblProblem_->setText(ui::qt_text(reason));
  lblProblem_->setVisible(!usable_);
  emit chosen(chosen_ != before);
}

std::string SitePicker::obstacle() const {
  if (!seen_.trouble().empty()) return seen_.trouble();
  if (site() != nullptr) return obstacle_of(*site());
  return rows_.empty() ? "Add a site on the page \"Sites\" first." : "Choose a site first.";
}

const sitebook::SiteRecord* SitePicker::site() const {
  const int index = cmbSite_->currentIndex();
  return index < 1 ? nullptr : rows_[static_cast<std::size_t>(index - 1)];
}

int SitePicker::partition() const {
  return txtPartition_ == nullptr ? 1 : txtPartition_->value();
}

}  // namespace qvrcom::desktop
