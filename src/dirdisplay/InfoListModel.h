#pragma once

#include <QAbstractTableModel>

#include "dirdisplay/InfoList.h"

namespace brackwell {

/// The rows of a list of properties: captions with check marks, in an order that the user sets.
class InfoListModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  InfoListModel(const QString& header, QObject* parent) : QAbstractTableModel(parent), mHeader(header) {}

  const InfoChoices& Choices() const { return mChoices; }
  void SetChoices(InfoChoices choices);
  /// Puts a row where another one is. False where either is none.
  bool Move(int row, int target);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 1; }
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  const QString mHeader;
  InfoChoices mChoices;
};

}  // namespace brackwell
