#include "shell/MarkedPageRepair.h"

#include "aspfilter/ASPMarkers.h"
#include "shell/ASPTagging.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"

#include <QRegularExpression>

namespace {
constexpr long kMsgRepaired = 23000;
}

bool MarkedPageRepair::IsMarked(const QByteArray &source)
{
    return source.contains(ASPMarkers::StartMarker);
}

// The wrappers are fixed texts around a five-digit number; what lies
// between a start and its end is the block as it was written.
QByteArray MarkedPageRepair::StripMarkers(const QByteArray &source)
{
    const QString id = QStringLiteral("IDNUM");
    const QString start = QRegularExpression::escape(ASPMarkers::StartWrapper(id)).replace(id, QStringLiteral("\\d{5}"));
    const QString end = QRegularExpression::escape(ASPMarkers::EndWrapper(id)).replace(id, QStringLiteral("\\d{5}"));
    // Today's marks are two comments around each region; the wrappers above
    // are what sessions of earlier versions left.
    const QString comments = QStringLiteral("<!--keldasp(?:IN|OUT)#\\d{5}-->");
    QString text = QString::fromLatin1(source);
    text.remove(QRegularExpression(start + QLatin1Char('|') + end + QLatin1Char('|') + comments));
    return text.toLatin1();
}

long MarkedPageRepair::Repair(CFTPS &ftp, const QString &strURL, QByteArray &source)
{
    if (!IsMarked(source))
        return 1;
    const QString full = ASPTagging::FullServerPath(strURL);
    QByteArray original;
    const QString copy = full.left(full.lastIndexOf(QLatin1Char('/')) + 1) + ASPTagging::BackupName(strURL);
    const bool fromCopy = ftp.GetASCIIFile(copy, original) == 1 && !original.isEmpty() && !IsMarked(original);
    if (!fromCopy) {
        // No usable copy: the page's own text is the way back.
        MError::ClearError();
        original = StripMarkers(source);
    }
    if (ftp.SendPage(original, full) != 1)
        return 0;
    source = original;
    UserQuestions::MsgBox(MResources::LoadResourceString(kMsgRepaired).arg(strURL), UserQuestions::vbInformation);
    return 1;
}
