// The layers of a page in the Visibility pane's list, driven with the mouse
// and keys as a user drives them in the real page engine: listed on a right
// click with Shift, peeked at and shown from the list, typed into, all
// hidden, and saved on the fixture's FTP server with the visibility the
// author gave them.

#include "../document/SavedPage.h"
#include "PageMouse.h"
#include "objects/ctlVisibility.h"
#include "support/UserQuestions.h"

#include <QListWidget>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// Nested layers, one hidden in capitals, one hidden by the page's own
// script as it loads, and a span that is no layer.
const QByteArray kLayers =
    "<html><head><title>Layers</title></head>\n<body>\n"
    "<div id=\"outer\">Outer\n<div id=\"inner\" style=\"visibility: hidden\">Inner words</div></div>\n"
    "<p>Text <span id=\"note\" style=\"VISIBILITY:HIDDEN\">Note</span> <span id=\"plain\">plain</span></p>\n"
    "<div id=\"menu\">Menu</div>\n"
    "<script>document.getElementById('menu').style.visibility = 'hidden';</script>\n"
    "</body></html>";

// The main window's side, with the pane that holds the list, for the
// document being bound (a frame's has its own index).
class PaneWindow : public document_test::Window
{
public:
    PaneWindow(WebBrowser *browser, QWidget *form) : Window(browser), m_form(form) {}
    long GetForm(QWidget *&form) override
    {
        form = m_form;
        return 1;
    }
    long GetDocument(HtmlDocument &document) override
    {
        return frame.isNull() ? Window::GetDocument(document) : (document = frame, 1);
    }
    long GetDocIndex(long &index) override
    {
        index = frameIndex;
        return 1;
    }
    HtmlDocument frame;
    long frameIndex = 0;

private:
    QWidget *m_form;
};

class LayerVisibility : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        save_test::setSaveDate();
        UserQuestions::Script({});
        form.resize(260, 300);
        form.move(820, 0);
        form.show();
        lst = list->findChild<QListWidget *>(QStringLiteral("lstLayers"));
        list->resize(form.size());
    }
    void TearDown() override { UserQuestions::EndScript(); }

    HtmlElement byId(const char *id) { return screen.browser.Document().getElementById(QString::fromLatin1(id)); }
    QString visibility(const char *id) { return byId(id).currentStyle().visibility; }
    QStringList rows() const
    {
        QStringList texts;
        for (int i = 0; i < lst->count(); ++i)
            texts << lst->item(i)->text() + (lst->item(i)->checkState() == Qt::Checked ? QStringLiteral(" [x]") : QString());
        return texts;
    }
    QPoint middleOf(const char *id)
    {
        const HtmlElement e = byId(id);
        return QPoint(e.offsetLeft() + e.offsetWidth() / 2, e.offsetTop() + e.offsetHeight() / 2);
    }
    // The right click with Shift that lists the layers, sent again until the
    // page has reported it (a busy machine drops input before the first
    // frame is drawn).
    bool listLayers() { return listLayersAt(middleOf("outer"), [this] { return lst->count() > 0; }); }
    bool listLayersAt(const QPoint &at, const std::function<bool()> &listed)
    {
        for (int attempt = 0; attempt < 20; ++attempt) {
            sendRightClick(screen.browser.focusProxy(), at, Qt::ShiftModifier);
            if (PageScriptCall::pumpUntil(listed, 500))
                return true;
        }
        return false;
    }
    void pointAt(int row) { QTest::mouseMove(lst->viewport(), lst->visualItemRect(lst->item(row)).center()); }
    void pointAway() { QTest::mouseMove(lst->viewport(), QPoint(lst->viewport()->width() / 2, lst->viewport()->height() - 5)); }
    // A click on the row's check box, with the pointer brought there first.
    void tick(int row)
    {
        pointAt(row);
        QStyleOptionViewItem option;
        option.initFrom(lst);
        option.rect = lst->visualItemRect(lst->item(row));
        option.features = QStyleOptionViewItem::HasCheckIndicator;
        const QRect box = lst->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, lst);
        QTest::mouseClick(lst->viewport(), Qt::LeftButton, {}, box.center());
    }
    bool waitVisibility(const char *id, const QString &value)
    {
        return PageScriptCall::pumpUntil([&] { return visibility(id) == value; }, 5000);
    }

    document_test::Screen screen;
    QWidget form;
    ctlVisibility *list = new ctlVisibility(&form);
    QListWidget *lst = nullptr;
    PaneWindow window{&screen.browser, &form};
};

