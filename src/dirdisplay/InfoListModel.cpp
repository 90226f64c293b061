#include "dirdisplay/InfoListModel.h"

#include <utility>

#include "common/NativeText.h"

namespace brackwell {

void InfoListModel::SetChoices(InfoChoices choices) {
  beginResetModel();
  mChoices = std::move(choices);
  endResetModel();
}

bool InfoListModel::Move(int row, int target) {
  const auto isRow = [this](int number) { return number >= 0 && number < rowCount(); };
  if (!isRow(row) || !isRow(target) || row == target) return false;
  beginMoveRows({}, row, row, {}, target > row ? target + 1 : target);
  InfoChoice moved = std::move(mChoices[row]);
  mChoices.erase(mChoices.begin() + row);
  mChoices.insert(mChoices.begin() + target, std::move(moved));
  endMoveRows();
  return true;
}

int InfoListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(mChoices.size());
}

QVariant InfoListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const InfoChoice& choice = mChoices[index.row()];
  switch (role) {
    case Qt::DisplayRole:
      return ToShownText(choice.Item.Caption);
    case Qt::CheckStateRole:
      return choice.Checked ? Qt::Checked : Qt::Unchecked;
    default:
      return {};
  }
}

bool InfoListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) return false;
  mChoices[index.row()].Checked = value.toInt() == Qt::Checked;
  Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
  return true;
}

QVariant InfoListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (section != 0 || orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return mHeader;
}

Qt::ItemFlags InfoListModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren;
}

}  // namespace brackwell
