#include "shell/CGUI.h"

#include "cms/CMSTables.h"
#include "platform/CReg.h"
#include "shell/StylePane.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/StringIds.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QMainWindow>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

namespace {
struct Caption
{
    const char *control;
    long caption;
    long toolTip;
};

// The captions and tooltips of the band and the address row, by control.
const Caption kCaptions[] = {
    {"cmdEdit", 14421, StringIds::EditTip},
    {"cmdUndo", 19900, StringIds::UndoTip},
    {"cmdRedo", 19901, StringIds::RedoTip},
    {"cmdShowAdminSettings", 19902, StringIds::AdminTip},
    {"cmdPane1", 14422, StringIds::VisibilityTip},
    {"cmdPane2", 19903, StringIds::FontTip},
    {"cmdPane3", 14400, StringIds::RecoverTip},
    {"cmdPane4", 14401, StringIds::SiteViewTip},
    {"cmdHelp", 19905, 14402},
    {"cmdComment", 19906, 14404},
    {"cmdSettings", 19904, 14403},
    {"cmdSave", 19907, StringIds::SaveTip},
    {"cmdBack", 19908, StringIds::BackTip},
    {"cmdForward", 19909, StringIds::ForwardTip},
    {"cmdGo", StringIds::GoButton, StringIds::GoTip},
};

constexpr long txtShowTags = 14405, txtLinks = 14423, txtLayers = 14424, txtScript = 14406, txtOthers = 14407,
               txtHelpOnThis = 14408, txtHelpTip = 14402;
const char *const kGlyphSwitches[] = {"chkShowBookMarks", "chkShowLayer", "chkShowScripts", "chkShowSpan"};
const long kGlyphCaptions[] = {txtLinks, txtLayers, txtScript, txtOthers};

// The bits of a CMS user's band limits, by pane.
const std::int32_t kBandBits[] = {0, 2, 1, 4, 8};

// Where the layout is kept between runs.
const QString kSection = QStringLiteral("Window");

// The help pages of the band, by the help context of their place.
const QString kHelpBand = QStringLiteral("010000.htm");
// The Visibility pane's help tells about the layers of its list.
const QString kHelpVisibility = QStringLiteral("content/help_visibility.htm");
const QString kHelpStyle = QStringLiteral("011100.htm");

int StoredNumber(const QString &key, int fallback)
{
    bool ok = false;
    const int value = CReg::GetSetting(kSection, key).toInt(&ok);
    return ok ? value : fallback;
}
} // namespace

CGUI::CGUI(QObject *parent) : QObject(parent) {}

QPushButton *CGUI::Button(const char *name) const
{
    return m_frmVindrell->findChild<QPushButton *>(QString::fromLatin1(name));
}

QPushButton *CGUI::PaneButton(int pane) const
{
    return m_frmVindrell->findChild<QPushButton *>(QStringLiteral("cmdPane%1").arg(pane));
}

QWidget *CGUI::PaneFrame(int pane) const
{
    return pane >= VisibilityPane && pane <= SitePane ? m_frames[pane].data() : nullptr;
}

