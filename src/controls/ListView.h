#pragma once

#include <QTreeView>

namespace brackwell {

/// A report list over any table model: one item per row, whole rows selected, columns sized by code. The
/// check mark of an item is the model's Qt::CheckStateRole in the first column.
class ListView : public QTreeView {
  Q_OBJECT
  Q_PROPERTY(bool Checkboxes READ Checkboxes WRITE SetCheckboxes)

 public:
  explicit ListView(QWidget* parent = nullptr);

  /// Whether the items have check boxes: they then show, count and follow the Space key.
  bool Checkboxes() const { return mCheckboxes; }
  void SetCheckboxes(bool checkboxes);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ToggleCurrentItem();

  bool mCheckboxes = false;
};

}  // namespace brackwell
