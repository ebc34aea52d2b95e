#include "fileviews/LocalFolderListing.h"

#include "support/MError.h"
#include "support/MResources.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace {
constexpr long txtNoPermission = 19808, txtGone = 19809, txtUnreadable = 19810, txtBadName = 19811,
               txtCircle = 19812, txtLinkAbove = 19813, txtLinkToNothing = 19814;
// The numbers of the classic run-time errors for the same faults.
constexpr long errPermission = 70, errPathNotFound = 76, errPathAccess = 75;

struct DirCloser
{
    void operator()(DIR *dir) const { closedir(dir); }
};
using Dir = std::unique_ptr<DIR, DirCloser>;

bool Shown(const char *name, bool showHidden)
{
    if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0)
        return false;
    return showHidden || name[0] != '.';
}

// The name as text, or "" with shown set to a readable stand-in when its
// bytes are not UTF-8.
bool Decode(const char *raw, QString &shown)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    shown = utf8.decode(QByteArrayView(raw));
    return !utf8.hasError();
}

void Fail(int error, const QString &folder)
{
    const QString position = QStringLiteral("CLocalTreeView.AddSubDirs");
    if (error == EACCES || error == EPERM)
        MError::SetErrorIfClear(errPermission, MResources::LoadResourceString(txtNoPermission).arg(folder), position);
    else if (error == ENOENT || error == ENOTDIR)
        MError::SetErrorIfClear(errPathNotFound, MResources::LoadResourceString(txtGone).arg(folder), position);
    else
        MError::SetErrorIfClear(errPathAccess,
                                MResources::LoadResourceString(txtUnreadable).arg(folder, QString::fromLocal8Bit(std::strerror(error))),
                                position);
}

// A link to a folder that holds it (or to itself) would show the same
// folders again at every level.
bool LeadsAbove(const QString &path, const QString &folder)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    const QString here = QFileInfo(folder).canonicalFilePath();
    return !target.isEmpty() && (here == target || here.startsWith(target == QLatin1String("/") ? target : target + QLatin1Char('/')));
}

// What the entry is, found through the link when it is one.
void Describe(int dirFd, const char *raw, const QString &folder, bool showHidden, LocalFolderListing::Entry &entry)
{
    struct stat link {};
    const bool isLink = fstatat(dirFd, raw, &link, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(link.st_mode);
    struct stat st {};
    if (fstatat(dirFd, raw, &st, 0) != 0) {
        const int error = errno;
        if (error == ELOOP)
            entry.strProblem = MResources::LoadResourceString(txtCircle);
        else if (isLink)
            entry.strProblem = MResources::LoadResourceString(txtLinkToNothing).arg(QFileInfo(entry.strPath).symLinkTarget());
        return;
    }
    entry.boolFolder = S_ISDIR(st.st_mode);
    entry.lSize = entry.boolFolder ? 0 : qint64(st.st_size);
    if (!entry.boolFolder)
        return;
    if (isLink && LeadsAbove(entry.strPath, folder)) {
        entry.strProblem = MResources::LoadResourceString(txtLinkAbove).arg(QFileInfo(entry.strPath).canonicalFilePath());
        return;
    }
    entry.boolHasContent = LocalFolderListing::HasContent(entry.strPath, showHidden);
}

bool Before(const LocalFolderListing::Entry &a, const LocalFolderListing::Entry &b)
{
    if (a.boolFolder != b.boolFolder)
        return a.boolFolder;
    const int folded = a.strName.compare(b.strName, Qt::CaseInsensitive);
    return folded != 0 ? folded < 0 : a.strName < b.strName;
}
} // namespace

long LocalFolderListing::List(const QString &strFolder_p, bool boolShowHidden_p, QList<Entry> &entries_p)
{
    entries_p.clear();
    const Dir dir(opendir(QFile::encodeName(strFolder_p).constData()));
    if (!dir) {
        Fail(errno, strFolder_p);
        return 0;
    }
    const QString base = strFolder_p.endsWith(QLatin1Char('/')) ? strFolder_p : strFolder_p + QLatin1Char('/');
    errno = 0;
    while (const dirent *item = readdir(dir.get())) {
        if (!Shown(item->d_name, boolShowHidden_p))
            continue;
        Entry entry;
        const bool text = Decode(item->d_name, entry.strName);
        entry.strPath = text ? base + entry.strName : QString();
        Describe(dirfd(dir.get()), item->d_name, strFolder_p, boolShowHidden_p, entry);
        if (!text) {
            entry.strProblem = MResources::LoadResourceString(txtBadName);
            entry.boolHasContent = false;
        }
        entries_p.append(entry);
        errno = 0;
    }
    // A disk that goes away in the middle of the reading ends it with an
    // error, not with the end of the folder.
    if (errno != 0) {
        Fail(errno, strFolder_p);
        entries_p.clear();
        return 0;
    }
    std::sort(entries_p.begin(), entries_p.end(), Before);
    return 1;
}

bool LocalFolderListing::HasContent(const QString &strFolder_p, bool boolShowHidden_p)
{
    const Dir dir(opendir(QFile::encodeName(strFolder_p).constData()));
    if (!dir)
        return errno != ENOENT && errno != ENOTDIR;
    while (const dirent *item = readdir(dir.get()))
        if (Shown(item->d_name, boolShowHidden_p))
            return true;
    return false;
}
