// Scoped guards of the editing code: a flag set for a scope and put back
// as it was (the guards are saved and restored, never simply cleared), and
// the grid's redraw off for a scope.
#pragma once

#include "seams/grid/GridModel.h"

namespace pelkor {

class Suspend {
public:
    explicit Suspend(bool& flag) : flag_(flag), was_(flag) { flag_ = true; }
    ~Suspend() { flag_ = was_; }
    bool was() const { return was_; }
    Suspend(const Suspend&) = delete;
    Suspend& operator=(const Suspend&) = delete;

private:
    bool& flag_;
    bool was_;
};

// Redraw off for a scope, then back as it was however the scope ends.
class NoRedraw {
public:
    explicit NoRedraw(grid::GridModel& g) : g_(g), was_(g.Redraw()) { g_.setRedraw(false); }
    ~NoRedraw() { g_.setRedraw(was_); }
    NoRedraw(const NoRedraw&) = delete;
    NoRedraw& operator=(const NoRedraw&) = delete;

private:
    grid::GridModel& g_;
    bool was_;
};

} // namespace pelkor
