// Working copies of the two databases, brought to the latest schema of a product.
#pragma once

#include <memory>
#include <string>

#include "platform/File.h"
#include "workbench/CompareRun.h"

namespace tavrel::workbench {

/// Where a run's copies lie: all formed from DB A's path text, in which every ".mdb" is replaced.
struct WorkingPaths {
    explicit WorkingPaths(const std::string& pathA);

    std::string folder;
    std::string copyA;
    std::string copyB;
};

/// The real thing.  The two databases are opened for reading only, and a copy never takes the place of one of
/// them.  The copies stay after the run, and the session on the second one stays open.
/// The working folder belongs to this object from Prepare on: another one, in whatever program, gets Error 70
/// for it.  The copies get the permissions of what they are copied from, a folder that is made none that
/// these lack.
class PatchedCopies : public WorkingCopies {
  public:
    bool Prepare(WorkbenchControls& controls, std::string& pathA, std::string& pathB) override;

  private:
    void MakeCopies(const WorkingPaths& work, const std::string& pathA, const std::string& pathB);

    std::unique_ptr<platform::File> lock_;
};

}  // namespace tavrel::workbench
