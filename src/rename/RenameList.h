#pragma once

#include <QAbstractTableModel>
#include <optional>

#include "rename/RenameForecast.h"

namespace brackwell {

/// The work list as its list view shows it: the order is that of the numbers, and a tick lets a file take
/// part. New names are made when they are shown, so that numbering costs no more than counting, and what they
/// are to be warned of is found out for the rows that show: for all at once where one is in the way of
/// another.
class RenameList : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { OriginalFileColumn, NewFileColumn };
  static constexpr int ColumnCount = 2;

  using QAbstractTableModel::QAbstractTableModel;

  const WorkList& Items() const { return mItems; }
  /// By which the items that have a number were last named.
  const Naming& Names() const { return mNaming; }
  bool HasNewNames() const;

  void SetItems(WorkList items);
  void CheckAll(bool checked);
  /// Exchanges the item with its neighbour at `newRow`. The moved item has no new name.
  void MoveItem(int row, int newRow);
  void AssignNewNames(const Naming& naming);
  /// The names that new ones meet: in the folder, or where its copies go.
  void SetTakenNames(bool preserve, TakenNames taken);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 Q_SIGNALS:
  /// The user has ticked or unticked an item.
  void ItemCheck(int row);

 private:
  QString Text(const QModelIndex& index) const;
  /// Empty where there is nothing to be said of the cell.
  QString Warning(const QModelIndex& index) const;
  bool IsSureToBeFree(const RenameItem& item) const;
  void ColumnChanged(int column);
  void PlanChanged();
  void ForgetForecasts();

  WorkList mItems;
  Naming mNaming;
  bool mPreserve = false;
  TakenNames mTaken;
  // Found out when asked for, and anew after each change.
  mutable std::optional<bool> mAnyIsWrapped;
  mutable std::vector<NameForecast> mForecasts;  // of the items; none while nobody has needed them
};

}  // namespace brackwell
