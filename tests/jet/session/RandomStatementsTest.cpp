// Thousands of random statements against a simple model.  For longer and other runs TAVREL_STATEMENTS says
// how many and TAVREL_SEED which.
#include <cstdlib>

#include <gtest/gtest.h>

#include "jet/session/StatementMaker.h"

namespace tavrel::testing {
namespace {

int StatementsPerRun() {
    const char* chosen = std::getenv("TAVREL_STATEMENTS");
    return chosen != nullptr ? std::atoi(chosen) : 1500;
}

struct Run {
    const char* name;
    std::uint16_t sortOrder;
    unsigned seed;
    friend void PrintTo(const Run& it, std::ostream* out) { *out << it.name; }
};

/// Another seed for another run.
unsigned SeedFrom(unsigned usual) {
    const char* chosen = std::getenv("TAVREL_SEED");
    return chosen != nullptr ? usual + static_cast<unsigned>(std::atoi(chosen)) : usual;
}

class RandomStatements : public ::testing::TestWithParam<Run> {};

/// Structure and rows of the model's tables, as the independent reader sees them.
void ExpectDump(const std::string& path, const Model& model) {
    const nlohmann::json dump = DumpOf(path);
    for (const auto& [name, table] : model.tables) {
        SCOPED_TRACE(name);
        const nlohmann::json seen = TableOf(dump, name);
        ASSERT_EQ(seen["columns"].size(), table.columns.size());
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const nlohmann::json& column = seen["columns"][i];
            EXPECT_EQ(column["name"], table.columns[i].name);
            EXPECT_EQ(column["dao_type"], jet::DaoType(table.columns[i].type));
            EXPECT_EQ(column["default"], table.columns[i].defaultText);
            EXPECT_EQ(column["required"], table.columns[i].required);
            EXPECT_EQ(column["autonumber"], table.columns[i].counter);
            if (table.columns[i].type == ColumnType::Text) {
                EXPECT_EQ(column["size"], table.columns[i].size);
            }
        }
        std::size_t plain = 0;
        for (const nlohmann::json& index : seen["indexes"]) {
            plain += index["foreign"] ? 0U : 1U;
        }
        EXPECT_EQ(plain, table.indexes.size());
        std::vector<std::string> lines;
        for (const nlohmann::json& row : RowsOf(path, name)) {
            nlohmann::json line = nlohmann::json::array();
            for (const ModelColumn& column : table.columns) {
                line.push_back(row[column.name]);
            }
            lines.push_back(line.dump());
        }
        std::ranges::sort(lines);
        EXPECT_EQ(lines, Model::Lines(table));
    }
    EXPECT_EQ(dump["tables"].size(), model.tables.size());
    EXPECT_EQ(dump["relations"].size(), model.relations.size());
}

TEST_P(RandomStatements, LeaveWhatASimpleModelSays) {
    SessionBench bench({.sortOrder = GetParam().sortOrder, .password = {}, .pageKey = 0, .created = {}});
    StatementMaker maker(bench, SeedFrom(GetParam().seed), GetParam().sortOrder == jet::kSortKorean);
    for (int i = 1; i <= StatementsPerRun(); ++i) {
        SCOPED_TRACE("statement " + std::to_string(i));
        maker.Step();
        if (i % 50 == 0) {
            maker.ExpectRows();
            EXPECT_EQ(bench.Findings(), "");
        }
        if (i % 500 == 0 && !maker.InTransaction()) {
            bench.Reopen();
        }
        if (::testing::Test::HasFailure()) {
            break;
        }
    }
    maker.EndTransaction();
    maker.ExpectRows();
    EXPECT_EQ(bench.Findings(), "");
    EXPECT_GT(maker.Outcomes().size(), 4U);  // refusals were among them
    bench.Close();
    if (HaveJetTools()) {
        EXPECT_EQ(StrictFindings(bench.Path()), "");
        ExpectDump(bench.Path(), maker.State());
    }
}

INSTANTIATE_TEST_SUITE_P(NewDatabases, RandomStatements,
                         ::testing::Values(Run{"General", jet::kSortGeneral, 1},
                                           Run{"Korean", jet::kSortKorean, 2}),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace tavrel::testing
