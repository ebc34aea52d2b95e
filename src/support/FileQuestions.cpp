#include "support/FileQuestions.h"

#include <QFileDialog>

namespace {
struct State
{
    bool scripted = false;
    QStringList paths;
};

State &state()
{
    static State s;
    return s;
}
} // namespace

bool FileQuestions::NextScripted(QString &path)
{
    State &s = state();
    if (!s.scripted)
        return false;
    path = s.paths.isEmpty() ? QString() : s.paths.takeFirst();
    return true;
}

QString FileQuestions::SaveFileName(QWidget *parent, const QString &title, const QString &proposedPath,
                                    const QString &filter)
{
    QString path;
    if (NextScripted(path))
        return path;
    return QFileDialog::getSaveFileName(parent, title, proposedPath, filter);
}

QString FileQuestions::OpenFileName(QWidget *parent, const QString &title, const QString &folder,
                                    const QString &filter)
{
    QString path;
    if (NextScripted(path))
        return path;
    return QFileDialog::getOpenFileName(parent, title, folder, filter);
}

void FileQuestions::Script(const QStringList &paths)
{
    state() = {true, paths};
}

void FileQuestions::EndScript()
{
    state() = {};
}
