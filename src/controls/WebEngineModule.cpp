#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QOpenGLContext>
#include <QCoreApplication>
#include <QQuickWindow>
#include <QUrl>
#include <QVBoxLayout>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>
#include <memory>

#include "controls/WebEngine.h"

Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);

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
  Page(QWebEngineProfile* profile, const OnlyThePage& allowed)
      : QWebEnginePage(profile), mAllowed(allowed) {}

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override {
    return type == NavigationTypeTyped && isMainFrame && url == mAllowed.Page;
  }
  QStringList chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) override { return {}; }

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
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mView);
    connect(&mPage, &QWebEnginePage::renderProcessTerminated, this, [died](auto status) {
      if (status != QWebEnginePage::NormalTerminationStatus) died();
    });
  }
  ~View() override { delete mView; }

  void Show(const QUrl& page) {
    mOnlyThePage.Page = page;
    mView->load(page);
  }

 private:
  // Each is used by those below it, and goes after them.
  OnlyThePage mOnlyThePage;
  QWebEngineProfile mProfile;  // off the record
  Page mPage{&mProfile, mOnlyThePage};
  QWebEngineView* mView = new QWebEngineView(this);
};

}  // namespace

class WebEngineModule : public QObject, public WebEngine {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID "io.github.brackwell.WebEngine/1")
  Q_INTERFACES(brackwell::WebEngine)

 public:
  WebEngineModule() {
    // Pages of text need no graphics card, and its drivers have more ways to fail than all the rest.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    if (!QOpenGLContext::globalShareContext()) qt_gl_set_global_share_context(new QOpenGLContext(QCoreApplication::instance()));
  }
  QWidget* NewView(QWidget* parent, const Options& options) override {
    if (!options.Sandboxed) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    return new View(parent, options.Died);
  }
  void Navigate(QWidget& view, const QUrl& page) override { static_cast<View&>(view).Show(page); }
};

}  // namespace brackwell

#include "WebEngineModule.moc"
