#include "app/FileChooser.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

/// Where the dialog starts: a whole path wins over the folder, a bare name is looked for in it.
QString Start(const FileQuestion& question) {
    const QString name = ToQt(question.name);
    const QString folder = ToQt(question.folder);
    return QFileInfo(name).isAbsolute() ? name : QDir(folder).filePath(name);
}

std::string Chosen(const QString& path) {
    return FromQt(QDir::toNativeSeparators(path));
}

}  // namespace

std::string QtFileChooser::AskOpen(const FileQuestion& question) {
    return Chosen(QFileDialog::getOpenFileName(&window_, {}, Start(question), ToQt(question.filter), nullptr,
                                               QFileDialog::HideNameFilterDetails));
}

std::string QtFileChooser::AskSave(const FileQuestion& question) {
    return Chosen(QFileDialog::getSaveFileName(&window_, {}, Start(question), ToQt(question.filter)));
}

}  // namespace tavrel::app
