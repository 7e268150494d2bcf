#include "script/Steps.h"

#include <algorithm>

#include "details/Differences.h"
#include "details/Match.h"
#include "details/Words.h"
#include "script/HeldRows.h"
#include "script/Narrowing.h"
#include "script/ReachColumn.h"
#include "script/ReachRelations.h"
#include "script/Statements.h"

namespace tavrel::script {

namespace {

using details::Column;
using details::Match;
using details::Schema;
using details::Table;
using jet::IndexInfo;
using jet::RelationInfo;

template <typename Thing>
bool Same(const Thing& a, const Thing& b) {
    return DifferingAspects(details::FactsOf(a), details::FactsOf(b)).empty();
}

std::string RowsInWords(std::uint64_t rows) {
    return std::to_string(rows) + "개";
}

class StepMaker {
  public:
    StepMaker(const Schema& from, const Schema& to, jet::Database& rows)
        : from_(from), to_(to), rows_(rows) {}

    std::vector<Step> Run() {
        const auto tables = Match(from_.tables, to_.tables);
        TakeRelationsOff();
        for (const auto& [old, fresh] : tables) {
            if (old != nullptr && fresh != nullptr) {
                TakeIndexesOff(*old, *fresh);
            }
        }
        for (const auto& [old, fresh] : tables) {
            if (fresh == nullptr) {
                Add({"테이블 " + old->name + ": B에 없어 지웁니다. 지워지는 행 " + RowsInWords(old->rows),
                     {DropTable(old->name)}});
            } else if (old == nullptr) {
                Add({"테이블 " + fresh->name + ": B에만 있어 만듭니다.", {CreateTable(*fresh)}});
            } else {
                ChangeColumns(*old, *fresh);
            }
        }
        for (const auto& [old, fresh] : tables) {
            if (fresh != nullptr) {
                PutIndexesOn(old, *fresh);
            }
        }
        PutRelationsOn();
        return std::move(steps_);
    }

  private:
    void Add(Step step) {
        if (!step.statements.empty()) {
            steps_.push_back(std::move(step));
        }
    }

    /// The relation of one structure stays untouched.
    [[nodiscard]] bool Stays(const RelationInfo* old, const RelationInfo* fresh) const {
        return old != nullptr && fresh != nullptr && Same(*old, *fresh) && !IsDisturbed(*old, from_, to_);
    }

    void TakeRelationsOff() {
        Step gone{"B에 없거나 B와 다른 관계를 끊습니다.", {}};
        Step away{"고칠 필드와 인덱스에 걸린 관계를 잠시 끊습니다. 끝에서 다시 잇습니다.", {}};
        for (const auto& [old, fresh] : Match(from_.relations, to_.relations)) {
            if (old != nullptr && !Stays(old, fresh)) {
                Step& step = fresh != nullptr && Same(*old, *fresh) ? away : gone;
                step.statements.push_back(DropRelation(*old));
            }
        }
        Add(std::move(gone));
        Add(std::move(away));
    }

    void PutRelationsOn() {
        Step step{"관계를 잇습니다.", {}};
        for (const auto& [old, fresh] : Match(from_.relations, to_.relations)) {
            if (fresh != nullptr && !Stays(old, fresh)) {
                step.statements.push_back(AddRelation(*fresh));
            }
        }
        Add(std::move(step));
    }

    void TakeIndexesOff(const Table& old, const Table& fresh) {
        Step step{"테이블 " + old.name + ": B에 없거나 B와 다른 인덱스를 지웁니다.", {}};
        for (const auto& [from, to] : Match(old.indexes, fresh.indexes)) {
            if (from != nullptr && (to == nullptr || !Same(*from, *to))) {
                step.statements.push_back(DropIndex(old.name, from->name));
            }
        }
        Add(std::move(step));
    }

    void PutIndexesOn(const Table* old, const Table& fresh) {
        Step step{"테이블 " + fresh.name + ": B의 인덱스를 만듭니다.", {}};
        const std::vector<IndexInfo> none;
        for (const auto& [from, to] : Match(old != nullptr ? old->indexes : none, fresh.indexes)) {
            if (to != nullptr && (from == nullptr || !Same(*from, *to))) {
                step.statements.push_back(CreateIndex(fresh.name, *to));
            }
        }
        Add(std::move(step));
    }

    /// A table counts by one column: one that goes stops doing so before another begins.
    void StopCounting(const Table& old, const std::vector<std::pair<const Column*, const Column*>>& columns) {
        const bool another = std::ranges::any_of(columns, [](const auto& pair) {
            return pair.second != nullptr && IsCounter(*pair.second) &&
                   (pair.first == nullptr || !IsCounter(*pair.first));
        });
        for (const auto& [from, to] : columns) {
            if (another && to == nullptr && IsCounter(*from)) {
                Column plain = *from;
                plain.autonumber = false;
                Add({"필드 " + old.name + "." + from->name + ": 다른 필드가 일련 번호를 이어받습니다.",
                     AlterColumn(old.name, *from, plain)});
            }
        }
    }

    /// What is added comes before what goes: a table is never without columns.
    void ChangeColumns(const Table& old, const Table& fresh) {
        const auto columns = Match(old.columns, fresh.columns);
        StopCounting(old, columns);
        for (const bool counting : {true, false}) {  // one stops before another begins
            for (const auto& [from, to] : columns) {
                if (from != nullptr && to != nullptr && IsCounter(*from) == counting && !Same(*from, *to)) {
                    Add({ReasonToAlter(old.name, *from, *to), AlterColumn(old.name, *from, *to)});
                }
            }
        }
        for (const auto& [from, to] : columns) {
            if (from == nullptr) {
                Add({"필드 " + old.name + "." + to->name + ": B에만 있어 더합니다.",
                     {AddColumn(old.name, *to)}});
            }
        }
        for (const auto& [from, to] : columns) {
            if (to == nullptr) {
                Add({"필드 " + old.name + "." + from->name + ": B에 없어 지웁니다. 값이 있는 행 " +
                         RowsInWords(CountHeld(rows_, old.name, from->name)),
                     {DropColumn(old.name, from->name)}});
            }
        }
    }

    std::string ReasonToAlter(const std::string& table, const Column& from, const Column& to) {
        const details::Facts before = details::FactsOf(from);
        const details::Facts after = details::FactsOf(to);
        std::string reason = details::InWords({details::Subject::Column, details::Where::Both, table,
                                               from.name, before, after, DifferingAspects(before, after)});
        if (!Narrows(from, to)) {
            return reason;
        }
        reason += ". 값이 있는 행 " + RowsInWords(CountHeld(rows_, table, from.name));
        if (from.type == to.type && from.type == jet::ColumnType::Text) {
            reason += ", 잘리는 행 " + RowsInWords(CountLonger(rows_, table, from.name, to.size));
        }
        return reason;
    }

    const Schema& from_;
    const Schema& to_;
    jet::Database& rows_;
    std::vector<Step> steps_;
};

}  // namespace

std::vector<Step> StepsBetween(const Schema& from, const Schema& to, jet::Database& rows) {
    return StepMaker(from, to, rows).Run();
}

}  // namespace tavrel::script
