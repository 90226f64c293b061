#pragma once

#include <QAbstractItemModelTester>
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include "controls/ListView.h"
#include "controls/WebView.h"
#include "fonts/FontList.h"
#include "fonts/frmFontDisplay.h"
#include "shell/frmImages.h"
#include "support/FailingFileSystem.h"
#include "support/IsolatedSettings.h"
#include "support/MadeFonts.h"
#include "support/MessageBoxes.h"

namespace brackwell {

using namespace Qt::StringLiterals;

/// A font sampler in a main window's area, with the fonts that fontconfig knows when it is made.
class FontsWindow {
 public:
  explicit FontsWindow(int failAt = 0) : Files(failAt, FileError::DiskFull) {
    Area.resize(1000, 800);
    Area.show();
    Form = new frmFontDisplay(Lent);
    Frame = Area.addSubWindow(Form);
    Frame->show();
    mTester = std::make_unique<QAbstractItemModelTester>(
        &Form->Fonts(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  }

  template <typename Control>
  Control& Get(const char* name) {
    auto* control = Form->findChild<Control*>(QString::fromLatin1(name));
    if (!control) qFatal("no control %s", name);
    return *control;
  }

  void Click(const char* button) { QTest::mouseClick(&Get<QAbstractButton>(button), Qt::LeftButton); }
  void Choose(const char* preset) { Get<QAction>(preset).trigger(); }
  void Type(const QString& text) { Get<QPlainTextEdit>("txtText").setPlainText(text); }
  void SetSize(const QString& size) { Get<QLineEdit>("txtFontSize").setText(size); }
  void Tick(int row, bool on) {
    FontList& list = Form->Fonts();
    list.setData(list.index(row, 0), on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
  }

  /// The items of the list, "+" before those that are checked.
  QStringList Items() {
    QStringList items;
    const QAbstractItemModel& list = *Get<ListView>("lvwFonts").model();
    for (int row = 0; row < list.rowCount(); ++row) {
      const QModelIndex item = list.index(row, 0);
      items << (item.data(Qt::CheckStateRole).toInt() == Qt::Checked ? u"+"_s : u"-"_s) +
                   item.data().toString();
    }
    return items;
  }

  FailingFileSystem Files;
  frmImages Images;
  QStringList Enabled;
  Services Lent{.Files = Files, .Images = Images, .tlbMain_ENABLE = [this](const QString& key, bool on) {
                  Enabled << key + (on ? u"+"_s : u"-"_s);
                }};
  MessageBoxes Boxes;
  QMdiArea Area;
  QPointer<frmFontDisplay> Form;
  QPointer<QMdiSubWindow> Frame;

 private:
  std::unique_ptr<QAbstractItemModelTester> mTester;
};

}  // namespace brackwell
