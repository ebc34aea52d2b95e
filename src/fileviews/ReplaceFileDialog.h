#pragma once

#include "transfer/FileBatch.h"

#include <QDialog>

#include <optional>

class QCheckBox;

// The question when a file that comes down from the site is on the disk
// already, as the desktop's file manager asks it: replace it, skip it, or
// keep both with the new one under a free name; and whether the same goes
// for the other files of the download that are there too. Closing the
// window stops the download.
class ReplaceFileDialog : public QDialog
{
    Q_OBJECT

public:
    // The answers as numbers, as a script gives them; ForAll is added to the
    // choice when the box is ticked.
    enum Answer : long { Replace = 1, Skip = 2, Rename = 3, Cancel = 4, ForAll = 16 };

    // A question for one download: it remembers an answer given for all.
    static FileBatch::ExistingFileQuestion ForDownload(QWidget *parent);

private:
    ReplaceFileDialog(QWidget *parent, const QString &strText_p);
    static FileBatch::Existing Choice(long lAnswer_p);

    QCheckBox *m_chkForAll = nullptr;
    long m_lAnswer = Cancel;
};
