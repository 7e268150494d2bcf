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
#include "jet/engine/compact/Compact.h"

namespace {

using namespace tavrel;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

struct Cost {
    double seconds = 0;
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
    return {std::chrono::duration<double>(Clock::now() - start).count(), usage.ru_maxrss};
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

/// The best of several runs, each on a fresh destination.
Cost Best(const fs::path& destination, const std::function<void()>& work) {
    constexpr int kRuns = 3;
    Cost best{1e9, 0};
    for (int run = 0; run < kRuns; ++run) {
        fs::remove(destination);
        const Cost cost = Measure(work);
        best = {std::min(best.seconds, cost.seconds), std::max(best.kilobytes, cost.kilobytes)};
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
    double copying = 0;
    const Cost compact = Best(to, [&] { jet::CompactDatabase(mdb, to, {}); });
    const Cost timed = Best(to, [&] {
        const auto start = Clock::now();
        jet::CompactDatabase(mdb, to,
                             {.password = {},
                              .checkPassword = true,
                              .progress = [&](jet::CompactPhase phase, std::uint64_t, std::uint64_t) {
                                  if (phase == jet::CompactPhase::Checking && copying == 0) {
                                      copying = std::chrono::duration<double>(Clock::now() - start).count();
                                      std::printf("  written and synced, without the check: %.2f s\n",
                                                  copying);
                                      std::fflush(stdout);
                                  }
                              }});
    });
    const Cost vacuum = Best(to, [&] { Vacuum(sqlite); });
    std::printf("keys %s, %.0f MB, SQLite %.0f MB\n",
                order == bench::KeyOrder::Ascending ? "ascending" : "at random",
                double(fs::file_size(mdb)) / 1e6, double(fs::file_size(sqlite)) / 1e6);
    const auto line = [&](const char* name, const Cost& cost) {
        std::printf("  %-28s %7.2f s  cp %6.2f  cp+sync %6.2f  VACUUM %5.2f  %6ld KB\n", name, cost.seconds,
                    cost.seconds / copy.seconds, cost.seconds / synced.seconds, cost.seconds / vacuum.seconds,
                    cost.kilobytes);
    };
    line("cp", copy);
    line("cp and sync", synced);
    line("VACUUM", vacuum);
    line("compact, checked", timed.seconds < compact.seconds ? timed : compact);
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
