#include "ui/frm_response.h"

#include <QAccessible>
#include <QApplication>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include "protocol/messages.h"
#include "session/frm_response.h"
#include "ui/elements.h"

namespace qvrcom::ui {
namespace {

constexpr int kBlinkMilliseconds = 500;
constexpr int kHintLines = 3;  // a refusal has three

// A text of several lines that keeps its room while it is hidden.
QLabel* text_label(const char* object_name, int lines, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QLatin1String(object_name));
  use_suite_font(*label);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label->setMinimumHeight(label->fontMetrics().lineSpacing() * lines);
  keep_room(label);
  return label;
}

// For those who hear the window instead of seeing it.
void announce(QWidget* widget) {
  QAccessibleEvent event(widget, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

ResponseDialog::ResponseDialog(ErrorOffers offers, QWidget* parent, TransferSource transfer)
    : QDialog(parent),
      lblInfo_(text_label("lblInfo", 1, this)),
      lblCancelCommInfo_(text_label("lblCancelCommInfo", kHintLines, this)),
      lblNotice_(text_label("lblNotice", 2, this)),
      transfer_(new TransferProgress(std::move(transfer), this)),
      cmdCancel_(captioned<QPushButton>("cmdCancel", QStringLiteral("&Cancel"), this)),
      cmdOpenLog_(captioned<QPushButton>("cmdOpenLog", QStringLiteral("Open &Log"), this)),
      cmdEditSite_(captioned<QPushButton>("cmdEditSite", QStringLiteral("Edit &Site..."), this)),
      RichTextBox1_(named(new QTextEdit(this), "RichTextBox1", QStringLiteral("RichTextBox1"))),
      Timer1_(new QTimer(this)),
      offers_(std::move(offers)) {
  setObjectName(QStringLiteral("frmResponse"));
  setWindowTitle(QLatin1String(protocol::kDialogTitle));
  setModal(true);
  RichTextBox1_->hide();
  lblNotice_->hide();
  cmdOpenLog_->hide();
  cmdEditSite_->hide();
  lay_out();
  make_timer();
  connect(cmdCancel_, &QPushButton::clicked, this, [this] { handlers_.cmdCancel_Click(); });
  connect(cmdOpenLog_, &QPushButton::clicked, this, [this] { offers_.open_log(this); });
  connect(cmdEditSite_, &QPushButton::clicked, this, [this] { offers_.edit_site(this); });
}

void ResponseDialog::lay_out() {
  QFont status = lblInfo_->font();
  status.setBold(true);
  lblInfo_->setFont(status);
  keep_room(cmdCancel_);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdOpenLog_);
  buttons->addWidget(cmdEditSite_);
  buttons->addStretch();
  buttons->addWidget(cmdCancel_);
  auto* all = new QVBoxLayout(this);
  for (QLabel* label : {lblInfo_, lblCancelCommInfo_, lblNotice_})
    all->addWidget(label);
  all->addWidget(transfer_);
  all->addStretch();
  all->addLayout(buttons);
  setMinimumWidth(460);
}

void ResponseDialog::make_timer() {
  Timer1_->setObjectName(QStringLiteral("Timer1"));
  Timer1_->setInterval(kBlinkMilliseconds);
  connect(Timer1_, &QTimer::timeout, this, [this] { handlers_.Timer1_Timer(); });
}

void ResponseDialog::set_info(const std::string& text) {
  lblInfo_->setText(qt_text(text));
}
void ResponseDialog::set_info_visible(bool visible) {
  lblInfo_->setVisible(visible);
}
void ResponseDialog::set_hint(const std::string& text) {
  lblCancelCommInfo_->setText(qt_text(text));
}
void ResponseDialog::set_hint_visible(bool visible) {
  lblCancelCommInfo_->setVisible(visible);
}

void ResponseDialog::set_cancel(const std::string& caption) {
  cmdCancel_->setText(QLatin1Char('&') + qt_text(caption));
  cmdCancel_->setAccessibleName(qt_text(caption));
}

void ResponseDialog::set_cancel_enabled(bool enabled) {
  cmdCancel_->setEnabled(enabled);
}
void ResponseDialog::set_cancel_visible(bool visible) {
  cmdCancel_->setVisible(visible);
}

// The timer starts with a wait and stops with it; what the notice said is over then.
void ResponseDialog::set_timer(bool running) {
  if (running)
    Timer1_->start();
  else
    Timer1_->stop();
  transfer_->set_running(running);
  lblNotice_->hide();
}

void ResponseDialog::close() {
  closed_ = true;
  Timer1_->stop();
  transfer_->set_running(false);
  hide();
}

void ResponseDialog::scheduler_gone(const std::string& sentence) {
  notice(qt_text(sentence));
  announce(lblNotice_);
}

void ResponseDialog::notice(const QString& text) {
  lblNotice_->setText(text);
  lblNotice_->setVisible(!text.isEmpty());
}

void ResponseDialog::offer_help() {
  if (offers_.reason) notice(qt_text(offers_.reason()));
  cmdOpenLog_->setVisible(offers_.log_is_worth_reading && offers_.log_is_worth_reading());
  cmdEditSite_->setVisible(offers_.site_may_be_wrong && offers_.site_may_be_wrong());
}

void ResponseDialog::show_modal(session::frmResponse& dialog) {
  run({[&] { dialog.Form_Activate(); }, [&] { dialog.cmdCancel_Click(); }, [&] { dialog.Timer1_Timer(); }});
}

void ResponseDialog::run(const ResponseHandlers& handlers) {
  handlers_ = handlers;
  closed_ = false;
  QDialog::show();
  cmdCancel_->setFocus();
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);  // the window stands before it works
  handlers_.Form_Activate();
  if (closed_) return;
  offer_help();
  // Round by round: a handler that has closed the window has returned before the loop looks again.
  while (!closed_)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void ResponseDialog::reject() {
  if (cmdCancel_->isEnabled() && cmdCancel_->isVisibleTo(this)) handlers_.cmdCancel_Click();
}

std::unique_ptr<session::SessionWindow> ResponseDialogs::make() {
  return std::make_unique<ResponseDialog>(offers_, QApplication::activeWindow(), transfer_);
}

}  // namespace qvrcom::ui
