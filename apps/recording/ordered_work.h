// ordered_work.h - work on several threads whose results are used in order
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <future>
#include <thread>

/// Calls `work(i)` for all i below `count`, on as many threads at once as there are cores, and on
/// the calling thread `use(i, result)`, in order. A few results at most wait to be used. What
/// either throws ends it, when what has begun has ended.
template <typename Work, typename Use>
void WorkInOrder(std::size_t count, const Work& work, const Use& use) {
    using Result = decltype(work(std::size_t{}));
    const std::size_t most = std::max(2u, std::thread::hardware_concurrency());
    std::deque<std::future<Result>> begun; // waits for its threads when it is destroyed
    std::size_t next = 0;
    for (std::size_t at = 0; at < count; ++at) {
        for (; next < count && begun.size() < most; ++next) {
            begun.push_back(std::async(std::launch::async, [&work, next] { return work(next); }));
        }
        Result result = begun.front().get();
        begun.pop_front();
        use(at, result);
    }
}
