#pragma once
// What the scriptfile says, grouped by subject. Every member initialiser is
// the default a calculation starts from: resetscripts assigns fresh structs.
// A "flag" is the script's control word: 0 yes (use the script's value),
// 1 no (the default, or ask when there is none), 2 ask at the point of use.
#include <array>
#include <vector>

#include "console/types.h"

namespace sm {

// A low and a high, pressure in kbar, temperature in kelvin.
struct Window {
    real lo = 0;
    real hi = 0;
};

// Counter of a list or block script: -1 not seen, 0 given up after a fault,
// 1 or more lines read; blocks use -2 (and -3 for setbulk) between the
// header line and the first data line.
constexpr int notseen = -1;

struct ControlScripts {
    bool strictscripting = false;
    int debuglevel = 1;
    int debuglevelq = 1;
    int moreprec = 1;
    int printcor = 1;
    int compatibility = 1;
    int sketch = 0;
    int sketchlevel = 0;
    int umberview = 1;
    int magemin = 1;
    int convergenceflag = 1;
    // tolerances of the Newton solver, in the order it uses them
    std::array<real, 4> convergence{1e-8L, 1e-6L, 0.005L, 1e-6L};
    int incnler = 1;
    bool numerical = false;
    // words read and stored that nothing of this version acts on
    int latex = 1;
    int outlevel = 1;
    int oblique = 1;
    int utilitycode = 1;
    int tablecode = 1;
    int recalccode = 1;
    int convertlines = 0;
};

struct RgbColour {
    sstring name;
    int r = 0, g = 0, b = 0;
};

struct PhaseScripts {
    sstring axfile;
    int withflag = 1;
    bool someof = false;
    std::vector<sstring> with;       // names with any "_..." part cut away
    std::vector<sstring> withwhole;  // the names as written
    int setexcessflag = 1;
    std::vector<sstring> setexcess;
    int tozeroflag = 1;
    std::vector<sstring> tozero;
    int samecodingflag = 1;
    std::vector<std::vector<sstring>> samecoding;
    std::vector<RgbColour> rgb;
    int fluidpresent = 1;
    int fluidexcess = 1;
    int setfluid = 1;
    real xco2 = 0;  // fluid of the script: x(CO2), and x(H2O) = 1 - x(CO2)
    real xh2o = 1;
    int convliqflag = 1;
    std::vector<std::vector<real>> convliq;  // rows of one width, at most 15 by 20
    int usecalcq = 1;
};

// The diagram types of the script word figure.
enum FigureKind : int { figPT = 0, figTx = 1, figPx = 2, figmumu = 3 };

struct WindowScripts {
    int diagramPT = 1;
    Window overallP{0.0009L, 1500};
    Window overallT{283, 3000};
    int calcPflag = 1;
    Window calcP{0.0009L, 1500};
    real Pinterval = 0;
    int calcPcount = 0;  // numbers given: 1 one P, 2 a range, 3 with interval
    int calcTflag = 1;
    Window calcT{283, 3000};
    real Tinterval = 0;
    int calcTcount = 0;
    int calctatp = 2;
    int calcxco2flag = 1;
    std::vector<real> xco2list;
    int setptforaxe = 1;
    real ptforaxeP = 0, ptforaxeT = 0;
    int calctypeflag = 1;
    int calctype = 0;
    int figure = figPT;
    bool xco2calcs = false;  // an x(CO2) figure: set from figure at the end of reading
};

struct FixedActivity {
    sstring name;
    real lna = 10;  // values of 9.9 and up are "to be set" at the console
};

struct FixedPotential {
    sstring name;
    real mu = 0;  // 0 is "to be set"
};

struct ActivityScripts {
    int lnaflag = 1;
    sstring lnaname;
    real lnavalue = 0;
    sstring lnalabel;
    int setaflag = 1;
    int setlnaflag = 1;
    int setlogaflag = 1;
    bool base10 = false;  // a setloga line makes the run print log a
    std::vector<FixedActivity> fixed;
    int setmuflag = 1;
    std::vector<FixedPotential> setmu;
    int bufferflag = 1;
    sstring buffername;
    real bufferdel = 0;
    int fifi = 1;
    int calcah2o = 1;
    int calcmuo = 1;
    int calcmu = 1;
    // chemical potentials given for a comparison: P, T, names and values
    int muvalflag = 1;
    int muvalstage = 0;  // 0 off, 1 on, 2 P-T read, 3 names read, 4 values read
    real muvalP = 0, muvalT = 0;
    std::vector<sstring> muvalnames;
    std::vector<real> muvalues;
    int defsdaparams = 0;
    int usedefsda = 0;
};

// A composition or mode isopleth: nvalues 0 asks interval and values,
// 1 is one value, 3 a range low, high, interval.
struct Isopleth {
    sstring name;
    int nvalues = 0;
    real low = 0, high = 0, inc = 0.001L;
};

struct XyzGuess {
    sstring name;
    real value = 0;
    real sd = 0;
    bool hassd = false;
    real lo = 0, hi = 1;
};

struct ModeGuess {
    sstring phase;
    real value = 0;
};

struct ApexComposition {
    sstring name;
    std::vector<real> values;
};

struct EquilibriumScripts {
    int setvar = 1;
    int var = 0;
    int autovar = 0;
    int isoflag = 1;
    std::vector<Isopleth> iso;
    int modeisoflag = 2;
    std::vector<Isopleth> modeiso;
    int zeromodeisoflag = 0;
    std::vector<sstring> zeromodeiso;
    int project = 1;
    int projplaneflag = 1;
    int projplanecount = notseen;
    std::vector<sstring> projoxides;
    std::vector<ApexComposition> apices;
    int projcomp = 0;
    int modebox = 1;
    int c8 = 1;
    int calib = 1;
    int printguessform = 0;
    int ptguessflag = 1;
    real ptguessP = -101, ptguessT = -101;
    int xyzguessflag = 1;
    std::vector<XyzGuess> xyzguess;
    std::vector<ModeGuess> modeguess;
};

struct RbiRow {
    sstring phase;
    real mode = 0;
    std::vector<real> values;
};

struct BulkScripts {
    int pseudosection = notseen;  // -1 no line, 0 on, 1 off
    int bulkflag = 1;
    int bulkcount = notseen;  // -3 header awaited data, then compositions read
    std::vector<sstring> bulkoxides;
    std::vector<std::vector<real>> bulk;  // one or two compositions, summing to 100
    int bulksteps = 0;                    // steps between two compositions, 0 when not given
    int bulksubrangeflag = 1;
    real subrangelow = 0, subrangehigh = 1;
    int onebulkflag = 1;
    real onebulk = -1;
    int rbiflag = 1;
    int rbicount = notseen;
    std::vector<sstring> rbioxides;
    std::vector<RbiRow> rbi;
    int printbulkinfo = 1;
    bool modesoutput = true;  // the modes in the results output
    int dogminflag = 1;
    int dogmin = -1;  // the level, -1 when off
    int maxvarflag = 1;
    int minvariance = 2, maxvariance = 0;
};

struct RockScripts {
    int rocknameflag = 1;
    sstring rockname;
    int justrelu = 1;
    int oisr = 1;
    int isrflag = 1;
    int isrcount = notseen;
    std::vector<sstring> isrnames;
    std::vector<std::vector<int>> isr;  // one reaction a line, one coefficient a name
    int dataok = 2;
    int maxsdtflag = 1;
    real maxsdt = 50;
    int maxsdpflag = 1;
    real maxsdp = 5;
    int doallr = 2;  // 0 all reactions, 1 the Schreinemakers set, 2 ask
};

// One batch: phases, variance, the P-T pairs and what the calculation fixes.
struct BatchModeSet {
    sstring phase;
    real value = 0;
};
struct BatchIsopleth {
    sstring phase;
    int code = 0;
    real value = 0;
};
struct Batch {
    int oldnumber = 0;
    std::vector<bool> phases;  // one a phase of with
    int variance = 0;
    std::vector<real> P;        // kbar
    std::vector<real> T;        // kelvin
    int calccode = 0;
    int xyzblock = 0;
    int bulk1 = 0, bulk2 = 0;
    real proportion = 1;
    std::vector<real> bulk;  // composition of the batch, when bulk1 is not 0
    std::vector<BatchModeSet> modes;
    std::vector<BatchIsopleth> isopleths;
};

struct FilterTerm {
    sstring name;
    int code = 0;
    real low = 0, high = 0;
};

struct McRange {
    sstring name;
    real centre = 0, width = 0;
};

struct McFunc {
    sstring name;
    real constant = 0;
    std::vector<real> coef;
    std::vector<int> range;  // index into mcrange, from 1
};

struct McVariable {
    sstring phase;
    sstring variable;  // as written, W(...), a(...) or DQF(...) with its letter
    int code = 0;      // W 1, a 2, DQF 3
    int term = 0;      // a 1, b 2, c 3
    int kind = 0;      // 0 value and sd, 1 a named range, 2 a named function
    real value = 0, sd = 0;
    int ref = 0;
};

struct BatchScripts {
    int batchflag = 1;
    int batchcount = notseen;
    bool batchesoff = false;  // a batch line came before with
    std::vector<Batch> batch;
    std::vector<std::vector<int>> batchreq;
    bool batchreqseen = false;
    int xyzblocks = 0;
    std::vector<std::vector<XyzGuess>> batchxyzguess;
    bool batchswitchseen = false;
    std::vector<int> batchswitch;
    std::vector<std::vector<FilterTerm>> filters;
    int batchdebug = 0;
    int mcflag = 1;
    int mccount = notseen;
    std::vector<McVariable> mc;
    real mcita = 1;
    int mcitn = 1;
    std::vector<McRange> mcrange;
    std::vector<McFunc> mcfunc;
    int batchbulkcount = notseen;
    int batchbulkwidth = 0;
    std::vector<std::vector<real>> batchbulk;
    int mcdebug = 1;
    bool gaussmc = false;
    int mcoutcurrentway = 0;
    int fract = 1;
    int fractdebug = 1;
};

}  // namespace sm
