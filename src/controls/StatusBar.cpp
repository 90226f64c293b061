#include "controls/StatusBar.h"

#include "controls/ElidedLabel.h"

namespace brackwell {

using namespace Qt::StringLiterals;

StatusBar::StatusBar(QWidget* parent) : QStatusBar(parent) {
  setSizeGripEnabled(false);
  setAccessibleName(u"Status"_s);
}

ElidedLabel* StatusBar::NewPanel(const QString& key, int stretch) {
  Q_ASSERT(!mPanels.contains(key));
  // Its text is its accessible name, as it is for every label.
  auto* panel = new ElidedLabel(this);
  panel->setObjectName(key);
  panel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  addWidget(panel, stretch);
  mPanels.insert(key, panel);
  return panel;
}

void StatusBar::AddPanel(const QString& key, int stretch) { NewPanel(key, stretch); }

void StatusBar::AddFixedPanel(const QString& key, int width) {
  ElidedLabel* panel = NewPanel(key, 0);
  panel->setFixedWidth(width);
  panel->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);  // else others are laid over it
}

void StatusBar::SetPanelText(const QString& key, const QString& text) {
  ElidedLabel* panel = mPanels.value(key);
  Q_ASSERT(panel);
  if (panel->text() != text) panel->setText(text);
}

QString StatusBar::PanelText(const QString& key) const {
  const ElidedLabel* panel = mPanels.value(key);
  Q_ASSERT(panel);
  return panel->text();
}

}  // namespace brackwell
