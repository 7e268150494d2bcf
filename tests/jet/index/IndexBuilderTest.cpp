// Trees of every shape: built, walked page by page, and read again.
#include <algorithm>
#include <bit>
#include <functional>
#include <random>

#include <gmock/gmock.h>

#include "jet/index/IndexBuilder.h"
#include "jet/index/IndexReader.h"
#include "jet/storage/DataPage.h"
#include "support/MemoryFile.h"

namespace tavrel::jet {
namespace {

constexpr PageNumber kTable = 77;

/// A file with nothing in it but the free map.
class IndexBuilderTest : public ::testing::Test {
  protected:
    IndexBuilderTest()
        : pager(std::make_unique<PageFile>(std::make_unique<tavrel::testing::MemoryFile>(), 0)),
          allocator(pager) {
        pager.Fresh(0);
        DataPageEditor maps(pager.Fresh(1));
        maps.Format(1);
        ByteVector freeFromPage2(kMapRowBytes, 0xFF);
        freeFromPage2[0] = 0;
        PutU32(freeFromPage2, 1, 2);
        maps.Append(freeFromPage2);
        map = allocator.NewMap(mapPage);
    }

    BuiltIndex Build(EntryArena& entries, PageNumber root = 0) {
        return BuildIndex(pager, allocator, kTable, map, root, entries);
    }

    struct Tree {
        std::vector<ByteVector> entries;
        std::vector<PageNumber> pages;
        std::vector<std::vector<PageNumber>> levels;  ///< left to right
        std::size_t prefixed = 0;
    };

    /// Walks the tree and checks what every page must fulfil.
    void Walk(PageNumber number, unsigned level, const ByteVector& low, const ByteVector* high, Tree& tree) {
        const PageRef page = pager.Read(number);
        const IndexPageContent content = ReadIndexPage(page);
        ASSERT_EQ(content.level, level);
        ASSERT_EQ(content.leaf, level == 0);
        ASSERT_EQ(content.owner, kTable);
        ASSERT_EQ(content.reserved, 0U);
        ASSERT_EQ(content.freeField, kIndexRoom - content.used);
        ASSERT_TRUE(std::ranges::all_of(page.Bytes().subspan(kIndexEntries + content.used),
                                        [](std::uint8_t byte) { return byte == 0; }));
        tree.pages.push_back(number);
        tree.levels.resize(std::max<std::size_t>(tree.levels.size(), level + 1));
        tree.levels[level].push_back(number);
        tree.prefixed += content.prefix != 0 ? 1 : 0;
        if (content.leaf) {
            ASSERT_EQ(content.tail, 0U);
            for (const ByteVector& entry : content.entries) {
                ASSERT_GT(entry, low);
                ASSERT_TRUE(high == nullptr || entry <= *high);
                tree.entries.push_back(entry);
            }
            return;
        }
        ByteVector bound = low;
        for (const ByteVector& entry : content.entries) {
            const ByteVector next(NodeBound(entry).begin(), NodeBound(entry).end());
            Walk(NodeChild(entry), level - 1, bound, &next, tree);
            ASSERT_FALSE(HasFatalFailure());
            bound = next;
        }
        Walk(content.tail, level - 1, bound, high, tree);
    }

    void ExpectSound(const BuiltIndex& built, const EntryArena& entries) {
        Tree tree;
        Walk(built.root, ReadIndexPage(pager.Read(built.root)).level, {}, nullptr, tree);
        ASSERT_FALSE(HasFatalFailure());
        for (const std::vector<PageNumber>& level : tree.levels) {
            for (std::size_t i = 0; i < level.size(); ++i) {
                const IndexPageContent content = ReadIndexPage(pager.Read(level[i]));
                EXPECT_EQ(content.previous, i == 0 ? 0 : level[i - 1]);
                EXPECT_EQ(content.next, i + 1 == level.size() ? 0 : level[i + 1]);
            }
        }
        ASSERT_EQ(tree.entries.size(), entries.Size());
        for (std::size_t i = 0; i < entries.Size(); ++i) {
            ASSERT_TRUE(std::ranges::equal(tree.entries[i], entries.Entry(i))) << i;
        }
        EXPECT_THAT(ReadUsageMap(pager, map).pages, ::testing::UnorderedElementsAreArray(tree.pages));
        levels = tree.levels;
        prefixed = tree.prefixed;
    }

