// Product A's migration on our session.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Statements.h"
#include "Stopwatch.h"

namespace tavrel::bench {

/// A database of product A at version 0 that is the session.
class Migration {
  public:
    /// Makes the tables at `path`, without rows; `base` are the statements that made them.
    explicit Migration(const std::string& path);
    ~Migration();
    Migration(const Migration&) = delete;
    Migration& operator=(const Migration&) = delete;

    /// Runs the migration and shows the step on the error output while it goes.  False when it has failed.
    bool Run();

    SentStatements base;
    // ---- of Run
    SentStatements sent;
    std::map<std::int16_t, Cost> steps;  ///< step 0: before the list
    Cost cost;                           ///< of the whole
    std::vector<std::string> messages;   ///< what the user would have been told
};

}  // namespace tavrel::bench
