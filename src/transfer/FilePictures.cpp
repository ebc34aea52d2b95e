#include "transfer/FilePictures.h"

#include <QHash>
#include <QStringList>

long FilePictures::SetPictureIndex(const QString &strFileName_p)
{
    static const QHash<QString, long> images = [] {
        const std::pair<long, const char *> groups[] = {
            {4, "htm url html mht shtml"},
            {5, "asp cdx"},
            {6, "jpg jpeg bmp png tif tiff gif eps psd"},
            {7, "css"},
            {8, "js vbs jse sct wsc wsf vbe"},
            {9, "exe"},
            {10, "pdf edn fdf xfdf"},
            {11, "txt log ini text lnk"},
            {12, "doc wbk dochtml dothtml wiz dot rtf"},
            {13, "xls xlw xlc xlb xlt xla xlv"},
            {14, "ppt pphtml pothtml pps pwz pot ppa mdt mde mdb adp ade mda"},
            {16, "avi mv1 mv2 mp2v mpa mpeg mpe mpv2 wmp wmd wms wmz wax wma wlp"},
            {17, "wav"},
            {18, "qt mov"},
            {19, "mid"},
            {20, "swf"},
            {21, "java class"},
            {22, "arc arj b64 bhx cab gz hqx lzh mim tar tgz tz uu uue xxe zip rar"},
            {23, "ocx dll tlb sys vxd oca db"},
            {24, "cpp cc cxx c h"},
            {25, "hcx chm hhp hlp"},
            {26, "dsr frx frm vbp vbg vbw bas scc"},
        };
        QHash<QString, long> map;
        for (const auto &[image, extensions] : groups)
            for (const QString &extension : QString::fromLatin1(extensions).split(QLatin1Char(' ')))
                map.insert(extension, image);
        return map;
    }();
    const qsizetype dot = strFileName_p.lastIndexOf(QLatin1Char('.'));
    const QString extension = dot < 0 ? QString() : strFileName_p.mid(dot + 1).toLower();
    return images.value(extension, 27);
}
