#include "desktop/site_picker.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/tables.h"
#include "ui/attempt.h"
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

void sort_by_name(std::vector<sitebook::SiteRecord>& sites) {
  const ValueOrder order;
  std::stable_sort(sites.begin(), sites.end(), [&](const auto& left, const auto& right) {
    return order.less(ui::qt_text(sitebook::title_of(left)), ui::qt_text(sitebook::title_of(right)));
  });
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
      sites_(sites),
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
  reload();
}

void SitePicker::append(QWidget* widget) {
  line_->addWidget(widget);
}

void SitePicker::reload() {
  const std::int32_t before = site() == nullptr ? 0 : site()->site_id;
  records_.clear();
  const auto fault = base::fault_of([this] {
    records_ = sites_.list();
    sort_by_name(records_);
  });
  {
    const QSignalBlocker quiet(cmbSite_);
    cmbSite_->clear();
    cmbSite_->addItem(
        QLatin1String(records_.empty() ? control::SiteList::kNoSite : control::SiteList::kPlaceholder));
    for (const sitebook::SiteRecord& record : records_)
      cmbSite_->addItem(ui::qt_text(sitebook::title_of(record)), record.site_id);
    cmbSite_->setCurrentIndex(std::max(0, before == 0 ? 0 : cmbSite_->findData(before)));
  }
  trouble_ = fault ? "The site book cannot be used. " + ui::sentence_of(*fault) : std::string();
  choose();
}

void SitePicker::choose() {
  const std::string obstacle = site() == nullptr ? std::string() : obstacle_of(*site());
  usable_ = site() != nullptr && obstacle.empty();
  lblProblem_->setText(ui::qt_text(trouble_ + obstacle));
  lblProblem_->setVisible(!lblProblem_->text().isEmpty());
  emit chosen();
}

const sitebook::SiteRecord* SitePicker::site() const {
  const int index = cmbSite_->currentIndex();
  return index < 1 ? nullptr : &records_[static_cast<std::size_t>(index - 1)];
}

int SitePicker::partition() const {
  return txtPartition_ == nullptr ? 1 : txtPartition_->value();
}

}  // namespace qvrcom::desktop
