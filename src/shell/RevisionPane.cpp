#include "shell/RevisionPane.h"

#include "config/MGlobalProjectObjects.h"
#include "document/CSendPath.h"
#include "platform/HtmlElement.h"
#include "shell/RevisionPaneHost.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const long IdSelectFrame = 14011;
const long IdResetQuestion = 14012;
const long IdResetPreview = 14013;
const long IdTip = 14014;
const long IdResetDate = 14015;
const long IdReset = 14409;
const long ErrNoDocument = 9; // subscript out of range
const long ErrInternal = 51;

// The hourglass for the length of a call that reaches the server.
struct Hourglass
{
    Hourglass() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Hourglass() { QApplication::restoreOverrideCursor(); }
};

// The mark of the hovered frame. The engine has no engrave filter; a grey
// frame stands out as well and leaves the page's layout alone.
const QString HighlightFilter = QStringLiteral("grayscale(1) contrast(0.6)");
} // namespace

RevisionPane::RevisionPane(RevisionPaneHost *host, QWidget *parent) : QWidget(parent), m_host(host)
{
    BuildControls();
}

RevisionPane::~RevisionPane() = default;

void RevisionPane::BuildControls()
{
    auto *layout = new QVBoxLayout(this);
    lblFrame = new QLabel(MResources::LoadResourceString(IdSelectFrame), this);
    lblFrame->setObjectName(QStringLiteral("lblFrame"));
    cboFrameName = new QComboBox(this);
    cboFrameName->setObjectName(QStringLiteral("cboFrameName"));
    cboFrameName->setPlaceholderText(MResources::LoadResourceString(IdSelectFrame));
    lstRollback = new QListWidget(this);
    lstRollback->setObjectName(QStringLiteral("lstRollback"));
    cmdRollback = new QPushButton(MResources::LoadResourceString(IdReset), this);
    cmdRollback->setObjectName(QStringLiteral("cmdRollback"));
    cmdRollback->setEnabled(false);
    for (QWidget *control : {static_cast<QWidget *>(lblFrame), static_cast<QWidget *>(cboFrameName),
                             static_cast<QWidget *>(lstRollback), static_cast<QWidget *>(cmdRollback)})
        layout->addWidget(control);

    connect(cboFrameName, &QComboBox::activated, this, &RevisionPane::ChooseFrame);
    connect(cboFrameName, &QComboBox::highlighted, this, &RevisionPane::HighlightFrame);
    connect(lstRollback, &QListWidget::itemClicked, this, &RevisionPane::lstRollback_Click);
    connect(lstRollback, &QListWidget::itemDoubleClicked, this, &RevisionPane::lstRollback_DblClick);
    connect(cmdRollback, &QPushButton::clicked, this, &RevisionPane::cmdRollback_Click);
    // The light goes out when the pointer leaves the open list or the list
    // closes, whichever comes first.
    cboFrameName->view()->viewport()->installEventFilter(this);
    cboFrameName->view()->window()->installEventFilter(this);
}

long RevisionPane::Open()
{
    Forget();
    ClearHighlight();
    const QList<SessionDocument> documents = m_host->SessionDocuments();
    FrameList::GetFrameNames(documents, m_aFrames, m_astrFrameNames);
    const bool hasFrames = !m_astrFrameNames.isEmpty();
    lblFrame->setVisible(hasFrames);
    cboFrameName->setVisible(hasFrames);
    cboFrameName->clear();
    // Without an edit session there is no page to recover: the list stays
    // empty.
    if (!hasFrames)
        return documents.isEmpty() ? 1 : ShowRollbacks(0);
    cboFrameName->addItems(m_astrFrameNames);
    cboFrameName->setCurrentIndex(-1); // shows "Select a frame..."
    return 1;
}

long RevisionPane::ShowRollbacks(long nDoc_p)
{
    const QString position = QStringLiteral("RevisionPane.ShowRollbacks");
    lstRollback->clear();
    const QList<SessionDocument> documents = m_host->SessionDocuments();
    // With an IFRAME page the combo starts with the page itself, so its
    // entries stand one place after the session's documents.
    long index = nDoc_p;
    if (!documents.isEmpty() && documents.first().isIFrame)
        index = qMax(0L, nDoc_p - 1);
    if (index < 0 || index >= documents.size()) {
        MError::SetError(ErrNoDocument, QStringLiteral("Subscript out of range"), position);
        return 0;
    }
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long site = MGlobalProjectObjects::lCurrentURL;
    if (site < 0 || site >= static_cast<long>(sites.size())) {
        MError::SetError(10002, QStringLiteral("No site is in use."), position);
        return 0;
    }
    const SessionDocument &document = documents[index];
    QString path;
    CSendPath::GetPreparedSendPath(sites[static_cast<size_t>(site)], document.url, document.document.pathname(), path);
    return List(path, document.url);
}

