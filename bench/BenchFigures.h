#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

// Medians and worst cases of timings over runs, one line a measure, beside
// the target the measure is held to.
inline double msSince(std::chrono::steady_clock::time_point from,
                      std::chrono::steady_clock::time_point to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

inline double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.size() % 2 == 1 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2;
}

inline void report(const char* what, const std::vector<double>& values, double target) {
    std::printf("%-56s median %8.1f ms  worst %8.1f ms  target %5.0f ms  (%zu samples)\n", what,
                median(values), *std::max_element(values.begin(), values.end()), target,
                values.size());
}
