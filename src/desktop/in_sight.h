#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace qvrcom::desktop {

// Calls `look` when the widget comes into sight, and when the user comes back to its window. Not while
// another window lies over it: what that one is about stays as it was shown.
class InSight : public QObject {
 public:
  InSight(QWidget* widget, std::function<void()> look);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::function<void()> look_;
};

}  // namespace qvrcom::desktop
