#pragma once
// The terminal behind the program: real stdin/stdout in the program, strings
// in tests. Bytes pass unchanged (single-byte text, never UTF-8).
#include <deque>
#include <string>
#include <string_view>

namespace sm {

class Console {
public:
    virtual ~Console() = default;
    virtual void write(std::string_view bytes) = 0;
    // One line without its line end (and without one trailing CR); false at
    // the end of input.
    virtual bool readline(std::string& line) = 0;
    virtual void flush() = 0;
};

class StdConsole final : public Console {
public:
    void write(std::string_view bytes) override;
    bool readline(std::string& line) override;
    void flush() override;
};

// Scripted replies in, everything written kept in `output`.
class MemoryConsole final : public Console {
public:
    MemoryConsole() = default;
    explicit MemoryConsole(std::string_view input) { feed(input); }
    void feed(std::string_view input);  // lines separated by "\n"
    void write(std::string_view bytes) override { output += bytes; }
    bool readline(std::string& line) override;
    void flush() override {}
    std::string output;
    int reads = 0;

private:
    std::deque<std::string> lines_;
};

}  // namespace sm
