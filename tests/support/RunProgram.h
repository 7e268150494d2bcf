// Runs a program the way a script does: arguments in, what it wrote and its exit code out.
#pragma once

#include <string>
#include <vector>

namespace tavrel::testing {

struct ProgramResult {
    int exitCode = -1;
    std::string output;  ///< standard output
    std::string errors;  ///< standard error
};

/// `program`: a path, or a name that the shell finds.  `environment` goes in front of it, e.g. "NO_COLOR=1".
/// `input` is what it finds on standard input.
ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& environment = {}, const std::string& input = {});

/// Where the programs under test lie.
std::string ProgramFolder();

/// The command line program under test.
ProgramResult RunCli(const std::vector<std::string>& arguments);

}  // namespace tavrel::testing
