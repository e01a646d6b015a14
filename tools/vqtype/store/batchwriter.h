/// \file
/// Batches are written by a thread of their own, while the next one is read.
#ifndef VQTYPE_STORE_BATCHWRITER_H
#define VQTYPE_STORE_BATCHWRITER_H

#include <atomic>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

#include "load.h"

namespace store {

/// Writes batches in the order in which they are put. The store is the writer's as long as it lives.
class BatchWriter {
  public:
    /// `committed` is called in the writer's thread with each batch that is on the disk.
    BatchWriter(Store& store, std::function<void(const Batch&)> committed);
    /// Waits for what has been put.
    ~BatchWriter();

    /// Takes the batch over and leaves an empty one; waits while another one is waiting. Throws what writing one
    /// before has thrown: then nothing behind that is written.
    void Put(Batch& batch);
    /// Throws as Put does, where there is something to throw by now.
    void Check() const {
        if (hasFailed_) std::rethrow_exception(failure_);
    }
    /// Waits until all are written. Throws as Put does.
    void Finish();

  private:
    void Run();
    void WriteAll(std::unique_lock<std::mutex>& lock);
    void End();

    Store& store_;
    std::function<void(const Batch&)> committed_;
    std::mutex mutex_;
    std::condition_variable changed_;
    Batch waiting_;
    bool isWaiting_ = false, isEnding_ = false;
    std::exception_ptr failure_;
    std::atomic<bool> hasFailed_ = false;  // behind that, failure_ changes no more
    std::thread thread_;
};

}  // namespace store

#endif
