// What every database holds from its first day: containers, the database object, the engine's tables, and who
// may do what with them.
#pragma once

#include <vector>

#include "jet/define/SystemRows.h"

namespace tavrel::jet {

/// In the order in which their rows stand.
std::vector<NewObject> EngineObjects(double created);
std::vector<Permission> EnginePermissions();

}  // namespace tavrel::jet
