#include "desktop/same_logs_page.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/device_texts.h"
#include "desktop/site_picker.h"
#include "desktop/tables.h"
#include "ui/attempt.h"
#include "ui/elements.h"
#include "ui/reading_text.h"

namespace qvrcom::desktop {
namespace {

constexpr std::size_t kShownBytes = std::size_t{4} << 20U;  // the end of a longer log is shown

QString count_of(std::size_t logs) {
  return logs == 1 ? QStringLiteral("1 log") : QStringLiteral("%1 logs").arg(logs);
}

}  // namespace

SameLogsPage::SameLogsPage(const SameLogsPageParts& parts, QWidget* parent)
    : QWidget(parent),
      parts_(parts),
      picker_(new SitePicker(parts.sites, SitePicker::Asks::kSite, this)),
      model_(new ValueTableModel(
          {QStringLiteral("Name"), QStringLiteral("Size (bytes)"), QStringLiteral("Date")}, this)),
      sorted_(new ValueSort(model_, this)),
      table_(ui::named(new QTableView(this), "tblSameLogs", QStringLiteral("Filed SAME logs"))),
      text_(ui::reading_text("txtSameLog", QStringLiteral("Text of the log:"), this)),
      txtFind_(ui::named(new QLineEdit(this), "txtFindInLog", QStringLiteral("Find:"))),
      lblState_(ui::named(new QLabel(this), "lblSameLogsState", QStringLiteral("State of the SAME logs"))),
      cmdRetrieve_(make_button("cmdRetrieveSameLog", "&Retrieve", &SameLogsPage::retrieve)) {
  setObjectName(QStringLiteral("sameLogsPage"));
  lay_out();
  const auto show_button = [this] { cmdRetrieve_->setEnabled(picker_->usable()); };
  connect(picker_, &SitePicker::chosen, this, show_button);
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &SameLogsPage::read_selected);
  connect(table_, &QTableView::activated, text_, [this] { text_->setFocus(); });
  connect(txtFind_, &QLineEdit::returnPressed, this, &SameLogsPage::find_next);
  show_button();
}

void SameLogsPage::lay_out() {
  prepare_row_table(*table_, *sorted_);
  table_->verticalHeader()->hide();
  table_->horizontalHeader()->setStretchLastSection(true);
  lblState_->setTextFormat(Qt::PlainText);
  lblState_->setWordWrap(true);
  picker_->append(cmdRetrieve_);
  auto* all = new QVBoxLayout(this);
  all->addWidget(picker_);
  all->addWidget(ui::label_for(table_, "lblSameLogs", QStringLiteral("Filed &logs:"), this));
  all->addWidget(table_, 2);
  all->addWidget(ui::label_for(text_, "lblSameLog", QStringLiteral("Te&xt of the log:"), this));
  all->addWidget(text_, 3);
  all->addWidget(make_search());
  all->addWidget(lblState_);
  setFocusProxy(picker_);
}

QWidget* SameLogsPage::make_search() {
  auto* strip = new QWidget(this);
  auto* line = new QHBoxLayout(strip);
  line->setContentsMargins({});
  txtFind_->setClearButtonEnabled(true);
  line->addWidget(ui::label_for(txtFind_, "lblFindInLog", QStringLiteral("&Find:"), strip));
  line->addWidget(txtFind_, 1);
  line->addWidget(make_button("cmdFindNextInLog", "Find &Next", &SameLogsPage::find_next));
  line->addWidget(make_button("cmdFindPreviousInLog", "Find Pre&vious", &SameLogsPage::find_previous));
  line->addWidget(make_button("cmdRefreshSameLogs", "R&efresh", &SameLogsPage::refresh));
  return strip;
}

QPushButton* SameLogsPage::make_button(const char* name, const char* caption,
                                       void (SameLogsPage::*action)()) {
  auto* button = ui::captioned<QPushButton>(name, QString::fromLatin1(caption), this);
  button->setAutoDefault(true);
  connect(button, &QPushButton::clicked, this, action);
  return button;
}

