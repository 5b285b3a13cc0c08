#pragma once

/// Marks what the shared library `orb_zero_hb` offers to its users; all else stays hidden.
#define ORB_ZERO_HB_API __attribute__((visibility("default")))
