#include "patch/Runner.h"

#include <stdexcept>
#include <string>

#include "db/Session.h"
#include "patch/TableStatement.h"
#include "patch/log/Report.h"
#include "patch/repair/Repairs.h"

namespace tavrel::patch {

namespace {

using modDBsub_ADO::ColumnDefault;

StepListener stepListener;

ColumnDefault ValueOf(const Default& value) {
    return value.isNumber ? ColumnDefault(value.number) : ColumnDefault(std::string(value.text));
}

std::string FollowUpOf(const Add& item) {
    switch (item.then.kind) {
        case FollowUp::Kind::Fill:
            return modDBsub_ADO::kDefUpdate;
        case FollowUp::Kind::Set:
            return std::string("UPDATE ").append(item.place.table).append(" SET ").append(item.place.column) +
                   std::string(" = ").append(item.then.text);
        case FollowUp::Kind::Statement:
            return std::string(item.then.text);
        case FollowUp::Kind::None:
            break;
    }
    return {};
}

/// Runs the items of one block.
class BlockRunner {
  public:
    BlockRunner(const Block& block, const Script& procedures)
        : items_(block.items), procedures_(procedures) {}

    void Run() {
        while (place_ < items_.size() && !ended_) {
            std::visit(*this, items_[place_++]);
        }
    }

    void operator()(const Add& item) const {
        modDBsub_ADO::DBAddColumn(std::string(item.place.table), std::string(item.place.column),
                                  item.type.code, item.type.size, ValueOf(item.value), FollowUpOf(item));
    }
    void operator()(const Alter& item) const {
        modDBsub_ADO::DBAlterColumn(std::string(item.place.table), std::string(item.place.column),
                                    item.type.code, item.type.size, ValueOf(item.value));
    }
    void operator()(const Relation& item) const {
        modDBsub_ADO::DBAddRelation(std::string(item.name), std::string(item.parent.table),
                                    std::string(item.child.table), std::string(item.parent.column),
                                    std::string(item.child.column), static_cast<std::int32_t>(item.cascade));
    }
    void operator()(const Constraint& item) const { modDBsub::DBExecute(ConstraintStatement(item)); }
    void operator()(const Index& item) const {
        modDBsub_ADO::DBAddIndex(std::string(item.table), std::string(item.columns), std::string(item.name),
                                 item.unique == Unique::Yes);
    }
    void operator()(const patch::Run& item) const { modDBsub::DBExecute(std::string(item.statement)); }
    void operator()(const Seed& item) const {
        constexpr std::int16_t kCodeLength = 4;
        const std::string code = modDBsub::DBNextCode("pclass", "code", kCodeLength, "", false);
        modDBsub::DBExecute(std::string(item.before).append(code).append(item.after));
    }
    void operator()(const OnlyWhenEmpty& item) {
        ended_ = modDBsub::DBCount(std::string(item.table), "") >= 1;
    }
    void operator()(const Call& item) const;

    void operator()(const Table& item) {
        TableStatement statement(item);
        for (; place_ < items_.size() && statement.Take(items_[place_]); ++place_) {
        }
        modDBsub::DBExecute(statement.Text());
    }

    void operator()(const Column& item) const { RefuseToRun(item.name); }
    void operator()(const Columns& /*item*/) const { RefuseToRun("several"); }

  private:
    /// The table above takes its columns; one that is left over is a mistake in a list, which no user can
    /// cause.
    [[noreturn]] static void RefuseToRun(std::string_view column) {
        throw std::logic_error("a column without a table: " + std::string(column));
    }

    const std::vector<BlockItem>& items_;
    const Script& procedures_;
    std::size_t place_ = 0;
    bool ended_ = false;
};

void RunProcedure(const Block& block, const Script& procedures) {
    const Procedure& procedure = std::get<Procedure>(block.heading);
    if (!procedure.traps) {
        BlockRunner(block, procedures).Run();
        return;
    }
    try {
        BlockRunner(block, procedures).Run();
    } catch (const Error& error) {
        ReportFailure(error, procedure.name, kPatchModule);
    }
}

void BlockRunner::operator()(const Call& item) const {
    if (const Block* procedure = procedures_.FindProcedure(item.procedure)) {
        RunProcedure(*procedure, procedures_);
    } else {
        FindRepair(item.procedure)();
    }
}

bool Passes(std::int16_t version, const Step& step) {
    return version < step.number && version >= step.from;
}

}  // namespace

void RunSteps(const Script& steps, const Script& procedures, std::int16_t version, std::int16_t last) {
    for (const Block& block : steps.Blocks()) {
        const Step& step = std::get<Step>(block.heading);
        if (step.number <= last && Passes(version, step)) {
            if (stepListener) {
                stepListener(step.number);
            }
            BlockRunner(block, procedures).Run();
        }
    }
}

void ListenToSteps(StepListener listener) {
    stepListener = std::move(listener);
}

}  // namespace tavrel::patch
