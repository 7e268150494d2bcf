#include "script/DefaultText.h"

#include <algorithm>

#include "jet/sql/statement/Defaults.h"
#include "jet/sql/statement/TableChanges.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/TextComparer.h"
#include "jet/storage/FileHeader.h"
#include "text/Error.h"

namespace tavrel::script {

namespace {

/// A default is compiled without tables: none of these is ever called.
class NoDatabase : public jet::sql::Tables, public jet::sql::SchemaChanges, public jet::sql::Transactions {
  public:
    std::shared_ptr<jet::sql::TableAccess> Find(std::string_view /*name*/) override { return nullptr; }
    std::unique_ptr<jet::sql::TableChanges> Change(jet::sql::TableAccess& /*table*/,
                                                   std::span<const std::size_t> /*updated*/) override {
        return nullptr;
    }
    void CreateTable(const jet::sql::TableCreation& /*table*/) override {}
    void AddColumn(const std::string& /*table*/, const jet::sql::ColumnDefinition& /*column*/) override {}
    void AlterColumn(const std::string& /*table*/, const jet::sql::ColumnDefinition& /*column*/) override {}
    void SetDefault(const std::string& /*table*/, const std::string& /*column*/,
                    const std::string& /*text*/) override {}
    void DropColumn(const std::string& /*table*/, const std::string& /*column*/) override {}
    void AddIndex(const std::string& /*table*/, const jet::NewIndex& /*index*/) override {}
    void AddForeignKey(const jet::sql::ForeignKeyDefinition& /*key*/) override {}
    void DropConstraint(const std::string& /*table*/, const std::string& /*name*/) override {}
    void DropIndex(const std::string& /*table*/, const std::string& /*name*/) override {}
    void DropTable(const std::string& /*table*/) override {}
    void Begin() override {}
    void Commit() override {}
    void Rollback() override {}
    void BeginStatement() override {}
    void EndStatement() override {}
    void UndoStatement() noexcept override {}
};

bool MeansSomething(const std::string& text) {
    NoDatabase nothing;
    const jet::sql::TextComparer texts(jet::kSortKorean);
    jet::sql::Workspace workspace{nothing, nothing, nothing, texts, {}, {}, 0};
    jet::sql::Context context{workspace, 0, {}};
    try {
        jet::sql::CompileDefault(context, text, "c");
        return true;
    } catch (const Error&) {
        return false;
    }
}

/// The clause takes the text, all of it and nothing but it: what a file holds cannot become another
/// statement.
bool IsTakenToTheLetter(const std::string& text) {
    try {
        const auto statement = jet::sql::ParseStatement("ALTER TABLE t ALTER COLUMN c SET DEFAULT " + text);
        const auto* set = std::get_if<jet::sql::SetDefaultStatement>(&statement);
        return set != nullptr && set->text == text;
    } catch (const Error&) {
        return false;
    }
}

/// Without the = and the blanks that people type in front and behind.
std::string WithoutEqualsSign(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const auto trim = [&] {
        text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
        text.remove_suffix(text.size() - 1 - text.find_last_not_of(kBlanks));
    };
    trim();
    if (text.starts_with('=')) {
        text.remove_prefix(1);
        trim();
    }
    return std::string(text);
}

bool IsWritable(const std::string& text) {
    return IsTakenToTheLetter(text) && MeansSomething(text);
}

}  // namespace

std::optional<std::string> WritableDefault(const std::string& text) {
    if (IsWritable(text)) {
        return text;
    }
    const std::string bare = WithoutEqualsSign(text);
    if (IsWritable(bare)) {
        return bare;
    }
    const std::string enclosed = "(" + bare + ")";
    return IsWritable(enclosed) ? std::optional(enclosed) : std::nullopt;
}

}  // namespace tavrel::script
