#include "BenchPage.h"

#include <QFile>
#include <QUrl>

#include <algorithm>

BenchPage::BenchPage(const QByteArray &html)
{
    QFile file(m_folder.filePath(QStringLiteral("big.htm")));
    m_ok = file.open(QIODevice::WriteOnly) && file.write(html) == html.size();
    file.close();
    m_url = QUrl::fromLocalFile(file.fileName()).toString();
    m_browser.resize(800, 600);
    m_browser.show();
}

double BenchPage::median(std::vector<double> runs)
{
    std::sort(runs.begin(), runs.end());
    return runs.empty() ? 0 : runs[runs.size() / 2];
}

QByteArray BenchPage::fiveThousandElements(const QByteArray &imageAttributes,
                                           const QByteArray &paragraphLine)
{
    QByteArray html = "<html><head><title>Big</title></head><body>\n";
    int elements = 4;
    for (int i = 0; i < 500; ++i, ++elements)
        html += "<img src=\"x.png\" width=\"4\" height=\"4\"" + imageAttributes + ">\n";
    while (elements < 5000) {
        html += paragraphLine + "\n";
        elements += 2;
    }
    return html + "</body></html>\n";
}