    /// From the first entry to the last, and from keys that are there or fall between.
    void ExpectReads(PageNumber root, const EntryArena& entries) {
        IndexReader reader(pager, root, kTable);
        std::size_t read = 0;
        for (bool more = reader.First(); more; more = reader.Next(), ++read) {
            ASSERT_TRUE(std::ranges::equal(reader.Key(), entries.Key(read)));
            ASSERT_EQ(reader.Row(), entries.Row(read));
        }
        ASSERT_EQ(read, entries.Size());
        for (int i = 0; i < 2'000; ++i) {
            const ByteView key = entries.Key(random() % entries.Size());
            ByteVector wanted(key.begin(),
                              key.begin() + static_cast<std::ptrdiff_t>(random() % key.size() + 1));
            wanted.back() = static_cast<std::uint8_t>(wanted.back() + random() % 2);
            std::size_t at = 0;
            for (std::size_t step = std::bit_floor(entries.Size()); step != 0; step /= 2) {
                const bool below = at + step <= entries.Size() &&
                                   std::ranges::lexicographical_compare(entries.Entry(at + step - 1), wanted);
                at += below ? step : 0;
            }
            ASSERT_EQ(reader.Seek(wanted), at < entries.Size());
            ASSERT_TRUE(at == entries.Size() || reader.Row() == entries.Row(at));
        }
    }

