#include "desktop/sites_page.h"
#include "jobs/report_file.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>

#include "desktop/in_sight.h"
#include "desktop/site_dialog.h"
#include "desktop/tables.h"
#include "desktop/text_window.h"
#include "ui/attempt.h"
#include "ui/elements.h"

namespace qvrcom::desktop {
namespace {

using sitebook::AccessCodes;

constexpr const char* kFilter = "Site Lists (*.csv)|*.csv";

QString report_of(const sitebook::ImportResult& result) {
  QString report = QStringLiteral("Nothing was imported. These lines are refused:\n\n");
  for (const sitebook::ImportProblem& problem : result.problems)
    report += QStringLiteral("Line %1: %2\n").arg(problem.line).arg(ui::qt_text(problem.reason));
  return report;
}

QString count_of(std::size_t sites) {
  return sites == 1 ? QStringLiteral("1 site") : QStringLiteral("%1 sites").arg(sites);
}

// What the file shall hold; nothing when there shall be none. Nobody is asked about codes that are not there.
std::optional<AccessCodes> ask_for_codes(platform::UserInterface& ui,
                                         const std::vector<sitebook::SiteRecord>& sites) {
  const auto with_code = std::count_if(sites.begin(), sites.end(), [](const sitebook::SiteRecord& site) {
    return !site.access_code.value_or("").empty();
  });
  if (with_code == 0) return AccessCodes::kIncluded;
  const platform::Button answer = ui.show(
      {.text = "Shall the file hold the access codes of " +
               ui::utf8(count_of(static_cast<std::size_t>(with_code))) +
               "?\n\nIncluded, they stand in it in the clear: only you can read the file, but whoever "
               "is given it can reach the devices. Left out, the codes in the site book stay as they are "
               "when such a file is imported.",
       .title = platform::kSuiteTitle,
       .icon = platform::Icon::kWarning,
       .buttons = platform::Buttons::kYesNoCancel,
       .act = "Include Codes",
       .refrain = "Leave Out"});
  if (answer == platform::Button::kYes) return AccessCodes::kIncluded;
  return answer == platform::Button::kNo ? std::optional(AccessCodes::kLeftOut) : std::nullopt;
}

QString outcome_of(const sitebook::ImportResult& result) {
  return count_of(result.added) + QStringLiteral(" added, ") + count_of(result.changed) +
         QStringLiteral(" changed.");
}

}  // namespace

SitesPage::SitesPage(const SitesPageParts& parts, QWidget* parent)
    : QWidget(parent),
      parts_(parts),
      model_(new SiteTableModel(this)),
      sorted_(new ValueSort(model_, this)),
      table_(ui::named(new QTableView(this), "tblSites", QStringLiteral("Sites"))),
      lblState_(ui::named(new QLabel(this), "lblSitesState", QStringLiteral("State of the site book"))),
      seen_(parts.sites) {
  setObjectName(QStringLiteral("sitesPage"));
  lay_out();
  connect_table();
  new InSight(this, [this] { look(); });
  reload();
}

void SitesPage::lay_out() {
  prepare_row_table(*table_, *sorted_);
  auto* all = new QVBoxLayout(this);
  all->addWidget(ui::label_for(table_, "lblSites", QStringLiteral("&Sites in the site book:"), this));
  all->addWidget(table_, 1);
  lblState_->setWordWrap(true);
  lblState_->setTextFormat(Qt::PlainText);
  all->addWidget(lblState_);
  all->addWidget(make_buttons());
}

QWidget* SitesPage::make_buttons() {
  static constexpr StripButton<SitesPage> kRows[] = {
      {&SitesPage::cmdAdd_, "cmdAddSite", "&Add...", &SitesPage::add_site},
      {&SitesPage::cmdEdit_, "cmdEditSite", "&Edit...", &SitesPage::edit_site},
      {&SitesPage::cmdDelete_, "cmdDeleteSite", "De&lete...", &SitesPage::delete_site},
      {&SitesPage::cmdImport_, "cmdImportSites", "Im&port...", &SitesPage::import_sites},
      {&SitesPage::cmdExport_, "cmdExportSites", "E&xport...", &SitesPage::export_sites},
      {&SitesPage::cmdReload_, "cmdReloadSites", "&Refresh", &SitesPage::changed},
  };
  return button_strip(this, kRows, 3);
}

void SitesPage::connect_table() {
  connect(table_, &QTableView::activated, this, &SitesPage::edit_site);
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &SitesPage::show_state);
  connect(sorted_, &QAbstractItemModel::modelReset, this, &SitesPage::show_state);
}

void SitesPage::reload() {
  seen_.look();
  show_sites();
}

// What the page says meanwhile, of a file that it has written, stays as long as the book does.
void SitesPage::look() {
  if (!seen_.look()) return;
  show_sites();
  if (seen_.trouble().empty()) emit sites_changed();
}

