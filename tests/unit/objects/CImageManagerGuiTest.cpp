// The picture work on real files: a phone photo that stands on its side by
// its orientation mark comes out upright, transparency becomes white in a
// JPEG, an animated GIF is scaled into a PNG, and files that are no
// picture, are cut short or declare an enormous size are refused with
// their name and the reason, without being decoded.

#include "TestEnvironment.h"
#include "objects/CImageManager.h"
#include "support/MError.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <gtest/gtest.h>

namespace {

QByteArray jpegOf(const QImage &image, int quality = 90)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(quality);
    EXPECT_TRUE(writer.write(image));
    return bytes;
}

// An EXIF block whose only entry is the orientation: 6 is "turn 90
// degrees clockwise to view", as a phone held upright writes it.
QByteArray exifOrientation(quint16 orientation)
{
    QByteArray tiff("MM\x00\x2A\x00\x00\x00\x08", 8);
    tiff += QByteArray("\x00\x01", 2);                                   // one entry
    tiff += QByteArray("\x01\x12\x00\x03\x00\x00\x00\x01", 8);           // Orientation, SHORT, 1
    tiff += char(orientation >> 8);
    tiff += char(orientation & 0xFF);
    tiff += QByteArray("\x00\x00\x00\x00\x00\x00", 6);                   // value padding, no next IFD
    const QByteArray payload = QByteArray("Exif\x00\x00", 6) + tiff;
    const int length = int(payload.size()) + 2;
    return QByteArray("\xFF\xE1", 2) + char(length >> 8) + char(length & 0xFF) + payload;
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

bool near(QRgb pixel, QRgb expected)
{
    return std::abs(qRed(pixel) - qRed(expected)) < 40 && std::abs(qGreen(pixel) - qGreen(expected)) < 40
           && std::abs(qBlue(pixel) - qBlue(expected)) < 40;
}

long maxResidentKb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class ImageManager : public testing::Test
{
protected:
    void SetUp() override { MError::ClearError(); }
    void TearDown() override { MError::ClearError(); }
    QString file(const QString &name) const { return dir.filePath(name); }

    QTemporaryDir dir;
    CImageManager manager;
};

} // namespace

TEST_F(ImageManager, APhotoOnItsSideComesOutUprightAndMarkedAsOurs)
{
    // Landscape as the sensor took it: red on the left, blue on the right.
    QImage sensor(80, 40, QImage::Format_RGB32);
    sensor.fill(Qt::blue);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            sensor.setPixel(x, y, qRgb(255, 0, 0));
    const QByteArray plain = jpegOf(sensor);
    write(file(QStringLiteral("phone.jpg")), plain.left(2) + exifOrientation(6) + plain.mid(2));

    long width = 0, height = 0;
    ASSERT_EQ(manager.GetImageSize(file(QStringLiteral("phone.jpg")), width, height), 1);
    EXPECT_EQ(width, 40);
    EXPECT_EQ(height, 80);
    bool larger = false;
    ASSERT_EQ(manager.IsShrunken(file(QStringLiteral("phone.jpg")), 40, 80, larger), 1);
    EXPECT_FALSE(larger);
    ASSERT_EQ(manager.IsShrunken(file(QStringLiteral("phone.jpg")), 80, 40, larger), 1);
    EXPECT_TRUE(larger);

    // Turned clockwise, the left of the sensor is the top of the picture.
    ASSERT_EQ(manager.ScaleImage(file(QStringLiteral("phone.jpg")), file(QStringLiteral("small.jpg")), 20, 40), 1)
        << MError::ErrorDescription().toStdString();
    const QImage small(file(QStringLiteral("small.jpg")));
    ASSERT_EQ(small.size(), QSize(20, 40));
    EXPECT_TRUE(near(small.pixel(10, 5), qRgb(255, 0, 0)));
    EXPECT_TRUE(near(small.pixel(10, 35), qRgb(0, 0, 255)));

    long modified = -1;
    manager.GetIsModified(file(QStringLiteral("phone.jpg")), modified);
    EXPECT_EQ(modified, 0);
    manager.GetIsModified(file(QStringLiteral("small.jpg")), modified);
    EXPECT_EQ(modified, 1);
}

TEST_F(ImageManager, TransparencyStandsOnWhiteInAJpegAndQualitySetsTheSize)
{
    QImage logo(64, 64, QImage::Format_ARGB32);
    logo.fill(Qt::transparent);
    for (int y = 16; y < 48; ++y)
        for (int x = 16; x < 48; ++x)
            logo.setPixel(x, y, qRgba(0, 128, 0, 255));
    ASSERT_TRUE(logo.save(file(QStringLiteral("logo.png"))));

    ASSERT_EQ(manager.ConvertToJpg(file(QStringLiteral("logo.png")), file(QStringLiteral("logo.jpg")), 75), 1);
    QImageReader reader(file(QStringLiteral("logo.jpg")));
    EXPECT_EQ(reader.format(), "jpeg");
    const QImage jpeg = reader.read();
    EXPECT_TRUE(near(jpeg.pixel(2, 2), qRgb(255, 255, 255)));
    EXPECT_TRUE(near(jpeg.pixel(32, 32), qRgb(0, 128, 0)));

    // A photo-like picture gets smaller with the quality.
    QImage noise(300, 200, QImage::Format_RGB32);
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 300; ++x)
            noise.setPixel(x, y, qRgb((x * 7 + y * 13) % 256, (x * y) % 256, (x + y * 3) % 256));
    ASSERT_TRUE(noise.save(file(QStringLiteral("noise.png"))));
    ASSERT_EQ(manager.ConvertToJpg(file(QStringLiteral("noise.png")), file(QStringLiteral("q90.jpg")), 90), 1);
    ASSERT_EQ(manager.ConvertToJpg(file(QStringLiteral("noise.png")), file(QStringLiteral("q20.jpg")), 20), 1);
    EXPECT_LT(QFile(file(QStringLiteral("q20.jpg"))).size(), QFile(file(QStringLiteral("q90.jpg"))).size());
}

