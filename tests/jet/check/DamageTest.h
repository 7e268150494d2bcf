// One kind of damage at a time: the check names it, and the independent checker sees that something is wrong.
#pragma once

#include <algorithm>
#include <span>
#include <sstream>

#include "jet/check/SampleDatabase.h"
#include "support/Corpus.h"
#include "support/JetTools.h"

namespace tavrel::testing {

struct DamageCase {
    const char* code;  ///< that the check must give
    const char* what;  ///< tells apart cases with the same code
    void (*damage)(SampleDatabase& sample);
    friend void PrintTo(const DamageCase& it, std::ostream* out) { *out << it.code; }
};

class DamageTest : public ::testing::TestWithParam<DamageCase> {};

inline jet::CheckReport CheckFile(const std::string& path) {
    jet::OpenOptions options;
    options.tolerant = true;
    return jet::CheckDatabase(*jet::Database::Open(path, options));
}

/// The expected finding is there.
inline void ExpectFinding(const DamageCase& damageCase) {
    const TemporaryFolder folder;
    SampleDatabase sample;
    damageCase.damage(sample);
    ASSERT_NE(sample.bytes, SampleDatabase::Sound());
    WriteFile(folder.File("damaged.mdb"), sample.bytes);
    std::vector<std::string_view> codes;
    for (const jet::Finding& finding : CheckFile(folder.File("damaged.mdb")).findings) {
        codes.push_back(finding.code);
    }
    EXPECT_THAT(codes, ::testing::Contains(std::string_view(damageCase.code)));
}

/// What the independent checker writes for each of some files, its exit code last.  One run for all: starting
/// it takes longer than checking.
inline std::vector<std::string> OthersFindings(const std::vector<std::string>& files) {
    std::vector<std::string> arguments = {"-c",
                                          "import sys; sys.dont_write_bytecode = True\n"
                                          "sys.path.insert(0, sys.argv[1]); import jet4\n"
                                          "for f in sys.argv[2:]:\n"
                                          "    try: code = jet4.main(['check', f])\n"
                                          "    except Exception: code = 2\n"
                                          "    print('exit', code, flush=True)\n",
                                          SharedFolder() + "/tools"};
    arguments.insert(arguments.end(), files.begin(), files.end());
    std::istringstream output(RunProgram("python3", arguments).output);
    std::vector<std::string> findings(1);
    for (std::string line; std::getline(output, line);) {
        findings.back() += line + "\n";
        if (line.starts_with("exit ")) {
            findings.emplace_back();
        }
    }
    findings.pop_back();
    return findings;
}

/// The independent checker finds errors where ours does, and nothing but notes where ours has nothing else.
inline void ExpectAgreement(std::span<const DamageCase> cases) {
    TAVREL_NEEDS_JET_TOOLS();
    const TemporaryFolder folder;
    std::vector<std::string> files;
    for (const DamageCase& damageCase : cases) {
        SampleDatabase sample;
        damageCase.damage(sample);
        files.push_back(folder.File(std::to_string(files.size()) + ".mdb"));
        WriteFile(files.back(), sample.bytes);
    }
    const std::vector<std::string> others = OthersFindings(files);
    ASSERT_EQ(others.size(), files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        const bool errors = CheckFile(files[i]).Count(jet::Finding::Severity::Error) != 0;
        const std::string what = std::string(cases[i].code) + ", " + cases[i].what + ": " + others[i];
        EXPECT_EQ(errors, !others[i].ends_with("exit 0\n")) << what;
        EXPECT_NE(others[i], "ok\nexit 0\n") << what;
    }
}

inline std::string CaseName(const ::testing::TestParamInfo<DamageCase>& info) {
    std::string name = std::string(info.param.code) + "_" + info.param.what;
    std::ranges::replace_if(
        name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
    return name;
}

}  // namespace tavrel::testing

/// The tests of a group of cases.
#define TAVREL_DAMAGE_TESTS(Group, cases)        \
    class Group : public DamageTest {};          \
    TEST_P(Group, IsFound) {                     \
        ExpectFinding(GetParam());               \
    }                                            \
    TEST(Group##Agreement, IndependentChecker) { \
        ExpectAgreement(cases);                  \
    }                                            \
    INSTANTIATE_TEST_SUITE_P(Cases, Group, ::testing::ValuesIn(cases), CaseName)
