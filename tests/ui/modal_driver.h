#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace qvrcom::ui {

// Acts on modal windows as they come up, one step a window in the order given. A window that nobody expected,
// or one that outlives its step, is closed, so that a test fails instead of hanging.
class ModalDriver {
 public:
  struct Step {
    template <class Act>
    Step(Act step) : act(std::move(step)) {}  // NOLINT: a lambda is a step
    Step(std::function<bool(QWidget&)> when, std::function<void(QWidget&)> step)
        : act(std::move(step)), ready(std::move(when)) {}

    std::function<void(QWidget& window)> act;  // never waits: what it waits for may lie below it on the stack
    std::function<bool(QWidget& window)> ready = [](QWidget&) { return true; };
  };

  explicit ModalDriver(std::vector<Step> steps) : steps_(std::move(steps)) {
    QObject::connect(&timer_, &QTimer::timeout, [this] { look(); });
    timer_.start(5);
  }
  ~ModalDriver() { EXPECT_EQ(next_, steps_.size()) << "windows that never came up"; }

 private:
  void look() {
    QWidget* window = QApplication::activeModalWidget();
    if (window == nullptr || !window->isVisible()) return;
    if (window != last_) age_.start();
    const bool expected = next_ < steps_.size() && (window != last_ || !acted_);
    if (window != last_) acted_ = false;
    last_ = window;
    if (expected && steps_[next_].ready(*window)) {
      acted_ = true;
      // Queued, so that the driver goes on looking while a step has opened a window itself.
      QTimer::singleShot(0, window, [act = steps_[next_++].act, window] { act(*window); });
      return;
    }
    if ((expected || acted_) && age_.elapsed() < 3000) return;
    ADD_FAILURE() << "unexpected window: " << window->windowTitle().toStdString();
    window->close();
    if (auto* dialog = qobject_cast<QDialog*>(window); dialog != nullptr && dialog->isVisible())
      dialog->done(0);
  }

  std::vector<Step> steps_;
  std::size_t next_ = 0;
  QPointer<QWidget> last_;
  bool acted_ = false;  // on that window
  QElapsedTimer age_;
  QTimer timer_;
};

// The only child of this type and name.
template <class Widget>
Widget& child(const QWidget& window, const char* name) {
  auto* found = window.findChild<Widget*>(QLatin1String(name));
  if (found == nullptr) throw std::runtime_error(std::string("no element ") + name);
  return *found;
}

// A key as the window system brings it: mnemonics and the focus decide who gets it.
inline void press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QTest::keyClick(window.window()->windowHandle(), key, modifiers);
}

// Alt and a letter, as the captions underline it. A button is down for a moment before it acts.
inline void mnemonic(QWidget& window, Qt::Key key) {
  press(window, key, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] {
    const auto buttons = window.findChildren<QAbstractButton*>();
    return std::none_of(buttons.begin(), buttons.end(), [](auto* button) { return button->isDown(); });
  }));
}

}  // namespace qvrcom::ui
