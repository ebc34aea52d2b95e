#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

// One thread that lives as long as its owner and runs the owner's blocking
// work (network calls) one piece at a time, while the calling thread keeps
// its event loop going as BlockingCall does. A control that makes many
// short calls thus starts no thread per call.
class WorkerThread
{
public:
    WorkerThread();
    ~WorkerThread();
    WorkerThread(const WorkerThread &) = delete;
    WorkerThread &operator=(const WorkerThread &) = delete;

    // Returns when the work has ended and every event it queued before
    // ending has been delivered on the calling thread.
    void run(const std::function<void()> &work);
    // Whether the caller is the worker thread itself: work running there
    // calls on without another hop.
    bool IsCurrent() const { return std::this_thread::get_id() == m_thread.get_id(); }

private:
    void loop();

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_jobs;
    bool m_stopping = false;
    std::thread m_thread;
};
