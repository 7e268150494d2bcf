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
#include "platform/SameFile.h"

namespace tavrel::cli {

namespace {

/// Listens to what is sent: writes every statement as one JSON object a line, and knows whether any may have
/// changed something.
class Trace {
  public:
    /// An empty path: nothing is written.
    explicit Trace(const std::string& path) {
        if (!path.empty()) {
            file_ = std::make_unique<ReportFile>(path);
        }
        listening_.emplace([this](modDBsub::StatementKind kind, const std::string& statement) {
            changes_ = changes_ || kind == modDBsub::StatementKind::Execute;
            if (file_) {
                Write(kind, statement);
            }
        });
    }
    [[nodiscard]] bool HasChanges() const { return changes_; }
    /// A trace that ends at a failure is worth keeping too.
    void Keep() {
        listening_.reset();
        if (file_) {
            file_->Commit();
        }
    }

  private:
    void Write(modDBsub::StatementKind kind, const std::string& statement) {
        const nlohmann::ordered_json line = {{"kind", modDBsub::NameOf(kind)}, {"sql", statement}};
        file_->Stream() << line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
    }

    std::unique_ptr<ReportFile> file_;
    std::optional<modDBsub::ListenerScope> listening_;
    bool changes_ = false;
};

/// Shows the step that runs.
class StepProgress {
  public:
    explicit StepProgress(int target) {
        line_.Phase().SetMaximum(target);
        line_.Phase().SetVisible(true);
        patch::ListenToSteps([this](std::int16_t step) {
            step_ = step;
            line_.Phase().SetValue(step);
        });
    }
    ~StepProgress() { patch::ListenToSteps({}); }
    StepProgress(const StepProgress&) = delete;
    StepProgress& operator=(const StepProgress&) = delete;

    /// The last one that has begun; 0 before the first.
    [[nodiscard]] std::int16_t Step() const { return step_; }

  private:
    std::int16_t step_ = 0;
    ProgressLine line_{"패치하는 중"};
};

/// The session on a file that its owner patches, in one transaction: all of it arrives, or nothing.
class PatchSession {
  public:
    PatchSession(const std::string& file, const std::string& password) {
        modDBsub::DBOpenADO(file, password, modDBsub::SessionFile::OnMedium);
        Send("BEGIN TRANSACTION");
    }
    /// Undoes what was not kept.
    ~PatchSession() { modDBsub::gDBConn.reset(); }
    PatchSession(const PatchSession&) = delete;
    PatchSession& operator=(const PatchSession&) = delete;

    /// On the medium when it returns.
    void Keep() const { Send("COMMIT"); }

  private:
    // Past the session, so that the trace, which lists the product's statements, does not have this one.
    static void Send(const char* statement) { modDBsub::gDBConn->Execute(statement); }
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
        if (!trace_.empty() && platform::IsSameFile(trace_, file_)) {
            throw MakeError(errors::kFileExists, {}, "패치할 데이터베이스에는 쓸 수 없음");
        }
        KeptMessages messages;
        const modDBsub::MessagesScope sink(messages);
        const bool patched = Patch(messages);
        return patched ? ExitCode::Done : ExitCode::Failed;
    }

  private:
    bool Patch(const KeptMessages& messages) const {
        const compare::Product& product = *compare::ProductOfCode(product_);
        const PatchSession session(file_, password_.value_or(""));
        Trace trace(trace_);
        std::int16_t step = 0;
        bool patched = false;
        {
            const StepProgress progress(product.target);
            patched = product.ChkDBpatch();
            step = progress.Step();
        }
        messages.ComplainOfAll();
        if (!patched) {
            SayWhereItEnded(product, step);
        } else if (trace.HasChanges()) {
            Keep(session);
        }
        trace.Keep();
        return patched;
    }

    static void Keep(const PatchSession& session) {
        try {
            session.Keep();
        } catch (const Error&) {
            Complain("패치한 내용을 쓰지 못했습니다. 파일은 패치하기 전 그대로입니다.");
            throw;
        }
    }

    static void SayWhereItEnded(const compare::Product& product, std::int16_t step) {
        const std::string place = step == 0 ? "패치를 시작하지 못했습니다."
                                            : "패치 단계 " + std::to_string(step) + "에서 멈추었습니다.";
        Complain(place + " 파일은 패치하기 전 그대로입니다.");
        Complain(compare::WrongProductHint(product));
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
