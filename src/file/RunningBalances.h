// RunningBalances: the balance after each line, in display order.
//
// An edited sum moves every balance below its line by the same amount.
// That move is remembered (from which line, by how many cents) rather
// than written into every entry: a read adds the whole cents of the moves
// that reach its line. Cents add exactly in any order, so a read gives the
// same number before and after the moves are folded into the entries,
// which happens once a few of them gather and before anything changes the
// number of entries: a read never adds more than a few. A move that is not
// a whole number of cents (a converted amount) is written at once.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace pelkor {

class RunningBalances {
public:
    std::size_t size() const { return base_.size(); }
    bool empty() const { return base_.empty(); }

    double operator[](std::size_t i) const
    {
        long long cents = 0;
        for (const Move& m : moves_)
            if (i >= m.from)
                cents += m.cents;
        return cents == 0 ? base_[i] : base_[i] + double(cents) / 100;
    }
    double back() const { return (*this)[base_.size() - 1]; }

    void set(std::size_t i, double v)
    {
        fold();
        base_[i] = v;
    }
    void clear()
    {
        base_.clear();
        moves_.clear();
    }
    void assign(std::size_t n, double v)
    {
        base_.assign(n, v);
        moves_.clear();
    }
    void resize(std::size_t n)
    {
        fold();
        base_.resize(n);
    }
    void push_back(double v)
    {
        fold();
        base_.push_back(v);
    }

    // Every balance from entry from on moves by delta.
    void shiftFrom(std::size_t from, double delta)
    {
        if (from >= base_.size() || delta == 0)
            return;
        const double cents = std::round(delta * 100);
        if (std::abs(delta * 100 - cents) > 1e-6 || std::abs(cents) > 1e15) {
            fold();
            for (std::size_t i = from; i < base_.size(); ++i)
                base_[i] += delta;
            return;
        }
        if (!moves_.empty() && moves_.back().from == from) {
            moves_.back().cents += (long long)cents;   // the same line edited again
            return;
        }
        if (moves_.size() == maxMoves)
            fold();
        moves_.push_back({from, (long long)cents});
    }
    // How many moves wait to be folded.
    std::size_t pendingMoves() const { return moves_.size(); }

private:
    struct Move {
        std::size_t from;
        long long cents;
    };
    static constexpr std::size_t maxMoves = 32;

    // Writes the waiting moves into the entries: one pass from the first
    // line any of them reaches, each entry given what a read adds.
    void fold()
    {
        if (moves_.empty())
            return;
        std::sort(moves_.begin(), moves_.end(), [](const Move& a, const Move& b) { return a.from < b.from; });
        long long cents = 0;
        std::size_t k = 0;
        for (std::size_t i = moves_.front().from; i < base_.size(); ++i) {
            while (k < moves_.size() && moves_[k].from <= i)
                cents += moves_[k++].cents;
            if (cents != 0)
                base_[i] += double(cents) / 100;
        }
        moves_.clear();
    }

    std::vector<double> base_;
    std::vector<Move> moves_;
};

} // namespace pelkor
