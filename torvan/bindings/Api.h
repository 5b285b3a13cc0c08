#pragma once

/// Marks what the shared library `torvan_bindings` offers to its users; all else stays hidden.
#define TORVAN_BINDINGS_API __attribute__((visibility("default")))
