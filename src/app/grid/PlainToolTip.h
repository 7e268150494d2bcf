// Tool tips whose text is shown as it is.
#pragma once

#include <QHelpEvent>
#include <QString>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

namespace tavrel::app {

/// Shows the text in lines that are broken where they get long; "<b>" in it is no command.  An empty one
/// hides the tool tip.
inline void ShowPlainToolTip(const QHelpEvent& help, const QString& text, QWidget* widget) {
    QToolTip::showText(help.globalPos(),
                       text.isEmpty() ? QString() : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal),
                       widget);
}

}  // namespace tavrel::app
