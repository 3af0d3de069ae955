#include "entry/program.h"

#include <chrono>
#include <ctime>

#include "console/bomb.h"
#include "console/format.h"
#include "console/prompts.h"
#include "console/scan.h"
#include "entry/modes.h"
#include "run.h"

namespace sm {

namespace {

real computemachineeps() {
    real eps = 1.0L;
    for (int i = 0; i < 100; ++i) {
        const volatile real sum = 1.0L + eps / 2;
        if (sum == 1.0L) break;
        eps /= 2;
    }
    return eps;
}

void fillordinals(std::array<std::string, 401>& ordinals) {
    for (int i = 1; i <= 400; ++i) ordinals[i] = std::to_string(i) + "th";
    ordinals[1] = "1st";
    ordinals[2] = "2nd";
    ordinals[3] = "3rd";
}

void taketimestamp(Io& io) {
    const auto now = std::chrono::system_clock::now();
    const std::time_t t = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&t, &local);
    io.timestamp = maketimestamp(local);
    io.starttime = std::chrono::steady_clock::now();
}

void seedfromclock(Run& run) {
    const auto now = std::chrono::system_clock::now();
    const std::time_t t = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&t, &local);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    run.random.seed(local.tm_hour + 1, local.tm_sec + 1, static_cast<int>(ms) + 1);
}

void closingnotice(Io& io) {
    putstr(io, 0, "", 1, chall);
    putstr(io, 0, io.progname + ", mineral equilibria from an internally consistent dataset", 1,
           chall);
    putstr(io, 0, "this version: 3.51", 1, chall);
    putstr(io, 0, std::string(60, '='), 1, chall);
}

const char* moreprompttext(int runmode) {
    switch (runmode) {
    case rmphasediagram: return "more phase diagram calculations";
    case rmrock: return "more rock calculations";
    case rmreactions: return "more calculations";
    case rmregression: return "another calib run";
    default: return "";
    }
}

void printelapsed(Run& run) {
    const auto elapsed = std::chrono::steady_clock::now() - run.io.starttime;
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count();
    std::string text = "elapsed = ";
    if (ms >= 5000)
        text += std::to_string(ms / 1000) + " secs, n = " + std::to_string(run.gcount);
    else
        text += std::to_string(ms) + " msecs, n = " + std::to_string(run.gcount);
    putstr(run.io, 0, text, 1, chscreen);
}

}  // namespace

void initconsole(Run& run) {
    Io& io = run.io;
    run.machineeps = computemachineeps();
    fillordinals(run.ordinals);
    io.activechannels = chscreen;
    putstr(io, 0, io.progname + " - calculation of mineral equilibria in rocks", 1, chscreen);
    readprefs(io, run.prefs, ProgramKind::calculation);
    openchannel(io, 3, fileset(ProgramKind::calculation).log);
    putstr(io, 0, "[display/print with fixed width font (eg Monaco)]", 2, chlog);
    putstr(io, 0, "", 1, chscreenlog);
    taketimestamp(io);
    seedfromclock(run);
}

int getcalcmode(Run& run) {
    Io& io = run.io;
    const int p = run.prefs.prefscalcmode;
    if (p == 9) return 9;
    if (p >= 0 && p <= 3) return p;
    putstr(io, 0, "calculation mode (calcmode) :", 1, chscreenlog);
    putstr(io, 0, "     0 = utilities: data tables, mineral recalc etc", 1, chscreenlog);
    putstr(io, 0, "     1 = phase diagram calculations (and avPT+)", 1, chscreenlog);
    putstr(io, 0, "     2 = average pressure-temperature calculations", 1, chscreenlog);
    putstr(io, 0, "     3 = calculations on all reactions between end-members", 1, chscreenlog);
    sstring word;
    promptstring(io, "calcmode code", word);
    if (whatisstring(word) != tokint) bomb("getcalcmode", "integer needed (1), between 0 and 3", 0);
    int value;
    std::string message;
    if (!string2int(word, value, message) || value < 0 || value > 3)
        bomb("getcalcmode", "integer needed (2), between 0 and 3", 0);
    putstr(io, 1, "this code can appear in the prefsfile (sm-prefs.txt) as", 1, chall);
    putstr(io, 0, "calcmode " + std::to_string(value), 2, chall);
    return value;
}

int runprogram(Console& console) {
    Run run(console);
    try {
        initconsole(run);
        run.calcmode = getcalcmode(run);
        switch (run.calcmode) {
        case 0: case 1: case 2: case 3: run.runmode = run.calcmode; break;
        case 9: run.runmode = rmregression; break;
        default: bomb("setup", "unknown code", 1);
        }
        if (run.runmode == rmutilities) bomb("setup", "sorry, mode 0 not available: use sm350", 1);
        commonsetup(run);
        if (run.runmode == rmregression) regressionsetup(run);
        startout(run.io, run.prefs, run.files, run.runmode == rmregression, run.dsprefs);
        run.moreprompt = moreprompttext(run.runmode);
        for (;;) {
            ++run.runcount;
            runpass(run);
            putstr(run.io, 0, "", 1, chscreenlog);
            flushfiles(run.io);
            if (run.runmode == rmregression || run.io.autoexit) break;
            if (!query(run.io, run.moreprompt, false)) break;
        }
        closingnotice(run.io);
        if (run.runmode != rmregression && !run.io.autoexit)
            query(run.io, "all done - hit return to exit", false);
        if (run.runmode == rmphasediagram && elapsedwanted(run)) printelapsed(run);
        closefiles(run.io);
        return 0;
    } catch (const RunEnded& e) {
        return endrun(run.io, e);
    }
}

}  // namespace sm
