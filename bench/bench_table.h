#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

/// What every bench prints: one row for each promise,
///     name<TAB>measured<TAB>baseline<TAB>ratio<TAB>limit
/// in milliseconds unless the name says otherwise. `./bench.sh` makes the table of them.
namespace bench {

inline constexpr int runs = 5;

inline double milliseconds(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

inline void printRow(const char *name, double measured, double baseline, double limit)
{
    std::printf("%s\t%.1f\t%.1f\t%.3f\t%.2f\n", name, measured, baseline, measured / baseline, limit);
    std::fflush(stdout);
}

/// Runs both in turn, so that a slow moment of the machine meets both, and prints the row of their medians.
inline void compare(const char *name, double limit, const std::function<void()> &work,
                    const std::function<void()> &baseline)
{
    std::vector<double> measured;
    std::vector<double> expected;
    for (int i = 0; i < runs; ++i) {
        expected.push_back(milliseconds(baseline));
        measured.push_back(milliseconds(work));
    }
    printRow(name, median(measured), median(expected), limit);
}

} // namespace bench
