#include "patch/kilmpro/KilmProSteps.h"

#include "patch/kilm/KilmTables.h"

namespace tavrel::patch::kilmpro {

namespace {

// There is no step 52.
constexpr Item kSteps[] = {
    Step{2},
    ItemsOf{54, 58},
    Step{3},
    Add{"makeord_m.makemode", SmallInt, 1, Fill},
    Add{"makelist_m.makemode", SmallInt, 1, Fill},
    Step{4},
    ItemsOf{59, 61},
    kilm::kIsCard,
    Step{5},
    ItemsOf{64},
    Step{6},
    ItemsOf{65, 66},
    Step{7},
    ItemsOf{67},
    Step{8},
    Alter{"ordbook_d.workordno", Long, "0"},
    Add{"product_m.colortext", Varchar(20), Empty, Fill},
    Step{9},
    ItemOf{69, "office.subcompsn"},
    ItemOf{78, "taxlist_m.cng_reason"},
    Step{10},
    ItemOf{63, "schedules.gubun"},
    ItemsOf{68},
    ItemOf{69, "product_m.attachedfile"},
    ItemsOf{70},
    kilm::kAddStockUseUp,
    kilm::kFillStockUseUp,
    ItemsOf{72, 77},
    ItemsOf{79, 80},
    StepsFrom{11, 22, 81},
    StepsFrom{23, 23, 94},
    Step{24},
    ItemOf{93, "ordbook_m.regucode"},
    StepsFrom{25, 51, 95},
    StepsFrom{53, 66, 122},
    StepsFrom{67, 70, 138},
};

constexpr Item kDifferences[] = {
    Step{34},
    InsteadOf{"customer.usesmartphone"},
    kilm::kUseSmartphone,
};

}  // namespace

Items Steps() {
    return kSteps;
}

Items DifferencesInSteps() {
    return kDifferences;
}

}  // namespace tavrel::patch::kilmpro
