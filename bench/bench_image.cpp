// A 4000 x 3000 photo scaled down to 800 pixels wide and written as a JPEG
// at quality 75, as the picture dialog does it: the best time of several
// runs (read, scale, write) and the size of the result.

#include "objects/CImageManager.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

// Smooth gradients with some grain: about what a camera gives.
QImage Photo()
{
    QImage photo(4000, 3000, QImage::Format_RGB32);
    QRandomGenerator random(11);
    for (int y = 0; y < photo.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(photo.scanLine(y));
        for (int x = 0; x < photo.width(); ++x) {
            const int grain = int(random.bounded(24));
            line[x] = qRgb((x / 16 + grain) % 256, (y / 12 + grain) % 256, ((x + y) / 28 + grain) % 256);
        }
    }
    return photo;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("photo.jpg"));
    Photo().save(source, "jpeg", 92);
    const QString scaled = dir.filePath(QStringLiteral("scaled.jpg"));
    const QString small = dir.filePath(QStringLiteral("small.jpg"));
    CImageManager manager;
    qint64 best = -1;
    for (int run = 0; run < 5; ++run) {
        QElapsedTimer timer;
        timer.start();
        if (manager.ScaleImage(source, scaled, 800, 600) != 1 || manager.ConvertToJpg(scaled, small, 75) != 1) {
            std::fprintf(stderr, "the picture could not be worked on\n");
            return 1;
        }
        const qint64 ms = timer.elapsed();
        best = best < 0 ? ms : std::min(best, ms);
    }
    std::printf("scale_ms %lld ms\n", static_cast<long long>(best));
    std::printf("jpeg_kb %.1f kB\n", double(QFileInfo(small).size()) / 1000.0);
    return 0;
}
