// Damaged files: whatever the bytes say, reading ends in an answer or in a clear error, soon and in little
// memory.
//
// To look into one case: TAVREL_MUTATIONS=first,count runs those seeds only and tells each before it starts.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include <gmock/gmock.h>

#include "jet/database/Database.h"
#include "jet/define/TableWriter.h"
#include "support/Corpus.h"
#include "support/Mutations.h"
#include "support/TemporaryFolder.h"

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#endif

namespace tavrel::testing {
namespace {

/// Generous: the slowest takes a twentieth of it, and sanitizers make all of it slower.
constexpr std::chrono::seconds kLimit{20};

constexpr long kLimitKilobytes = 1L << 20;

/// The most memory that the process has held; 0 where the system does not tell.
long PeakKilobytes() {
#if __has_include(<sys/resource.h>)
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
#else
    return 0;
#endif
}

struct Source {
    const char* file;
    std::uint32_t mutations;
    friend void PrintTo(const Source& it, std::ostream* out) { *out << it.file; }
};

FileBytes ReadFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Seeds 1 to `count`.
void ExpectSafe(const FileBytes& sound, std::uint32_t count) {
    std::uint32_t first = 1;
    const char* chosen = std::getenv("TAVREL_MUTATIONS");
    if (chosen != nullptr) {
        std::sscanf(chosen, "%u,%u", &first, &count);
    }
    const long before = PeakKilobytes();
    std::size_t answered = 0;
    std::size_t refused = 0;
    for (std::uint32_t seed = first; seed < first + count; ++seed) {
        FileBytes file = sound;
        const std::string done = Mutator(seed).Mutate(file);
        if (chosen != nullptr) {
            std::cerr << seed << ": " << done << std::endl;
        }
        const auto start = std::chrono::steady_clock::now();
        Exercise exercise;
        ASSERT_NO_THROW(exercise = ReadEverything(file)) << "seed " << seed << ": " << done;
        ASSERT_LT(std::chrono::steady_clock::now() - start, kLimit) << "seed " << seed << ": " << done;
        answered += exercise.answers != 0 ? 1 : 0;
        refused += exercise.errors + exercise.findings != 0 ? 1 : 0;
    }
    EXPECT_LT(PeakKilobytes() - before, kLimitKilobytes);
    // Damage that never gets in, or is never seen, would test nothing.
    EXPECT_TRUE(chosen != nullptr || (answered > count / 2 && refused > count / 4))
        << answered << " " << refused;
}

/// Every type and kind of index, defaults.
jet::NewTable Customers() {
    using jet::ColumnType;
    static constexpr ColumnType kTypes[] = {ColumnType::Long,   ColumnType::Text,    ColumnType::Boolean,
                                            ColumnType::Byte,   ColumnType::Integer, ColumnType::Single,
                                            ColumnType::Double, ColumnType::Date,    ColumnType::Currency,
                                            ColumnType::Guid,   ColumnType::Binary,  ColumnType::Numeric,
                                            ColumnType::Memo,   ColumnType::Ole};
    jet::NewTable table{"고객", {}, {}};
    for (const ColumnType type : kTypes) {
        jet::NewColumn& column = table.columns.emplace_back();
        column.name = "C" + std::to_string(table.columns.size());
        column.type = type;
        column.defaultValue = type == ColumnType::Integer ? "7" : "";
    }
    table.columns[0].autonumber = true;
    table.indexes = {{"PrimaryKey", {{"C1", false}}, true, true, false, true},
                     {"ByName", {{"C2", false}, {"C4", true}}, false, false, false, false}};
    return table;
}

/// Long values in the row, on one page and in a chain.
std::vector<jet::Value> Customer(std::int64_t row) {
    const std::size_t longBytes = row == 5 ? 20'000 : row % 7 == 0 ? 300 : 10;
    return {jet::Null{},
            "name " + std::to_string(row % 70),
            row % 2 == 0,
            row % 200,
            row,
            1.5F,
            2.5,
            jet::Date{40'000.5},
            jet::Currency{12'345},
            jet::Guid{},
            jet::ByteVector{1, 2, 3},
            jet::Decimal{{0, 0, 0, 99}, true, 0},
            std::string(longBytes, 'm'),
            jet::ByteVector(longBytes, 0x55)};
}

jet::NewTable Orders() {
    jet::NewTable table{"Orders", {}, {}};
    table.columns.resize(2);
    table.columns[0].name = "Customer";
    table.columns[1].name = "Note";
    table.columns[1].type = jet::ColumnType::Text;
    table.indexes = {{"ByCustomer", {{"Customer", false}}, false, false, false, false}};
    return table;
}

FileBytes CreatedDatabase(std::uint32_t pageKey) {
    const TemporaryFolder folder;
    const std::string path = folder.File("created.mdb");
    jet::CreateOptions options;
    options.pageKey = pageKey;
    const auto database = jet::Database::Create(path, options);
    database->CreateTable(Customers());
    database->CreateTable(Orders());
    database->CreateRelation({"Placed", "Orders", "고객", {"Customer"}, {"C1"}, true, true, true, false});
    const auto customers = database->Append("고객");
    for (std::int64_t row = 0; row < 300; ++row) {
        customers->Append(Customer(row));
    }
    customers->Finish();
    const auto orders = database->Append("Orders");
    for (std::int64_t row = 0; row < 800; ++row) {
        orders->Append({row % 300 + 1, "주문"});
    }
    orders->Finish();
    database->Flush();
    return ReadFile(path);
}

TEST(CreatedMutationTest, PlainPages) {
    const FileBytes sound = CreatedDatabase(0);
    const Exercise exercise = ReadEverything(sound);
    EXPECT_EQ(exercise.errors, 0U);
    EXPECT_EQ(exercise.findings, 0U);
    ExpectSafe(sound, 400);
}

TEST(CreatedMutationTest, EncipheredPages) {
    ExpectSafe(CreatedDatabase(0x1234ABCD), 100);
}

using MutationTest = ::testing::TestWithParam<Source>;

TEST_P(MutationTest, SampleDatabase) {
    TAVREL_NEEDS_CORPUS();
    const FileBytes sound = ReadFile(std::filesystem::path(SharedFolder()) / "corpus" / GetParam().file);
    ASSERT_FALSE(sound.empty());
    ExpectSafe(sound, GetParam().mutations);
}

constexpr Source kSources[] = {
    {"wedding-ko.mdb", 250},     {"coal-washing-1.mdb", 250},  {"motel.mdb", 250},     {"course-2.mdb", 250},
    {"jet-station-tr.mdb", 150}, {"airport-tickets.mdb", 150}, {"library-ko.mdb", 200}};

INSTANTIATE_TEST_SUITE_P(Files, MutationTest, ::testing::ValuesIn(kSources), [](const auto& source) {
    std::string name = source.param.file;
    std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
    return name;
});

}  // namespace
}  // namespace tavrel::testing
