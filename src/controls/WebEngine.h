#pragma once

#include <QtPlugin>
#include <functional>

class QUrl;
class QWidget;

namespace brackwell {

/// A web browser, in a module of its own that is loaded when the first page is to be shown: to every start of
/// the program it would add as much time again, and it brings processes of its own along.
///
/// Its views show one local page each and nothing else. Scripts, plug-ins, storage, links and whatever a page
/// would fetch are off.
class WebEngine {
 public:
  struct Options {
    bool Sandboxed = true;       // the system has what the engine shuts its own processes in with
    std::function<void()> Died;  // the engine's process behind a view has ended; the view shows nothing
  };

  virtual ~WebEngine() = default;

  /// An empty view; null where the engine lacks files of its own and would not start. The options of the
  /// first view decide about the sandbox.
  virtual QWidget* NewView(QWidget* parent, const Options& options) = 0;
  /// Shows another page in a view of this engine.
  virtual void Navigate(QWidget& view, const QUrl& page) = 0;
};

}  // namespace brackwell

Q_DECLARE_INTERFACE(brackwell::WebEngine, "io.github.brackwell.WebEngine/1")
