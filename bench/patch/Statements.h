// Statements as they were sent to the session, so that another engine can be given the same work.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "db/SessionHooks.h"

namespace tavrel::bench {

struct SentStatement {
    std::int16_t step;  ///< 0: around the list
    modDBsub::StatementKind kind;
    std::string text;
};
using SentStatements = std::vector<SentStatement>;

}  // namespace tavrel::bench
