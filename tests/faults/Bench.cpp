#include "Bench.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "jet/check/Check.h"
#include "jet/database/Database.h"
#include "report/DatabaseDump.h"
#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "text/Error.h"

namespace tavrel::testing {

namespace {

constexpr char kMissing[] = "(missing)";

bool IsDatabase(const std::string& name) {
    return name.ends_with(".mdb");
}

/// In the working folder of a comparison: made anew by each and read by nobody else.
bool IsWorkingCopy(const std::string& name) {
    return name.find("temp/temp") != std::string::npos;
}

/// Indexes without a name of their own get one at random.
std::string WithoutRandomNames(std::string dump) {
    const std::string begin = "\"Index_";
    for (std::size_t at = dump.find(begin); at != std::string::npos; at = dump.find(begin, at + 1)) {
        dump.erase(at + begin.size(), dump.find('"', at + 1) - at - begin.size());
    }
    return dump;
}

/// Structure and rows; or why it is no sound database.
std::string StateOfDatabase(const std::string& path) {
    try {
        const auto database = jet::Database::Open(path, {.password = {}, .checkPassword = false});
        std::ostringstream dump;
        report::WriteDump(dump, *database);
        const jet::CheckReport check = jet::CheckDatabase(*database);
        for (const jet::Finding& finding : check.findings) {
            if (finding.severity == jet::Finding::Severity::Error) {
                return "(unsound) " + finding.where + ": " + finding.text;
            }
        }
        return WithoutRandomNames(dump.str());
    } catch (const Error& error) {
        return "(unreadable) " + std::to_string(error.Number()) + " " + error.Description();
    }
}

}  // namespace

bool WholeRun() {
    return std::getenv("TAVREL_FAULTS_WHOLE") != nullptr;
}

Bench::Bench(const Scenario& scenario) : scenario_(scenario) {
    Put({});
    for (const std::vector<std::string>& command : scenario.prepare) {
        if (const ProgramResult made = Run("", command); made.exitCode != 0) {
            throw std::runtime_error(made.errors);
        }
    }
    before_ = ReadFolder(Root());
    std::erase_if(before_, [&](const auto& file) { return !file.first.starts_with(scenario.keep); });
    std::vector<FolderContent> stages = {before_};
    for (std::size_t left = scenario.statements; left-- > 0;) {
        PutBefore();
        clean_ =
            Run("", {scenario.command.begin(), scenario.command.end() - static_cast<std::ptrdiff_t>(left)});
        if (clean_.exitCode > 1 || clean_.exitCode < 0) {
            throw std::runtime_error(clean_.errors);
        }
        stages.push_back(ReadFolder(Root()));
    }
    for (const FolderContent& stage : stages) {
        for (const auto& file : stage) {
            names_.insert(file.first);
        }
    }
    for (const FolderContent& stage : stages) {
        Put(stage);
        for (const std::string& name : names_) {
            if (!IsWorkingCopy(name)) {
                states_[name].push_back(StateOf(name));
            }
        }
    }
}

ProgramResult Bench::Run(const std::string& environment, const std::vector<std::string>& command) {
    std::vector<std::string> arguments = command;
    for (std::string& argument : arguments) {
        argument = argument.starts_with('@') ? Root() + argument.substr(1) : argument;
    }
    return RunProgram(
        ProgramFolder() + "/tavrel-cli", arguments,
        "LD_PRELOAD='" TAVREL_FAULT_LIBRARY "' FAULTS_ROOT='" + folder_.File("files") + "' " + environment);
}

std::string Bench::StateOf(const std::string& name) const {
    const std::string path = Root() + name;
    if (!std::filesystem::exists(path)) {
        return kMissing;
    }
    return IsDatabase(name) ? StateOfDatabase(path) : ReadWholeFile(path);
}

std::string Bench::WrongFiles(bool done) {
    std::string wrong;
    for (const auto& file : states_) {
        wrong += WrongFile(file.first, done);
    }
    return wrong;
}

std::string Bench::WrongFile(const std::string& name, bool done) {
    const std::vector<std::string>& allowed = states_[name];
    const std::string state = StateOf(name);
    if (done && state != allowed.back()) {
        return name + " is not what it was to become: " + state.substr(0, 200);
    }
    if (std::ranges::find(allowed, state) == allowed.end()) {
        return name + " is neither as before nor as after: " + state.substr(0, 200);
    }
    if (state == kMissing || !IsDatabase(name)) {
        return {};
    }
    try {
        jet::Database::OpenForChanges(Root() + name, {.password = {}, .checkPassword = false});
    } catch (const Error& error) {
        return name + " cannot be opened for changing: " + error.Description();
    }
    if (std::filesystem::exists(Root() + name + "-journal")) {
        return name + " keeps its journal";
    }
    return StateOf(name) == state ? CheckedElsewhere(name)
                                  : name + " changes when it is opened: " + StateOf(name).substr(0, 200);
}

std::string Bench::CheckedElsewhere(const std::string& name) {
    if (!WholeRun() || !HaveJetTools()) {
        return {};
    }
    const bool isNew = soundElsewhere_.insert(std::hash<std::string>()(ReadWholeFile(Root() + name))).second;
    return isNew ? StrictFindings(Root() + name) : std::string();
}

std::set<std::string> Bench::Leftovers() const {
    std::set<std::string> leftovers;
    for (const auto& file : ReadFolder(Root())) {
        if (!names_.contains(file.first)) {
            leftovers.insert(file.first);
        }
    }
    return leftovers;
}

bool Bench::IsBefore() {
    return std::ranges::all_of(states_,
                               [&](const auto& file) { return StateOf(file.first) == file.second.front(); });
}

}  // namespace tavrel::testing
