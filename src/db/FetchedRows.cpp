#include "db/FetchedRows.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>
#include <utility>

#include "jet/sql/statement/Execute.h"

namespace tavrel::db {

namespace {

// A row is its length in bytes (32 bits) and its values; a value is its place in the variant (one byte) and
// its bytes, texts and byte strings with their length (32 bits) in front.
using Length = std::uint32_t;
constexpr std::size_t kBlockBytes = 256 * 1024;

template <typename T>
constexpr bool kSized = std::is_same_v<T, std::string> || std::is_same_v<T, jet::ByteVector>;

void Put(jet::ByteVector& out, const void* bytes, std::size_t size) {
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    out.insert(out.end(), first, first + size);
}

template <typename T>
T Take(const std::uint8_t*& at) {
    T value{};
    std::memcpy(&value, at, sizeof(T));
    at += sizeof(T);
    return value;
}

void Pack(jet::ByteVector& out, const jet::Value& value) {
    out.push_back(static_cast<std::uint8_t>(value.index()));
    std::visit(
        [&out](const auto& held) {
            using T = std::decay_t<decltype(held)>;
            if constexpr (kSized<T>) {
                const auto size = static_cast<Length>(held.size());
                Put(out, &size, sizeof size);
                Put(out, held.data(), held.size());
            } else if constexpr (!std::is_same_v<T, jet::Null>) {
                static_assert(std::is_trivially_copyable_v<T>);
                Put(out, &held, sizeof held);
            }
        },
        value);
}

template <std::size_t Place>
jet::Value UnpackAs(const std::uint8_t*& at) {
    using T = std::variant_alternative_t<Place, jet::Value>;
    if constexpr (kSized<T>) {
        const auto size = Take<Length>(at);
        const std::uint8_t* first = at;
        at += size;
        return T(first, first + size);
    } else if constexpr (std::is_same_v<T, jet::Null>) {
        return jet::Null{};
    } else {
        return Take<T>(at);
    }
}

template <std::size_t... Places>
constexpr auto UnpackersOf(std::index_sequence<Places...>) {
    return std::array{&UnpackAs<Places>...};
}
constexpr auto kUnpackers = UnpackersOf(std::make_index_sequence<std::variant_size_v<jet::Value>>());

}  // namespace

FetchedRows::FetchedRows(jet::sql::ResultSet& result, std::uint64_t maxRows) {
    for (const jet::sql::ResultColumn& column : result.Columns()) {
        names_.push_back(column.name);
    }
    while (count_ < maxRows && result.Next()) {
        Append(result);
    }
    packed_ = {};
    if (!blocks_.empty()) {
        blocks_.back().shrink_to_fit();
    }
}

void FetchedRows::Append(jet::sql::ResultSet& result) {
    packed_.assign(sizeof(Length), 0);
    for (std::size_t column = 0; column < names_.size(); ++column) {
        Pack(packed_, result.Get(column));
    }
    const auto size = static_cast<Length>(packed_.size());
    std::memcpy(packed_.data(), &size, sizeof size);
    if (blocks_.empty() || blocks_.back().capacity() - blocks_.back().size() < size) {
        blocks_.emplace_back().reserve(std::max<std::size_t>(kBlockBytes, size));
    }
    Put(blocks_.back(), packed_.data(), packed_.size());
    ++count_;
}

void FetchedRows::Next() {
    const std::uint8_t* at = blocks_[block_].data() + offset_;
    offset_ += Take<Length>(at);
    if (offset_ == blocks_[block_].size()) {
        ++block_;
        offset_ = 0;
    }
    ++row_;
    values_.clear();
}

void FetchedRows::First() {
    row_ = 0;
    block_ = 0;
    offset_ = 0;
    values_.clear();
}

const jet::Value& FetchedRows::Get(std::size_t column) {
    if (values_.empty()) {
        Unpack();
    }
    return values_[column];
}

void FetchedRows::Unpack() {
    const std::uint8_t* at = blocks_[block_].data() + offset_ + sizeof(Length);
    values_.reserve(names_.size());
    for (std::size_t column = 0; column < names_.size(); ++column) {
        const auto place = Take<std::uint8_t>(at);
        values_.push_back(kUnpackers[place](at));
    }
}

}  // namespace tavrel::db
