#pragma once
#include "io.h"
#include "runended.h"

namespace sm {

// What the top of the program does with a RunEnded: the closing texts of a
// fatal stop or a kill, the closing of the files, the wait for a key. Returns
// the process exit status.
int endrun(Io& io, const RunEnded& e);

}  // namespace sm
