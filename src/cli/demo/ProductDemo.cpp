#include "cli/demo/ProductDemo.h"

#include "cli/demo/BusinessData.h"
#include "db/Session.h"
#include "jet/database/Database.h"
#include "patch/Modules.h"
#include "patch/Runner.h"
#include "patch/base/BaseDatabase.h"

namespace tavrel::cli {

namespace {

constexpr BusinessSize kMany{.customers = 300, .products = 150, .sales = 1500};
constexpr BusinessSize kFew{.customers = 10, .products = 8, .sales = 30};

/// Product A as the list leaves it at a version; the data comes afterwards, so nothing needs repair.
void MakeBrelt(std::int16_t version) {
    patch::MakeBaseOfBrelt();
    patch::RunSteps(modDBPatch_BRELT::Steps(), modDBPatch_BRELT::Procedures(), 1, version);
    modDBsub::DBExecute("UPDATE dbversion SET ver = " + std::to_string(version) + " WHERE dbid = 'main'");
    FillTrade(kMany, true);
}

/// What somebody has changed at one site: the differences that stay when both stand at the latest version.
constexpr const char* kChangesAtASite[] = {
    "ALTER TABLE customer ADD COLUMN memo2 VARCHAR(50)",
    "ALTER TABLE product_m ALTER COLUMN norm VARCHAR(80) DEFAULT \"\" NOT NULL",
    "DROP INDEX idx_customer_compname ON customer",
    "CREATE TABLE user_memo (code AUTOINCREMENT, ucode VARCHAR(2), memo TEXT, PRIMARY KEY (code))",
};

void MakeBrelt96() {
    MakeBrelt(96);
}

void MakeBrelt133() {
    MakeBrelt(133);
    for (const char* change : kChangesAtASite) {
        modDBsub::DBExecute(change);
    }
}

void MakeLowestBrelt() {
    patch::MakeBaseOfBrelt();
    FillTrade(kFew, false);
}
void MakeLowestKilm() {
    patch::MakeBaseOfKilm();
    FillTrade(kFew, false);
}
void MakeLowestKilmPro() {
    patch::MakeBaseOfKilmPro();
    FillTrade(kFew, false);
}
void MakeLowestNorb() {
    patch::MakeBaseOfNorb();
    FillNorb(kFew.customers);
}

}  // namespace

const std::vector<ProductDemo>& ProductDemos() {
    static const std::vector<ProductDemo> kDemos = {
        {"dalvorii-96.mdb", MakeBrelt96},        {"dalvorii-133.mdb", MakeBrelt133},
        {"dalvorii-1.mdb", MakeLowestBrelt},     {"vintrelii-1.mdb", MakeLowestKilm},
        {"vintrelpro-1.mdb", MakeLowestKilmPro}, {"pellamii-1.mdb", MakeLowestNorb},
    };
    return kDemos;
}

void WriteProductDemo(const ProductDemo& demo, const std::string& path) {
    jet::Database::Create(path)->Flush();
    modDBsub::DBOpenADO(path, "");
    try {
        demo.make();
    } catch (...) {
        modDBsub::gDBConn.reset();  // the caller removes the file
        throw;
    }
    modDBsub::gDBConn.reset();
}

bool IsProductDemo(const std::string& path) {
    try {
        db::Connection connection;
        connection.Open("Provider=Microsoft.Jet.OLEDB.4.0;Mode=Read;Data Source=" + path);
        const std::string query = std::string("SELECT code FROM office WHERE bigo = '") + kOfficeRemark + "'";
        return !connection.Execute(query).Eof();
    } catch (const Error&) {
        // A file that we cannot read is none that we have made, and must not be overwritten.
        return false;
    }
}

}  // namespace tavrel::cli
