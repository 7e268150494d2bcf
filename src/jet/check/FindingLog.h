// Where findings are gathered.
#pragma once

#include <initializer_list>
#include <string>
#include <type_traits>
#include <unordered_map>

#include "jet/check/FindingKind.h"
#include "text/Error.h"

namespace tavrel::jet::check {

class FindingLog {
  public:
    void Add(FindingKind kind, std::string where, std::initializer_list<std::string_view> arguments = {});
    void Count(const char* what, std::uint64_t number = 1) { report_.counts[what] += number; }
    /// The report, with a line for each kind of which not all findings were kept.
    CheckReport Finish();

  private:
    CheckReport report_;
    std::unordered_map<FindingKind, std::uint64_t> perKind_;
};

/// Runs one concern; an error that it throws becomes a finding, so that the others still get their turn.
/// `where`: a text, or a function that makes it when it is needed.
template <class Where, class Step>
void Guard(FindingLog& log, FindingKind kind, const Where& where, Step&& step) {
    try {
        step();
    } catch (const Error& error) {
        if constexpr (std::is_invocable_v<Where>) {
            log.Add(kind, where(), {error.Description()});
        } else {
            log.Add(kind, where, {error.Description()});
        }
    }
}

}  // namespace tavrel::jet::check
