#include "patch/kilm/KilmSteps.h"

#include "patch/kilm/KilmTables.h"

namespace tavrel::patch::kilm {

namespace {

// Product A's steps 2, 3, 23 (an item of B's step 20), 28, 136 and 137 have no counterpart.
constexpr Item kSteps[] = {
    StepsFrom{2, 20, 4},
    StepsFrom{21, 24, 24},
    StepsFrom{25, 131, 29},
    StepsFrom{132, 135, 138},
};

constexpr Item kDifferences[] = {
    Step{4},
    InsteadOf{"fk_pd_qlty"},
    Relation{"fk_pd_qlty", "product_m.qcode", "qlty.code", Cascade::Delete},

    Step{9},
    InsteadOf{"estimate_m.bigo"},

    Step{20},
    AtEnd{},
    Add{"product_d.makeprice", Double, 0, Set("0")},
    Add{"makelist_m.maketype", Long, 0, Set("0")},
    Add{"makelist_m.makeno", Long, 0, Set("0")},
    Call{"CreateTBL_makelist_o"},

    Step{29},
    AtEnd{},
    Call{"CreateTBL_makeplan"},

    Step{58},
    InsteadOf{"taxlist_m.iscard"},
    kIsCard,

    Step{67},
    InsteadOf{"product_m.stockuseup"},
    kAddStockUseUp,
    kFillStockUseUp,

    Step{100},
    InsteadOf{"customer.usesmartphone"},
    kUseSmartphone,
};

}  // namespace

Items Steps() {
    return kSteps;
}

Items DifferencesInSteps() {
    return kDifferences;
}

}  // namespace tavrel::patch::kilm
