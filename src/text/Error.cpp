#include "text/Error.h"

#include <algorithm>
#include <new>

#include "text/ErrorTable.h"

namespace tavrel {
namespace {

constexpr std::string_view kUnlisted = "설명이 등록되지 않은 오류입니다.";

/// Arguments are put in once and not looked at again: a name with a bar in it stays as it is.
std::string Fill(std::string_view pattern, std::initializer_list<std::string_view> arguments) {
    std::string out;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool isPlace =
            pattern[i] == '|' && i + 1 < pattern.size() && pattern[i + 1] >= '1' && pattern[i + 1] <= '9';
        if (!isPlace) {
            out += pattern[i];
            continue;
        }
        const auto place = static_cast<std::size_t>(pattern[++i] - '1');
        if (place < arguments.size()) {
            out += arguments.begin()[place];
        }
    }
    return out;
}

}  // namespace

const ErrorText* FindErrorText(std::int32_t number) {
    const std::span<const ErrorText> table = ErrorTable();
    const auto line = std::ranges::lower_bound(table, number, {}, &ErrorText::number);
    return line != table.end() && line->number == number ? &*line : nullptr;
}

Error MakeError(std::int32_t number, std::initializer_list<std::string_view> arguments,
                std::string_view reason) {
    const ErrorText* line = FindErrorText(number);
    std::string text = Fill(line != nullptr ? line->korean : kUnlisted, arguments);
    if (!reason.empty()) {
        text.append(" (").append(reason).append(")");
    }
    return {number, text};
}

Error PresentError() {
    try {
        throw;
    } catch (const Error& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return MakeError(errors::kOutOfMemory);
    } catch (const std::length_error&) {
        return MakeError(errors::kOutOfMemory);
    } catch (const std::exception& error) {
        return MakeError(errors::kInternal, {}, error.what());
    }
}

}  // namespace tavrel
