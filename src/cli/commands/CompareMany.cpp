#include "cli/commands/CompareMany.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "cli/Output.h"
#include "cli/TerminalProgress.h"
#include "platform/FileSystem.h"
#include "platform/SameFile.h"
#include "report/ComparisonFormats.h"
#include "report/HtmlReport.h"
#include "report/SurveyReport.h"
#include "text/Case.h"

namespace tavrel::cli {

namespace {

constexpr const char* kIndexPage = "index.html";

std::string StemOf(const std::string& path) {
    const std::u8string stem =
        std::filesystem::path(std::u8string(path.begin(), path.end())).stem().u8string();
    return {stem.begin(), stem.end()};
}

/// A file name for each page, none twice and none that of the index.
std::vector<std::string> PageNames(const std::vector<std::string>& files) {
    std::set<std::string> taken = {text::Upper(kIndexPage)};
    std::vector<std::string> names;
    for (const std::string& file : files) {
        std::string name = StemOf(file) + ".html";
        for (int number = 2; !taken.insert(text::Upper(name)).second; ++number) {
            name = StemOf(file) + "-" + std::to_string(number) + ".html";
        }
        names.push_back(std::move(name));
    }
    return names;
}

class PageWriter : public survey::Listener {
  public:
    /// An empty folder: no pages.
    PageWriter(std::string folder, const std::vector<std::string>& files)
        : folder_(std::move(folder)), pages_(PageNames(files)), progress_("비교하는 중") {
        progress_.Phase().SetMaximum(static_cast<int>(files.size()));
        progress_.Phase().SetVisible(true);
    }

    void Compared(std::size_t file, const compare::ComparisonResult& result,
                  const std::vector<details::Difference>* details) override {
        if (folder_.empty()) {
            return;
        }
        ReportFile page(folder_ + platform::kPathSeparator + pages_[file]);
        report::WriteDetailedHtml(page.Stream(), result, details);
        page.Commit();
    }
    void Finished() override { progress_.Phase().Advance(); }

    [[nodiscard]] const std::vector<std::string>& Pages() const { return pages_; }

  private:
    std::string folder_;
    std::vector<std::string> pages_;
    ProgressLine progress_;
};

void RefuseToOverwriteInput(const ManyOptions& options) {
    const auto isOutput = [&](const std::string& file) { return platform::IsSameFile(options.output, file); };
    if (!options.output.empty() &&
        (isOutput(options.request.compare.a.path) || std::ranges::any_of(options.request.files, isOutput))) {
        throw MakeError(errors::kFileExists, {}, "비교할 데이터베이스에는 결과를 쓸 수 없음");
    }
}

ExitCode CodeFor(const std::vector<survey::Outcome>& outcomes) {
    const auto any = [&](survey::State state) {
        return std::ranges::any_of(outcomes, [&](const survey::Outcome& o) { return o.state == state; });
    };
    return any(survey::State::Failed)      ? ExitCode::Failed
           : any(survey::State::Different) ? ExitCode::Found
                                           : ExitCode::Done;
}

}  // namespace

ExitCode CompareMany(const ManyOptions& named) {
    ManyOptions options = named;
    options.request.files = survey::FilesOf(named.request.files);
    const bool pages = options.format == "html" && !options.output.empty();
    RefuseToOverwriteInput(options);
    if (pages) {
        platform::MakeFolder(options.output);
    }
    report::SurveyResult result{.reference = options.request.compare.a.path,
                                .details = options.request.details,
                                .outcomes = {},
                                .pages = {}};
    {
        PageWriter writer(pages ? options.output : std::string(), options.request.files);
        result.outcomes = survey::Run(options.request, writer);
        if (pages) {
            result.pages = writer.Pages();
        }
    }
    const report::ComparisonFormat& format = *report::ComparisonFormatNamed(options.format);
    if (options.output.empty()) {
        format.writeSurvey(StandardOutput(), result, StyleOfStandardOutput());
    } else {
        ReportFile file(pages ? options.output + platform::kPathSeparator + kIndexPage : options.output);
        format.writeSurveyFile(file.Stream(), result, {});
        file.Commit();
    }
    return CodeFor(result.outcomes);
}

}  // namespace tavrel::cli
