// How far a wheel was turned in one direction along one axis.

#pragma once

class ScrollAccumulator final
{
public:
    // False when the direction turned: nothing is added and the sum is zero.
    bool add(double delta)
    {
        if (double(_sum) * delta < 0) {
            _sum = 0;
            return false;
        }
        _sum = float(double(_sum) + delta);
        return true;
    }

    // The direction, 1 or -1, and the sum starts anew, when it has passed the threshold; else 0.
    int takeStep(float threshold)
    {
        const int step = _sum > threshold ? 1 : _sum < -threshold ? -1 : 0;
        if (step != 0) {
            _sum = 0;
        }
        return step;
    }

    void clear() { _sum = 0; }

private:
    float _sum = 0;
};
