// Random pairs of databases: after the script, what is left is what its comments have listed, and nothing is
// lost that both can hold.  For longer and other runs TAVREL_PAIRS says how many and TAVREL_SEED which.
#include <cstdlib>
#include <filesystem>
#include <map>

#include <gmock/gmock.h>

#include "details/ReadSchema.h"
#include "details/Words.h"
#include "jet/check/Check.h"
#include "jet/session/EditSession.h"
#include "script/RandomStructure.h"
#include "script/Script.h"
#include "support/JetTools.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

int NumberFrom(const char* variable, int usual) {
    const char* chosen = std::getenv(variable);
    return chosen != nullptr ? std::atoi(chosen) : usual;
}

std::vector<std::string> InLines(const std::vector<details::Difference>& differences) {
    std::vector<std::string> lines;
    for (const details::Difference& difference : differences) {
        lines.push_back(details::InWords(difference));
    }
    return lines;
}

script::Script ScriptFor(const std::string& a, const std::string& b, bool dropping) {
    const auto ofA = jet::Database::Open(a);
    const auto ofB = jet::Database::Open(b);
    return script::MakeScript(*ofA, *ofB, dropping);
}

std::vector<std::string> LeftBetween(const std::string& a, const std::string& b) {
    return InLines(details::Compare(details::ReadSchema(a, {}), details::ReadSchema(b, {})));
}

/// All or nothing; 0, or the number of the error.
std::int32_t Run(const std::string& path, const std::vector<script::Step>& steps, std::string& failed) {
    const auto session = jet::EditSession::Open(path, {}, jet::EditSession::Durability::WrittenOut);
    session->Execute("BEGIN TRANSACTION");
    for (const script::Step& step : steps) {
        for (const std::string& statement : step.statements) {
            failed = statement;
            if (const std::int32_t error = ErrorOf([&] { session->Execute(statement); }); error != 0) {
                return error;
            }
        }
    }
    session->Execute("COMMIT TRANSACTION");
    return 0;
}

/// Rows that no structure can be blamed for: a key that repeats, a Null in one, a child without parent.
bool IsForTheRows(std::int32_t error) {
    return error == errors::kDuplicateKey || error == errors::kNullInKey || error == 3379;
}

std::string Findings(const std::string& path) {
    std::string lines;
    const auto database = jet::Database::Open(path);
    for (const jet::Finding& finding : jet::CheckDatabase(*database).findings) {
        lines += finding.where + ": " + finding.text + "\n";
    }
    return lines;
}

/// A value as it compares across definitions of its column: without the blanks that a fixed length adds, and
/// whatever the decimals are.
jet::Value Comparable(const jet::Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return text->substr(0, text->find_last_not_of(' ') + 1);
    }
    const auto* decimal = std::get_if<jet::Decimal>(&value);
    return decimal != nullptr ? jet::Value(std::strtod(DecimalText(*decimal).c_str(), nullptr)) : value;
}

/// Values by table and column, row by row.
std::map<std::string, std::vector<jet::Value>> ValuesOf(const std::string& path) {
    std::map<std::string, std::vector<jet::Value>> values;
    const auto database = jet::Database::Open(path);
    for (const details::Table& table : details::ReadSchema(*database).tables) {
        for (const auto& row : ReadRows(*database, table.name)) {
            for (std::size_t i = 0; i < row.size(); ++i) {
                values[table.name + "." + table.columns[i].name].push_back(Comparable(row[i]));
            }
        }
    }
    return values;
}

void ExpectNothingLost(const std::string& before, const std::string& after) {
    const auto now = ValuesOf(after);
    for (const auto& [column, values] : ValuesOf(before)) {
        ASSERT_TRUE(now.contains(column)) << column;
        const std::vector<jet::Value>& kept = now.at(column);
        ASSERT_EQ(kept.size(), values.size()) << column;
        for (std::size_t i = 0; i < values.size(); ++i) {
            // Of a column that got a wider type it counts that there is a value.
            const bool sameType = kept[i].index() == values[i].index();
            EXPECT_TRUE(sameType ? kept[i] == values[i] : jet::IsNull(kept[i]) == jet::IsNull(values[i]))
                << column << " of row " << i;
        }
    }
}

struct Pair {
    TemporaryFolder folder;
    std::string a = folder.File("a.mdb"), b = folder.File("b.mdb"), changed = folder.File("c.mdb");
};

/// False when the rows of A do not allow B's structure; the file is then as it was.
bool Try(const Pair& pair, bool dropping, bool strictly) {
    std::filesystem::copy_file(pair.a, pair.changed, std::filesystem::copy_options::overwrite_existing);
    const script::Script script = ScriptFor(pair.changed, pair.b, dropping);
    std::string failed;
    const std::int32_t error = Run(pair.changed, script.steps, failed);
    if (IsForTheRows(error)) {
        EXPECT_EQ(LeftBetween(pair.changed, pair.b), LeftBetween(pair.a, pair.b));
        return false;
    }
    EXPECT_EQ(error, 0) << failed;
    EXPECT_EQ(LeftBetween(pair.changed, pair.b), InLines(script.left));
    EXPECT_EQ(Findings(pair.changed), "");
    EXPECT_TRUE(ScriptFor(pair.changed, pair.b, dropping).steps.empty());
    if (strictly && HaveJetTools()) {
        EXPECT_EQ(StrictFindings(pair.changed), "");
    }
    if (!dropping) {
        ExpectNothingLost(pair.a, pair.changed);
        const std::int32_t later = Run(pair.changed, script.losing, failed);
        EXPECT_TRUE(later == 0 || IsForTheRows(later)) << later << ": " << failed;
        if (later == 0) {
            EXPECT_EQ(LeftBetween(pair.changed, pair.b), InLines(ScriptFor(pair.a, pair.b, true).left));
        }
    }
    return true;
}

TEST(RandomPairs, AreLeftWithWhatTheCommentsListed) {
    const int pairs = NumberFrom("TAVREL_PAIRS", 120);
    const auto seed = static_cast<unsigned>(NumberFrom("TAVREL_SEED", 1));
    int good = 0;
    for (int i = 0; i < pairs && !::testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE("pair " + std::to_string(i));
        StructureMaker maker(seed * 100'000U + static_cast<unsigned>(i));
        const Pair pair;
        const Structure structure = maker.Make();
        maker.Write(structure, pair.a, true);
        maker.Write(maker.Changed(structure), pair.b, false);
        for (const bool dropping : {false, true}) {
            good += Try(pair, dropping, i % 10 == 0) ? 1 : 0;
        }
    }
    EXPECT_GT(good, pairs);  // of twice as many
}

}  // namespace
}  // namespace tavrel::testing
