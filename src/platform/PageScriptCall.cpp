#include "platform/PageScriptCall.h"

#include "support/MError.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <memory>

quint32 PageScriptCall::worldId()
{
    return QWebEngineScript::ApplicationWorld + 7;
}

namespace {

// Shared with the engine's callback, which may come after the wait gave up.
struct Answer
{
    bool done = false;
    QVariant value;
};

} // namespace

QVariant PageScriptCall::run(QWebEnginePage *page, const QString &script,
                             const QString &position, int deadlineMs)
{
    if (!page) {
        MError::SetError(ScriptError, QStringLiteral("There is no page to run the script in."), position);
        return {};
    }
    // Exceptions come back as {e: text}; results as {v: value}.
    const QString wrapped = QStringLiteral(
        "(function(){try{return {v:(function(){return %1;})()};}"
        "catch(e){return {e:String(e&&e.message||e)};}})()").arg(script);
    auto answer = std::make_shared<Answer>();
    QEventLoop loop;
    QPointer<QEventLoop> guard(&loop);
    page->runJavaScript(wrapped, worldId(), [answer, guard](const QVariant &v) {
        answer->done = true;
        answer->value = v;
        if (guard)
            guard->quit();
    });
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
    deadline.start(deadlineMs);
    if (!answer->done) {
        ++s_nWaiting;
        loop.exec();
        --s_nWaiting;
    }
    if (!answer->done) {
        MError::SetError(TimeoutError,
                         QStringLiteral("The page did not answer within %1 seconds.")
                             .arg(deadlineMs / 1000.0),
                         position);
        return {};
    }
    const QVariantMap result = answer->value.toMap();
    if (result.contains(QStringLiteral("e"))) {
        MError::SetError(ScriptError, result.value(QStringLiteral("e")).toString(), position);
        return {};
    }
    if (!result.contains(QStringLiteral("v")) && !answer->value.isValid()) {
        MError::SetError(ScriptError, QStringLiteral("The page's script runtime is not loaded."), position);
        return {};
    }
    return result.value(QStringLiteral("v"));
}

QVariant PageScriptCall::call(QWebEnginePage *page, const QString &function,
                              const QVariantList &args, const QString &position, int deadlineMs)
{
    const QByteArray json = QJsonDocument(QJsonArray::fromVariantList(args)).toJson(QJsonDocument::Compact);
    const QString script = QStringLiteral("(function(){if(!window.__kelda)throw new Error("
                                          "'The page is not ready.');"
                                          "var a=%1;return __kelda.%2.apply(null,a);})()")
                               .arg(QString::fromUtf8(json), function);
    return run(page, script, position, deadlineMs);
}

QVariant PageScriptCall::callOnHandle(QWebEnginePage *page, int handle, const QString &function,
                                      QVariantList args, const QString &position)
{
    if (!page || handle == 0) {
        MError::SetError(ScriptError, QStringLiteral("Object variable not set"), position);
        return {};
    }
    args.prepend(handle);
    return call(page, function, args, position);
}

bool PageScriptCall::pumpUntil(const std::function<bool()> &condition, int deadlineMs)
{
    QDeadlineTimer deadline(deadlineMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QEventLoop loop;
        QTimer::singleShot(10, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}
