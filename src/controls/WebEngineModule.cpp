#include <QChildEvent>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLoggingCategory>
#include <QPointer>
#include <QQuickWindow>
#include <QUrl>
#include <QVBoxLayout>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>

#include "controls/WebEngine.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// Lets the very page through and nothing that it asks for.
class OnlyThePage : public QWebEngineUrlRequestInterceptor {
 public:
  void interceptRequest(QWebEngineUrlRequestInfo& request) override {
    const bool isPage = request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame;
    request.block(!isPage || request.requestUrl() != Page);
  }

  QUrl Page;
};

/// Goes only where the program sends it.
class Page : public QWebEnginePage {
 public:
  Page(QWebEngineProfile* profile, const OnlyThePage& allowed) : QWebEnginePage(profile), mAllowed(allowed) {}

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override {
    return type == NavigationTypeTyped && isMainFrame && url == mAllowed.Page;
  }
  QStringList chooseFiles(FileSelectionMode /*mode*/, const QStringList& /*oldFiles*/,
                          const QStringList& /*acceptedMimeTypes*/) override {
    return {};
  }

 private:
  const OnlyThePage& mAllowed;
};

void Restrict(QWebEngineSettings& settings) {
  using Settings = QWebEngineSettings;
  for (const auto attribute :
       {Settings::JavascriptEnabled, Settings::PluginsEnabled, Settings::LocalStorageEnabled,
        Settings::LocalContentCanAccessFileUrls, Settings::LocalContentCanAccessRemoteUrls,
        Settings::HyperlinkAuditingEnabled, Settings::DnsPrefetchEnabled, Settings::WebGLEnabled,
        Settings::ErrorPageEnabled, Settings::PdfViewerEnabled, Settings::FullScreenSupportEnabled,
        Settings::ScreenCaptureEnabled, Settings::NavigateOnDropEnabled, Settings::FocusOnNavigationEnabled})
    settings.setAttribute(attribute, false);
  settings.setUnknownUrlSchemePolicy(Settings::DisallowUnknownUrlSchemes);
}

class View : public QWidget {
 public:
  View(QWidget* parent, const std::function<void()>& died) : QWidget(parent) {
    Restrict(*mProfile.settings());
    mProfile.setUrlRequestInterceptor(&mOnlyThePage);
    mView->setPage(&mPage);
    mView->setContextMenuPolicy(Qt::NoContextMenu);
    mView->installEventFilter(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mView);
    setFocusProxy(mView);
    connect(&mPage, &QWebEnginePage::renderProcessTerminated, this, [died](auto status) {
      if (status != QWebEnginePage::NormalTerminationStatus) died();
    });
  }
  ~View() override { delete mView; }

  void Show(const QUrl& page) {
    mOnlyThePage.Page = page;
    mView->load(page);
  }

 protected:
  /// What takes the keys comes with each page anew.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == mView && event->type() == QEvent::ChildAdded) {
      const QPointer<QWidget> keys = qobject_cast<QWidget*>(static_cast<QChildEvent*>(event)->child());
      // Once it has all that it gets from its maker.
      const auto place = [this, keys] {
        if (keys) PlaceInTabOrder(*keys);
      };
      QMetaObject::invokeMethod(this, place, Qt::QueuedConnection);
    }
    return QWidget::eventFilter(watched, event);
  }

 private:
  /// Left alone, Tab would visit it last in the window, and the controls behind this view never.
  void PlaceInTabOrder(QWidget& keys) {
    QWidget* before = previousInFocusChain();
    while (before != this && (before->focusPolicy() == Qt::NoFocus || before->focusProxy()))
      before = before->previousInFocusChain();
    setTabOrder(before, &keys);
    mView->setFocusProxy(nullptr);
    mView->setFocusProxy(&keys);  // follows it in the tab order
  }

  // Each is used by those below it, and goes after them.
  OnlyThePage mOnlyThePage;
  QWebEngineProfile mProfile;  // off the record
  Page mPage{&mProfile, mOnlyThePage};
  QWebEngineView* mView = new QWebEngineView(this);
};

/// The files without which the engine would end the whole program.
bool IsWhole() {
  const QString chosen = qEnvironmentVariable("QTWEBENGINEPROCESS_PATH");
  const QFileInfo process(chosen.isEmpty() ? QLibraryInfo::path(QLibraryInfo::LibraryExecutablesPath) +
                                                 u"/QtWebEngineProcess"_s
                                           : chosen);
  const QFileInfo resources(QLibraryInfo::path(QLibraryInfo::DataPath) +
                            u"/resources/qtwebengine_resources.pak"_s);
  return process.isFile() && process.isExecutable() && resources.isReadable();
}

/// Set for as long as it lives, so that programs started from here, a browser among them, are not told.
class EnvironmentSetting {
 public:
  EnvironmentSetting(const char* name, const QByteArray& value) : mName(name), mBefore(qgetenv(name)) {
    qputenv(mName, value);
  }
  ~EnvironmentSetting() { mBefore.isNull() ? qunsetenv(mName) : qputenv(mName, mBefore); }
  EnvironmentSetting(const EnvironmentSetting&) = delete;
  EnvironmentSetting& operator=(const EnvironmentSetting&) = delete;

 private:
  const char* mName;
  const QByteArray mBefore;
};

}  // namespace

class WebEngineModule : public QObject, public WebEngine {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID "io.github.brackwell.WebEngine/1")
  Q_INTERFACES(brackwell::WebEngine)

 public:
  WebEngineModule() {
    // Pages of text need no graphics card, whose drivers have more ways to fail than all the rest.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // It would list on the terminal how it is set up.
    QLoggingCategory::setFilterRules(u"qt.webenginecontext=false"_s);
  }

  QWidget* NewView(QWidget* parent, const Options& options) override {
    if (!IsWhole()) return nullptr;
    if (options.Sandboxed) return new View(parent, options.Died);
    const EnvironmentSetting withoutSandbox("QTWEBENGINE_DISABLE_SANDBOX", "1");
    return new View(parent, options.Died);
  }

  void Navigate(QWidget& view, const QUrl& page) override { static_cast<View&>(view).Show(page); }
};

}  // namespace brackwell

#include "WebEngineModule.moc"
