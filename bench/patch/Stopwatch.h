// Time that passes and time at work.
#pragma once

#include <chrono>
#include <ctime>

namespace tavrel::bench {

/// Seconds.
struct Cost {
    double passed = 0;
    double atWork = 0;  ///< the processor's, of the whole process

    Cost& operator+=(const Cost& other) {
        passed += other.passed;
        atWork += other.atWork;
        return *this;
    }
};

class Stopwatch {
  public:
    [[nodiscard]] Cost Read() const {
        return {std::chrono::duration<double>(Clock::now() - start_).count(),
                double(std::clock() - startAtWork_) / CLOCKS_PER_SEC};
    }

  private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point start_ = Clock::now();
    std::clock_t startAtWork_ = std::clock();
};

}  // namespace tavrel::bench
