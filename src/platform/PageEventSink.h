#pragma once

#include "platform/PageEvent.h"

#include <QObject>

// The object the page runtime talks to over the web channel.
class PageEventSink : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    Q_INVOKABLE void post(const QString &json);

signals:
    void pageEvent(const PageEvent &event);
};
