#include "desktop/site_table_model.h"

#include "desktop/tables.h"
#include "ui/widget_text.h"

namespace qvrcom::desktop {
namespace {

const sitebook::SiteColumn& column_at(int index) {
  return sitebook::kSiteColumns[static_cast<std::size_t>(index)];
}

QString cell_text(const sitebook::SiteRecord& site, const sitebook::SiteColumn& column) {
  const base::Field& field = site.*column.member;
  if (column.member == &sitebook::SiteRecord::method) return method_text(field);
  if (!field) return {};
  if (column.member == &sitebook::SiteRecord::access_code)
    return QString(field->empty() ? 0 : 8, QChar(0x2022));
  return ui::qt_text(*field);
}

}  // namespace

QString method_text(const base::Field& method) {
  if (!method) return {};
  if (*method == "0") return QStringLiteral("0 - LAN");
  if (*method == "1") return QStringLiteral("1 - Modem");
  if (*method == "2") return QStringLiteral("2 - Direct");
  return ui::qt_text(*method);
}

void SiteTableModel::show(std::vector<sitebook::SiteRecord> sites) {
  beginResetModel();
  sites_ = std::move(sites);
  endResetModel();
}

int SiteTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(sites_.size());
}

int SiteTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(sitebook::kSiteColumns.size());
}

QVariant SiteTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != kSortRole)) return {};
  return cell_text(sites_[static_cast<std::size_t>(index.row())], column_at(index.column()));
}

QVariant SiteTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  if (orientation == Qt::Horizontal) return ui::qt_text(column_at(section).label);
  return sites_[static_cast<std::size_t>(section)].site_id;
}

}  // namespace qvrcom::desktop
