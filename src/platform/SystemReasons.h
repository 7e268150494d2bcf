// What the operating system's common failures are called, in the users' language: one list for all systems.
#pragma once

#include <string_view>

namespace tavrel::platform::reasons {

inline constexpr std::string_view kNoFile = "파일이 없음";
inline constexpr std::string_view kNoFolder = "폴더가 없거나 폴더가 아님";
inline constexpr std::string_view kExists = "같은 이름이 이미 있음";
inline constexpr std::string_view kNoSpace = "디스크에 남은 공간이 없음";
inline constexpr std::string_view kTooLarge = "파일이 너무 큼";
inline constexpr std::string_view kNoPermission = "권한이 없음";
inline constexpr std::string_view kInUse = "다른 프로그램이 사용 중";
inline constexpr std::string_view kIsFolder = "파일이 아니라 폴더임";
inline constexpr std::string_view kReadOnlyDisk = "디스크가 쓰기 금지되어 있음";
inline constexpr std::string_view kNoDevice = "없는 장치";
inline constexpr std::string_view kLinksTooDeep = "링크가 끝없이 이어짐";
inline constexpr std::string_view kBadName = "쓸 수 없는 이름";
inline constexpr std::string_view kNameTooLong = "이름이 너무 김";
inline constexpr std::string_view kFolderNotEmpty = "폴더가 비어 있지 않음";
inline constexpr std::string_view kOtherDisk = "다른 디스크에 있음";
inline constexpr std::string_view kTooManyFiles = "열려 있는 파일이 너무 많음";
inline constexpr std::string_view kInputOutput = "읽거나 쓰는 중 장치 오류";

}  // namespace tavrel::platform::reasons
