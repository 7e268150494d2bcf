#include <algorithm>
#include <new>

#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Failure.h"
#include "cli/Output.h"
#include "cli/Usage.h"
#include "platform/Console.h"

namespace tavrel::cli {

namespace {

constexpr char kProgram[] = "tavrel-cli";

void Declare(CLI::App& app, const std::vector<std::unique_ptr<Command>>& commands) {
    app.name(kProgram);
    app.set_version_flag("--version", std::string(kProgram) + " " + TAVREL_VERSION, "버전을 보여 줍니다.");
    for (const std::unique_ptr<Command>& command : commands) {
        CLI::App* sub = app.add_subcommand(command->Name(), command->Description());
        PutIntoGroups(*sub);
        command->Declare(*sub);
    }
    // Exactly one command is taken: what follows it is a file, even where a command has that name.
    app.require_subcommand(1);
}

ExitCode RunChosen(const CLI::App& app, const std::vector<std::unique_ptr<Command>>& commands) {
    for (const std::unique_ptr<Command>& command : commands) {
        if (app.got_subcommand(command->Name())) {
            return command->Run();
        }
    }
    return ExitCode::Failed;
}

/// `arguments`: program name first.
ExitCode RunProgram(std::vector<std::string> arguments) {
    const std::vector<std::unique_ptr<Command>> commands = AllCommands();
    CLI::App app("두 데이터베이스(.mdb)의 구조를 비교하고, 파일을 살펴보고, 검사하고, 만듭니다.");
    SpeakKorean(app);
    Declare(app, commands);
    arguments = WithEmptyValuesApart(app, arguments);
    // The parser wants the arguments in reverse order and without the name of the program.
    std::reverse(arguments.begin(), arguments.end());
    if (!arguments.empty()) {
        arguments.pop_back();
    }
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        return EndParsing(app, error);
    }
    return RunChosen(app, commands);
}

}  // namespace

}  // namespace tavrel::cli

int main(int argc, char** argv) {
    using namespace tavrel;
    platform::PassBytesUnchanged();
    try {
        return static_cast<int>(
            cli::RunGuarded([&] { return cli::RunProgram(platform::CommandLine(argc, argv)); }));
    } catch (const std::bad_alloc&) {
        cli::SayThatMemoryRanOut();
        return static_cast<int>(cli::ExitCode::Failed);
    } catch (...) {
        // Not even the message could be written: the exit code has to say it.
        return static_cast<int>(cli::ExitCode::Failed);
    }
}
