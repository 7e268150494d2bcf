// Trees that grow and shrink by single entries, against a sorted set.
#include <random>
#include <set>
#include <string>

#include "jet/index/BTree.h"
#include "support/IndexTree.h"

namespace tavrel::jet {
namespace {

struct Shape {
    const char* name;
    std::size_t shortest, longest;  ///< key bytes
    std::size_t shared;             ///< that many bytes are equal in most keys
    unsigned alphabet;
    int entries;
};

void PrintTo(const Shape& shape, std::ostream* out) {
    *out << shape.name;
}

class BTreeTest : public testing::IndexTree, public ::testing::WithParamInterface<Shape> {
  protected:
    BTreeTest() : root(allocator.Allocate()) {
        allocator.Add(map, root);
        IndexPageEditor(pager.Write(root)).Format(kTable, 0);
    }

    ByteVector RandomKey(const Shape& shape) {
        const std::size_t length = shape.shortest + random() % (shape.longest - shape.shortest + 1);
        ByteVector key;
        const bool stray = random() % 50 == 0;
        for (std::size_t i = 0; i < length; ++i) {
            key.push_back(
                static_cast<std::uint8_t>(i < shape.shared && !stray ? 0x55 : 1 + random() % shape.alphabet));
        }
        return key;
    }

    void ExpectHolds(const std::set<ByteVector>& model) {
        Walked tree;
        Walk(root, tree);
        ASSERT_EQ(tree.entries, std::vector<ByteVector>(model.begin(), model.end()));
    }

    std::mt19937 random{20061};
    PageNumber root;
};

ByteVector EntryOf(const ByteVector& key, RowPointer row) {
    ByteVector entry = key;
    AppendU24Be(entry, row.page);
    AppendU8(entry, row.row);
    return entry;
}

TEST_P(BTreeTest, GrowsAndShrinksLikeASortedSet) {
    const Shape& shape = GetParam();
    BTree tree(pager, allocator, kTable, map, root);
    std::set<ByteVector> model;
    std::vector<std::pair<ByteVector, RowPointer>> rows;
    const auto removeOne = [&] {
        const std::size_t which = random() % rows.size();
        ASSERT_TRUE(tree.Remove(rows[which].first, rows[which].second));
        model.erase(EntryOf(rows[which].first, rows[which].second));
        rows[which] = rows.back();
        rows.pop_back();
    };
    for (int i = 0; i < shape.entries; ++i) {
        const RowPointer row{static_cast<PageNumber>(i / 200 + 1), static_cast<std::uint8_t>(i % 200)};
        rows.emplace_back(RandomKey(shape), row);
        tree.Insert(rows.back().first, row);
        model.insert(EntryOf(rows.back().first, row));
        if (random() % 4 == 0) {
            removeOne();
        }
        if (i % (shape.entries / 5) == 0) {
            ASSERT_NO_FATAL_FAILURE(ExpectHolds(model));
        }
    }
    ASSERT_NO_FATAL_FAILURE(ExpectHolds(model));
    EXPECT_TRUE(tree.Contains(rows.front().first));
    EXPECT_FALSE(tree.Remove(rows.front().first, {0xFFFFFF, 0}));
    while (!rows.empty()) {
        removeOne();
        if (rows.size() % (static_cast<std::size_t>(shape.entries) / 5) == 0) {
            ASSERT_NO_FATAL_FAILURE(ExpectHolds(model));
        }
    }
    EXPECT_EQ(ReadUsageMap(pager, map).pages, std::vector<PageNumber>{root})
        << "an empty index is one empty leaf";
}

INSTANTIATE_TEST_SUITE_P(Shapes, BTreeTest,
                         ::testing::Values(Shape{"numbers", 5, 5, 0, 255, 20000},
                                           Shape{"manyEqualKeys", 2, 2, 0, 3, 8000},
                                           Shape{"sharedFront", 60, 90, 55, 200, 8000},
                                           Shape{"mixedLengths", 1, 700, 0, 250, 4000},
                                           Shape{"longestKeys", 3000, kMaxKeyBytes, 2900, 250, 200}),
                         [](const auto& info) { return std::string(info.param.name); });

/// Growing numbers fill their leaves instead of leaving each half empty.
TEST_F(BTreeTest, AscendingKeysFillTheirLeaves) {
    BTree tree(pager, allocator, kTable, map, root);
    for (std::uint32_t i = 0; i < 50000; ++i) {
        ByteVector key = {0x7F};
        AppendU32Be(key, i);
        tree.Insert(key, {i / 200 + 1, static_cast<std::uint8_t>(i % 200)});
    }
    Walked walked;
    Walk(root, walked);
    EXPECT_EQ(walked.entries.size(), 50000U);
    EXPECT_GT(walked.used, walked.levels[0].size() * kIndexRoom * 9 / 10);
}

/// Pages that point in circles or at strangers end in an error, not in an endless walk.
TEST_F(BTreeTest, RefusesDamagedTrees) {
    BTree tree(pager, allocator, kTable, map, root);
    for (std::uint32_t i = 0; i < 2000; ++i) {
        ByteVector key = {0x7F};
        AppendU32Be(key, i);
        tree.Insert(key, {1, static_cast<std::uint8_t>(i)});
    }
    const Page sound = pager.Write(root);
    EntryTable table(pager.Read(root));
    IndexPageEditor(pager.Write(root)).SetChild(table, 0, root);
    EXPECT_THROW(tree.Insert(ByteVector{0x7F, 0, 0, 0, 0}, {9, 9}), Error);
    pager.Write(root) = sound;
    PutU32(pager.Write(root), 4, kTable + 1);
    EXPECT_THROW(tree.Insert(ByteVector{0x7F, 0, 0, 0, 0}, {9, 9}), Error);
    pager.Write(root) = sound;
    pager.Write(root)[0x1B] = 0xFF;
    EXPECT_THROW(tree.Insert(ByteVector{0x7F, 0, 0, 0, 0}, {9, 9}), Error);
}

}  // namespace
}  // namespace tavrel::jet
