#include "Migration.h"

#include <cstdio>

#include "db/Session.h"
#include "jet/database/Database.h"
#include "patch/Modules.h"
#include "patch/Runner.h"
#include "patch/base/BaseDatabase.h"

namespace tavrel::bench {

namespace {

class KeptMessages : public platform::MessageBox {
  public:
    explicit KeptMessages(std::vector<std::string>& texts) : texts_(texts) {}
    platform::MessageAnswer Show(const platform::Message& message) override {
        texts_.push_back(message.text);
        return platform::MessageAnswer::Ok;
    }

  private:
    std::vector<std::string>& texts_;
};

}  // namespace

Migration::Migration(const std::string& path) {
    jet::Database::Create(path)->Flush();
    modDBsub::DBOpenADO(path, "");
    const modDBsub::ListenerScope listener([this](modDBsub::StatementKind kind, const std::string& text) {
        base.push_back({0, kind, text});
    });
    patch::MakeBaseOfBrelt();
    modDBsub::DBExecute("UPDATE dbversion SET ver = 0");
}

Migration::~Migration() {
    modDBsub::gDBConn.reset();
}

bool Migration::Run() {
    KeptMessages box(messages);
    const modDBsub::MessagesScope scope(box);
    std::int16_t step = 0;
    const modDBsub::ListenerScope listener([&](modDBsub::StatementKind kind, const std::string& text) {
        sent.push_back({step, kind, text});
    });
    const Stopwatch whole;
    Stopwatch ofStep;
    patch::ListenToSteps([&](std::int16_t next) {
        steps[step] += ofStep.Read();
        ofStep = {};
        step = next;
        std::fprintf(stderr, "\rstep %3d / %d", next, modDBPatch_BRELT::kTarget);
    });
    const bool done = modDBPatch_BRELT::ChkDBpatch();
    steps[step] += ofStep.Read();
    cost = whole.Read();
    patch::ListenToSteps({});
    std::fprintf(stderr, "\n");
    return done;
}

}  // namespace tavrel::bench
