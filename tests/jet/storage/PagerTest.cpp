// The rules of the page cache, by their numbers in Pager.h.
#include <gmock/gmock.h>

#include "jet/database/CountingFile.h"
#include "jet/storage/DataPage.h"
#include "jet/storage/PageAllocator.h"
#include "jet/storage/Pager.h"
#include "support/DatabaseBuilder.h"

namespace tavrel::jet {
namespace {

using testing::ErrorOf;

class PagerTest : public ::testing::Test {
  protected:
    static constexpr PageNumber kPages = 12;
    static constexpr std::size_t kLimit = 4;

    PagerTest() {
        std::vector<std::uint8_t> bytes(kPages * kPageSize);
        for (PageNumber page = 0; page < kPages; ++page) {
            bytes[page * kPageSize] = static_cast<std::uint8_t>(page);
        }
        auto file = std::make_unique<testing::CountingFile>(std::move(bytes));
        file_ = file.get();
        pager_ = std::make_unique<Pager>(std::make_unique<PageFile>(std::move(file), 0), kLimit);
    }

    void ReadAll() {
        for (PageNumber page = 0; page < kPages; ++page) {
            pager_->Read(page);
        }
    }
    std::uint8_t First(PageNumber page) { return pager_->Read(page).Bytes()[0]; }
    std::uint8_t InFile(PageNumber page) {
        std::uint8_t byte = 0;
        file_->ReadAt(std::uint64_t{page} * kPageSize, {&byte, 1});
        return byte;
    }

    testing::CountingFile* file_ = nullptr;
    std::unique_ptr<Pager> pager_;
};

TEST_F(PagerTest, Rule1HeldPagesKeepTheirContent) {
    const PageRef held = pager_->Read(3);
    pager_->Write(3)[0] = 99;
    EXPECT_EQ(held.Bytes()[0], 3);
    EXPECT_EQ(First(3), 99);
    const PageRef other = pager_->Read(5);
    ReadAll();
    EXPECT_EQ(other.Bytes()[0], 5);
    pager_->BeginStatement();
    pager_->Write(5)[0] = 98;
    pager_->RollbackStatement();
    EXPECT_EQ(other.Bytes()[0], 5);
}

TEST_F(PagerTest, Rule2RollingBackPutsEveryPageAndThePageCountBack) {
    pager_->Write(2)[0] = 50;  // changed before, not yet written
    pager_->BeginStatement();
    pager_->Write(1)[0] = 60;
    pager_->Write(2)[0] = 61;
    pager_->Fresh(3)[0] = 62;
    pager_->Fresh(kPages)[0] = 63;
    ReadAll();
    for (PageNumber page = 0; page < kPages; ++page) {
        EXPECT_TRUE(InFile(page) == page || page == 2) << page;
    }
    EXPECT_EQ(pager_->PageCount(), kPages + 1);
    pager_->RollbackStatement();
    EXPECT_EQ(pager_->PageCount(), kPages);
    EXPECT_EQ(First(1), 1);
    EXPECT_EQ(First(2), 50);
    EXPECT_EQ(First(3), 3);
    EXPECT_EQ(ErrorOf([&] { pager_->Read(kPages); }), errors::kDamaged);
    pager_->Flush();
    EXPECT_EQ(InFile(2), 50);
    EXPECT_EQ(file_->Size(), kPages * kPageSize);
}

TEST_F(PagerTest, Rule2NoChangedPageReachesTheFileBeforeTheCommit) {
    pager_->BeginStatement();
    for (PageNumber page = 0; page < kPages; ++page) {
        pager_->Write(page)[1] = 77;  // more pages than the cache may keep
    }
    EXPECT_EQ(file_->writes, 0U);
    pager_->CommitStatement();
    pager_->Flush();
    EXPECT_EQ(file_->writes, kPages);
}

TEST_F(PagerTest, Rule3FlushWritesEveryChangedPageOnce) {
    pager_->Write(4)[0] = 44;
    pager_->Write(4)[1] = 45;
    pager_->Fresh(kPages)[0] = 46;
    pager_->Flush();
    EXPECT_EQ(file_->writes, 2U);
    EXPECT_EQ(InFile(4), 44);
    EXPECT_EQ(InFile(kPages), 46);
    pager_->Flush();
    EXPECT_EQ(file_->writes, 2U);
}

TEST_F(PagerTest, Rule4TheCacheKeepsItsLimitOfUnchangedPages) {
    ReadAll();
    EXPECT_EQ(file_->reads, kPages);
    for (PageNumber page = kPages - kLimit; page < kPages; ++page) {
        pager_->Read(page);
    }
    EXPECT_EQ(file_->reads, kPages);  // the latest are there
    pager_->Read(0);
    EXPECT_EQ(file_->reads, kPages + 1);  // the others are gone
}

TEST_F(PagerTest, Rule5PagesOnlyComeAtTheEndOfTheFile) {
    EXPECT_EQ(ErrorOf([&] { pager_->Read(kPages); }), errors::kDamaged);
    EXPECT_EQ(ErrorOf([&] { pager_->Fresh(kPages + 1); }), errors::kDamaged);
    EXPECT_EQ(pager_->PageCount(), kPages);
}

TEST_F(PagerTest, APageThatCannotBeReadIsAReadFault) {
    file_->failReads = true;
    EXPECT_EQ(ErrorOf([&] { pager_->Read(1); }), errors::kReadFault);
    file_->failReads = false;
    EXPECT_EQ(First(1), 1);
}

class PageAllocatorTest : public PagerTest {
  protected:
    PageAllocatorTest() : allocator_(*pager_) {
        ByteVector free(kMapRowBytes, 0xFF);
        free[0] = 0;
        PutU32(free, 1, 8);  // pages 8 .. are free
        DataPageEditor maps(pager_->Write(1));
        maps.Format(1);
        maps.Append(free);
    }

