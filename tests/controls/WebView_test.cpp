#include "controls/WebView.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <csignal>

#include "platform/Sandbox.h"
#include "support/IsolatedSettings.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// A server that nobody shall call.
class Listener {
 public:
  Listener() : mSocket(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(mSocket, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(mSocket, 5) != 0 ||
        getsockname(mSocket, reinterpret_cast<sockaddr*>(&address), &size) != 0)
      qFatal("no server");
    mPort = ntohs(address.sin_port);
  }
  ~Listener() { close(mSocket); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  QString Url() const { return u"http://127.0.0.1:%1/"_s.arg(mPort); }
  bool WasCalled() const {
    pollfd waiting{.fd = mSocket, .events = POLLIN, .revents = 0};
    return poll(&waiting, 1, 0) == 1;
  }

 private:
  int mSocket;
  int mPort = 0;
};

struct Process {
  pid_t Id;
  pid_t Parent;
  char State;
  int Threads;
  QByteArray CommandLine;
};

QByteArray ReadAll(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// All processes below this one.
QList<Process> Descendants() {
  QList<Process> all, found;
  for (const QString& id : QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs)) {
    const QByteArray status = ReadAll(u"/proc/"_s + id + u"/stat"_s);
    const QList<QByteArray> fields = status.mid(status.lastIndexOf(')') + 2).split(' ');
    if (fields.size() > 17)
      all << Process{id.toInt(), fields[1].toInt(), fields[0][0], fields[17].toInt(),
                     ReadAll(u"/proc/"_s + id + u"/cmdline"_s)};
  }
  QList<pid_t> parents{getpid()};
  for (qsizetype i = 0; i < parents.size(); ++i)
    for (const Process& process : all)
      if (process.Parent == parents[i]) {
        parents << process.Id;
        found << process;
      }
  return found;
}

/// Those that show pages: those that only start others have one thread.
QList<pid_t> Renderers() {
  QList<pid_t> ids;
  for (const Process& process : Descendants())
    if (process.Threads > 1 && process.CommandLine.contains("QtWebEngineProcess")) ids << process.Id;
  return ids;
}

int Zombies() {
  int count = 0;
  for (const Process& process : Descendants()) count += process.State == 'Z';
  return count;
}

}  // namespace

class WebViewTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { QCoreApplication::setLibraryPaths({QStringLiteral(BRACKWELL_PROGRAM_FOLDER)}); }

  // --- as text -------------------------------------------------------------------------

  void WithoutABrowserThePageIsShownAsText() {
    WithoutEngine();
    WebView view;
    QVERIFY(!view.HasEngine());
    QCOMPARE(view.LocationURL(), QUrl());
    view.Navigate(QUrl(u"about:blank"_s));
    QCOMPARE(Text(view), QString());
    const QUrl page = Page(
        u"<p><span style=\"font-family:Made Sans;font-size=12pt;font-weight:bold;\">caf&#233;"
        "</span></p>"_s);
    view.Navigate(page);
    QCOMPARE(view.LocationURL(), page);
    QCOMPARE(Text(view), u"caf\u00e9"_s);
    QVERIFY(!Note(view).isVisibleTo(&view));
    const QTextCharFormat format =
        view.findChild<QTextBrowser*>()->document()->begin().begin().fragment().charFormat();
    QCOMPARE(format.fontFamilies().toStringList(), QStringList{u"Made Sans"_s});
  }

  void AsTextNothingIsFetchedAndNoLinkFollowed() {
    WithoutEngine();
    const Listener server;
    WebView view;
    view.resize(400, 300);
    view.show();
    const QUrl page = Page(u"<a href=\"%1\">link</a><img src=\"%2\"><img src=\"%3\">"_s.arg(
        Page(u"other"_s, u"other.htm"_s).toString(), Red().toString(), server.Url()));
    view.Navigate(page);
    auto* text = view.findChild<QTextBrowser*>();
    QTest::mouseClick(text->viewport(), Qt::LeftButton, {}, text->cursorRect().center() + QPoint(8, 0));
    QTest::qWait(50);
    QVERIFY(!HasRed(view));
    QVERIFY(Text(view).startsWith(u"link"_s));
    QVERIFY(!server.WasCalled());
    QCOMPARE(view.LocationURL(), page);
  }

  void APageThatIsGoneIsEmpty() {
    WithoutEngine();
    WebView view;
    view.Navigate(QUrl::fromLocalFile(mFolder.filePath(u"gone.htm"_s)));
    QCOMPARE(Text(view), QString());
  }

  // --- in the browser ------------------------------------------------------------------

  void TheBrowserShowsThePage() {
    if (!HasBrowser()) QSKIP("no browser here");
    WebView view;
    Show(view, Page(u"<title>one</title><body style=\"background:#ff0000\">text"_s), u"one"_s);
    QVERIFY(view.HasEngine());
    QTRY_VERIFY(HasRed(view));
    Show(view, Page(u"<title>two</title><body>text"_s), u"two"_s);
    QTRY_VERIFY(!HasRed(view));
    QVERIFY(!Note(view).isVisibleTo(&view));
    QVERIFY(!qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"));
  }

  void ThePageIsReadAgainWhereItHasChanged() {
    if (!HasBrowser()) QSKIP("no browser here");
    WebView view;
    Show(view, Page(u"<title>first</title>"_s), u"first"_s);
    Show(view, Page(u"<title>second</title>"_s), u"second"_s);
  }

  void NoScriptRuns() {
    if (!HasBrowser()) QSKIP("no browser here");
    WebView view;
    Show(view,
         Page(u"<title>plain</title><img src=x onerror=\"document.title='hostile'\">"
              "<body onload=\"document.title='hostile'\"><script>document.title='hostile'</script>"_s),
         u"plain"_s);
    QTest::qWait(300);
    QCOMPARE(Title(view), u"plain"_s);
  }

  void NothingIsFetched() {
    if (!HasBrowser()) QSKIP("no browser here");
    const Listener server;
    WebView view;
    const QString red = Red().toString();
    Show(view,
         Page(u"<title>alone</title><link rel=stylesheet href=\"%2\"><link rel=preconnect href=\"%2\">"
              "<style>@font-face{font-family:F;src:url(%2)}</style><p style=\"font-family:F\">x</p>"
              "<img src=\"%1\"><img src=\"%2\"><iframe src=\"%1\"></iframe><iframe src=\"%2\"></iframe>"
              "<object data=\"%1\"></object><embed src=\"%1\"><video src=\"%2\" autoplay></video>"
              "<div style=\"width:99px;height:99px;background:url(%1)\"></div>"_s.arg(red, server.Url())),
         u"alone"_s);
    QTest::qWait(500);
    QVERIFY(!HasRed(view));
    QVERIFY(!server.WasCalled());
  }

  void ThePageLeadsNowhere() {
    if (!HasBrowser()) QSKIP("no browser here");
    const Listener server;
    WebView view;
    const QString other = Page(u"<title>other</title>"_s, u"other.htm"_s).toString();
    const QUrl page = Page(
        u"<title>here</title><meta http-equiv=refresh content=\"0;url=%1\">"
        "<a href=\"%1\" style=\"display:block;height:100px\">link</a>"
        "<form action=\"%2\"><input type=submit style=\"height:100px;width:300px\"></form>"_s.arg(
            other, server.Url()));
    Show(view, page, u"here"_s);
    QTest::qWait(300);
    for (const int y : {50, 200}) {
      QTest::mouseClick(view.window()->windowHandle(), Qt::LeftButton, {}, QPoint(100, y));
      QTest::qWait(300);
      QCOMPARE(Title(view), u"here"_s);
    }
    QVERIFY(!server.WasCalled());
    QCOMPARE(view.LocationURL(), page);
  }

  void ABrowserThatDiesIsTold() {
    if (!HasBrowser()) QSKIP("no browser here");
    WebView view;
    Show(view, Page(u"<title>alive</title>the text"_s), u"alive"_s);
    const QList<pid_t> renderers = Renderers();
    QVERIFY(!renderers.isEmpty());
    for (const pid_t id : renderers) kill(id, SIGKILL);
    QTRY_VERIFY(!view.HasEngine());
    QVERIFY(Note(view).isVisibleTo(&view));
    QCOMPARE(Text(view), u"the text"_s);
    view.Navigate(Page(u"more"_s));
    QCOMPARE(Text(view), u"more"_s);
    WebView next;
    Show(next, Page(u"<title>again</title>"_s), u"again"_s);
  }

  void ABrowserWithoutItsFilesIsTold() {
    if (!HasBrowser()) QSKIP("no browser here");
    qputenv("QTWEBENGINEPROCESS_PATH", "/nonexistent");
    WebView view;
    qunsetenv("QTWEBENGINEPROCESS_PATH");
    QVERIFY(!view.HasEngine());
    QVERIFY(Note(view).isVisibleTo(&view));
    view.Navigate(Page(u"text"_s));
    QCOMPARE(Text(view), u"text"_s);
  }

  void AClosedViewLeavesNoProcessAndNoZombie() {
    if (!HasBrowser()) QSKIP("no browser here");
    {
      WebView view;
      Show(view, Page(u"<title>short</title>"_s), u"short"_s);
      QVERIFY(!Renderers().isEmpty());
    }
    QTRY_VERIFY(Renderers().isEmpty());
    QTRY_COMPARE(Zombies(), 0);
  }

  void ClosedWhileItLoads() {
    if (!HasBrowser()) QSKIP("no browser here");
    for (int i = 0; i < 3; ++i) {
      WebView view;
      view.Navigate(Page(u"<title>never seen</title>"_s));
      QTest::qWait(i * 10);
    }
    QTRY_VERIFY(Renderers().isEmpty());
  }

 private:
  static bool HasBrowser() {
    return QFileInfo::exists(QStringLiteral(BRACKWELL_PROGRAM_FOLDER "/brackwell_webview.so")) &&
           CanShareMemory();
  }
  static void WithoutEngine() { QCoreApplication::setLibraryPaths({}); }

  QUrl Page(const QString& html, const QString& name = u"page.htm"_s) const {
    QFile file(mFolder.filePath(name));
    if (!file.open(QIODevice::WriteOnly)) qFatal("no page");
    file.write("<html>" + html.toUtf8());
    return QUrl::fromLocalFile(file.fileName());
  }
  QUrl Red() const {
    QImage red(100, 100, QImage::Format_RGB32);
    red.fill(Qt::red);
    red.save(mFolder.filePath(u"red.png"_s));
    return QUrl::fromLocalFile(mFolder.filePath(u"red.png"_s));
  }

  static QLabel& Note(WebView& view) { return *view.findChild<QLabel*>(u"lblNote"_s); }
  static QString Text(WebView& view) { return view.findChild<QTextBrowser*>(u"txtPage"_s)->toPlainText(); }

  static QString Title(const WebView& view) {
    for (const QWidget* child : view.findChildren<QWidget*>())
      if (child->inherits("QWebEngineView")) return child->property("title").toString();
    return {};
  }
  /// Shows the page and waits until it is there.
  static void Show(WebView& view, const QUrl& page, const QString& title) {
    view.resize(400, 300);
    view.show();
    view.Navigate(page);
    QTRY_COMPARE_WITH_TIMEOUT(Title(view), title, 30000);
  }

  static bool HasRed(WebView& view) {
    const QImage image = view.grab().toImage();
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x)
        if (image.pixel(x, y) == qRgb(255, 0, 0)) return true;
    return false;
  }

  QTemporaryDir mFolder;
};

}  // namespace brackwell

QTEST_MAIN(brackwell::WebViewTest)
#include "WebView_test.moc"
