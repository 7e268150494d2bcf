#include "cli/Failure.h"

#include <cerrno>
#include <iostream>
#include <new>

#include "cli/Output.h"
#include "report/DisplayText.h"
#include "text/Error.h"

namespace tavrel::cli {

namespace {

void ComplainOf(std::int32_t number, const std::string& description) {
    Complain("오류 " + std::to_string(number) + ": " + description);
}

void ComplainOfNumber(std::int32_t number) {
    const ErrorText* text = FindErrorText(number);
    ComplainOf(number, text != nullptr ? std::string(text->korean) : std::string());
}

bool NobodyReads() {
#ifdef EPIPE
    return errno == EPIPE;
#else
    return false;
#endif
}

/// Called from a handler: says what is being handled.
void ComplainOfPresentException() {
    constexpr std::int32_t kOutOfMemory = 7;
    constexpr std::int32_t kInternal = 51;
    try {
        throw;
    } catch (const Error& error) {
        ComplainOf(error.Number(), error.Description());
    } catch (const std::ios_base::failure&) {
        if (!NobodyReads()) {
            ComplainOfNumber(errors::kDeviceFault);
        }
    } catch (const std::bad_alloc&) {
        ComplainOfNumber(kOutOfMemory);
    } catch (const std::length_error&) {
        ComplainOfNumber(kOutOfMemory);
    } catch (const std::exception& error) {
        ComplainOf(kInternal, std::string("내부 오류입니다. (") + error.what() + ")");
    }
}

}  // namespace

void Complain(std::string_view text) {
    // Line breaks are ours; everything else that could command a terminal is shown as a picture.
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        end = end == std::string_view::npos ? text.size() : end;
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (!line.empty()) {
            std::cerr << report::Printable(line) << '\n';
        }
        start = end + 1;
    }
    std::cerr.flush();
}

ExitCode RunGuarded(const std::function<ExitCode()>& work) {
    try {
        const ExitCode code = work();
        StandardOutput().flush();
        return code;
    } catch (...) {
        // Nothing more can come of a stream that has failed; its end must not throw again.
        const int systemError = errno;
        StandardOutput().exceptions(std::ios_base::goodbit);
        errno = systemError;
        ComplainOfPresentException();
        return ExitCode::Failed;
    }
}

}  // namespace tavrel::cli
