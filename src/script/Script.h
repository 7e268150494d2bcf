// The script that makes one database's structure like another's.
#pragma once

#include <vector>

#include "details/Differences.h"
#include "script/Steps.h"

namespace tavrel::script {

struct Script {
    std::vector<Step> steps;                ///< to be run
    std::vector<Step> losing;               ///< to be run behind them by those who accept the loss
    std::vector<details::Difference> left;  ///< what is still different when `steps` have been run

    [[nodiscard]] bool Empty() const { return steps.empty() && losing.empty(); }
};

/// `dropping`: what loses data is among the steps, too, and `losing` is empty.  Both databases are only read.
/// Throws Error when they cannot be.
Script MakeScript(jet::Database& a, jet::Database& b, bool dropping);

}  // namespace tavrel::script
