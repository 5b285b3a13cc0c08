#pragma once

namespace torvan::slicer {

/// The program `torvan-slice`. Returns its exit status; throws what makes it fail, with one line of
/// message.
int runApplication(int argc, char** argv);

}  // namespace torvan::slicer
