// Selected cells as text.
#pragma once

#include <QItemSelection>
#include <QString>

#include "app/grid/GridModel.h"

namespace tavrel::app {

/// The smallest block of rows and columns that holds the selection, cells separated by tabs, each row ended
/// by a line end.  Cells of the block that are not selected are blank; hidden columns, and rows without a
/// selected cell, are left out.  A text that holds a tab, a line end or a quote stands in quotes, as
/// spreadsheets read it.
QString SelectionText(const GridModel& model, const QItemSelection& selection);
/// The same below a line of the columns' captions: "필드명 (A)", "비교".
QString SelectionTextWithHeaders(const GridModel& model, const QItemSelection& selection);
/// The part of the selection that lies in marked rows.
QItemSelection DifferingPart(const GridModel& model, const QItemSelection& selection);

/// Leaves the clipboard as it is when the text is empty.
void CopyToClipboard(const QString& text);

}  // namespace tavrel::app
