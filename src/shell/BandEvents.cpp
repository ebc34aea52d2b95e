#include "shell/BandEvents.h"

#include "cms/frmCMSAdminPanel.h"
#include "document/CDocument.h"
#include "document/StylePaneState.h"
#include "platform/PageEvent.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "shell/CGUI.h"
#include "shell/EditSession.h"
#include "shell/StylePane.h"
#include "support/MError.h"

#include <QTimer>

namespace {
// How long the pane waits for the next event before it reads the page.
constexpr int kFollowDelayMs = 30;

// The events after which the caret, the formatting or the engine's undo
// list may have changed.
bool MayChangeCaret(const QString &type)
{
    for (const char *name : {"keyup", "mouseup", "paste", "drop", "dragend"})
        if (type == QLatin1String(name))
            return true;
    return false;
}
} // namespace

BandEvents::BandEvents(CGUI &gui, EditSession &session, WebBrowser *browser, QObject *parent)
    : QObject(parent)
    , m_GUI(gui)
    , m_session(session)
{
    // Connected after the session: the document has taken the event first.
    connect(browser, &WebBrowser::pageEvent, this, &BandEvents::OnPageEvent);
    connect(&gui, &CGUI::AdminPanelRequested, this, [browser] { frmCMSAdminPanel::ShowAdminPanel(browser->window()); });
    connect(&gui, &CGUI::UndoRequested, this, [this] { OnCurrent([](CDocument &doc) { return doc.Undo(); }); });
    connect(&gui, &CGUI::RedoRequested, this, [this] { OnCurrent([](CDocument &doc) { return doc.Redo(); }); });
    connect(&gui, &CGUI::GlyphsChanged, this, [this](bool links, bool layers, bool scripts, bool others) {
        for (const auto &doc : m_session.Documents())
            doc->ShowDisableGlyphs(links, layers, scripts, others);
    });
    ConnectStylePane();
}

void BandEvents::ConnectStylePane()
{
    StylePane *pane = m_GUI.Style();
    connect(pane, &StylePane::FontChosen, this,
            [this](int, const QString &name) { OnCurrent([&](CDocument &doc) { return doc.m_cboFont_Click(name); }); });
    connect(pane, &StylePane::SizeStep, this,
            [this](int step) { OnCurrent([&](CDocument &doc) { return doc.m_updFontSize(step); }); });
    connect(pane, &StylePane::BoldClicked, this,
            [this] { OnCurrent([](CDocument &doc) { return doc.m_chkBoldSel_Click(); }); });
    connect(pane, &StylePane::ItalicClicked, this,
            [this] { OnCurrent([](CDocument &doc) { return doc.m_chkItalicSel_Click(); }); });
    connect(pane, &StylePane::UnderlineClicked, this,
            [this] { OnCurrent([](CDocument &doc) { return doc.m_chkUnderlineSel_Click(); }); });
    connect(pane, &StylePane::JustifyChosen, this,
            [this](const QString &how) { OnCurrent([&](CDocument &doc) { return doc.SetJustify(how); }); });
    connect(pane, &StylePane::BlockFormatChosen, this,
            [this](int item) { OnCurrent([&](CDocument &doc) { return doc.m_cboBlockFormat(item); }); });
    connect(pane, &StylePane::ClassChosen, this,
            [this](const QString &name) { OnCurrent([&](CDocument &doc) { return doc.m_cboClasses(name); }); });
}

template <class Action> void BandEvents::OnCurrent(Action action)
{
    CDocument *doc = m_session.CurrentDocument();
    if (!doc || m_session.Saving())
        return;
    if (action(*doc) == 0)
        MError::ShowError();
    Follow();
}

// The pane follows once the page's events have come in, and never from
// inside the wait of another call to the page. Many keys typed at once make
// one update.
void BandEvents::OnPageEvent(const PageEvent &event)
{
    if (MayChangeCaret(event.type))
        FollowSoon();
}

void BandEvents::FollowSoon()
{
    if (m_boolFollowPending)
        return;
    m_boolFollowPending = true;
    QTimer::singleShot(kFollowDelayMs, this, [this] {
        m_boolFollowPending = false;
        if (PageScriptCall::Waiting())
            return FollowSoon();
        Follow();
    });
}

// Whatever fails here is only the pane's look: it goes to the log.
void BandEvents::Follow()
{
    CDocument *doc = m_session.CurrentDocument();
    if (!doc || m_session.Saving()) {
        m_GUI.SetUndoRedo(false, false);
        return;
    }
    bool canUndo = false;
    bool canRedo = false;
    if (!doc->GetUndoRedo(canUndo, canRedo))
        MError::LogError();
    m_GUI.SetUndoRedo(canUndo, canRedo);
    if (m_GUI.OpenPane() != CGUI::FontPane)
        return;
    StylePaneState state;
    if (!doc->SetStylePaneProperties(state))
        MError::LogError();
    m_GUI.Style()->Show(state);
}
