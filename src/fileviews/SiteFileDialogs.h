#pragma once

#include <QString>
#include <QStringList>

class QWidget;

// The local file and folder dialogs of the site tree's commands: the
// system's dialogs in the program; in tests a script gives the paths in
// order ("" for a Cancel), so that no test blocks on a window.
class SiteFileDialogs
{
public:
    static QString SaveFileName(QWidget *parent, const QString &title, const QString &proposedPath);
    // filter: the dialog's file types ("Pictures (*.jpg *.png)"); all files
    // when empty.
    static QString OpenFileName(QWidget *parent, const QString &title, const QString &folder,
                                const QString &filter = QString());
    static QString FolderName(QWidget *parent, const QString &title, const QString &folder);

    static void Script(const QStringList &paths);
    static void EndScript();

private:
    static bool NextScripted(QString &path);
};
