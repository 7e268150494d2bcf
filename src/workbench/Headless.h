// The compare run without a window: a request in, a result out.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "compare/SchemaRows.h"
#include "platform/Dialogs.h"

namespace tavrel::workbench {

/// One database to look at.
struct DatabaseChoice {
    std::string path;
    std::string password;
    std::string table;  ///< empty: every user table
};

struct CompareRequest {
    DatabaseChoice a;
    DatabaseChoice b;
    std::string product;           ///< code of the product to whose schema copies are brought; empty: none
    bool bothOnly = false;         ///< leave out fields of one side only
    bool indexOnly = false;        ///< compare table, P, F, I and field name only
    bool onlyDifferences = false;  ///< hide rows without mark
};

/// Where messages and progress go.
struct Surroundings {
    platform::MessageBox& messages;
    platform::ProgressBar& phase;    ///< the present phase
    platform::ProgressBar& overall;  ///< 5 steps
};

/// Runs a comparison.  Nothing when it did not come to its end: the message box has said why.  The final
/// message of a finished comparison goes to the message box too, and which side it was when a working copy
/// could not be patched.
std::optional<compare::ComparisonResult> CompareDatabases(const CompareRequest& request,
                                                          const Surroundings& around);

/// Nothing when the database cannot be opened (the message box has said why).  Throws Error when it cannot be
/// read.
std::optional<compare::SchemaRows> ReadSchema(const DatabaseChoice& database, const Surroundings& around);

}  // namespace tavrel::workbench
