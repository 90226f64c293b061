#pragma once

#include <QDialog>

namespace brackwell {

class frmOptions : public QDialog {
  Q_OBJECT

 public:
  explicit frmOptions(QWidget* parent);
};

}  // namespace brackwell
