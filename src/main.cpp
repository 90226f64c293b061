#include <QApplication>
#include <QIcon>
#include <QStyle>

#include "shell/ToolTable.h"
#include "shell/frmMain.h"

using namespace Qt::StringLiterals;

namespace {

void SetNames() {
  // No display name: it would be put after the caption of every dialog.
  QApplication::setOrganizationName(u"Brackwell"_s);
  QApplication::setApplicationName(u"Brackwell"_s);
  QApplication::setApplicationVersion(QStringLiteral(BRACKWELL_VERSION));
  QApplication::setDesktopFileName(u"io.github.brackwell.Brackwell"_s);
}

QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : {16, 32, 48, 64, 128, 256}) icon.addFile(u":/icons/app/Brackwell-%1.png"_s.arg(size));
  return icon;
}

/// The native styles of Windows follow neither a dark palette nor fractional scaling as well as this one.
void SetStyle() {
  if (QApplication::style()->name().startsWith(u"windows"_s, Qt::CaseInsensitive))
    QApplication::setStyle(u"Fusion"_s);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  SetNames();
  SetStyle();
  QApplication::setWindowIcon(ProgramIcon());

  brackwell::frmMain main(brackwell::ToolTable());
  main.show();
  return QApplication::exec();
}
