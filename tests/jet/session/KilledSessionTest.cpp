// A session whose program is killed at any write of any statement, whose disk fails at any call, or loses its
// power: what is found is sound, and as it was before the statement or after it.
#include <gtest/gtest.h>

#include "jet/session/SessionOnDisk.h"
#include "jet/storage/PowerLoss.h"

namespace tavrel::testing {
namespace {

TEST(KilledSession, LeavesEveryStatementWholeOrUndone) {
    Disk disk = FilledDisk();
    std::size_t kills = 0;
    std::size_t undone = 0;
    for (const char* statement : kStatements) {
        SCOPED_TRACE(statement);
        Disk done = disk;
        SessionOn(done)->Execute(statement);
        const std::string before = Content(disk);
        const std::string after = Content(done);
        ASSERT_NE(before, after);
        for (int writes = 0;; ++writes) {
            SCOPED_TRACE(writes);
            Disk killed = disk;
            killed.writesLeft = writes;
            killed.tear = writes % 2 == 1;
            bool ended = true;
            try {
                SessionOn(killed)->Execute(statement);
            } catch (const jet::Killed&) {
                ended = false;
            }
            killed.writesLeft = Disk::kNever;
            const std::string found = Content(killed);
            ASSERT_TRUE(found == before || found == after);
            if (ended) {
                EXPECT_EQ(found, after);
                break;
            }
            ++kills;
            undone += found == before ? 1U : 0U;
        }
        disk = std::move(done);
    }
    EXPECT_GT(kills, 100U);
    EXPECT_GT(undone, kills / 2);
}

/// One call fails, reading ones too: the statement fails, and the session goes on with what was before.
TEST(KilledSession, GoesOnAfterAnyCallThatFails) {
    Disk disk = FilledDisk();
    for (const char* statement : kStatements) {
        SCOPED_TRACE(statement);
        Disk done = disk;
        SessionOn(done)->Execute(statement);
        const std::string before = Content(disk);
        const std::string after = Content(done);
        for (int from = 0;; ++from) {
            SCOPED_TRACE(from);
            Disk failing = disk;
            const auto session = SessionOn(failing);
            failing.failFrom = from;
            failing.failures = 1;
            bool failed = false;
            try {
                session->Execute(statement);
            } catch (const Error&) {
                failed = true;
            }
            failing.FailNever();
            if (!failed) {
                ASSERT_EQ(Content(failing), after);
                break;
            }
            ASSERT_EQ(Content(failing), before);
            session->Execute(statement);
            ASSERT_EQ(Content(failing), after);
        }
        disk = std::move(done);
    }
}

/// Statement after statement, and the power fails somewhere.
TEST(KilledSession, LosesNothingWithThePower) {
    constexpr int kFailures = 150;
    const Disk start = FilledDisk();
    Disk run = start;
    jet::History<std::string> history;
    history.moments.push_back({0, Content(run)});
    const auto session = SessionOn(run);
    for (const char* statement : kStatements) {
        run.record = true;
        session->Execute(statement);
        run.record = false;
        history.moments.push_back({run.steps.size(), Content(run)});
    }
    jet::PowerLoss power(815);
    for (int failure = 0; failure < kFailures; ++failure) {
        const std::size_t cut = power.Draw(run.steps.size());
        SCOPED_TRACE(cut);
        Disk left = power.After(start, std::span(run.steps).first(cut));
        ASSERT_TRUE(history.Allows(cut, Content(left)));
    }
}

}  // namespace
}  // namespace tavrel::testing
