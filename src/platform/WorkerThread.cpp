#include "WorkerThread.h"

#include <QEventLoop>
#include <QMetaObject>

WorkerThread::WorkerThread()
    : m_thread([this] { loop(); })
{
}

WorkerThread::~WorkerThread()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void WorkerThread::run(const std::function<void()> &work)
{
    QEventLoop loop;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        // The quit is queued behind the events the work posted, in order.
        m_jobs.push_back([&loop, &work] {
            work();
            QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
        });
    }
    m_wake.notify_one();
    loop.exec();
}

void WorkerThread::loop()
{
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_wake.wait(lock, [this] { return m_stopping || !m_jobs.empty(); });
            if (m_jobs.empty())
                return;
            job = std::move(m_jobs.front());
            m_jobs.pop_front();
        }
        job();
    }
}
