// Which relations there can be, the tables being settled.
#pragma once

#include "script/Fixtures.h"

namespace tavrel::script {

/// True when a relation has to be taken off while its tables are changed: a column on either side stores
/// other values afterwards, or the parent's key is made anew.
bool IsDisturbed(const jet::RelationInfo& relation, const details::Schema& before,
                 const details::Schema& after);

/// Puts the relations into `reached`, whose tables are there already.
void ReachRelations(const details::Schema& a, const details::Schema& b, const Fixtures& fixtures,
                    details::Schema& reached);

}  // namespace tavrel::script
