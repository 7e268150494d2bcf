#include <algorithm>

#include "jet/sql/expression/Functions.h"
#include "jet/sql/expression/Nodes.h"
#include "jet/sql/values/Dates.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

const Function* FindFunction(std::string_view name) {
    for (const auto& table : {TextFunctions(), NumberFunctions(), DateFunctions()}) {
        const auto found = std::ranges::find(table, name, &Function::name);
        if (found != table.end()) {
            return &*found;
        }
    }
    return nullptr;
}

class FunctionNode : public Node {
  public:
    FunctionNode(const Function& function, NodeList arguments)
        : Node(function.type || arguments.empty() ? function.type : arguments[0]->Type()),
          function_(function),
          arguments_(std::move(arguments)),
          values_(arguments_.size()) {}

    const Value& Evaluate() override {
        for (std::size_t i = 0; i < arguments_.size(); ++i) {
            values_[i] = &arguments_[i]->Evaluate();
            if (function_.nullForNull && IsNull(*values_[i])) {
                return kNullValue;
            }
        }
        function_.call(values_, result_);
        return result_;
    }

  private:
    const Function& function_;
    NodeList arguments_;
    std::vector<const Value*> values_;
    Value result_;
};

/// NOW, DATE, TIME: one reading of the clock for the whole statement.
NodePtr MakeClockConstant(const Function& function, const Date& now) {
    const Value reading = now;
    const Value* argument = &reading;
    Value result;
    function.call({&argument, 1}, result);
    return MakeConstant(std::move(result));
}

/// Only the branch that is chosen is evaluated.
class ChoiceNode : public Node {
  public:
    explicit ChoiceNode(NodeList arguments)
        : Node(TypeOfBoth(arguments[1]->Type(), arguments[2]->Type())), arguments_(std::move(arguments)) {}
    const Value& Evaluate() override {
        return arguments_[arguments_[0]->Test() == Truth::True ? 1 : 2]->Evaluate();
    }

  private:
    static StaticType TypeOfBoth(StaticType a, StaticType b) {
        const bool open = a && b && FamilyOf(a) != FamilyOf(b);
        return open ? StaticType() : CommonType(a, b);
    }

    NodeList arguments_;
};

[[noreturn]] void ThrowArgumentCount(std::string_view source) {
    throw MakeError(sqlErrors::kInExpression, {kArgumentCount, source});
}

}  // namespace

NodePtr MakeFunction(std::string_view name, std::string_view source, NodeList arguments,
                     const std::function<Date()>& now) {
    if (name == "IIF") {
        if (arguments.size() != 3) {
            ThrowArgumentCount(source);
        }
        return std::make_unique<ChoiceNode>(std::move(arguments));
    }
    const Function* function = FindFunction(name);
    if (function == nullptr) {
        throw MakeError(sqlErrors::kUnknownFunction, {name});
    }
    if (arguments.size() < function->fewest || arguments.size() > function->most) {
        ThrowArgumentCount(source);
    }
    const bool clock = function->most == 0 && function->type == ColumnType::Date;
    return clock ? MakeClockConstant(*function, now ? now() : LocalNow())
                 : std::make_unique<FunctionNode>(*function, std::move(arguments));
}

}  // namespace tavrel::jet::sql
