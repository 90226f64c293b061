#include "shell/frmOptions.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "common/FormHelpers.h"
#include "common/MsgBox.h"
#include "common/Program.h"
#include "controls/LineEdit.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

const QString General = u"General"_s;
const QString Compare = u"Compare"_s;
const QString Replace = u"Replace"_s;
const QString DirectoryDisplay = u"DirectoryDisplay"_s;

constexpr int Tab = 0;
constexpr int Other = 1;
constexpr const char* TagProperty = "Tag";

/// With a caption, which is its accessible name as well.
template <typename Control>
Control* NewControl(const QString& name, const QString& caption, QWidget* parent) {
  return Named(new Control(caption, parent), name, QString(caption).remove(u'&'));
}

QCheckBox* NewCheckBox(const QString& name, const QString& caption, bool checked, QWidget* parent) {
  auto* box = NewControl<QCheckBox>(name, caption, parent);
  box->setChecked(checked);
  return box;
}

QVBoxLayout* AddPage(QTabWidget& pages, const QString& name, const QString& caption) {
  auto* page = Named(new QWidget(&pages), name, QString(caption).remove(u'&'));
  pages.addTab(page, caption);
  return new QVBoxLayout(page);
}

/// A button without a tag has none that could be stored, not even an empty one.
bool HasTag(const QRadioButton& option, const QString& text) {
  const QVariant tag = option.property(TagProperty);
  return tag.isValid() && tag.toString() == text;
}

}  // namespace

frmOptions::frmOptions(QWidget* parent) : QDialog(parent) {
  setObjectName(u"frmOptions"_s);
  setWindowTitle(u"Options"_s);

  sstOptions = Named(new QTabWidget(this), u"sstOptions"_s, u"Options"_s);
  sstOptions->setUsesScrollButtons(false);  // there is room for all four
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(sstOptions);
  BuildGeneralPage();
  BuildComparePage();
  BuildReplacePage();
  BuildDirDisplayPage();
  BuildButtons();
  ConnectHandlers();
  Form_Load();
}

void frmOptions::BuildGeneralPage() {
  QVBoxLayout* page = AddPage(*sstOptions, u"pagGeneral"_s, u"&General"_s);
  auto* fraWindows = NewControl<QGroupBox>(u"fraWindows"_s, u"Windows"_s, this);
  chkAppMax = NewCheckBox(u"chkAppMax"_s, u"Maximize main window on application start"_s, false, fraWindows);
  chkChildMax = NewCheckBox(u"chkChildMax"_s, u"Maximize child windows when opened"_s, false, fraWindows);

  auto* frame = new QVBoxLayout(fraWindows);
  frame->addWidget(chkAppMax);
  frame->addWidget(chkChildMax);
  page->addWidget(fraWindows);
  page->addStretch();
}

void frmOptions::BuildComparePage() {
  QVBoxLayout* page = AddPage(*sstOptions, u"pagCompare"_s, u"Com&pare"_s);
  chkCompareSaveFolders =
      NewCheckBox(u"chkCompareSaveFolders"_s, u"Save folders that are selected"_s, true, this);
  chkCompareShowFullPath =
      NewCheckBox(u"chkCompareShowFullPath"_s, u"Show full path for files and folders"_s, false, this);
  page->addWidget(chkCompareSaveFolders);
  page->addWidget(chkCompareShowFullPath);
  page->addStretch();
}

void frmOptions::BuildReplacePage() {
  QVBoxLayout* page = AddPage(*sstOptions, u"pagReplace"_s, u"&Replace"_s);
  chkReplaceSaveForm =
      NewCheckBox(u"chkReplaceSaveForm"_s, u"Save form values that are entered"_s, true, this);
  page->addWidget(chkReplaceSaveForm);
  page->addStretch();
}

void frmOptions::BuildDirDisplayPage() {
  QVBoxLayout* page = AddPage(*sstOptions, u"pagDirDisplay"_s, u"&Directory Display"_s);
  mDirDisplayPage = page->parentWidget();
  page->addWidget(BuildXmlTypeFrame());
  chkDirDisplaySave = NewCheckBox(u"chkDirDisplaySave"_s, u"Save options when form is closed"_s, true, this);
  page->addWidget(chkDirDisplaySave);
  page->addWidget(BuildTextDelimFrame());
  page->addStretch();
}

QGroupBox* frmOptions::BuildXmlTypeFrame() {
  auto* frame =
      NewControl<QGroupBox>(u"fraDirDisplayXmlType"_s, u"When displaying XML, create properties as"_s, this);
  optDirDisplayXmlType[1] = NewControl<QRadioButton>(u"optDirDisplayXmlType(1)"_s, u"Attributes"_s, frame);
  optDirDisplayXmlType[0] = NewControl<QRadioButton>(u"optDirDisplayXmlType(0)"_s, u"Elements"_s, frame);
  optDirDisplayXmlType[0]->setChecked(true);

  auto* layout = new QVBoxLayout(frame);
  layout->addWidget(optDirDisplayXmlType[1]);
  layout->addWidget(optDirDisplayXmlType[0]);
  return frame;
}

QGroupBox* frmOptions::BuildTextDelimFrame() {
  auto* frame =
      NewControl<QGroupBox>(u"fraDirDisplayTextDelim"_s, u"Separate elements in text output with"_s, this);
  auto& options = optDirDisplayTextDelim;
  options[Tab] = NewControl<QRadioButton>(u"optDirDisplayTextDelim(0)"_s, u"Tab"_s, frame);
  options[Tab]->setProperty(TagProperty, u"CHR-9"_s);
  options[Other] = NewControl<QRadioButton>(u"optDirDisplayTextDelim(1)"_s, u"Other"_s, frame);
  txtDirDisplayTextDelim = Named(new LineEdit(frame), u"txtDirDisplayTextDelim"_s, u"Other"_s);
  txtDirDisplayTextDelim->setEnabled(false);

  auto* layout = new QGridLayout(frame);
  layout->addWidget(options[Tab], 0, 0);
  layout->addWidget(options[Other], 1, 0);
  layout->addWidget(txtDirDisplayTextDelim, 1, 1);
  layout->setColumnStretch(1, 1);
  return frame;
}

