#include "patch/Driver.h"

#include <cmath>
#include <limits>
#include <string>

#include "db/AdoErrors.h"
#include "db/Session.h"
#include "patch/log/Report.h"
#include "text/LeadingNumber.h"

namespace tavrel::patch {

std::int16_t StoredVersion() {
    const std::string text =
        modDBsub::DBNullToStr(modDBsub::DBGetValue("SELECT ver FROM dbversion WHERE dbid='main'"));
    const double number = std::nearbyint(text::LeadingNumber(text));  // halves to the even neighbour
    if (number < std::numeric_limits<std::int16_t>::min() ||
        number > std::numeric_limits<std::int16_t>::max()) {
        throw db::AdoError(db::adoErrors::kOverflow);
    }
    return static_cast<std::int16_t>(number);
}

bool RunDriver(std::int16_t target, List list) {
    try {
        const std::int16_t version = StoredVersion();
        if (version == target) {
            return true;
        }
        if (!list(version)) {
            return false;
        }
        modDBsub::DBExecute("UPDATE dbversion SET ver = " + std::to_string(target) + " WHERE dbid = 'main'");
        return true;
    } catch (const Error& error) {
        ReportFailure(error, "ChkDBpatch", kPatchModule);
        return false;
    }
}

}  // namespace tavrel::patch
