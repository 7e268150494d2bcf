// From the difference to the remedy, as people do it: compare, script, sql, compare.
#include <filesystem>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "support/Corpus.h"
#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::size_t LinesOf(const std::string& text) {
    return static_cast<std::size_t>(std::ranges::count(text, '\n'));
}

class ScriptBench {
  public:
    /// A copy of A that the script is run on.
    ScriptBench(const std::string& a, std::string b) : b_(std::move(b)) {
        std::filesystem::copy_file(a, copy_);
        std::filesystem::permissions(copy_, std::filesystem::perms::owner_write,
                                     std::filesystem::perm_options::add);
    }

    /// The copy is made like B; returns what the script said on standard error.
    std::string Apply(bool dropping) {
        std::vector<std::string> arguments = {"script", copy_, b_, "-o", sql_};
        if (dropping) {
            arguments.emplace_back("--drop");
        }
        const ProgramResult script = RunCli(arguments);
        EXPECT_EQ(script.exitCode, 1) << script.errors;
        const ProgramResult run = RunCli({"sql", copy_, ReadWholeFile(sql_)});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        arguments.resize(3);
        arguments.emplace_back("--drop");
        if (dropping) {
            EXPECT_EQ(RunCli(arguments).exitCode, 0) << "there is still something to do";
        }
        return script.errors;
    }

    [[nodiscard]] nlohmann::json Comparison() const {
        return nlohmann::json::parse(RunCli({"compare", copy_, b_, "--details", "--format", "json"}).output);
    }
    [[nodiscard]] const std::string& Copy() const { return copy_; }
    [[nodiscard]] std::string Sql() const { return ReadWholeFile(sql_); }

  private:
    TemporaryFolder folder_;
    std::string copy_ = folder_.File("copy.mdb"), sql_ = folder_.File("like-b.sql"), b_;
};

TEST(ScriptCommand, MakesRealDatabasesAlike) {
    TAVREL_NEEDS_CORPUS();
    const std::string corpus = SharedFolder() + "/corpus/";
    const std::pair<const char*, const char*> pairs[] = {{"coal-washing-1.mdb", "coal-washing-2.mdb"},
                                                         {"course-1.mdb", "course-2.mdb"},
                                                         {"airport-luggage.mdb", "airport-tickets.mdb"}};
    for (const auto& [one, other] : pairs) {
        for (const auto& [a, b] : {std::pair(one, other), std::pair(other, one)}) {
            SCOPED_TRACE(std::string(a) + " like " + b);
            ScriptBench bench(corpus + a, corpus + b);
            const std::string left = bench.Apply(true);
            const nlohmann::json comparison = bench.Comparison();
            // What is left are places of columns, spellings and rules for empty texts, each of them listed.
            for (const nlohmann::json& detail : comparison["details"]) {
                EXPECT_THAT(left, HasSubstr(detail["name"].get<std::string>()));
            }
            EXPECT_GE(LinesOf(left), comparison["details"].size());
            for (const nlohmann::json& row : comparison["rows"]) {
                const bool listed = row["red"].empty() || row["red"] == nlohmann::json::array({"zro"});
                EXPECT_TRUE(listed) << row;
            }
            if (HaveJetTools()) {
                EXPECT_EQ(RunCli({"check", bench.Copy()}).exitCode, RunCli({"check", corpus + a}).exitCode);
            }
        }
    }
}

TEST(ScriptCommand, ReplacesTheMigrationOfAStructure) {
    const TemporaryFolder folder;
    ASSERT_EQ(RunCli({"demo", folder.Path()}).exitCode, 0);
    for (const std::string product : {"dalvorii", "vintrelii", "vintrelpro", "pellamii"}) {
        SCOPED_TRACE(product);
        const std::string lowest = folder.File(product + "-1.mdb");
        const std::string latest = folder.File(product + "-latest.mdb");
        std::filesystem::copy_file(lowest, latest);
        ASSERT_EQ(RunCli({"patch", latest, "--product", product}).exitCode, 0);
        ScriptBench bench(lowest, latest);
        EXPECT_THAT(bench.Apply(true), IsEmpty());
        EXPECT_EQ(bench.Comparison()["differences"], 0);
        EXPECT_THAT(bench.Comparison()["details"], IsEmpty());
        if (HaveJetTools()) {
            EXPECT_EQ(StrictFindings(bench.Copy()), "");
        }
    }
}

/// Two small databases whose marks are equal but for one column that B lacks and one text that is shorter.
class SmallPair : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const bool first : {true, false}) {
            DatabaseBuilder builder(first ? a_ : b_);
            Table table("고객");
            table.Long("번호").Text("이름", first ? 20 : 10).Text("전화", 14);
            if (first) {
                table.Memo("메모");
            }
            table.Key({"번호"}).Index("찾기", {"이름", "전화"});
            if (!first) {
                table.Descending();
            }
            builder.Add(table);
            if (first) {
                builder.Rows(
                    "고객", {{Int(1), std::string("열두 글자를 넘는 긴 이름"), jet::Null{}, std::string("x")},
                             {Int(2), std::string("짧음"), jet::Null{}, jet::Null{}}});
            }
            builder.Finish();
        }
    }

    TemporaryFolder folder_;
    std::string a_ = folder_.File("a.mdb"), b_ = folder_.File("b.mdb");
};

