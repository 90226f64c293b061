#pragma once

#include <QString>

class QAbstractItemView;

namespace brackwell {

/// The selected rows of a list or grid, or else its current one, from the top: a line for each, with tabs
/// between the cells. A picture or box is told by what a screen reader says of it. A tab or line break inside
/// a cell is shown by its picture, so that it ends neither cell nor line. Rows without any text are left out.
QString SelectedRowsText(const QAbstractItemView& view);

/// Puts that text onto the clipboard, or leaves the clipboard as it is where there is none.
void CopySelectedRows(const QAbstractItemView& view);

}  // namespace brackwell
