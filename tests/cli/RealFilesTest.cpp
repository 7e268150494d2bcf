// Real databases: what the program prints against what the independent reader prints, character by character.
#include <filesystem>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "support/Corpus.h"
#include "support/JetTools.h"
#include "support/RunProgram.h"

namespace tavrel::testing {
namespace {

using ::testing::HasSubstr;

std::string NameOf(const std::string& file) {
    return std::filesystem::path(file).filename().string();
}

bool IsJet3(const std::string& file) {
    return NameOf(file).starts_with("jet3");
}

ProgramResult RunReader(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), SharedFolder() + "/tools/jet4.py");
    return RunProgram("python3", arguments);
}

TEST(RealFiles, DumpIsTheIndependentReadersDump) {
    TAVREL_NEEDS_CORPUS();
    TAVREL_NEEDS_JET_TOOLS();
    for (const std::string& file : CorpusFiles()) {
        const ProgramResult ours = RunCli({"dump", file, "--format", "json"});
        const ProgramResult theirs = RunReader({"dump", file});
        EXPECT_EQ(ours.exitCode, theirs.exitCode) << file << ours.errors;
        EXPECT_TRUE(ours.output == theirs.output) << NameOf(file) << ": the dumps differ";
    }
}

TEST(RealFiles, RowsAreTheIndependentReadersRows) {
    TAVREL_NEEDS_CORPUS();
    TAVREL_NEEDS_JET_TOOLS();
    for (const char* name : {"campus-navi-ko", "conference-zhtw", "billing", "library-ko", "course-1"}) {
        const std::string file = SharedFolder() + "/corpus/" + name + ".mdb";
        const auto list = nlohmann::json::parse(RunCli({"tables", file, "--format", "json", "--all"}).output);
        for (const nlohmann::json& table : list["tables"]) {
            const std::string tableName = table["table"];
            const ProgramResult ours = RunCli({"rows", file, tableName});
            const ProgramResult theirs = RunReader({"rows", file, tableName});
            EXPECT_EQ(ours.exitCode, theirs.exitCode) << name << ' ' << tableName;
            EXPECT_TRUE(ours.output == theirs.output) << name << ' ' << tableName << ": the rows differ";
        }
    }
}

TEST(RealFiles, CheckFindsErrorsWhereTheIndependentReaderDoes) {
    TAVREL_NEEDS_CORPUS();
    TAVREL_NEEDS_JET_TOOLS();
    for (const std::string& file : CorpusFiles()) {
        EXPECT_EQ(RunCli({"check", file}).exitCode, RunReader({"check", file}).exitCode) << NameOf(file);
    }
}

TEST(RealFiles, OldVersionIsRefused) {
    TAVREL_NEEDS_CORPUS();
    for (const std::string& file : CorpusFiles()) {
        if (!IsJet3(file)) {
            continue;
        }
        for (const char* command : {"schema", "tables", "info", "check", "dump"}) {
            const ProgramResult result = RunCli({command, file});
            EXPECT_EQ(result.exitCode, 2) << command;
            EXPECT_THAT(result.errors, HasSubstr("3041")) << command;
        }
    }
}

TEST(RealFiles, EveryFileEqualsItself) {
    TAVREL_NEEDS_CORPUS();
    const std::pair<std::string, std::string> passwords[] = {{"hotel.mdb", "12345"},
                                                             {"library-ko.mdb", "Library"}};
    for (const std::string& file : CorpusFiles()) {
        std::vector<std::string> arguments = {"compare", file, file};
        for (const auto& [name, password] : passwords) {
            if (NameOf(file) == name) {
                arguments.insert(arguments.end(), {"--password-a", password, "--password-b", password});
            }
        }
        EXPECT_EQ(RunCli(arguments).exitCode, IsJet3(file) ? 2 : 0) << NameOf(file);
    }
}

}  // namespace
}  // namespace tavrel::testing
