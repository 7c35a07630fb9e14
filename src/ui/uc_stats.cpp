#include "ui/uc_stats.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "ui/attempt.h"
#include "ui/csv_table_model.h"
#include "ui/elements.h"
#include "ui/uc_stats_parts.h"
#include "ui/uc_stats_selection.h"

namespace qvrcom::ui {
namespace {

constexpr std::uint64_t kIndexedAStep = 1U << 20U;
constexpr std::uint32_t kRowsAStep = 5'000;
constexpr qint64 kAnnounceMilliseconds = 150;  // a view goes through all its rows when some are added
constexpr qsizetype kCopiedCharacters = 64'000'000;
constexpr std::size_t kDamagedRowsTold = 3;

}  // namespace

ucStats::ucStats(const csv::ByteSources& sources, QWidget* parent)
    : QWidget(parent), sources_(sources), model_(new CsvTableModel(this)) {
  setAccessibleName(tr("Statistics grid"));
  build_table();
  build_list();
  build_layout();
  build_actions();
  connect(model_, &CsvTableModel::read_failed, this,
          [this](const QString& why) { say(tr("A row cannot be read. %1").arg(why)); });
  setFocusProxy(table_);
}

ucStats::~ucStats() = default;

void ucStats::build_table() {
  table_ = named(new QTableView(this), "tblStatistics", tr("Statistics table"));
  table_->setModel(model_);
  table_->setAlternatingRowColors(true);
  table_->setWordWrap(false);
  table_->setTabKeyNavigation(false);  // Tab leaves the table
  table_->setContextMenuPolicy(Qt::ActionsContextMenu);
  table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  // One height for all rows: nothing is measured per row.
  table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 8);
  QHeaderView* names = table_->horizontalHeader();
  names->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  names->setHighlightSections(false);
  names->setSectionsClickable(true);
  connect(names, &QHeaderView::sectionClicked, this, &ucStats::sort_next);
}

void ucStats::build_layout() {
  caption_ = new CaptionPanel(this);
  find_bar_ = new FindBar(this);
  connect(find_bar_, &FindBar::find_next, this, &ucStats::find_next);
  connect(find_bar_, &FindBar::find_previous, this, &ucStats::find_previous);
  connect(find_bar_, &FindBar::closed, this, &ucStats::close_find);
  header_row_ = captioned<QCheckBox>("chkHeaderRow", tr("First row is a &header"), this);
  header_row_->setChecked(true);
  connect(header_row_, &QCheckBox::toggled, this, &ucStats::set_header_row);
  status_ = named(new QLabel(this), "lblStatus", tr("Status"));
  status_->setTextFormat(Qt::PlainText);
  status_->setWordWrap(true);
  status_->setTextInteractionFlags(Qt::TextSelectableByMouse);

  auto* tools = new QHBoxLayout;
  tools->addWidget(header_row_);
  tools->addStretch(1);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(status_, 1);
  const auto button = [this](const char* name, const QString& caption, QHBoxLayout* line, auto handler) {
    auto* made = captioned<QPushButton>(name, caption, this);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, handler);
    line->addWidget(made);
  };
  button("cmdSort", tr("&Sort by Column"), tools, &ucStats::sort_current_column);
  button("cmdFind", tr("&Find..."), tools, &ucStats::open_find);
  button("cmdClose", tr("&Close"), bottom, &ucStats::CloseRequested);

  auto* tables = new QGridLayout;
  tables->addWidget(list_label_, 0, 0);
  tables->addLayout(tools, 0, 1);
  tables->addWidget(list_, 1, 0);
  tables->addWidget(table_, 1, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(caption_);
  layout->addLayout(tables, 1);
  layout->addWidget(find_bar_);
  layout->addLayout(bottom);
}

void ucStats::build_actions() {
  table_->addAction(add_action(tr("Copy"), QKeySequence::Copy, &ucStats::copy));
  table_->addAction(add_action(tr("Find..."), QKeySequence::Find, &ucStats::open_find));
  add_action(tr("Find Next"), QKeySequence::FindNext, &ucStats::find_next);
  add_action(tr("Find Previous"), QKeySequence::FindPrevious, &ucStats::find_previous);
  add_action(tr("Next Table"), Qt::CTRL | Qt::Key_PageDown, &ucStats::next_table);
  add_action(tr("Previous Table"), Qt::CTRL | Qt::Key_PageUp, &ucStats::previous_table);
}

QAction* ucStats::add_action(const QString& caption, const QKeySequence& key, void (ucStats::*handler)()) {
  auto* action = new QAction(caption, this);
  action->setShortcut(key);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(action, &QAction::triggered, this, handler);
  addAction(action);
  return action;
}

void ucStats::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
  if (find_bar_->isVisible()) return close_find();
  emit CloseRequested();
}

// Loading

void ucStats::LoadAndDisplay() {
  const auto fault = fault_of([this] { load(); });
  if (!fault) return;
  shown_stamp_.reset();
  say_fault(tr("The file cannot be shown."), *fault);
}

