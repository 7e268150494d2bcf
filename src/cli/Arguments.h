// Arguments that several commands have.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/Command.h"

namespace tavrel::cli {

/// The positional argument FILE.
void AddFile(CLI::App& app, std::string& file);
/// --password
void AddPassword(CLI::App& app, std::optional<std::string>& password);
/// --format, one of `formats`; `format` holds the default.
void AddFormat(CLI::App& app, std::string& format, const std::vector<std::string>& formats);
/// A switch.
void AddFlag(CLI::App& app, const char* name, bool& value, const char* description);
/// An option whose value is one of `choices`; `value` holds the default.
void AddChoice(CLI::App& app, const char* name, std::string& value, const char* valueName,
               const std::string& description, const std::vector<std::string>& choices);
/// An option with a text as value.
CLI::Option* AddText(CLI::App& app, const char* name, std::string& value, const char* valueName,
                     const char* description);

/// "--name=" in two, the name and the empty value: the parser would take the next argument for its value.
std::vector<std::string> WithEmptyValuesApart(const CLI::App& app, const std::vector<std::string>& arguments);

}  // namespace tavrel::cli
