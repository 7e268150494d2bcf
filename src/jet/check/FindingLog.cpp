#include "jet/check/FindingLog.h"

#include <algorithm>

#include "jet/check/LoneSurrogates.h"

namespace tavrel::jet {

std::uint64_t CheckReport::Count(Finding::Severity severity) const {
    return static_cast<std::uint64_t>(
        std::count_if(findings.begin(), findings.end(),
                      [severity](const Finding& finding) { return finding.severity == severity; }));
}

}  // namespace tavrel::jet

namespace tavrel::jet::check {

namespace {

/// `text` with "|1" … replaced.
std::string Fill(std::string_view text, std::initializer_list<std::string_view> arguments) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t argument = text[i] == '|' && i + 1 < text.size()
                                         ? static_cast<std::size_t>(text[i + 1] - '1')
                                         : arguments.size();
        if (argument < arguments.size()) {
            out += arguments.begin()[argument];
            ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

/// Findings are for eyes and for JSON, so halves of surrogate pairs in damaged names become U+FFFD.
std::string Readable(std::string text) {
    for (std::size_t at = FindLoneSurrogate(text); at != std::string::npos;
         at = FindLoneSurrogate(text, at)) {
        text.replace(at, 3, "\xEF\xBF\xBD");
    }
    return text;
}

}  // namespace

void FindingLog::Add(FindingKind kind, std::string where, std::initializer_list<std::string_view> arguments) {
    if (++perKind_[kind] > kFindingsPerKind) {
        return;
    }
    const FindingInfo& info = InfoOf(kind);
    report_.findings.push_back(
        {info.severity, Readable(std::move(where)), Readable(Fill(info.text, arguments)), info.code});
}

CheckReport FindingLog::Finish() {
    std::vector<Finding> rest;
    for (const auto& [kind, number] : perKind_) {
        if (number > kFindingsPerKind) {
            const FindingInfo& info = InfoOf(kind);
            rest.push_back({info.severity, "파일",
                            "같은 종류가 " + std::to_string(number - kFindingsPerKind) + "건 더 있음",
                            info.code});
        }
    }
    std::sort(rest.begin(), rest.end(), [](const Finding& a, const Finding& b) { return a.code < b.code; });
    report_.findings.insert(report_.findings.end(), rest.begin(), rest.end());
    return std::move(report_);
}

}  // namespace tavrel::jet::check
