// The commands that know the four products: demo, compare --product, patch.
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "patch/Modules.h"
#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::SizeIs;

/// The demonstration databases, made once for all tests.
class ProductFiles : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        folder_ = std::make_unique<TemporaryFolder>();
        made_ = RunCli({"demo", folder_->File("demo")});
    }
    static void TearDownTestSuite() { folder_.reset(); }
    void SetUp() override { ASSERT_EQ(made_.exitCode, 0) << made_.errors; }

    static std::string File(const std::string& name) { return folder_->File("demo/" + name); }
    /// A copy that a test may change.
    static std::string Copy(const std::string& name) {
        const std::string copy = folder_->File("copy-" + name);
        std::filesystem::copy_file(File(name), copy, std::filesystem::copy_options::overwrite_existing);
        return copy;
    }
    static std::vector<json> TraceOf(const std::string& file) {
        std::vector<json> lines;
        std::istringstream in(ReadWholeFile(file));
        for (std::string line; std::getline(in, line);) {
            lines.push_back(json::parse(line));
        }
        return lines;
    }

    static std::unique_ptr<TemporaryFolder> folder_;
    static ProgramResult made_;
};

std::unique_ptr<TemporaryFolder> ProductFiles::folder_;
ProgramResult ProductFiles::made_;

TEST_F(ProductFiles, BeginWithThePairToCompare) {
    EXPECT_TRUE(made_.output.starts_with(File("dalvorii-96.mdb") + "\n" + File("dalvorii-133.mdb") + "\n"));
    std::istringstream names(made_.output);
    for (std::string name; std::getline(names, name);) {
        EXPECT_EQ(RunCli({"check", name, "--strict"}).output, "이상이 없습니다.\n") << name;
    }
    EXPECT_EQ(RunCli({"demo", folder_->File("demo")}).exitCode, 0) << "they may be made again";
}

TEST_F(ProductFiles, AreComparedAtTheLatestVersion) {
    const std::string before =
        ReadWholeFile(File("dalvorii-96.mdb")) + ReadWholeFile(File("dalvorii-133.mdb"));
    for (const char* name : {"dalvorii", "BRELTII"}) {
        const ProgramResult result = RunCli({"compare", File("dalvorii-96.mdb"), File("dalvorii-133.mdb"),
                                             "--product", name, "--format", "json", "--only-differences"});
        ASSERT_EQ(result.exitCode, 1) << result.errors;
        EXPECT_EQ(result.errors, "");
        const json report = json::parse(result.output);
        EXPECT_EQ(report["differences"], 6);
        for (const json& row : report["rows"]) {
            EXPECT_FALSE(row["b"].is_null()) << "what the site of the newer one has changed: " << row;
        }
    }
    EXPECT_TRUE(before == ReadWholeFile(File("dalvorii-96.mdb")) + ReadWholeFile(File("dalvorii-133.mdb")));
    const ProgramResult unknown =
        RunCli({"compare", File("demo-a.mdb"), File("demo-b.mdb"), "--product", "access"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_THAT(unknown.errors, HasSubstr("dalvorii|vintrelii|vintrelpro|pellamii"));
}

TEST_F(ProductFiles, ArePatchedInPlace) {
    struct Case {
        const char* file;
        const char* product;
        int target;
    };
    for (const Case& c : {Case{"dalvorii-96.mdb", "dalvorii", modDBPatch_BRELT::kTarget},
                          Case{"dalvorii-1.mdb", "breltII", modDBPatch_BRELT::kTarget},
                          Case{"vintrelii-1.mdb", "vintrelii", modDBPatch_KILM::kTarget},
                          Case{"vintrelpro-1.mdb", "vintrelpro", modDBPatch_KILMPRO::kTarget},
                          Case{"pellamii-1.mdb", "pellamii", modDBPatch_NORB::kTarget}}) {
        SCOPED_TRACE(c.file);
        const std::string file = Copy(c.file);
        const std::string trace = folder_->File("trace.jsonl");
        const ProgramResult result = RunCli({"patch", "--product", c.product, file, "--trace", trace});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
        const std::vector<json> sent = TraceOf(trace);
        EXPECT_EQ(sent.front().dump(),
                  R"({"kind":"value","sql":"SELECT ver FROM dbversion WHERE dbid='main'"})");
        const std::string last =
            "UPDATE dbversion SET ver = " + std::to_string(c.target) + " WHERE dbid = 'main'";
        EXPECT_EQ(sent.back(), json({{"kind", "execute"}, {"sql", last}}));
        EXPECT_EQ(RunCli({"check", file, "--strict"}).exitCode, 0);
        // The second time there is nothing to do.
        EXPECT_EQ(RunCli({"patch", "--product", c.product, file, "--trace", trace}).exitCode, 0);
        EXPECT_THAT(TraceOf(trace), SizeIs(1));
        if (HaveJetTools()) {
            EXPECT_EQ(StrictFindings(file), "");
        }
    }
}

TEST_F(ProductFiles, StayAsTheyWereWhenAStepFails) {
    // The eighth step finds its column there already, when seven have run.
    const std::string file = Copy("pellamii-1.mdb");
    ASSERT_EQ(RunCli({"sql", file, "ALTER TABLE taxlist_m ADD COLUMN userok BYTE"}).exitCode, 0);
    const std::string before = ReadWholeFile(file);
    const ProgramResult failed = RunCli({"patch", "--product", "pellamii", file});
    EXPECT_EQ(failed.exitCode, 2);
    EXPECT_THAT(failed.errors, HasSubstr("패치 단계 8에서 멈추었습니다. 파일은 패치하기 전 그대로입니다.\n"));
    EXPECT_THAT(failed.errors, HasSubstr("PellamII"));
    EXPECT_TRUE(ReadWholeFile(file) == before);
    EXPECT_FALSE(std::filesystem::exists(file + "-journal"));
    // The same in a comparison: which side, and that the product may be the wrong one.
    const ProgramResult compared = RunCli({"compare", File("pellamii-1.mdb"), file, "--product", "pellamii"});
    EXPECT_EQ(compared.exitCode, 2);
    EXPECT_THAT(compared.errors, HasSubstr("DB B의 작업 사본을 최신 버전으로 바꾸지 못했습니다."));
    EXPECT_THAT(compared.errors, HasSubstr("PellamII"));
}

TEST_F(ProductFiles, SayWhyTheyCannotBePatched) {
    const std::string file = Copy("demo-a.mdb");
    const std::string trace = folder_->File("failed.jsonl");
    const ProgramResult failed = RunCli({"patch", "--product", "pellamii", file, "--trace", trace});
    EXPECT_EQ(failed.exitCode, 2);
    EXPECT_THAT(failed.errors, HasSubstr(" in procedure ChkDBpatch of Module modMain_dbPatch"));
    EXPECT_THAT(TraceOf(trace), ::testing::Not(::testing::IsEmpty())) << "kept after a failure too";

    const std::string before = ReadWholeFile(file);
    EXPECT_EQ(RunCli({"patch", "--product", "pellamii", file, "--trace", file}).exitCode, 2);
    EXPECT_EQ(RunCli({"patch", "--product", "pellamii", folder_->File("none.mdb")}).exitCode, 2);
    EXPECT_EQ(RunCli({"patch", file}).exitCode, 2);
    EXPECT_EQ(ReadWholeFile(file), before);
}

}  // namespace
}  // namespace tavrel::testing
