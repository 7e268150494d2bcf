// One command, run over and over on the same files while something goes wrong, and what may come of it.
#pragma once

#include <map>
#include <set>
#include <string>
#include <unordered_map>

#include "Folder.h"
#include "Scenario.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {

class Bench {
  public:
    /// Runs the command undisturbed, to learn what it does.
    explicit Bench(const Scenario& scenario);

    [[nodiscard]] const FolderContent& Before() const { return before_; }
    [[nodiscard]] std::string Root() const { return folder_.File("files") + "/"; }
    [[nodiscard]] int ExitCode() const { return clean_.exitCode; }

    void PutBefore() { Put(before_); }
    void Put(const FolderContent& content) { WriteFolder(Root(), content); }
    /// `environment`: what the fault library is asked for.
    ProgramResult Run(const std::string& environment) { return Run(environment, scenario_.command); }

    /// What is wrong with the files: none may be anything but what it was or what it was to become (when
    /// `done`: only that), and whoever opens a database next for changing finds the same.  Empty: nothing.
    std::string WrongFiles(bool done);
    /// Files that were not there, and are not there after an undisturbed run.
    std::set<std::string> Leftovers() const;
    /// No file has become what it was to become.
    bool IsBefore();

  private:
    ProgramResult Run(const std::string& environment, const std::vector<std::string>& command);
    std::string StateOf(const std::string& name) const;
    std::string WrongFile(const std::string& name, bool done);
    std::string CheckedElsewhere(const std::string& name);

    const Scenario& scenario_;
    TemporaryFolder folder_;
    FolderContent before_;
    ProgramResult clean_;
    std::set<std::string> names_;  ///< there before or after
    /// Those of each file that matters: the first is before, the last is after.
    std::map<std::string, std::vector<std::string>> states_;
    std::set<std::size_t> soundElsewhere_;  ///< digests of files that the independent checker has seen
};

/// Everything is tried, not samples only.
bool WholeRun();

}  // namespace tavrel::testing