TEST_F(ImageManager, AnAnimatedGifIsScaledIntoAPng)
{
    const QString gif = TestEnvironment::fixturesFolder() + QStringLiteral("/images/animated.gif");
    EXPECT_TRUE(CImageManager::IsAnimated(gif));
    EXPECT_EQ(CImageManager::ScaledSuffix(gif), QStringLiteral("png"));
    EXPECT_EQ(CImageManager::ScaledSuffix(QStringLiteral("/x/photo.JPEG")), QStringLiteral("jpg"));
    ASSERT_EQ(manager.ScaleImage(gif, file(QStringLiteral("anim_1.png")), 20, 15), 1)
        << MError::ErrorDescription().toStdString();
    QImageReader reader(file(QStringLiteral("anim_1.png")));
    EXPECT_EQ(reader.format(), "png");
    const QImage first = reader.read();
    EXPECT_EQ(first.size(), QSize(20, 15));
    EXPECT_TRUE(near(first.pixel(10, 7), qRgb(255, 0, 0)));
}

TEST_F(ImageManager, BadFilesAreRefusedByNameAndNothingIsWritten)
{
    write(file(QStringLiteral("notes.jpg")), "These are my notes, not a picture.\n");
    QImage photo(400, 300, QImage::Format_RGB32);
    photo.fill(qRgb(30, 90, 200));
    const QByteArray whole = jpegOf(photo);
    write(file(QStringLiteral("cut.jpg")), whole.left(whole.size() / 2));

    const QString out = file(QStringLiteral("out.jpg"));
    EXPECT_EQ(manager.ConvertToJpg(file(QStringLiteral("notes.jpg")), out, 75), 0);
    EXPECT_EQ(MError::ErrorNumber(), CImageManager::kInvalidPicture);
    EXPECT_TRUE(MError::ErrorDescription().startsWith(QStringLiteral("The file notes.jpg is not a picture")))
        << MError::ErrorDescription().toStdString();
    MError::ClearError();

    EXPECT_EQ(manager.ScaleImage(file(QStringLiteral("cut.jpg")), out, 40, 30), 0);
    EXPECT_TRUE(MError::ErrorDescription().startsWith(QStringLiteral("The picture cut.jpg is cut short")))
        << MError::ErrorDescription().toStdString();
    MError::ClearError();

    long width = 0, height = 0;
    EXPECT_EQ(manager.GetImageSize(file(QStringLiteral("missing.png")), width, height), 0);
    EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("missing.png")));
    MError::ClearError();
    EXPECT_FALSE(QFile::exists(out));
}

// A PNG whose header declares 20,000 x 20,000 pixels, with a few bytes of
// data behind it: decoding it would take 1.6 GB.
TEST_F(ImageManager, AHugeDeclaredSizeIsRefusedFromTheHeader)
{
    QImage tiny(1, 1, QImage::Format_RGB32);
    tiny.fill(Qt::white);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    tiny.save(&buffer, "png");
    // The IHDR's width and height stand at bytes 16 to 23, its CRC (over
    // the chunk's type and data) at 29 to 32.
    const auto putBigEndian = [&png](int at, quint32 value) {
        for (int i = 0; i < 4; ++i)
            png[at + i] = char((value >> (24 - 8 * i)) & 0xFF);
    };
    putBigEndian(16, 20000);
    putBigEndian(20, 20000);
    quint32 crc = 0xFFFFFFFF;
    for (int i = 12; i < 29; ++i) {
        crc ^= quint8(png[i]);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    putBigEndian(29, ~crc);
    write(file(QStringLiteral("huge.png")), png);

    const long before = maxResidentKb();
    EXPECT_EQ(manager.ConvertToJpg(file(QStringLiteral("huge.png")), file(QStringLiteral("huge.jpg")), 75), 0);
    EXPECT_EQ(MError::ErrorDescription(),
              QStringLiteral("The picture huge.png is 20000 x 20000 pixels: more than the 120 million pixels a picture "
                             "may have here. Make it smaller in a picture program first."));
    MError::ClearError();
    EXPECT_EQ(manager.ScaleImage(file(QStringLiteral("huge.png")), file(QStringLiteral("huge2.png")), 100, 100), 0);
    EXPECT_LT(maxResidentKb() - before, 100 * 1024);
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("huge.jpg"))));
}
