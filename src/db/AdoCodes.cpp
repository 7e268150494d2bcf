#include "db/AdoCodes.h"

#include <algorithm>

#include "jet/sql/values/SqlErrors.h"

namespace tavrel::db {

namespace {

using namespace adoNumbers;
using jet::sql::kDateSyntax;
namespace sqlErrors = jet::sql::sqlErrors;

struct CodeLine {
    std::int32_t engine;
    std::int32_t ado;
};

/// Every number that is not kUnspecified, ascending.
constexpr CodeLine kLines[] = {
    {5, kErrorsInCommand},
    {6, kDataOverflow},
    {11, kDataOverflow},
    {3010, kErrorsInCommand},
    {3017, kErrorsOccurred},
    {3028, kAuthenticationFailed},
    {3029, kAuthenticationFailed},
    {3031, kAuthenticationFailed},
    {3035, kErrorsInCommand},
    {3061, kParameterMissing},
    {3075, kErrorsInCommand},
    {3078, kNoTable},
    {3085, kErrorsInCommand},
    {3090, kErrorsOccurred},
    {3096, kErrorsOccurred},
    {3113, kErrorsOccurred},
    {3122, kErrorsOccurred},
    {3127, kErrorsInCommand},
    {3129, kErrorsInCommand},
    {3130, kErrorsInCommand},
    {3131, kErrorsInCommand},
    {3134, kErrorsInCommand},
    {3135, kErrorsInCommand},
    {3138, kErrorsInCommand},
    {3141, kErrorsInCommand},
    {3142, kErrorsInCommand},
    {3144, kErrorsInCommand},
    {3163, kDataOverflow},
    {3190, kErrorsOccurred},
    {3191, kErrorsOccurred},
    {3192, kNoTable},
    {3258, kErrorsInCommand},
    {3283, kErrorsOccurred},
    {3289, kErrorsInCommand},
    {3290, kErrorsInCommand},
    {3291, kErrorsInCommand},
    {3292, kErrorsInCommand},
    {3293, kErrorsInCommand},
    {3295, kErrorsInCommand},
    {3306, kErrorsInCommand},
    {3307, kErrorsInCommand},
    {3346, kErrorsInCommand},
    {3349, kDataOverflow},
    {3355, kErrorsInCommand},
    {3371, kNoTable},
    {3375, kErrorsInCommand},
    {3376, kNoTable},
    {3378, kErrorsInCommand},
    {3380, kErrorsOccurred},
    {3381, kErrorsInCommand},
    {3382, kErrorsOccurred},
    {3388, kErrorsInCommand},
    {3409, kErrorsOccurred},
    {3421, kCannotConvert},
    {3464, kCannotConvert},
    {3615, kCannotConvert},
    {3708, kErrorsInCommand},
    {3806, kErrorsInCommand},
};
static_assert(std::ranges::is_sorted(kLines, {}, &CodeLine::engine));

}  // namespace

std::int32_t AdoNumber(const Error& error) {
    // The engine gives a literal that is no date the number of any mistake in an expression; the provider has
    // a code of its own for it.
    if (error.Number() == sqlErrors::kInExpression &&
        error.Description().find(kDateSyntax) != std::string::npos) {
        return kCannotConvert;
    }
    const auto* line = std::ranges::lower_bound(kLines, error.Number(), {}, &CodeLine::engine);
    return line != std::end(kLines) && line->engine == error.Number() ? line->ado : kUnspecified;
}

}  // namespace tavrel::db
