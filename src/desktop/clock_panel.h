#pragma once

#include <QGroupBox>

#include "base/date_serial.h"
#include "platform/clock.h"

class QLabel;
class QPushButton;
class QTimer;

namespace qvrcom::desktop {

// The device's clock as it was read, beside the PC's, which runs while the panel is in sight.
class ClockPanel : public QGroupBox {
  Q_OBJECT

 public:
  ClockPanel(const platform::Clock& clock, QWidget* parent);

  // What the device's clock showed, and the PC's moment at which that arrived.
  void show_device(base::LocalTime moment, base::LocalTime arrived);
  // Nothing is known: another site was chosen, or the clock was set.
  void forget_device();
  void enable_buttons(bool enabled);

 signals:
  void read_wanted();
  void set_wanted();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void lay_out();
  void show_pc();

  const platform::Clock& clock_;
  QLabel* lblDeviceClock_;
  QLabel* lblPcClock_;
  QLabel* lblDifference_;
  QPushButton* cmdRead_;
  QPushButton* cmdSet_;
  QTimer* timer_;
};

}  // namespace qvrcom::desktop