void frmOptions::BuildButtons() {
  cmdOK = NewControl<QPushButton>(u"cmdOK"_s, u"&OK"_s, this);
  cmdOK->setDefault(true);
  cmdCancel = NewControl<QPushButton>(u"cmdCancel"_s, u"&Cancel"_s, this);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdOK);
  buttons->addWidget(cmdCancel);
  static_cast<QVBoxLayout*>(layout())->addLayout(buttons);
}

void frmOptions::ConnectHandlers() {
  for (const int index : {Tab, Other}) {
    connect(optDirDisplayTextDelim[index], &QRadioButton::toggled, this, [this, index](bool chosen) {
      if (chosen) optDirDisplayTextDelim_Click(index);
    });
  }
  connect(cmdOK, &QPushButton::clicked, this, &frmOptions::cmdOK_Click);
  connect(cmdCancel, &QPushButton::clicked, this, &frmOptions::cmdCancel_Click);
}

void frmOptions::Form_Load() {
  LoadCheckBox(*chkAppMax, General, u"AppMaximized"_s);
  LoadCheckBox(*chkChildMax, General, u"ChildMaximized"_s);
  LoadCheckBox(*chkCompareShowFullPath, Compare, u"ShowFullPath"_s);
  LoadCheckBox(*chkCompareSaveFolders, Compare, u"SaveFolders"_s);
  LoadCheckBox(*chkReplaceSaveForm, Replace, u"SaveFormValues"_s);
  LoadCheckBox(*chkDirDisplaySave, DirectoryDisplay, u"SaveFormValues"_s);
  LoadXmlType();
  LoadTextDelimiter();
  sstOptions->setCurrentIndex(0);
}

void frmOptions::LoadXmlType() {
  const QString stored = GetSetting(DirectoryDisplay, u"XmlType"_s, u"0"_s);
  for (std::size_t index = 0; index < optDirDisplayXmlType.size(); ++index)
    if (QString::number(index) == stored) optDirDisplayXmlType[index]->setChecked(true);
}

void frmOptions::LoadTextDelimiter() {
  const QString stored = GetSetting(DirectoryDisplay, u"TextDelimiter"_s);
  bool matched = false;
  for (QRadioButton* option : optDirDisplayTextDelim) {
    if (!HasTag(*option, stored)) continue;
    option->setChecked(true);
    matched = true;
  }
  if (matched || stored.isEmpty()) return;
  optDirDisplayTextDelim[Other]->setChecked(true);
  txtDirDisplayTextDelim->setText(stored);
}

void frmOptions::optDirDisplayTextDelim_Click(int index) {
  txtDirDisplayTextDelim->setEnabled(index != Tab);
  if (index == Tab) txtDirDisplayTextDelim->clear();
}

void frmOptions::cmdOK_Click() {
  if (!CheckTextDelimiter()) return;
  if (SaveSettings(ChosenSettings())) return accept();
  TellUnsaved();
}

void frmOptions::TellUnsaved() {
  const QString text =
      u"The settings could not be saved in\n%1\n\n"
      "Please make sure that it can be written and that the disk is not full."_s;
  MsgBox(this, text.arg(SettingsPlace()), MsgIcon::Critical, QString::fromUtf8(ProgramTitle));
}

bool frmOptions::CheckTextDelimiter() {
  if (!optDirDisplayTextDelim[Other]->isChecked() || !txtDirDisplayTextDelim->text().isEmpty()) return true;
  sstOptions->setCurrentWidget(mDirDisplayPage);
  txtDirDisplayTextDelim->setFocus();
  MsgBox(this, u"Please specify the 'other' text delimiter you wish to use."_s, MsgIcon::Exclamation,
         QString::fromUtf8(ProgramTitle));
  return false;
}

std::vector<Setting> frmOptions::ChosenSettings() const {
  std::vector<Setting> settings = {
      {General, u"AppMaximized"_s, CheckValue(*chkAppMax)},
      {General, u"ChildMaximized"_s, CheckValue(*chkChildMax)},
      {Compare, u"ShowFullPath"_s, CheckValue(*chkCompareShowFullPath)},
      {Compare, u"SaveFolders"_s, CheckValue(*chkCompareSaveFolders)},
      {Replace, u"SaveFormValues"_s, CheckValue(*chkReplaceSaveForm)},
      {DirectoryDisplay, u"XmlType"_s, QString::number(GetSelectedOption(optDirDisplayXmlType))},
      {DirectoryDisplay, u"SaveFormValues"_s, CheckValue(*chkDirDisplaySave)},
  };
  // With neither chosen the delimiter stays what it is: an empty one would glue the fields together.
  const int delimiter = GetSelectedOption(optDirDisplayTextDelim);
  if (delimiter == Other)
    settings.push_back({DirectoryDisplay, u"TextDelimiter"_s, txtDirDisplayTextDelim->text()});
  else if (delimiter >= 0)
    settings.push_back({DirectoryDisplay, u"TextDelimiter"_s,
                        optDirDisplayTextDelim[delimiter]->property(TagProperty).toString()});
  return settings;
}

void frmOptions::cmdCancel_Click() { reject(); }

}  // namespace brackwell
