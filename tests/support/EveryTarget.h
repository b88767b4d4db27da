#pragma once

#include <hwy/highway.h>
#include <hwy/targets.h>

#include <gtest/gtest.h>

#include <cstdint>

/// Runs \p body once for each instruction set that this machine has, and once for the plain
/// loops that serve machines without any of them.
template <typename Body>
void onEveryTarget(Body body)
{
    // Kernels that are compiled for one instruction set only are called without choosing.
    constexpr bool isChosen = (HWY_TARGETS & (HWY_TARGETS - 1)) != 0;
    const std::int64_t supported = hwy::SupportedTargets();
    for (std::int64_t rest = supported | HWY_SCALAR; rest != 0; rest &= rest - 1) {
        const std::int64_t target = rest & -rest;
        SCOPED_TRACE(hwy::TargetName(target));
        hwy::SetSupportedTargetsForTest(target);
        body();
        EXPECT_EQ(hwy::GetChosenTarget().IsInitialized(), isChosen) << "was a kernel called?";
    }
    hwy::SetSupportedTargetsForTest(0);
}