TEST_F(LayerVisibility, LayersAreListedShownEditedAndSavedAsTheAuthorHadThem)
{
    const QString path = QStringLiteral("layers/page.htm");
    screen.open(path, kLayers);
    CDocument doc;
    ASSERT_EQ(doc.Init(&window), 1) << MError::ErrorDescription().toStdString();
    ASSERT_EQ(doc.KeepSource(save_test::serverFile(path)), 1) << doc.RefusalReason().toStdString();
    ASSERT_EQ(doc.EditOn(true), 1) << MError::ErrorDescription().toStdString();
    // A hidden layer stays hidden while the page is edited.
    EXPECT_EQ(visibility("inner"), QStringLiteral("hidden"));
    EXPECT_EQ(visibility("menu"), QStringLiteral("hidden"));

    // A right click without Shift lists nothing.
    sendRightClick(screen.browser.focusProxy(), middleOf("outer"));
    ASSERT_TRUE(listLayers());
    EXPECT_EQ(rows(), (QStringList{QStringLiteral("Hide all/Reset"), QStringLiteral("DIV outer [x]"),
                                   QStringLiteral("DIV inner Hidden"), QStringLiteral("SPAN note Hidden"),
                                   QStringLiteral("DIV menu Hidden")}));

    // The pointer on a row shows its layer until it leaves the row.
    pointAt(4);
    EXPECT_TRUE(waitVisibility("menu", QStringLiteral("visible")));
    pointAway();
    EXPECT_TRUE(waitVisibility("menu", QStringLiteral("hidden")));

    // A tick shows the layer for good once the pointer has left its row.
    tick(2);
    pointAway();
    EXPECT_TRUE(waitVisibility("inner", QStringLiteral("visible")));

    // Hide all, and unticked again, everything as the list was filled.
    tick(0);
    EXPECT_TRUE(waitVisibility("outer", QStringLiteral("hidden")));
    EXPECT_EQ(visibility("inner"), QStringLiteral("hidden"));
    tick(0);
    EXPECT_TRUE(waitVisibility("outer", QStringLiteral("visible")));
    EXPECT_EQ(visibility("inner"), QStringLiteral("hidden"));
    EXPECT_EQ(rows().value(2), QStringLiteral("DIV inner Hidden"));

    // Shown from the keyboard, the inner layer takes what is typed into it.
    pointAway();
    lst->setCurrentRow(2);
    lst->setFocus();
    QTest::keyClick(lst, Qt::Key_Space);
    ASSERT_TRUE(waitVisibility("inner", QStringLiteral("visible")));
    const QPoint inner = middleOf("inner");
    sendLeftDrag(screen.browser.focusProxy(), inner, inner);
    screen.browser.activateWindow();
    screen.browser.setFocus();
    QTest::keyClick(screen.browser.focusProxy(), Qt::Key_End);
    QTest::keyClick(screen.browser.focusProxy(), Qt::Key_Z);
    ASSERT_TRUE(PageScriptCall::pumpUntil([this] { return byId("inner").innerText() == QStringLiteral("Inner wordsz"); },
                                          5000))
        << byId("inner").innerText().toStdString();

    // Saved with every layer hidden by the list: the file has the author's
    // visibility and the words typed, and not a byte else of the body moved.
    tick(0);
    ASSERT_TRUE(waitVisibility("outer", QStringLiteral("hidden")));
    doc.SetDirty();
    ASSERT_EQ(doc.Save(), 1) << MError::ErrorDescription().toStdString();
    const QByteArray saved = save_test::serverFile(path);
    QByteArray expected = kLayers;
    expected.replace("Inner words", "Inner wordsz");
    EXPECT_EQ(saved.mid(saved.indexOf("<body>")), expected.mid(expected.indexOf("<body>")));
}

// Each frame has its own layers; the one list belongs to the frame last
// clicked with Shift and the right button, and the other frame's layers
// don't follow its rows.
TEST_F(LayerVisibility, TheListBelongsToTheFrameLastClicked)
{
    TestServers &servers = TestServers::shared();
    servers.writeWebFile(QStringLiteral("layers/fa.htm"), "<html><body><div id=\"a\">Layer A</div></body></html>");
    servers.writeWebFile(QStringLiteral("layers/fb.htm"), "<html><body><div id=\"b\">Layer B</div></body></html>");
    screen.open(QStringLiteral("layers/frames.htm"), "<html><frameset cols=\"50%,50%\"><frame src=\"fa.htm\">"
                                                     "<frame src=\"fb.htm\"></frameset></html>");
    const HtmlDocument top = screen.browser.Document();
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return top.frameCount() == 2; }, 5000));
    std::vector<std::unique_ptr<CDocument>> docs;
    for (int i = 0; i < 2; ++i) {
        window.frame = top.frame(i);
        window.frameIndex = i + 1;
        ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return !window.frame.body().isNull(); }, 5000));
        docs.push_back(std::make_unique<CDocument>());
        ASSERT_EQ(docs.back()->Init(&window), 1) << MError::ErrorDescription().toStdString();
        ASSERT_EQ(docs.back()->EditOn(true), 1) << MError::ErrorDescription().toStdString();
    }
    const auto shown = [&](int frame, const char *id) {
        return top.frame(frame).getElementById(QString::fromLatin1(id)).currentStyle().visibility;
    };

    ASSERT_TRUE(listLayersAt(QPoint(100, 15), [this] { return list->DocIndex() == 1; }));
    EXPECT_EQ(rows(), (QStringList{QStringLiteral("Hide all/Reset"), QStringLiteral("DIV a [x]")}));
    tick(0);
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return shown(0, "a") == QLatin1String("hidden"); }, 5000));
    EXPECT_EQ(shown(1, "b"), QStringLiteral("visible"));

    ASSERT_TRUE(listLayersAt(QPoint(600, 100), [this] { return list->DocIndex() == 2; }));
    EXPECT_EQ(rows(), (QStringList{QStringLiteral("Hide all/Reset"), QStringLiteral("DIV b [x]")}));
    tick(0);
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return shown(1, "b") == QLatin1String("hidden"); }, 5000));
    tick(0);
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return shown(1, "b") == QLatin1String("visible"); }, 5000));
    // Frame A's list was not the one reset: its layer stays as the user left it.
    EXPECT_EQ(shown(0, "a"), QStringLiteral("hidden"));
}

} // namespace
