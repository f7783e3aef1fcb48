#pragma once

#include "common/assertion.h"

namespace glimmer {

/// Marks the thread that makes it as a worker: one that no window, option, setting or message box may be touched on.
class WorkerThread {
public:
    WorkerThread();
    ~WorkerThread();
    WorkerThread(const WorkerThread&) = delete;
    WorkerThread& operator=(const WorkerThread&) = delete;
    WorkerThread(WorkerThread&&) = delete;
    WorkerThread& operator=(WorkerThread&&) = delete;

    /// Whether this thread is one.
    static bool isThis();
};

}  // namespace glimmer

/// At the entrance of what belongs to the thread of the windows.
#define GLIMMER_ASSERT_NO_WORKER(unitName) \
    GLIMMER_ASSERT(!::glimmer::WorkerThread::isThis(), "!WorkerThread::isThis()", unitName)
