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

// What the dialog offers when its run has failed. Each question is asked once, when the run has ended.
struct ErrorOffers {
  std::function<std::string()> reason = {};  // "" when it is not known, or nothing has failed
  std::function<bool()> log_is_worth_reading = {};
  std::function<void(QWidget* over)> open_log = {};
  std::function<bool()> site_may_be_wrong = {};  // the site's entry in the site book
  std::function<void(QWidget* over)> edit_site = {};
};

// The window of the session dialog. Closing hides it; whoever made it destroys it after show_modal().
class ResponseDialog : public QDialog, public session::SessionWindow {
 public:
  explicit ResponseDialog(ErrorOffers offers, QWidget* parent = nullptr, TransferSource transfer = {});

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
  void notice(const QString& text);
  void offer_help();

  QLabel* lblInfo_;
  QLabel* lblCancelCommInfo_;
  QLabel* lblNotice_;  // the scheduler has gone, or why the run has failed
  TransferProgress* transfer_;
  QPushButton* cmdCancel_;
  QPushButton* cmdOpenLog_;
  QPushButton* cmdEditSite_;
  QTextEdit* RichTextBox1_;
  QTimer* Timer1_;

  ErrorOffers offers_;
  ResponseHandlers handlers_;
  bool closed_ = false;
};

// Makes the window of each session over the window that is active then.
class ResponseDialogs : public session::SessionWindows {
 public:
  explicit ResponseDialogs(ErrorOffers offers, TransferSource transfer = {})
      : offers_(std::move(offers)), transfer_(std::move(transfer)) {}
  std::unique_ptr<session::SessionWindow> make() override;

 private:
  ErrorOffers offers_;
  TransferSource transfer_;
};

}  // namespace qvrcom::ui
