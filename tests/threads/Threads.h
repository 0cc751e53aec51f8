// Threads: runs parts of a test at the same time.
#pragma once

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace havtest {

// Runs `body`, with numbers from 0 on, on as many threads, none of which begins before all are
// there, and waits for them.
inline void OnThreads(int count, const std::function<void(int)>& body) {
  std::atomic<int> waiting{count};
  std::vector<std::thread> threads;
  for (int number = 0; number < count; ++number)
    threads.emplace_back([&, number] {
      --waiting;
      while (waiting != 0) std::this_thread::yield();
      body(number);
    });
  for (auto& thread : threads) thread.join();
}

}  // namespace havtest
