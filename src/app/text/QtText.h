// Between the program's UTF-8 texts and Qt's.
#pragma once

#include <string>
#include <string_view>

#include <QString>

namespace tavrel::app {

inline QString ToQt(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

inline std::string FromQt(const QString& text) {
    return text.toStdString();
}

}  // namespace tavrel::app
