#include "patch/repair/Query.h"
#include "patch/repair/Repairs.h"

namespace tavrel::patch {

namespace {

constexpr const char* kTable =
    "CREATE TABLE `office_store`("
    " `ocode`         SMALLINT        DEFAULT 0       NOT NULL,"
    " `scode`         SMALLINT        DEFAULT 0       NOT NULL,"
    " PRIMARY KEY(ocode,scode))";
constexpr const char* kPairs = "select o.code, s.code from office AS o, storehouse AS s";

}  // namespace

void CreateTBL_office_store() {
    modDBsub::DBExecute(kTable);
    if (modDBsub::DBCount("office_store", "") >= 1) {
        return;
    }
    for (Query pairs(kPairs); !pairs.AtEnd(); pairs.MoveNext()) {
        modDBsub::DBExecute("insert into office_store (ocode, scode) VALUES (" + pairs.Text(0) + "," +
                            pairs.Text(1) + ")");
    }
}

}  // namespace tavrel::patch
