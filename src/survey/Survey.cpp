#include "survey/Survey.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

#include "compare/Products.h"
#include "details/ReadSchema.h"
#include "platform/FileSystem.h"
#include "survey/KeptReason.h"
#include "survey/PatchedCopy.h"
#include "text/Case.h"
#include "text/Error.h"

namespace tavrel::survey {

namespace {

constexpr int kAtATime = 2;
constexpr std::size_t kTableCell = 0;

class NoProgress : public platform::ProgressBar {
  public:
    void SetMaximum(int /*maximum*/) override {}
    void SetValue(int /*value*/) override {}
    [[nodiscard]] int Value() const override { return 0; }
    void SetVisible(bool /*visible*/) override {}
};

Tally TallyOf(const compare::ComparisonResult& result) {
    Tally tally;
    std::set<std::string> tables;
    for (std::size_t i = 0; i < result.RowCount(); ++i) {
        const compare::ResultRow row = result.Row(i);
        if (row.mark.empty()) {
            continue;
        }
        tables.insert(text::Upper((row.a ? *row.a : *row.b)[kTableCell]));
        tally.onlyReference += row.b ? 0 : 1;
        tally.onlyFile += row.a ? 0 : 1;
        for (std::size_t cell = 0; cell < tally.cells.size(); ++cell) {
            tally.cells[cell] += row.Differs(cell) ? 1 : 0;
        }
    }
    tally.tables = static_cast<int>(tables.size());
    return tally;
}

class Surveyor {
  public:
    Surveyor(const Request& request, Listener& listener)
        : request_(request), listener_(listener), outcomes_(request.files.size()) {
        details::ReadSchema(request.compare.a.path, request.compare.a.password, request.compare.a.table);
        const std::string& product = request.compare.product;
        if (!product.empty()) {
            product_ = compare::ProductOfCode(product);
            folder_ = std::make_unique<CopiesFolder>();
            reference_ = std::make_unique<PatchedCopy>(*folder_, "reference", request.compare.a.path,
                                                       request.compare.a.password, *product_);
        }
    }

    std::vector<Outcome> Run() {
        std::vector<std::thread> others;
        for (int i = 1; i < kAtATime; ++i) {
            others.emplace_back([this] { Work(); });
        }
        Work();
        for (std::thread& other : others) {
            other.join();
        }
        return std::move(outcomes_);
    }

  private:
    void Work() {
        for (std::size_t file = next_++; file < outcomes_.size(); file = next_++) {
            Outcome& outcome = outcomes_[file];
            outcome.path = request_.files[file];
            try {
                Compare(file, outcome);
            } catch (const Failure& failure) {
                Fail(outcome, failure.what());
            } catch (...) {
                const Error error = PresentError();
                Fail(outcome, "오류 " + std::to_string(error.Number()) + ": " + error.Description());
            }
            const std::lock_guard<std::mutex> lock(finishing_);
            listener_.Finished();
        }
    }

    static void Fail(Outcome& outcome, const std::string& reason) {
        outcome.state = State::Failed;
        outcome.reason = reason;
    }

    void Compare(std::size_t file, Outcome& outcome) {
        workbench::CompareRequest request = request_.compare;
        request.b.path = outcome.path;
        std::unique_ptr<PatchedCopy> copy;
        if (product_ != nullptr) {
            copy = std::make_unique<PatchedCopy>(*folder_, std::to_string(file), outcome.path,
                                                 request.b.password, *product_);
            request.product.clear();
            request.a.path = reference_->Path();
            request.b.path = copy->Path();
        }
        KeptReason messages;
        NoProgress phase, overall;
        const auto result =
            workbench::CompareDatabases(request, {.messages = messages, .phase = phase, .overall = overall});
        if (!result) {
            throw Failure(messages.Text());
        }
        Count(file, request, *result, outcome);
    }

    void Count(std::size_t file, const workbench::CompareRequest& request,
               const compare::ComparisonResult& result, Outcome& outcome) {
        outcome.rows = result.Differences();
        outcome.tally = TallyOf(result);
        std::vector<details::Difference> details;
        if (request_.details) {
            details = details::BeyondMarks(
                details::Compare(details::ReadSchema(request.a.path, request.a.password, request.a.table),
                                 details::ReadSchema(request.b.path, request.b.password, request.b.table)),
                !request.indexOnly);
            outcome.tally.details = static_cast<int>(details.size());
        }
        listener_.Compared(file, result, request_.details ? &details : nullptr);
        outcome.state = outcome.rows == 0 && details.empty() ? State::Equal : State::Different;
    }

    const Request& request_;
    Listener& listener_;
    const compare::Product* product_ = nullptr;
    std::unique_ptr<CopiesFolder> folder_;
    std::unique_ptr<PatchedCopy> reference_;
    std::vector<Outcome> outcomes_;
    std::atomic<std::size_t> next_ = 0;
    std::mutex finishing_;
};

std::filesystem::path PathOf(const std::string& utf8) {
    return {std::u8string(utf8.begin(), utf8.end())};
}

std::string TextOf(const std::filesystem::path& path) {
    const std::u8string utf8 = path.u8string();
    return {utf8.begin(), utf8.end()};
}

std::vector<std::string> DatabasesIn(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code failed;
    for (std::filesystem::directory_iterator at(PathOf(folder), failed), end; !failed && at != end;
         at.increment(failed)) {
        if (text::EqualIgnoringCase(TextOf(at->path().extension()), ".mdb")) {
            files.push_back(TextOf(at->path()));
        }
    }
    if (failed) {
        throw MakeError(errors::kPathAccess, {}, folder);
    }
    std::ranges::sort(files, text::NameLess);
    return files;
}

}  // namespace

std::vector<Outcome> Run(const Request& request, Listener& listener) {
    return Surveyor(request, listener).Run();
}

std::vector<std::string> FilesOf(const std::vector<std::string>& paths) {
    std::vector<std::string> files;
    for (const std::string& path : paths) {
        if (platform::FolderExists(path)) {
            std::ranges::move(DatabasesIn(path), std::back_inserter(files));
        } else {
            files.push_back(path);
        }
    }
    return files;
}

}  // namespace tavrel::survey
