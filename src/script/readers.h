#pragma once
// Typed readers of the info record. Each tests the current line's items; a
// fault is told on screen and log, and is fatal with strictscripting, or a
// counted problem with the value treated as absent.
#include <string_view>

#include "console/types.h"

namespace sm {

struct Run;

bool scriptreal(Run& run, std::string_view keyword, real low, real high);
bool scriptreals(Run& run, std::string_view keyword, int& n);
bool scriptint(Run& run, std::string_view keyword, int low, int high);
bool scriptints(Run& run, std::string_view keyword, int& n);
bool scriptstring(Run& run, std::string_view keyword);
bool scriptstrings(Run& run, std::string_view keyword, int& n);

// Pressure and temperature items: 0 accepted, 1 repaired (a problem is
// counted and a limit or the old value used). Temperatures are written in
// Celsius and stored in kelvin.
int scriptP(Run& run, std::string_view keyword, real& p, int i);
int scriptT(Run& run, std::string_view keyword, real& t, int i);
int scriptPrange(Run& run, std::string_view keyword, real& low, real& high, int i);
int scriptTrange(Run& run, std::string_view keyword, real& low, real& high, int i);

// The common end of a reader's fault: told on screen and log, fatal with
// strictscripting, otherwise counted with `closing` said; always false.
bool scriptfault(Run& run, std::string_view keyword, const std::string& message,
                 const char* bombtext, const char* closing);

// Pmin as the messages print it.
std::string Pminstr(real pmin);

}  // namespace sm
