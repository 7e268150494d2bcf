// A session that gets no memory, at any point of any statement: it is told, and the database is as before.
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "jet/session/SessionOnDisk.h"

namespace {

constexpr long kNever = 1L << 40;

// The address sanitizer has allocation for itself.
#ifdef __SANITIZE_ADDRESS__
constexpr bool kAllocatesHere = false;
#else
constexpr bool kAllocatesHere = true;
#endif

// The whole test program allocates through these; they refuse only while a test below says so.
long allocationsLeft = kNever;
long refusalsLeft = 0;

[[maybe_unused]] void* Allocate(std::size_t bytes) {
    if (allocationsLeft-- <= 0 && refusalsLeft-- > 0) {
        throw std::bad_alloc();
    }
    if (void* block = std::malloc(bytes > 0 ? bytes : 1)) {
        return block;
    }
    throw std::bad_alloc();
}

}  // namespace

#ifndef __SANITIZE_ADDRESS__
void* operator new(std::size_t bytes) {
    return Allocate(bytes);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t /*bytes*/) noexcept {
    std::free(block);
}
#endif

namespace tavrel::testing {
namespace {

/// Runs a statement that is refused memory so many times; true when it ends well.
bool Runs(jet::EditSession& session, const char* statement, long from, long refusals) {
    bool done = true;
    allocationsLeft = from;
    refusalsLeft = refusals;
    try {
        session.Execute(statement);
    } catch (const std::exception&) {
        done = false;
    }
    allocationsLeft = kNever;
    refusalsLeft = 0;
    return done;
}

class LackOfMemory : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!kAllocatesHere) {
            GTEST_SKIP() << "the sanitizer allocates by itself";
        }
    }
};

TEST_F(LackOfMemory, LeavesEveryStatementUndone) {
    Disk disk = FilledDisk();
    for (const char* statement : kStatements) {
        SCOPED_TRACE(statement);
        Disk done = disk;
        SessionOn(done)->Execute(statement);
        const std::string before = Content(disk);
        const std::string after = Content(done);
        for (const long refusals : {1L, kNever}) {
            // Every point at first, then ever fewer: a statement asks for memory some thousand times.
            for (long from = 0;; from += 1 + from / 24) {
                SCOPED_TRACE(from);
                Disk poor = disk;
                auto session = SessionOn(poor);
                if (Runs(*session, statement, from, refusals)) {
                    ASSERT_EQ(Content(poor), after);
                    break;
                }
                ASSERT_EQ(Content(poor), before);
                if (refusals == 1) {
                    session->Execute(statement);
                    ASSERT_EQ(Content(poor), after);
                }
            }
        }
        disk = std::move(done);
    }
}

/// The same inside a transaction, which stays as it was before the statement.
TEST_F(LackOfMemory, LeavesATransactionAsItWas) {
    const Disk disk = FilledDisk();
    Disk done = disk;
    for (const char* statement : {kStatements[0], kStatements[4]}) {
        SessionOn(done)->Execute(statement);
    }
    const std::string after = Content(done);
    for (const char* poorOne : {kStatements[4], "COMMIT"}) {
        for (long from = 0;; from += 1 + from / 24) {
            SCOPED_TRACE(from);
            Disk poor = disk;
            const auto session = SessionOn(poor);
            session->Execute("BEGIN TRANSACTION");
            session->Execute("BEGIN TRANSACTION");
            session->Execute(kStatements[0]);
            const bool inner = poorOne == kStatements[4];
            if (!inner) {
                session->Execute(kStatements[4]);
            }
            const bool ran = Runs(*session, poorOne, from, 1);
            if (!ran) {
                session->Execute(poorOne);
            }
            if (inner) {
                session->Execute("COMMIT");
            }
            session->Execute("COMMIT");
            ASSERT_EQ(Content(poor), after);
            if (ran) {
                break;
            }
        }
    }
}

}  // namespace
}  // namespace tavrel::testing
