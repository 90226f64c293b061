#pragma once

#include <QWidget>
#include <functional>

namespace brackwell {

class FileSystemObject;
class frmImages;

/// What the main window lends to every tool window.
struct Services {
  FileSystemObject& Files;
  frmImages& Images;
  /// Enables or disables the toolbar button with the given key ("Print": and its menu item).
  std::function<void(const QString& key, bool enabled)> tlbMain_ENABLE;
  /// Shows the help's topic about the tool or dialog with the given key.
  std::function<void(const QString& key)> ShowHelp = [](const QString&) {};
};

/// A window inside the main window. A tool that can print has an invokable `PrintData` without arguments; the
/// main window calls it by name. While the focus is inside the window, an accelerator of one of its buttons
/// or labels comes before that of a menu: Alt+F is "&Fix" there and "&File" elsewhere. Shift+F10 asks the
/// control with the focus for its context menu, for keyboards without a menu key.
///
/// Long work runs on the one thread and lets events through, so a window may be asked to close while its own
/// code is still on the stack. While a Run is alive the close is put off, the run is told to stop, and the
/// window closes as soon as the run has ended.
class ToolWindow : public QWidget {
  Q_OBJECT

 public:
  explicit ToolWindow(Services& services);

  bool IsRunning() const { return mRunning; }
  /// Asks the run to end; it does so after the item in hand.
  void StopRun() { mStopAsked = true; }

  /// The main window made this window the active one, or no longer does.
  virtual void Form_Activate() {}
  virtual void Form_Deactivate() {}

 Q_SIGNALS:
  void RunEnded();

 protected:
  /// For as long as one is alive the window is busy. At most one per window.
  class Run {
   public:
    explicit Run(ToolWindow& window);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

   private:
    ToolWindow& mWindow;
  };

  bool StopAsked() const { return mStopAsked; }
  /// The window closes as soon as its run has ended: start nothing new, ask nothing.
  bool CloseAsked() const { return mCloseAsked; }
  /// The window is closing: save what is to be remembered. Called once.
  virtual void Form_Unload() {}
  /// Closes the window together with its frame in the main window.
  void Unload();

  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

  Services& mServices;

 private:
  /// The button that can be pressed now by this key, or the control whose label has it, if there is one.
  QWidget* ControlFor(const QKeyEvent& key) const;

  bool mRunning = false;
  bool mStopAsked = false;
  bool mCloseAsked = false;
  bool mUnloaded = false;
};

}  // namespace brackwell