long RevisionPane::List(const QString &path, const QString &url)
{
    lstRollback->clear();
    cmdRollback->setEnabled(false);
    m_strListedPath = path;
    m_strListedURL = url;
    m_Rollback = std::make_unique<CRollback>();
    if (m_Rollback->GetFirstBackup(path, url) != 1)
        return 0;
    QString strDate;
    long nRev = 0;
    while (m_Rollback->GetNextBackup(strDate, nRev) == 1) {
        auto *item = new QListWidgetItem(strDate, lstRollback);
        item->setData(Qt::UserRole, qlonglong(nRev));
    }
    return 1;
}

long RevisionPane::Refresh()
{
    if (m_strListedPath.isEmpty())
        return 1;
    Hourglass hourglass;
    return List(m_strListedPath, m_strListedURL);
}

void RevisionPane::Forget()
{
    lstRollback->clear();
    cmdRollback->setEnabled(false);
    m_Rollback.reset();
    m_strListedPath.clear();
    m_strListedURL.clear();
}

void RevisionPane::Conclude(long status, const QString &position)
{
    if (status == 1) {
        if (MError::ErrorNumber() != 0)
            MError::LogError();
        return;
    }
    MError::SetErrorIfClear(ErrInternal, QStringLiteral("Internal error"), position);
    MError::ShowError();
}

void RevisionPane::ChooseFrame(int nListIndex_p)
{
    long listed = 0;
    {
        Hourglass hourglass;
        cmdRollback->setEnabled(false);
        ClearHighlight();
        listed = ShowRollbacks(nListIndex_p + 1);
    }
    Conclude(listed, QStringLiteral("RevisionPane.ChooseFrame"));
}

void RevisionPane::lstRollback_Click()
{
    cmdRollback->setEnabled(true);
}

void RevisionPane::lstRollback_DblClick(QListWidgetItem *item)
{
    if (!item || !m_Rollback)
        return;
    long viewed = 0;
    {
        Hourglass hourglass;
        cmdRollback->setEnabled(true);
        viewed = m_Rollback->ViewBackup(item->data(Qt::UserRole).toLongLong());
    }
    Conclude(viewed, QStringLiteral("RevisionPane.lstRollback_DblClick"));
}

QString RevisionPane::ResetQuestion() const
{
    return MResources::LoadResourceString(IdResetQuestion) + QStringLiteral("\n\n")
           + MResources::LoadResourceString(IdTip) + QLatin1Char('\n')
           + MResources::LoadResourceString(IdResetPreview) + QLatin1Char('\n')
           + MResources::LoadResourceString(IdResetDate);
}

void RevisionPane::cmdRollback_Click()
{
    QListWidgetItem *item = lstRollback->currentItem();
    if (!item || !m_Rollback)
        return;
    const long style = UserQuestions::vbYesNo | UserQuestions::vbInformation | UserQuestions::vbDefaultButton2;
    if (UserQuestions::MsgBox(ResetQuestion(), style) != UserQuestions::vbYes)
        return;
    long done = 0;
    {
        Hourglass hourglass;
        done = m_Rollback->Rollback(item->data(Qt::UserRole).toLongLong());
    }
    Conclude(done, QStringLiteral("RevisionPane.cmdRollback_Click"));
    if (done != 1)
        return;
    cmdRollback->setEnabled(false);
    emit RevisionReset();
}

void RevisionPane::HighlightFrame(int nListIndex_p)
{
    if (nListIndex_p == m_lHighlightedFrame)
        return;
    ClearHighlight();
    if (nListIndex_p < 0 || nListIndex_p >= m_aFrames.size())
        return;
    HtmlElement body = m_aFrames[nListIndex_p].body();
    if (body.isNull())
        return;
    body.setStyleValue(QStringLiteral("filter"), HighlightFilter);
    m_lHighlightedFrame = nListIndex_p;
}

void RevisionPane::ClearHighlight()
{
    if (m_lHighlightedFrame >= 0 && m_lHighlightedFrame < m_aFrames.size()) {
        HtmlElement body = m_aFrames[m_lHighlightedFrame].body();
        if (!body.isNull())
            body.removeStyleValue(QStringLiteral("filter"));
    }
    m_lHighlightedFrame = -1;
}

bool RevisionPane::eventFilter(QObject *watched, QEvent *event)
{
    const bool left = watched == cboFrameName->view()->viewport() && event->type() == QEvent::Leave;
    const bool closed = watched == cboFrameName->view()->window() && event->type() == QEvent::Hide;
    if (left || closed)
        ClearHighlight();
    return QWidget::eventFilter(watched, event);
}
