#include "compare/frmCompareInfo.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTimer>
#include <algorithm>

#include "common/Busy.h"
#include "common/FormHelpers.h"
#include "common/FormProgress.h"
#include "common/MsgBox.h"
#include "common/NativeText.h"
#include "compare/CompareDetails.h"
#include "controls/ElidedLabel.h"
#include "controls/FlexGrid.h"

namespace brackwell {

using namespace Qt::StringLiterals;

namespace {

/// Ends the reading of a large folder's size when the dialog closes.
struct DialogClosed {};

QString ToText(std::string_view ascii) { return QString::fromLatin1(ascii.data(), qsizetype(ascii.size())); }

}  // namespace

frmCompareInfo::frmCompareInfo(const FileSystemObject& files, QWidget* parent)
    : QDialog(parent), mFiles(files) {
  setObjectName(u"frmCompareInfo"_s);
  setWindowTitle(u"Comparison Object Details"_s);

  hdgObject = new QLabel(u"Object"_s, this);
  hdgObject->setObjectName(u"hdgObject"_s);
  lblObject = new ElidedLabel(this);
  lblObject->setObjectName(u"lblObject"_s);
  lblObject->setAccessibleName(u"Object"_s);
  grdProperties = new FlexGrid(this);
  grdProperties->setObjectName(u"grdProperties"_s);
  grdProperties->setAccessibleName(u"Properties"_s);
  // In less, the values have no room beside the names.
  grdProperties->setMinimumSize(ForFont(*this, QSize(400, 150)));
  mProperties = new QStandardItemModel(this);
  grdProperties->setModel(mProperties);
  cmdClose = new QPushButton(u"&Close"_s, this);
  cmdClose->setObjectName(u"cmdClose"_s);
  cmdClose->setAccessibleName(u"Close"_s);
  cmdClose->setDefault(true);
  connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);

  auto* layout = new QGridLayout(this);
  layout->addWidget(hdgObject, 0, 0);
  layout->addWidget(lblObject, 0, 1);
  layout->addWidget(grdProperties, 1, 0, 1, 2);
  layout->addWidget(cmdClose, 2, 0, 1, 2, Qt::AlignRight);
  layout->setColumnStretch(1, 1);
}

QSize frmCompareInfo::sizeHint() const { return ForFont(*this, QSize(860, 480)); }

void frmCompareInfo::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (!std::exchange(mLoaded, true)) Form_Load();
}

void frmCompareInfo::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  if (mLoaded) ResizeColumns();
}

/// The names stand whole also in a large font.
void frmCompareInfo::ResizeColumns() {
  const QAbstractItemView& grid = *grdProperties;
  const double names = grid.sizeHintForColumn(PropertyColumn) * TwipsPerPixel();
  FlexGrid_ColumnResize(*grdProperties, {0.5, std::max(names, 2000.0), 0.5});
}

void frmCompareInfo::Form_Load() {
  lblObject->setText(ToShownText(ObjectName));
  lblObject->setAccessibleDescription(lblObject->text());
  InitPropertyGrid();
  // Once the dialog is seen: the size of a large folder takes its time.
  QTimer::singleShot(0, this, &frmCompareInfo::FillProperties);
}

void frmCompareInfo::InitPropertyGrid() {
  const auto names = PropertyNames(ObjectType.compare(u"File"_s, Qt::CaseInsensitive) == 0);
  mProperties->clear();
  mProperties->setHorizontalHeaderLabels(
      {u"Source "_s + ObjectType, u"Property"_s, u"Target "_s + ObjectType});
  for (const std::string_view name : names) {
    QList<QStandardItem*> row{new QStandardItem, new QStandardItem(ToText(name)), new QStandardItem};
    row[SourceColumn]->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row[PropertyColumn]->setTextAlignment(Qt::AlignCenter);
    row[TargetColumn]->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    mProperties->appendRow(row);
  }
  for (const Column column : {SourceColumn, TargetColumn})
    grdProperties->SetColumnElide(column, Qt::ElideMiddle);
  ResizeColumns();
}

void frmCompareInfo::FillProperties() {
  const BusyPointer busy;
  try {
    FillSide(SourceColumn, SourceRoot) && FillSide(TargetColumn, TargetRoot);
  } catch (const FileSystemError& error) {
    MsgBox(this, QString::fromStdString(error.Description()) + u"\n"_s + ToShownText(error.Path()),
           MsgIcon::Critical, windowTitle());
  }
}

bool frmCompareInfo::FillSide(Column column, const std::string& root) {
  FormProgress progress({.ShowMessage = [](const QString&) {},
                         .ShowResults = [] {},
                         .Stopped = [this] { return !isVisible(); }});
  const auto tick = [&] {
    progress.DoEvents();
    if (progress.Stopped()) throw DialogClosed{};
  };
  const auto give = [&](std::size_t row, const std::string& value) {
    QStandardItem* item = mProperties->item(int(row), column);
    item->setText(ToShownText(value));
  };
  try {
    ReadProperties(*mFiles.Within({root}), root + ObjectName,
                   ObjectType.compare(u"File"_s, Qt::CaseInsensitive) == 0, give, tick);
    return true;
  } catch (const DialogClosed&) {
    return false;
  }
}

}  // namespace brackwell
