#include <nlohmann/json.hpp>

#include "cli/Arguments.h"
#include "cli/Failure.h"
#include "cli/Messages.h"
#include "cli/Output.h"
#include "cli/ProductOption.h"
#include "cli/TerminalProgress.h"
#include "compare/Products.h"
#include "db/Session.h"
#include "patch/Runner.h"

namespace tavrel::cli {

namespace {

/// Writes every statement as one JSON object a line.
class Trace {
  public:
    /// An empty path: no trace.
    explicit Trace(const std::string& path) {
        if (!path.empty()) {
            file_ = std::make_unique<ReportFile>(path);
            listening_.emplace([this](modDBsub::StatementKind kind, const std::string& statement) {
                const nlohmann::ordered_json line = {{"kind", modDBsub::NameOf(kind)}, {"sql", statement}};
                file_->Stream() << line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)
                                << '\n';
            });
        }
    }
    /// A trace that ends at a failure is worth keeping too.
    void Keep() {
        listening_.reset();
        if (file_) {
            file_->Commit();
        }
    }

  private:
    std::unique_ptr<ReportFile> file_;
    std::optional<modDBsub::ListenerScope> listening_;
};

/// Shows the step that runs.
class StepProgress {
  public:
    explicit StepProgress(int target) {
        line_.Phase().SetMaximum(target);
        line_.Phase().SetVisible(true);
        patch::ListenToSteps([this](std::int16_t step) { line_.Phase().SetValue(step); });
    }
    ~StepProgress() { patch::ListenToSteps({}); }
    StepProgress(const StepProgress&) = delete;
    StepProgress& operator=(const StepProgress&) = delete;

  private:
    ProgressLine line_{"패치하는 중"};
};

class PatchCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "patch"; }
    [[nodiscard]] const char* Description() const override {
        return "데이터베이스 파일 자체를 제품의 최신 버전으로 바꿉니다.";
    }

    void Declare(CLI::App& app) override {
        AddFile(app, file_);
        AddProduct(app, product_, "제품")->required();
        AddPassword(app, password_);
        AddText(app, "--trace", trace_, "파일", "보낸 SQL 문을 한 줄에 하나씩 JSON으로 이 파일에 씀");
    }

    ExitCode Run() override {
        if (!trace_.empty() && IsSameFile(trace_, file_)) {
            throw MakeError(errors::kFileExists, {}, "패치할 데이터베이스에는 쓸 수 없음");
        }
        KeptMessages messages;
        const bool patched = Patch(messages);
        messages.ComplainOfAll();
        return patched ? ExitCode::Done : ExitCode::Failed;
    }

  private:
    bool Patch(KeptMessages& messages) {
        const modDBsub::MessagesScope sink(messages);
        const compare::Product& product = *compare::ProductOfCode(product_);
        modDBsub::DBOpenADO(file_, password_.value_or(""));
        Trace trace(trace_);
        bool patched = false;
        {
            const StepProgress progress(product.target);
            patched = product.ChkDBpatch();
        }
        modDBsub::gDBConn.reset();  // the file is whole before the command says so
        trace.Keep();
        return patched;
    }

    std::string file_;
    std::string product_;
    std::optional<std::string> password_;
    std::string trace_;
};

}  // namespace

std::unique_ptr<Command> MakePatchCommand() {
    return std::make_unique<PatchCommand>();
}

}  // namespace tavrel::cli