long CGUI::Init(QMainWindow *frmParent_p)
{
    m_frmVindrell = frmParent_p;
    m_picSplit = frmParent_p->findChild<QSplitter *>(QStringLiteral("picSplit"));
    auto *band = frmParent_p->findChild<QWidget *>(QStringLiteral("picBand"));
    m_filler = frmParent_p->findChild<QWidget *>(QStringLiteral("picFiller"));
    if (!m_picSplit || !band || !m_filler || !Button("cmdEdit") || !PaneButton(SitePane)) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("CGUI.Init"));
        return 0;
    }
    m_column = qobject_cast<QVBoxLayout *>(band->layout());
    // The band keeps its width as the window changes size; the browser
    // takes the rest. Both have a least width, which is the splitter's range.
    band->setMinimumWidth(kMinBandWidth);
    m_picSplit->widget(1)->setMinimumWidth(kMinBrowserWidth);
    m_picSplit->setChildrenCollapsible(false);
    m_picSplit->setStretchFactor(0, 0);
    m_picSplit->setStretchFactor(1, 1);
    PlaceFrame(VisibilityPane, BuildVisibilityPane());
    m_stylePane = new StylePane(band);
    PlaceFrame(FontPane, m_stylePane);
    connect(m_stylePane, &StylePane::HelpClicked, this, [this] { emit HelpRequested(kHelpStyle); });
    for (int pane = VisibilityPane; pane <= SitePane; ++pane)
        connect(PaneButton(pane), &QPushButton::clicked, this, [this, pane] { PaneClicked(pane); });
    connect(Button("cmdEdit"), &QPushButton::toggled, this, &CGUI::EditLook);
    connect(Button("cmdShowAdminSettings"), &QPushButton::clicked, this, &CGUI::AdminPanelRequested);
    connect(Button("cmdUndo"), &QPushButton::clicked, this, &CGUI::UndoRequested);
    connect(Button("cmdRedo"), &QPushButton::clicked, this, &CGUI::RedoRequested);
    connect(Button("cmdHelp"), &QPushButton::clicked, this, [this] { emit HelpRequested(kHelpBand); });
    Button("cmdShowAdminSettings")->setEnabled(false);
    Button("cmdComment")->setVisible(false);
    Button("cmdHelp")->setEnabled(true);
    LoadResCaps();
    KeyboardAccess();
    EditLook(false);
    RestoreLayout();
    return 1;
}

void CGUI::LoadResCaps()
{
    for (const Caption &entry : kCaptions) {
        QPushButton *button = Button(entry.control);
        button->setText(MResources::LoadResourceString(entry.caption));
        button->setToolTip(MResources::LoadResourceString(entry.toolTip));
    }
    m_frmVindrell->findChild<QGroupBox *>(QStringLiteral("fmeGlyps"))->setTitle(MResources::LoadResourceString(txtShowTags));
    for (int n = 0; n < 4; ++n)
        m_glyphSwitches[n]->setText(MResources::LoadResourceString(kGlyphCaptions[n]));
    Button("cmdHelpfmeVisibility")->setText(MResources::LoadResourceString(txtHelpOnThis));
    Button("cmdHelpfmeVisibility")->setToolTip(MResources::LoadResourceString(txtHelpTip));
    m_stylePane->LoadResCaps();
}

void CGUI::cmdEditEnable(bool boolEnabled_p)
{
    Button("cmdEdit")->setEnabled(boolEnabled_p);
}

// The tag switches, the holder of the layer list, and the help button.
QWidget *CGUI::BuildVisibilityPane()
{
    auto *frame = new QWidget(m_frmVindrell);
    frame->setObjectName(QStringLiteral("fmeVisibility"));
    auto *glyphs = new QGroupBox(frame);
    glyphs->setObjectName(QStringLiteral("fmeGlyps"));
    auto *switches = new QVBoxLayout(glyphs);
    for (const char *name : kGlyphSwitches) {
        auto *box = new QCheckBox(glyphs);
        box->setObjectName(QString::fromLatin1(name));
        switches->addWidget(box);
        m_glyphSwitches.append(box);
        connect(box, &QCheckBox::clicked, this,
                [this] { emit GlyphsChanged(GlyphSwitch(0), GlyphSwitch(1), GlyphSwitch(2), GlyphSwitch(3)); });
    }
    m_layerHolder = new QWidget(frame);
    m_layerHolder->setObjectName(QStringLiteral("ctlVisibilityHolder"));
    auto *holder = new QVBoxLayout(m_layerHolder);
    holder->setContentsMargins(0, 0, 0, 0);
    auto *help = new QPushButton(frame);
    help->setObjectName(QStringLiteral("cmdHelpfmeVisibility"));
    connect(help, &QPushButton::clicked, this, [this] { emit HelpRequested(kHelpVisibility); });
    auto *column = new QVBoxLayout(frame);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(glyphs);
    column->addWidget(m_layerHolder, 1);
    column->addWidget(help);
    return frame;
}

