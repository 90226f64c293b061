#pragma once

#include <QFrame>
#include <QUrl>

class QLabel;
class QTextBrowser;
class QVBoxLayout;

namespace brackwell {

class WebEngine;

/// Shows one local page at a time, in a web browser where there is one, else as rich text, and nothing but
/// that page: no scripts, nothing that the page would fetch, no links. The browser starts with the first view
/// and ends with the program. Where it fails, a note says so and the page is shown as rich text.
class WebView : public QFrame {
  Q_OBJECT

 public:
  explicit WebView(QWidget* parent = nullptr);

  /// Shows a local file, or "about:blank".
  void Navigate(const QUrl& page);
  /// What it shows; empty before the first page.
  QUrl LocationURL() const { return mPage; }

  /// Whether it is a web browser that shows the page.
  bool HasEngine() const { return mEngineView != nullptr; }

 private:
  void StartEngine();
  void UseText();
  void ShowAsText();
  void EngineFailed();

  QUrl mPage;
  WebEngine* mEngine = nullptr;
  QWidget* mEngineView = nullptr;
  QTextBrowser* mText = nullptr;
  QLabel* lblNote;
  QVBoxLayout* mLayout;
};

}  // namespace brackwell
