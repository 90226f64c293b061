#pragma once

#include <QTreeView>

namespace brackwell {

/// A report list over any table model: one item per row, whole rows selected and copied, columns sized by
/// code. The check mark of an item is the model's Qt::CheckStateRole in the first column. A cell whose
/// WarningRole is true shows a warning sign and has its text in WarningColor.
class ListView : public QTreeView {
  Q_OBJECT
  Q_PROPERTY(bool Checkboxes READ Checkboxes WRITE SetCheckboxes)

 public:
  explicit ListView(QWidget* parent = nullptr);

  /// Whether the items have check boxes: they then show, count and follow the Space key.
  bool Checkboxes() const { return mCheckboxes; }
  void SetCheckboxes(bool checkboxes);

  static constexpr int WarningRole = Qt::UserRole + 100;
  /// Readable where the palette's texts are.
  static QColor WarningColor(const QPalette& palette);

  void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                   const QList<int>& roles) override;

 Q_SIGNALS:
  /// A right click, or the menu key on the current item. The item may be none.
  void MenuAsked(const QModelIndex& item, const QPoint& screenPosition);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ToggleCurrentItem();

  bool mCheckboxes = false;
};

}  // namespace brackwell
