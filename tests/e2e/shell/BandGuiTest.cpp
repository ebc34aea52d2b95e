// The band of the main window on a real page: its layout at 1024 x 700 and
// at 1920 x 1080 (screenshots in the test output folder, and the regions
// that must not move compared pixel by pixel), one pane open at a time,
// the buttons while browsing and while editing, the splitters at their
// limits, and the layout remembered in the settings store.

#include "SessionWindow.h"
#include "shell/CGUI.h"
#include "shell/RevisionPane.h"
#include "shell/StylePane.h"
#include "fileviews/SitePane.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QSplitter>
#include <QTest>

using namespace session_test;

namespace {

// Screenshots go to the test output folder: KELDA_TEST_OUTPUT, or
// test-output in the folder the test runs in.
QString shotPath(const QString &name)
{
    QString root = qEnvironmentVariable("KELDA_TEST_OUTPUT");
    if (root.isEmpty())
        root = QDir::currentPath() + QStringLiteral("/test-output");
    QDir().mkpath(root + QStringLiteral("/band"));
    return root + QStringLiteral("/band/") + name + QStringLiteral(".png");
}

QPushButton *button(QWidget &form, const char *name)
{
    return form.findChild<QPushButton *>(QString::fromLatin1(name));
}

// The widget's rectangle in the window's coordinates.
QRect inWindow(QWidget &form, QWidget *w)
{
    return QRect(w->mapTo(&form, QPoint(0, 0)), w->size());
}

// Resizes the window and lets the layout and the page settle.
QImage shoot(Window &w, const QSize &size, const QString &name)
{
    w.form.resize(size);
    PageScriptCall::pumpUntil([&] { return w.form.size() == size && w.form.browser()->size().width() > 0; }, 5000);
    // The layout runs on the next turns of the loop; the page redraws at
    // the new size a little later.
    PageScriptCall::pumpUntil([] { return false; }, 300);
    QImage shot = w.form.grab().toImage();
    shot.save(shotPath(name));
    return shot;
}

const QList<const char *> kFrames = {"", "fmeVisibility", "fmeStyle", "picRollback", "fmePages"};

class Band : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        servers().writeWebFile(QStringLiteral("band.htm"), plainPage("A page to edit, with the band beside it."));
    }
};

TEST_F(Band, RegionsThatMustNotMoveStayFrom1024x700To1920x1080)
{
    UserQuestions::Script({});
    Window w;
    w.open(QStringLiteral("band.htm"));
    w.form.browser()->setFocus();
    auto *band = w.form.findChild<QWidget *>(QStringLiteral("picBand"));

    const QImage small = shoot(w, QSize(1024, 700), QStringLiteral("browsing-1024x700"));
    const QRect top(QPoint(0, 0), QPoint(band->width() - 1, inWindow(w.form, button(w.form, "cmdPane4")).bottom()));
    const QRect save = inWindow(w.form, button(w.form, "cmdSave"));
    const QRect help = inWindow(w.form, button(w.form, "cmdHelp"));
    const int bottomFromEnd = w.form.height() - help.top();
    const QRect browserSmall = inWindow(w.form, w.form.browser());

    const QImage large = shoot(w, QSize(1920, 1080), QStringLiteral("browsing-1920x1080"));
    // The band keeps its width: the browser takes what the window gained.
    EXPECT_EQ(band->width(), CGUI::kBandWidth);
    EXPECT_EQ(inWindow(w.form, w.form.browser()).width() - browserSmall.width(), 1920 - 1024);
    EXPECT_EQ(inWindow(w.form, w.form.browser()).left(), browserSmall.left());
    // The head of the band, from Edit down to the last pane button, is the
    // same picture; so is its foot, Help, Settings and Save, at the same
    // distance from the window's bottom.
    EXPECT_EQ(small.copy(top), large.copy(top));
    const QRect footSmall(0, 700 - bottomFromEnd, band->width(), bottomFromEnd);
    const QRect footLarge(0, 1080 - bottomFromEnd, band->width(), bottomFromEnd);
    EXPECT_EQ(small.copy(footSmall), large.copy(footLarge));
    // The address row stands on the level of Save.
    const QRect go = inWindow(w.form, button(w.form, "cmdGo"));
    const QRect saveLarge = inWindow(w.form, button(w.form, "cmdSave"));
    EXPECT_EQ(saveLarge.height(), save.height());
    EXPECT_TRUE(saveLarge.contains(QPoint(saveLarge.center().x(), go.center().y())))
        << go.center().y() << " " << saveLarge.top() << "-" << saveLarge.bottom();
}

