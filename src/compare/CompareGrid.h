#pragma once

#include <QAbstractTableModel>
#include <QIcon>

#include "compare/CompareRow.h"

namespace brackwell {

class frmImages;

/// The pictures of the grid, looked up once.
struct ComparePictures {
  QIcon File, FolderOpen;
  QIcon ArrowRedR, ArrowRedL, ArrowYellowDbl, ArrowGreenDbl, Checkmark;
  QIcon CheckOFF, CheckON;

  static ComparePictures From(const frmImages& images);
};

/// The rows of a comparison as its grid shows them. While rows come in, and before any did, an empty row
/// stands at the end. Rows that were appended show when they are published, many at a time.
class CompareGrid : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column {
    ItemIconColumn,
    NameColumn,
    ResultIconColumn,
    MessageColumn,
    FixSourceColumn,
    FixTargetColumn
  };
  static constexpr int ColumnCount = 6;

  explicit CompareGrid(ComparePictures pictures, QObject* parent = nullptr);

  /// No rows but the empty one.
  void Init();
  void AddCompareRow(CompareRow row);
  void Publish();
  void RemoveEmptyRow();
  bool HasEmptyRow() const { return mHasEmptyRow; }
  void Sort();

  /// Ticks or unticks the box of a cell; false where there is none.
  bool Toggle(int row, int column);
  /// Ticks or unticks boxes of all rows.
  void TickRows(TickAll what);
  /// The rows, for whoever fixes them; each change is told by RowChanged.
  CompareRows& Rows() { return mRows; }
  const CompareRows& Rows() const { return mRows; }
  void RowChanged(std::size_t row);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const QIcon* Picture(const CompareRow& row, int column) const;

  const ComparePictures mPictures;
  CompareRows mRows;
  CompareRows mOldRows;  // of the comparison before, on their way out
  int mPublished = 0;
  bool mHasEmptyRow = true;
};

}  // namespace brackwell
