#include "shell/frmAbout.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "common/FormHelpers.h"
#include "common/MsgBox.h"
#include "common/Program.h"
#include "platform/Launch.h"
#include "shell/SysInfo.h"
#include "shell/frmImages.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

constexpr int PictureSize = 64;
constexpr int Gap = 16;

QLabel* NewLabel(const QString& name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  return label;
}

void SetCaption(QLabel& label, const QString& text) {
  label.setText(text);
  label.setAccessibleName(text);
}

void MakeHeading(QLabel& label) {
  QFont font = label.font();
  font.setPointSizeF(font.pointSizeF() * 1.6);
  font.setBold(true);
  label.setFont(font);
}

}  // namespace

frmAbout::frmAbout(const FileSystemObject& files, QWidget* parent) : QDialog(parent), mFiles(files) {
  setObjectName(u"frmAbout"_s);
  BuildControls();
  Arrange();
  connect(cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);
  connect(cmdSysInfo, &QPushButton::clicked, this, &frmAbout::cmdSysInfo_Click);
  Form_Load();
}

void frmAbout::BuildControls() {
  imgVem = Named(new QLabel(this), u"imgVem"_s, u"Brackwell icon"_s);
  imgVem->setPixmap(ProgramIcon().pixmap(QSize(PictureSize, PictureSize), devicePixelRatioF()));
  lblTitle = NewLabel(u"lblTitle"_s, this);
  MakeHeading(*lblTitle);
  lblVersion = NewLabel(u"lblVersion"_s, this);
  lblDescription = NewLabel(u"lblDescription"_s, this);
  cmdOK = Named(new QPushButton(u"OK"_s, this), u"cmdOK"_s, u"OK"_s);
  cmdOK->setDefault(true);
  cmdSysInfo = Named(new QPushButton(u"&System Info..."_s, this), u"cmdSysInfo"_s, u"System Info..."_s);
}

void frmAbout::Arrange() {
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(Gap / 2);
  buttons->addStretch();
  buttons->addWidget(cmdSysInfo);
  buttons->addWidget(cmdOK);

  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(Gap, Gap, Gap, Gap);
  layout->setHorizontalSpacing(Gap);
  layout->addWidget(imgVem, 0, 0, 3, 1, Qt::AlignTop);
  layout->addWidget(lblTitle, 0, 1);
  layout->addWidget(lblVersion, 1, 1);
  layout->addWidget(lblDescription, 2, 1);
  layout->setRowMinimumHeight(3, Gap);
  layout->addLayout(buttons, 4, 0, 1, 2);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

QString frmAbout::VersionText(int major, int minor, int revision) {
  return u"Version %1.%2  Build %3"_s.arg(major).arg(minor).arg(revision);
}

void frmAbout::Form_Load() {
  const QString title = QString::fromUtf8(ProgramTitle);
  setWindowTitle(u"About "_s + title);
  SetCaption(*lblVersion, VersionText(ProgramMajor, ProgramMinor, ProgramRevision));
  SetCaption(*lblTitle, title);
  SetCaption(*lblDescription, QString::fromUtf8(ProgramDescription));
}

void frmAbout::cmdOK_Click() { accept(); }

void frmAbout::cmdSysInfo_Click() { StartSysInfo(); }

void frmAbout::StartSysInfo() {
  const std::string program = SysInfoProgram(GetKeyValue, mFiles);
  if (program.empty() || !StartProgram(program))
    MsgBox(this, u"System Information Is Unavailable At This Time"_s, MsgIcon::None,
           QString::fromUtf8(ProgramTitle));
}

}  // namespace brackwell
