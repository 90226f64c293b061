#include "controls/StatusBar.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>
#include <QVBoxLayout>

#include "support/IsolatedSettings.h"

using namespace Qt::StringLiterals;

namespace brackwell {

class StatusBar_test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void PanelsKeepTheirTexts() {
    StatusBar bar;
    bar.AddPanel(u"FOLDER"_s);
    bar.AddPanel(u"MESSAGE"_s);
    bar.SetPanelText(u"MESSAGE"_s, u"Comparing a"_s);
    QCOMPARE(bar.PanelText(u"FOLDER"_s), QString());
    QCOMPARE(bar.PanelText(u"MESSAGE"_s), u"Comparing a"_s);
  }

  void LongTextDoesNotWidenTheWindow() {
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* bar = new StatusBar;
    bar->AddPanel(u"MESSAGE"_s);
    layout->addWidget(bar);
    window.resize(300, 60);
    window.show();
    bar->SetPanelText(u"MESSAGE"_s, QString(5000, u'x'));
    QTest::qWait(0);
    QCOMPARE(window.width(), 300);
    QVERIFY(window.minimumSizeHint().width() < 300);
  }

  void WidthIsSharedByStretch() {
    StatusBar bar;
    bar.AddPanel(u"A"_s, 1);
    bar.AddPanel(u"B"_s, 3);
    bar.AddFixedPanel(u"C"_s, 80);
    bar.resize(800, 24);
    bar.show();
    const auto width = [&bar](const QString& key) { return bar.findChild<QLabel*>(key)->width(); };
    QCOMPARE(width(u"C"_s), 80);
    QVERIFY(std::abs(width(u"B"_s) - 3 * width(u"A"_s)) <= 3);
  }

  void FixedPanelsStandBesideTheOthers() {
    StatusBar bar;
    for (const QString& key : {u"A"_s, u"B"_s, u"C"_s})
      key == u"A"_s ? bar.AddPanel(key) : bar.AddFixedPanel(key, 80);
    bar.resize(400, 24);
    bar.show();
    const auto place = [&bar](const QString& key) { return bar.findChild<QLabel*>(key)->geometry(); };
    QVERIFY(place(u"A"_s).right() < place(u"B"_s).left());
    QVERIFY(place(u"B"_s).right() < place(u"C"_s).left());
    QVERIFY(place(u"C"_s).right() < 400);
  }

  void TextOfAPanelIsAccessible() {
    StatusBar bar;
    bar.AddPanel(u"MESSAGE"_s);
    bar.SetPanelText(u"MESSAGE"_s, u"Fixing <b>"_s);
    const QAccessibleInterface* panel =
        QAccessible::queryAccessibleInterface(bar.findChild<QLabel*>(u"MESSAGE"_s));
    QCOMPARE(panel->text(QAccessible::Name), u"Fixing <b>"_s);
  }
};

}  // namespace brackwell

QTEST_MAIN(brackwell::StatusBar_test)
#include "StatusBar_test.moc"
