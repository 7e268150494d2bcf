// compare with a reference and many files.
#pragma once

#include <string>

#include "cli/Command.h"
#include "survey/Survey.h"

namespace tavrel::cli {

struct ManyOptions {
    survey::Request request;  ///< its files are what was named, folders among them
    std::string format;       ///< text, csv, json or html
    std::string output;       ///< a file; a folder for html; empty: standard output
};

/// A line for each file and a total, and with html a page for each file in the output folder.  Done when all
/// are equal, Found when one differs, Failed when one could not be read.  Throws Error.
ExitCode CompareMany(const ManyOptions& options);

}  // namespace tavrel::cli
