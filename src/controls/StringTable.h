#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QStringList>
#include <vector>

namespace brackwell {

/// Rows of texts under captions, for a list that only shows. A row may have fewer texts than there are
/// columns.
class StringTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  struct Column {
    QString Key;  // the column's name in the code: KeyRole of its header
    QString Caption;
  };
  static constexpr int KeyRole = Qt::UserRole;

  using QAbstractTableModel::QAbstractTableModel;

  /// Replaces everything that was there.
  void SetContent(QList<Column> columns, std::vector<QStringList> rows);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

 private:
  QList<Column> mColumns;
  std::vector<QStringList> mRows;
};

}  // namespace brackwell
