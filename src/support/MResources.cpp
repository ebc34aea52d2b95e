#include "support/MResources.h"

#include "support/EnvironmentSettings.h"
#include "support/MError.h"

#include <QCoreApplication>

#include <QFile>
#include <QHash>
#include <QStringList>

namespace {
long g_lLanguage = 1033;
QList<MResources::Language> g_aLanguages;

QString unescape(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != QLatin1Char('\\') || i + 1 == text.size()) {
            out += c;
            continue;
        }
        const QChar next = text.at(++i);
        out += next == QLatin1Char('n') ? QChar(QLatin1Char('\n'))
             : next == QLatin1Char('t') ? QChar(QLatin1Char('\t'))
                                        : next;
    }
    return out;
}

// language -> id -> text, read once from the compiled-in table.
const QHash<long, QHash<long, QString>> &table()
{
    static const QHash<long, QHash<long, QString>> texts = [] {
        QHash<long, QHash<long, QString>> result;
        QFile file(QStringLiteral(":/keldacms/strings.tsv"));
        if (!file.open(QIODevice::ReadOnly))
            return result;
        QList<long> languages;
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
                continue;
            const QStringList cells = line.split(QLatin1Char('\t'));
            if (languages.isEmpty()) { // the header: id, then one column per language
                for (qsizetype i = 1; i < cells.size(); ++i)
                    languages.append(cells.at(i).trimmed().toLong());
                continue;
            }
            const long id = cells.at(0).toLong();
            for (qsizetype i = 1; i < cells.size() && i <= languages.size(); ++i) {
                if (!cells.at(i).isEmpty())
                    result[languages.at(i - 1)].insert(id, unescape(cells.at(i)));
            }
        }
        return result;
    }();
    return texts;
}
} // namespace

long MResources::InitLangSupport()
{
    g_aLanguages = {{QStringLiteral("English"), 1033}, {QStringLiteral("Swedish"), 1053}};
    g_lLanguage = EnvironmentSettings::Lang();
    return 1;
}

long MResources::GetLanguages(QList<Language> &aLangs_p)
{
    aLangs_p = g_aLanguages;
    return 1;
}

QString MResources::LoadResourceString(long id)
{
    return LoadResourceString(id, g_lLanguage);
}

QString MResources::LoadResourceString(long id, long language)
{
    // A language of 0 was never chosen: English.
    const auto &texts = table();
    if (texts.isEmpty()) {
        // The table is built into the program; its absence is a fault of the
        // build, unlike a single missing text, which is merely empty.
        MError::SetErrorIfClear(-1, QStringLiteral("The string table could not be read."),
                                QStringLiteral("MResources.LoadResourceString {line : 1 recourceNum = ")
                                    + QString::number(id) + QStringLiteral(" App.Path ")
                                    + QCoreApplication::applicationDirPath());
        return QString();
    }
    return texts.value(language == 0 ? 1033 : language).value(id);
}

long MResources::CurrentLanguage()
{
    return g_lLanguage;
}

void MResources::SetCurrentLanguage(long language)
{
    g_lLanguage = language;
}
