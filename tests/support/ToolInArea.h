#pragma once

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTest>

#include "shell/frmImages.h"
#include "support/FailingFileSystem.h"
#include "support/IsolatedSettings.h"
#include "support/MessageBoxes.h"
#include "support/TempTree.h"

namespace brackwell {

using namespace Qt::StringLiterals;

/// One tool in the area of a main window that there is nothing else of, and a temporary tree for it to work
/// on.
template <typename Tool>
class ToolInArea {
 public:
  template <typename Control>
  Control& Get(const char* name) {
    auto* control = Form->template findChild<Control*>(QString::fromLatin1(name));
    if (!control) qFatal("no control %s", name);
    return *control;
  }

  void Click(const char* button) { QTest::mouseClick(&Get<QAbstractButton>(button), Qt::LeftButton); }

  TempTree Tree;
  FailingFileSystem Files;
  frmImages Images;
  /// What the tool has done to the buttons of the toolbar: "Print+".
  QStringList Enabled;
  Services Lent{.Files = Files, .Images = Images, .tlbMain_ENABLE = [this](const QString& key, bool on) {
                  Enabled << key + (on ? u"+"_s : u"-"_s);
                }};
  MessageBoxes Boxes;
  QMdiArea Area;
  QPointer<Tool> Form;
  QPointer<QMdiSubWindow> Frame;

 protected:
  /// The call `failAt` of the file system fails, none if it is 0.
  explicit ToolInArea(int failAt, FileError error = FileError::PermissionDenied) : Files(failAt, error) {}

  /// In an area of that size, with its frame's if one is given.
  void Show(Tool* form, QSize area, QSize frame = {}) {
    Area.resize(area);
    Area.show();
    Form = form;
    Frame = Area.addSubWindow(form);
    if (frame.isValid()) Frame->resize(frame);
    Frame->show();
  }

  /// Ends the test where the model breaks the rules of models.
  void Watch(QAbstractItemModel& model) {
    new QAbstractItemModelTester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal, Form);
  }
};

}  // namespace brackwell
