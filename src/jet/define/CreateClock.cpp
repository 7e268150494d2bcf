#include "jet/define/CreateClock.h"

#include <chrono>
#include <ctime>

namespace tavrel::jet {

double LocalNow() {
    using std::chrono::sys_days;
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    const std::chrono::year_month_day day{std::chrono::year{local->tm_year + 1900},
                                          std::chrono::month{static_cast<unsigned>(local->tm_mon + 1)},
                                          std::chrono::day{static_cast<unsigned>(local->tm_mday)}};
    const sys_days epoch{std::chrono::year{1899} / 12 / 30};
    constexpr double kSecondsPerDay = 86400;
    const int seconds = (local->tm_hour * 60 + local->tm_min) * 60 + local->tm_sec;
    return static_cast<double>((sys_days{day} - epoch).count()) + seconds / kSecondsPerDay;
}

}  // namespace tavrel::jet
