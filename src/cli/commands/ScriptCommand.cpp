#include "cli/Arguments.h"
#include "cli/Failure.h"
#include "cli/Messages.h"
#include "cli/Output.h"
#include "cli/ProductOption.h"
#include "cli/TerminalProgress.h"
#include "details/Words.h"
#include "jet/database/Database.h"
#include "platform/SameFile.h"
#include "report/ScriptText.h"
#include "workbench/Headless.h"

namespace tavrel::cli {

namespace {

class ScriptCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "script"; }
    [[nodiscard]] const char* Description() const override {
        return "A의 구조를 B처럼 만드는 SQL을 씁니다. 할 일이 없으면 0, 있으면 1로 끝납니다.";
    }

    void Declare(CLI::App& app) override {
        AddText(app, "A", request_.a.path, "", "바꿀 데이터베이스 파일(.mdb)")->required();
        AddText(app, "B", request_.b.path, "", "본보기 데이터베이스 파일(.mdb)")->required();
        AddText(app, "--password-a", request_.a.password, "암호", "DB A의 암호");
        AddText(app, "--password-b", request_.b.password, "암호", "DB B의 암호");
        AddProduct(app, request_.product, "이 제품의 최신 버전으로 바꾼 작업 사본끼리");
        AddFlag(app, "--drop", dropping_, "자료를 잃는 문장도 실행할 문장으로 씀");
        AddText(app, "-o,--output", output_, "파일", "SQL을 이 파일에 씀(끝까지 써야 파일이 생김)");
    }

    ExitCode Run() override {
        RefuseToOverwriteInput();
        if (!FindDatabases()) {
            return ExitCode::Failed;
        }
        const script::Script script = Make();
        Write(script);
        TellWhatIsLeft(script);
        return script.Empty() ? ExitCode::Done : ExitCode::Found;
    }

  private:
    void RefuseToOverwriteInput() const {
        if (!output_.empty() && (platform::IsSameFile(output_, request_.a.path) ||
                                 platform::IsSameFile(output_, request_.b.path))) {
            throw MakeError(errors::kFileExists, {}, "데이터베이스에는 SQL을 쓸 수 없음");
        }
    }

    /// The comparison finds out whether both can be read, and makes the working copies of a product.
    bool FindDatabases() {
        KeptMessages messages;
        ProgressLine progress("비교하는 중");
        const auto result = workbench::CompareDatabases(
            request_, {.messages = messages, .phase = progress.Phase(), .overall = progress.Overall()});
        progress.Clear();
        if (!result) {
            messages.ComplainOfAll();
            return false;
        }
        messages.ComplainOfAllButLast();
        pathA_ = result->PathA();
        pathB_ = result->PathB();
        return true;
    }

    [[nodiscard]] script::Script Make() const {
        const auto open = [](const std::string& path, const std::string& password) {
            return jet::Database::Open(path, {.password = password});
        };
        const auto a = open(pathA_, request_.a.password);
        const auto b = open(pathB_, request_.b.password);
        return script::MakeScript(*a, *b, dropping_);
    }

    void Write(const script::Script& script) const {
        if (output_.empty()) {
            report::WriteScript(StandardOutput(), script, pathA_, pathB_);
            return;
        }
        ReportFile file(output_);
        report::WriteScript(file.Stream(), script, pathA_, pathB_);
        file.Commit();
    }

    static void TellWhatIsLeft(const script::Script& script) {
        StandardOutput().flush();
        std::size_t losing = 0;
        for (const script::Step& step : script.losing) {
            losing += step.statements.size();
        }
        if (losing > 0) {
            Complain("자료를 잃는 문장 " + std::to_string(losing) +
                     "개는 주석으로 두었습니다. 실행하려면 --drop을 주십시오.");
        }
        if (!script.left.empty()) {
            Complain("이 스크립트를 실행한 뒤에도 남는 차이 " + std::to_string(script.left.size()) + "건:");
            for (const details::Difference& difference : script.left) {
                Complain(details::InWords(difference));
            }
        }
    }

    workbench::CompareRequest request_;
    bool dropping_ = false;
    std::string output_;
    std::string pathA_, pathB_;  ///< of the files that are compared, which may be working copies
};

}  // namespace

std::unique_ptr<Command> MakeScriptCommand() {
    return std::make_unique<ScriptCommand>();
}

}  // namespace tavrel::cli
