// Pictures of the user's disk in an edit session on the main window:
// dropped into the page, resized with the mouse, compressed and described
// in their dialog, and saved: the picture goes up once under its new
// name, the page points at it and keeps all its other bytes. A picture
// changed for one whose name is taken on the server is never put over
// that file unasked.

#include "../../integration/fileviews/SiteTreeDriver.h"
#include "MenuPick.h"
#include "PageMouse.h"
#include "SessionWindow.h"
#include "fileviews/SiteFileDialogs.h"

#include <QBuffer>
#include <QImageReader>
#include <QLabel>
#include <QMimeData>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSlider>
#include <QTemporaryDir>

using namespace session_test;

namespace {

constexpr long Yes = UserQuestions::vbYes;
constexpr long No = UserQuestions::vbNo;
constexpr long Cancel = UserQuestions::vbCancel;

// A photo of some weight: noise compresses badly, as real photos do.
void writePhoto(const QString &path, int width, int height)
{
    QImage photo(width, height, QImage::Format_RGB32);
    QRandomGenerator random(7);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            photo.setPixel(x, y, qRgb(int(random.bounded(256)), 120 + int(random.bounded(60)), x % 256));
    ASSERT_TRUE(photo.save(path, "jpeg", 95));
}

bool dropFiles(QWidget *target, const QStringList &paths, const QPoint &at)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls << QUrl::fromLocalFile(path);
    data.setUrls(urls);
    return fileviews_test::dropOn(target, &data, at);
}

// The folder img chosen in the server folder dialog once it shows.
void chooseImgFolder()
{
    fileviews_test::onModal(QStringLiteral("frmSiteTree"), [](QWidget *dialog) {
        fileviews_test::TreeHands hands{dialog->findChild<SiteTreeWidget *>(QStringLiteral("tvwSiteTree"))};
        QTest::mouseClick(hands.tree->viewport(), Qt::LeftButton, {}, hands.at(QStringLiteral("img")));
        fileviews_test::click(dialog, "cmdOk");
    });
}

QStringList imgFolder()
{
    return QDir(servers().webRoot() + QStringLiteral("/img")).entryList(QDir::Files, QDir::Name);
}

class PictureGui : public SessionTest
{
protected:
    void TearDown() override
    {
        SiteFileDialogs::EndScript();
        SessionTest::TearDown();
    }

    // Right-clicks the element until its menu shows, and picks the item.
    static bool pickFromMenu(Window &w, const HtmlElement &element, const QString &item)
    {
        MenuPick pick(item);
        const QPoint at(element.offsetLeft() + element.offsetWidth() / 2, element.offsetTop() + element.offsetHeight() / 2);
        for (int attempt = 0; attempt < 20 && !pick.shown; ++attempt) {
            sendRightClick(w.form.browser()->focusProxy(), at);
            PageScriptCall::pumpUntil([&] { return pick.shown; }, 500);
        }
        return pick.shown;
    }

    QTemporaryDir home;
};

