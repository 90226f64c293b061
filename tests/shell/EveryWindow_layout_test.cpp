#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QTemporaryFile>
#include <QTest>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "controls/ElidedLabel.h"
#include "support/EveryWindow.h"
#include "support/IsolatedSettings.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// A usual screen in the place of the offscreen platform's own, which is smaller than any that is sold. Its
/// size is in units of QT_SCALE_FACTOR, by which the test is run twice as large as well.
class UsualScreen {
 public:
  UsualScreen() {
    const int scale = std::max(qEnvironmentVariableIntValue("QT_SCALE_FACTOR"), 1);
    const QByteArray description =
        R"({"screens": [{"name": "usual", "x": 0, "y": 0, "width": %1, "height": %2,)"
        R"( "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
    if (qgetenv("QT_QPA_PLATFORM") != "offscreen" || !mFile.open()) return;
    mFile.write(QString::fromLatin1(description).arg(1920 * scale).arg(1080 * scale).toLatin1());
    mFile.flush();
    qputenv("QT_QPA_PLATFORM",
            "offscreen:configfile=" + QDir().relativeFilePath(mFile.fileName()).toLocal8Bit());
  }

 private:
  QTemporaryFile mFile{u"screen.XXXXXX"_s};  // a path without a colon, which would end the option
};
const UsualScreen usualScreen;

enum class Size { Start, Smallest, Largest };

void Resize(QWidget& window, Size size) {
  QWidget* frame = qobject_cast<QMdiSubWindow*>(window.parentWidget());
  if (!frame) frame = &window;
  if (size == Size::Smallest) frame->resize(frame->minimumSizeHint().expandedTo(frame->minimumSize()));
  if (size == Size::Largest) frame->showMaximized();
  QTest::qWait(20);
}

QString Plain(const QWidget& control, const QString& caption) {
  QString plain = caption;
  const auto* label = qobject_cast<const QLabel*>(&control);
  return label && !label->buddy() ? plain : plain.remove(u'&');
}

QSize TextSize(const QWidget& control, const QString& caption) {
  return control.fontMetrics().size(0, Plain(control, caption));
}

/// Where the style writes a button's caption.
QSize CaptionRoom(const QAbstractButton& button, QStyle::SubElement element) {
  QStyleOptionButton option;
  option.initFrom(&button);
  option.text = button.text();
  return button.style()->subElementRect(element, &option, &button).size();
}

bool Fits(QSize what, QSize room) { return what.width() <= room.width() && what.height() <= room.height(); }

bool FitsLabel(const QLabel& label) {
  const QSize room = label.contentsRect().size() - QSize(label.margin(), label.margin()) * 2;
  if (!label.wordWrap()) return Fits(TextSize(label, label.text()), room);
  const QRect text = label.fontMetrics().boundingRect(QRect(0, 0, room.width(), 0), Qt::TextWordWrap,
                                                      Plain(label, label.text()));
  return Fits(text.size(), room);
}

bool FitsButton(const QAbstractButton& button) {
  const QSize text = TextSize(button, button.text());
  if (qobject_cast<const QCheckBox*>(&button))
    return Fits(text, CaptionRoom(button, QStyle::SE_CheckBoxContents));
  if (qobject_cast<const QRadioButton*>(&button))
    return Fits(text, CaptionRoom(button, QStyle::SE_RadioButtonContents));
  if (qobject_cast<const QPushButton*>(&button) && button.icon().isNull())
    return Fits(text, CaptionRoom(button, QStyle::SE_PushButtonContents));
  return button.text().isEmpty() ? Fits(button.iconSize(), button.size())
                                 : Fits(button.sizeHint(), button.size());
}

bool FitsTabs(const QTabBar& tabs) {
  for (int tab = 0; tab < tabs.count(); ++tab)
    if (!tabs.rect().contains(tabs.tabRect(tab)) ||
        !Fits(TextSize(tabs, tabs.tabText(tab)), tabs.tabRect(tab).size()))
      return false;
  return true;
}

/// Neighbouring columns with one heading share the room for it.
bool FitsHeader(const QHeaderView& header) {
  const auto text = [&](int section) {
    return header.model()->headerData(section, Qt::Horizontal).toString();
  };
  for (int first = 0, next = 0; first < header.count(); first = next) {
    int room = 0;
    for (; next < header.count() && text(next) == text(first); ++next) room += header.sectionSize(next);
    if (TextSize(header, text(first)).width() > room) return false;
  }
  return true;
}

