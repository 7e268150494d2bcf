// Compact and repair, the window's command: everything but the window.
#pragma once

#include <functional>
#include <string>

#include "platform/Dialogs.h"

namespace tavrel::workbench {

/// Nothing is owned; all must be set.
struct CompactControls {
    platform::TextField* txtDBPath = nullptr;  ///< of the button's side
    platform::Pointer* pointer = nullptr;
    platform::MessageBox* messages = nullptr;
    /// The check of the path; false when it has reported what is wrong.
    std::function<bool(const std::string& path)> validateDbPath;
};

/// Asks, compacts the database beside itself with the products' password, and puts the result in its place.
/// Reports by message box; every failure leaves the database as it was.
void cmdCompact_Click(const CompactControls& controls);

}  // namespace tavrel::workbench
