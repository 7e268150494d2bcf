#include "cli/Usage.h"

#include <algorithm>
#include <iterator>

#include "cli/Failure.h"
#include "cli/Output.h"
#include "report/DisplayText.h"

namespace tavrel::cli {

namespace {

constexpr std::size_t kHelpColumn = 30;

/// CLI11's own pads by bytes, which leaves Hangul out of line.
class KoreanFormatter : public CLI::Formatter {
  public:
    KoreanFormatter() {
        label("Usage", "사용법");
        label("Positionals", "인수");
        label("OPTIONS", "옵션");
        label("SUBCOMMAND", "명령");
        label("SUBCOMMANDS", "명령");
        label("REQUIRED", "(필수)");
    }

    std::string make_option(const CLI::Option* option, bool isPositional) const override {
        return Line(make_option_name(option, isPositional) + make_option_opts(option),
                    make_option_desc(option));
    }
    std::string make_subcommand(const CLI::App* command) const override {
        return Line(command->get_display_name(true), command->get_description());
    }

  private:
    static std::string Line(const std::string& name, const std::string& description) {
        return report::PadRight("  " + name, kHelpColumn) + " " + description + "\n";
    }
};

/// What CLI11 says, taken apart: its sentence holds the name of the argument between two fixed texts.
struct Complaint {
    CLI::ExitCodes error;
    std::string_view before;  ///< text in front of the argument
    std::string_view after;   ///< text behind it
    std::string_view korean;  ///< "|1" stands for the argument
};

// The first line that fits counts.
constexpr Complaint kComplaints[] = {
    {CLI::ExitCodes::RequiredError, "A subcommand", " is required", "명령을 지정하십시오."},
    {CLI::ExitCodes::RequiredError, "", " is required", "|1 인수가 필요합니다."},
    {CLI::ExitCodes::ExtrasError, "The following argument was not expected: ", "", "모르는 인수입니다: |1"},
    {CLI::ExitCodes::ExtrasError, "The following arguments were not expected: ", "", "모르는 인수입니다: |1"},
    {CLI::ExitCodes::ArgumentMismatch, "", ": At Most 1 required", "|1: 한 번만 쓸 수 있습니다."},
    {CLI::ExitCodes::ArgumentMismatch, "", ": 1 required", "|1: 값이 필요합니다."},
    {CLI::ExitCodes::ArgumentMismatch, "", " was given a disallowed flag override",
     "|1: 값을 받지 않는 옵션입니다."},
    {CLI::ExitCodes::ValidationError, "", "", "|1"}};

std::string Filled(std::string_view pattern, std::string_view argument) {
    std::string text(pattern);
    if (const std::size_t at = text.find("|1"); at != std::string::npos) {
        text.replace(at, 2, argument);
    }
    return text;
}

std::string InKorean(const CLI::ParseError& error) {
    const std::string_view said = error.what();
    for (const Complaint& complaint : kComplaints) {
        const std::size_t end = said.find(complaint.after, complaint.before.size());
        if (error.get_exit_code() == static_cast<int>(complaint.error) &&
            said.substr(0, complaint.before.size()) == complaint.before && end != std::string_view::npos) {
            const std::size_t start = complaint.before.size();
            return Filled(complaint.korean,
                          said.substr(start, complaint.after.empty() ? said.npos : end - start));
        }
    }
    return "명령줄이 잘못되었습니다. (" + std::string(said) + ")";
}

/// "tavrel-cli compare"
std::string CalledAs(const CLI::App& app) {
    std::string name = app.get_name();
    for (const CLI::App* command : app.get_subcommands()) {
        name += " " + command->get_name();
    }
    return name;
}

std::string WhatIsWrong(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> unknown = app.remaining();
    if (app.get_subcommands().empty() && !unknown.empty()) {
        return "모르는 명령입니다: " + unknown.front();
    }
    // What looks like an option and is none explains more than the argument that is missing beside it.
    for (const std::string& argument : app.remaining(true)) {
        if (argument.size() > 1 && argument.starts_with('-')) {
            return "모르는 인수입니다: " + argument;
        }
    }
    return InKorean(error);
}

}  // namespace

void PutIntoGroups(CLI::App& command) {
    command.group("명령");
    command.get_help_ptr()->group("옵션");
}

void SpeakKorean(CLI::App& app) {
    app.formatter(std::make_shared<KoreanFormatter>());
    app.option_defaults()->group("옵션");
    app.set_help_flag("-h,--help", "도움말을 보여 줍니다.");
    app.allow_windows_style_options(false);
}

ExitCode EndParsing(const CLI::App& app, const CLI::ParseError& error) {
    if (dynamic_cast<const CLI::CallForHelp*>(&error) != nullptr) {
        StandardOutput() << app.help();
        return ExitCode::Done;
    }
    if (dynamic_cast<const CLI::CallForVersion*>(&error) != nullptr) {
        StandardOutput() << error.what() << '\n';
        return ExitCode::Done;
    }
    Complain(WhatIsWrong(app, error));
    Complain("사용법: " + CalledAs(app) + " --help");
    return ExitCode::Failed;
}

}  // namespace tavrel::cli
