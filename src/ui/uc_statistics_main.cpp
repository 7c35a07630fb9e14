#include "ui/uc_statistics_main.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "ui/elements.h"

namespace qvrcom::ui {
namespace {

void fill(QComboBox& box, const control::ListEntries& entries) {
  box.clear();
  for (const control::ListEntry& entry : entries)
    box.addItem(qt_text(entry.text), entry.item_data);
}

// On a window that is no dialog a button takes Return only when it is told to.
QPushButton* button(const char* object_name, const QString& caption, QWidget* parent) {
  auto* made = captioned<QPushButton>(object_name, caption, parent);
  made->setAutoDefault(true);
  return made;
}

// A list that does not grow with its longest entry.
QComboBox* list(const char* object_name, const QString& accessible_name, QWidget* parent) {
  auto* made = named(new QComboBox(parent), object_name, accessible_name);
  made->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  made->setMinimumContentsLength(32);
  made->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  return made;
}

}  // namespace

// The logic's events become the widget's signals.
class ucStatisticsMain::Events : public control::ControlEvents {
 public:
  explicit Events(ucStatisticsMain& widget) : widget_(widget) {}
  void RemoveMe() override { emit widget_.RemoveMe(); }
  void ProcessDone(const std::string& Process) override { emit widget_.ProcessDone(qt_text(Process)); }

