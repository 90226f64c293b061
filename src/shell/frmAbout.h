#pragma once

#include <QDialog>

namespace brackwell {

class frmAbout : public QDialog {
  Q_OBJECT

 public:
  explicit frmAbout(QWidget* parent);
};

}  // namespace brackwell
