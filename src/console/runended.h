#pragma once
// The one way a run ends early. bomb() and killrun() throw RunEnded; the
// program's top catches it once, writes the closing texts, closes and deletes
// files, waits for a key where it should, and exits with status 0.
#include <string>

namespace sm {

struct RunEnded {
    // bombed and killed end with status 0; a file that cannot be created or
    // written ends the process at once with a line on standard error and
    // status 1 (iofailure), as any failed write of the operating system would.
    enum Kind { bombed, killed, iofailure } kind = bombed;
    std::string where;
    std::string message;
    int internal = 0;
};

// The fatal exit: `where` is the routine in the user's words, `message` what
// went wrong; `internal` 1 marks a condition that input should never reach.
[[noreturn]] void bomb(const std::string& where, const std::string& message, int internal);

// The user's word "kill" at any prompt.
[[noreturn]] void killrun();

// A file that cannot be created or written: `name` is the file.
[[noreturn]] void iofailure(const std::string& name);

}  // namespace sm
