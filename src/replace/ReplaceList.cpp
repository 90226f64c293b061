#include "replace/ReplaceList.h"

#include <algorithm>

#include "common/NativeText.h"

namespace brackwell {

using namespace Qt::StringLiterals;

ReplaceList::ReplaceList(QObject* parent) : QAbstractTableModel(parent), mResultHeader(u"Replacements"_s) {}

void ReplaceList::Clear() {
  beginResetModel();
  mRows.clear();
  mPublished = 0;
  mWithResult = 0;
  endResetModel();
}

void ReplaceList::SetResultHeader(const QString& text) {
  mResultHeader = text;
  Q_EMIT headerDataChanged(Qt::Horizontal, ResultColumn, ResultColumn);
}

void ReplaceList::Publish(std::size_t items) {
  const int newRows = static_cast<int>(mRows.size()) - mPublished;
  const bool isBatch = newRows > mPublished / 16;
  if (isBatch || items > 0) PublishRows();
  PublishResults(static_cast<int>(items));
}

void ReplaceList::PublishRows() {
  const int rows = static_cast<int>(mRows.size());
  if (rows == mPublished) return;
  beginInsertRows({}, mPublished, rows - 1);
  mPublished = rows;
  endInsertRows();
}

void ReplaceList::PublishResults(int items) {
  if (items <= mWithResult) return;
  Q_EMIT dataChanged(index(mWithResult, ResultColumn), index(items - 1, ResultColumn));
  mWithResult = items - 1;  // the last one is told again: it may have been in hand
}

int ReplaceList::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : mPublished; }

int ReplaceList::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant ReplaceList::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= mPublished) return {};
  const ReplaceRow& row = mRows[static_cast<std::size_t>(index.row())];
  const bool isFile = index.column() == FileColumn;
  switch (role) {
    case Qt::DisplayRole:
      return isFile ? ToShownText(row.Path) : QString::fromStdString(ResultText(row.Result));
    case Qt::ToolTipRole:
      return ToToolTip(isFile ? ToShownText(row.Path) + NoteOn(row) : NoteOn(row).trimmed());
    default:
      return {};
  }
}

/// A line of the tool tip.
QString ReplaceList::NoteOn(const ReplaceRow& row) const {
  if (row.Result.What != ReplaceResult::Kind::SameFile) return {};
  return u'\n' + QString::fromStdString(SameFileText(mRows[static_cast<std::size_t>(row.Result.Count)].Path));
}

QVariant ReplaceList::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  if (section == FileColumn) return u"File"_s;
  return section == ResultColumn ? mResultHeader : QVariant();
}

}  // namespace brackwell
