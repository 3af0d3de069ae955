#include "reactions/reactionstore.h"

namespace sm {

void ReactionStore::clearreactions() {
    nir = 0;
    nreactionset = 0;
    nint = 0;
    reactionsfull = false;
    intersectionsfull = false;
    widestreaction = 0;
    nechelon = 0;
    incompleteset = false;
}

}  // namespace sm
