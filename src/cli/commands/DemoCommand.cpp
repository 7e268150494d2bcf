#include <array>

#include "cli/Arguments.h"
#include "cli/Output.h"
#include "cli/demo/DemoWriter.h"
#include "platform/FileSystem.h"

namespace tavrel::cli {

namespace {

/// A database that is made under another name first; without Commit nothing of it stays.
class FreshDemo {
  public:
    FreshDemo(std::string path, bool a) : path_(std::move(path)), temporary_(UnusedNameBeside(path_)) {
        if (platform::FileExists(path_) && !IsDemoDatabase(path_)) {
            throw MakeError(errors::kDatabaseExists, {}, path_);
        }
        WriteDemoDatabase(temporary_, a);
    }
    ~FreshDemo() {
        try {
            platform::DeleteFileIfThere(temporary_);
        } catch (const Error&) {
            // The failure that brought us here is the one to report.
        }
    }
    FreshDemo(const FreshDemo&) = delete;
    FreshDemo& operator=(const FreshDemo&) = delete;

    void Commit() { platform::ReplaceFile(temporary_, path_); }
    [[nodiscard]] const std::string& Path() const { return path_; }

  private:
    std::string path_;
    std::string temporary_;
};

class DemoCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "demo"; }
    [[nodiscard]] const char* Description() const override {
        return "비교가 보여 줄 수 있는 차이를 모두 담은 작은 데이터베이스 둘을 만듭니다.";
    }

    void Declare(CLI::App& app) override {
        AddText(app, "DIR", folder_, "", "만들 폴더. 없으면 새로 만듭니다.")->required();
    }

    ExitCode Run() override {
        platform::MakeFolder(folder_);
        FreshDemo a(folder_ + platform::kPathSeparator + "demo-a.mdb", true);
        FreshDemo b(folder_ + platform::kPathSeparator + "demo-b.mdb", false);
        a.Commit();
        b.Commit();
        StandardOutput() << a.Path() << '\n' << b.Path() << '\n';
        return ExitCode::Done;
    }

  private:
    std::string folder_;
};

}  // namespace

std::unique_ptr<Command> MakeDemoCommand() {
    return std::make_unique<DemoCommand>();
}

}  // namespace tavrel::cli
