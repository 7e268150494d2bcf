// Statements put together at random: whatever comes, there is an answer or an Error.
#include <random>

#include <gmock/gmock.h>

#include "jet/sql/syntax/Token.h"
#include "support/MemoryTables.h"

namespace tavrel::test {
namespace {

const std::vector<std::string> kSeeds = {
    "SELECT DISTINCT TOP 2 a.k, COUNT(*), MAX(a.s) FROM t AS a LEFT JOIN u ON a.k = u.k WHERE a.s LIKE '%a_' "
    "GROUP BY a.k"
    " HAVING COUNT(*) > 1 ORDER BY 1 DESC, a.k",
    "SELECT t.*, (SELECT MAX(k) FROM u WHERE u.k = t.k) FROM t, u WHERE t.k IN (SELECT k FROM u) AND t.k "
    "BETWEEN 1 AND 2",
    "SELECT x.k FROM (SELECT k FROM t UNION ALL SELECT k FROM u) AS x INNER JOIN t ON t.k = x.k WHERE NOT "
    "EXISTS (SELECT *"
    " FROM u WHERE u.k = x.k) OR x.k IS NOT NULL",
    "SELECT IIF(k > 1, LEFT(s, 2), FORMAT(k, '00')) & #2024-01-02# FROM t WHERE LEN(s) = 1 XOR ISNUMERIC(s) "
    "ORDER BY s;",
    "INSERT INTO t (k, s, d) VALUES (1 + 2 * -3, 'a' & NULL, Now())",
    "INSERT INTO u SELECT k, s FROM t WHERE k NOT IN (1, 2.5, NULL)",
    "UPDATE t INNER JOIN u ON t.k = u.k SET t.s = u.s & '1', t.k = t.k \\ 2 MOD 3 WHERE t.d IS NULL",
    "DELETE * FROM u WHERE k = (SELECT FIRST(k) FROM t) AND s <> ''",
    "CREATE TABLE n (a COUNTER(1, 2), b VARCHAR(10) DEFAULT \"\" NOT NULL, c NUMERIC(5, 2), CONSTRAINT p "
    "PRIMARY KEY (a))",
    "ALTER TABLE t ADD COLUMN z DOUBLE DEFAULT (1 + 2) NOT NULL UNIQUE REFERENCES u (k) ON DELETE CASCADE",
    "CREATE UNIQUE INDEX i ON u (k DESC, s) WITH IGNORE NULL",
};

class HostileStatements {
  public:
    HostileStatements() : random_(11) {
        for (const std::string& seed : kSeeds) {
            std::vector<std::string> words;
            for (const jet::sql::Token& token : jet::sql::Tokenize(seed)) {
                words.emplace_back(token.source);
            }
            statements_.push_back(std::move(words));
        }
    }

    /// A statement with some words replaced, left out, doubled or taken from another one.
    std::string Next() {
        std::vector<std::string> words = statements_[Below(statements_.size())];
        for (std::size_t i = 1 + Below(3); i > 0 && !words.empty(); --i) {
            const auto at = words.begin() + static_cast<std::ptrdiff_t>(Below(words.size()));
            const std::vector<std::string>& other = statements_[Below(statements_.size())];
            const std::size_t from = Below(other.size());
            switch (Below(4)) {
                case 0:
                    words.erase(at);
                    break;
                case 1:
                    *at = other[from];
                    break;
                case 2:
                    words.insert(at, *at);
                    break;
                default:
                    words.insert(
                        at, other.begin() + static_cast<std::ptrdiff_t>(from),
                        other.begin() + static_cast<std::ptrdiff_t>(std::min(from + Below(9), other.size())));
            }
        }
        std::string statement;
        for (const std::string& word : words) {
            statement += word + " ";
        }
        return Below(20) == 0 ? statement.substr(0, Below(statement.size())) : statement;
    }

  private:
    std::size_t Below(std::size_t limit) { return random_() % limit; }

    std::mt19937 random_;
    std::vector<std::vector<std::string>> statements_;
};

TEST(HostileStatements, GetAnAnswerOrAnError) {
    HostileStatements statements;
    std::size_t accepted = 0;
    std::size_t refused = 0;
    for (int round = 0; round < 60; ++round) {
        MemoryDatabase database;
        database.workspace.maxRowVisits = 5000;
        database.Run("CREATE TABLE t (k LONG, s VARCHAR(5), d DATE)");
        database.Run("CREATE TABLE u (k LONG, s VARCHAR(5))");
        database.Run("CREATE INDEX i ON u (k)");
        database.Run("INSERT INTO t VALUES (1, 'a', NULL)");
        database.Run("INSERT INTO u VALUES (2, '1')");
        for (int i = 0; i < 300; ++i) {
            const std::string statement = statements.Next();
            try {
                database.Run(statement);
                ++accepted;
            } catch (const Error& error) {
                ++refused;
                ASSERT_NE(FindErrorText(error.Number()), nullptr) << statement << ": " << error.Number();
                // A text that lacks what belongs into it ends in a blank.
                ASSERT_NE(error.Description().back(), ' ') << statement;
            }
        }
    }
    EXPECT_GT(accepted, 500U);
    EXPECT_GT(refused, 500U);
}

}  // namespace
}  // namespace tavrel::test
