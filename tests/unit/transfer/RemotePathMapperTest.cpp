// The mapping from a page's address path to a folder and a file on the
// server, for the shapes of site records that users actually have.

#include "transfer/RemotePathMapper.h"

#include <gtest/gtest.h>

namespace {

struct Mapped
{
    QString folder;
    QString file;
};

Mapped map(const QString &ftproot, const QString &current, const QString &page,
           const QString &remotefolder = QString(), const QString &useremotef = QStringLiteral("0"))
{
    Mapped out;
    RemotePathMapper::BuildRemoteFolder({ftproot, remotefolder, useremotef}, current, page,
                                        out.folder, out.file);
    return out;
}

} // namespace

TEST(RemotePathMapper, WorkedMappings)
{
    Mapped m = map(QStringLiteral("public_html"), QStringLiteral("/"),
                   QStringLiteral("public_html/news/a.htm"));
    EXPECT_EQ(m.folder, QStringLiteral("public_html/news"));
    EXPECT_EQ(m.file, QStringLiteral("a.htm"));

    m = map(QString(), QStringLiteral("/"), QStringLiteral("news/a.htm"));
    EXPECT_EQ(m.folder, QStringLiteral("/news"));
    EXPECT_EQ(m.file, QStringLiteral("a.htm"));

    // A session that already stands in the web root does not walk into it again.
    m = map(QStringLiteral("/home/anna/public_html"), QStringLiteral("/home/anna/public_html"),
            QStringLiteral("/home/anna/public_html/news/a.htm"));
    EXPECT_EQ(m.folder, QStringLiteral("news"));
    m = map(QStringLiteral("/home/anna/public_html"), QStringLiteral("/home/anna/public_html"),
            QStringLiteral("/a.htm"));
    EXPECT_EQ(m.folder, QStringLiteral("/home/anna/public_html"));
}

TEST(RemotePathMapper, FtpRootWithOrWithoutSlashesMapsAlike)
{
    for (const QString &root : {QStringLiteral("www"), QStringLiteral("/www"), QStringLiteral("www/"),
                               QStringLiteral("/www/")}) {
        EXPECT_EQ(map(root, QStringLiteral("/"), QStringLiteral("/products/index.htm")).folder,
                  QStringLiteral("www/products"))
            << root.toStdString();
        EXPECT_EQ(map(root, QStringLiteral("/"), QStringLiteral("/index.htm")).folder,
                  QStringLiteral("www/"))
            << root.toStdString();
    }
    EXPECT_EQ(map(QStringLiteral("/"), QStringLiteral("/"), QStringLiteral("/a/b/c.htm")).folder,
              QStringLiteral("/a/b"));
    // Whole segments, in their own case: "/www2" beside the root "/www", a
    // folder of the site named like the root, and capitals all stay.
    EXPECT_EQ(map(QStringLiteral("/www"), QStringLiteral("/"), QStringLiteral("/www/www2/a.htm")).folder,
              QStringLiteral("www/www2"));
    EXPECT_EQ(map(QStringLiteral("/www"), QStringLiteral("/"), QStringLiteral("/www/Shop/www/a.htm")).folder,
              QStringLiteral("www/Shop/www"));
    EXPECT_EQ(map(QStringLiteral("/www"), QStringLiteral("/ww"), QStringLiteral("/www/a.htm")).folder,
              QStringLiteral("www/"));
}

TEST(RemotePathMapper, PageWithoutFolder)
{
    const Mapped m = map(QString(), QStringLiteral("/"), QStringLiteral("a.htm"));
    EXPECT_EQ(m.folder, QStringLiteral("/"));
    EXPECT_EQ(m.file, QStringLiteral("a.htm"));
}

TEST(RemotePathMapper, UserHomePathsLoseTheirTildePart)
{
    EXPECT_EQ(RemotePathMapper::RemoveTildePart(QStringLiteral("/~anna/news")), QStringLiteral("/news"));
    EXPECT_EQ(RemotePathMapper::RemoveTildePart(QStringLiteral("~anna/news/x")), QStringLiteral("/news/x"));
    EXPECT_EQ(RemotePathMapper::RemoveTildePart(QStringLiteral("/~anna")), QString());
    EXPECT_EQ(RemotePathMapper::RemoveTildePart(QStringLiteral("/news/a")), QStringLiteral("/news/a"));

    const Mapped m = map(QString(), QStringLiteral("/"), QStringLiteral("/~anna/news/a.htm"));
    EXPECT_EQ(m.folder, QStringLiteral("/news"));
    EXPECT_EQ(map(QString(), QStringLiteral("/"), QStringLiteral("/~anna/a.htm")).folder,
              QStringLiteral("/"));
}

TEST(RemotePathMapper, RemoteFolderIsPutInFrontOnlyWhenInForceAndMissing)
{
    EXPECT_EQ(map(QString(), QStringLiteral("/"), QStringLiteral("/news/a.htm"),
                  QStringLiteral("/sites/anna/"), QStringLiteral("1")).folder,
              QStringLiteral("sites/anna/news"));
    // Already part of the folder, in other letters: not added twice.
    EXPECT_EQ(map(QString(), QStringLiteral("/"), QStringLiteral("/Sites/Anna/news/a.htm"),
                  QStringLiteral("sites/anna"), QStringLiteral("1")).folder,
              QStringLiteral("/Sites/Anna/news"));
    EXPECT_EQ(map(QString(), QStringLiteral("/"), QStringLiteral("/news/a.htm"),
                  QStringLiteral("sites/anna"), QStringLiteral("0")).folder,
              QStringLiteral("/news"));
}

TEST(RemotePathMapper, TrimSlashesAndCuts)
{
    EXPECT_EQ(RemotePathMapper::TrimSlashes(QString()), QString());
    EXPECT_EQ(RemotePathMapper::TrimSlashes(QStringLiteral("/")), QString());
    EXPECT_EQ(RemotePathMapper::TrimSlashes(QStringLiteral("//a//")), QStringLiteral("/a/"));
    EXPECT_EQ(RemotePathMapper::RemoveFTPPath(QStringLiteral("/www/a.htm"), 5), QStringLiteral("/a.htm"));
    EXPECT_EQ(RemotePathMapper::RemoveLocalPath(QStringLiteral("/home/u/a.htm"), 7), QStringLiteral("/a.htm"));
}
