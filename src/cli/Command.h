// One command of the program.
#pragma once

#include <memory>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace tavrel::cli {

/// What the program ends with.
enum class ExitCode : int {
    Done = 0,   ///< equal, nothing found, finished
    Found = 1,  ///< different, or findings
    Failed = 2  ///< a message on standard error says why
};

class Command {
  public:
    virtual ~Command() = default;
    [[nodiscard]] virtual const char* Name() const = 0;
    /// One line for the list of commands.
    [[nodiscard]] virtual const char* Description() const = 0;
    /// Adds arguments and options; the members they fill are read by Run.
    virtual void Declare(CLI::App& app) = 0;
    /// Throws Error and whatever else goes wrong.
    virtual ExitCode Run() = 0;
};

std::unique_ptr<Command> MakeSchemaCommand();
std::unique_ptr<Command> MakeCompareCommand();
std::unique_ptr<Command> MakeScriptCommand();
std::unique_ptr<Command> MakePatchCommand();
std::unique_ptr<Command> MakeTablesCommand();
std::unique_ptr<Command> MakeRowsCommand();
std::unique_ptr<Command> MakeSqlCommand();
std::unique_ptr<Command> MakeInfoCommand();
std::unique_ptr<Command> MakeCheckCommand();
std::unique_ptr<Command> MakeDumpCommand();
std::unique_ptr<Command> MakeCompactCommand();
std::unique_ptr<Command> MakeCreateCommand();
std::unique_ptr<Command> MakeDemoCommand();

/// Every command, in the order of the help text.
std::vector<std::unique_ptr<Command>> AllCommands();

}  // namespace tavrel::cli
