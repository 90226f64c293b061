#pragma once

#include <QAbstractTableModel>
#include <string>
#include <vector>

namespace brackwell {

/// The fonts of lvwFonts, each with a check mark, in the order in which they are given.
class FontList : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  /// All checked.
  void SetFonts(std::vector<std::string> names);
  void CheckAll(bool checked);
  std::vector<std::string> CheckedFonts() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Font {
    std::string Name;
    bool IsChecked;
  };

  std::vector<Font> mFonts;
};

}  // namespace brackwell
