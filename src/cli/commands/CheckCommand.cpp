#include "cli/Arguments.h"
#include "cli/OpenDatabase.h"
#include "cli/Output.h"
#include "cli/TerminalProgress.h"
#include "report/CheckReport.h"

namespace tavrel::cli {

namespace {

class CheckCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "check"; }
    [[nodiscard]] const char* Description() const override {
        return "파일 전체를 훑어 망가진 곳을 찾습니다. 오류가 있으면 1로 끝납니다.";
    }

    void Declare(CLI::App& app) override {
        AddFile(app, file_);
        AddPassword(app, password_);
        AddFlag(app, "--strict", strict_, "참고 사항이 있어도 1로 끝냄");
        AddFlag(app, "-v,--verbose", counts_, "무엇을 얼마나 보았는지도");
        AddFormat(app, format_, {"text", "json"});
    }

    ExitCode Run() override {
        const jet::CheckReport check = Check();
        if (format_ == "json") {
            report::WriteCheckJson(StandardOutput(), check, file_);
        } else {
            report::WriteCheckText(StandardOutput(), check, counts_, StyleOfStandardOutput());
        }
        const bool found = strict_ ? !check.findings.empty() : check.Count(jet::Finding::Severity::Error) > 0;
        return found ? ExitCode::Found : ExitCode::Done;
    }

  private:
    jet::CheckReport Check() {
        ProgressLine progress("검사하는 중");
        const auto database = OpenToCheck(file_, password_);
        return jet::CheckDatabase(*database, [&](std::uint64_t done, std::uint64_t total) {
            progress.Phase().SetMaximum(static_cast<int>(total));
            progress.Phase().SetValue(static_cast<int>(done));
        });
    }

    std::string file_;
    std::optional<std::string> password_;
    bool strict_ = false;
    bool counts_ = false;
    std::string format_ = "text";
};

}  // namespace

std::unique_ptr<Command> MakeCheckCommand() {
    return std::make_unique<CheckCommand>();
}

}  // namespace tavrel::cli
