#pragma once

#include <QObject>
#include <QPointer>

class QCheckBox;
class QMainWindow;
class QPushButton;
class QSplitter;
class QVBoxLayout;
class QWidget;
class StylePane;

// The look of the main window. The window builds its controls and names
// them; Init takes them by name and from then on keeps the band in order:
// one pane open at a time under its button, the captions, which buttons can
// be pressed while browsing and while editing, the splitter between the
// band and the browser with its range, and the layout the window had last,
// kept in the settings store.
//
// Sizes are device-independent pixels and the fonts are the desktop's, so
// the band reads the same from 1024 x 700 to a 4K screen at scale 2.
class CGUI : public QObject
{
    Q_OBJECT

public:
    // The panes, by the number of their button (cmdPane1 ... cmdPane4).
    enum Pane { NoPane = 0, VisibilityPane = 1, FontPane = 2, RecoverPane = 3, SitePane = 4 };

    // The narrowest band and the narrowest browser the splitter allows.
    static constexpr int kMinBandWidth = 109;
    static constexpr int kMinBrowserWidth = 100;
    // The band's width when nothing is remembered.
    static constexpr int kBandWidth = 260;
    // The least height of each tree of the Site view pane.
    static constexpr int kMinTreeHeight = 27;

    explicit CGUI(QObject *parent = nullptr);

    // Takes the window's controls, builds the Visibility and Font panes,
    // sets the captions and the layout kept in the store. 1, or 0 with the
    // pending error set when a control is missing.
    long Init(QMainWindow *frmParent_p);
    void LoadResCaps();
    void cmdEditEnable(bool boolEnabled_p);

    // Puts a pane's frame under its button: the window gives the frames of
    // the Recover and Site view panes, which it owns.
    void SetPaneFrame(Pane pane, QWidget *frame);
    // The pane that is open, NoPane when none.
    Pane OpenPane() const;
    // As a press of the pane's button that leaves it down (open) or up.
    void SetPane(Pane pane, bool open);
    // The band as the CMS user's limits allow while a page is edited.
    void ApplyCMSLimits();

    // The Visibility pane holds the tag switches and, under them, the list
    // of the page's layers, which its own part of the program puts in here.
    // The widget is taken into the pane; a second call replaces the first.
    void SetLayerList(QWidget *list);
    QWidget *LayerListHolder() const { return m_layerHolder; }
    StylePane *Style() const { return m_stylePane; }
    // The tag switches of the Visibility pane: links, layers, script, others.
    bool GlyphSwitch(int which) const;

    // Undo and Redo follow the engine: on only while a page is edited and
    // the engine has something to undo or redo.
    void SetUndoRedo(bool canUndo, bool canRedo);

    // Writes the window's size, the splitter positions and the open pane
    // to the settings store; the window calls it as it closes.
    void SaveLayout() const;

signals:
    void PaneToggled(int pane, bool open);
    // The administrator's button was pressed: the panel of the CMS opens
    // from here.
    void AdminPanelRequested();
    void UndoRequested();
    void RedoRequested();
    // A tag switch of the Visibility pane changed.
    void GlyphsChanged(bool links, bool layers, bool scripts, bool others);
    void HelpRequested(const QString &topic);

private:
    QPushButton *Button(const char *name) const;
    QPushButton *PaneButton(int pane) const;
    QWidget *PaneFrame(int pane) const;
    QWidget *BuildVisibilityPane();
    void PlaceFrame(int pane, QWidget *frame);
    void PaneClicked(int pane);
    void EditLook(bool editing);
    void ClearGlyphSwitches();
    void RestoreLayout();
    void KeepSplit(QSplitter *split);
    void KeyboardAccess();

    QPointer<QMainWindow> m_frmVindrell;
    QPointer<QSplitter> m_picSplit;
    QPointer<QVBoxLayout> m_column;
    QPointer<QWidget> m_filler;
    QPointer<QWidget> m_frames[5];
    QPointer<QWidget> m_layerHolder;
    StylePane *m_stylePane = nullptr;
    QList<QCheckBox *> m_glyphSwitches;
    bool m_canUndo = false;
    bool m_canRedo = false;
    int m_rememberedPane = NoPane;
};