TEST_F(Band, OnePaneAtATimeWhileEditingAndTheButtonsOfEachState)
{
    UserQuestions::Script({OK, OK, OK});
    Window w;
    CGUI *gui = w.form.GUI();
    w.open(QStringLiteral("band.htm"));

    // Browsing: Recover page and Site view may be looked at, Visibility and
    // Font have no page to act on; nothing to undo; Settings, not Admin.
    for (const char *name : {"cmdPane1", "cmdPane2", "cmdUndo", "cmdRedo", "cmdShowAdminSettings", "cmdSave"})
        EXPECT_FALSE(button(w.form, name)->isEnabled()) << name;
    for (const char *name : {"cmdEdit", "cmdPane3", "cmdPane4", "cmdSettings", "cmdHelp"})
        EXPECT_TRUE(button(w.form, name)->isEnabled()) << name;

    ASSERT_TRUE(w.edit(QStringLiteral("band.htm")));
    for (const char *name : {"cmdPane1", "cmdPane2", "cmdPane3", "cmdPane4", "cmdShowAdminSettings", "cmdSave"})
        EXPECT_TRUE(button(w.form, name)->isEnabled()) << name;
    EXPECT_FALSE(button(w.form, "cmdSettings")->isEnabled());

    for (const QSize &size : {QSize(1024, 700), QSize(1920, 1080)}) {
        for (int pane = CGUI::VisibilityPane; pane <= CGUI::RecoverPane; ++pane) {
            QPushButton *own = button(w.form, QStringLiteral("cmdPane%1").arg(pane).toLatin1().constData());
            own->click();
            shoot(w, size, QStringLiteral("pane%1-%2x%3").arg(pane).arg(size.width()).arg(size.height()));
            EXPECT_EQ(gui->OpenPane(), pane);
            QWidget *frame = w.form.findChild<QWidget *>(QString::fromLatin1(kFrames[pane]));
            ASSERT_NE(frame, nullptr);
            EXPECT_TRUE(frame->isVisible());
            for (int other = CGUI::VisibilityPane; other <= CGUI::SitePane; ++other) {
                if (other == pane)
                    continue;
                EXPECT_FALSE(button(w.form, QStringLiteral("cmdPane%1").arg(other).toLatin1().constData())->isChecked());
                EXPECT_TRUE(w.form.findChild<QWidget *>(QString::fromLatin1(kFrames[other]))->isHidden()) << other;
            }
            // The frame stands under its button and fills the column down
            // to the next button, or to the small row.
            const QRect ownAt = inWindow(w.form, own);
            const QRect frameAt = inWindow(w.form, frame);
            EXPECT_GE(frameAt.top(), ownAt.bottom());
            EXPECT_LE(frameAt.top() - ownAt.bottom(), 12);
            EXPECT_LT(inWindow(w.form, button(w.form, "cmdPane4")).bottom(), inWindow(w.form, button(w.form, "cmdHelp")).top());
            EXPECT_GT(frameAt.height(), size.height() / 3);
        }
        // The open pane's button closes it: no pane then.
        button(w.form, "cmdPane3")->click();
        EXPECT_EQ(gui->OpenPane(), CGUI::NoPane);
        EXPECT_TRUE(w.form.findChild<QWidget *>(QStringLiteral("picFiller"))->isVisible());
    }

    // From the keyboard: Alt and the pane's number, and Tab through the
    // band in its order.
    w.form.activateWindow();
    ASSERT_TRUE(PageScriptCall::pumpUntil([&w] { return w.form.isActiveWindow(); }, 5000));
    button(w.form, "cmdEdit")->setFocus();
    QTest::keyClick(button(w.form, "cmdEdit"), Qt::Key_2, Qt::AltModifier);
    EXPECT_EQ(gui->OpenPane(), CGUI::FontPane);
    QTest::keyClick(button(w.form, "cmdEdit"), Qt::Key_2, Qt::AltModifier);
    EXPECT_EQ(gui->OpenPane(), CGUI::NoPane);
    QStringList reached;
    button(w.form, "cmdShowAdminSettings")->setFocus();
    for (int n = 0; n < 4; ++n) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached << QApplication::focusWidget()->objectName();
    }
    EXPECT_EQ(reached, QStringList({"cmdPane1", "cmdPane2", "cmdPane3", "cmdPane4"}));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_EQ(gui->OpenPane(), CGUI::SitePane);
    button(w.form, "cmdPane1")->click();

    // The edit ends: Visibility closes with its switches cleared, and the
    // browsing state is back.
    // A tag switch shows the glyphs of its tags in the page.
    w.form.findChild<QCheckBox *>(QStringLiteral("chkShowLayer"))->click();
    EXPECT_TRUE(PageScriptCall::run(w.form.browser()->page(), QStringLiteral("!!document.getElementById('__kelda_glyphs')"),
                                    QString())
                    .toBool());
    w.pressEdit();
    ASSERT_FALSE(w.editing());
    EXPECT_EQ(gui->OpenPane(), CGUI::NoPane);
    EXPECT_FALSE(w.form.findChild<QCheckBox *>(QStringLiteral("chkShowLayer"))->isChecked());
    for (const char *name : {"cmdPane1", "cmdPane2", "cmdShowAdminSettings", "cmdUndo"})
        EXPECT_FALSE(button(w.form, name)->isEnabled()) << name;
    EXPECT_TRUE(button(w.form, "cmdSettings")->isEnabled());
}

