#include <set>

#include "cli/Arguments.h"
#include "cli/Failure.h"
#include "cli/Messages.h"
#include "cli/Output.h"
#include "cli/ProductOption.h"
#include "cli/TerminalProgress.h"
#include "cli/commands/CompareMany.h"
#include "compare/SchemaSnapshot.h"
#include "details/ReadSchema.h"
#include "platform/FileSystem.h"
#include "platform/SameFile.h"
#include "report/ComparisonFormats.h"
#include "workbench/Headless.h"

namespace tavrel::cli {

namespace {

class CompareCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "compare"; }
    [[nodiscard]] const char* Description() const override {
        return "두 데이터베이스의 구조를 나란히 놓고 비교합니다. 같으면 0, 다르면 1로 끝납니다.";
    }

    void Declare(CLI::App& app) override {
        AddText(app, "A", request_.a.path, "", "DB A 파일(.mdb). 여러 파일을 비교할 때의 기준")->required();
        AddText(app, "B", request_.b.path, "", "DB B 파일(.mdb), 또는 .mdb 파일이 든 폴더")->required();
        app.add_option("FILE", others_, "기준 A와 비교할 다른 파일과 폴더. 파일마다 한 줄로 보여 줌")
            ->type_name("");
        AddText(app, "--password-a", request_.a.password, "암호", "DB A의 암호");
        AddText(app, "--password-b", request_.b.password, "암호", "DB B의 암호");
        AddText(app, "--table-a", request_.a.table, "테이블", "DB A에서 이 테이블만");
        AddText(app, "--table-b", request_.b.table, "테이블", "DB B에서 이 테이블만");
        AddProduct(app, request_.product, "작업 사본을 이 제품의 최신 버전으로 바꾸어 비교");
        AddFlag(app, "--both-only", request_.bothOnly, "한쪽만 존재하는 필드 제외");
        AddFlag(app, "--index-only", request_.indexOnly, "인덱스만 비교");
        AddFlag(app, "--only-differences", request_.onlyDifferences, "틀린 자료만 보기");
        AddFlag(app, "--details", details_, "인덱스와 관계를 세부까지 비교");
        AddFormat(app, format_, FormatNames());
        AddText(app, "-o,--output", output_, "파일",
                "결과를 이 파일에 씀(끝까지 써야 파일이 생김). 여러 파일의 html은 폴더에");
    }

    ExitCode Run() override {
        if (!others_.empty() || platform::FolderExists(request_.b.path)) {
            return RunMany();
        }
        RefuseToOverwriteInput();
        KeptMessages messages;
        const std::optional<compare::ComparisonResult> result = Compare(messages);
        if (!result) {
            messages.ComplainOfAll();
            return ExitCode::Failed;
        }
        messages.ComplainOfAllButLast();  // the last one is the result, which is in the report
        WarnOfUnknownTables(*result);
        std::optional<report::Details> details;
        if (details_) {
            details = DetailsOf(*result);
        }
        Report(*result, details ? &*details : nullptr);
        const bool equal = result->Differences() == 0 && (!details || details->empty());
        return equal ? ExitCode::Done : ExitCode::Found;
    }

  private:
    ExitCode RunMany() {
        ManyOptions options{.request = {.compare = request_, .files = {request_.b.path}, .details = details_},
                            .format = format_,
                            .output = output_};
        options.request.files.insert(options.request.files.end(), others_.begin(), others_.end());
        return CompareMany(options);
    }

    /// The files that were compared, which may be working copies.
    [[nodiscard]] report::Details DetailsOf(const compare::ComparisonResult& result) const {
        const auto read = [](std::string_view path, const workbench::DatabaseChoice& side) {
            return details::ReadSchema(std::string(path), side.password, side.table);
        };
        return details::BeyondMarks(
            details::Compare(read(result.PathA(), request_.a), read(result.PathB(), request_.b)),
            !request_.indexOnly);
    }

    void RefuseToOverwriteInput() const {
        if (!output_.empty() && (platform::IsSameFile(output_, request_.a.path) ||
                                 platform::IsSameFile(output_, request_.b.path))) {
            throw MakeError(errors::kFileExists, {}, "비교할 데이터베이스에는 결과를 쓸 수 없음");
        }
    }

    std::optional<compare::ComparisonResult> Compare(KeptMessages& messages) {
        ProgressLine progress("비교하는 중");
        return workbench::CompareDatabases(
            request_, {.messages = messages, .phase = progress.Phase(), .overall = progress.Overall()});
    }

    /// A mistyped name would look like two equal databases.
    void WarnOfUnknownTables(const compare::ComparisonResult& result) const {
        // Of a product comparison these are the working copies.
        const std::string pathA(result.PathA());
        const std::string pathB(result.PathB());
        std::set<std::string> names = {request_.a.table, request_.b.table};
        names.erase("");
        for (const std::string& table : names) {
            if (!compare::ListsTable(pathA, request_.a.password, table) &&
                !compare::ListsTable(pathB, request_.b.password, table)) {
                Complain("경고: 두 데이터베이스 어느 쪽에도 '" + table + "' 테이블이 없습니다.");
            }
        }
    }

    void Report(const compare::ComparisonResult& result, const report::Details* details) const {
        const report::ComparisonFormat& format = *report::ComparisonFormatNamed(format_);
        if (output_.empty()) {
            format.write(StandardOutput(), result, details, StyleOfStandardOutput());
            return;
        }
        ReportFile file(output_);
        format.writeFile(file.Stream(), result, details, {});
        file.Commit();
    }

    static std::vector<std::string> FormatNames() {
        std::vector<std::string> names;
        for (const report::ComparisonFormat& format : report::ComparisonFormats()) {
            names.emplace_back(format.name);
        }
        return names;
    }

    workbench::CompareRequest request_;
    std::vector<std::string> others_;
    bool details_ = false;
    std::string format_{report::ComparisonFormats().front().name};
    std::string output_;
};

}  // namespace

std::unique_ptr<Command> MakeCompareCommand() {
    return std::make_unique<CompareCommand>();
}

}  // namespace tavrel::cli