TEST_F(PictureGui, ADroppedPhotoResizedCompressedAndDescribedGoesUpOnceUnderItsNewName)
{
    const QByteArray original = "<HTML><HEAD><TITLE>Garden</TITLE></HEAD><BODY style=\"margin:0\">\r\n"
                                "<P id=\"text\">Our  garden</P>\r\n<!-- keep   me -->\r\n<P id=\"end\">End</P>\r\n</BODY></HTML>";
    servers().writeWebFile(QStringLiteral("garden.htm"), original);
    const QStringList imgBefore = imgFolder();
    const QString photo = home.filePath(QStringLiteral("garden photo.jpg"));
    writePhoto(photo, 600, 400);
    const QString notes = home.filePath(QStringLiteral("notes.png"));
    fileviews_test::put(notes, "not a picture at all");

    UserQuestions::Script({OK, OK, OK});
    Window w;
    ASSERT_TRUE(w.edit(QStringLiteral("garden.htm")));
    QWidget *input = w.form.browser()->focusProxy();
    const HtmlElement end = w.page().getElementById(QStringLiteral("end"));
    const QPoint atEnd(end.offsetLeft() + 2, end.offsetTop() + end.offsetHeight() / 2);

    // A file that is no picture is refused by name and the page stays as
    // it was.
    UserQuestions::Script({OK});
    ASSERT_TRUE(dropFiles(input, {notes}, atEnd));
    ASSERT_TRUE(PageScriptCall::pumpUntil([] { return errorDialogs() == 1; }, 5000));
    EXPECT_TRUE(QString::fromStdString(firstError()).contains(QStringLiteral("notes.png is not a picture")));
    EXPECT_TRUE(w.page().getElementsByTagName(QStringLiteral("IMG")).isEmpty());

    // The photo: offered for compression (yes), its folder chosen.
    UserQuestions::Script({Yes, OK});
    chooseImgFolder();
    ASSERT_TRUE(dropFiles(input, {photo}, atEnd));
    HtmlElement img;
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] {
        const auto images = w.page().getElementsByTagName(QStringLiteral("IMG"));
        img = images.isEmpty() ? HtmlElement() : images.first();
        return !img.isNull() && img.offsetWidth() == 600;
    }, 10000)) << "the dropped photo shows at its size";
    EXPECT_TRUE(shownTexts().at(0).startsWith(QStringLiteral("This image is rather big (")));
    EXPECT_TRUE(shownTexts().at(1).startsWith(QStringLiteral("The picture has been compressed and its new file name is garden photo_")));
    EXPECT_EQ(img.parentElement().id(), QStringLiteral("end"));

    // The corner dragged in keeps the proportion.
    const QPoint corner(img.offsetLeft() + img.offsetWidth() - 2, img.offsetTop() + img.offsetHeight() - 2);
    sendLeftDrag(input, corner, corner - QPoint(300, 0));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return img.getAttribute(QStringLiteral("width")).toString() == "300"; }, 5000));
    EXPECT_EQ(img.getAttribute(QStringLiteral("height")).toString(), QStringLiteral("200"));

    // Compressed once more in the dialog, at quality 40, and given its ALT text.
    UserQuestions::Script({OK});
    QString compressedTo;
    fileviews_test::onModal(QStringLiteral("frmImageProperties"), [&](QWidget *dialog) {
        EXPECT_EQ(dialog->findChild<QLabel *>(QStringLiteral("lblFormat"))->text(), QStringLiteral("600 x 400 pixels"));
        fileviews_test::type(dialog, "txtQuality", QStringLiteral("40"));
        EXPECT_EQ(dialog->findChild<QSlider *>(QStringLiteral("Slider2"))->value(), 40);
        fileviews_test::click(dialog, "cmdCompress");
        compressedTo = dialog->findChild<QLabel *>(QStringLiteral("lblURL"))->text();
        fileviews_test::type(dialog, "txtAltText", QStringLiteral("Our garden"));
        fileviews_test::click(dialog, "cmdOk");
    });
    ASSERT_TRUE(pickFromMenu(w, img, QStringLiteral("mnuHTMLImageProperties")));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return img.getAttribute(QStringLiteral("alt")).toString() == "Our garden"; }, 5000));
    EXPECT_TRUE(shownTexts().at(0).startsWith(QStringLiteral("The picture has been compressed and converted to JPEG.")));
    const QString name = QFileInfo(compressedTo).fileName().replace(QLatin1Char(' '), QLatin1Char('_'));
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^garden_photo_\\d+\\.jpg$")).match(name).hasMatch()) << name.toStdString();

    UserQuestions::Script({OK});
    w.pressSave();
    ASSERT_FALSE(w.editing()) << firstError();
    const QByteArray saved = servers().readWebFile(QStringLiteral("garden.htm"));
    QStringList added = imgFolder();
    for (const QString &was : imgBefore)
        added.removeAll(was);
    ASSERT_EQ(added, QStringList{name}) << saved.toStdString();
    QFile local(compressedTo);
    ASSERT_TRUE(local.open(QIODevice::ReadOnly));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("img/") + name), local.readAll());
    EXPECT_EQ(QImageReader(servers().webRoot() + QStringLiteral("/img/") + name).size(), QSize(600, 400));
    EXPECT_TRUE(saved.contains("src=\"img/" + name.toUtf8() + "\"")) << saved.toStdString();
    EXPECT_TRUE(saved.contains("alt=\"Our garden\"")) << saved.toStdString();
    EXPECT_TRUE(saved.contains("width=\"300\"")) << saved.toStdString();
    EXPECT_TRUE(saved.contains("<P id=\"text\">Our  garden</P>\r\n<!-- keep   me -->\r\n")) << saved.toStdString();
    EXPECT_FALSE(saved.contains("kelda")) << saved.toStdString();
    QFile::remove(servers().webRoot() + QStringLiteral("/img/") + name);
}

