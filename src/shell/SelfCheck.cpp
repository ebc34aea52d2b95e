#include "shell/SelfCheck.h"

#include "platform/EngineProfile.h"
#include "platform/PageScriptCall.h"
#include "shell/frmVindrell.h"
#include "support/MResources.h"
#include "support/StringIds.h"

#include <QWebEnginePage>

#include <cstdio>

int SelfCheck::Run(frmVindrell &window)
{
    const QStringList problems = Problems(window);
    for (const QString &problem : problems)
        std::fprintf(stderr, "keldacms: self-check: %s\n", problem.toLocal8Bit().constData());
    if (!problems.isEmpty())
        return 1;
    std::printf("keldacms: self-check passed\n");
    return 0;
}

QStringList SelfCheck::Problems(frmVindrell &window)
{
    QStringList problems;
    if (MResources::LoadResourceString(StringIds::PageNotOnServer).isEmpty())
        problems << QStringLiteral("the string table is missing");
    if (!PageScriptCall::pumpUntil([&window] { return window.isVisible(); }, 10000))
        problems << QStringLiteral("the main window did not show");
    if (!EngineRenders())
        problems << QStringLiteral("the page engine did not render a page");
    return problems;
}

bool SelfCheck::EngineRenders()
{
    QWebEnginePage page(EngineProfile::Shared());
    bool loaded = false;
    QObject::connect(&page, &QWebEnginePage::loadFinished, [&loaded](bool ok) { loaded = ok; });
    page.setHtml(QStringLiteral("<p>self-check</p>"));
    return PageScriptCall::pumpUntil([&loaded] { return loaded; }, 30000);
}
