#include "controls/WebView.h"

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QOpenGLContext>
#include <QPluginLoader>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <utility>

#include "common/FormHelpers.h"
#include "controls/WebEngine.h"
#include "platform/Sandbox.h"

#if QT_CONFIG(opengl)
// Belongs to Qt's interface of its libraries among themselves.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);
#endif

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// Rich text without anything that is not in the text itself.
class TextPage : public QTextBrowser {
 public:
  explicit TextPage(QWidget* parent) : QTextBrowser(parent) { setOpenLinks(false); }

  /// An image that is not given is looked for in the file system; so every image is one clear dot.
  QVariant loadResource(int type, const QUrl& /*name*/) override {
    if (type != QTextDocument::ImageResource) return QByteArray();
    QImage dot(1, 1, QImage::Format_ARGB32);
    dot.fill(Qt::transparent);
    return dot;
  }
};

/// The module, loaded once; null where it was not built or cannot be loaded. It finds a context for drawing
/// in place that it never draws with: to have a real one, the program would have to load the graphics drivers
/// at every start.
WebEngine* LoadEngine() {
#if QT_CONFIG(opengl)  // of a Qt without there is no engine either
  if (!QOpenGLContext::globalShareContext())
    qt_gl_set_global_share_context(new QOpenGLContext(QCoreApplication::instance()));
#endif
  QPluginLoader loader(u"brackwell_webview"_s);
  return qobject_cast<WebEngine*>(loader.instance());
}

}  // namespace

WebView::WebView(QWidget* parent)
    : QFrame(parent),
      lblNote(new QLabel(u"The browser could not be started or has stopped. The page is shown as text; "
                         "some fonts and styles may look different from what they are."_s,
                         this)),
      mLayout(new QVBoxLayout(this)) {
  setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  lblNote->setObjectName(u"lblNote"_s);
  lblNote->setWordWrap(true);
  lblNote->setMargin(4);
  lblNote->hide();
  mLayout->setContentsMargins(0, 0, 0, 0);
  mLayout->setSpacing(0);
  mLayout->addWidget(lblNote);
  StartEngine();
}

void WebView::StartEngine() {
  mEngine = LoadEngine();
  if (!mEngine) return UseText();
  if (!CanShareMemory()) return EngineFailed();
  // The engine tells from within its own code, which must not find its view gone when it is returned to.
  const auto died = [this] { QMetaObject::invokeMethod(this, &WebView::EngineFailed, Qt::QueuedConnection); };
  mEngineView = mEngine->NewView(this, {.Sandboxed = CanSandbox(), .Died = died});
  if (!mEngineView) return EngineFailed();
  mLayout->addWidget(mEngineView, 1);
  setFocusProxy(mEngineView);
}

void WebView::UseText() {
  mText = Named(new TextPage(this), u"txtPage"_s, u"Page"_s);
  mText->setFrameShape(QFrame::NoFrame);
  mLayout->addWidget(mText, 1);
  setFocusProxy(mText);
}

void WebView::EngineFailed() {
  if (mText) return;
  delete std::exchange(mEngineView, nullptr);
  UseText();
  lblNote->show();
  ShowAsText();
}

void WebView::Navigate(const QUrl& page) {
  mPage = page;
  if (mEngineView)
    mEngine->Navigate(*mEngineView, page);
  else
    ShowAsText();
}

void WebView::ShowAsText() {
  QFile file(mPage.toLocalFile());
  mText->setHtml(mPage.isLocalFile() && file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll())
                                                                       : QString());
}

}  // namespace brackwell
