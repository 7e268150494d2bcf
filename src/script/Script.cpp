#include "script/Script.h"

#include "details/ReadSchema.h"
#include "script/Reach.h"

namespace tavrel::script {

Script MakeScript(jet::Database& a, jet::Database& b, bool dropping) {
    const details::Schema ofA = details::ReadSchema(a);
    const details::Schema ofB = details::ReadSchema(b);
    const details::Schema kept = Reach(ofA, ofB, DataLoss::Refused);
    const details::Schema all = Reach(ofA, ofB, DataLoss::Accepted);
    if (dropping) {
        return {StepsBetween(ofA, all, a), {}, Compare(all, ofB)};
    }
    return {StepsBetween(ofA, kept, a), StepsBetween(kept, all, a), Compare(kept, ofB)};
}

}  // namespace tavrel::script