    PageAllocator allocator_;
};

TEST_F(PageAllocatorTest, TheLowestFreePageIsTakenAndTheFileGrows) {
    EXPECT_EQ(allocator_.Allocate(), 8U);
    EXPECT_EQ(First(8), 0);  // zeroed
    EXPECT_EQ(allocator_.Allocate(), 9U);
    allocator_.Free(8);
    EXPECT_EQ(allocator_.Allocate(), 8U);
    EXPECT_EQ(allocator_.Allocate(), 10U);
    EXPECT_EQ(allocator_.Allocate(), 11U);
    EXPECT_EQ(allocator_.Allocate(), kPages);
    EXPECT_EQ(pager_->PageCount(), kPages + 1);
}

/// Pages behind the end that are not free were taken by a program that never wrote them.
TEST_F(PageAllocatorTest, PagesBehindTheEndAreTakenWhateverTheGlobalMapsSay) {
    DataPageEditor(pager_->Write(1)).Append(ByteVector(kMapRowBytes, 0));
    const RowPointer pending{1, 1};
    for (const PageNumber page : {kPages, kPages + 1, kPages + 2}) {
        allocator_.Remove({1, 0}, page);
    }
    allocator_.Add(pending, kPages + 1);
    for (PageNumber page = 8; page < kPages + 4; ++page) {
        EXPECT_EQ(allocator_.Allocate(), page);
    }
    EXPECT_EQ(pager_->PageCount(), kPages + 4);
    EXPECT_THAT(ReadUsageMap(*pager_, pending, kEveryPage).pages, ::testing::IsEmpty());
}

TEST_F(PageAllocatorTest, AMapThatCannotHoldAPageGetsBitmapPages) {
    PageNumber mapPage = 0;
    const RowPointer map = allocator_.NewMap(mapPage);
    const std::vector<PageNumber> pages = {3, 511, 40000};
    for (const PageNumber page : pages) {
        allocator_.Add(map, page);
    }
    const UsageMap read = ReadUsageMap(*pager_, map, 1U << 30);
    EXPECT_EQ(read.pages, pages);
    EXPECT_EQ(read.bitmapPages.size(), 2U);
    EXPECT_EQ(ReadRowAt(*pager_, map).size(), kMapRowBytes);
    allocator_.Remove(map, 511);
    EXPECT_EQ(ReadUsageMap(*pager_, map, 1U << 30).pages, (std::vector<PageNumber>{3, 40000}));
}

}  // namespace
}  // namespace tavrel::jet
