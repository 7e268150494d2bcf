// Single statements of the script, as text without the semicolon.
#pragma once

#include <string>
#include <vector>

#include "details/Schema.h"

namespace tavrel::script {

/// "TEXT(50)", "COUNTER", "DECIMAL(18, 2)" …  REQUIRES: a type that statements know.
std::string TypeWords(const details::Column& column);

std::string CreateTable(const details::Table& table);
std::string DropTable(const std::string& table);
std::string AddColumn(const std::string& table, const details::Column& column);
std::string DropColumn(const std::string& table, const std::string& column);
/// What turns the one definition of a column into the other; both have the same name.
std::vector<std::string> AlterColumn(const std::string& table, const details::Column& from,
                                     const details::Column& to);
std::string CreateIndex(const std::string& table, const jet::IndexInfo& index);
std::string DropIndex(const std::string& table, const std::string& index);
std::string AddRelation(const jet::RelationInfo& relation);
std::string DropRelation(const jet::RelationInfo& relation);

/// The rows store other bytes, or the record of the column says something else of them.
bool SameStorage(const details::Column& a, const details::Column& b);

}  // namespace tavrel::script
