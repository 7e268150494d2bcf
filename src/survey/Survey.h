// Many databases held against one reference.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "details/Differences.h"
#include "workbench/Headless.h"

namespace tavrel::survey {

enum class State : std::uint8_t { Equal, Different, Failed };

/// What the marked rows of one comparison are about.
struct Tally {
    int tables = 0;                                ///< with a marked row
    int onlyReference = 0;                         ///< fields that the file lacks
    int onlyFile = 0;                              ///< fields that the reference lacks
    std::array<int, compare::kCellCount> cells{};  ///< rows in which the cell differs
    int details = 0;                               ///< differences beyond the rows, when they were asked for
};

struct Outcome {
    std::string path;
    State state = State::Failed;
    int rows = 0;  ///< marked ones
    Tally tally;
    std::string reason;  ///< why the file could not be compared, on one line
};

struct Request {
    workbench::CompareRequest
        compare;  ///< `a` is the reference; of `b` password and table count for every file
    std::vector<std::string> files;
    bool details = false;  ///< indexes and relations are compared, too
};

/// What is done with each comparison.  Both are called from the threads that compare.
class Listener {
  public:
    virtual ~Listener() = default;
    /// A file was compared.  Calls for different files may come at the same time; what is thrown makes the
    /// file one that failed.  `details` is null when they were not asked for.
    virtual void Compared(std::size_t file, const compare::ComparisonResult& result,
                          const std::vector<details::Difference>* details) = 0;
    /// One more file is done, well or not.  Never called twice at the same time.
    virtual void Finished() = 0;
};

/// Compares two files at a time; one that fails does not stop the others.  With a product each file is copied
/// into a folder for temporary files and brought to the latest version there, the reference once; the copies
/// go when they have been compared.  Outcomes come in the order of the files.  Throws Error when the
/// reference cannot be read.
std::vector<Outcome> Run(const Request& request, Listener& listener);

/// The files to compare: a folder stands for the .mdb files in it, by name.  Throws Error when a folder
/// cannot be listed.
std::vector<std::string> FilesOf(const std::vector<std::string>& paths);

}  // namespace tavrel::survey
