#include "ui/uc_stats_parts.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>

#include "ui/elements.h"

namespace qvrcom::ui {
namespace {

constexpr int kPairsOnALine = 3;
constexpr int kListPadding = 24;  // around a line, and its scroll bar
constexpr int kLineSpacing = 8;
constexpr int kNarrowList = 100;
constexpr int kWideList = 220;

QLabel* text_label(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

CaptionPanel::CaptionPanel(QWidget* parent) : QWidget(parent), grid_(new QGridLayout(this)) {
  named(this, "fraCaption", tr("About this table"));
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setHorizontalSpacing(8);
  grid_->setColumnStretch(3 * kPairsOnALine, 1);
  for (int pair = 1; pair < kPairsOnALine; ++pair)
    grid_->setColumnMinimumWidth(3 * pair - 1, 24);
  hide();
}

void CaptionPanel::set_lines(const std::vector<std::pair<std::string, std::string>>& lines) {
  qDeleteAll(findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly));
  int pair = 0;
  for (const auto& [name, value] : lines) {
    auto* name_label = text_label(name.empty() ? QString() : qt_text(name) + u':', this);
    auto* value_label = text_label(qt_text(value), this);
    QFont bold = value_label->font();
    bold.setBold(true);
    value_label->setFont(bold);
    value_label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    value_label->setAccessibleName((name_label->text() + u' ' + value_label->text()).trimmed());
    grid_->addWidget(name_label, pair / kPairsOnALine, 3 * (pair % kPairsOnALine));
    grid_->addWidget(value_label, pair / kPairsOnALine, 3 * (pair % kPairsOnALine) + 1);
    ++pair;
  }
  setVisible(pair > 0);
}

TableList::TableList(QWidget* parent) : QListWidget(parent) {
  named(this, "lstTables", tr("Tables of this file"));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setTextElideMode(Qt::ElideRight);
  setUniformItemSizes(true);
  hide();
}

void TableList::set_names(const QStringList& names) {
  if (names == names_) return;
  names_ = names;
  const QSignalBlocker quiet(this);
  const int current = currentRow();
  clear();
  int width = 0;
  for (const QString& name : names) {
    auto* line = new QListWidgetItem(name, this);
    line->setToolTip(QStringLiteral("<p>%1</p>").arg(name.toHtmlEscaped()));
    line->setSizeHint({0, fontMetrics().height() + kLineSpacing});
    width = std::max(width, fontMetrics().horizontalAdvance(name));
  }
  setCurrentRow(std::min(current, count() - 1));
  const int frame = 2 * frameWidth() + kListPadding;
  setFixedWidth(std::clamp(width + frame, kNarrowList, kWideList));
  setVisible(!names.isEmpty());
}

FindBar::FindBar(QWidget* parent) : QWidget(parent) {
  text_ = named(new QLineEdit(this), "txtFind", tr("Text to find"));
  text_->setClearButtonEnabled(true);
  auto* next = captioned<QPushButton>("cmdFindNext", tr("&Next"), this);
  auto* previous = captioned<QPushButton>("cmdFindPrevious", tr("&Previous"), this);
  auto* close = captioned<QPushButton>("cmdFindClose", tr("Hi&de"), this);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(label_for(text_, "lblFind", tr("Find &what:"), this));
  layout->addWidget(text_, 1);
  for (QPushButton* button : {next, previous, close}) {
    button->setAutoDefault(false);
    layout->addWidget(button);
  }
  connect(text_, &QLineEdit::returnPressed, this, &FindBar::find_next);
  connect(next, &QPushButton::clicked, this, &FindBar::find_next);
  connect(previous, &QPushButton::clicked, this, &FindBar::find_previous);
  connect(close, &QPushButton::clicked, this, &FindBar::closed);
  hide();
}

QString FindBar::text() const {
  return text_->text();
}

void FindBar::set_text(const QString& text) {
  text_->setText(text);
}

void FindBar::open() {
  show();
  text_->setFocus(Qt::ShortcutFocusReason);
  text_->selectAll();
}

}  // namespace qvrcom::ui