void ucStats::load() {
  const std::string path = utf8(csv_file_name_);
  if (path != shown_path_) forget_file();
  shown_path_ = path;
  const csv::FileStamp stamp = sources_.stamp(path);
  if (shown_stamp_ == stamp) return;
  auto file = std::make_unique<csv::CsvFile>(sources_.open(path));
  file->index().index_some(kIndexedAStep);
  file->find_tables();
  shown_stamp_ = stamp;
  model_->file() == nullptr ? show_first_rows(std::move(file)) : read_anew(std::move(file));
}

void ucStats::forget_file() {
  loading_.cancel();
  working_.cancel();
  find_.reset();
  sort_.reset();
  next_file_.reset();
  waiting_find_.reset();
  shown_stamp_.reset();
  views_.forget();
  model_->show_file(nullptr, views_.of(CsvPart::kWholeFile).part);
  list_->set_names({});
  list_label_->hide();
  put_back(TableView());
  say({});
}

void ucStats::show_first_rows(std::unique_ptr<csv::CsvFile> file) {
  const bool several = file->tables().size() > 1;
  TableView& shown = view_of(several ? 0 : CsvPart::kWholeFile, *file);
  model_->show_file(std::move(file), shown.part);
  show_names();
  put_back(shown);
  if (model_->file()->index().complete()) return settle();
  since_announced_.start();
  loading_.start({[this] {
                    const bool more = model_->file()->index().index_some(kIndexedAStep);
                    model_->file()->find_tables();
                    return more;
                  },
                  [this] { show_reading(); },
                  [this] {
                    take_up_indexed();
                    settle();
                  },
                  [this](const base::Fault& fault) {
                    take_up_indexed();
                    shown_stamp_.reset();
                    say_fault(tr("The rest of the file cannot be read."), fault);
                  }});
}

void ucStats::show_reading() {
  const csv::CsvIndex& index = model_->file()->index();
  if (since_announced_.elapsed() >= kAnnounceMilliseconds) {
    take_up_indexed();
    since_announced_.start();
  }
  const auto percent = 100 * index.indexed_bytes() / std::max<std::uint64_t>(index.total_bytes(), 1);
  say(tr("Reading: %1 %, %2 rows").arg(percent).arg(QLocale().toString(model_->rowCount())));
}

// The old content stays usable until the new one is complete.
void ucStats::read_anew(std::unique_ptr<csv::CsvFile> file) {
  working_.cancel();
  find_.reset();
  sort_.reset();
  next_file_ = std::move(file);
  loading_.start({[this] { return read_anew_step(); }, [] {}, [this] { show_read_anew(); },
                  [this](const base::Fault& fault) {
                    shown_stamp_.reset();
                    next_file_.reset();
                    sort_.reset();
                    say_fault(tr("The changed file cannot be read."), fault);
                  }});
}

bool ucStats::read_anew_step() {
  const bool more = next_file_->index().index_some(kIndexedAStep);
  next_file_->find_tables();
  if (more) return true;
  const std::optional<int> table = views_.same_table(model_->part().table, *next_file_);
  if (sort_column_ < 0 || !table) return false;
  if (!sort_) {
    const CsvPart part{*table, model_->part().header_row};
    sort_ = std::make_unique<csv::SortTask>(*next_file_, part.data_rows(*next_file_),
                                            static_cast<std::uint32_t>(sort_column_), sort_direction_);
  }
  return sort_->step(kRowsAStep);
}

void ucStats::show_read_anew() {
  keep_view();
  const int first = next_file_->tables().size() > 1 ? 0 : CsvPart::kWholeFile;
  const int table = views_.same_table(model_->part().table, *next_file_).value_or(first);
  views_.follow(*next_file_);
  TableView& shown = view_of(table, *next_file_);
  model_->show_file(std::move(next_file_), shown.part, sort_ ? sort_->take_order() : csv::RowOrder{});
  sort_.reset();
  show_names();
  put_back(shown);
  settle();
}

// What was asked for while another task ran comes now.
void ucStats::settle() {
  say_totals();
  if (sort_column_ >= 0 && model_->order().sorted.empty()) start_sort();
  if (busy() || !waiting_find_) return;
  find(*std::exchange(waiting_find_, std::nullopt));
}

// Sorting

void ucStats::sort_next(int column) {
  const bool up = sort_column_ == column && sort_direction_ == csv::SortDirection::kAscending;
  const bool down = sort_column_ == column && !up;
  sort_column_ = down ? -1 : column;
  sort_direction_ = up ? csv::SortDirection::kDescending : csv::SortDirection::kAscending;
  show_sort_indicator();
  sort_.reset();
  if (!loading_.running()) start_sort();
}

void ucStats::sort_current_column() {
  if (table_->currentIndex().isValid()) return sort_next(table_->currentIndex().column());
  say(tr("Choose a cell of the column first."));
}

