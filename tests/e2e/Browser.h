#pragma once

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace brackwell {

/// A real browser without a window, by which pages are read back. It has no network.
class Browser {
 public:
  static constexpr const char* None = "chromium is not installed, or is a snap, which cannot read the pages";

  static bool IsInstalled() { return !Program().isEmpty(); }

  /// What a script makes of the page: the value of the expression `seen`, in which `page` is the page's
  /// document and `view` its window. With `dark`, the user prefers dark pages.
  static QJsonObject Read(const QByteArray& page, const QByteArray& seen, bool dark = false) {
    QTemporaryDir folder;
    Write(folder.filePath(QStringLiteral("page.htm")), page);
    Write(folder.filePath(QStringLiteral("reader.htm")), QByteArray(Reader).replace("SCRIPT", seen));
    QStringList arguments{QStringLiteral("--headless"),
                          QStringLiteral("--no-sandbox"),
                          QStringLiteral("--disable-gpu"),
                          QStringLiteral("--no-first-run"),
                          QStringLiteral("--disable-background-networking"),
                          QStringLiteral("--disable-component-update"),
                          QStringLiteral("--disable-sync"),
                          QStringLiteral("--disable-dev-shm-usage"),
                          QStringLiteral("--allow-file-access-from-files"),
                          QStringLiteral("--user-data-dir=") + folder.filePath(QStringLiteral("profile")),
                          QStringLiteral("--dump-dom"),
                          QStringLiteral("file://") + folder.filePath(QStringLiteral("reader.htm"))};
    if (dark) arguments.prepend(QStringLiteral("--blink-settings=preferredColorScheme=0"));
    QProcess browser;
    browser.start(Program(), arguments);
    if (!browser.waitForFinished(120000)) return {};
    const QString dom = QString::fromUtf8(browser.readAllStandardOutput());
    QString json = dom.section(QStringLiteral("SEEN"), 1, 1);
    json.replace(QStringLiteral("&lt;"), QStringLiteral("<"));
    json.replace(QStringLiteral("&gt;"), QStringLiteral(">"));
    json.replace(QStringLiteral("&amp;"), QStringLiteral("&"));
    return QJsonDocument::fromJson(json.toUtf8()).object();
  }

 private:
  static QString Program() {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("chromium"));
    return program.startsWith(QStringLiteral("/snap/")) ? QString() : program;
  }

  static constexpr const char* Reader = R"(<body><iframe src="page.htm"></iframe><pre id="seen"></pre><script>
onload = () => {
  const view = frames[0], page = view.document;
  document.getElementById("seen").textContent = "SEEN" + JSON.stringify(SCRIPT) + "SEEN";
};
</script></body>)";

  static void Write(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
  }
};

}  // namespace brackwell
