#include <QAccessible>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <algorithm>

#include "common/ToolWindow.h"
#include "support/EveryWindow.h"
#include "support/IsolatedSettings.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

constexpr QAccessible::Role NamedRoles[] = {
    QAccessible::Window,         QAccessible::Dialog,      QAccessible::AlertMessage,
    QAccessible::ToolBar,        QAccessible::StatusBar,   QAccessible::MenuBar,
    QAccessible::MenuItem,       QAccessible::Button,      QAccessible::ButtonMenu,
    QAccessible::ButtonDropDown, QAccessible::CheckBox,    QAccessible::RadioButton,
    QAccessible::EditableText,   QAccessible::ComboBox,    QAccessible::List,
    QAccessible::Tree,           QAccessible::Table,       QAccessible::ColumnHeader,
    QAccessible::Grouping,       QAccessible::PageTabList, QAccessible::PageTab,
    QAccessible::Graphic,
};

/// Roles that tell nobody what the keyboard works on.
constexpr QAccessible::Role VagueRoles[] = {QAccessible::NoRole, QAccessible::Client, QAccessible::Pane,
                                            QAccessible::Border, QAccessible::Whitespace};

bool Contains(const auto& roles, QAccessible::Role role) {
  return std::ranges::find(roles, role) != std::end(roles);
}

/// What the toolkit's own dialogs put around their buttons and beside their texts.
bool IsOfToolkit(const QWidget* control) {
  return qobject_cast<const QDialogButtonBox*>(control) ||
         (qobject_cast<const QLabel*>(control) && qobject_cast<const QMessageBox*>(control->parentWidget()));
}

/// The toolkit lends a control without a name that of its group.
bool IsLent(const QWidget* control, const QString& name) {
  const auto* group = control ? qobject_cast<const QGroupBox*>(control->parentWidget()) : nullptr;
  return group && name == QString(group->title()).remove(u'&');
}

bool IsItem(QAccessible::Role role) {
  return role == QAccessible::Cell || role == QAccessible::ListItem || role == QAccessible::TreeItem;
}

/// Goes through what is seen of a window and notes what a screen reader could not tell.
class Reader {
 public:
  void Read(QAccessibleInterface* control, const QString& path) {
    if (!control || control->state().invisible || IsItem(control->role())) return;
    ++Count;
    const auto* widget = qobject_cast<QWidget*>(control->object());
    const QString place = path + u'/' + (widget ? PathOf(*widget).section(u'/', -1) : QString());
    Check(*control, widget, place);
    for (int i = 0; i < control->childCount(); ++i) Read(control->child(i), place);
  }

  int Count = 0;
  QStringList Problems;

 private:
  void Check(QAccessibleInterface& control, const QWidget* widget, const QString& place) {
    const bool hasFocus = control.state().focusable && !(widget && widget->focusProxy());
    const QString name = control.text(QAccessible::Name);
    const bool isControl = hasFocus || Contains(NamedRoles, control.role());
    const bool needsName = (isControl || qobject_cast<const ToolWindow*>(widget)) && !IsOfToolkit(widget);
    if (needsName && (name.trimmed().isEmpty() || IsLent(widget, name))) Problems << place + u": no name"_s;
    if (name.contains(u'&')) Problems << place + u": the name shows an accelerator"_s;
    if (control.role() == QAccessible::NoRole || (hasFocus && Contains(VagueRoles, control.role())))
      Problems << place + u": no role"_s;
    if (const auto* label = qobject_cast<const QLabel*>(widget)) CheckLabel(control, *label, place);
  }

  /// A name of its own must not take the place of what a label says.
  void CheckLabel(QAccessibleInterface& control, const QLabel& label, const QString& place) {
    QString said = label.text();
    if (label.buddy()) said.remove(u'&');
    const QString told = control.text(QAccessible::Name) + u'\n' + control.text(QAccessible::Description);
    if (!told.contains(said)) Problems << place + u": its text is not told: "_s + said;
  }
};

}  // namespace

class EveryWindowNamesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void EveryControlHasANameAndARole_data() { AddEveryWindow(); }
  void EveryControlHasANameAndARole();
};

void EveryWindowNamesTest::EveryControlHasANameAndARole() {
  QFETCH(int, window);
  Reader reader;
  ShowWindow(window,
             [&](QWidget& shown) { reader.Read(QAccessible::queryAccessibleInterface(shown.window()), {}); });
  QCOMPARE(reader.Problems.join(u'\n'), QString());
  QVERIFY(reader.Count > 3);
}

}  // namespace brackwell

QTEST_MAIN(brackwell::EveryWindowNamesTest)
#include "EveryWindow_names_test.moc"
