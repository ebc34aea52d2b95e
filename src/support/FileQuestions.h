#pragma once

#include <QString>
#include <QStringList>

class QWidget;

// The file dialogs, beside UserQuestions: in the program the system's file
// dialog; in tests a script gives the paths in order ("" for a Cancel), so
// that a test never blocks on a window.
class FileQuestions
{
public:
    // The name to save under, or "" when the user cancelled. filter is a
    // dialog filter such as "Settings (*.pset)".
    static QString SaveFileName(QWidget *parent, const QString &title, const QString &proposedPath,
                                const QString &filter);
    static QString OpenFileName(QWidget *parent, const QString &title, const QString &folder,
                                const QString &filter);

    static void Script(const QStringList &paths);
    static void EndScript();

private:
    static bool NextScripted(QString &path);
};
