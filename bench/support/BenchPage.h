#pragma once

#include "platform/WebBrowser.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <vector>

// What the page-engine benchmarks share: a generated page written to a
// temporary file, a shown browser to load it in, and the median of the
// timed rounds (one slow round on a busy machine must not move the figure).
class BenchPage
{
public:
    explicit BenchPage(const QByteArray &html);

    // False when the page could not be written.
    bool ok() const { return m_ok; }
    QString url() const { return m_url; }
    WebBrowser &browser() { return m_browser; }

    static double median(std::vector<double> runs);

    // A page of 5,000 elements: html, head, title, body, 500 images with the
    // given attributes, and the rest paragraph lines as given (each line two
    // elements, a paragraph and one child).
    static QByteArray fiveThousandElements(const QByteArray &imageAttributes,
                                           const QByteArray &paragraphLine);

private:
    QTemporaryDir m_folder;
    QString m_url;
    bool m_ok = false;
    WebBrowser m_browser;
};
