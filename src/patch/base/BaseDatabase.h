// Databases at the lowest version that a product's list can start from.
#pragma once

#include "patch/Script.h"

namespace tavrel::patch {

/// Makes the tables of a product at version 1 in the session's database, which must be empty, and stores that
/// version.  Throws Error.
void MakeBaseOfBrelt();
void MakeBaseOfKilm();
void MakeBaseOfKilmPro();
void MakeBaseOfNorb();

}  // namespace tavrel::patch
