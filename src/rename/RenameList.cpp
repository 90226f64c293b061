#include "rename/RenameList.h"

#include <algorithm>
#include <utility>

#include "common/NativeText.h"
#include "controls/ListView.h"

namespace brackwell {

using namespace Qt::StringLiterals;

bool RenameList::HasNewNames() const {
  return std::ranges::any_of(mItems, [](const RenameItem& item) { return item.Number.has_value(); });
}

void RenameList::SetItems(WorkList items) {
  beginResetModel();
  mItems = std::move(items);
  ForgetForecasts();
  endResetModel();
}

void RenameList::CheckAll(bool checked) {
  for (RenameItem& item : mItems) item.Checked = checked;
  ColumnChanged(OriginalFileColumn);
  PlanChanged();
}

/// The view keeps its place: to it two items have changed, and none has gone.
void RenameList::MoveItem(int row, int newRow) {
  mItems[row].Number.reset();
  std::swap(mItems[row], mItems[newRow]);
  for (const int changed : {row, newRow})
    Q_EMIT dataChanged(index(changed, OriginalFileColumn), index(changed, NewFileColumn));
  PlanChanged();
}

void RenameList::AssignNewNames(const Naming& naming) {
  mNaming = naming;
  brackwell::AssignNewNames(mItems, naming);
  PlanChanged();
}

void RenameList::SetTakenNames(bool preserve, TakenNames taken) {
  mPreserve = preserve;
  mTaken = std::move(taken);
  PlanChanged();
}

/// A tick or a place decides about the names of others, too.
void RenameList::PlanChanged() {
  ForgetForecasts();
  ColumnChanged(NewFileColumn);
}

void RenameList::ForgetForecasts() {
  mAnyIsWrapped.reset();
  mForecasts.clear();
}

void RenameList::ColumnChanged(int column) {
  if (!mItems.empty()) Q_EMIT dataChanged(index(0, column), index(rowCount() - 1, column));
}

int RenameList::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(mItems.size());
}

int RenameList::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QString RenameList::Text(const QModelIndex& index) const {
  const RenameItem& item = mItems[index.row()];
  return ToShownText(index.column() == OriginalFileColumn ? item.Name : NewName(mNaming, item));
}

bool RenameList::IsSureToBeFree(const RenameItem& item) const {
  if (!mAnyIsWrapped) mAnyIsWrapped = AnyIsWrapped(mItems, mNaming);
  return !*mAnyIsWrapped && IsFree(item, mNaming, mTaken);
}

QString RenameList::Warning(const QModelIndex& index) const {
  if (index.column() != NewFileColumn || !mItems[index.row()].Number) return {};
  if (mForecasts.empty() && IsSureToBeFree(mItems[index.row()])) return {};
  if (mForecasts.empty()) mForecasts = Forecast(mItems, mNaming, mPreserve, mTaken);
  return QString::fromStdString(WarningText(mForecasts[index.row()]));
}

QVariant RenameList::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  switch (role) {
    case Qt::DisplayRole:
      return Text(index);
    case Qt::ToolTipRole: {
      const QString warning = Warning(index);
      return ToToolTip(warning.isEmpty() ? Text(index) : Text(index) + u'\n' + warning);
    }
    case Qt::AccessibleDescriptionRole:
      return Warning(index);
    case ListView::WarningRole:
      return !Warning(index).isEmpty();
    case Qt::CheckStateRole:
      if (index.column() != OriginalFileColumn) return {};
      return mItems[index.row()].Checked ? Qt::Checked : Qt::Unchecked;
    default:
      return {};
  }
}

bool RenameList::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || index.column() != OriginalFileColumn || role != Qt::CheckStateRole) return false;
  mItems[index.row()].Checked = value.toInt() == Qt::Checked;
  Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
  PlanChanged();
  Q_EMIT ItemCheck(index.row());
  return true;
}

QVariant RenameList::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return section == OriginalFileColumn ? u"Original File"_s : u"New File"_s;
}

Qt::ItemFlags RenameList::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  return index.column() == OriginalFileColumn ? flags | Qt::ItemIsUserCheckable : flags;
}

}  // namespace brackwell