TEST_F(SmallPair, LosesNothingUnlessAsked) {
    const ProgramResult script = RunCli({"script", a_, b_});
    EXPECT_EQ(script.exitCode, 1);
    EXPECT_THAT(script.errors, HasSubstr("자료를 잃는 문장 2개"));
    EXPECT_THAT(script.output, HasSubstr("-- ALTER TABLE 고객 DROP COLUMN 메모;"));
    EXPECT_THAT(script.output, HasSubstr("값이 있는 행 2개, 잘리는 행 1개"));
    EXPECT_THAT(script.output, HasSubstr("B에 없어 지웁니다. 값이 있는 행 1개"));
    EXPECT_THAT(script.output, HasSubstr("\nCREATE INDEX 찾기 ON 고객 (이름 DESC, 전화 DESC);"));
    ASSERT_EQ(RunCli({"sql", a_, script.output}).exitCode, 0);
    EXPECT_THAT(RunCli({"rows", a_, "고객", "--format", "csv"}).output,
                HasSubstr("열두 글자를 넘는 긴 이름"));
    EXPECT_THAT(RunCli({"script", a_, b_}).output, Not(HasSubstr("\nBEGIN")));
    EXPECT_EQ(RunCli({"sql", a_, RunCli({"script", a_, b_, "--drop"}).output}).exitCode, 0);
    EXPECT_EQ(RunCli({"compare", a_, b_, "--details"}).exitCode, 0);
    EXPECT_EQ(RunCli({"script", a_, b_}).exitCode, 0);
}

TEST_F(SmallPair, RefusesAndLeavesTheInputAlone) {
    const std::string before = ReadWholeFile(a_);
    EXPECT_EQ(RunCli({"script", a_, b_, "-o", a_}).exitCode, 2);
    EXPECT_EQ(RunCli({"script", a_, folder_.File("none.mdb")}).exitCode, 2);
    EXPECT_EQ(RunCli({"script", a_, b_, "--drop", "-o", folder_.File("x.sql")}).exitCode, 1);
    EXPECT_EQ(ReadWholeFile(a_), before);
}

TEST_F(SmallPair, DetailsSayWhatTheMarksDoNot) {
    const std::vector<std::string> both = {"compare", a_, b_, "--both-only"};
    for (const std::string format : {"text", "csv", "html"}) {
        std::vector<std::string> arguments = both;
        arguments.insert(arguments.end(), {"--format", format});
        const std::string without = RunCli(arguments).output;
        EXPECT_THAT(without, Not(HasSubstr("전화 DESC"))) << format;
        arguments.emplace_back("--details");
        const std::string with = RunCli(arguments).output;
        EXPECT_THAT(with, HasSubstr("전화 DESC")) << format;
        EXPECT_GT(with.size(), without.size()) << format;
    }
    const auto json =
        nlohmann::json::parse(RunCli({"compare", a_, b_, "--details", "--format", "json"}).output);
    ASSERT_EQ(json["details"].size(), 1U) << json["details"];
    EXPECT_EQ(json["details"][0]["kind"], "index");
    EXPECT_EQ(json["details"][0]["differs"], nlohmann::json::array({"columns"}));
}

TEST_F(SmallPair, ManyFilesAreComparedWithOneReference) {
    std::filesystem::create_directory(folder_.File("many"));
    std::filesystem::copy_file(a_, folder_.File("many/a.mdb"));
    std::filesystem::copy_file(b_, folder_.File("many/b.MDB"));
    const ProgramResult good = RunCli({"compare", a_, folder_.File("many"), a_, "--format", "json"});
    EXPECT_EQ(good.exitCode, 1) << good.errors;
    const auto json = nlohmann::json::parse(good.output);
    ASSERT_EQ(json["files"].size(), 3U);
    EXPECT_EQ(json["files"][0]["state"], "equal");
    EXPECT_EQ(json["files"][1]["state"], "different");
    EXPECT_EQ(json["files"][1]["only_reference"], 1);
    EXPECT_EQ(json["files"][1]["size"], 1);
    EXPECT_EQ(json["files"][2]["state"], "equal");
    EXPECT_EQ(RunCli({"compare", a_, a_, a_}).exitCode, 0);

    const std::string pages = folder_.File("pages");
    const ProgramResult mixed = RunCli(
        {"compare", a_, b_, folder_.File("none.mdb"), folder_.File("many"), "--format", "html", "-o", pages});
    EXPECT_EQ(mixed.exitCode, 2);
    const std::string index = ReadWholeFile(pages + "/index.html");
    EXPECT_THAT(index, HasSubstr("href=\"./b.html\""));
    EXPECT_THAT(index, HasSubstr("href=\"./b-2.html\""));  // two files are called b
    EXPECT_THAT(index, HasSubstr("none.mdb"));
    EXPECT_THAT(ReadWholeFile(pages + "/b-2.html"), HasSubstr("메모"));
    EXPECT_FALSE(std::filesystem::exists(pages + "/none.html"));
}

}  // namespace
}  // namespace tavrel::testing
