#include "prompts.h"

#include "runended.h"
#include "scan.h"

namespace sm {

namespace {

[[noreturn]] void problemsreading() { bomb("read in prstrings", "problems reading", 0); }

void readline(Io& io, std::string& line) {
    if (!readconsole(io, line)) problemsreading();
}

void echoyesno(Io& io, bool yes) { putstr(io, 0, yes ? "yes" : "no", 1, chlog); }

template <typename T, typename Convert>
void promptnumber(Io& io, std::string_view text, T& value, Convert convert) {
    WordList words;
    promptstrings(io, text, words);
    for (;;) {
        if (words.count > 0) {
            if (iskill(words[1])) killrun();
            std::string message;
            if (convert(words[1], value, message)) return;
            promptstrings(io, message, words);
        } else {
            promptstrings(io, " ", words);
        }
    }
}

}  // namespace

bool iskill(std::string_view text) { return trim(text) == "kill"; }

void prstrings(Io& io, WordList& words) {
    std::string line;
    readline(io, line);
    string2strings(line, words);
}

void promptstrings(Io& io, std::string_view text, WordList& words) {
    putstr(io, 0, std::string(text) + " : ", 0, chscreenlog);
    prstrings(io, words);
    if (words.count == 0) {
        putstr(io, 0, "(nothing input)", 1, chlog);
    } else if (words.count == 1) {
        putstr(io, 0, words[1], 1, chlog);
    } else {
        std::string echo;
        for (int i = 1; i <= words.count; ++i) echo += " " + words[i];
        putstr(io, 0, echo + " ", 1, chlog);
    }
    if (words.count == 1 && iskill(words[1])) killrun();
}

void promptstring(Io& io, std::string_view text, sstring& word) {
    WordList words;
    promptstrings(io, text, words);
    word = words.count > 0 ? words[1] : sstring();
}

void promptreal(Io& io, std::string_view text, real& value) {
    promptnumber(io, text, value, [](const std::string& w, real& v, std::string& m) {
        return string2real(w, v, m);
    });
}

void promptinteger(Io& io, std::string_view text, int& value) {
    promptnumber(io, text, value, [](const std::string& w, int& v, std::string& m) {
        return string2int(w, v, m);
    });
}

void promptreals(Io& io, std::string_view text, std::vector<real>& values, int& count) {
    WordList words;
    promptstrings(io, text, words);
    std::vector<std::string> all(words.w.begin() + 1, words.w.begin() + 1 + words.count);
    if (count == 0) count = static_cast<int>(all.size());
    while (static_cast<int>(all.size()) < count) {
        promptstrings(io, " ", words);
        all.insert(all.end(), words.w.begin() + 1, words.w.begin() + 1 + words.count);
    }
    if (count == 0) return;
    for (const auto& w : all)
        if (iskill(w)) killrun();
    values.assign(static_cast<size_t>(count), 0.0L);
    for (int i = 0; i < count; ++i) {
        std::string message;
        if (string2real(all[i], values[i], message)) continue;
        promptnumber(io, message.empty() ? std::string(" ") : message, values[i],
                     [](const std::string& w, real& v, std::string& m) {
                         return string2real(w, v, m);
                     });
    }
}

// Writes "<text> ? " and reads the reply, asking once more after a lone "?".
// False at the end of input.
static bool queryreply(Io& io, std::string_view text, std::string& reply) {
    std::string line;
    putstr(io, 0, std::string(text) + " ? ", 0, chscreenlog);
    if (!readconsole(io, line)) return false;
    if (line == "?") {
        putstr(io, 1, "sorry, you are on your own...", 2, chscreenlog);
        putstr(io, 0, std::string(text) + " ? ", 0, chscreenlog);
        if (!readconsole(io, line)) return false;
    }
    reply = trim(line);
    return true;
}

static bool queryanswer(Io& io, const std::string& reply) {
    const bool yes = reply.empty() || reply == "1" || reply == "yes" || reply == "y" || reply == "Y";
    echoyesno(io, yes);
    if (iskill(reply)) killrun();
    return yes;
}

bool query(Io& io, std::string_view text) {
    std::string reply;
    if (!queryreply(io, text, reply)) problemsreading();
    return queryanswer(io, reply);
}

bool query(Io& io, std::string_view text, bool atend) {
    std::string reply;
    if (!queryreply(io, text, reply)) return atend;
    return queryanswer(io, reply);
}

void promptcontrol(Io& io, std::string_view text, int& state) {
    if (state != 2) return;
    std::string line;
    putstr(io, 0, std::string(text) + " ? ", 0, chscreenlog);
    readline(io, line);
    const std::string a = trim(line);
    const bool yes = a.empty() || a == "yes" || a == "y" || a == "1" || a == "ok";
    echoyesno(io, yes);
    if (iskill(a)) killrun();
    state = yes ? 0 : 1;
}

void formattext(Io& io, const std::vector<std::string>& lines) {
    std::vector<std::string> all;
    WordList words;
    for (const auto& l : lines) {
        string2strings(l, words);
        for (int i = 1; i <= words.count; ++i) {
            if (all.size() == static_cast<size_t>(maxwordsonline))
                bomb("format text", "too many words in lines", 0);
            all.push_back(words[i]);
        }
    }
    putstr(io, 0, "", 1, chscreenlog);
    std::string line;
    for (const auto& w : all) {
        if (w.size() + line.size() > 78) {
            putstr(io, 0, line, 1, chscreenlog);
            line.clear();
        }
        line += w + " ";
    }
    putstr(io, 0, line, 1, chscreenlog);
}

}  // namespace sm
