#include "platform/PageEventSink.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

void PageEventSink::post(const QString &json)
{
    const QJsonObject o = QJsonDocument::fromJson(json.toUtf8()).object();
    PageEvent e;
    e.type = o.value(QStringLiteral("type")).toString();
    for (const QJsonValue &i : o.value(QStringLiteral("frame")).toArray())
        e.frame.append(i.toInt());
    e.element = o.value(QStringLiteral("element")).toInt();
    e.x = o.value(QStringLiteral("x")).toInt();
    e.y = o.value(QStringLiteral("y")).toInt();
    e.button = o.value(QStringLiteral("button")).toInt();
    e.keyCode = o.value(QStringLiteral("keyCode")).toInt();
    e.key = o.value(QStringLiteral("key")).toString();
    e.shift = o.value(QStringLiteral("shift")).toBool();
    e.ctrl = o.value(QStringLiteral("ctrl")).toBool();
    e.alt = o.value(QStringLiteral("alt")).toBool();
    e.cancelled = o.value(QStringLiteral("cancelled")).toBool();
    emit pageEvent(e);
}
