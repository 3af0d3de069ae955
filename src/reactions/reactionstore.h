#pragma once
// The reactions of a run and what their search learns: the phase set and
// text of each reaction, the end-members and assemblages that cannot be
// stable in the window, and the intersections (invariant points) among the
// reactions. The integer coefficients themselves are the rows of
// EndMemberStore::r, so that every subsystem reads one table.
#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "console/bitsets.h"
#include "console/types.h"
#include "thermo/limits.h"

namespace sm {

struct Run;

constexpr int maxreactions = maxrrows;      // reactions held
constexpr int maxreactionsets = 600;        // phase sets held
constexpr int maxexcludedassemblages = 60;  // end-member sets that cannot occur together
constexpr int maxintersections = 200;       // intersections held
constexpr int maxintreactions = 28;         // reactions round one invariant point
constexpr int maxcombination = 400;         // positions of the combination generator
constexpr int maxenumerated = 90;           // end-members a search may range over
constexpr unsigned short combinationend = 65535;  // sentinel past the chosen positions
constexpr int maxlistvalues = 201;          // values of the listed axis of a table

// What the enumeration asks about a reaction it has just stored: whether it
// can lie in the window, with the sign of its Gibbs energy at the first
// corner (mode 3); whether it crosses the window and with what uncertainty
// (mode 2).
using WindowQuestion = std::function<bool(Run&, int reaction, bool& belowatfirstcorner)>;
using CrossingQuestion = std::function<bool(Run&, real& sd)>;

struct ReactionStore {
    // The end-members the search ranges over are 1..nemp; nemp+1..nem are in
    // excess, one for each of the rows ncompp+1..nc of c, whose amount in
    // its in-excess end-member is div.
    int nemp = 0;
    int ninexcess = 0;
    int ncompp = 0;
    std::array<long long, maxcomp + 1> div{};

    // The store.
    int nir = 0;
    int nreactionset = 0;
    std::vector<BitSet2> reactionset = std::vector<BitSet2>(maxreactionsets + 1);
    std::vector<std::string> reactionname = std::vector<std::string>(maxreactions + 1);
    std::array<real, maxreactions + 1> lnKbase{};
    std::array<int, maxreactions + 1> rscale{};  // weight of a reaction in the mode 1 equations
    int widestreaction = 0;

    // What cannot be stable in the window.
    std::vector<int> excludedem;
    int nexcludedassemblage = 0;
    std::array<BitSet2, maxexcludedassemblages + 1> excludedassemblage{};

    // Intersections: the reactions among rankc+2 end-members, and the union
    // of their phase sets.
    int nint = 0;
    std::array<int, maxintersections + 1> intcount{};
    std::vector<std::array<short, maxnem + 1>> intreaction =
        std::vector<std::array<short, maxnem + 1>>(maxintersections + 1);
    std::array<BitSet2, maxintersections + 1> intset{};

    // State of the search.
    bool reactionsfull = false;
    bool intersectionsfull = false;
    bool allreactions = false;  // false: Schreinemakers logic prunes the search
    int rankc = 0;
    int nindep = 0;
    int nmax = 0;
    int progresscolumn = 0;       // where the next mark of the progress line goes
    bool progresspending = false; // marks stand on a line not yet ended

    // Mode 2: the independent set. Each accepted reaction keeps its echelon
    // row and pivot column for the independence test of the next.
    bool incompleteset = false;
    bool narrowwindow = false;
    int rockcalc = 0;               // 0 average P, 1 average T, 2 average PT (set by mode 2)
    bool solvingT = false;          // the rock calculation solves for T
    real maxsd = 0;                 // largest uncertainty a reaction may carry
    CrossingQuestion crosseswindow; // the window test of the rock calculation
    int nechelon = 0;
    std::array<int, maxindreactions + 1> pivotcolumn{};
    std::vector<std::array<long long, maxnem + 1>> echelonrow =
        std::vector<std::array<long long, maxnem + 1>>(maxindreactions + 1);

    // The independent set of an assemblage (mode 1 and the back-calculations):
    // end-members 1..naxem belong to a-x phases and weigh in the reaction
    // scale; a Gibbs minimisation keeps quiet about an assemblage with no
    // reaction; incnler 0 lists the reactions in the log and drawing file.
    int naxem = 0;
    bool dogminrun = false;
    int incnler = 1;

    // Standard deviations of the activities, and the variances of ln a
    // made from them.
    std::array<real, maxnem + 1> sdactiv{};
    std::array<real, maxnem + 1> varlna{};

    // Display names of end-members in reaction texts: (name, shown as).
    std::vector<std::pair<sstring, sstring>> displaynames;
    // The end-member that an activity axis works through, and the name the
    // axis shows for it (0 and empty without such an axis).
    int axisem = 0;
    sstring axisdisplayname;
    real axisS0 = 0;  // the axis end-member's own entropy, before any ln a

    // The calculation window put aside while roots are sought in a larger
    // one, by axis (0 P, 1 T).
    std::array<real, 2> savedlo{}, savedhi{};

    // The roots of each reaction at each value of the listed axis, the
    // lower first where both are numbers (mode 3 tables and intersections).
    using RootRow = std::array<real, maxlistvalues + 1>;
    std::vector<RootRow> v1 = std::vector<RootRow>(maxreactions + 1);
    std::vector<RootRow> v2 = std::vector<RootRow>(maxreactions + 1);
    int nlist = 0;

    // The invariant points found in the window, in the order printed.
    struct InvariantPoint {
        int intersection = 0;
        bool stable = false;
        real P = 0, T = 0, xco2 = 0, lna = 0, mu = 0;
        real sdP = 0, sdT = 0, cor = 0;
        std::vector<int> reactions;
    };
    std::vector<InvariantPoint> points;

    // Mode 3 set-up: the diagram type came from the script; this pass has a
    // diagram type other than the last pass's.
    bool diagramfromscript = false;
    bool firstpass = true;

    // Clears the store and the search state; the exclusions stay.
    void clearreactions();
};

}  // namespace sm