 private:
  ucStatisticsMain& widget_;
};

ucStatisticsMain::ucStatisticsMain(const StatisticsMainParts& parts, QWidget* parent)
    : QWidget(parent), events_(std::make_unique<Events>(*this)) {
  setObjectName(QStringLiteral("ucStatisticsMain"));
  make_elements();
  lay_out();
  set_tab_order();
  logic_ = std::make_unique<control::StatisticsControl>(
      control::StatisticsControlParts{parts.request, *this, *events_, parts.viewer, parts.chooser});
  connect_elements();
  show_state(logic_->state());
  logic_->UserControl_Initialize();
}

ucStatisticsMain::~ucStatisticsMain() = default;

void ucStatisticsMain::reload_sites() {
  const QVariant site = cmbSelectSite_->currentData();
  const int partition = cmbSelectPartition_->currentIndex();
  logic_->UserControl_Initialize();
  const int place = cmbSelectSite_->findData(site);
  if (place <= 0) return;
  cmbSelectSite_->setCurrentIndex(place);
  cmbSelectPartition_->setCurrentIndex(partition);
}

void ucStatisticsMain::make_elements() {
  fraStatistics_ = captioned<QGroupBox>("fraStatistics", QStringLiteral("Statistics"), this);
  use_suite_font(*fraStatistics_);
  optViewStat_ =
      captioned<QRadioButton>("optViewStat", QStringLiteral("&View Existing Statistics"), fraStatistics_);
  optRetrieveStats_ = captioned<QRadioButton>(
      "optRetrieveStats", QStringLiteral("&Retrieve And View Statistics"), fraStatistics_);
  cmdOK_ = button("cmdOK", QStringLiteral("&OK"), this);
  cmdApply_ = button("cmdApply", QStringLiteral("&Apply"), this);
  cmdCancel_ = button("cmdCancel", QStringLiteral("&Cancel"), this);
}

QGroupBox* ucStatisticsMain::make_view_frame() {
  fraView_ = captioned<QGroupBox>("fraView", QStringLiteral("View"), fraStatistics_);
  use_suite_font(*fraView_);
  txtFilename_ = named(new QLineEdit(fraView_), "txtFilename", QStringLiteral("Filename:"));
  lblFilename_ = label_for(txtFilename_, "lblFilename", QStringLiteral("&Filename:"), fraView_);
  cmdCommonDialog_ = button("cmdCommonDialog", QStringLiteral("&..."), fraView_);
  cmdCommonDialog_->setAccessibleName(QStringLiteral("Choose a statistics file"));
  cmdCommonDialog_->setToolTip(QStringLiteral("Choose a statistics file (Alt+.)"));

  auto* row = new QHBoxLayout;
  row->addWidget(txtFilename_, 1);
  row->addWidget(cmdCommonDialog_);
  auto* column = new QVBoxLayout(fraView_);
  column->addWidget(lblFilename_);
  column->addLayout(row);
  column->addStretch();
  return fraView_;
}

QGroupBox* ucStatisticsMain::make_retrieve_frame() {
  fraRetrStats_ = captioned<QGroupBox>("fraRetrStats", QStringLiteral("Retrieve"), fraStatistics_);
  use_suite_font(*fraRetrStats_);
  cmbSelectSite_ = list("cmbSelectSite", QStringLiteral("Select Site:"), fraRetrStats_);
  lblSelectSite_ = label_for(cmbSelectSite_, "lblSelectSite", QStringLiteral("Select &Site:"), fraRetrStats_);
  cmbSelectPartition_ = list("cmbSelectPartition", QStringLiteral("Select Partition:"), fraRetrStats_);
  lblSelectPartition_ = label_for(cmbSelectPartition_, "lblSelectPartition",
                                  QStringLiteral("Select &Partition:"), fraRetrStats_);
  keep_room(lblSelectPartition_);
  keep_room(cmbSelectPartition_);

  auto* column = new QVBoxLayout(fraRetrStats_);
  for (QWidget* widget : std::initializer_list<QWidget*>{lblSelectSite_, cmbSelectSite_, lblSelectPartition_,
                                                         cmbSelectPartition_})
    column->addWidget(widget);
  column->addStretch();
  return fraRetrStats_;
}

QWidget* ucStatisticsMain::make_option_frames() {
  auto* place = new QWidget(fraStatistics_);
  frames_ = new QStackedLayout(place);
  frames_->addWidget(make_view_frame());
  frames_->addWidget(make_retrieve_frame());
  return place;
}

void ucStatisticsMain::lay_out() {
  auto* inside = new QVBoxLayout(fraStatistics_);
  inside->addWidget(optViewStat_);
  inside->addWidget(optRetrieveStats_);
  inside->addWidget(make_option_frames());

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  for (QPushButton* each : {cmdOK_, cmdApply_, cmdCancel_})
    buttons->addWidget(each);

  auto* all = new QVBoxLayout(this);
  all->addWidget(fraStatistics_);
  all->addLayout(buttons);
}

void ucStatisticsMain::set_tab_order() {
  const std::initializer_list<QWidget*> order{
      optViewStat_, optRetrieveStats_, cmbSelectSite_, cmbSelectPartition_, txtFilename_, cmdCommonDialog_,
      cmdOK_,       cmdApply_,         cmdCancel_};
  for (auto next = order.begin() + 1; next != order.end(); ++next)
    setTabOrder(*(next - 1), *next);
  setFocusProxy(optViewStat_);
}

template <class Sender, class Signal, class Handler>
void ucStatisticsMain::on_user(Sender* sender, Signal signal, Handler handler) {
  connect(sender, signal, this, [this, handler](auto value) {
    if (!showing_) handler(value);
  });
}

void ucStatisticsMain::connect_elements() {
  control::StatisticsControl* logic = logic_.get();
  on_user(optViewStat_, &QRadioButton::toggled, [logic](bool on) {
    if (on) logic->optViewStat_Click();
  });
  on_user(optRetrieveStats_, &QRadioButton::toggled, [logic](bool on) {
    if (on) logic->optRetrieveStats_Click();
  });
  on_user(cmbSelectSite_, &QComboBox::currentIndexChanged, [logic](int index) { logic->select_site(index); });
  on_user(cmbSelectPartition_, &QComboBox::currentIndexChanged,
          [logic](int index) { logic->select_partition(index); });
  on_user(txtFilename_, &QLineEdit::textChanged,
          [logic](const QString& text) { logic->set_filename(utf8(text)); });
  connect(cmdCommonDialog_, &QPushButton::clicked, this, [logic] { logic->cmdCommonDialog_Click(); });
  connect(cmdOK_, &QPushButton::clicked, this, [logic] { logic->cmdOK_Click(); });
  connect(cmdApply_, &QPushButton::clicked, this, [logic] { logic->cmdApply_Click(); });
  connect(cmdCancel_, &QPushButton::clicked, this, [logic] { logic->cmdCancel_Click(); });
}

void ucStatisticsMain::show_sites(const control::ListEntries& entries) {
  const QScopedValueRollback<bool> showing(showing_, true);
  fill(*cmbSelectSite_, entries);
}

void ucStatisticsMain::show_partitions(const control::ListEntries& entries) {
  const QScopedValueRollback<bool> showing(showing_, true);
  fill(*cmbSelectPartition_, entries);
}

void ucStatisticsMain::show_state(const control::ControlState& state) {
  const QScopedValueRollback<bool> showing(showing_, true);
  (state.view_mode ? optViewStat_ : optRetrieveStats_)->setChecked(true);
  frames_->setCurrentWidget(state.view_mode ? fraView_ : fraRetrStats_);
  lblSelectPartition_->setVisible(state.partitions_visible);
  cmbSelectPartition_->setVisible(state.partitions_visible);
  cmdOK_->setEnabled(state.buttons_enabled);
  cmdApply_->setEnabled(state.buttons_enabled);
  cmbSelectSite_->setCurrentIndex(state.site);
  cmbSelectPartition_->setCurrentIndex(state.partition);
  const QString filename = qt_text(state.filename);
  if (txtFilename_->text() != filename) txtFilename_->setText(filename);
}

void ucStatisticsMain::set_hourglass(bool busy) {
  if (busy == hourglass_) return;  // the cursors of the program are a stack that others use too
  hourglass_ = busy;
  if (busy)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
}

}  // namespace qvrcom::ui
