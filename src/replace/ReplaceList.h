#pragma once

#include <QAbstractTableModel>

#include "replace/ReplaceRow.h"

namespace brackwell {

/// The files of a search and their results as the list shows them. Rows that a run appended, and results that
/// it gave them, show when they are published, many at a time.
class ReplaceList : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { FileColumn, ResultColumn };
  static constexpr int ColumnCount = 2;

  explicit ReplaceList(QObject* parent = nullptr);

  void Clear();
  void SetResultHeader(const QString& text);

  /// The rows, for the run that fills them: it appends, then gives results from the first row on.
  ReplaceRows& Rows() { return mRows; }
  const ReplaceRows& Rows() const { return mRows; }
  /// Shows the rows, and the results of the first `items`; the last of these may still be without one. Rows
  /// show in batches that grow with the list, since a view lays all of its rows out for each; they all show
  /// once there are results.
  void Publish(std::size_t items);
  /// Shows all rows.
  void PublishRows();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void PublishResults(int items);
  QString NoteOn(const ReplaceRow& row) const;

  ReplaceRows mRows;
  QString mResultHeader;
  int mPublished = 0;
  int mWithResult = 0;  // rows whose result shows for good
};

}  // namespace brackwell
