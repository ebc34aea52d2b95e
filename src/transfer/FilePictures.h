#pragma once

#include <QString>

// The image of a file in the trees, by the text behind its last ".": 4 a
// page, 5 a script page, 6 a picture, and so on to 27 for anything else.
// 1 and 2 are the folder images.
class FilePictures
{
public:
    static long SetPictureIndex(const QString &strFileName_p);
};
