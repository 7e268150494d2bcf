#ifndef _WIN32
#include "support/RunProgram.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/wait.h>

#include "support/TemporaryFolder.h"

namespace tavrel::testing {

namespace {

std::string Quoted(const std::string& argument) {
    std::string quoted = "'";
    for (const char c : argument) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

std::string ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& environment, const std::string& input) {
    const TemporaryFolder folder;
    std::ofstream(folder.File("input"), std::ios::binary) << input;
    const std::string output = folder.File("output");
    const std::string errors = folder.File("errors");
    // Through a pipe, which is no file.
    std::string line = "cat " + Quoted(folder.File("input")) + " | " + environment + " " + Quoted(program);
    for (const std::string& argument : arguments) {
        line += " " + Quoted(argument);
    }
    line += " >" + Quoted(output) + " 2>" + Quoted(errors);
    const int status = std::system(line.c_str());
    return {.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            .output = ReadAll(output),
            .errors = ReadAll(errors)};
}

std::string ProgramFolder() {
    return TAVREL_BIN_DIR;
}

ProgramResult RunCli(const std::vector<std::string>& arguments) {
    return RunProgram(ProgramFolder() + "/tavrel-cli", arguments);
}

}  // namespace tavrel::testing
#endif
