#pragma once

#include <QHash>
#include <QStatusBar>

namespace brackwell {

class ElidedLabel;

/// A status bar of panels that are known by a key. A panel is as wide as the bar lets it be: a long text is
/// shortened in the middle and never widens the window.
class StatusBar : public QStatusBar {
  Q_OBJECT

 public:
  explicit StatusBar(QWidget* parent = nullptr);

  /// Adds a panel at the right. It shares the width that fixed panels leave over in proportion to `stretch`.
  void AddPanel(const QString& key, int stretch = 1);
  /// As AddPanel, always `width` pixels wide.
  void AddFixedPanel(const QString& key, int width);

  /// A key that no panel has is an error of the caller.
  void SetPanelText(const QString& key, const QString& text);
  QString PanelText(const QString& key) const;

 private:
  ElidedLabel* NewPanel(const QString& key, int stretch);

  QHash<QString, ElidedLabel*> mPanels;
};

}  // namespace brackwell
