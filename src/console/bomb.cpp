#include "bomb.h"

namespace sm {

void bomb(const std::string& where, const std::string& message, int internal) {
    throw RunEnded{RunEnded::bombed, where, message, internal};
}

void killrun() { throw RunEnded{RunEnded::killed, "", "", 0}; }

void iofailure(const std::string& name) { throw RunEnded{RunEnded::iofailure, name, "", 0}; }

int endrun(Io& io, const RunEnded& e) {
    // Only the console, outfile, logfile and icfile carry the closing words.
    constexpr unsigned mask = chscreen | choutput | chlog | chic;
    switch (e.kind) {
    case RunEnded::bombed: {
        putstr(io, 1, "-- run bombed in " + e.where + " : " + e.message, 2, mask);
        if (e.internal == 1) {
            putstr(io, 1, "===This shouldn't have happened...===", 1, mask);
            putstr(io, 0, "please report it to the STRATAMATH developers", 1, mask);
            putstr(io, 0, "with full details, relevant files etc etc", 2, mask);
        }
        closefiles(io);
        if (!io.autoexit) {
            writeconsole(io, "\nhit return to exit program\n");
            io.con.flush();
            std::string ignored;
            io.con.readline(ignored);  // end of input is no reason to wait
        }
        return 0;
    }
    case RunEnded::killed:
        putstr(io, 1, "-- run killed --", 1, chscreen | choutput | chlog);
        closefiles(io);
        return 0;
    case RunEnded::iofailure:
        io.con.flush();
        std::fprintf(stderr, "stratamath: cannot create or write the file \"%s\"\n",
                     e.where.c_str());
        return 1;
    }
    return 0;
}

}  // namespace sm
