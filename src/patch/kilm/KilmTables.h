// What products B and B-Pro have that product A has not, and what is different in them.
#pragma once

#include "patch/Item.h"

namespace tavrel::patch::kilm {

/// Procedures that only product B has.
Items OwnTables();

/// How the procedures of B and B-Pro differ from product A's.
Items DifferencesInTables();
/// The same for procedures that only B has too, and for those in which B-Pro is like A.
Items DifferencesInTablesOfB();

// Items that stand in the lists of both instead of product A's.
inline constexpr Add kIsCard{"taxlist_m.iscard", Long, 0,
                             Then("UPDATE taxlist_m SET iscard = 0 WHERE iscard IS NULL")};
inline constexpr Run kAddStockUseUp{"ALTER TABLE `product_m` ADD `stockuseup` INTEGER DEFAULT 0 NOT NULL"};
inline constexpr Run kFillStockUseUp{"UPDATE `product_m` SET `stockuseup` = 0 WHERE `stockuseup` IS NULL"};
inline constexpr Add kUseSmartphone{"customer.usesmartphone", SmallInt, 0, Fill};

}  // namespace tavrel::patch::kilm
