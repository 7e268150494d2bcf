#include "cli/Command.h"

namespace tavrel::cli {

std::vector<std::unique_ptr<Command>> AllCommands() {
    using Maker = std::unique_ptr<Command> (*)();
    constexpr Maker kMakers[] = {MakeSchemaCommand, MakeCompareCommand, MakeScriptCommand,  MakePatchCommand,
                                 MakeTablesCommand, MakeRowsCommand,    MakeSqlCommand,     MakeInfoCommand,
                                 MakeCheckCommand,  MakeDumpCommand,    MakeCompactCommand, MakeCreateCommand,
                                 MakeDemoCommand};
    std::vector<std::unique_ptr<Command>> commands;
    for (const Maker make : kMakers) {
        commands.push_back(make());
    }
    return commands;
}

}  // namespace tavrel::cli
