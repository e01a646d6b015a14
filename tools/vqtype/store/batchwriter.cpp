#include "batchwriter.h"

#include <utility>

namespace store {

namespace {

// The memory stays for the next batch.
void Empty(Batch& batch) {
    batch.bytes.clear();
    batch.ends.clear();
}

}  // namespace

BatchWriter::BatchWriter(Store& store, std::function<void(const Batch&)> committed)
    : store_(store), committed_(std::move(committed)), thread_([this] { Run(); }) {}

BatchWriter::~BatchWriter() { End(); }

void BatchWriter::Put(Batch& batch) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !isWaiting_ || hasFailed_; });
    Check();
    std::swap(waiting_, batch);
    Empty(batch);
    isWaiting_ = true;
    changed_.notify_all();
}

void BatchWriter::Finish() {
    End();
    Check();
}

void BatchWriter::End() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        changed_.notify_all();
    }
    if (thread_.joinable()) thread_.join();
}

void BatchWriter::Run() {
    std::unique_lock lock(mutex_);
    try {
        WriteAll(lock);
    } catch (...) {
        if (!lock.owns_lock()) lock.lock();
        failure_ = std::current_exception();
        hasFailed_ = true;
        changed_.notify_all();
    }
}

void BatchWriter::WriteAll(std::unique_lock<std::mutex>& lock) {
    for (Batch batch;;) {
        changed_.wait(lock, [this] { return isWaiting_ || isEnding_; });
        if (!isWaiting_) return;
        std::swap(batch, waiting_);
        isWaiting_ = false;
        changed_.notify_all();
        lock.unlock();
        WriteBatch(store_, batch);
        committed_(batch);
        lock.lock();
    }
}

}  // namespace store