// Drags a splitter's handle with the given button by the distance.
void dragHandle(QSplitter *split, QPoint by, Qt::MouseButton with = Qt::LeftButton)
{
    QWidget *handle = split->handle(1);
    const QPoint from = handle->rect().center();
    QTest::mousePress(handle, with, {}, from);
    QMouseEvent move(QEvent::MouseMove, QPointF(from + by), handle->mapToGlobal(QPointF(from + by)), Qt::NoButton,
                     with, {});
    QCoreApplication::sendEvent(handle, &move);
    QTest::mouseRelease(handle, with, {}, from + by);
}

TEST_F(Band, SplittersStopAtTheirLimitsAndTheLayoutIsKeptForTheNextStart)
{
    UserQuestions::Script({});
    int bandKept = 0;
    {
        Window w;
        w.form.resize(1024, 700);
        auto *split = w.form.findChild<QSplitter *>(QStringLiteral("picSplit"));
        auto *band = w.form.findChild<QWidget *>(QStringLiteral("picBand"));
        dragHandle(split, QPoint(-2000, 0));
        EXPECT_EQ(band->width(), CGUI::kMinBandWidth);
        dragHandle(split, QPoint(3000, 0));
        EXPECT_EQ(split->widget(1)->width(), CGUI::kMinBrowserWidth);
        // The right button moves nothing.
        const int before = band->width();
        dragHandle(split, QPoint(-300, 0), Qt::RightButton);
        EXPECT_EQ(band->width(), before);
        dragHandle(split, QPoint(-500, 0));
        bandKept = band->width();
        EXPECT_GT(bandKept, CGUI::kMinBandWidth);

        // The Site view's two trees keep a least height each.
        w.form.findChild<QPushButton *>(QStringLiteral("cmdPane4"))->click();
        auto *trees = w.form.findChild<QSplitter *>(QStringLiteral("picSplitPane4"));
        ASSERT_NE(trees, nullptr);
        dragHandle(trees, QPoint(0, -3000));
        EXPECT_EQ(trees->widget(0)->height(), CGUI::kMinTreeHeight);
        dragHandle(trees, QPoint(0, 3000));
        EXPECT_EQ(trees->widget(1)->height(), CGUI::kMinTreeHeight);
        dragHandle(trees, QPoint(0, -150));
        // Recover page is the pane open at the close.
        w.form.findChild<QPushButton *>(QStringLiteral("cmdPane3"))->click();
        w.form.resize(1100, 760);
        PageScriptCall::pumpUntil([&] { return w.form.size() == QSize(1100, 760); }, 5000);
        w.form.close();
    }
    frmVindrell again;
    again.show();
    PageScriptCall::pumpUntil([&] { return again.isVisible(); }, 5000);
    EXPECT_EQ(again.size(), QSize(1100, 760));
    EXPECT_EQ(again.findChild<QWidget *>(QStringLiteral("picBand"))->width(), bandKept);
    EXPECT_EQ(again.GUI()->OpenPane(), CGUI::RecoverPane);
    EXPECT_FALSE(again.revisionPane()->isHidden());
    again.close();
}

} // namespace
