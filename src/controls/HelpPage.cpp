#include "controls/HelpPage.h"

#include <QEvent>
#include <QImage>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>

#include "common/RunProgram.h"
#include "help/ChmFile.h"
#include "platform/Launch.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

const QString Scheme = u"chm"_s;
constexpr int PageMargin = 16;
constexpr int SmallestPicture = 64;
constexpr int WheelStep = 120;
constexpr int SmallestZoom = -4;
constexpr int LargestZoom = 24;
constexpr int MostMarks = 1000;

QUrl AddressOf(const QString& topic) {
  QUrl url;
  url.setScheme(Scheme);
  url.setPath(u'/' + topic);
  return url;
}

/// A little of `above` over `below`.
QColor Mix(const QColor& below, const QColor& above, double share) {
  const auto mix = [share](int a, int b) { return qRound(a + (b - a) * share); };
  return QColor(mix(below.red(), above.red()), mix(below.green(), above.green()),
                mix(below.blue(), above.blue()));
}

bool IsDark(const QPalette& palette) { return palette.base().color().lightness() < 128; }

/// The pages' own style sheet is made for browsers, and knows no palette.
QString StyleSheet(const QPalette& palette) {
  const QColor base = palette.base().color();
  const QColor text = palette.text().color();
  return uR"(h1 { font-size: x-large; font-weight: 600; margin-top: 0; margin-bottom: 12px; }
h2 { font-size: large; font-weight: 600; margin-top: 22px; margin-bottom: 6px; }
p { margin-top: 6px; margin-bottom: 8px; }
li { margin-top: 3px; margin-bottom: 3px; }
a { color: %1; }
code, pre { background-color: %2; }
table { border-collapse: collapse; border: 1px solid %3; margin-top: 8px; margin-bottom: 12px; }
th { background-color: %2; text-align: left; }
th, td { border: 1px solid %3; padding: 5px 9px; vertical-align: top; })"_s.arg(
      IsDark(palette) ? u"#7db8f0"_s : u"#1a5fa8"_s, Mix(base, text, 0.07).name(),
      Mix(base, text, 0.18).name());
}

QTextEdit::ExtraSelection Mark(const QTextCursor& place, const QPalette& palette) {
  QTextEdit::ExtraSelection mark;
  mark.cursor = place;
  mark.format.setBackground(IsDark(palette) ? QColor(0x6b, 0x5a, 0x12) : QColor(0xff, 0xe9, 0x8a));
  mark.format.setForeground(IsDark(palette) ? QColor(Qt::white) : QColor(Qt::black));
  return mark;
}

}  // namespace

HelpPage::HelpPage(const ChmFile& file, QWidget* parent) : QTextBrowser(parent), mFile(file) {
  setOpenLinks(false);
  setVerticalScrollBarPolicy(
      Qt::ScrollBarAlwaysOn);  // one that comes and goes would change the pictures' width
  setUndoRedoEnabled(false);
  document()->setDocumentMargin(PageMargin);
  mMakeAnew.setSingleShot(true);
  mMakeAnew.setInterval(std::chrono::milliseconds(80));
  connect(&mMakeAnew, &QTimer::timeout, this, &HelpPage::MakeAnew);
  connect(this, &QTextBrowser::anchorClicked, this, &HelpPage::Follow);
}

QString HelpPage::NameOf(const QUrl& url) {
  if (url.scheme() != Scheme && !url.scheme().isEmpty()) return {};
  QString name = url.path();
  return name.startsWith(u'/') ? name.remove(0, 1) : name;
}

void HelpPage::ShowTopic(const QString& topic, const QStringList& words) {
  if (!mFile.Find(topic.toStdString())) return;
  mWords = words;
  setSource(AddressOf(topic), QTextDocument::HtmlResource);
  MarkWords();
}

QString HelpPage::Topic() const { return NameOf(source()); }

