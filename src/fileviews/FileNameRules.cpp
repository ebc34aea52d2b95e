#include "fileviews/FileNameRules.h"

namespace {

bool Allowed(QChar c, FileNameRules::Dialog dialog)
{
    const char16_t u = c.unicode();
    const bool lower = u >= 'a' && u <= 'z';
    const bool digit = u >= '0' && u <= '9';
    if (dialog == FileNameRules::Dialog::CopyRename)
        return lower || digit || u == '_' || u == '-' || u == '.';
    const bool upper = u >= 'A' && u <= 'Z';
    static const QString swedish = QStringLiteral("åäöÅÄÖ");
    return lower || upper || digit || swedish.contains(c) || u == '-' || u == '.' || u == '_' || u == ' ';
}

} // namespace

bool FileNameRules::CheckFileName(const QString &strName_p, Dialog dialog_p)
{
    if (strName_p.isEmpty())
        return false;
    for (const QChar c : strName_p)
        if (!Allowed(c, dialog_p))
            return false;
    return true;
}

QString FileNameRules::MendPageName(const QString &strName_p)
{
    const qsizetype dot = strName_p.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return strName_p + QStringLiteral(".htm");
    const QString extension = strName_p.mid(dot + 1);
    for (const char *page : {"htm", "html", "asp", "php"})
        if (extension == QLatin1String(page))
            return strName_p;
    return strName_p.left(dot + 1) + QStringLiteral("htm");
}

void FileNameRules::extractFile_Folder(const QString &strPath_p, QString &strFolder_p, QString &strFile_p,
                                       QString &strExtension_p)
{
    const qsizetype slash = strPath_p.lastIndexOf(QLatin1Char('/'));
    strFolder_p = slash < 0 ? QString() : strPath_p.left(slash);
    strFile_p = strPath_p.mid(slash + 1);
    strExtension_p = Extension(strFile_p);
}

QString FileNameRules::Extension(const QString &strName_p)
{
    const qsizetype dot = strName_p.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : strName_p.mid(dot + 1);
}

// The reserved characters are those of the disks a user may download to
// (a memory stick, a shared folder), not only those of the one at hand:
// a name that works here and breaks on the next copy helps nobody.
bool FileNameRules::LocalNameAcceptable(const QString &strName_p, QString &reason_p)
{
    if (strName_p.isEmpty() || strName_p == QLatin1String(".") || strName_p == QLatin1String("..")) {
        reason_p = QStringLiteral("not a file name: \"%1\"").arg(strName_p);
        return false;
    }
    static const QString reserved = QStringLiteral("/\\<>:\"|?*");
    for (const QChar c : strName_p) {
        if (c.unicode() < 32 || reserved.contains(c)) {
            reason_p = QStringLiteral("a character a local disk can't hold: U+%1")
                           .arg(c.unicode(), 4, 16, QLatin1Char('0'));
            return false;
        }
    }
    return true;
}
