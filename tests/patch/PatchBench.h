// A database at some version of a product, the product's driver, and everything that the driver sends and
// says.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "db/Session.h"
#include "jet/check/Check.h"
#include "jet/database/Database.h"
#include "patch/Modules.h"
#include "patch/Runner.h"
#include "patch/base/BaseDatabase.h"
#include "patch/log/UpdateLog.h"
#include "support/JetTools.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {

struct ProductUnderTest {
    const char* name;
    std::int16_t target;
    void (*makeBase)();
    bool (*driver)();
    const patch::Script& (*steps)();
    const patch::Script& (*procedures)();
};

inline constexpr ProductUnderTest kBrelt{"brelt",
                                         modDBPatch_BRELT::kTarget,
                                         patch::MakeBaseOfBrelt,
                                         modDBPatch_BRELT::ChkDBpatch,
                                         modDBPatch_BRELT::Steps,
                                         modDBPatch_BRELT::Procedures};
inline constexpr ProductUnderTest kKilm{"kilm",
                                        modDBPatch_KILM::kTarget,
                                        patch::MakeBaseOfKilm,
                                        modDBPatch_KILM::ChkDBpatch,
                                        modDBPatch_KILM::Steps,
                                        modDBPatch_KILM::Procedures};
inline constexpr ProductUnderTest kKilmPro{"kilmpro",
                                           modDBPatch_KILMPRO::kTarget,
                                           patch::MakeBaseOfKilmPro,
                                           modDBPatch_KILMPRO::ChkDBpatch,
                                           modDBPatch_KILMPRO::Steps,
                                           modDBPatch_KILMPRO::Procedures};
inline constexpr ProductUnderTest kNorb{"norb",
                                        modDBPatch_NORB::kTarget,
                                        patch::MakeBaseOfNorb,
                                        modDBPatch_NORB::ChkDBpatch,
                                        modDBPatch_NORB::Steps,
                                        modDBPatch_NORB::Procedures};

/// A statement that was sent, and what the database answers to it at that moment when it is a query.
struct SentStatement {
    std::string kind;
    std::string sql;
    bool failed = false;
    std::vector<std::vector<std::string>> rows;
};

class PatchBench : private platform::MessageBox {
  public:
    /// The database as the product's list leaves it at `version`.
    PatchBench(const ProductUnderTest& product, int version) : product_(product) {
        jet::Database::Create(Path())->Flush();
        modDBsub::DBOpenADO(Path(), "");
        product.makeBase();
        patch::UpdateLog::UseFolder(folder_.Path());
        patch::RunSteps(product.steps(), product.procedures(), 1, static_cast<std::int16_t>(version));
        Store(std::to_string(version));
    }
    ~PatchBench() override {
        modDBsub::gDBConn.reset();
        patch::UpdateLog::UseFolder({});
    }

    /// Any expression of SQL.
    void Store(const std::string& version) { Run("UPDATE dbversion SET ver = " + version); }
    static void Run(const std::string& statement) { modDBsub::DBExecute(statement); }
    static std::string Value(const std::string& query) {
        return modDBsub::DBNullToStr(modDBsub::DBGetValue(query));
    }

    /// Runs the driver.
    bool Patch() {
        sent.clear();
        messages.clear();
        const modDBsub::MessagesScope sink(*this);
        const modDBsub::ListenerScope listener(
            [this](modDBsub::StatementKind kind, const std::string& sql) { Note(kind, sql); });
        return product_.driver();
    }

    /// What both checkers find in the file.
    std::string Findings() {
        modDBsub::gDBConn.reset();
        std::string lines;
        const auto database = jet::Database::Open(Path());
        for (const jet::Finding& finding : jet::CheckDatabase(*database).findings) {
            lines += finding.where + ": " + finding.text + "\n";
        }
        return lines + (HaveJetTools() ? StrictFindings(Path()) : std::string());
    }

    [[nodiscard]] std::string Path() const { return folder_.File("patched.mdb"); }
    [[nodiscard]] std::string LogPath() const { return folder_.File("DB_UPDATE_LOG.log"); }

    std::vector<SentStatement> sent;
    std::vector<std::string> messages;

  private:
    platform::MessageAnswer Show(const platform::Message& message) override {
        messages.push_back(message.text);
        return platform::MessageAnswer::Ok;
    }

    void Note(modDBsub::StatementKind kind, const std::string& sql) {
        SentStatement statement{std::string(modDBsub::NameOf(kind)), sql, false, {}};
        if (kind != modDBsub::StatementKind::Execute) {
            Ask(statement);
        }
        sent.push_back(std::move(statement));
    }

    static void Ask(SentStatement& statement) {
        try {
            for (db::Recordset rows = modDBsub::gDBConn->Execute(statement.sql); !rows.Eof();
                 rows.MoveNext()) {
                std::vector<std::string>& row = statement.rows.emplace_back();
                for (std::int32_t i = 0; i < rows.FieldCount(); ++i) {
                    row.push_back(modDBsub::DBNullToStr(rows.Fields(i).Value));
                }
            }
        } catch (const Error&) {
            statement.failed = true;
        }
    }

    const ProductUnderTest& product_;
    TemporaryFolder folder_;
};

}  // namespace tavrel::testing
