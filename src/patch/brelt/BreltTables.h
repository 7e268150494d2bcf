// Product A's migration list and table-creation procedures, cut into parts; products B and B-Pro are made
// from them.
#pragma once

#include "patch/Item.h"

namespace tavrel::patch::brelt {

Items Steps2To53();
Items Steps54To96();
Items Steps97To141();

Items TablesOfSteps3To53();
Items TablesOfSteps58To116();
Items TablesOfSteps127To133();
Items TablesOfStep138();

/// Columns of invn_move and invn_move_plan.
inline constexpr Column kMovedStock[] = {
    {"code", "AUTOINCREMENT"},
    {"ocode_o", "SMALLINT", "1", NotNull},
    {"ocode_i", "SMALLINT", "1", NotNull},
    {"scode_o", "SMALLINT", "1", NotNull},
    {"scode_i", "SMALLINT", "1", NotNull},
    {"pcode", "VARCHAR(6)", Empty, NotNull},
    {"boxqnt", "DOUBLE", "0", NotNull},
    {"piceqnt", "DOUBLE", "0", NotNull},
    {"qnt", "DOUBLE", "0", NotNull},
    {"price", "DOUBLE", "0", NotNull},
    {"dealdate", "VARCHAR(10)", Empty, NotNull},
    {"deallistno", "VARCHAR(12)", Empty, NotNull},
    {"regucode", "VARCHAR(2)", Empty, NotNull},
    {"prnbigo", "VARCHAR(100)", Empty, NotNull},
    {"arrive", "SMALLINT", "0", NotNull},
};

}  // namespace tavrel::patch::brelt
