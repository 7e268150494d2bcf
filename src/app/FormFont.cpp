#include "app/FormFont.h"

#include <array>

#include <QFontDatabase>
#include <QStringList>

namespace tavrel::app {

namespace {

/// What is there is taken, in this order; the system's own font comes last and finds Korean letters
/// elsewhere.
constexpr std::array kFamilies = {"Malgun Gothic",    "맑은 고딕",        "Apple SD Gothic Neo",
                                  "Noto Sans CJK KR", "Noto Sans KR",     "NanumGothic",
                                  "나눔고딕",         "NanumBarunGothic", "Source Han Sans KR",
                                  "UnDotum",          "Baekmuk Dotum",    "Gulim"};

QStringList Families() {
    const QStringList installed = QFontDatabase::families();
    QStringList families;
    for (const char* name : kFamilies) {
        const QString family = QString::fromUtf8(name);
        if (installed.contains(family)) {
            families << family;
        }
    }
    return families << QFontDatabase::systemFont(QFontDatabase::GeneralFont).families();
}

}  // namespace

QFont FormFont(int pixelSize) {
    static const QStringList families = Families();
    QFont font;
    font.setFamilies(families);
    font.setPixelSize(pixelSize);
    return font;
}

}  // namespace tavrel::app
