// The compare run without a window: a request in, a result out.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "compare/ComparisonResult.h"
#include "platform/Dialogs.h"

namespace tavrel::compare {

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
std::optional<ComparisonResult> CompareDatabases(const CompareRequest& request, const Surroundings& around);

/// The snapshot of one database as rows.
class SchemaRows {
  public:
    explicit SchemaRows(std::shared_ptr<const grid::ResultGrid> grid) : grid_(std::move(grid)) {}
    [[nodiscard]] std::string_view Path() const;
    [[nodiscard]] std::size_t RowCount() const;
    /// Rows count from 0.
    [[nodiscard]] SideCells Row(std::size_t index) const;

  private:
    std::shared_ptr<const grid::ResultGrid> grid_;
};

/// Nothing when the database cannot be opened (the message box has said why).  Throws Error when it cannot be
/// read.
std::optional<SchemaRows> ReadSchema(const DatabaseChoice& database, const Surroundings& around);

}  // namespace tavrel::compare
