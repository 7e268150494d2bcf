// Index keys beyond 255 bytes, whose form other programs give them is not known.
#include <gtest/gtest.h>

#include "jet/compact/Compact.h"
#include "jet/session/SessionBench.h"

namespace tavrel::testing {
namespace {

using jet::UnknownWeights;

std::string Quoted(std::size_t length, char last = 'a') {
    return "'" + std::string(length - 1, 'a') + last + "'";
}

std::string Repeated(std::string_view text, std::size_t times) {
    std::string all;
    for (; times > 0; --times) {
        all += text;
    }
    return all;
}

class LongKeys : public ::testing::Test {
  protected:
    /// A key has a byte for each of these letters, and three more.
    static constexpr std::size_t kLongest = jet::kLongestKnownKey - 3;

    LongKeys() {
        bench_.Run("CREATE TABLE p (k TEXT(255) CONSTRAINT pk PRIMARY KEY, n LONG)");
        bench_.Run("CREATE TABLE c (k TEXT(255), m TEXT(255), n LONG, m2 TEXT(255))");
    }
    /// Long keys as they stand in files that were written before they were refused.
    void Fill() {
        bench_.Reopen(UnknownWeights::StandIn);
        bench_.Run("ALTER TABLE c ADD CONSTRAINT f FOREIGN KEY (k) REFERENCES p (k) ON UPDATE CASCADE");
        for (const char last : {'x', 'y', 'z'}) {
            bench_.Run("INSERT INTO p VALUES (" + Quoted(255, last) + ", 1)");
            bench_.Run("INSERT INTO c (k) VALUES (" + Quoted(255, last) + ")");
        }
        EXPECT_EQ(bench_.Session().TablesWithStandIns(), (std::set<std::string>{"c", "p"}));
        bench_.Reopen(UnknownWeights::Refuse);
    }
    SessionBench bench_;
};

TEST_F(LongKeys, NewOnesAreRefusedAndNothingChanges) {
    bench_.Run("INSERT INTO p VALUES (" + Quoted(kLongest) + ", 1)");
    bench_.Run("INSERT INTO p VALUES ('" + Repeated("ö", kLongest / 2) + "', 1)");
    bench_.Run("INSERT INTO c VALUES (" + Quoted(255) + ", " + Quoted(128) + ", 1, " + Quoted(128) + ")");
    bench_.Run("CREATE INDEX m ON c (m)");
    const std::string before = ReadWholeFile(bench_.Path());
    for (const std::string& statement : {
             "INSERT INTO p VALUES (" + Quoted(kLongest + 1) + ", 1)",
             "INSERT INTO p VALUES ('" + Repeated("ö", kLongest / 2 + 1) + "', 1)",
             std::string("UPDATE p SET k = k & 'a'"),
             std::string("CREATE INDEX i ON c (k)"),
             std::string("CREATE INDEX i ON c (m, n, m2 DESC)"),
             "UPDATE c SET m = " + Quoted(255),
         }) {
        EXPECT_EQ(bench_.Failure(statement), errors::kRecordTooLarge) << statement;
    }
    EXPECT_EQ(ReadWholeFile(bench_.Path()), before);
    EXPECT_EQ(bench_.AllFindings(), "");
}

TEST_F(LongKeys, RowsThatHaveOneStayUsable) {
    Fill();
    EXPECT_EQ(bench_.Run("SELECT COUNT(*) FROM p WHERE k = " + Quoted(255, 'y')), "1");
    EXPECT_EQ(bench_.Run("SELECT COUNT(*) FROM p WHERE k > " + Quoted(255, 'x')), "2");
    EXPECT_EQ(bench_.Run("UPDATE p SET n = 2 WHERE k = " + Quoted(255, 'y')), "1");
    EXPECT_EQ(bench_.Failure("DELETE FROM p WHERE k = " + Quoted(255, 'y')), errors::kChildRecords);
    EXPECT_EQ(bench_.Run("UPDATE p SET k = 'short' WHERE k = " + Quoted(255, 'y')), "1");
    EXPECT_EQ(bench_.Run("SELECT COUNT(*) FROM c WHERE k = 'short'"), "1");
    EXPECT_EQ(bench_.Run("DELETE FROM c WHERE k = " + Quoted(255, 'x')), "1");
    EXPECT_EQ(bench_.Run("DELETE FROM p WHERE k = " + Quoted(255, 'x')), "1");
    EXPECT_EQ(bench_.AllFindings(), "");
}

TEST_F(LongKeys, CompactingTakesThemAlong) {
    Fill();
    bench_.Close();
    const std::string compacted = bench_.Path() + ".new";
    EXPECT_TRUE(jet::CompactDatabase(bench_.Path(), compacted).losses.empty());
    SessionBench other(jet::EditSession::Open(compacted, {.password = {}, .checkPassword = false}),
                       compacted);
    EXPECT_EQ(other.Run("UPDATE p SET k = 'short' WHERE k = " + Quoted(255, 'y')), "1");
    EXPECT_EQ(other.Run("SELECT COUNT(*) FROM c WHERE k = 'short'"), "1");
    EXPECT_EQ(other.AllFindings(), "");
}

}  // namespace
}  // namespace tavrel::testing
