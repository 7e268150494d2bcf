// Expressions ready to be evaluated: names are cells, types are known as far as they can be.
#pragma once

#include <memory>
#include <vector>

#include "jet/sql/expression/TableAccess.h"
#include "jet/sql/values/Values.h"

namespace tavrel::jet::sql {

/// One column of the row that a source stands on.  Decoded when somebody asks for it, once for each row.
class Cell {
  public:
    /// Good until the source moves on.
    const Value& Get() {
        if (current_ == nullptr) {
            Load();
        }
        return *current_;
    }
    /// The value lies elsewhere and stays there until the source moves on.
    void PointTo(const Value& value) { current_ = &value; }
    /// The source has moved: column `column` of the reader's row, to be decoded when asked for.
    void Forget(RowReader& reader, std::size_t column) {
        reader_ = &reader;
        column_ = column;
        current_ = nullptr;
    }
    /// Stands for the row's id in place of a column.
    static constexpr std::size_t kRowId = static_cast<std::size_t>(-1);

  private:
    void Load();

    const Value* current_ = nullptr;
    RowReader* reader_ = nullptr;
    std::size_t column_ = 0;
    Value own_;
};

/// What a cell shows where an outer join found no partner.
extern const Value kNullValue;

class Node {
  public:
    explicit Node(StaticType type = std::nullopt) : type_(type) {}
    virtual ~Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// The value for the rows that the cells stand on; good until the next evaluation of this node or the
    /// next row.
    virtual const Value& Evaluate() = 0;
    /// The same as a condition.
    virtual Truth Test() { return TruthOf(Evaluate()); }
    /// The value when it never changes, else null.
    [[nodiscard]] virtual const Value* Constant() const { return nullptr; }
    [[nodiscard]] StaticType Type() const { return type_; }

  private:
    StaticType type_;
};
using NodePtr = std::unique_ptr<Node>;
using NodeList = std::vector<NodePtr>;

/// True when every condition holds.
inline bool AllTrue(const NodeList& conditions) {
    for (const NodePtr& condition : conditions) {
        if (condition->Test() != Truth::True) {
            return false;
        }
    }
    return true;
}

}  // namespace tavrel::jet::sql
