#pragma once

#include <chrono>

/// Adds the time from its construction to its destruction to a sum in milliseconds.
class Stopwatch
{
public:
    explicit Stopwatch(double& milliseconds)
        : sum(milliseconds)
        , begin(std::chrono::steady_clock::now())
    {
    }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;
    ~Stopwatch()
    {
        using Milliseconds = std::chrono::duration<double, std::milli>;
        sum += Milliseconds(std::chrono::steady_clock::now() - begin).count();
    }

private:
    double& sum;
    const std::chrono::steady_clock::time_point begin;
};
