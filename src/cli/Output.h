// Where reports go: standard output, or a file that is written whole or not at all.
#pragma once

#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

#include "platform/File.h"
#include "report/TextTable.h"

namespace tavrel::cli {

/// Standard output; a write that fails throws std::ios_base::failure.
std::ostream& StandardOutput();

/// Colours and cut cells on a terminal, neither elsewhere; no colours when the environment variable NO_COLOR
/// is set.
report::TextStyle StyleOfStandardOutput();

/// A file that takes its name only when it is finished: until then it lies beside it under another name.
class ReportFile {
  public:
    /// Throws Error when the file cannot be made.
    explicit ReportFile(const std::string& path);
    /// Takes the unfinished file away.
    ~ReportFile();
    ReportFile(const ReportFile&) = delete;
    ReportFile& operator=(const ReportFile&) = delete;

    /// Failures to write are thrown as Error.
    std::ostream& Stream() { return *stream_; }
    /// Puts the finished file in its place.
    void Commit();

  private:
    std::string path_;
    std::string temporary_;  ///< empty: written in place
    std::unique_ptr<std::streambuf> buffer_;
    std::unique_ptr<std::ostream> stream_;
};

}  // namespace tavrel::cli
