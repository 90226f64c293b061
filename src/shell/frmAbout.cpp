#include "shell/frmAbout.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace brackwell {

using namespace Qt::StringLiterals;

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
  setObjectName(u"frmAbout"_s);
  setWindowTitle(u"About Brackwell"_s);

  auto* cmdOK = new QPushButton(u"OK"_s, this);
  cmdOK->setObjectName(u"cmdOK"_s);
  cmdOK->setAccessibleName(u"OK"_s);
  cmdOK->setDefault(true);
  connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);

  auto* buttons = new QHBoxLayout(this);
  buttons->addStretch();
  buttons->addWidget(cmdOK);
}

}  // namespace brackwell
