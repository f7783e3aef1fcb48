#include "common/worker_thread.h"

namespace glimmer {

namespace {

thread_local bool isWorker = false;

}  // namespace

WorkerThread::WorkerThread() { isWorker = true; }
WorkerThread::~WorkerThread() { isWorker = false; }

bool WorkerThread::isThis() { return isWorker; }

}  // namespace glimmer
