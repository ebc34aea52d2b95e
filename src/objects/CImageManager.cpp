#include "objects/CImageManager.h"

#include "support/MError.h"
#include "support/MResources.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

namespace {

enum Text : long { txtNotAPicture = 17835, txtTooLarge = 17836, txtCutShort = 17837, txtNotWritten = 17838 };

// The mark in the files this program writes, read back by GetIsModified.
const QString kMarkKey = QStringLiteral("Software");
const QString kMark = QStringLiteral("keldacms");

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QString Position(const char *procedure)
{
    return QStringLiteral("CImageManager.") + QLatin1String(procedure);
}

QString NameOf(const QString &path)
{
    return QFileInfo(path).fileName();
}

bool IsJpegName(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg") || suffix == QLatin1String("jpe");
}

} // namespace

long CImageManager::Refuse(const QString &text, const QString &strPosition_p)
{
    MError::SetErrorIfClear(kInvalidPicture, text, strPosition_p);
    return 0;
}

// The header alone is read: the format, and the size, which is turned
// when the picture carries an orientation that stands it on its side.
long CImageManager::CheckHeader(const QString &strFile_p, QSize &size, const QString &strPosition_p)
{
    QImageReader reader(strFile_p);
    reader.setAutoTransform(true);
    if (!QFileInfo(strFile_p).isFile() || !reader.canRead())
        return Refuse(L(txtNotAPicture).arg(NameOf(strFile_p), reader.errorString()), strPosition_p);
    size = reader.size();
    if (!size.isValid())
        return Refuse(L(txtNotAPicture).arg(NameOf(strFile_p), reader.errorString()), strPosition_p);
    if (qint64(size.width()) * size.height() > kMaxPixels)
        return Refuse(L(txtTooLarge).arg(NameOf(strFile_p)).arg(size.width()).arg(size.height()).arg(kMaxPixels / 1'000'000),
                      strPosition_p);
    if (reader.transformation() & QImageIOHandler::TransformationRotate90)
        size.transpose();
    return 1;
}

// A JPEG's entropy-coded data never holds the end marker FF D9, so a whole
// file has one after its last scan header (FF DA). A thumbnail in the
// header brings a pair of its own earlier on, which this rule looks past.
bool CImageManager::TruncatedJpeg(const QString &strFile_p)
{
    QFile file(strFile_p);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    if (!bytes.startsWith("\xFF\xD8"))
        return false;
    return bytes.lastIndexOf("\xFF\xD9") < bytes.lastIndexOf("\xFF\xDA");
}

long CImageManager::Read(const QString &strFile_p, QImage &image, const QString &strPosition_p)
{
    QSize size;
    if (CheckHeader(strFile_p, size, strPosition_p) != 1)
        return 0;
    QImageReader reader(strFile_p);
    reader.setAutoTransform(true);
    // The header was checked; the allocation limit guards against a
    // decoder that finds more than the header said.
    reader.setAllocationLimit(int(kMaxPixels * 4 / (1024 * 1024)) + 1);
    if (reader.format() == "jpeg" && TruncatedJpeg(strFile_p))
        return Refuse(L(txtCutShort).arg(NameOf(strFile_p)), strPosition_p);
    if (!reader.read(&image) || image.isNull())
        return Refuse(L(txtNotAPicture).arg(NameOf(strFile_p), reader.errorString()), strPosition_p);
    return 1;
}

// JPEG has no transparency: the picture is painted on white first, where
// a plain conversion would show the transparent parts black. Every file
// written carries the program's mark.
long CImageManager::Write(const QImage &image, const QString &strDestFile_p, long quality, const QString &strPosition_p)
{
    const bool jpeg = IsJpegName(strDestFile_p);
    QImage out = image;
    if (jpeg && image.hasAlphaChannel()) {
        out = QImage(image.size(), QImage::Format_RGB32);
        out.fill(Qt::white);
        QPainter painter(&out);
        painter.drawImage(0, 0, image);
    }
    QImageWriter writer(strDestFile_p, jpeg ? "jpeg" : "png");
    writer.setText(kMarkKey, kMark);
    if (jpeg) {
        writer.setQuality(int(std::clamp(quality, 1L, 100L)));
        writer.setOptimizedWrite(true);
        writer.setProgressiveScanWrite(true);
    }
    if (writer.write(out))
        return 1;
    const QString reason = writer.errorString();
    QFile::remove(strDestFile_p);
    MError::SetErrorIfClear(75, L(txtNotWritten).arg(strDestFile_p, reason), strPosition_p);
    return 0;
}

long CImageManager::ConvertToJpg(const QString &strSourceFile_p, const QString &strDestFile_p, long quality)
{
    QImage image;
    if (Read(strSourceFile_p, image, Position("ConvertToJpg")) != 1)
        return 0;
    return Write(image, strDestFile_p, quality, Position("ConvertToJpg"));
}

// A scaled JPEG keeps a high quality: the compression is a step of its own.
long CImageManager::ScaleImage(const QString &strSourceFile_p, const QString &strDestFile_p, long lWidth_p, long lHeight_p)
{
    if (lWidth_p < 1 || lHeight_p < 1 || qint64(lWidth_p) * lHeight_p > kMaxPixels)
        return Refuse(L(txtTooLarge).arg(NameOf(strDestFile_p)).arg(lWidth_p).arg(lHeight_p).arg(kMaxPixels / 1'000'000),
                      Position("ScaleImage"));
    QImage image;
    if (Read(strSourceFile_p, image, Position("ScaleImage")) != 1)
        return 0;
    const QImage scaled = image.scaled(int(lWidth_p), int(lHeight_p), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return Write(scaled, strDestFile_p, 90, Position("ScaleImage"));
}

long CImageManager::IsShrunken(const QString &strSourceFile_p, long lWidth_p, long lHeight_p, bool &boolResult_p)
{
    long width = 0, height = 0;
    boolResult_p = false;
    if (GetImageSize(strSourceFile_p, width, height) != 1)
        return 0;
    boolResult_p = width > lWidth_p || height > lHeight_p;
    return 1;
}

long CImageManager::GetImageSize(const QString &strSourceFile_p, long &lWidth_p, long &lHeight_p)
{
    QSize size;
    lWidth_p = lHeight_p = 0;
    if (CheckHeader(strSourceFile_p, size, Position("GetImageSize")) != 1)
        return 0;
    lWidth_p = size.width();
    lHeight_p = size.height();
    return 1;
}

long CImageManager::GetIsModified(const QString &strSourceFile_p, long &lIsModified_p)
{
    QImageReader reader(strSourceFile_p);
    lIsModified_p = reader.canRead() && reader.text(kMarkKey) == kMark ? 1 : 0;
    return 1;
}

QString CImageManager::ScaledSuffix(const QString &strSourceFile_p)
{
    return IsJpegName(strSourceFile_p) ? QStringLiteral("jpg") : QStringLiteral("png");
}

bool CImageManager::IsAnimated(const QString &strSourceFile_p)
{
    QImageReader reader(strSourceFile_p);
    return reader.supportsAnimation() && reader.imageCount() > 1;
}
