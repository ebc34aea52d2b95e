#pragma once

#include <QString>
#include <QStringList>

class QMimeData;

// What the main window does with a file dropped on it: a .pset file becomes
// a new, activated site record, saved at once, and the user is asked whether
// to go there.
class CSettingsFileDrop
{
public:
    enum Result : long { Failed = 0, Added = 1, Ignored = 2 };

    // hasFileList_p is false when the drop carried no files (text, or an
    // attachment dragged straight out of a mail program); files_p are local
    // paths. Returns Added, with strNavigate_p set to the site's address
    // when the user wants to go there; Ignored when there was nothing to
    // take; Failed with the pending error set when the file could not be
    // read or the store not written. A file that can't be read changes
    // nothing, in memory or in the store.
    static long Apply(bool hasFileList_p, const QStringList &files_p, QString &strNavigate_p);

    // The same for what a drag-and-drop carries. A drop of anything but
    // files is taken too, so that the user learns why nothing happened.
    static bool Acceptable(const QMimeData *data_p);
    // True when the first file of the drop is a settings file.
    static bool CarriesSettingsFile(const QMimeData *data_p);
    static long ApplyMime(const QMimeData *data_p, QString &strNavigate_p);

    // True for a name the window takes: a .pset file, in any letter case.
    static bool IsSettingsFile(const QString &strPath_p);

    // Writes the global options a settings file carries (section Advanced).
    static long SaveAdvanced();
};
