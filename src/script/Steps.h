// From what a structure is to what it is to become: statements in an order that works.
#pragma once

#include <string>
#include <vector>

#include "details/Schema.h"

namespace tavrel::jet {
class Database;
}

namespace tavrel::script {

/// Statements that belong together, and why they are there.
struct Step {
    std::string reason;  ///< one line for people
    std::vector<std::string> statements;
};

/// Relations off, indexes off, tables and columns changed, indexes on, relations on.  REQUIRES: `to` comes
/// from Reach.  `rows`: the database that is `from`, for counting the rows that a loss would meet.
std::vector<Step> StepsBetween(const details::Schema& from, const details::Schema& to, jet::Database& rows);

}  // namespace tavrel::script
