// A session on a new database, with everything noted that it says and sends.
#pragma once

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "db/AdoErrors.h"
#include "db/SchemaPrimitives.h"
#include "db/Session.h"
#include "jet/check/Check.h"
#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {

struct NotedMessages : platform::MessageBox {
    std::vector<platform::Message> shown;
    platform::MessageAnswer Show(const platform::Message& message) override {
        shown.push_back(message);
        return platform::MessageAnswer::Ok;
    }
};

class SessionFixture : public ::testing::Test {
  protected:
    SessionFixture() {
        DatabaseBuilder(path).Finish();
        modDBsub::DBOpenADO(path, "");
    }

    /// Whatever a test did, the database is sound.
    void TearDown() override {
        modDBsub::gDBConn.reset();
        const auto database = jet::Database::Open(path, {.password = {}, .checkPassword = false});
        for (const jet::Finding& finding : jet::CheckDatabase(*database).findings) {
            EXPECT_NE(finding.severity, jet::Finding::Severity::Error)
                << finding.where << ": " << finding.text;
        }
        if (HaveJetTools()) {
            EXPECT_EQ(StrictFindings(path), "");
        }
    }

    static void Run(std::initializer_list<const char*> statements) {
        for (const char* statement : statements) {
            modDBsub::DBExecute(statement);
        }
    }
    static std::string Text(const std::string& statement) {
        return modDBsub::DBNullToStr(modDBsub::DBGetValue(statement));
    }
    std::vector<std::string> TakeSent() { return std::exchange(sent, {}); }

    TemporaryFolder folder;
    std::string path = folder.File("temp(A).mdb");
    NotedMessages messages;
    std::vector<std::string> sent;  ///< "execute: DELETE FROM t"
    modDBsub::MessagesScope messagesInUse{messages};
    modDBsub::ListenerScope listening{[this](modDBsub::StatementKind kind, const std::string& statement) {
        sent.push_back(std::string(modDBsub::NameOf(kind)) + ": " + statement);
    }};
};

}  // namespace tavrel::testing
