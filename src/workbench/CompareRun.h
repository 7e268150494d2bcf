// The compare run: check the paths, take both snapshots, compare.
#pragma once

#include <optional>
#include <string>

#include "workbench/WorkbenchControls.h"

namespace tavrel::workbench {

/// Brings copies of the two databases to the latest schema of the selected product.
class WorkingCopies {
  public:
    virtual ~WorkingCopies() = default;
    /// Makes and patches the copies and puts their paths in place of the given ones.  False when a patch
    /// failed, its message having been shown.  Throws Error when a copy cannot be made or opened.
    virtual bool Prepare(WorkbenchControls& controls, std::string& pathA, std::string& pathB) = 0;
    /// Side (0 = A, 1 = B) whose patch made Prepare return false.
    [[nodiscard]] std::size_t FailedSide() const { return failedSide_; }

  protected:
    std::size_t failedSide_ = 0;
};

enum class RunOutcome {
    Stopped,   ///< a message has said why
    Equal,     ///< compared, no differences
    Different  ///< compared, differences found
};

class CompareRun {
  public:
    /// The controls must outlive the run; `copies` (not owned) stands in for the real working copies.
    explicit CompareRun(WorkbenchControls& controls, WorkingCopies* copies = nullptr)
        : controls_(controls), copies_(copies) {}

    /// The command.  Everything it reports goes to the message box, the grid and the progress bars; every
    /// failure of the engine or the file system ends in one message box, with the busy state left.
    void cmdComp_Click();

    /// Of the last run.
    [[nodiscard]] RunOutcome Outcome() const { return outcome_; }
    /// Side (0 = A, 1 = B) whose working copy could not be patched, when that has stopped the last run.
    [[nodiscard]] std::optional<std::size_t> UnpatchedSide() const { return unpatchedSide_; }
    /// The grid was filled by a run that went through.  One that stopped before it touched the grid leaves
    /// that as it is, one that stopped later leaves half a listing.
    [[nodiscard]] bool IsListed() const { return listed_; }
    /// Rows marked by the run that filled the grid.  REQUIRES IsListed().
    [[nodiscard]] int Differences() const { return differences_; }

  private:
    bool PathIsGood(std::size_t side);
    bool PrepareCopies(WorkingCopies& copies, std::string& pathA, std::string& pathB);
    void SnapshotAndCompare(const std::string& pathA, const std::string& pathB);

    WorkbenchControls& controls_;
    WorkingCopies* copies_;
    const char* procedure_ = "";  ///< at work, to be named when it fails
    RunOutcome outcome_ = RunOutcome::Stopped;
    bool listed_ = false;
    int differences_ = 0;
    std::optional<std::size_t> unpatchedSide_;
};

}  // namespace tavrel::workbench