void HelpPage::Back() {
  mWords.clear();
  setExtraSelections({});
  backward();
}

void HelpPage::Forward() {
  mWords.clear();
  setExtraSelections({});
  forward();
}

void HelpPage::Follow(const QUrl& link) {
  if (IsWebAddress(link.toString().toStdString()))
    RunWebAddress(this, link.toString(QUrl::FullyEncoded).toStdString());
  else
    ShowTopic(NameOf(link));
}

bool HelpPage::FindText(const QString& text, bool backward) {
  const QTextDocument::FindFlags flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
  if (text.isEmpty()) return false;
  if (find(text, flags)) return true;
  const QTextCursor before = textCursor();
  moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
  if (find(text, flags)) return true;
  setTextCursor(before);
  return false;
}

void HelpPage::SetZoom(int zoom) {
  zoom = std::clamp(zoom, SmallestZoom, LargestZoom);
  zoomIn(zoom - mZoom);
  mZoom = zoom;
}

QVariant HelpPage::loadResource(int type, const QUrl& name) {
  if (type == QTextDocument::StyleSheetResource) return StyleSheet(palette());
  const std::string* content = mFile.Find(NameOf(name).toStdString());
  if (!content) return {};
  if (type == QTextDocument::ImageResource) return Picture(*content);
  return type == QTextDocument::HtmlResource ? QVariant(QString::fromStdString(*content)) : QVariant();
}

/// No wider than the page, and in the pixels of the screen rather than those of its file.
QVariant HelpPage::Picture(const std::string& content) const {
  const QImage picture =
      QImage::fromData(QByteArrayView(content.data(), static_cast<qsizetype>(content.size())), "PNG");
  if (picture.isNull()) return {};
  const int room = std::max(viewport()->width() - 2 * PageMargin, SmallestPicture);
  const int width = std::min(room, picture.width());
  const int pixels = std::min(qRound(width * devicePixelRatioF()), picture.width());
  QImage shown = picture.scaledToWidth(pixels, Qt::SmoothTransformation);
  shown.setDevicePixelRatio(static_cast<double>(pixels) / width);
  return shown;
}

void HelpPage::MakeAnew() {
  if (source().isEmpty()) return;
  const int place = verticalScrollBar()->value();
  const int anchor = textCursor().anchor();
  const int position = textCursor().position();
  reload();
  MarkWords();
  QTextCursor selection(document());
  selection.setPosition(anchor);
  selection.setPosition(position, QTextCursor::KeepAnchor);
  setTextCursor(selection);
  verticalScrollBar()->setValue(place);
}

void HelpPage::MarkWords() {
  QList<ExtraSelection> marks;
  if (!mWords.isEmpty()) {
    QStringList patterns;
    for (const QString& word : mWords) patterns << QRegularExpression::escape(word);
    const QRegularExpression words(
        u"\\b(?:%1)\\w*"_s.arg(patterns.join(u'|')),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    QTextCursor place(document());
    while (marks.size() < MostMarks && !(place = document()->find(words, place)).isNull())
      marks << Mark(place, palette());
  }
  setExtraSelections(marks);
  if (marks.isEmpty()) return;
  QTextCursor first = marks.first().cursor;
  first.setPosition(first.selectionStart());
  setTextCursor(first);
}

void HelpPage::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) mMakeAnew.start();
}

void HelpPage::resizeEvent(QResizeEvent* event) {
  QTextBrowser::resizeEvent(event);
  if (event->size().width() != event->oldSize().width()) mMakeAnew.start();
}

/// Touch pads turn the wheel by little.
void HelpPage::wheelEvent(QWheelEvent* event) {
  if (!(event->modifiers() & Qt::ControlModifier)) return QTextBrowser::wheelEvent(event);
  mWheel += event->angleDelta().y();
  SetZoom(mZoom + mWheel / WheelStep);
  mWheel %= WheelStep;
  event->accept();
}

}  // namespace brackwell
