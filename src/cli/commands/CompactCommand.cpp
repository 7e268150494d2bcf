#include <algorithm>
#include <iostream>

#include "cli/Arguments.h"
#include "cli/OpenDatabase.h"
#include "cli/Output.h"
#include "cli/TerminalProgress.h"
#include "compare/CompactSwap.h"
#include "jet/compact/Compact.h"
#include "platform/FileSystem.h"

namespace tavrel::cli {

namespace {

constexpr std::int32_t kBadFileName = 52;

const char* LabelOf(jet::CompactPhase phase) {
    switch (phase) {
        case jet::CompactPhase::Copying:
            return "압축하는 중";
        case jet::CompactPhase::Repairing:
            return "복구하는 중";
        case jet::CompactPhase::Checking:
            return "검사하는 중";
    }
    return "";
}

/// One line for each phase.
class CompactProgress {
  public:
    void Show(jet::CompactPhase phase, std::uint64_t done, std::uint64_t total) {
        if (!line_ || phase != phase_) {
            line_.reset();
            line_.emplace(LabelOf(phase));
            phase_ = phase;
        }
        line_->Phase().SetMaximum(static_cast<int>(total));
        line_->Phase().SetValue(static_cast<int>(done));
    }

  private:
    std::optional<ProgressLine> line_;
    jet::CompactPhase phase_ = jet::CompactPhase::Copying;
};

/// The new file of an unfinished command stays under this name only.
std::string TemporaryFor(const std::string& path) {
    std::string temporary = compare::CompactTempName(path);
    if (temporary == path) {
        throw MakeError(kBadFileName, {}, path + ": 이름에 소문자 \".mdb\"가 있어야 함");
    }
    return temporary;
}

class CompactCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "compact"; }
    [[nodiscard]] const char* Description() const override {
        return "파일을 압축하고, 망가진 곳이 있으면 복구합니다. 잃은 것이 있으면 1로 끝납니다.";
    }

    void Declare(CLI::App& app) override {
        AddFile(app, file_);
        AddPassword(app, password_);
        AddText(app, "-o,--output", destination_, "DEST", "결과를 쓸 새 파일. 없으면 FILE을 바꿈");
    }

    ExitCode Run() override {
        const jet::CompactReport report = destination_.empty() ? InPlace() : IntoNewFile();
        Tell(report);
        return report.losses.empty() ? ExitCode::Done : ExitCode::Found;
    }

  private:
    jet::CompactReport InPlace() {
        const std::string temporary = TemporaryFor(file_);
        compare::RequireReplaceable(file_);
        jet::CompactReport report = Compact(temporary);
        Swap(temporary, file_);
        return report;
    }

    jet::CompactReport IntoNewFile() {
        if (platform::FileExists(destination_)) {
            throw MakeError(errors::kDatabaseExists, {}, destination_);
        }
        const std::string temporary = TemporaryFor(destination_);
        jet::CompactReport report = Compact(temporary);
        Place(temporary);
        return report;
    }

    /// What somebody else has made under that name in the meantime stays.
    void Place(const std::string& temporary) const {
        try {
            platform::RenameNew(temporary, destination_);
        } catch (const Error& error) {
            platform::DeleteFileIfThere(temporary);
            if (error.Number() == errors::kFileExists) {
                throw MakeError(errors::kDatabaseExists, {}, destination_);
            }
            throw;
        } catch (...) {
            platform::DeleteFileIfThere(temporary);
            throw;
        }
    }

    jet::CompactReport Compact(const std::string& temporary) {
        compare::DeleteLeftover(temporary, file_);
        CompactProgress progress;
        return jet::CompactDatabase(
            file_, temporary,
            {.password = password_.value_or(std::string()),
             .checkPassword = true,
             .progress = [&](jet::CompactPhase phase, std::uint64_t done, std::uint64_t total) {
                 progress.Show(phase, done, total);
             }});
    }

    static void Swap(const std::string& temporary, const std::string& database) {
        if (!compare::ReplaceByCompacted(temporary, database)) {
            throw MakeError(errors::kFileNotFound, {}, temporary);
        }
    }

    static void Tell(const jet::CompactReport& report) {
        std::ostream& out = StandardOutput();
        if (report.repaired) {
            out << "망가진 데이터베이스를 복구했습니다.\n";
        }
        for (const jet::CompactLoss& loss : report.losses) {
            out << "잃음: " << loss.where << ": " << loss.text << '\n';
        }
        for (const jet::CompactedTable& table : report.tables) {
            if (table.rowsBefore != table.rowsAfter) {
                out << "테이블 " << table.name << ": 행 " << table.rowsBefore << "개 중 " << table.rowsAfter
                    << "개\n";
            }
        }
        out << "크기: " << report.bytesBefore << "바이트 → " << report.bytesAfter << "바이트\n";
    }

    std::string file_;
    std::optional<std::string> password_;
    std::string destination_;
};

}  // namespace

std::unique_ptr<Command> MakeCompactCommand() {
    return std::make_unique<CompactCommand>();
}

}  // namespace tavrel::cli
