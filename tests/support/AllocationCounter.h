#pragma once

#include <atomic>

/// Counts the allocations of the whole program, by new or otherwise and on any thread.
extern std::atomic<long> allocations;
