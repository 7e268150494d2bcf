#include "details/Facts.h"

#include <algorithm>

#include "text/Case.h"

namespace tavrel::details {

namespace {

std::string YesNo(bool yes) {
    return yes ? "O" : "X";
}

std::string Joined(const std::vector<std::string>& names) {
    std::string joined;
    for (const std::string& name : names) {
        joined += (joined.empty() ? "" : ", ") + name;
    }
    return joined;
}

std::string Joined(const std::vector<jet::IndexFieldInfo>& fields) {
    std::vector<std::string> names;
    for (const jet::IndexFieldInfo& field : fields) {
        names.push_back(field.name + (field.descending ? " DESC" : ""));
    }
    return Joined(names);
}

bool NamesOthers(Aspect aspect) {
    switch (aspect) {
        case Aspect::IndexColumns:
        case Aspect::Child:
        case Aspect::ChildColumns:
        case Aspect::Parent:
        case Aspect::ParentColumns:
            return true;
        default:
            return false;
    }
}

}  // namespace

std::string_view TypeName(jet::ColumnType type) {
    using enum jet::ColumnType;
    switch (type) {
        case Boolean:
            return "Boolean";
        case Byte:
            return "Byte";
        case Integer:
            return "Integer";
        case Long:
            return "Long";
        case Currency:
            return "Currency";
        case Single:
            return "Single";
        case Double:
            return "Double";
        case Date:
            return "Date";
        case Binary:
        case FixedBinary:
            return "Binary";
        case Text:
            return "Text";
        case Ole:
            return "OLE";
        case Memo:
            return "Memo";
        case Guid:
            return "GUID";
        case Numeric:
            return "Decimal";
    }
    return "?";
}

Facts FactsOf(const Column& column) {
    const bool sized = column.size > 0;
    const bool numeric = column.type == jet::ColumnType::Numeric;
    return {{Aspect::Spelling, column.name},
            {Aspect::Type, std::string(TypeName(column.type))},
            {Aspect::Size, sized ? std::to_string(column.size) : ""},
            {Aspect::Digits,
             numeric ? std::to_string(column.precision) + "," + std::to_string(column.scale) : ""},
            {Aspect::Autonumber, YesNo(column.autonumber)},
            {Aspect::FixedWidth, YesNo(column.fixedWidth)},
            {Aspect::Default, column.defaultValue},
            {Aspect::Required, YesNo(column.required)},
            {Aspect::ZeroLength, jet::IsText(column.type) ? YesNo(column.TakesEmptyText()) : ""}};
}

Facts FactsOf(const jet::IndexInfo& index) {
    return {{Aspect::Spelling, index.name},           {Aspect::IndexColumns, Joined(index.fields)},
            {Aspect::Primary, YesNo(index.primary)},  {Aspect::Unique, YesNo(index.unique)},
            {Aspect::NoNulls, YesNo(index.required)}, {Aspect::IgnoreNulls, YesNo(index.ignoreNulls)}};
}

Facts FactsOf(const jet::RelationInfo& relation) {
    const char* deleteRule = relation.deleteCascade    ? "CASCADE"
                             : relation.deleteSetsNull ? "SET NULL"
                                                       : "NO ACTION";
    return {{Aspect::Spelling, relation.name},
            {Aspect::Child, relation.table},
            {Aspect::ChildColumns, Joined(relation.columns)},
            {Aspect::Parent, relation.referencedTable},
            {Aspect::ParentColumns, Joined(relation.referencedColumns)},
            {Aspect::UpdateRule, relation.updateCascade ? "CASCADE" : "NO ACTION"},
            {Aspect::DeleteRule, deleteRule},
            {Aspect::Enforced, YesNo(relation.enforced)},
            {Aspect::OneToOne, YesNo(relation.oneToOne)}};
}

Facts FactsOf(const Table& table) {
    return {{Aspect::Spelling, table.name}};
}

std::vector<Aspect> DifferingAspects(const Facts& a, const Facts& b) {
    std::vector<Aspect> differing;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const bool same =
            NamesOthers(a[i].aspect) ? text::EqualIgnoringCase(a[i].text, b[i].text) : a[i].text == b[i].text;
        if (!same) {
            differing.push_back(a[i].aspect);
        }
    }
    return differing;
}

std::string_view TextOf(const Facts& facts, Aspect aspect) {
    const auto found = std::ranges::find(facts, aspect, &Fact::aspect);
    return found == facts.end() ? std::string_view() : std::string_view(found->text);
}

}  // namespace tavrel::details
