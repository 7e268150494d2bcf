#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

NewIndex UniqueIndex(std::string name, const std::vector<std::string>& columns, bool primary) {
    NewIndex index;
    index.name = std::move(name);
    index.primary = primary;
    index.unique = true;
    index.required = primary;
    for (const std::string& column : columns) {
        index.fields.push_back({column, false});
    }
    return index;
}

}  // namespace

bool Parser::StartsConstraint() const {
    return IsWord("CONSTRAINT") || IsWord("PRIMARY") || IsWord("UNIQUE") || IsWord("FOREIGN");
}

void Parser::ParseTableConstraint(Constraints& constraints) {
    constexpr std::int32_t kError = sqlErrors::kInConstraint;
    std::string name = AcceptWord("CONSTRAINT") ? TakeName(kError) : std::string();
    if (AcceptWord("PRIMARY")) {
        ExpectWord("KEY", kError);
        constraints.indexes.push_back(UniqueIndex(std::move(name), TakeNames(kError), true));
    } else if (AcceptWord("UNIQUE")) {
        constraints.indexes.push_back(UniqueIndex(std::move(name), TakeNames(kError), false));
    } else if (AcceptWords({"FOREIGN", "KEY"})) {
        ForeignKeyDefinition key;
        key.relation.name = std::move(name);
        key.indexed = !AcceptWords({"NO", "INDEX"});
        key.relation.columns = TakeNames(kError);
        ExpectWord("REFERENCES", kError);
        ParseReferences(key);
        constraints.foreignKeys.push_back(std::move(key));
    } else {
        Fail(kError);
    }
}

bool Parser::ParseColumnConstraint(const std::string& column, Constraints& constraints) {
    constexpr std::int32_t kError = sqlErrors::kInConstraint;
    const bool named = AcceptWord("CONSTRAINT");
    std::string name = named ? TakeName(kError) : std::string();
    if (AcceptWord("PRIMARY")) {
        ExpectWord("KEY", kError);
        constraints.indexes.push_back(UniqueIndex(std::move(name), {column}, true));
    } else if (AcceptWord("UNIQUE")) {
        constraints.indexes.push_back(UniqueIndex(std::move(name), {column}, false));
    } else if (AcceptWord("REFERENCES")) {
        ForeignKeyDefinition key;
        key.relation.name = std::move(name);
        key.relation.columns = {column};
        ParseReferences(key);
        constraints.foreignKeys.push_back(std::move(key));
    } else if (named) {
        Fail(kError);
    } else {
        return false;
    }
    return true;
}

void Parser::ParseReferences(ForeignKeyDefinition& key) {
    key.relation.referencedTable = TakeName(sqlErrors::kInConstraint);
    if (IsSymbol("(")) {
        key.relation.referencedColumns = TakeNames(sqlErrors::kInConstraint);
    }
    while (AcceptWord("ON")) {
        ParseReferentialAction(key);
    }
}

/// UPDATE and DELETE may each be spoken of once, in either order.
void Parser::ParseReferentialAction(ForeignKeyDefinition& key) {
    constexpr std::int32_t kError = sqlErrors::kInConstraint;
    const bool update = AcceptWord("UPDATE");
    if (!update) {
        ExpectWord("DELETE", kError);
    }
    bool& cascades = update ? key.relation.updateCascade : key.relation.deleteCascade;
    bool& setsNull = update ? key.updateSetsNull : key.deleteSetsNull;
    bool& spoken = update ? key.updateGiven : key.deleteGiven;
    if (spoken) {
        Fail(kError);
    }
    spoken = true;
    if (AcceptWord("CASCADE")) {
        cascades = true;
    } else if (AcceptWords({"SET", "NULL"})) {
        setsNull = true;
    } else if (!AcceptWords({"NO", "ACTION"})) {
        Fail(kError);
    }
}

}  // namespace tavrel::jet::sql
