// Working copies of the two databases, brought to the latest schema of a product.
#pragma once

#include <string>

#include "compare/CompareRun.h"

namespace tavrel::compare {

/// Where a run's copies lie: all formed from DB A's path text, in which every ".mdb" is replaced.
struct WorkingPaths {
    explicit WorkingPaths(const std::string& pathA);

    std::string folder;
    std::string copyA;
    std::string copyB;
};

/// The real thing.  The two databases are opened for reading only, and a copy never takes the place of one of
/// them.  The copies stay after the run, and the session on the second one stays open.
class PatchedCopies : public WorkingCopies {
  public:
    bool Prepare(WorkbenchControls& controls, std::string& pathA, std::string& pathB) override;
};

}  // namespace tavrel::compare
