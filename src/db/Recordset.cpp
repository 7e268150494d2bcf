#include "db/Recordset.h"

#include <algorithm>
#include <limits>

#include "db/AdoErrors.h"
#include "db/Connection.h"
#include "db/FetchedRows.h"
#include "text/Case.h"

namespace tavrel::db {

Recordset::Recordset() = default;
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&& other) noexcept = default;
Recordset& Recordset::operator=(Recordset&& other) noexcept = default;

Recordset::Recordset(jet::sql::ResultSet& result, std::uint64_t maxRows)
    : rows_(std::make_unique<FetchedRows>(result, maxRows)) {}

void Recordset::Open(const std::string& source, Connection* connection, std::int32_t /*cursorType*/,
                     std::int32_t /*lockType*/, std::int32_t /*options*/) {
    if (rows_) {
        throw AdoError(adoErrors::kObjectOpen);
    }
    if (connection == nullptr) {
        throw AdoError(adoErrors::kObjectNotSet);
    }
    if (connection->State() != adStateOpen) {
        throw AdoError(adoErrors::kConnectionUnusable);
    }
    *this = connection->Execute(source);
}

FetchedRows& Recordset::Rows() const {
    if (!rows_) {
        throw AdoError(adoErrors::kObjectClosed);
    }
    return *rows_;
}

std::int32_t Recordset::RecordCount() const {
    constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(Rows().Count(), kMost));
}

bool Recordset::Eof() const {
    return Rows().AtEnd();
}

void Recordset::MoveNext() {
    if (Rows().AtEnd()) {
        throw AdoError(adoErrors::kNoCurrentRecord);
    }
    Rows().Next();
}

void Recordset::MoveFirst() {
    Rows().First();
}

std::int32_t Recordset::FieldCount() const {
    return static_cast<std::int32_t>(Rows().Names().size());
}

const std::string& Recordset::FieldName(std::int32_t index) const {
    const std::vector<std::string>& names = Rows().Names();
    if (index < 0 || static_cast<std::size_t>(index) >= names.size()) {
        throw AdoError(adoErrors::kItemNotFound);
    }
    return names[static_cast<std::size_t>(index)];
}

RecordsetField Recordset::Fields(std::int32_t index) const {
    const std::string& name = FieldName(index);
    if (Rows().AtEnd()) {
        throw AdoError(adoErrors::kNoCurrentRecord);
    }
    return {.Name = name, .Value = Rows().Get(static_cast<std::size_t>(index))};
}

RecordsetField Recordset::Fields(std::string_view name) const {
    const std::vector<std::string>& names = Rows().Names();
    const auto found = std::ranges::find_if(
        names, [&](const std::string& other) { return text::EqualIgnoringCase(other, name); });
    // A name that is not there becomes the number behind the last one, which is refused as such.
    return Fields(static_cast<std::int32_t>(found - names.begin()));
}

void Recordset::Close() {
    static_cast<void>(Rows());
    rows_.reset();
}

}  // namespace tavrel::db
