#include "cli/console_sessions.h"

#include <QTimer>

#include "session/frm_response.h"

namespace qvrcom::cli {
namespace {

constexpr std::chrono::milliseconds kLook{500};

}  // namespace

class ConsoleSessions::Window : public session::SessionWindow {
 public:
  explicit Window(ConsoleSessions& sessions) : sessions_(sessions) {}
  ~Window() override { sessions_.open_ = nullptr; }

  // A terminal's line does not blink, and a hint about a button has no place on it.
  void set_info(const std::string& text) override {
    sessions_.info_ = text;
    sessions_.show_status();
  }
  void set_info_visible(bool) override {}
  void set_hint(const std::string&) override {}
  void set_hint_visible(bool) override {}
  void set_timer(bool) override {}

  void set_cancel(const std::string& caption) override { caption_ = caption; }
  void set_cancel_enabled(bool enabled) override { enabled_ = enabled; }
  void set_cancel_visible(bool visible) override { visible_ = visible; }
  void close() override {
    closed_ = true;
    sessions_.console_.erase_status();
  }

  void scheduler_not_found() override {
    sessions_.scheduler_missing_ = true;
    press_cancel();
  }
  void scheduler_gone(const std::string& sentence) override {
    sessions_.console_.tell(sentence);
    press_cancel();
  }

  void show_modal(session::frmResponse& dialog) override {
    dialog_ = &dialog;
    sessions_.open_ = this;
    sessions_.behind_.clear();
    QTimer looks;
    QObject::connect(&looks, &QTimer::timeout, &looks, [this] { sessions_.look(); });
    if (sessions_.console_.has_status()) looks.start(kLook);
    dialog.Form_Activate();
    if (!closed_) dialog.cmdCancel_Click();
    sessions_.open_ = nullptr;
  }

  void press_cancel() {
    const bool running = caption_ == "Cancel" && enabled_ && visible_;
    if (running && !closed_) dialog_->cmdCancel_Click();
  }

 private:
  ConsoleSessions& sessions_;
  session::frmResponse* dialog_ = nullptr;
  std::string caption_;
  bool enabled_ = true;
  bool visible_ = true;
  bool closed_ = false;
};

std::unique_ptr<session::SessionWindow> ConsoleSessions::make() {
  return std::make_unique<Window>(*this);
}

void ConsoleSessions::show_status() {
  console_.set_status(behind_.empty() ? info_ : info_ + ": " + behind_);
}

void ConsoleSessions::look() {
  behind_ = progress_.own();
  show_status();
}

void ConsoleSessions::cancel() {
  cancelled_ = true;
  if (open_ != nullptr) open_->press_cancel();
}

bool ConsoleSessions::wait_for(const std::string& owner) {
  constexpr std::chrono::milliseconds kStep{100};
  if (console_.has_status() && rounds_waited_++ % (kLook / kStep) == 0) behind_ = progress_.others();
  info_ = "Waiting for " + owner;
  show_status();
  ui_.pump_events();
  if (cancelled_) return false;
  clock_.sleep(kStep);
  return true;
}

}  // namespace qvrcom::cli
