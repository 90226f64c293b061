#include <QApplication>
#include <QPalette>
#include <QStyle>

#include "common/Program.h"
#include "shell/ToolTable.h"
#include "shell/frmImages.h"
#include "shell/frmMain.h"

using namespace Qt::StringLiterals;

namespace {

void SetNames() {
  // No display name: it would be put after the caption of every dialog.
  QApplication::setOrganizationName(u"Brackwell"_s);
  QApplication::setApplicationName(u"Brackwell"_s);
  QApplication::setApplicationVersion(QString::fromUtf8(brackwell::ProgramVersion));
  QApplication::setDesktopFileName(QString::fromUtf8(brackwell::ProgramId));
}

/// The native styles of Windows follow neither a dark palette nor fractional scaling as well as this one.
void SetStyle() {
  if (!QApplication::style()->name().startsWith(u"windows"_s, Qt::CaseInsensitive)) return;
  QApplication::setStyle(u"Fusion"_s);
  // A selection without the focus would have the colour of windows, which is next to that of lists. This one
  // shows in light and dark ones alike.
  QPalette colours;
  colours.setColor(QPalette::Inactive, QPalette::Highlight, QColor(128, 128, 128, 90));
  QApplication::setPalette(colours);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  SetNames();
  SetStyle();
  QApplication::setWindowIcon(brackwell::ProgramIcon());

  brackwell::frmMain main(brackwell::ToolTable());
  main.show();
  return QApplication::exec();
}
