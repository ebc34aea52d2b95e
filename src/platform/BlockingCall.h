#pragma once

#include <functional>

// Runs a piece of blocking work (a network call) on a worker thread while the
// calling thread keeps its event loop going in a nested QEventLoop, so that
// windows repaint, a Cancel button can be pressed and events queued by the
// work reach their receivers on the caller's thread. Returns when the work
// has ended and every event it queued before ending has been delivered.
class BlockingCall
{
public:
    static void run(const std::function<void()> &work);
};