void SameLogsPage::reload_sites() {
  picker_->reload();
}

void SameLogsPage::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  refresh();
}

void SameLogsPage::retrieve() {
  const requests::SameLogAnswer answer = requests::SameLogRequest(parts_.request).run(picker_->row());
  refresh();
  if (answer.result == requests::RequestResult::kDone) return select(answer.file);
  lblState_->setText(outcome_line(session::operation::kRetrieveSameLog, answer.result, {}));
}

// The log that is being read stays, when it is still there.
void SameLogsPage::refresh() {
  const std::string before = shown_;
  const auto fault = base::fault_of([this] { logs_ = filed_same_logs(parts_.files, parts_.folders); });
  if (fault) logs_.clear();
  list_logs();
  lblState_->setText(fault ? QStringLiteral("The SAME logs cannot be listed. ") +
                                 ui::qt_text(ui::sentence_of(*fault))
                           : count_of(logs_.size()));
  select(before);
}

void SameLogsPage::list_logs() {
  std::vector<QVariantList> rows;
  rows.reserve(logs_.size());
  for (const SameLog& log : logs_) {
    rows.push_back({log.name, static_cast<qulonglong>(log.length), log.modified});
  }
  model_->show(std::move(rows));
  table_->resizeColumnsToContents();
  read_selected();
}

void SameLogsPage::select(const std::string& path) {
  const auto found =
      std::find_if(logs_.begin(), logs_.end(), [&](const SameLog& log) { return log.path == path; });
  if (found == logs_.end()) return;
  const int row = static_cast<int>(found - logs_.begin());
  table_->selectRow(sorted_->mapFromSource(model_->index(row, 0)).row());
}

const SameLog* SameLogsPage::selected() const {
  const QModelIndexList rows = table_->selectionModel()->selectedRows();
  if (rows.isEmpty()) return nullptr;
  return &logs_[static_cast<std::size_t>(sorted_->mapToSource(rows.constFirst()).row())];
}

void SameLogsPage::read_selected() {
  const SameLog* log = selected();
  shown_ = log == nullptr ? std::string() : log->path;
  text_->clear();
  if (log != nullptr) read(*log);
}

void SameLogsPage::read(const SameLog& log) {
  const auto fault = base::fault_of([&] {
    std::string bytes = parts_.files.read(log.path);
    const bool whole = bytes.size() <= kShownBytes;
    if (!whole) bytes.erase(0, bytes.size() - kShownBytes);
    text_->setPlainText(ui::text_of_bytes(bytes));
    const QString path = ui::qt_text(parts_.files.native(log.path));
    lblState_->setText(whole ? path
                             : QStringLiteral("The last %1 of ").arg(ui::byte_count(kShownBytes)) + path);
  });
  if (fault)
    lblState_->setText(QStringLiteral("The log cannot be read. ") + ui::qt_text(ui::sentence_of(*fault)));
}

void SameLogsPage::find_next() {
  find(Direction::kForward);
}

void SameLogsPage::find_previous() {
  find(Direction::kBackward);
}

// Behind the end the search goes on at the other one.
void SameLogsPage::find(Direction direction) {
  if (txtFind_->text().isEmpty()) return txtFind_->setFocus();
  const QTextCursor before = text_->textCursor();
  bool found = find_once(direction);
  if (!found) {
    text_->moveCursor(direction == Direction::kForward ? QTextCursor::Start : QTextCursor::End);
    found = find_once(direction);
  }
  if (!found) text_->setTextCursor(before);
  lblState_->setText(found ? QStringLiteral("Found in line %1.").arg(text_->textCursor().blockNumber() + 1)
                           : QStringLiteral("\"%1\" was not found.").arg(txtFind_->text()));
}

bool SameLogsPage::find_once(Direction direction) {
  const bool forward = direction == Direction::kForward;
  return text_->find(txtFind_->text(), forward ? QTextDocument::FindFlags() : QTextDocument::FindBackward);
}

}  // namespace qvrcom::desktop
