#include "cli/sql/StatementSplitter.h"

namespace tavrel::cli {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

bool StartsLineComment(std::string_view text) {
    return text.starts_with("--") && (text.size() == 2 || kBlanks.find(text[2]) != std::string_view::npos);
}

}  // namespace

void StatementSplitter::Feed(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        if (comment_) {
            at = FeedComment(text, at);
        } else if (quote_ != 0) {
            at = FeedQuoted(text, at);
        } else {
            at = FeedPlain(text, at);
        }
    }
}

std::size_t StatementSplitter::FeedComment(std::string_view text, std::size_t at) {
    const std::size_t end = text.find("*/", at);
    comment_ = end == std::string_view::npos;
    return comment_ ? text.size() : end + 2;
}

std::size_t StatementSplitter::FeedQuoted(std::string_view text, std::size_t at) {
    const std::size_t end = text.find(quote_, at);
    if (end == std::string_view::npos) {
        statement_ += text.substr(at);
        return text.size();
    }
    statement_ += text.substr(at, end + 1 - at);
    quote_ = 0;
    return end + 1;
}

std::size_t StatementSplitter::FeedPlain(std::string_view text, std::size_t at) {
    const std::size_t end = text.find_first_of(";'\"`[-/", at);
    statement_ += text.substr(at, end - at);
    if (end == std::string_view::npos) {
        return text.size();
    }
    const std::string_view rest = text.substr(end);
    if (rest.front() == ';') {
        EndStatement();
        return end + 1;
    }
    if (StartsLineComment(rest)) {
        const std::size_t lineEnd = text.find('\n', end);
        return lineEnd == std::string_view::npos ? text.size() : lineEnd;
    }
    if (rest.starts_with("/*")) {
        comment_ = true;
        statement_ += ' ';
        return end + 2;
    }
    statement_ += rest.front();
    if (rest.front() != '-' && rest.front() != '/') {
        quote_ = rest.front() == '[' ? ']' : rest.front();
    }
    return end + 1;
}

void StatementSplitter::EndStatement() {
    if (!IsBlank(statement_)) {
        complete_.push_back(std::move(statement_));
    }
    statement_.clear();
}

std::optional<std::string> StatementSplitter::Take() {
    if (complete_.empty()) {
        return std::nullopt;
    }
    std::string statement = std::move(complete_.front());
    complete_.pop_front();
    return statement;
}

std::optional<std::string> StatementSplitter::TakeRest() {
    std::string rest = std::move(statement_);
    *this = {};
    return IsBlank(rest) ? std::nullopt : std::optional(std::move(rest));
}

bool StatementSplitter::IsOpen() const {
    return comment_ || !IsBlank(statement_);
}

}  // namespace tavrel::cli
