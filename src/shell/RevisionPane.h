#pragma once

#include "history/CRollback.h"
#include "platform/HtmlDocument.h"

#include <QWidget>

#include <memory>

class QComboBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class RevisionPaneHost;

// The pane that recovers an earlier version of the page: the frame combo
// for pages with frames, the list of saved revisions (newest first, the
// date as text, the revision number as item data) and the Reset button.
// A double click shows a revision; Reset puts the chosen one back on the
// server and then asks the window, through RevisionReset, to end the edit
// session without questions and to load the page fresh from the server.
class RevisionPane : public QWidget
{
    Q_OBJECT

public:
    explicit RevisionPane(RevisionPaneHost *host, QWidget *parent = nullptr);
    ~RevisionPane() override;

    // The work of the pane button when the pane opens: the frame combo
    // when the page has frames, else the revisions of the page. 1 or 0.
    long Open();
    // Lists the revisions of session document nDoc_p. 1, or 0 with the
    // pending error set.
    long ShowRollbacks(long nDoc_p);
    // Lists again the page listed last (a save or a reset has changed its
    // history); nothing when none was. 1, or 0 with the pending error set.
    long Refresh();
    // The browser leaves the page listed: its list goes.
    void Forget();
    // The end of a step of the pane, which is a top-level event: a failure
    // (status not 1) is shown in the error dialog under the position the
    // step gives, unless an inner step left its own; whatever is pending
    // is cleared either way, so that no later failure is told in its words.
    static void Conclude(long status, const QString &position);

    // The frame lit while the combo's list is open; -1 when none.
    long HighlightedFrame() const { return m_lHighlightedFrame; }
    QStringList FrameNames() const { return m_astrFrameNames; }

    QLabel *lblFrame = nullptr;
    QComboBox *cboFrameName = nullptr;
    QListWidget *lstRollback = nullptr;
    QPushButton *cmdRollback = nullptr;

signals:
    // A revision was put back: the window ends the edit session as after a
    // save (nothing is asked), enables Edit again and reloads the page past
    // the cache, so that the restored version shows.
    void RevisionReset();

public slots:
    void ChooseFrame(int nListIndex_p);
    void lstRollback_Click();
    void lstRollback_DblClick(QListWidgetItem *item);
    void cmdRollback_Click();
    void HighlightFrame(int nListIndex_p);
    void ClearHighlight();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void BuildControls();
    QString ResetQuestion() const;
    long List(const QString &path, const QString &url);

    RevisionPaneHost *m_host;
    std::unique_ptr<CRollback> m_Rollback;
    // The page listed: its path on the server and its address.
    QString m_strListedPath;
    QString m_strListedURL;
    QList<HtmlDocument> m_aFrames;
    QStringList m_astrFrameNames;
    long m_lHighlightedFrame = -1;
};
