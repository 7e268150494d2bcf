#include "app/logic/ControlTable.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace tavrel::app {

namespace {

using enum ControlKind;

constexpr std::array<ControlEntry, 24> kControls = {{
    // clang-format off
    {"Frame1", kNoIndex, Panel, "", "", "", {0, -45, 13005, 1095}, false},
    {"cmdComp", kNoIndex, FaceButton, "비교", "", "", {45, 135, 1185, 915}, true},
    {"cmdDB", 0, Button, "DB (A)", "", "DB (A) 찾아보기", {1260, 135, 825, 285}, true},
    {"txtPwd", 0, PasswordField, "", "MDB암호", "DB (A) MDB암호", {2115, 135, 1230, 270}, true},
    {"txtDBPath", 0, PathField, "", "", "DB (A) 경로", {3375, 135, 5280, 285}, true},
    {"cmbTblName", 0, TableBox, "", "테이블", "DB (A) 테이블", {8685, 135, 1365, 300}, true},
    {"cmdAccess", 0, Button, "<< 엑세스열기", "", "DB (A) 엑세스열기", {10080, 135, 1410, 285}, true},
    {"cmdCompact", 0, Button, "<< 압축및복구", "", "DB (A) 압축및복구", {11520, 135, 1410, 285}, true},
    {"cmdDB", 1, Button, "DB (B)", "", "DB (B) 찾아보기", {1260, 450, 825, 285}, true},
    {"txtPwd", 1, PasswordField, "", "MDB암호", "DB (B) MDB암호", {2115, 450, 1230, 270}, true},
    {"txtDBPath", 1, PathField, "", "", "DB (B) 경로", {3375, 450, 5280, 285}, true},
    {"cmbTblName", 1, TableBox, "", "테이블", "DB (B) 테이블", {8685, 450, 1365, 300}, true},
    {"cmdAccess", 1, Button, "<< 엑세스열기", "", "DB (B) 엑세스열기", {10080, 450, 1410, 285}, true},
    {"cmdCompact", 1, Button, "<< 압축및복구", "", "DB (B) 압축및복구", {11520, 450, 1410, 285}, true},
    {"cmbApp", kNoIndex, ProductList, "", "", "제품", {1260, 750, 2475, 300}, true},
    {"cmdMove", 0, Button, "Next F3", "", "", {3780, 765, 1185, 285}, true},
    {"cmdMove", 1, Button, "Prev +F3", "", "", {4995, 765, 1185, 285}, true},
    {"Check1", 0, OptionBox, "한쪽만 존재하는 필드 제외", "", "", {6330, 810, 2535, 225}, true},
    {"Check1", 1, OptionBox, "인덱스만 비교", "", "", {8985, 810, 1515, 225}, true},
    {"Check1", 2, OptionBox, "틀린 자료만 보기", "", "", {10740, 810, 1875, 225}, true},
    {"spList", kNoIndex, Grid, "", "", "비교결과", {0, 1080, 13005, 9510}, false},
    {"maketb", kNoIndex, MessageField, "최신버전파일을 생성중입니다.", "", "", {4020, 1920, 6420, 525}, false},
    {"ProgressBar1", 0, ProgressBar, "", "", "단계 진행", {0, 10200, 13035, 255}, false},
    {"ProgressBar1", 1, ProgressBar, "", "", "전체 진행", {0, 10440, 13035, 255}, false},
    // clang-format on
}};

}  // namespace

std::span<const ControlEntry> ControlTable() {
    return kControls;
}

std::size_t ControlPlaceOf(std::string_view name, int index) {
    const auto found = std::ranges::find_if(kControls, [&](const ControlEntry& control) {
        return control.name == name && control.index == index;
    });
    if (found == kControls.end()) {
        throw std::logic_error("no control " + std::string(name));
    }
    return static_cast<std::size_t>(found - kControls.begin());
}

std::string ObjectName(const ControlEntry& control) {
    std::string name(control.name);
    return control.index == kNoIndex ? name : name + "_" + std::to_string(control.index);
}

}  // namespace tavrel::app
