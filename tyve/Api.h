#pragma once

/// Marks what the shared library `tyve` offers to its users; all else stays hidden.
#define TYVE_API __attribute__((visibility("default")))