void SitesPage::show_sites() {
  if (selected() != nullptr) selected_ = selected()->site_id;
  const bool first = model_->sites().empty();
  const bool readable = seen_.trouble().empty();
  model_->show(readable ? seen_.sites() : std::vector<sitebook::SiteRecord>());
  select(selected_);
  first ? table_->resizeColumnsToContents() : widen_columns(*table_);  // later on their widths are the user's
  show_state();
  lblState_->setText(readable ? count_of(model_->sites().size()) : ui::qt_text(seen_.trouble()));
}

void SitesPage::select(std::int32_t site_id) {
  const auto& sites = model_->sites();
  const auto found =
      std::find_if(sites.begin(), sites.end(), [&](const auto& site) { return site.site_id == site_id; });
  if (found == sites.end()) return;
  const int row = static_cast<int>(found - sites.begin());
  table_->selectRow(sorted_->mapFromSource(model_->index(row, 0)).row());
}

void SitesPage::show_state() {
  const bool one = selected() != nullptr;
  const bool readable = seen_.trouble().empty();
  for (QPushButton* button : {cmdEdit_, cmdDelete_})
    button->setEnabled(readable && one);
  for (QPushButton* button : {cmdAdd_, cmdImport_})
    button->setEnabled(readable);
  cmdExport_->setEnabled(readable && !model_->sites().empty());
}

const sitebook::SiteRecord* SitesPage::selected() const {
  const QModelIndexList rows = table_->selectionModel()->selectedRows();
  if (rows.isEmpty()) return nullptr;
  return &model_->sites()[static_cast<std::size_t>(sorted_->mapToSource(rows.constFirst()).row())];
}

void SitesPage::changed() {
  reload();
  emit sites_changed();
}

void SitesPage::add_site() {
  SiteDialog dialog(
      QStringLiteral("Add Site"), {}, [this](const auto& site) { return parts_.sites.problems(site); }, this);
  if (dialog.exec() != QDialog::Accepted) return;
  if (ui::attempt(parts_.ui, "The site cannot be added.", [&] { parts_.sites.add(dialog.site()); }))
    changed();
}

void SitesPage::edit_site() {
  if (selected() == nullptr) return;
  const sitebook::SiteRecord stored = *selected();
  if (edit_stored_site(parts_.sites, parts_.ui, stored, this)) changed();
}

void SitesPage::delete_site() {
  if (selected() == nullptr) return;
  const sitebook::SiteRecord site = *selected();
  const std::string question = "Delete the site \"" + sitebook::title_of(site) + "\" from the site book?";
  if (!ui::agreed(parts_.ui, question, "Delete Site")) return;
  if (ui::attempt(parts_.ui, "The site cannot be deleted.", [&] { parts_.sites.remove({&site, 1}); }))
    changed();
}

void SitesPage::import_sites() {
  const auto path =
      parts_.chooser.open_file({.filter = kFilter, .flags = control::FileChoice::kFileMustExist});
  if (!path) return;
  std::string text;
  sitebook::ImportResult result;
  const bool read = ui::attempt(parts_.ui, "The sites cannot be imported.", [&] {
    text = parts_.files.load(parts_.files.from_native(*path));
    result = sitebook::try_csv(parts_.sites.list(), text);
  });
  if (!read || is_refused(result) || !agrees_to(result)) return;
  if (!ui::attempt(parts_.ui, "The sites cannot be imported.",
                   [&] { result = sitebook::import_csv(parts_.sites, text); }))
    return;
  if (is_refused(result)) return;  // the book was changed meanwhile
  changed();
  parts_.ui.show({.text = ui::utf8(outcome_of(result)),
                  .title = platform::kSuiteTitle,
                  .icon = platform::Icon::kInformation});
}

bool SitesPage::is_refused(const sitebook::ImportResult& result) {
  if (result.problems.empty()) return false;
  TextWindow(QStringLiteral("Import Sites"), report_of(result), this).exec();
  return true;
}

bool SitesPage::agrees_to(const sitebook::ImportResult& result) {
  if (result.changed == 0) return true;
  const std::string text = "The file changes " + ui::utf8(count_of(result.changed)) +
                           " of the site book and adds " + ui::utf8(count_of(result.added)) +
                           ". Columns that it does not have stay as they are.";
  return ui::agreed(parts_.ui, text, "Import");
}

void SitesPage::export_sites() {
  std::vector<sitebook::SiteRecord> sites;
  const char* failed = "The sites cannot be exported.";
  if (!ui::attempt(parts_.ui, failed, [&] { sites = parts_.sites.list(); })) return;
  const auto codes = ask_for_codes(parts_.ui, sites);
  if (!codes) return;
  const auto path = parts_.chooser.save_file(kFilter, "sites.csv");
  if (!path) return;
  ui::attempt(parts_.ui, failed, [&] {
    parts_.files.save(parts_.files.from_native(*path), sitebook::export_csv(sites, *codes),
                      platform::Readers::kOwner);
    lblState_->setText(count_of(sites.size()) + QStringLiteral(" exported to ") + ui::qt_text(*path));
  });
}

}  // namespace qvrcom::desktop
