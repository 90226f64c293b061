#include "drives/frmDrives.h"

#include <QEvent>
#include <QHeaderView>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "common/Busy.h"
#include "common/Files.h"
#include "common/FormHelpers.h"
#include "common/NativeText.h"
#include "common/RunProgram.h"
#include "controls/ListView.h"
#include "controls/StringTable.h"
#include "platform/TempFolder.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

constexpr double WidestColumn = 6000;  // twips; of a name without end

QList<StringTable::Column> Columns() {
  QList<StringTable::Column> columns;
  for (const DriveColumn& column : DriveColumns)
    columns.append({ToShownText(column.Key), ToShownText(column.Caption)});
  return columns;
}

std::vector<QStringList> Shown(const std::vector<DriveRow>& rows) {
  std::vector<QStringList> shown;
  for (const DriveRow& row : rows) {
    QStringList& cells = shown.emplace_back();
    for (const std::string& cell : row) cells.append(ToShownText(cell));
  }
  return shown;
}

/// Columns as wide as their captions and their texts, in twips.
std::vector<double> ContentWidths(const ListView& list) {
  const QAbstractItemView& view = list;
  std::vector<double> widths;
  for (int column = 0; column < list.header()->count(); ++column) {
    const int pixels = std::max(view.sizeHintForColumn(column), list.header()->sectionSizeHint(column));
    widths.push_back(std::min((pixels + 1) * TwipsPerPixel(), WidestColumn));
  }
  return widths;
}

double Sum(const std::vector<double>& widths) { return std::accumulate(widths.begin(), widths.end(), 0.0); }

}  // namespace

frmDrives::frmDrives(Services& services, const DriveSource& drives) : ToolWindow(services) {
  setObjectName(u"frmDrives"_s);
  setWindowTitle(u"Disk Drive Information"_s);

  mTable = new StringTable(this);
  lvwDrives = Named(new ListView(this), u"lvwDrives"_s, u"Drives"_s);
  lvwDrives->setModel(mTable);
  lvwDrives->setSelectionMode(QAbstractItemView::ExtendedSelection);  // for copying
  lvwDrives->installEventFilter(this);
  cmdClose = Named(new QPushButton(u"&Close"_s, this), u"cmdClose"_s, u"Close"_s);
  connect(cmdClose, &QPushButton::clicked, this, &frmDrives::Unload);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(Margin, Margin, Margin, Margin);
  layout->setSpacing(Spacing);
  layout->addWidget(lvwDrives);
  layout->addWidget(cmdClose, 0, Qt::AlignRight);

  Form_Load(drives);
}

/// Wide enough for every text, if the main window is.
QSize frmDrives::sizeHint() const {
  const double list = (Sum(ContentWidths(*lvwDrives)) + ScrollBarAllowance()) / TwipsPerPixel();
  return ForFont(*this, QSize(1000, 360)).expandedTo({static_cast<int>(std::ceil(list)) + 2 * Margin, 0});
}

/// A list asks for no size.
QSize frmDrives::minimumSizeHint() const { return ForFont(*this, QSize(400, 180)); }

void frmDrives::Form_Load(const DriveSource& drives) {
  const BusyPointer busy;
  mRows = LoadDriveList(drives());
  mTable->SetContent(Columns(), Shown(mRows));
}

void frmDrives::Form_Activate() { mServices.tlbMain_ENABLE(u"Print"_s, true); }
void frmDrives::Form_Deactivate() { mServices.tlbMain_ENABLE(u"Print"_s, false); }
void frmDrives::Form_Unload() { Form_Deactivate(); }

bool frmDrives::eventFilter(QObject* watched, QEvent* event) {
  if (watched == lvwDrives && event->type() == QEvent::Resize) Form_Resize();
  return ToolWindow::eventFilter(watched, event);
}

/// Every column shows its texts; what room is left is shared out evenly.
void frmDrives::Form_Resize() {
  std::vector<double> widths = ContentWidths(*lvwDrives);
  const double left = lvwDrives->width() * TwipsPerPixel() - ScrollBarAllowance() - Sum(widths);
  for (double& width : widths) width += std::max(0.0, left / static_cast<double>(widths.size()));
  ListView_ColumnResize(*lvwDrives, widths);
}

void frmDrives::PrintData() {
  ListTable list;
  list.Width = lvwDrives->width();
  list.Rows = mRows;
  for (std::size_t column = 0; column < DriveColumns.size(); ++column) {
    list.Headers.emplace_back(DriveColumns[column].Caption);
    list.ColumnWidths.push_back(lvwDrives->columnWidth(static_cast<int>(column)));
  }
  const std::string path = ReportPath("drive_info.htm");
  WriteTextFile(mServices.Files, path, true, HtmlToAscii(DriveReport(windowTitle().toStdString(), list)));
  RunProgram(this, path);
}

}  // namespace brackwell
