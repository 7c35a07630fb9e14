#pragma once

#include <QDialog>
#include <functional>

#include "session/session_view.h"
#include "ui/transfer_progress.h"

class QLabel;
class QPushButton;
class QTextEdit;
class QTimer;

namespace qvrcom::ui {

// What the session dialog's window calls back.
struct ResponseHandlers {
  std::function<void()> Form_Activate;
  std::function<void()> cmdCancel_Click;
  std::function<void()> Timer1_Timer;
};

// The log of the session that has just run.
struct LogOffer {
  std::function<bool()> worth_reading;  // asked once, when the run has ended
  std::function<void(QWidget* over)> open;
};

// The window of the session dialog. Closing hides it; whoever made it destroys it after show_modal().
class ResponseDialog : public QDialog, public session::SessionWindow {
 public:
  explicit ResponseDialog(LogOffer log, QWidget* parent = nullptr, TransferSource transfer = {});

  void set_info(const std::string& text) override;
  void set_info_visible(bool visible) override;
  void set_hint(const std::string& text) override;
  void set_hint_visible(bool visible) override;
  void set_cancel(const std::string& caption) override;
  void set_cancel_enabled(bool enabled) override;
  void set_cancel_visible(bool visible) override;
  void set_timer(bool running) override;
  void close() override;
  void scheduler_not_found() override {}  // the box has said it, and Cancel is at hand
  void scheduler_gone(const std::string& sentence) override;

  void show_modal(session::frmResponse& dialog) override;

  // Shows the window, runs the activation and comes back when close() has been called and all handlers have
  // returned.
  void run(const ResponseHandlers& handlers);

  // Escape and the close box: the Cancel button, while that can be pressed.
  void reject() override;

 private:
  void lay_out();
  void make_timer();

  QLabel* lblInfo_;
  QLabel* lblCancelCommInfo_;
  QLabel* lblNotice_;  // the scheduler has gone
  TransferProgress* transfer_;
  QPushButton* cmdCancel_;
  QPushButton* cmdOpenLog_;
  QTextEdit* RichTextBox1_;
  QTimer* Timer1_;

  LogOffer log_;
  ResponseHandlers handlers_;
  bool closed_ = false;
};

// Makes the window of each session over the window that is active then.
class ResponseDialogs : public session::SessionWindows {
 public:
  explicit ResponseDialogs(LogOffer log, TransferSource transfer = {})
      : log_(std::move(log)), transfer_(std::move(transfer)) {}
  std::unique_ptr<session::SessionWindow> make() override;

 private:
  LogOffer log_;
  TransferSource transfer_;
};

}  // namespace qvrcom::ui
