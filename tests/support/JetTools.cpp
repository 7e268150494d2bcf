#include "support/JetTools.h"

#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "support/Corpus.h"

namespace tavrel::testing {

namespace {

std::string ToolPath() {
    return (std::filesystem::path(SharedFolder()) / "tools" / "jet4.py").string();
}

std::string RunTool(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), ToolPath());
    const ProgramResult result = RunProgram("python3", arguments);
    if (result.exitCode != 0) {
        throw std::runtime_error("jet4.py failed: " + result.errors + result.output);
    }
    return result.output;
}

}  // namespace

bool HaveJetTools() {
    static const bool have =
        std::filesystem::exists(ToolPath()) && RunProgram("python3", {"--version"}).exitCode == 0;
    return have;
}

std::string StrictFindings(const std::string& file) {
    const ProgramResult result = RunProgram("python3", {ToolPath(), "check", "--strict", file});
    return result.exitCode == 0 ? std::string() : result.output + result.errors;
}

nlohmann::json DumpOf(const std::string& file, const std::string& password) {
    std::vector<std::string> arguments = {"dump", file};
    if (!password.empty()) {
        arguments.insert(arguments.end(), {"--password", password});
    }
    return nlohmann::json::parse(RunTool(arguments));
}

nlohmann::json TableOf(const nlohmann::json& dump, const std::string& name) {
    for (const nlohmann::json& table : dump["tables"]) {
        if (table["name"] == name) {
            return table;
        }
    }
    return {};
}

std::vector<nlohmann::json> RowsOf(const std::string& file, const std::string& table) {
    std::vector<nlohmann::json> rows;
    std::istringstream lines(RunTool({"rows", file, table}));
    for (std::string line; std::getline(lines, line);) {
        rows.push_back(nlohmann::json::parse(line));
    }
    return rows;
}

}  // namespace tavrel::testing
