#pragma once

#include <QString>
#include <QVariant>

#include <functional>

class QWebEnginePage;

// Runs a script in the editor's script world of a page and waits for its
// result in a nested event loop, so the window keeps repainting and engine
// events keep coming. A script that throws, or that does not answer before
// the deadline, sets the pending error and gives an invalid value.
class PageScriptCall
{
public:
    static constexpr int DefaultDeadlineMs = 10000;
    static constexpr long TimeoutError = -25061;
    static constexpr long ScriptError = 70;

    // The world the editor's runtime lives in, apart from the page's own.
    static quint32 worldId();

    static QVariant run(QWebEnginePage *page, const QString &script,
                        const QString &position, int deadlineMs = DefaultDeadlineMs);

    // Calls a function of the runtime (e.g. "doc.info") with JSON arguments.
    static QVariant call(QWebEnginePage *page, const QString &function, const QVariantList &args,
                         const QString &position, int deadlineMs = DefaultDeadlineMs);

    // Calls a runtime function on the object behind a handle (an element or
    // a range); a missing page or handle is "Object variable not set".
    static QVariant callOnHandle(QWebEnginePage *page, int handle, const QString &function,
                                 QVariantList args, const QString &position);

    // A call is waiting for its page's answer somewhere down the stack.
    // Work that asks the page only for the look of the window waits until
    // none is: a call made from inside another one's wait can stall both
    // until their deadlines.
    static bool Waiting() { return s_nWaiting > 0; }

    // Pumps events until the condition holds; false when the deadline came
    // first.
    static bool pumpUntil(const std::function<bool()> &condition, int deadlineMs);

private:
    static inline int s_nWaiting = 0;
};