void CGUI::SetLayerList(QWidget *list)
{
    QLayout *holder = m_layerHolder->layout();
    while (QLayoutItem *item = holder->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    list->setParent(m_layerHolder);
    list->setObjectName(list->objectName().isEmpty() ? QStringLiteral("ctlVisibility1") : list->objectName());
    holder->addWidget(list);
    list->show();
}

bool CGUI::GlyphSwitch(int which) const
{
    return which >= 0 && which < m_glyphSwitches.size() && m_glyphSwitches[which]->isChecked();
}

void CGUI::ClearGlyphSwitches()
{
    for (QCheckBox *box : m_glyphSwitches)
        box->setChecked(false);
}

void CGUI::SetPaneFrame(Pane pane, QWidget *frame)
{
    PlaceFrame(pane, frame);
    if (auto *split = frame->findChild<QSplitter *>(QStringLiteral("picSplitPane4")))
        KeepSplit(split);
    if (m_rememberedPane == pane && PaneButton(pane)->isEnabled())
        SetPane(pane, true);
}

// The frame stands right under its button and takes the height the column
// leaves; closed, it takes no room.
void CGUI::PlaceFrame(int pane, QWidget *frame)
{
    m_frames[pane] = frame;
    frame->setParent(m_column->parentWidget());
    frame->hide();
    m_column->insertWidget(m_column->indexOf(PaneButton(pane)) + 1, frame, 1);
}

CGUI::Pane CGUI::OpenPane() const
{
    for (int pane = VisibilityPane; pane <= SitePane; ++pane)
        if (PaneButton(pane)->isChecked())
            return Pane(pane);
    return NoPane;
}

void CGUI::SetPane(Pane pane, bool open)
{
    QPushButton *button = PaneButton(pane);
    if (!button || button->isChecked() == open)
        return;
    button->setChecked(open);
    PaneClicked(pane);
}

// One pane at a time: a button that goes down puts the others up and shuts
// their frames; the filler takes the room when no pane is open.
void CGUI::PaneClicked(int pane)
{
    const bool open = PaneButton(pane)->isChecked();
    for (int other = VisibilityPane; other <= SitePane; ++other) {
        if (other == pane || !PaneButton(other)->isChecked())
            continue;
        PaneButton(other)->setChecked(false);
        if (PaneFrame(other))
            PaneFrame(other)->hide();
        emit PaneToggled(other, false);
    }
    if (pane == FontPane && open)
        m_stylePane->SetHooverInfo(QString());
    if (PaneFrame(pane))
        PaneFrame(pane)->setVisible(open);
    m_filler->setVisible(OpenPane() == NoPane);
    emit PaneToggled(pane, open);
}

// The buttons as the edit goes down and comes up. Recover page and Site
// view may be used while browsing too: a page's revisions and the site's
// files are worth seeing before an edit. Visibility and Font act on the
// page under edit only.
void CGUI::EditLook(bool editing)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    for (int pane : {VisibilityPane, FontPane}) {
        if (!editing)
            SetPane(Pane(pane), false);
        PaneButton(pane)->setEnabled(editing);
    }
    for (int pane : {RecoverPane, SitePane})
        PaneButton(pane)->setEnabled(true);
    Button("cmdSettings")->setEnabled(!editing);
    Button("cmdShowAdminSettings")->setEnabled(editing);
    if (!editing) {
        ClearGlyphSwitches();
        m_stylePane->SetHooverInfo(QString());
        m_stylePane->Show({});
    }
    SetUndoRedo(editing && m_canUndo, editing && m_canRedo);
    if (editing && OpenPane() == NoPane && (m_rememberedPane == VisibilityPane || m_rememberedPane == FontPane))
        SetPane(Pane(m_rememberedPane), true);
    QApplication::restoreOverrideCursor();
}

// The CMS user of the page under edit may be kept from some panes, and a
// user who is no administrator from the administrator's panel. The edit
// session calls it once it knows who the user is: the press of Edit reaches
// the band before the CMS file has been read, when the limits at hand are
// still the last edit's.
void CGUI::ApplyCMSLimits()
{
    for (int pane = VisibilityPane; pane <= SitePane; ++pane)
        if (!CMSBandAllows(kBandBits[pane])) {
            SetPane(Pane(pane), false);
            PaneButton(pane)->setEnabled(false);
        }
    if (CMSRestrictedUser())
        Button("cmdShowAdminSettings")->setEnabled(false);
}

