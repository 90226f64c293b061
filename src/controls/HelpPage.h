#pragma once

#include <QStringList>
#include <QTextBrowser>
#include <QTimer>

namespace brackwell {

class ChmFile;

/// A page of a compiled help file, in the colours of the desktop, with the way back and forward. It reads
/// nothing outside of the file: a link into the web opens in the browser, any other is dead.
class HelpPage : public QTextBrowser {
  Q_OBJECT

 public:
  /// Keeps a reference to the file.
  explicit HelpPage(const ChmFile& file, QWidget* parent = nullptr);

  /// Shows a page ("welcome.html") with all words marked that begin with one of `words`, which are in lower
  /// case. One that is not there changes nothing.
  void ShowTopic(const QString& topic, const QStringList& words = {});
  /// Of the page that is shown; empty before the first.
  QString Topic() const;
  /// The object of the file that an address means; empty for one outside of it.
  static QString NameOf(const QUrl& url);
  void Back();
  void Forward();

  /// Selects the next place with this text, whatever its case, and begins anew at the page's other end. False
  /// where there is none.
  bool FindText(const QString& text, bool backward = false);

  /// 0 is the desktop's text size, each step a point more or less.
  int Zoom() const { return mZoom; }
  void SetZoom(int zoom);

  /// Objects of the file, and nothing for any other address.
  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void Follow(const QUrl& link);
  /// Colours and the width of pictures are part of a page; it is made anew where these change.
  void MakeAnew();
  void MarkWords();
  QVariant Picture(const std::string& content) const;

  const ChmFile& mFile;
  QStringList mWords;
  QTimer mMakeAnew;
  int mZoom = 0;
  int mWheel = 0;
};

}  // namespace brackwell
