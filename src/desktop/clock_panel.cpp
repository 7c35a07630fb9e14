#include "desktop/clock_panel.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include "requests/system_request.h"
#include "ui/elements.h"

namespace qvrcom::desktop {
namespace {

constexpr int kTick = 500;  // milliseconds: no second is left out
constexpr const char* kDeviceClock = "Device clock";
constexpr const char* kPcClock = "PC clock";

QLabel* value_label(const char* object_name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QLatin1String(object_name));
  label->setTextFormat(Qt::PlainText);
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  label->setMinimumWidth(QFontMetrics(bold).horizontalAdvance(QStringLiteral("0000-00-00 00:00:00 ")));
  return label;
}

// The value is read out with what it is.
void show_value(QLabel& label, const char* what, const QString& value) {
  label.setText(value);
  label.setAccessibleName(QLatin1String(what) + QLatin1String(": ") + value);
}

QPushButton* button(const char* object_name, const QString& caption, QWidget* parent) {
  auto* made = ui::captioned<QPushButton>(object_name, caption, parent);
  made->setAutoDefault(true);
  return made;
}

}  // namespace

ClockPanel::ClockPanel(const platform::Clock& clock, QWidget* parent)
    : QGroupBox(QStringLiteral("Clock"), parent),
      clock_(clock),
      lblDeviceClock_(value_label("lblDeviceClock", this)),
      lblPcClock_(value_label("lblPcClock", this)),
      lblDifference_(
          ui::named(new QLabel(this), "lblDifference", QStringLiteral("Difference of the clocks"))),
      cmdRead_(button("cmdReadClock", QStringLiteral("Read Cloc&k"), this)),
      cmdSet_(button("cmdSetClock", QStringLiteral("Set to P&C Time..."), this)),
      timer_(new QTimer(this)) {
  setObjectName(QStringLiteral("fraClock"));
  lay_out();
  timer_->setInterval(kTick);
  connect(timer_, &QTimer::timeout, this, &ClockPanel::show_pc);
  connect(cmdRead_, &QPushButton::clicked, this, &ClockPanel::read_wanted);
  connect(cmdSet_, &QPushButton::clicked, this, &ClockPanel::set_wanted);
  forget_device();
}

void ClockPanel::lay_out() {
  lblDifference_->setTextFormat(Qt::PlainText);
  lblDifference_->setWordWrap(true);
  lblDifference_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblDifference_->setMinimumHeight(lblDifference_->fontMetrics().lineSpacing() * 2);
  auto* grid = new QGridLayout(this);
  grid->addWidget(new QLabel(QLatin1String(kDeviceClock), this), 0, 0);
  grid->addWidget(new QLabel(QLatin1String(kPcClock), this), 0, 1);
  grid->addWidget(lblDeviceClock_, 1, 0);
  grid->addWidget(lblPcClock_, 1, 1);
  grid->addWidget(lblDifference_, 2, 0, 1, 2);
  grid->setRowStretch(2, 1);
  grid->addWidget(cmdRead_, 3, 0);
  grid->addWidget(cmdSet_, 3, 1);
}

void ClockPanel::show_device(base::LocalTime moment, base::LocalTime arrived) {
  show_value(*lblDeviceClock_, kDeviceClock, ui::moment_text(moment));
  lblDifference_->setText(QStringLiteral("Read at %1. ").arg(ui::moment_text(arrived)) +
                          ui::qt_text(requests::clock_difference(moment, arrived)));
  show_pc();
}

void ClockPanel::forget_device() {
  show_value(*lblDeviceClock_, kDeviceClock, QStringLiteral("not read yet"));
  lblDifference_->clear();
  show_pc();
}

void ClockPanel::show_pc() {
  show_value(*lblPcClock_, kPcClock, ui::moment_text(clock_.now()));
}

void ClockPanel::enable_buttons(bool enabled) {
  cmdRead_->setEnabled(enabled);
  cmdSet_->setEnabled(enabled);
}

void ClockPanel::showEvent(QShowEvent* event) {
  QGroupBox::showEvent(event);
  show_pc();
  timer_->start();
}

void ClockPanel::hideEvent(QHideEvent* event) {
  QGroupBox::hideEvent(event);
  timer_->stop();
}

}  // namespace qvrcom::desktop
