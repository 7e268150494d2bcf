// Version texts of real program files.
#include "platform/VersionResource.h"
#include "update/FileVersion.h"
#include "update/UpdateFixture.h"

namespace tavrel::update {
namespace {

using modFile::GetFileVer;
using modFile::GetFileVerInfo;
using tavrel::testing::MakePeFile;
using tavrel::testing::PeKind;
using tavrel::testing::VersionScript;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FileVersion : public UpdateFixture {
  protected:
    void SetUp() override {
        if (!tavrel::testing::CanMakePeFiles()) {
            GTEST_SKIP() << "the MinGW tools are not there";
        }
    }
    std::string Make(const std::string& script, PeKind kind = PeKind::Bits64) {
        MakePeFile(folder.File("파일.exe"), script, kind);
        return folder.File("파일.exe");
    }
    std::string Version(const std::string& version, bool normalizeLast, bool silent = true) {
        return GetFileVer(Make(VersionScript("VALUE \"FileVersion\", \"" + version + "\"")), normalizeLast,
                          silent, messages);
    }
};

// Keys of every length modulo two, so with and without padding behind them.
constexpr const char* kValues = R"(
VALUE "CompanyName", "아델"
VALUE "FileDescription", "구조 비교: 한글 😀"
VALUE "FileVersion", "1.07.0030"
VALUE "InternalName", "T"
VALUE "LegalCopyright", "(c) 2024"
VALUE "OriginalFilename", "Tavrel.exe"
VALUE "ProductName", "타브렐"
VALUE "ProductVersion", "1, 7, 0, 30"
VALUE "LegalTrademarks", ""
VALUE "PrivateBuild", "p"
VALUE "SpecialBuild", "ss")";

TEST_F(FileVersion, ListsThirteenTexts) {
    for (const PeKind kind : {PeKind::Bits64, PeKind::Bits32}) {
        EXPECT_THAT(
            GetFileVerInfo(Make(VersionScript(kValues), kind), messages),
            ElementsAre("CompanyName: 아델", "FileDescription: 구조 비교: 한글 😀", "FileVersion: 1.07.0030",
                        "InternalName: T", "LegalCopyright: (c) 2024", "OriginalFilename: Tavrel.exe",
                        "ProductName: 타브렐", "ProductVersion: 1, 7, 0, 30", "Comments: Not specified",
                        "LegalTrademarks: ", "PrivateBuild: p", "SpecialBuild: ss", "Language: Korean"));
    }
    EXPECT_THAT(messages.texts, IsEmpty());
}

TEST_F(FileVersion, NamesTheLanguageOfTheFirstTable) {
    const std::pair<const char*, const char*> cases[] = {
        {"041204B0", "Language: Korean"},
        {"0409", "Language: English - United States"},
        {"0c0904b0", "Language: English - Australia"},
        {"0401xyz", "Language: Arabic - Saudia Arabia"},
        {"0435", "Language: Zulu"},
        {"0436", "Language: Afrikaans"},
        {"0C0A04B0", "Language: "},
        {"041", "Language: "},
    };
    for (const auto& [table, entry] : cases) {
        EXPECT_EQ(GetFileVerInfo(Make(VersionScript(kValues, table)), messages).back(), entry) << table;
    }
    const std::string second =
        "BLOCK \"041104B0\"\nBEGIN\nVALUE \"FileVersion\", \"2.0.0.1\"\n"
        "VALUE \"Comments\", \"C\"\nEND\n";
    std::string script = VersionScript("VALUE \"FileVersion\", \"1.0.0.7\"", "080404B0");
    script.insert(script.size() - std::string("END\nEND\n").size(), second);
    const auto information = GetFileVerInfo(Make(script), messages);
    EXPECT_EQ(information[2], "FileVersion: 1.0.0.7");
    EXPECT_EQ(information[8], "Comments: C");
    EXPECT_EQ(information[12], "Language: Chinese - PRC");
}

TEST_F(FileVersion, TakesResourcesOfUnusualMake) {
    // Unpadded values, an odd number of bytes, no end; and numbers without texts.
    const auto raw = [&](const std::string& data) { return "1 16 { " + data + " }\n"; };
    auto information = GetFileVerInfo(Make(raw("0, 1, L\"FileVersion\", L\"xy\\0\", \"odd\"")), messages);
    ASSERT_EQ(information.size(), 13U);
    EXPECT_EQ(information[2], "FileVersion: xy");
    EXPECT_EQ(information[12], "Language");
    information = GetFileVerInfo(Make(raw("1, L\"Comments\\0ab\"")), messages);
    EXPECT_EQ(information[8], "Comments: ab");
    information = GetFileVerInfo(Make(raw("1, L\"StringFileInfo\\0\"")), messages);
    EXPECT_EQ(information[12], "Language: ");
    information = GetFileVerInfo(Make("1 VERSIONINFO\nFILEVERSION 1,2,3,4\nBEGIN\nEND\n"), messages);
    EXPECT_EQ(information[2], "FileVersion: Not specified");
    EXPECT_THAT(messages.texts, IsEmpty());
}

TEST_F(FileVersion, ShapesTheVersion) {
    const std::array<const char*, 3> cases[] = {
        {"1.07.0030", "1.07.30", "1.07"},
        {"1.0.0.0", "1.0.0.0", "1.0.0"},
        {"1.5 beta", "1.5 beta", "1"},
        {"1. 08 ", "1.8", "1"},
        {"1.", "1.", "1"},
    };
    for (const auto& [version, normalized, cut] : cases) {
        EXPECT_EQ(Version(version, true), normalized);
        EXPECT_EQ(Version(version, false), cut);
    }
    EXPECT_EQ(Version("0012", true), "12");
    EXPECT_THAT(messages.texts, IsEmpty());
}

TEST_F(FileVersion, TellsOfErrorsUnlessSilent) {
    Write("text.exe", "no program");
    for (const std::string& path : {Make("1 RCDATA { 1 }"), folder.File("text.exe"), folder.File("none")}) {
        EXPECT_THAT(GetFileVerInfo(path, messages), IsEmpty());
        EXPECT_EQ(GetFileVer(path, true, true, messages), "");
        EXPECT_THAT(messages.texts, IsEmpty());
        EXPECT_EQ(GetFileVer(path, true, false, messages), "");
        EXPECT_EQ(messages.texts.back().find("0 Error 13 ("), 0U);
        messages.texts.clear();
    }
    EXPECT_EQ(Version("7", false, /*silent=*/false), "");
    ASSERT_EQ(messages.texts.size(), 1U);
    EXPECT_TRUE(messages.texts[0].starts_with("0 Error 5 ("));
    EXPECT_TRUE(messages.texts[0].ends_with(") in procedure GetFileVer of Module mdlFile"));
}

TEST_F(FileVersion, PrefersKoreanAmongResourcesOfSeveralLanguages) {
    const auto version = [](const char* language, const char* text) {
        return std::string("LANGUAGE ") + language + "\n" +
               VersionScript("VALUE \"FileVersion\", \"" + std::string(text) + "\"");
    };
    const std::string german = version("7, 1", "3");
    const std::string neutral = version("0, 0", "1");
    EXPECT_EQ(GetFileVer(Make(german), true, true, messages), "3");
    EXPECT_EQ(GetFileVer(Make(german + neutral), true, true, messages), "1");
    EXPECT_EQ(GetFileVer(Make(neutral + german + version("18, 1", "2")), true, true, messages), "2");
}

}  // namespace
}  // namespace tavrel::update
