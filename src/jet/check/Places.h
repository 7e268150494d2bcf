// How findings name places, and numbers in their texts.
#pragma once

#include <string>

#include "jet/storage/Bytes.h"

namespace tavrel::jet::check {

inline std::string Number(std::uint64_t value) {
    return std::to_string(value);
}
std::string Hex8(std::uint32_t value);
inline std::string PagePlace(PageNumber page) {
    return "페이지 " + Number(page);
}
inline std::string PointerText(RowPointer at) {
    return Number(at.page) + ":" + Number(at.row);
}
inline std::string TablePlace(const std::string& table) {
    return "테이블 " + table;
}
inline std::string ColumnPlace(const std::string& table, const std::string& column) {
    return TablePlace(table) + " 필드 " + column;
}
inline std::string IndexPlace(const std::string& table, const std::string& index) {
    return TablePlace(table) + " 인덱스 " + index;
}
inline std::string RowPlaceText(const std::string& place, RowPointer at) {
    return place + " 레코드 " + PointerText(at);
}

}  // namespace tavrel::jet::check
