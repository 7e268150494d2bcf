// tavrel-bench-compact [rows]: each step is a process of its own, so that its memory can be told.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sqlite3.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Samples.h"
#include "jet/compact/Compact.h"
#include "jet/compact/DatabaseCopy.h"

namespace {

using namespace tavrel;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

struct Cost {
    double seconds = 0;
    double processor = 0;  ///< seconds of it at work
    long kilobytes = 0;
};

/// The work in a process of its own.
Cost Measure(const std::function<void()>& work) {
    std::fflush(stdout);
    const auto start = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (status != 0) {
        std::fprintf(stderr, "a step has failed\n");
        std::exit(1);
    }
    const auto seconds = [](const timeval& time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return {std::chrono::duration<double>(Clock::now() - start).count(),
            seconds(usage.ru_utime) + seconds(usage.ru_stime), usage.ru_maxrss};
}

void SyncFile(const fs::path& path) {
    const int file = open(path.c_str(), O_RDONLY);
    fsync(file);
    close(file);
}

void Vacuum(const fs::path& path) {
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    sqlite3_exec(database, "VACUUM", nullptr, nullptr, nullptr);
    sqlite3_close(database);
}

/// Written and synced only.
void CompactUnchecked(const fs::path& from, const fs::path& to) {
    const auto source = jet::Database::Open(from);
    const auto file = platform::OpenFile(to, platform::FileAccess::CreateNew);
    jet::compact::ScratchNumbers numbers(*file, std::uint64_t{1} << 32U, jet::compact::kResidentBlocks);
    jet::compact::PageOutput out(*file, 0);
    jet::compact::CopyDatabase(*source, out, numbers, {});
}

/// The best of several runs, each on a fresh destination.
Cost Best(const fs::path& destination, const std::function<void()>& work) {
    constexpr int kRuns = 3;
    Cost best{1e9, 1e9, 0};
    for (int run = 0; run < kRuns; ++run) {
        fs::remove(destination);
        const Cost cost = Measure(work);
        best = {std::min(best.seconds, cost.seconds), std::min(best.processor, cost.processor),
                std::max(best.kilobytes, cost.kilobytes)};
    }
    fs::remove(destination);
    return best;
}

void Compare(const fs::path& folder, int rows, bench::KeyOrder order) {
    const fs::path mdb = folder / "a.mdb";
    const fs::path sqlite = folder / "a.sqlite";
    const fs::path to = folder / "to.mdb";
    fs::remove(mdb);
    fs::remove(sqlite);
    Measure([&] { bench::MakeMdb(mdb, rows, order); });
    Measure([&] { bench::MakeSqlite(sqlite, rows, order); });
    const Cost copy = Best(to, [&] { fs::copy_file(mdb, to); });
    const Cost synced = Best(to, [&] {
        fs::copy_file(mdb, to);
        SyncFile(to);
    });
    const Cost compact = Best(to, [&] { jet::CompactDatabase(mdb, to, {}); });
    const Cost unchecked = Best(to, [&] { CompactUnchecked(mdb, to); });
    const Cost vacuum = Best(to, [&] { Vacuum(sqlite); });
    std::printf("keys %s, %.0f MB, SQLite %.0f MB\n",
                order == bench::KeyOrder::Ascending ? "ascending" : "at random",
                double(fs::file_size(mdb)) / 1e6, double(fs::file_size(sqlite)) / 1e6);
    const auto line = [&](const char* name, const Cost& cost) {
        std::printf("  %-22s %6.2f s | cp+sync %6.2f  VACUUM %5.2f | processor: VACUUM %5.2f | %6ld KB\n",
                    name, cost.seconds, cost.seconds / synced.seconds, cost.seconds / vacuum.seconds,
                    cost.processor / vacuum.processor, cost.kilobytes);
    };
    line("cp", copy);
    line("cp and sync", synced);
    line("VACUUM", vacuum);
    line("compact, unchecked", unchecked);
    line("compact, checked", compact);
}

}  // namespace

int main(int argc, char** argv) {
    const int rows = argc > 1 ? std::atoi(argv[1]) : 1'000'000;
    const fs::path folder = fs::temp_directory_path() / ("tavrel-bench-" + std::to_string(getpid()));
    fs::create_directory(folder);
    for (const auto order : {bench::KeyOrder::Ascending, bench::KeyOrder::Random}) {
        Compare(folder, rows, order);
    }
    fs::remove_all(folder);
}
