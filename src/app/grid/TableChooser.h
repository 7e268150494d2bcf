// The list of the listing's tables, to go to one of them.
#pragma once

#include <functional>

#include <QWidget>

#include "app/grid/TableRows.h"

namespace tavrel::app {

/// Opens the list over the parent and returns; each table stands there with the number of its differences,
/// the one of the current row chosen.  `choose` is called with the first row of the table that the user
/// takes.  The parent must live as long as the list is open.
void OpenTableChooser(QWidget& parent, const std::vector<TableRows>& tables, int currentRow,
                      std::function<void(int modelRow)> choose);

}  // namespace tavrel::app
