#include "fileviews/SiteFileDialogs.h"

#include <QFileDialog>

namespace {
const QString kAllFiles = QStringLiteral("All files (*.*)");

struct Scripted
{
    bool on = false;
    QStringList paths;
};

Scripted &scripted()
{
    static Scripted s;
    return s;
}
} // namespace

bool SiteFileDialogs::NextScripted(QString &path)
{
    if (!scripted().on)
        return false;
    path = scripted().paths.isEmpty() ? QString() : scripted().paths.takeFirst();
    return true;
}

QString SiteFileDialogs::SaveFileName(QWidget *parent, const QString &title, const QString &proposedPath)
{
    QString path;
    return NextScripted(path) ? path : QFileDialog::getSaveFileName(parent, title, proposedPath, kAllFiles);
}

QString SiteFileDialogs::OpenFileName(QWidget *parent, const QString &title, const QString &folder,
                                      const QString &filter)
{
    QString path;
    return NextScripted(path) ? path
                              : QFileDialog::getOpenFileName(parent, title, folder,
                                                             filter.isEmpty() ? kAllFiles : filter + QStringLiteral(";;") + kAllFiles);
}

QString SiteFileDialogs::FolderName(QWidget *parent, const QString &title, const QString &folder)
{
    QString path;
    return NextScripted(path) ? path : QFileDialog::getExistingDirectory(parent, title, folder);
}

void SiteFileDialogs::Script(const QStringList &paths)
{
    scripted() = {true, paths};
}

void SiteFileDialogs::EndScript()
{
    scripted() = {};
}
