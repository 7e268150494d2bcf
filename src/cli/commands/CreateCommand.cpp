#include "cli/Arguments.h"
#include "cli/Output.h"
#include "jet/database/Database.h"

namespace tavrel::cli {

namespace {

class CreateCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "create"; }
    [[nodiscard]] const char* Description() const override { return "빈 데이터베이스를 새로 만듭니다."; }

    void Declare(CLI::App& app) override {
        AddText(app, "FILE", file_, "", "만들 파일(.mdb). 이미 있으면 만들지 않습니다.")->required();
        AddChoice(app, "--sort", sort_, "순서", "정렬 순서", {"korean", "general"});
        AddText(app, "--password", password_, "암호", "데이터베이스 암호");
    }

    ExitCode Run() override {
        const std::uint16_t sortOrder = sort_ == "general" ? jet::kSortGeneral : jet::kSortKorean;
        const auto database = jet::Database::Create(
            file_, {.sortOrder = sortOrder, .password = password_, .created = std::nullopt});
        database->Flush();
        StandardOutput() << "만들었습니다: " << file_ << '\n';
        return ExitCode::Done;
    }

  private:
    std::string file_;
    std::string sort_ = "korean";
    std::string password_;
};

}  // namespace

std::unique_ptr<Command> MakeCreateCommand() {
    return std::make_unique<CreateCommand>();
}

}  // namespace tavrel::cli
