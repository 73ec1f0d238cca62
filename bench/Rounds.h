#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

/// Two ways of doing the same, measured in alternating rounds, so that what else the machine does hits both.
struct Contest {
    const char* szName;
    double dLimit;
    std::function<void()> ours;
    std::function<void()> theirs;
    /// Before each run of either side, outside the measured time.
    std::function<void()> prepare = {};
    int nRounds = 7;
};

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n % 2 != 0 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

/// Prints both medians in milliseconds and "ratio NAME: X.XX (limit Y)"; true when the limit is kept.
inline bool Run(const Contest& contest) {
    const auto time = [&](const std::function<void()>& side) {
        if (contest.prepare)
            contest.prepare();
        const auto begin = std::chrono::steady_clock::now();
        side();
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
    };
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int i = 0; i < contest.nRounds; ++i) {
        // Who goes first changes too.
        if (i % 2 == 0)
            ours.push_back(time(contest.ours));
        theirs.push_back(time(contest.theirs));
        if (i % 2 != 0)
            ours.push_back(time(contest.ours));
    }
    const double dRatio = Median(ours) / Median(theirs);
    std::printf("%s: ours %.2f ms, theirs %.2f ms\nratio %s: %.2f (limit %g)\n", contest.szName, Median(ours),
                Median(theirs), contest.szName, dRatio, contest.dLimit);
    std::fflush(stdout);
    return dRatio <= contest.dLimit;
}
