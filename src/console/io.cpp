#include "io.h"

#include <cmath>
#include <cstdio>

#include "runended.h"

namespace sm {

namespace {

// Channels whose file is kept even when nothing was written to it.
bool keptwhenempty(int channel) { return channel == 2 || channel == 3; }

const char* channellabel(int channel) {
    static const char* const labels[nchannels] = {"console", "",        "outfile",  "logfile",
                                                  "icfile",  "itfile",  "skfile",   "csvfile",
                                                  "csv2file", "psfile", "svgsfile"};
    return labels[channel];
}

void writefile(Io& io, int channel, std::string_view bytes) {
    if (bytes.empty()) return;
    if (std::fwrite(bytes.data(), 1, bytes.size(), io.file[channel]) != bytes.size())
        iofailure(io.filename[channel]);
}

std::string_view lineends(int n) { return n <= 0 ? "" : n == 1 ? "\n" : "\n\n"; }

}  // namespace

Io::~Io() {
    for (auto* f : file)
        if (f) std::fclose(f);
}

void putstr(Io& io, int before, std::string_view text, int after, unsigned mask) {
    const unsigned effective = mask & io.activechannels;
    if (effective == 0) return;
    if (text.size() > static_cast<size_t>(lstringmax)) text = text.substr(0, lstringmax);
    for (int ch = 0; ch < nchannels; ++ch) {
        if (!(effective & (1u << ch))) continue;
        if (ch == 0) {
            std::string shown(text);
            if (io.dontwrap && static_cast<int>(text.size()) > io.pagewidth - 2)
                shown = std::string(text.substr(0, io.pagewidth - 2)) + "#";
            io.con.write(lineends(before));
            io.con.write(shown);
            io.con.write(lineends(after));
        } else if (io.file[ch]) {
            writefile(io, ch, lineends(before));
            writefile(io, ch, text);
            writefile(io, ch, lineends(after));
            if (ch >= 4) io.filewritten[ch] = true;
        }
    }
}

void flushfiles(Io& io) {
    for (int ch = 2; ch < nchannels; ++ch)
        if ((io.activechannels & (1u << ch)) && io.file[ch] && std::fflush(io.file[ch]) != 0)
            iofailure(io.filename[ch]);
    io.con.flush();
}

void openchannel(Io& io, int channel, const std::string& name) {
    std::FILE* f = std::fopen(name.c_str(), "wb");
    if (!f) iofailure(name);
    io.file[channel] = f;
    io.filename[channel] = name;
    io.filewritten[channel] = false;
    io.activechannels |= 1u << channel;
}

void closefiles(Io& io) {
    io.con.write("\n");
    for (int ch = 2; ch < nchannels; ++ch) {
        if (!io.file[ch]) continue;
        const bool keep = keptwhenempty(ch) || io.filewritten[ch];
        if (std::fclose(io.file[ch]) != 0)
            io.con.write(std::string("problem closing ") + channellabel(ch) + "\n");
        io.file[ch] = nullptr;
        if (!keep && std::remove(io.filename[ch].c_str()) != 0)
            io.con.write(std::string("problem erasing  ") + channellabel(ch) + "\n");
    }
    io.activechannels = 0;
    io.con.flush();
}

void writeconsole(Io& io, std::string_view text) { io.con.write(text); }

void allocated(Io& io, std::string_view name, long long bytes) {
    io.heapsize += bytes;
    if (io.monitorheap)
        writeconsole(io, "space allocated for " + std::string(name) + " is " +
                             std::to_string(std::llround(bytes / 1024.0)) + "k; , heap now " +
                             std::to_string(std::llround(io.heapsize / 1024.0)) + "k\n");
}

void disposed(Io& io, std::string_view name, long long bytes) {
    io.heapsize -= bytes;
    if (io.monitorheap)
        writeconsole(io, "space disposed for " + std::string(name) + "; heap size now " +
                             std::to_string(std::llround(io.heapsize / 1024.0)) + "k\n");
}

bool readconsole(Io& io, std::string& line) {
    flushfiles(io);
    std::string raw;
    if (!io.con.readline(raw)) return false;
    line.clear();
    for (char ch : raw) {
        if (ch == '\b') {
            if (!line.empty()) line.pop_back();
        } else {
            line.push_back(ch);
        }
    }
    return true;
}

}  // namespace sm
