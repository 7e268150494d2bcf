// The time that new objects are stamped with.
#pragma once

namespace tavrel::jet {

/// Local time as days since 1899-12-30, whole seconds.
double LocalNow();

}  // namespace tavrel::jet
