// Statements typed by a person.
#pragma once

#include <string>

#include "cli/Command.h"
#include "cli/prompt/LineEditor.h"
#include "cli/sql/RunStatements.h"
#include "cli/sql/StatementSplitter.h"

namespace tavrel::cli {

/// A prompt: statements end with ";" and may go over several lines, lines that begin with "." are commands of
/// the prompt itself. Failures are told and the prompt goes on.
class SqlShell {
  public:
    /// Keeps references; `path` and `password` are for the commands that look at the structure.
    SqlShell(SqlConnection& connection, ResultWriter& writer, std::string path, std::string password);
    ExitCode Run();

  private:
    struct DotCommand {
        const char* name;
        const char* arguments;
        const char* description;
        void (SqlShell::*run)(const std::string& argument);
    };
    static const DotCommand kCommands[];

    void Take(const std::string& line);
    void RunDotCommand(const std::string& line);
    void ShowTables(const std::string& argument);
    void ShowSchema(const std::string& argument);
    void ShowHelp(const std::string& argument);
    void Quit(const std::string& argument);

    SqlConnection& connection_;
    ResultWriter& writer_;
    std::string path_;
    std::string password_;
    LineEditor editor_;
    StatementSplitter statements_;
    std::string typed_;  ///< since the last statement's end, on one line
    bool ended_ = false;
};

}  // namespace tavrel::cli