bool FitsRows(const QAbstractItemView& view) {
  const QModelIndex first = view.model() ? view.model()->index(0, 0, view.rootIndex()) : QModelIndex();
  return !first.isValid() || view.visualRect(first).height() >= view.fontMetrics().height();
}

bool IsCut(const QWidget& control, Size size) {
  if (qobject_cast<const ElidedLabel*>(&control)) return false;  // it says what it leaves out
  if (const auto* label = qobject_cast<const QLabel*>(&control)) return !FitsLabel(*label);
  if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) return !FitsButton(*button);
  if (const auto* frame = qobject_cast<const QGroupBox*>(&control))
    return TextSize(*frame, frame->title()).width() > frame->width();
  if (const auto* tabs = qobject_cast<const QTabBar*>(&control)) return !FitsTabs(*tabs);
  if (const auto* box = qobject_cast<const QLineEdit*>(&control))
    return box->height() < box->minimumSizeHint().height();
  if (const auto* header = qobject_cast<const QHeaderView*>(&control))
    return size != Size::Smallest && header->orientation() == Qt::Horizontal && !FitsHeader(*header);
  if (const auto* view = qobject_cast<const QAbstractItemView*>(&control)) return !FitsRows(*view);
  return false;
}

/// What lies in a place that scrolls, or over others on purpose.
bool IsFree(const QWidget& control) {
  return control.isWindow() || qobject_cast<const QMdiSubWindow*>(&control) ||
         control.objectName().startsWith(u"qt_") || control.parentWidget()->objectName().startsWith(u"qt_") ||
         control.inherits("QSizeGrip");
}

/// What a window can take of the screen, or of the main window where it lies in there.
QSize Room(const QWidget& window) {
  const auto* frame = qobject_cast<const QMdiSubWindow*>(window.parentWidget());
  return frame ? frame->parentWidget()->size() - (frame->size() - window.size())
               : window.screen()->availableSize() * 2 / 3;  // the toolkit makes no dialog larger
}

/// Lists of files and fonts may be long, pages are.
bool IsLong(const QAbstractScrollArea& area) {
  constexpr int AFewRows = 16;
  const auto* view = qobject_cast<const QAbstractItemView*>(&area);
  return view ? view->model()->rowCount(view->rootIndex()) > AFewRows : area.inherits("QTextEdit");
}

/// Though the window could have been made larger.
bool ScrollsInVain(const QAbstractScrollArea& area, const QWidget& window) {
  const QSize room = Room(window);
  return (area.horizontalScrollBar()->isVisible() && window.width() < room.width()) ||
         (area.verticalScrollBar()->isVisible() && !IsLong(area) && window.height() < room.height());
}

QStringList Faults(const QWidget& window, Size size) {
  QStringList faults;
  QList<QWidget*> controls;
  for (QWidget* control : window.findChildren<QWidget*>())
    if (control->isVisibleTo(&window)) controls.append(control);
  for (const QWidget* control : controls) {
    if (IsCut(*control, size)) faults << PathOf(*control) + u": cut"_s;
    if (const auto* area = qobject_cast<const QAbstractScrollArea*>(control))
      if (size != Size::Smallest && ScrollsInVain(*area, window))
        faults << PathOf(*control) + u": has to be scrolled"_s;
    if (IsFree(*control)) continue;
    if (!control->parentWidget()->rect().contains(control->geometry()))
      faults << PathOf(*control) + u": outside"_s;
    for (const QWidget* other : controls)
      if (other > control && other->parentWidget() == control->parentWidget() && !IsFree(*other) &&
          other->geometry().intersects(control->geometry()))
        faults << PathOf(*control) + u": over "_s + other->objectName();
  }
  return faults;
}

/// Laying out takes its time on a busy machine.
QStringList LastingFaults(const QWidget& window, Size size) {
  QStringList faults;
  const auto isGood = [&] { return (faults = Faults(window, size)).isEmpty(); };
  if (QTest::qWaitFor(isGood, 2000)) return {};
  return faults;
}

