// The menu of the result grid.
#pragma once

#include <functional>
#include <memory>

#include <QMenu>

#include "app/SaveComparison.h"
#include "app/SaveScript.h"

namespace tavrel::app {

struct GridMenuActions {
    std::function<void()> copy;
    std::function<void()> copyWithHeaders;
    std::function<void()> copyCell;
    std::function<void()> copyDiffering;
    std::function<void()> selectAll;
    std::function<void()> swapSides;
    std::function<void(const ReportFormatLine&)> save;   ///< empty: what is listed cannot be saved
    std::function<void(const ScriptLine&)> script = {};  ///< empty: there is no finished run to write one for
};

/// Copying and selecting, saving in every format, the SQL from one side to the other, swapping them.
/// `filled`: there is a listing to work on.
std::unique_ptr<QMenu> MakeGridMenu(QWidget& parent, bool filled, const GridMenuActions& actions);

}  // namespace tavrel::app
