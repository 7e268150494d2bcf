#include "patch/repair/Repairs.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace tavrel::patch {

namespace {

struct NamedRepair {
    std::string_view name;
    Repair routine;
};

constexpr NamedRepair kRepairs[] = {
    {"CreateTBL_office_store", CreateTBL_office_store},
    {"BillNoteSubRtn", BillNoteSubRtn},
    {"LoginPwdUpdate", LoginPwdUpdate},
};

}  // namespace

Repair FindRepair(std::string_view name) {
    const auto* found = std::ranges::find(kRepairs, name, &NamedRepair::name);
    if (found == std::end(kRepairs)) {
        throw std::logic_error("no such procedure: " + std::string(name));
    }
    return found->routine;
}

}  // namespace tavrel::patch
