#pragma once

#include <QImage>
#include <QString>

// The picture work of the image object: sizes read from a file's header,
// copies scaled or compressed to JPEG. Every file is read upright (a phone
// photo with an orientation mark is turned as its camera meant it) and
// checked before it is decoded: a file that is no picture, a JPEG cut
// short, or one whose header declares more pixels than fit in memory is
// refused with a text that names the file. Each operation gives 1, or 0
// with the error pending; nothing is written on a failure.
class CImageManager
{
public:
    // The most pixels a picture may have. 120 million take about 480 MB
    // while the picture is worked on, and cover the largest photos of
    // today's phones and cameras; a picture beyond it is refused from its
    // header, before any of it is decoded.
    static constexpr qint64 kMaxPixels = 120'000'000;
    // VB's number for a picture that can't be loaded.
    static constexpr long kInvalidPicture = 481;

    // A JPEG of the picture at the quality (1 to 100), optimised and
    // progressive. Transparent parts stand on white.
    long ConvertToJpg(const QString &strSourceFile_p, const QString &strDestFile_p, long quality);
    // A copy at the size, smoothly scaled, in the kind of file its name
    // says (".jpg", ".png"): see ScaledSuffix.
    long ScaleImage(const QString &strSourceFile_p, const QString &strDestFile_p, long lWidth_p, long lHeight_p);
    // Whether the file has more pixels than the size, in either direction.
    long IsShrunken(const QString &strSourceFile_p, long lWidth_p, long lHeight_p, bool &boolResult_p);
    // The size as the picture stands upright, from the header alone.
    long GetImageSize(const QString &strSourceFile_p, long &lWidth_p, long &lHeight_p);
    // 1 in lIsModified_p when this program wrote the file (a compressed or
    // scaled copy), else 0.
    long GetIsModified(const QString &strSourceFile_p, long &lIsModified_p);

    // The file kind a scaled copy of the source is written in: "jpg" for a
    // JPEG, "png" for everything else, since GIF and BMP can't be written
    // back as they came (a GIF loses its animation: the dialog says so).
    static QString ScaledSuffix(const QString &strSourceFile_p);
    // Whether the source is an animated GIF (more than one frame).
    static bool IsAnimated(const QString &strSourceFile_p);

private:
    long Read(const QString &strFile_p, QImage &image, const QString &strPosition_p);
    long CheckHeader(const QString &strFile_p, QSize &size, const QString &strPosition_p);
    long Write(const QImage &image, const QString &strDestFile_p, long quality, const QString &strPosition_p);
    static bool TruncatedJpeg(const QString &strFile_p);
    static long Refuse(const QString &text, const QString &strPosition_p);
};
