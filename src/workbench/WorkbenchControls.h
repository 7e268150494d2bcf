// The controls that the compare run reads and drives.  The window, the command line and the tests each fill
// them.
#pragma once

#include <array>
#include <string>

#include "grid/ResultGrid.h"
#include "platform/Dialogs.h"

namespace tavrel::workbench {

/// A field that shows a fixed message while something takes long.
class MessageField {
  public:
    virtual ~MessageField() = default;
    virtual void SetVisible(bool visible) = 0;
    virtual void SetFocus() = 0;
};

/// Nothing here is owned; every pointer must be set.  Index 0 belongs to DB A, index 1 to DB B.
struct WorkbenchControls {
    std::array<platform::TextField*, 2> txtDBPath{};
    std::array<platform::TextField*, 2> txtPwd{};
    std::array<platform::TextField*, 2> cmbTblName{};
    /// 0: leave out fields of one side only, 1: compare indexes only, 2: show differences only.
    std::array<platform::OptionBox*, 3> Check1{};
    /// 0: the present phase, 1: the whole run.
    std::array<platform::ProgressBar*, 2> ProgressBar1{};
    MessageField* maketb = nullptr;
    platform::Pointer* pointer = nullptr;
    platform::MessageBox* messages = nullptr;
    grid::ResultGrid* spList = nullptr;
    std::string AppCode;  ///< code of the selected product; empty = none
};

}  // namespace tavrel::workbench