/// For somebody who wants to see: a picture of each, in the folder that the variable names.
void KeepPicture(QWidget& window, const QString& name) {
  const QString folder = qEnvironmentVariable("BRACKWELL_PICTURES");
  if (folder.isEmpty()) return;
  QString file = QString::fromLatin1(QTest::currentDataTag()) + u' ' + name;
  file.replace(u' ', u'-').remove(u',').remove(u'\'');
  window.window()->grab().save(u"%1/%2.png"_s.arg(folder, file));
}

/// How much two colours differ in brightness, from 1 to 21. Texts take 4.5 to be read easily.
double Contrast(const QColor& one, const QColor& other) {
  const auto light = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  const auto brightness = [&](const QColor& colour) {
    return 0.2126 * light(colour.redF()) + 0.7152 * light(colour.greenF()) + 0.0722 * light(colour.blueF());
  };
  const auto [darker, lighter] = std::minmax({brightness(one), brightness(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

QStringList PaleTexts(const QWidget& window) {
  QStringList pale;
  for (const QWidget* control : window.findChildren<QWidget*>()) {
    if (!control->isVisibleTo(&window) || !control->isEnabled()) continue;
    const QPalette& colours = control->palette();
    if (Contrast(colours.color(control->foregroundRole()), colours.color(control->backgroundRole())) < 4.5 &&
        !qobject_cast<const QMdiArea*>(control))
      pale << PathOf(*control);
  }
  return pale;
}

}  // namespace

class EveryWindowLayoutTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void NothingIsCutOrCovered_data();
  void NothingIsCutOrCovered();
  void AFontThatGrowsMeanwhile_data() { AddEveryWindow(); }
  void AFontThatGrowsMeanwhile();
  void TextsStandOutInTheDark_data() { AddEveryWindow(); }
  void TextsStandOutInTheDark();
};

void EveryWindowLayoutTest::NothingIsCutOrCovered_data() {
  QTest::addColumn<int>("window");
  QTest::addColumn<int>("points");
  int window = 0;
  for (const WindowCase& each : EveryWindow()) {
    for (const int points : {QApplication::font().pointSize(), 16})
      QTest::addRow("%s, %d points", each.Name, points) << window << points;
    ++window;
  }
}

void EveryWindowLayoutTest::NothingIsCutOrCovered() {
  QFETCH(int, window);
  QFETCH(int, points);
  const QFont usual = QApplication::font();
  QFont font = usual;
  font.setPointSize(points);
  QApplication::setFont(font);
  QStringList faults;
  ShowWindow(window, [&](QWidget& shown) {
    for (const auto& [size, name] :
         {std::pair(Size::Start, u"start"_s), std::pair(Size::Smallest, u"smallest"_s),
          std::pair(Size::Largest, u"largest"_s)}) {
      Resize(shown, size);
      for (const QString& fault : LastingFaults(shown, size)) faults << name + u": "_s + fault;
      KeepPicture(shown, name);
    }
  });
  QApplication::setFont(usual);
  if (!faults.isEmpty()) qWarning().noquote() << u'\n' + faults.join(u'\n');
  QVERIFY(faults.isEmpty());
}

void EveryWindowLayoutTest::AFontThatGrowsMeanwhile() {
  QFETCH(int, window);
  const QFont usual = QApplication::font();
  QFont large = usual;
  large.setPointSize(16);
  QStringList faults;
  ShowWindow(window, [&](QWidget& shown) {
    QApplication::setFont(large);
    Resize(shown, Size::Largest);
    faults = LastingFaults(shown, Size::Largest);
    KeepPicture(shown, u"grown"_s);
  });
  QApplication::setFont(usual);
  QCOMPARE(faults.join(u'\n'), QString());
}

void EveryWindowLayoutTest::TextsStandOutInTheDark() {
  QFETCH(int, window);
  const QPalette usual = QApplication::palette();
  QApplication::setPalette(QPalette(QColor(45, 45, 48)));
  QStringList pale;
  ShowWindow(window, [&](QWidget& shown) {
    KeepPicture(shown, u"dark"_s);
    pale = PaleTexts(shown);
  });
  QApplication::setPalette(usual);
  QCOMPARE(pale.join(u'\n'), QString());
}

}  // namespace brackwell

QTEST_MAIN(brackwell::EveryWindowLayoutTest)
#include "EveryWindow_layout_test.moc"
