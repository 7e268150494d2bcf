// A program killed at any write of a commit leaves a database that reads as before or as after it.
#include <gtest/gtest.h>

#include "jet/storage/Disk.h"
#include "jet/storage/Pager.h"

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

/// A full disk in the middle of the pages: the old ones are put back, or the journal keeps them.
TEST(Journal, AFailedCommitIsTakenBack) {
    for (int from = 0; from < 5; ++from) {
        for (const int failures : {1, 1000}) {
            Disk disk = FreshDisk();
            Pager pager(PagesOf(disk));
            pager.SetJournal(FilesOf(disk));
            Change(pager);
            disk.failFrom = from;
            disk.failures = failures;
            EXPECT_THROW(pager.CommitTransaction(true), Error);
            EXPECT_FALSE(pager.InTransaction());
            EXPECT_EQ(pager.PageCount(), kBefore.size());
            EXPECT_EQ(pager.Read(1).Bytes()[0], 2);
            EXPECT_EQ(Content(disk), kBefore) << from << ", " << failures << " failures";
            EXPECT_EQ(disk.journal.has_value(), failures > 1);
        }
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
