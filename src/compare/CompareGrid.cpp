#include "compare/CompareGrid.h"

#include <array>

#include "common/NativeText.h"
#include "shell/frmImages.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

QString ToText(std::string_view ascii) {
  return QString::fromLatin1(ascii.data(), static_cast<qsizetype>(ascii.size()));
}

QString SpokenBox(FixBox box) {
  switch (box) {
    case FixBox::Off:
      return u"not ticked"_s;
    case FixBox::On:
      return u"ticked"_s;
    case FixBox::None:
      break;
  }
  return {};
}

QString SpokenResult(const CompareRow& row) {
  if (row.IsFixed) return u"fixed"_s;
  switch (row.Kind) {
    case ResultKind::SourceFileMissingInTarget:
    case ResultKind::SourceFolderMissingInTarget:
      return u"only in source"_s;
    case ResultKind::TargetFileMissingInSource:
    case ResultKind::TargetFolderMissingInSource:
      return u"only in target"_s;
    case ResultKind::FileSame:
    case ResultKind::FolderSame:
      return u"nothing flagged"_s;
    default:
      return u"different"_s;
  }
}

/// What a screen reader says of a cell.
QString Spoken(const CompareRow& row, int column) {
  switch (column) {
    case CompareGrid::ItemIconColumn:
      return IsFile(row.Kind) ? u"file"_s : u"folder"_s;
    case CompareGrid::ResultIconColumn:
      return SpokenResult(row);
    case CompareGrid::FixSourceColumn:
      return SpokenBox(row.FixSource);
    case CompareGrid::FixTargetColumn:
      return SpokenBox(row.FixTarget);
    default:
      return {};
  }
}

}  // namespace

ComparePictures ComparePictures::From(const frmImages& images) {
  return {.File = images.GetPicture(u"File"_s),
          .FolderOpen = images.GetPicture(u"FolderOpen"_s),
          .ArrowRedR = images.GetPicture(u"ArrowRedR"_s),
          .ArrowRedL = images.GetPicture(u"ArrowRedL"_s),
          .ArrowYellowDbl = images.GetPicture(u"ArrowYellowDbl"_s),
          .ArrowGreenDbl = images.GetPicture(u"ArrowGreenDbl"_s),
          .Checkmark = images.GetPicture(u"Checkmark"_s),
          .CheckOFF = images.imgCheckOFF,
          .CheckON = images.imgCheckON};
}

CompareGrid::CompareGrid(ComparePictures pictures, QObject* parent)
    : QAbstractTableModel(parent), mPictures(std::move(pictures)) {}

void CompareGrid::Init() {
  beginResetModel();
  if (mOldRows.empty()) mOldRows.swap(mRows);
  mRows.clear();
  mPublished = 0;
  mHasEmptyRow = true;
  endResetModel();
}

/// To let go of a million rows takes as long as to be noticed, so each new row takes one of them along.
void CompareGrid::AddCompareRow(CompareRow row) {
  mRows.push_back(std::move(row));
  if (!mOldRows.empty()) mOldRows.pop_back();
}

void CompareGrid::Publish() {
  const int rows = static_cast<int>(mRows.size());
  if (rows == mPublished) return;
  beginInsertRows({}, mPublished, rows - 1);
  mPublished = rows;
  endInsertRows();
}

void CompareGrid::RemoveEmptyRow() {
  if (!mHasEmptyRow) return;
  beginRemoveRows({}, mPublished, mPublished);
  mHasEmptyRow = false;
  endRemoveRows();
}

void CompareGrid::Sort() {
  mOldRows.clear();
  beginResetModel();
  SortByName(mRows);
  mPublished = static_cast<int>(mRows.size());
  endResetModel();
}

bool CompareGrid::Toggle(int row, int column) {
  if (row < 0 || row >= mPublished) return false;
  CompareRow& target = mRows[row];
  const bool toggled = (column == FixSourceColumn && ToggleFixSource(target)) ||
                       (column == FixTargetColumn && ToggleFixTarget(target));
  if (toggled) RowChanged(row);
  return toggled;
}

void CompareGrid::TickRows(TickAll what) {
  if (mPublished == 0) return;
  for (CompareRow& row : mRows) TickBoxes(row, what);
  Q_EMIT dataChanged(index(0, FixSourceColumn), index(mPublished - 1, FixTargetColumn));
}

void CompareGrid::RowChanged(std::size_t row) {
  const int number = static_cast<int>(row);
  Q_EMIT dataChanged(index(number, 0), index(number, ColumnCount - 1));
}

int CompareGrid::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : mPublished + (mHasEmptyRow ? 1 : 0);
}

int CompareGrid::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

const QIcon* CompareGrid::Picture(const CompareRow& row, int column) const {
  const auto box = [this](FixBox fix) -> const QIcon* {
    if (fix == FixBox::None) return nullptr;
    return fix == FixBox::On ? &mPictures.CheckON : &mPictures.CheckOFF;
  };
  switch (column) {
    case ItemIconColumn:
      return IsFile(row.Kind) ? &mPictures.File : &mPictures.FolderOpen;
    case ResultIconColumn: {
      const std::string_view key = ResultIcon(row);
      if (key == "ArrowRedR") return &mPictures.ArrowRedR;
      if (key == "ArrowRedL") return &mPictures.ArrowRedL;
      if (key == "ArrowYellowDbl") return &mPictures.ArrowYellowDbl;
      if (key == "ArrowGreenDbl") return &mPictures.ArrowGreenDbl;
      return &mPictures.Checkmark;
    }
    case FixSourceColumn:
      return box(row.FixSource);
    case FixTargetColumn:
      return box(row.FixTarget);
    default:
      return nullptr;
  }
}

QVariant CompareGrid::data(const QModelIndex& index, int role) const {
  const int column = index.column();
  const bool isText = column == NameColumn || column == MessageColumn;
  if (role == Qt::TextAlignmentRole)
    return int(isText ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignHCenter | Qt::AlignVCenter);
  if (!index.isValid() || index.row() >= mPublished) return {};
  const CompareRow& row = mRows[index.row()];
  switch (role) {
    case Qt::DisplayRole:
      if (column == NameColumn) return ToShownText(row.Name);
      if (column == MessageColumn) return ToText(ResultMessage(row));
      return {};
    case Qt::DecorationRole:
      if (const QIcon* picture = Picture(row, column)) return *picture;
      return {};
    case Qt::ToolTipRole:
      return isText ? ToToolTip(data(index, Qt::DisplayRole).toString()) : QVariant();
    case Qt::AccessibleTextRole:
      return isText ? data(index, Qt::DisplayRole) : Spoken(row, column);
    default:
      return {};
  }
}

QVariant CompareGrid::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) return int(Qt::AlignCenter);
  if (role != Qt::DisplayRole || section < 0 || section >= ColumnCount) return {};
  static const std::array<QString, ColumnCount> headers{u"Folder / Filename"_s, u"Folder / Filename"_s,
                                                        u"Comparison Result"_s, u"Comparison Result"_s,
                                                        u"Fix Source"_s,        u"Fix Target"_s};
  return headers[section];
}

}  // namespace brackwell
