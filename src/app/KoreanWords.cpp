#include "app/KoreanWords.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <QCoreApplication>
#include <QLibraryInfo>

namespace tavrel::app {

namespace {

struct Word {
    std::string_view context;
    std::string_view source;
    const char* korean;
};
constexpr std::array<Word, 27> kWords = {{
    {"QPlatformTheme", "OK", "확인"},
    {"QPlatformTheme", "Cancel", "취소"},
    {"QPlatformTheme", "Open", "열기"},
    {"QPlatformTheme", "Save", "저장"},
    {"QPlatformTheme", "Close", "닫기"},
    {"QPlatformTheme", "&Yes", "예(&Y)"},
    {"QPlatformTheme", "&No", "아니요(&N)"},
    {"QFileDialog", "&Open", "열기(&O)"},
    {"QFileDialog", "&Save", "저장(&S)"},
    {"QFileDialog", "Open", "열기"},
    {"QFileDialog", "Save As", "다른 이름으로 저장"},
    {"QFileDialog", "Look in:", "찾는 위치:"},
    {"QFileDialog", "Directory:", "폴더:"},
    {"QFileDialog", "File &name:", "파일 이름(&N):"},
    {"QFileDialog", "Files of type:", "파일 형식:"},
    {"QFileDialog", "%1 already exists.\nDo you want to replace it?",
     "%1 파일이 이미 있습니다.\n바꾸시겠습니까?"},
    {"QFileDialog", "%1\nFile not found.\nPlease verify the correct file name was given.",
     "%1\n파일을 찾을 수 없습니다.\n파일 이름을 확인하십시오."},
    {"QFileSystemModel", "Name", "이름"},
    {"QFileSystemModel", "Size", "크기"},
    {"QFileSystemModel", "Date Modified", "수정한 날짜"},
    {"QLineEdit", "&Undo", "실행 취소(&U)"},
    {"QLineEdit", "&Redo", "다시 실행(&R)"},
    {"QLineEdit", "Cu&t", "잘라내기(&T)"},
    {"QLineEdit", "&Copy", "복사(&C)"},
    {"QLineEdit", "&Paste", "붙여넣기(&P)"},
    {"QLineEdit", "Delete", "삭제"},
    {"QLineEdit", "Select All", "모두 선택"},
}};

}  // namespace

QString CommonWords::translate(const char* context, const char* sourceText, const char* /*disambiguation*/,
                               int /*n*/) const {
    const auto found = std::ranges::find_if(
        kWords, [&](const Word& word) { return word.context == context && word.source == sourceText; });
    return found == kWords.end() ? QString() : QString::fromUtf8(found->korean);
}

void InstallKoreanWords() {
    auto* application = QCoreApplication::instance();
    QCoreApplication::installTranslator(new CommonWords(application));
    // Beside the program it lies on Windows.
    const QString beside = QCoreApplication::applicationDirPath() + QStringLiteral("/translations");
    for (const QString& folder : {QLibraryInfo::path(QLibraryInfo::TranslationsPath), beside}) {
        auto* whole = new QTranslator(application);
        if (whole->load(QStringLiteral("qtbase_ko"), folder)) {
            QCoreApplication::installTranslator(whole);  // asked before those that were there
            return;
        }
        delete whole;
    }
}

}  // namespace tavrel::app
