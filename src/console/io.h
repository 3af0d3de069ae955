#pragma once
// The output channels of a run and the one text writer, putstr.
#include <array>
#include <chrono>
#include <cstdio>
#include <string>

#include "console.h"
#include "types.h"

namespace sm {

// Channel masks.
constexpr unsigned chscreen = 0x1, choutput = 0x4, chlog = 0x8, chic = 0x10, chit = 0x20,
                   chsk = 0x40, chcsv = 0x80, chcsv2 = 0x100, chsvg = 0x400;
constexpr unsigned chscreenlog = 0x9, chall = 0xd, choutlog = 0xc;
constexpr int nchannels = 11;

// Everything the console layer owns for one run: the terminal, the files
// behind the channels, page settings from the prefs, and the run's name and
// time stamp.
struct Io {
    explicit Io(Console& console) : con(console) {}
    Io(const Io&) = delete;
    Io& operator=(const Io&) = delete;
    ~Io();

    Console& con;
    unsigned activechannels = chscreen;
    std::array<std::FILE*, nchannels> file{};
    std::array<std::string, nchannels> filename{};
    std::array<bool, nchannels> filewritten{};

    bool dontwrap = true;
    int pagewidth = 80;
    bool monitorheap = false;
    long long heapsize = 0;
    bool autoexit = false;  // no closing questions and no wait after a fatal stop

    std::string progname = "STRATAMATH 3.51";
    std::string timestamp;
    std::chrono::steady_clock::time_point starttime = std::chrono::steady_clock::now();
};

void putstr(Io& io, int before, std::string_view text, int after, unsigned mask);
void flushfiles(Io& io);
// Creates the file of `channel` (replacing an old one) and makes it active.
void openchannel(Io& io, int channel, const std::string& name);
// Closes every file channel in order, deleting those that stayed empty and
// may be deleted; writes a line end to the console first.
void closefiles(Io& io);
// Writes straight to the console, whatever the channels.
void writeconsole(Io& io, std::string_view text);

// The heap monitor of the prefs word monitorheap.
void allocated(Io& io, std::string_view name, long long bytes);
void disposed(Io& io, std::string_view name, long long bytes);

// Reads a console line after flushing, with the backspace rule applied;
// false at the end of input.
bool readconsole(Io& io, std::string& line);

}  // namespace sm
