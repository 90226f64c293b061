#include "shell/frmOptions.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace brackwell {

using namespace Qt::StringLiterals;

frmOptions::frmOptions(QWidget* parent) : QDialog(parent) {
  setObjectName(u"frmOptions"_s);
  setWindowTitle(u"Options"_s);

  auto* cmdOK = new QPushButton(u"&OK"_s, this);
  cmdOK->setObjectName(u"cmdOK"_s);
  cmdOK->setAccessibleName(u"OK"_s);
  cmdOK->setDefault(true);
  connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);

  auto* cmdCancel = new QPushButton(u"&Cancel"_s, this);
  cmdCancel->setObjectName(u"cmdCancel"_s);
  cmdCancel->setAccessibleName(u"Cancel"_s);
  connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

  auto* buttons = new QHBoxLayout(this);
  buttons->addStretch();
  buttons->addWidget(cmdOK);
  buttons->addWidget(cmdCancel);
}

}  // namespace brackwell
