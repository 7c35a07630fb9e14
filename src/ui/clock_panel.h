#pragma once

#include <QGroupBox>
#include <optional>

#include "base/date_serial.h"
#include "platform/clock.h"

class QLabel;
class QPushButton;
class QTimer;

namespace qvrcom::ui {

// The device's clock as it was read, beside the PC's, which runs while the panel is in sight.
class ClockPanel : public QGroupBox {
  Q_OBJECT

 public:
  ClockPanel(const platform::Clock& clock, QWidget* parent);

  // What the device answered just now; nothing when what is known belongs to another site.
  void show_device(std::optional<base::LocalTime> moment);
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

}  // namespace qvrcom::ui
