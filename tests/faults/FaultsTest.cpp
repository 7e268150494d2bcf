// Every command that writes, with each call of the system failing, cut short or the last one, and the power
// lost at each point: files are as before or as after, and the user is told.
//
// Samples with a fixed seed; all of it where TAVREL_FAULTS_WHOLE is set (./test --faults).
#include <algorithm>
#include <fstream>

#include <gmock/gmock.h>

#include "Bench.h"
#include "Disk.h"
#include "FaultNames.h"

namespace tavrel::testing {
namespace {

struct Trial {
    int kind;
    std::vector<int> modes;
};

const Trial kTrials[] = {{kOpen, {kOnce, kOn, kKill}},
                         {kRead, {kOnce, kOn, kShort, kEnd}},
                         {kWrite, {kOnce, kOn, kShort, kTorn, kKill, kTornKill}},
                         {kSync, {kOnce, kOn, kKill}},
                         {kTruncate, {kOnce, kOn, kKill}},
                         {kRename, {kOnce, kOn, kKill}},
                         {kUnlink, {kOnce, kOn, kKill}},
                         {kMkdir, {kOnce, kOn, kKill}},
                         {kMemory, {kOnce, kOn}}};

/// Numbers from 1 to `count`: all when there are at most `most`, else one of each of `most` equal parts.
std::vector<long> Points(long count, long most, std::mt19937& random) {
    const long parts = std::min(count, most);
    std::vector<long> points;
    for (long part = 0; part < parts; ++part) {
        const long first = part * count / parts;
        const long length = (part + 1) * count / parts - first;
        points.push_back(1 + first + static_cast<long>(random()) % length);
    }
    return points;
}

/// What went wrong at many points, told once with a few of them.
class Failures {
  public:
    void Add(const std::string& at, const std::string& wrong) {
        if (++count_ <= kTold) {
            told_ += "\n  " + at + ": " + wrong;
        }
    }
    void Tell(std::size_t points) const { EXPECT_EQ(count_, 0U) << "of " << points << " points:" << told_; }

