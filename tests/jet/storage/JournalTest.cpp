// A commit is whole or never was: whatever call of it fails, is the program's last, or is lost with the
// power.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "jet/storage/Disk.h"
#include "jet/storage/Pager.h"
#include "jet/storage/PowerLoss.h"
#include "support/TemporaryFolder.h"

namespace tavrel::jet {
namespace {

constexpr std::uint32_t kPageKey = 0x1234567;

std::unique_ptr<PageFile> PagesOf(Disk& disk, std::uint32_t key = kPageKey) {
    auto pages = std::make_unique<PageFile>(std::make_unique<DiskFile>(disk, false), key);
    if (std::optional<OldPages> old = OldPagesOf(disk)) {
        pages->SetOldPages(std::move(*old));
    }
    return pages;
}

/// The first byte of every page, as a reader sees it after the kill.
std::vector<int> Content(Disk& disk) {
    Pager pager(PagesOf(disk));
    std::vector<int> content;
    for (PageNumber n = 0; n < pager.PageCount(); ++n) {
        const PageRef page = pager.Read(n);
        EXPECT_TRUE(std::ranges::all_of(page.Bytes(), [&](std::uint8_t b) { return b == page.Bytes()[0]; }))
            << n;
        content.push_back(page.Bytes()[0]);
    }
    return content;
}

const std::vector<int> kBefore = {1, 2, 3, 4, 5};
const std::vector<int> kAfter = {1, 20, 3, 40, 50, 60, 70};

Disk FreshDisk() {
    Disk disk;
    Pager pager(PagesOf(disk));
    for (const int value : kBefore) {
        pager.Fresh(pager.PageCount()).fill(static_cast<std::uint8_t>(value));
    }
    pager.Flush();
    return disk;
}

void Change(Pager& pager) {
    pager.BeginTransaction();
    pager.BeginStatement();
    pager.Write(3).fill(99);
    pager.Fresh(pager.PageCount()).fill(99);
    pager.RollbackStatement();
    pager.BeginStatement();
    pager.Write(1).fill(20);
    pager.Write(3).fill(40);
    pager.CommitStatement();
    pager.BeginStatement();
    pager.Write(4).fill(50);
    pager.Fresh(pager.PageCount()).fill(60);
    pager.Fresh(pager.PageCount()).fill(70);
    pager.CommitStatement();
}

void Commit(Disk& disk) {
    Pager pager(PagesOf(disk));
    pager.SetJournal(FilesOf(disk));
    Change(pager);
    pager.CommitTransaction(true);
}

TEST(Journal, AKilledCommitIsWholeOrNeverWas) {
    int beforeCount = 0;
    for (int tear = 0; tear < 2; ++tear) {
        for (int writes = 0;; ++writes) {
            Disk disk = FreshDisk();
            disk.writesLeft = writes;
            disk.tear = tear == 1;
            bool killed = false;
            try {
                Commit(disk);
            } catch (const Killed&) {
                killed = true;
            }
            disk.writesLeft = 1 << 30;
            const std::vector<int> content = Content(disk);
            EXPECT_TRUE(content == kBefore || content == kAfter) << writes << " writes";
            beforeCount += content == kBefore ? 1 : 0;
            if (!killed) {
                EXPECT_EQ(content, kAfter);
                EXPECT_FALSE(disk.journal);
                break;
            }
        }
    }
    EXPECT_GT(beforeCount, 4);
}

std::vector<int> ContentOf(Pager& pager) {
    std::vector<int> content;
    for (PageNumber n = 0; n < pager.PageCount(); ++n) {
        content.push_back(pager.Read(n).Bytes()[0]);
    }
    return content;
}

/// One call of a commit fails, or all from one on: the file reads as before.  Either the session goes on, or,
/// when the file could not be given its old pages, it changes nothing any more and the journal stays.
TEST(Journal, ACommitIsTakenBackWhateverCallFails) {
    int refusals = 0;
    for (const int failures : {1, 2, 3, Disk::kNever}) {
        for (int from = 0;; ++from) {
            SCOPED_TRACE(std::to_string(failures) + " failures from call " + std::to_string(from));
            Disk disk = FreshDisk();
            Pager pager(PagesOf(disk), 1);
            pager.SetJournal(FilesOf(disk));
            Change(pager);
            disk.failFrom = from;
            disk.failures = failures;
            bool failed = false;
            try {
                pager.CommitTransaction(true);
            } catch (const Error&) {
                failed = true;
            }
            disk.FailNever();
            if (!failed) {
                EXPECT_EQ(Content(disk), kAfter);
                break;
            }
            EXPECT_FALSE(pager.InTransaction());
            EXPECT_TRUE(Content(disk) == kBefore || (failures > 1 && Content(disk) == kAfter));
            EXPECT_EQ(ContentOf(pager), kBefore);
            try {
                pager.BeginTransaction();
            } catch (const Error& error) {
                EXPECT_EQ(error.Number(), errors::kReadOnly);
                EXPECT_GT(failures, 1);
                ++refusals;
                continue;
            }
            pager.RollbackTransaction();
            Change(pager);
            pager.CommitTransaction(true);
            EXPECT_EQ(Content(disk), kAfter);
            EXPECT_EQ(ContentOf(pager), kAfter);
            EXPECT_FALSE(disk.journal);
        }
    }
    EXPECT_GT(refusals, 4);
}

/// Three transactions, one after the other, all steps recorded; a call may fail once on the way.
History<std::vector<int>> ThreeTransactions(Disk& disk, int failFrom) {
    History<std::vector<int>> history;
    history.moments.push_back({0, Content(disk)});
    Pager pager(PagesOf(disk));
    pager.SetJournal(FilesOf(disk));
    disk.record = true;
    disk.failFrom = failFrom;
    disk.failures = 1;
    for (const std::uint8_t mark : {100, 101, 102}) {
        std::vector<int> attempted;
        try {
            pager.BeginTransaction();
            pager.Write(1).fill(mark);
            pager.Write(mark % 2 == 0 ? 0 : 3).fill(mark);
            pager.Fresh(pager.PageCount()).fill(mark);
            attempted = ContentOf(pager);
            pager.CommitTransaction(true);
        } catch (const Error&) {
            if (pager.InTransaction()) {
                pager.RollbackTransaction();
            }
            // Until the failure is told, the transaction may turn out to be whole.
            history.moments.push_back({disk.steps.size(), attempted.empty() ? ContentOf(pager) : attempted});
        }
        history.moments.push_back({disk.steps.size(), ContentOf(pager)});
    }
    disk.FailNever();
    disk.record = false;
    return history;
}

TEST(Journal, APowerFailureLeavesWhatWasCommitted) {
    PowerLoss power(4711);
    for (int failFrom = -1; failFrom < 40; ++failFrom) {
        const Disk start = FreshDisk();
        Disk run = start;
        const auto history = ThreeTransactions(run, failFrom < 0 ? Disk::kNever : failFrom);
        for (std::size_t cut = 0; cut <= run.steps.size(); ++cut) {
            SCOPED_TRACE("call " + std::to_string(failFrom) + " fails, power after " + std::to_string(cut));
            Disk left = power.After(start, std::span(run.steps).first(cut));
            const std::vector<int> found = Content(left);
            ASSERT_TRUE(history.Allows(cut, found));
            // Again while the old pages are put back.
            Disk recovered = left;
            recovered.record = true;
            Recover(recovered);
            EXPECT_EQ(Content(recovered), found);
            recovered.steps.resize(power.Draw(recovered.steps.size()));
            Disk again = power.After(left, recovered.steps);
            EXPECT_EQ(Content(again), found);
        }
    }
}

TEST(Journal, IsReadByThoseWhoMayReadTheDatabase) {
    const testing::TemporaryFolder folder;
    const std::string database = folder.File("a.mdb");
    std::ofstream(database) << "private";
    using std::filesystem::perms;
    for (const perms allowed : {perms::owner_read | perms::owner_write,
                                perms::owner_read | perms::owner_write | perms::group_read}) {
        std::filesystem::permissions(database, allowed);
        const auto journal = JournalFilesFor(database).create();
        EXPECT_EQ(std::filesystem::status(JournalPath(database)).permissions(),
                  std::filesystem::status(database).permissions());
    }
}

TEST(Journal, ATransactionRollsBackWithItsStatements) {
    Disk disk = FreshDisk();
    Pager pager(PagesOf(disk));
    Change(pager);
    pager.RollbackTransaction();
    for (PageNumber n = 0; n < kBefore.size(); ++n) {
        EXPECT_EQ(pager.Read(n).Bytes()[0], kBefore[n]);
    }
    EXPECT_THROW(pager.Read(kBefore.size()), Error);
    EXPECT_EQ(Content(disk), kBefore);
}

}  // namespace
}  // namespace tavrel::jet