TEST_F(PictureGui, APictureChangedForANameTakenOnTheServerIsPutBesideItOnlyWhenTheUserSaysSo)
{
    const QByteArray original = "<HTML><HEAD><TITLE>Logo</TITLE></HEAD><BODY>\r\n<P id=\"text\">Logo</P>"
                                "<IMG id=\"logo\" src=\"img/logo.png\">\r\n</BODY></HTML>";
    servers().writeWebFile(QStringLiteral("logo.htm"), original);
    const QByteArray serverLogo = servers().readWebFile(QStringLiteral("img/logo.png"));
    const QString mine = home.filePath(QStringLiteral("logo.png"));
    QImage picture(48, 32, QImage::Format_ARGB32);
    picture.fill(qRgba(200, 40, 40, 255));
    ASSERT_TRUE(picture.save(mine));

    UserQuestions::Script({OK, OK, OK});
    Window w;
    ASSERT_TRUE(w.edit(QStringLiteral("logo.htm")));
    HtmlElement logo = w.page().getElementById(QStringLiteral("logo"));
    SiteFileDialogs::Script({mine});
    ASSERT_TRUE(pickFromMenu(w, logo, QStringLiteral("mnuChangeImg")));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return logo.getAttribute(QStringLiteral("src")).toString().startsWith("kelda-picture:"); }, 5000));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return logo.offsetWidth() == 48; }, 5000)) << "the page shows the new picture";

    // Cancel at the question: nothing goes up, the session stays.
    UserQuestions::Script({Cancel, OK});
    w.pressSave();
    EXPECT_TRUE(w.editing());
    EXPECT_TRUE(shownTexts().at(0).startsWith(QStringLiteral("A file named logo.png already stands in the folder")))
        << shownTexts().join('|').toStdString();
    EXPECT_EQ(servers().readWebFile(QStringLiteral("logo.htm")), original);
    EXPECT_EQ(servers().readWebFile(QStringLiteral("img/logo.png")), serverLogo);
    EXPECT_FALSE(imgFolder().contains(QStringLiteral("logo_2.png")));

    // No: the picture goes beside the other one under a free name.
    UserQuestions::Script({No, OK});
    w.pressSave();
    ASSERT_FALSE(w.editing()) << firstError();
    EXPECT_EQ(servers().readWebFile(QStringLiteral("img/logo.png")), serverLogo);
    QFile file(mine);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("img/logo_2.png")), file.readAll());
    const QByteArray saved = servers().readWebFile(QStringLiteral("logo.htm"));
    EXPECT_TRUE(saved.endsWith("</HEAD><BODY>\r\n<P id=\"text\">Logo</P><IMG id=\"logo\" src=\"img/logo_2.png\">\r\n</BODY></HTML>"))
        << saved.toStdString();
    QFile::remove(servers().webRoot() + QStringLiteral("/img/logo_2.png"));
}

} // namespace
