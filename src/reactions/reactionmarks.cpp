#include "reactions/reactionmarks.h"

#include "run.h"

namespace sm {

void progressmark(Run& run, std::string_view mark) {
    ReactionStore& rs = run.reactions;
    if (rs.progresscolumn + static_cast<int>(mark.size()) > run.io.pagewidth - 2) {
        putstr(run.io, 0, "", 1, chscreenlog);
        rs.progresscolumn = 0;
    }
    putstr(run.io, 0, mark, 0, chscreenlog);
    rs.progresscolumn += static_cast<int>(mark.size());
    rs.progresspending = true;
}

void progressendline(Run& run, std::string_view tail) {
    putstr(run.io, 0, tail, 1, chscreenlog);
    run.reactions.progresscolumn = 0;
    run.reactions.progresspending = false;
}

void progressflush(Run& run) {
    if (run.reactions.progresspending) progressendline(run, "");
}

}  // namespace sm
