#include <algorithm>

#include "text/Case.h"
#include "update/FileVersion.h"

namespace tavrel::modFile {

namespace {

struct Language {
    std::string_view code;
    std::string_view name;
};

// By Windows' language identifiers, in hexadecimal.
constexpr Language kLanguages[] = {
    {"0436", "Afrikaans"},
    {"041C", "Albanian"},
    {"3801", "Arabic - U.A.E."},
    {"3C01", "Arabic - Bahrain"},
    {"1401", "Arabic - Algeria"},
    {"0C01", "Arabic - Egypt"},
    {"0801", "Arabic - Iraq"},
    {"2C01", "Arabic - Jordan"},
    {"3401", "Arabic - Kuwait"},
    {"3001", "Arabic - Lebanon"},
    {"1001", "Arabic - Libya"},
    {"1801", "Arabic - Morocco"},
    {"2001", "Arabic - Oman"},
    {"4001", "Arabic - Qatar"},
    {"0401", "Arabic - Saudia Arabia"},
    {"2801", "Arabic - Syria"},
    {"1C01", "Arabic - Tunisia"},
    {"2401", "Arabic - Yemen"},
    {"042D", "Basque"},
    {"0423", "Belarusian"},
    {"0402", "Bulgarian"},
    {"0403", "Catalan"},
    {"0804", "Chinese - PRC"},
    {"0C04", "Chinese - Hong Kong"},
    {"1004", "Chinese - Singapore"},
    {"0404", "Chinese - Taiwan"},
    {"041A", "Croatian"},
    {"0405", "Czech"},
    {"0406", "Danish"},
    {"0413", "Dutch - Standard"},
    {"0813", "Dutch - Belgium"},
    {"0C09", "English - Australia"},
    {"2809", "English - Belize"},
    {"1009", "English - Canada"},
    {"1809", "English - Ireland"},
    {"2009", "English - Jamaica"},
    {"1409", "English - New Zealand"},
    {"1C09", "English - South Africa"},
    {"2C09", "English - Trinidad"},
    {"0809", "English - United Kingdom"},
    {"0409", "English - United States"},
    {"0425", "Estonian"},
    {"0429", "Farsi"},
    {"040B", "Finnish"},
    {"0438", "Faeroese"},
    {"040C", "French - Standard"},
    {"080C", "French - Belgium"},
    {"0C0C", "French - Canada"},
    {"140C", "French - Luxembourg"},
    {"100C", "French - Switzerland"},
    {"043C", "Gaelic - Ireland"},
    {"0407", "German - Standard"},
    {"0C07", "German - Austria"},
    {"1407", "German - Liechtenstein"},
    {"1007", "German - Luxembourg"},
    {"0807", "German - Switzerland"},
    {"0408", "Greek"},
    {"040D", "Hebrew"},
    {"0439", "Hindi"},
    {"040E", "Hungarian"},
    {"040F", "Icelandic"},
    {"0421", "Indonesian"},
    {"0410", "Italian - Standard"},
    {"0810", "Italian - Switzerland"},
    {"0411", "Japanese"},
    {"0412", "Korean"},
    {"0426", "Latvian"},
    {"0427", "Lithuanian"},
    {"042F", "Macedonian"},
    {"043E", "Malay"},
    {"043A", "Maltese"},
    {"0414", "Norwegian - Bokmal"},
    {"0415", "Polish"},
    {"0816", "Portuguese - Portugal"},
    {"0416", "Portuguese - Brazil"},
    {"0417", "Rhaeto-Romanic"},
    {"0418", "Romanian"},
    {"0818", "Romanian - Moldova"},
    {"0419", "Russian"},
    {"0819", "Russian - Moldova"},
    {"0C1A", "Serbian - Cyrillic"},
    {"0432", "Setswana"},
    {"0424", "Slovenian"},
    {"041B", "Slovak"},
    {"042E", "Sorbian"},
    {"040A", "Spanish - Standard"},
    {"2C0A", "Spanish - Argentina"},
    {"400A", "Spanish - Bolivia"},
    {"340A", "Spanish - Chile"},
    {"240A", "Spanish - Colombia"},
    {"140A", "Spanish - Costa Rica"},
    {"1C0A", "Spanish - Dominican Republic"},
    {"300A", "Spanish - Ecuador"},
    {"100A", "Spanish - Guatemala"},
    {"480A", "Spanish - Honduras"},
    {"080A", "Spanish - Mexico"},
    {"4C0A", "Spanish - Nicaragua"},
    {"180A", "Spanish - Panama"},
    {"280A", "Spanish - Peru"},
    {"500A", "Spanish - Puerto Rico"},
    {"3C0A", "Spanish - Paraguay"},
    {"440A", "Spanish - El Salvador"},
    {"380A", "Spanish - Uruguay"},
    {"200A", "Spanish - Venezuela"},
    {"0430", "Sutu"},
    {"041D", "Swedish"},
    {"081D", "Swedish - Finland"},
    {"041E", "Thai"},
    {"041F", "Turkish"},
    {"0431", "Tsonga"},
    {"0422", "Ukrainian"},
    {"0420", "Urdu"},
    {"042A", "Vietnamese"},
    {"0434", "Xhosa"},
    {"043D", "Yiddish"},
    {"0435", "Zulu"},
};
constexpr std::size_t kCodeLength = 4;

}  // namespace

std::string GetLanguageName(std::string_view code) {
    const std::string key = text::Upper(code.substr(0, kCodeLength));
    const auto* row = std::ranges::find(kLanguages, key, &Language::code);
    return row == std::ranges::end(kLanguages) ? std::string() : std::string(row->name);
}

}  // namespace tavrel::modFile
