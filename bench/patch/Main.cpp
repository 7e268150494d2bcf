// Product A's whole migration, from version 0, beside SQLite doing the equivalent, as ratios of the times.
//
//   tavrel-bench-patch [ROWS [FOLDER]]
//
// ROWS of the table sale (default 1,000,000; a fifth as many of customer).  FOLDER takes the databases
// (default: the system's temporary folder).  Nobody waits for the medium: our session writes out without
// syncing, SQLite runs with a rollback journal and synchronous OFF.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>

#include "Migration.h"
#include "Sample.h"
#include "SqliteReplay.h"
#include "db/Session.h"
#include "patch/log/UpdateLog.h"

namespace {

using namespace tavrel;
using namespace tavrel::bench;
namespace fs = std::filesystem;

/// Where all of it takes place; goes with everything in it.
class Folder {
  public:
    explicit Folder(const fs::path& parent) : path_(parent / "tavrel-bench-patch") {
        fs::remove_all(path_);
        fs::create_directory(path_);
        patch::UpdateLog::UseFolder(path_.string());
    }
    ~Folder() { fs::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] std::string File(const char* name) const { return (path_ / name).string(); }

  private:
    fs::path path_;
};

double Megabytes(const std::string& path) {
    return double(fs::file_size(path)) / 1e6;
}

void Row(const char* name, const Cost& ours, const Cost& theirs) {
    std::printf("%-28s %9.2f s %9.2f s   ratio %6.2f   at work %9.2f s %9.2f s   ratio %6.2f\n", name,
                ours.passed, theirs.passed, ours.passed / theirs.passed, ours.atWork, theirs.atWork,
                ours.atWork / theirs.atWork);
    std::fflush(stdout);
}

Cost Timed(const std::function<void()>& work) {
    const Stopwatch watch;
    work();
    return watch.Read();
}

/// The same rows into both.
void Fill(const Migration& migration, SqliteReplay& sqlite, std::uint64_t rows) {
    const Cost ours = Timed([&] {
        modDBsub::DBExecute("BEGIN TRANSACTION");
        FillTables(rows, modDBsub::DBExecute);
        modDBsub::DBExecute("COMMIT TRANSACTION");
    });
    sqlite.Replay(migration.base, NewColumns::AsWritten);
    const Cost theirs = Timed([&] {
        sqlite.Execute("BEGIN");
        FillTables(rows, [&](const std::string& statement) { sqlite.Execute(statement); });
        sqlite.Execute("COMMIT");
    });
    Row("filling", ours, theirs);
}

/// The steps that took us longest.
void ListSteps(const Migration& ours, const SqliteReplay& theirs) {
    constexpr std::size_t kListed = 12;
    std::vector<std::pair<std::int16_t, Cost>> steps(ours.steps.begin(), ours.steps.end());
    std::ranges::sort(steps, std::ranges::greater{}, [](const auto& step) { return step.second.passed; });
    steps.resize(std::min(steps.size(), kListed));
    for (const auto& [step, cost] : steps) {
        const auto other = theirs.steps.find(step);
        Row(("  step " + std::to_string(step)).c_str(), cost,
            other == theirs.steps.end() ? Cost{} : other->second);
    }
}

void ListRefusals(const SqliteReplay& sqlite) {
    std::printf(
        "  SQLite: %llu columns looked for and not there, %llu statements without counterpart, %zu "
        "refused\n",
        static_cast<unsigned long long>(sqlite.missingColumns),
        static_cast<unsigned long long>(sqlite.withoutCounterpart), sqlite.refused.size());
    for (const std::string& text : sqlite.refused) {
        std::printf("    %s\n", text.c_str());
    }
}

/// Whether both have the rows, and the same values in what the steps filled.
bool SameResult(SqliteReplay& sqlite) {
    for (const std::string query :
         {"SELECT COUNT(*) FROM sale WHERE tcode = 1 AND boxqnt = 0 AND dealtime = '0000' AND input_type = 0",
          "SELECT COUNT(*) FROM customer WHERE gcode = 1 AND etaxemail = email AND etaxemail4 = ''",
          "SELECT ver FROM dbversion"}) {
        const std::string ours = modDBsub::DBNullToStr(modDBsub::DBGetValue(query));
        const std::string theirs = sqlite.Value(query);
        if (ours.empty() || ours != theirs) {
            std::printf("different: %s: %s, %s\n", query.c_str(), ours.c_str(), theirs.c_str());
            return false;
        }
    }
    return true;
}

bool Race(const Migration& ours, const std::string& path, const char* name, NewColumns newColumns) {
    SqliteReplay sqlite(path);
    sqlite.Replay(ours.sent, newColumns);
    Row(name, ours.cost, sqlite.whole);
    ListSteps(ours, sqlite);
    ListRefusals(sqlite);
    return SameResult(sqlite);
}

bool Compare(std::uint64_t rows, const Folder& folder) {
    const std::string mine = folder.File("ours.mdb");
    const std::string asWritten = folder.File("written.sqlite");
    const std::string filled = folder.File("filled.sqlite");
    std::printf("%-28s %11s %11s\n", "work", "Tavrel", "SQLite");
    Migration migration(mine);
    {
        SqliteReplay sqlite(asWritten);
        Fill(migration, sqlite, rows);
        ListRefusals(sqlite);
    }
    fs::copy_file(asWritten, filled);
    std::printf("before: %.0f MB, SQLite %.0f MB\n", Megabytes(mine), Megabytes(asWritten));
    const bool done = migration.Run();
    for (const std::string& message : migration.messages) {
        std::printf("message: %s\n", message.c_str());
    }
    const bool same = Race(migration, asWritten, "defaults as written", NewColumns::AsWritten) &&
                      Race(migration, filled, "new columns Null, as ours", NewColumns::Null);
    std::printf("after: %.0f MB, SQLite %.0f and %.0f MB; %zu statements\n", Megabytes(mine),
                Megabytes(asWritten), Megabytes(filled), migration.sent.size());
    return done && same;
}

}  // namespace

int main(int argc, char** argv) {
    const std::uint64_t rows = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1'000'000;
    try {
        const Folder folder(argc > 2 ? fs::path(argv[2]) : fs::temp_directory_path());
        return Compare(rows, folder) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