  private:
    static constexpr std::size_t kTold = 4;
    std::size_t count_ = 0;
    std::string told_;
};

class Faults : public ::testing::TestWithParam<Scenario> {
  protected:
    void SetUp() override {
        if (std::string_view(TAVREL_FAULT_LIBRARY).empty()) {
            GTEST_SKIP() << "no library can stand in front of the sanitizers' own";
        }
    }
    static long Most(long sampled) { return WholeRun() ? std::max(sampled, GetParam().most) : sampled; }
};

/// A message of the program's own, not of its runtime, and not two.  A product's procedures have their own
/// ways to begin.
bool IsMessage(const std::string& errors) {
    const std::string begin = "\n오류 ";
    const std::string lines = "\n" + errors;
    const std::size_t first = lines.find(begin);
    return !errors.empty() && !errors.starts_with("terminate called") &&
           (first == std::string::npos || lines.find(begin, first + 1) == std::string::npos);
}

/// What is wrong with the end of a command, one call of which was to go wrong.
std::string WrongEnd(Bench& bench, const ProgramResult& result, int kind, int mode) {
    const bool killed = mode == kKill || mode == kTornKill;
    const bool done = result.exitCode == bench.ExitCode();
    std::string wrong;
    if (killed ? result.exitCode != kKilledExit : !done && (result.exitCode != 2 || mode == kShort)) {
        wrong += "exit code " + std::to_string(result.exitCode) + "; ";
    }
    if (!killed && (done ? !result.errors.empty() : !IsMessage(result.errors))) {
        wrong += "said \"" + result.errors + "\"; ";
    }
    for (const std::string& name : bench.Leftovers()) {
        // What cannot be removed stays; and the journal has to, where the old pages cannot be put back.
        const bool mayStay = killed || kind == kUnlink || (mode == kOn && name.ends_with("-journal"));
        wrong += mayStay ? "" : "left " + name + "; ";
    }
    wrong += bench.WrongFiles(done);
    if (wrong.empty() && killed && bench.IsBefore()) {
        const ProgramResult again = bench.Run("");
        wrong = again.exitCode == bench.ExitCode() ? bench.WrongFiles(true) : "again: " + again.errors;
    }
    return wrong;
}

std::vector<long> CountCalls(Bench& bench) {
    const TemporaryFolder folder;
    bench.PutBefore();
    bench.Run("FAULTS_COUNTS='" + folder.File("counts") + "'");
    std::ifstream in(folder.File("counts"));
    std::vector<long> counts;
    for (long count = 0; in >> count;) {
        counts.push_back(count);
    }
    return counts;
}

TEST_P(Faults, LeaveFilesAsTheyWereOrAreToBe) {
    Bench bench(GetParam());
    std::mt19937 random(1);
    const std::vector<long> counts = CountCalls(bench);
    ASSERT_EQ(counts.size(), static_cast<std::size_t>(kKindCount));
    ASSERT_GT(counts[kWrite], 0);
    for (const Trial& trial : kTrials) {
        for (const int mode : trial.modes) {
            const std::vector<long> points =
                Points(counts[trial.kind], Most(trial.kind == kMemory ? 12 : 4), random);
            Failures failures;
            for (const long point : points) {
                bench.PutBefore();
                const ProgramResult result =
                    bench.Run(std::string("FAULTS_KIND=") + kKinds[trial.kind] +
                              " FAULTS_MODE=" + kModes[mode] + " FAULTS_AT=" + std::to_string(point));
                const std::string wrong = WrongEnd(bench, result, trial.kind, mode);
                if (!wrong.empty()) {
                    failures.Add(std::to_string(point), wrong);
                }
            }
            SCOPED_TRACE(std::string(kKinds[trial.kind]) + " " + kModes[mode]);
            failures.Tell(points.size());
        }
    }
}

struct Loss {
    const char* name;
    Unsynced data;
    Unsynced names;
};

constexpr Loss kLosses[] = {{"only what was synced", Unsynced::Lost, Unsynced::Lost},
                            {"everything", Unsynced::Kept, Unsynced::Kept},
                            {"names alone", Unsynced::Lost, Unsynced::Kept},
                            {"data alone", Unsynced::Kept, Unsynced::Lost},
                            {"some", Unsynced::Some, Unsynced::Some},
                            {"some data", Unsynced::Some, Unsynced::Lost},
                            {"some data and all names", Unsynced::Some, Unsynced::Kept}};

TEST_P(Faults, LostPowerLeavesFilesAsTheyWereOrAreToBe) {
    Bench bench(GetParam());
    std::mt19937 random(2);
    const TemporaryFolder folder;
    bench.PutBefore();
    ASSERT_EQ(bench.Run("FAULTS_RECORD='" + folder.File("record") + "'").exitCode, bench.ExitCode());
    const FolderContent written = ReadFolder(bench.Root());
    const std::vector<RecordedCall> calls = ReadRecord(folder.File("record"));
    std::vector<long> points = Points(static_cast<long>(calls.size()), Most(25), random);
    points.push_back(static_cast<long>(calls.size()));
    std::map<std::string, Failures> failures;
    std::set<FolderContent> seen;
    Disk disk(bench.Root(), bench.Before());
    long done = 0;
    for (const long point : points) {
        for (; done < point; ++done) {
            disk.Apply(calls[static_cast<std::size_t>(done)]);
        }
        const bool finished = static_cast<std::size_t>(point) == calls.size();
        for (const Loss& loss : kLosses) {
            const FolderContent left = disk.AfterPowerLoss(loss.data, loss.names, random);
            if (!finished && !seen.insert(left).second) {
                continue;
            }
            bench.Put(left);
            if (const std::string wrong = bench.WrongFiles(finished); !wrong.empty()) {
                failures[loss.name].Add(std::to_string(point), wrong);
            }
        }
    }
    EXPECT_EQ(disk.AfterPowerLoss(Unsynced::Kept, Unsynced::Kept, random), written)
        << "calls went unrecorded";
    for (const auto& [name, failed] : failures) {
        SCOPED_TRACE(name);
        failed.Tell(points.size());
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, Faults, ::testing::ValuesIn(Scenarios()),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace tavrel::testing
