#include "formats/geotiff/in_order.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace formats::geotiff {

InOrder::InOrder(std::size_t workers) {
    constexpr std::size_t kMost = 8;
    if (workers == 0)
        workers = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMost);
    try {
        while (threads_.size() < workers) threads_.emplace_back(&InOrder::work, this);
    } catch (const std::system_error&) {
        if (threads_.empty()) throw;  // fewer than wished will do
    }
}

InOrder::~InOrder() {
    drop();
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    changed_.notify_all();
    for (std::thread& each : threads_) each.join();
}

void InOrder::work() {
    for (;;) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return ended_ || !jobs_.empty(); });
        if (jobs_.empty()) return;
        std::packaged_task<Result()> job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        job();
    }
}

void InOrder::add(std::function<Result()> job, std::function<void(Result)> take) {
    while (waiting_.size() >= 2 * threads_.size()) takeFirst();
    std::packaged_task<Result()> task(std::move(job));
    waiting_.push_back({task.get_future(), std::move(take)});
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(task));
    }
    changed_.notify_one();
}

void InOrder::takeFirst() {
    Waiting first = std::move(waiting_.front());
    waiting_.pop_front();
    first.take(first.result.get());
}

void InOrder::wait() {
    while (!waiting_.empty()) takeFirst();
}

void InOrder::drop() {
    {
        const std::lock_guard lock(mutex_);
        jobs_.clear();
    }
    for (const Waiting& each : waiting_) each.result.wait();
    waiting_.clear();
}

}  // namespace formats::geotiff
