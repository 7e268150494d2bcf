#include "app/SaveComparison.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

#include <QFileInfo>
#include <QSaveFile>

#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

constexpr const char* kDefaultName = "비교결과";
constexpr const char* kFailed = "파일을 저장할 수 없습니다.\r\n\r\n";

std::string NameOf(std::string_view path) {
    const std::string_view name = path.substr(path.find_last_of("/\\") + 1);  // from 0 on where there is none
    return std::string(name.substr(0, name.rfind('.')));
}

/// "A-B" for the databases A.mdb and B.mdb.
std::string ProposedName(const compare::ComparisonResult& result) {
    const std::string a = NameOf(result.PathA());
    const std::string b = NameOf(result.PathB());
    return a.empty() || b.empty() ? kDefaultName : a + "-" + b;
}

}  // namespace

std::span<const ReportFormatLine> ReportFormats() {
    static const std::vector<ReportFormatLine> formats = [] {
        const auto all = report::ComparisonFormats();
        std::vector<ReportFormatLine> offered;
        std::ranges::copy_if(all, std::back_inserter(offered),
                             [](const ReportFormatLine& format) { return format.menuPlace != 0; });
        std::ranges::sort(offered, {}, &ReportFormatLine::menuPlace);
        return offered;
    }();
    return formats;
}

bool SaveBytes(const std::string& path, const std::string& bytes, platform::MessageBox& messages) {
    QSaveFile file(ToQt(path));
    const bool saved =
        file.open(QIODevice::WriteOnly) &&
        file.write(bytes.data(), static_cast<qint64>(bytes.size())) == static_cast<qint64>(bytes.size()) &&
        file.commit();
    if (!saved) {
        messages.Say(kFailed + path + "\r\n" + FromQt(file.errorString()));
    }
    return saved;
}

std::string SaveComparison(const compare::ComparisonResult& result, const ReportFormatLine& format,
                           const std::string& folder, FileChooser& files, platform::MessageBox& messages) {
    const std::string chosen = files.AskSave({ProposedName(result) + format.suffix, folder, format.filter});
    if (chosen.empty()) {
        return {};
    }
    // A name without suffix gets none here: the dialog has asked about overwriting the name as it is.
    std::ostringstream text;
    format.writeFile(text, result, nullptr, {});
    return SaveBytes(chosen, std::move(text).str(), messages) ? chosen : std::string();
}

}  // namespace tavrel::app
