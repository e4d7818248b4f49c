// RunningBalances: the balance after each line, in display order.
//
// The balance of line i is In less out of every line from the first to i,
// added as doubles in display order from 0 (nextBalance), as a load adds
// them. That one number is what the balance cell prints, what colours it
// and what the credit test judges; nothing else is kept beside it.
//
// An edited sum makes every balance from its line on stale. Stale balances
// are worked out again when one of them is next read, from the first stale
// one down to the one read, by the same additions in the same order, so a
// read gives the digits a fresh load of the same lines gives. An edit near
// the top of a long ledger therefore costs nothing until the rows below it
// are read (a view reads the rows that show).
#pragma once

#include "file/Lines.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace pelkor {

// The balance after line L, given the balance before it. Sums are added in
// display order, as doubles, In first.
inline double nextBalance(double before, const Line& L) { return before + L.In - L.out; }

class RunningBalances {
public:
    // Follows lines: one balance per line, whatever the count.
    explicit RunningBalances(const std::vector<Line>& lines) : lines_(lines) {}
    RunningBalances(const RunningBalances&) = delete;
    RunningBalances& operator=(const RunningBalances&) = delete;

    std::size_t size() const { return lines_.size(); }
    bool empty() const { return lines_.empty(); }

    double operator[](std::size_t i) const
    {
        if (i >= fresh_ || values_.size() != lines_.size())
            workOut(i);
        return values_[i];
    }
    double back() const { return (*this)[lines_.size() - 1]; }

    // The sums of line i changed, or lines from i on were added, removed or
    // replaced: the balances from i on are worked out again when read.
    void staleFrom(std::size_t i) { fresh_ = std::min(fresh_, i); }
    // Every balance is stale (a load replaced the lines).
    void clear() { fresh_ = 0; }

private:
    void workOut(std::size_t i) const
    {
        const std::size_t n = lines_.size();
        if (values_.size() != n) {
            fresh_ = std::min(fresh_, std::min(values_.size(), n));
            values_.resize(n);
        }
        double balance = fresh_ == 0 ? 0 : values_[fresh_ - 1];
        const Line* L = lines_.data();
        for (std::size_t k = fresh_; k <= i && k < n; ++k)
            values_[k] = balance = nextBalance(balance, L[k]);
        fresh_ = std::max(fresh_, std::min(i + 1, n));
    }

    const std::vector<Line>& lines_;
    mutable std::vector<double> values_;
    mutable std::size_t fresh_ = 0;   // values_[0, fresh_) are up to date
};

} // namespace pelkor