void CGUI::SetUndoRedo(bool canUndo, bool canRedo)
{
    const bool editing = Button("cmdEdit")->isChecked();
    m_canUndo = canUndo && editing;
    m_canRedo = canRedo && editing;
    Button("cmdUndo")->setEnabled(m_canUndo);
    Button("cmdRedo")->setEnabled(m_canRedo);
}

// Every button is reached with Tab in the order of the column, and each
// pane also with Alt and its number. A click leaves the keyboard where it
// was, so that the caret stays in the page after Undo, say.
void CGUI::KeyboardAccess()
{
    QWidget *previous = nullptr;
    for (const char *name : {"cmdEdit", "cmdUndo", "cmdRedo", "cmdShowAdminSettings", "cmdPane1", "cmdPane2",
                             "cmdPane3", "cmdPane4", "cmdHelp", "cmdSettings", "cmdSave"}) {
        QPushButton *button = Button(name);
        button->setFocusPolicy(Qt::TabFocus);
        if (previous)
            QWidget::setTabOrder(previous, button);
        previous = button;
    }
    for (int pane = VisibilityPane; pane <= SitePane; ++pane) {
        auto *key = new QShortcut(QKeySequence(Qt::ALT | Qt::Key(Qt::Key_0 + pane)), m_frmVindrell);
        connect(key, &QShortcut::activated, this, [this, pane] {
            if (PaneButton(pane)->isEnabled())
                PaneButton(pane)->click();
        });
    }
}

// The splitter between the site's tree and the local one leaves each of
// them a least height, and stands where the user left it.
void CGUI::KeepSplit(QSplitter *split)
{
    split->setChildrenCollapsible(false);
    for (int n = 0; n < split->count(); ++n)
        split->widget(n)->setMinimumHeight(kMinTreeHeight);
    QList<int> sizes;
    for (const QString &part : CReg::GetSetting(kSection, QStringLiteral("SiteSplit")).split(QLatin1Char(','), Qt::SkipEmptyParts))
        sizes.append(part.toInt());
    if (sizes.size() == split->count())
        split->setSizes(sizes);
}

// The size the window had, within the screen it opens on; the band's
// width; the pane that was open, which opens again as soon as its button
// can be pressed.
void CGUI::RestoreLayout()
{
    const QRect screen = m_frmVindrell->screen()->availableGeometry();
    const int width = StoredNumber(QStringLiteral("Width"), 1024);
    const int height = StoredNumber(QStringLiteral("Height"), 700);
    m_frmVindrell->resize(qBound(640, width, qMax(640, screen.width())), qBound(480, height, qMax(480, screen.height())));
    const int band = StoredNumber(QStringLiteral("Band"), kBandWidth);
    m_picSplit->setSizes({band, qMax(kMinBrowserWidth, m_frmVindrell->width() - band)});
    m_rememberedPane = qBound(int(NoPane), StoredNumber(QStringLiteral("Pane"), NoPane), int(SitePane));
}

void CGUI::SaveLayout() const
{
    CReg::BeginUpdate();
    const QSize size = m_frmVindrell->isMaximized() ? m_frmVindrell->normalGeometry().size() : m_frmVindrell->size();
    CReg::SaveSetting(kSection, QStringLiteral("Width"), QString::number(size.width()));
    CReg::SaveSetting(kSection, QStringLiteral("Height"), QString::number(size.height()));
    CReg::SaveSetting(kSection, QStringLiteral("Band"), QString::number(m_picSplit->sizes().value(0)));
    CReg::SaveSetting(kSection, QStringLiteral("Pane"), QString::number(int(OpenPane())));
    if (auto *site = m_frmVindrell->findChild<QSplitter *>(QStringLiteral("picSplitPane4"))) {
        QStringList sizes;
        for (int part : site->sizes())
            sizes.append(QString::number(part));
        CReg::SaveSetting(kSection, QStringLiteral("SiteSplit"), sizes.join(QLatin1Char(',')));
    }
    CReg::EndUpdate();
}
