// A file that holds nothing but one index, and a walk that checks what every tree must fulfil.
#pragma once

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "jet/index/IndexPage.h"
#include "jet/storage/DataPage.h"
#include "jet/storage/PageAllocator.h"
#include "support/MemoryFile.h"

namespace tavrel::testing {

class IndexTree : public ::testing::Test {
  protected:
    static constexpr jet::PageNumber kTable = 77;

    IndexTree()
        : pager(std::make_unique<jet::PageFile>(std::make_unique<MemoryFile>(), 0)), allocator(pager) {
        pager.Fresh(0);
        jet::DataPageEditor maps(pager.Fresh(1));
        maps.Format(1);
        jet::ByteVector freeFromPage2(jet::kMapRowBytes, 0xFF);
        freeFromPage2[0] = 0;
        jet::PutU32(freeFromPage2, 1, 2);
        maps.Append(freeFromPage2);
        map = allocator.NewMap(mapPage);
    }

    struct Walked {
        std::vector<jet::ByteVector> entries;
        std::vector<jet::PageNumber> pages;
        std::vector<std::vector<jet::PageNumber>> levels;  ///< left to right
        std::size_t prefixed = 0;                          ///< leaves with a prefix
        std::size_t used = 0;                              ///< bytes of entries in leaves
    };

    /// The whole tree; fatal failures where a page or a bound is wrong.
    void Walk(jet::PageNumber root, Walked& tree) {
        const unsigned level = pager.Read(root).Bytes()[0x1A];
        Walk(root, level, {}, nullptr, tree);
        ASSERT_FALSE(HasFatalFailure());
        for (const std::vector<jet::PageNumber>& pages : tree.levels) {
            ExpectChained(pages);
        }
        std::ranges::sort(tree.pages);
        EXPECT_EQ(jet::ReadUsageMap(pager, map).pages, tree.pages);
        EXPECT_TRUE(std::ranges::is_sorted(tree.entries));
    }

    jet::Pager pager;
    jet::PageAllocator allocator;
    jet::PageNumber mapPage = 0;
    jet::RowPointer map{};

  private:
    void Walk(jet::PageNumber number, unsigned level, const jet::ByteVector& low, const jet::ByteVector* high,
              Walked& tree) {
        const jet::IndexPageContent content = jet::ReadIndexPage(pager.Read(number));
        ASSERT_EQ(content.level, level);
        ASSERT_EQ(content.leaf, level == 0);
        ASSERT_EQ(content.owner, kTable);
        ASSERT_EQ(content.reserved, 0U);
        ASSERT_EQ(content.freeField, jet::kIndexRoom - content.used);
        tree.pages.push_back(number);
        tree.levels.resize(std::max<std::size_t>(tree.levels.size(), level + 1));
        tree.levels[level].push_back(number);
        if (content.leaf) {
            tree.prefixed += content.prefix != 0 ? 1 : 0;
            tree.used += content.used;
            WalkLeaf(content, low, high, tree);
            return;
        }
        jet::ByteVector bound = low;
        for (const jet::ByteVector& entry : content.entries) {
            const jet::ByteView next = jet::NodeBound(entry);
            const jet::ByteVector upper(next.begin(), next.end());
            ASSERT_GT(upper, bound);
            Walk(jet::NodeChild(entry), level - 1, bound, &upper, tree);
            ASSERT_FALSE(HasFatalFailure());
            bound = upper;
        }
        Walk(content.tail, level - 1, bound, high, tree);
    }

    static void WalkLeaf(const jet::IndexPageContent& content, const jet::ByteVector& low,
                         const jet::ByteVector* high, Walked& tree) {
        ASSERT_EQ(content.tail, 0U);
        for (const jet::ByteVector& entry : content.entries) {
            ASSERT_GT(entry, low);
            ASSERT_TRUE(high == nullptr || entry <= *high);
            tree.entries.push_back(entry);
        }
    }

    void ExpectChained(const std::vector<jet::PageNumber>& pages) {
        for (std::size_t i = 0; i < pages.size(); ++i) {
            const jet::IndexPageContent content = jet::ReadIndexPage(pager.Read(pages[i]));
            EXPECT_EQ(content.previous, i == 0 ? 0 : pages[i - 1]);
            EXPECT_EQ(content.next, i + 1 == pages.size() ? 0 : pages[i + 1]);
        }
    }
};

}  // namespace tavrel::testing
