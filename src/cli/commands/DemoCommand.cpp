#include <functional>

#include "cli/Arguments.h"
#include "cli/Output.h"
#include "cli/demo/DemoWriter.h"
#include "cli/demo/ProductDemo.h"
#include "platform/File.h"
#include "platform/FileSystem.h"
#include "platform/UnusedName.h"

namespace tavrel::cli {

namespace {

/// A database that is made under another name first; without Commit nothing of it stays.
class FreshDemo {
  public:
    FreshDemo(std::string path, const std::function<void(const std::string&)>& write)
        : path_(std::move(path)), temporary_(platform::UnusedNameBeside(path_)) {
        replaces_ = platform::FileExists(path_);
        if (replaces_ && !IsDemoDatabase(path_) && !IsProductDemo(path_)) {
            throw MakeError(errors::kDatabaseExists, {}, path_);
        }
        try {
            write(temporary_);
        } catch (...) {
            Remove();
            throw;
        }
    }
    ~FreshDemo() { Remove(); }
    FreshDemo(const FreshDemo&) = delete;
    FreshDemo& operator=(const FreshDemo&) = delete;

    void Commit() {
        platform::OpenFile(temporary_, platform::FileAccess::ReadWrite)->Sync();
        replaces_ ? platform::ReplaceFile(temporary_, path_) : platform::RenameNew(temporary_, path_);
    }
    [[nodiscard]] const std::string& Path() const { return path_; }

  private:
    void Remove() const {
        try {
            platform::DeleteFileIfThere(temporary_);
        } catch (...) {
            // The failure that brought us here is the one to report.
        }
    }

    std::string path_;
    std::string temporary_;
    bool replaces_ = false;  ///< a demonstration that was made before
};

class DemoCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "demo"; }
    [[nodiscard]] const char* Description() const override {
        return "시연용 데이터베이스를 만듭니다. 처음 둘은 dalvorii 96 버전과 133 버전입니다.";
    }

    void Declare(CLI::App& app) override {
        AddText(app, "DIR", folder_, "", "만들 폴더. 없으면 새로 만듭니다.")->required();
    }

    ExitCode Run() override {
        platform::MakeFolder(folder_);
        platform::SyncFolderOf(folder_);
        for (const ProductDemo& demo : ProductDemos()) {
            Make(demo.file, [&](const std::string& path) { WriteProductDemo(demo, path); });
        }
        // A pair that shows every difference a comparison can show.
        Make("demo-a.mdb", [](const std::string& path) { WriteDemoDatabase(path, true); });
        Make("demo-b.mdb", [](const std::string& path) { WriteDemoDatabase(path, false); });
        for (const auto& demo : made_) {
            demo->Commit();
            StandardOutput() << demo->Path() << '\n';
        }
        return ExitCode::Done;
    }

  private:
    void Make(const char* file, const std::function<void(const std::string&)>& write) {
        made_.push_back(std::make_unique<FreshDemo>(folder_ + platform::kPathSeparator + file, write));
    }

    std::string folder_;
    std::vector<std::unique_ptr<FreshDemo>> made_;
};

}  // namespace

std::unique_ptr<Command> MakeDemoCommand() {
    return std::make_unique<DemoCommand>();
}

}  // namespace tavrel::cli
