#include "cli/Arguments.h"

#include <algorithm>

namespace tavrel::cli {

namespace {

std::string Joined(const std::vector<std::string>& words) {
    std::string joined;
    for (const std::string& word : words) {
        joined += (joined.empty() ? "" : "|") + word;
    }
    return joined;
}

/// Refuses everything but the given words, in Korean.
CLI::Validator OneOf(const std::vector<std::string>& words) {
    return CLI::Validator(
        [words](const std::string& value) -> std::string {
            if (std::find(words.begin(), words.end(), value) != words.end()) {
                return {};
            }
            return "'" + value + "'은(는) 쓸 수 없는 값입니다. " + Joined(words) + " 가운데 하나여야 합니다.";
        },
        "");
}

/// An option of any command that wants a value; a switch wants none.
bool TakesValue(const CLI::App& app, const std::string& name) {
    const std::vector<const CLI::App*> commands = app.get_subcommands([](const CLI::App*) { return true; });
    return std::ranges::any_of(commands, [&](const CLI::App* command) {
        const CLI::Option* option = command->get_option_no_throw(name);
        return option != nullptr && option->get_items_expected_max() > 0;
    });
}

}  // namespace

std::vector<std::string> WithEmptyValuesApart(const CLI::App& app,
                                              const std::vector<std::string>& arguments) {
    std::vector<std::string> apart;
    bool options = true;
    for (const std::string& argument : arguments) {
        options = options && argument != "--";
        const std::string name = argument.substr(0, argument.size() - 1);
        if (options && argument.starts_with("--") && argument.ends_with('=') && TakesValue(app, name)) {
            apart.insert(apart.end(), {name, std::string()});
        } else {
            apart.push_back(argument);
        }
    }
    return apart;
}

CLI::Option* AddText(CLI::App& app, const char* name, std::string& value, const char* valueName,
                     const char* description) {
    return app.add_option(name, value, description)->type_name(valueName);
}

void AddFlag(CLI::App& app, const char* name, bool& value, const char* description) {
    app.add_flag(name, value, description)->disable_flag_override();
}

void AddFile(CLI::App& app, std::string& file) {
    AddText(app, "FILE", file, "", "데이터베이스 파일(.mdb)")->required();
}

void AddPassword(CLI::App& app, std::optional<std::string>& password) {
    app.add_option("--password", password, "데이터베이스 암호")->type_name("암호");
}

void AddChoice(CLI::App& app, const char* name, std::string& value, const char* valueName,
               const std::string& description, const std::vector<std::string>& choices) {
    app.add_option(name, value, description + ": " + Joined(choices) + " (기본값 " + value + ")")
        ->type_name(valueName)
        ->check(OneOf(choices));
}

void AddFormat(CLI::App& app, std::string& format, const std::vector<std::string>& formats) {
    AddChoice(app, "--format", format, "형식", "출력 형식", formats);
}

}  // namespace tavrel::cli
