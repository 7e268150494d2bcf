#include "support/RunProgram.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

#ifndef _WIN32
#include <sys/wait.h>
#endif

#include "support/TemporaryFolder.h"

namespace tavrel::testing {

namespace {

std::string Quoted(const std::string& argument) {
#ifdef _WIN32
    return "\"" + argument + "\"";
#else
    std::string quoted = "'";
    for (const char c : argument) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
#endif
}

std::string ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

int ExitCodeOf(int status) {
#ifdef _WIN32
    return status;
#else
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
}

}  // namespace

ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& environment) {
    const TemporaryFolder folder;
    const std::string output = folder.File("output");
    const std::string errors = folder.File("errors");
    std::string line = environment + " " + Quoted(program);
    for (const std::string& argument : arguments) {
        line += " " + Quoted(argument);
    }
    line += " >" + Quoted(output) + " 2>" + Quoted(errors) + " </dev/null";
    const int status = std::system(line.c_str());
    return {.exitCode = ExitCodeOf(status), .output = ReadAll(output), .errors = ReadAll(errors)};
}

std::string ProgramFolder() {
    return TAVREL_BIN_DIR;
}

ProgramResult RunCli(const std::vector<std::string>& arguments) {
    return RunProgram(ProgramFolder() + "/tavrel-cli", arguments);
}

}  // namespace tavrel::testing
