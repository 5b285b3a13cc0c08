#pragma once

/// Marks what the shared library `orb_zero` offers to its users; all else stays hidden.
#define ORB_ZERO_API __attribute__((visibility("default")))
