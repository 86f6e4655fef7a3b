// Work that is done side by side, and taken in the order in which it was given.
#ifndef FORMATS_GEOTIFF_IN_ORDER_H
#define FORMATS_GEOTIFF_IN_ORDER_H

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace formats::geotiff {

class InOrder {
  public:
    using Result = std::vector<std::byte>;

    // Threads; 0 for one to a processor, 8 at most. What they make is given to take, which runs in
    // the thread that adds and waits.
    explicit InOrder(std::size_t workers);
    ~InOrder();
    InOrder(const InOrder&) = delete;
    InOrder& operator=(const InOrder&) = delete;

    // Waits while there is twice as much to do as there are threads. What a job throws is thrown
    // where its result would have been taken.
    void add(std::function<Result()> job, std::function<void(Result)> take);
    // Until all is taken.
    void wait();
    // What was added is not taken; in the end no job runs.
    void drop();

  private:
    struct Waiting {
        std::future<Result> result;
        std::function<void(Result)> take;
    };
    void work();
    void takeFirst();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::packaged_task<Result()>> jobs_;
    bool ended_ = false;
    std::deque<Waiting> waiting_;
    std::vector<std::thread> threads_;
};

}  // namespace formats::geotiff

#endif
