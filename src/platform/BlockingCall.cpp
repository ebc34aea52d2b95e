#include "BlockingCall.h"

#include <QEventLoop>
#include <QMetaObject>

#include <thread>

void BlockingCall::run(const std::function<void()> &work)
{
    QEventLoop loop;
    // The quit is queued behind the events the work posted, in order, so
    // the caller sees them all before the call returns.
    std::thread worker([&loop, &work] {
        work();
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
}
