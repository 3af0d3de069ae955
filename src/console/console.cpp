#include "console.h"

#include <cstdio>
#include <cstdlib>

namespace sm {

void StdConsole::write(std::string_view bytes) {
    if (bytes.empty()) return;
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size()) {
        std::fputs("stratamath: cannot write to the console\n", stderr);
        std::exit(1);
    }
}

bool StdConsole::readline(std::string& line) {
    line.clear();
    int ch;
    bool any = false;
    while ((ch = std::getchar()) != EOF) {
        any = true;
        if (ch == '\n') break;
        line.push_back(static_cast<char>(ch));
    }
    if (!any) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

void StdConsole::flush() { std::fflush(stdout); }

void MemoryConsole::feed(std::string_view input) {
    size_t start = 0;
    while (start < input.size()) {
        size_t end = input.find('\n', start);
        if (end == std::string_view::npos) end = input.size();
        lines_.emplace_back(input.substr(start, end - start));
        start = end + 1;
    }
}

bool MemoryConsole::readline(std::string& line) {
    ++reads;
    if (lines_.empty()) return false;
    line = std::move(lines_.front());
    lines_.pop_front();
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

}  // namespace sm
