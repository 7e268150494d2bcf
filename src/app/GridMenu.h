// The menu of the result grid.
#pragma once

#include <functional>
#include <memory>

#include <QMenu>

#include "app/SaveComparison.h"

namespace tavrel::app {

struct GridMenuActions {
    std::function<void()> copy;
    std::function<void()> selectAll;
    std::function<void(const ReportFormatLine&)> save;  ///< empty: what is listed cannot be saved
};

/// Copying and selecting, saving in every format.  `filled`: there is a listing to work on.
std::unique_ptr<QMenu> MakeGridMenu(QWidget& parent, bool filled, const GridMenuActions& actions);

}  // namespace tavrel::app