void ucStats::start_sort() {
  working_.cancel();
  find_.reset();
  if (model_->file() == nullptr) return;
  if (sort_column_ < 0) {
    model_->set_file_order();
    return settle();
  }
  sort_ = std::make_unique<csv::SortTask>(*model_->file(), model_->part().data_rows(*model_->file()),
                                          static_cast<std::uint32_t>(sort_column_), sort_direction_);
  working_.start({[this] { return sort_->step(kRowsAStep); }, [this] { say(tr("Sorting...")); },
                  [this] {
                    model_->set_order(std::exchange(sort_, nullptr)->take_order());
                    say_totals();
                    if (waiting_find_) find(*std::exchange(waiting_find_, std::nullopt));
                  },
                  [this](const base::Fault& fault) {
                    sort_.reset();
                    sort_column_ = -1;
                    show_sort_indicator();
                    say_fault(tr("The table cannot be sorted."), fault);
                  }});
}

void ucStats::set_header_row(bool header_row) {
  working_.cancel();
  find_.reset();
  sort_.reset();
  sort_column_ = -1;
  show_sort_indicator();
  CsvPart part = model_->part();
  part.header_row = header_row;
  views_.of(part.table).part = part;
  model_->show_part(part);
  if (!loading_.running()) say_totals();
}

void ucStats::show_sort_indicator() {
  const bool up = sort_direction_ == csv::SortDirection::kAscending;
  table_->horizontalHeader()->setSortIndicatorShown(sort_column_ >= 0);
  table_->horizontalHeader()->setSortIndicator(sort_column_, up ? Qt::AscendingOrder : Qt::DescendingOrder);
}

// Finding and copying

void ucStats::open_find() {
  find_bar_->open();
}

void ucStats::close_find() {
  find_bar_->hide();
  table_->setFocus();
}

void ucStats::find(csv::FindDirection direction) {
  if (find_bar_->text().isEmpty()) return open_find();
  if (loading_.running() || sort_) {
    waiting_find_ = direction;
    return;
  }
  if (model_->rowCount() == 0) return say(tr("There is nothing to search."));
  find_ = std::make_unique<csv::FindTask>(*model_->file(), model_->order(), utf8(find_bar_->text()),
                                          find_start(direction), direction);
  working_.start({[this] { return find_->step(kRowsAStep); }, [this] { say(tr("Searching...")); },
                  [this] { show_found(); },
                  [this](const base::Fault& fault) { say_fault(tr("The search ended early."), fault); }});
}

// Without a current cell the search starts outside the table, so that its first cell counts.
csv::CellPlace ucStats::find_start(csv::FindDirection direction) const {
  const QModelIndex current = table_->currentIndex();
  if (current.isValid())
    return {static_cast<std::uint32_t>(current.row()), static_cast<std::uint32_t>(current.column())};
  if (direction == csv::FindDirection::kBackward) return {};
  return {model_->order().count - 1, CsvTableModel::kMaxColumns};
}

void ucStats::show_found() {
  const std::optional<csv::CellPlace> found = std::exchange(find_, nullptr)->found();
  if (!found) return say(tr("\"%1\" was not found.").arg(find_bar_->text()));
  const QModelIndex cell = model_->index(static_cast<int>(found->line), static_cast<int>(found->column));
  if (!cell.isValid()) return say(tr("Found in a column beyond those that are shown."));
  table_->setCurrentIndex(cell);
  table_->scrollTo(cell);
  say(tr("Found in row %1, %2.")
          .arg(QLocale().toString(model_->headerData(cell.row(), Qt::Vertical, Qt::DisplayRole).toUInt()),
               model_->headerData(cell.column(), Qt::Horizontal, Qt::DisplayRole).toString()));
}

void ucStats::copy() {
  const auto text = selection_text(*model_, table_->selectionModel()->selection(), kCopiedCharacters);
  if (!text) return say(tr("The selection is too large to copy. Select fewer rows."));
  if (text->isEmpty()) return;
  QGuiApplication::clipboard()->setText(*text);
  say(tr("Copied %1 characters.").arg(QLocale().toString(text->size())));
}

// The status line

void ucStats::say(const QString& text) {
  status_->setText(text);
}

void ucStats::say_totals() {
  if (model_->file() == nullptr) return say({});
  const csv::CsvIndex& index = model_->file()->index();
  QString text = tr("%1 rows, %2 columns")
                     .arg(QLocale().toString(model_->rowCount()), QLocale().toString(model_->columnCount()));
  QStringList remarks;
  for (const std::string& damage : csv::damage_texts(index, kDamagedRowsTold))
    remarks.append(qt_text(damage));
  if (index.rows_left_out()) remarks.append(tr("The file has more rows than can be shown."));
  if (index.column_count() > CsvTableModel::kMaxColumns)
    remarks.append(tr("The file has more columns than can be shown."));
  if (index.blocks_left_out()) remarks.append(tr("The file has more tables than are listed."));
  if (!remarks.isEmpty()) text += QLatin1String(". ") + remarks.join(u' ');
  say(text);
}

void ucStats::say_fault(const QString& what, const base::Fault& fault) {
  say(what + u' ' + qt_text(sentence_of(fault)));
}

}  // namespace qvrcom::ui
