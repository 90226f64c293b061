#include "controls/StringTable.h"

#include <utility>

namespace brackwell {

void StringTable::SetContent(QList<Column> columns, std::vector<QStringList> rows) {
  beginResetModel();
  mColumns = std::move(columns);
  mRows = std::move(rows);
  endResetModel();
}

int StringTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(mRows.size());
}

int StringTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(mColumns.size());
}

QVariant StringTable::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return mRows[static_cast<std::size_t>(index.row())].value(index.column());
}

QVariant StringTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= mColumns.size()) return {};
  if (role == Qt::DisplayRole) return mColumns[section].Caption;
  if (role == KeyRole) return mColumns[section].Key;
  if (role == Qt::TextAlignmentRole) return int(Qt::AlignLeft | Qt::AlignVCenter);
  return {};
}

}  // namespace brackwell