    Pager pager;
    PageAllocator allocator;
    PageNumber mapPage = 0;
    RowPointer map;
    std::vector<std::vector<PageNumber>> levels;
    std::size_t prefixed = 0;
    std::mt19937 random{4711};
};

/// Keys that end with a number, so that none is the front of another.
ByteVector KeyOf(std::uint32_t number, std::size_t length, std::uint8_t fill) {
    ByteVector key(length, fill);
    key.resize(length - 4);
    AppendU32Be(key, number);
    return key;
}

TEST_F(IndexBuilderTest, AnEmptyIndexIsOneEmptyLeaf) {
    EntryArena entries;
    const BuiltIndex built = Build(entries);
    ExpectSound(built, entries);
    EXPECT_EQ(built.distinctKeys, 0U);
    EXPECT_EQ(levels.size(), 1U);
    EXPECT_FALSE(IndexReader(pager, built.root, kTable).First());
}

TEST_F(IndexBuilderTest, TreesOfEveryHeight) {
    struct Case {
        std::uint32_t count;
        std::size_t keyLength;
        std::size_t levels;
    };
    // 401 entries of 9 bytes fill a leaf; the longest keys allow two children a node.
    static const Case kCases[] = {
        {1, 5, 1},       {401, 5, 1},     {30'000, 8, 2},       {120'000, 9, 2},
        {30'000, 40, 3}, {3'000, 255, 4}, {5, kMaxKeyBytes, 4}, {40, kMaxKeyBytes, 7}};
    for (const Case& c : kCases) {
        SCOPED_TRACE(::testing::Message() << c.count << " keys of " << c.keyLength << " bytes");
        map = allocator.NewMap(mapPage);
        std::vector<std::uint32_t> numbers(c.count);
        for (std::uint32_t i = 0; i < c.count; ++i) {
            numbers[i] = i * 3;
        }
        std::ranges::shuffle(numbers, random);
        EntryArena entries;
        for (const std::uint32_t number : numbers) {
            // The first bytes differ as well, or a shared front would make nearly everything fit.
            ByteVector key = KeyOf(number, c.keyLength, 0x7F);
            key[0] = static_cast<std::uint8_t>(number / 3 * 200 / c.count + 1);
            entries.Add(key, {number + 9, 3}, false);
        }
        const BuiltIndex built = Build(entries);
        ExpectSound(built, entries);
        EXPECT_EQ(levels.size(), c.levels);
        EXPECT_EQ(built.distinctKeys, c.count);
    }
}

TEST_F(IndexBuilderTest, SharedFrontsAreLeftOutWhenMoreEntriesFit) {
    for (const std::uint32_t count : {170U, 5'000U}) {
        map = allocator.NewMap(mapPage);
        EntryArena entries;
        for (std::uint32_t i = 0; i < count; ++i) {
            entries.Add(KeyOf(i, 16, 0x36), {i, 0}, false);
        }
        ExpectSound(Build(entries), entries);
        EXPECT_EQ(prefixed != 0, count > 180) << count;  // 180 whole entries of 20 bytes fill a leaf
    }
    EXPECT_LT(levels[0].size(), 5'000U * 20 / kIndexRoom / 2);
}

TEST_F(IndexBuilderTest, KeysOfRandomLengthsAndRepeatedOnes) {
    EntryArena entries;
    std::vector<ByteVector> keys;
    for (std::uint32_t row = 0; row < 4'000; ++row) {
        // Zero bytes end a key and stand nowhere else, as in texts.
        ByteVector key(random() % (row % 100 == 0 ? 3'000 : 40), 0);
        std::ranges::generate(key, [this] { return static_cast<std::uint8_t>(0x7F + random() % 3); });
        key.push_back(0);
        entries.Add(key, {row / 50, static_cast<std::uint8_t>(row % 50)}, false);
        keys.push_back(std::move(key));
    }
    const PageNumber root = allocator.Allocate();
    allocator.Add(map, root);
    const BuiltIndex built = Build(entries, root);
    EXPECT_EQ(built.root, root);
    ExpectSound(built, entries);

    std::ranges::sort(keys);
    EXPECT_EQ(built.distinctKeys, std::unique(keys.begin(), keys.end()) - keys.begin());
    EXPECT_TRUE(entries.FirstDuplicate());
    ExpectReads(built.root, entries);
}

TEST(EntryArenaTest, KeysWithANullAreNoDuplicates) {
    EntryArena entries;
    const ByteVector null{0x00};
    const ByteVector one{0x7F, 0x01};
    entries.Add(null, {9, 1}, true);
    entries.Add(one, {9, 2}, false);
    entries.Add(null, {9, 0}, true);
    entries.Sort();
    EXPECT_FALSE(entries.FirstDuplicate());
    EXPECT_EQ(entries.Row(0), (RowPointer{9, 0}));
    EXPECT_EQ(entries.DistinctKeys(), 2U);
    entries.Add(one, {8, 7}, false);
    entries.Sort();
    EXPECT_EQ(entries.FirstDuplicate(), 3U);
    EXPECT_EQ(entries.DistinctKeys(), 2U);
    EXPECT_THROW(entries.Add(ByteVector(kMaxKeyBytes + 1), {1, 1}, false), Error);
}

// ---- damage

/// A number that PutU32 writes with its highest byte first.
std::uint32_t BigEndian(std::uint32_t value) {
    ByteVector bytes;
    AppendU32Be(bytes, value);
    return U32(bytes, 0);
}

void SetMaskBit(Page& page, std::size_t bit) {
    page[0x1B + bit / 8] |= static_cast<std::uint8_t>(1U << bit % 8);
}

TEST(IndexPageTest, ImpossiblePagesAreRefused) {
    struct Case {
        const char* what;
        std::function<void(Page&)> damage;
    };
    static const Case kCases[] = {
        {"a data page", [](Page& page) { page[0] = kPageTypeData; }},
        {"an entry of no bytes", [](Page& page) { SetMaskBit(page, 0); }},
        {"an entry shorter than a row pointer", [](Page& page) { SetMaskBit(page, 3); }},
        {"a leaf entry on a node", [](Page& page) { page[0] = kPageTypeNode, SetMaskBit(page, 7); }},
        {"an entry behind the page", [](Page& page) { SetMaskBit(page, kIndexRoom + 1); }},
        {"a shared front longer than the first entry", [](Page& page) { page[0x18] = 10; }},
        {"a shared front of many pages", [](Page& page) { page[0x19] = 0xFF; }},
    };
    Page sound{};
    sound[0] = kPageTypeLeaf;
    SetMaskBit(sound, 9);
    SetMaskBit(sound, kIndexRoom);
    sound[0x18] = 9;
    EXPECT_EQ(ReadIndexPage(sound).entries.size(), 2U);
    EXPECT_EQ(ReadIndexPage(sound).used, kIndexRoom);
    for (const Case& c : kCases) {
        Page page = sound;
        c.damage(page);
        EXPECT_THROW(ReadIndexPage(page), Error) << c.what;
    }
    EXPECT_THROW(ReadIndexPage(ByteView(sound).first(100)), Error);
}

TEST_F(IndexBuilderTest, ReadingADamagedTreeEnds) {
    EntryArena entries;
    for (std::uint32_t i = 0; i < 5'000; ++i) {
        entries.Add(KeyOf(i, 5, 0x7F), {i, 0}, false);
    }
    const PageNumber root = Build(entries).root;
    ExpectSound({root, 5'000}, entries);
    const std::vector<PageNumber> leaves = levels[0];
    struct Case {
        const char* what;
        PageNumber page;
        std::size_t offset;
        std::uint32_t value;
    };
    const Case cases[] = {
        {"leaf chained to itself", leaves[2], 0x10, leaves[2]},
        {"leaf chained back", leaves[2], 0x10, leaves[1]},
        {"leaf chained to its node", leaves[2], 0x10, root},
        {"leaf behind the end", leaves[2], 0x10, 0xFFFFFF},
        {"leaf of another table", leaves[2], 0x04, kTable + 1},
        {"node above itself", root, kIndexEntries + 9, BigEndian(root)},
        {"node of another table", root, 0x04, kTable + 1},
    };
    for (const Case& c : cases) {
        const Page before = pager.Write(c.page);
        PutU32(pager.Write(c.page), c.offset, c.value);
        IndexReader reader(pager, root, kTable);
        EXPECT_THROW(
            {
                for (bool more = reader.First(); more; more = reader.Next()) {
                }
            },
            Error)
            << c.what;
        pager.Write(c.page) = before;
    }
    // Leaves without entries that follow each other in a circle.
    for (const PageNumber leaf : leaves) {
        Page& page = pager.Write(leaf);
        std::ranges::fill(page.begin() + 0x1B, page.begin() + kIndexEntries, 0);
        PutU32(page, 0x10, leaves[0]);
    }
    EXPECT_THROW(IndexReader(pager, root, kTable).First(), Error);
}

}  // namespace
}  // namespace tavrel::jet
