#pragma once
// Windows of pressure, temperature and the third axis of a section, the
// lists of values a calculation steps through, and the fixed fluid. Unlike
// the script settings these survive from one pass to the next: a later pass
// of mode 3 with the same diagram type keeps its windows.
#include <string>
#include <vector>

#include "console/types.h"
#include "script/settings.h"
#include "thermo/limits.h"

namespace sm {

struct Run;

// The pressure and temperature limits of the system are in thermo/limits.h;
// Pmin is lowered to minusPmin by the script negP.
constexpr real kelvin0 = 273.15L;
constexpr int maxlist = 201;           // values in one list

// Axes: what is solved for and what is stepped.
enum Axis : int { axisP = 0, axisT = 1, axisx = 2, axisa = 3, axismu = 4 };
// Diagram types of mode 3.
enum DiagramMode : int { dmPT = 0, dmPx = 1, dmTx = 2, dmPlna = 3, dmTlna = 4, dmPmu = 5, dmTmu = 6 };

struct Windows {
    real Pmin = defaultPmin;
    Window overallP{defaultPmin, Pmaxlimit};
    Window overallT{Tminlimit, Tmaxlimit};
    Window calcP{defaultPmin, Pmaxlimit};
    Window calcT{Tminlimit, Tmaxlimit};
    real Pinterval = 0;  // 0: none given
    real Tinterval = 0;
    bool Pfromscript = false, Tfromscript = false;
    real P = 0, T = 0;  // the current point
    real xco2 = 0, xh2o = 1;
    Window xco2window{0, 0};
    Window lnawindow{0, 0};
    Window muwindow{0, 0};
    std::vector<real> Plist, Tlist, xco2list, xh2olist;
    std::vector<std::vector<real>> lnalist, mulist;  // by fixed activity or potential k, from 1
    int Pdecimals = 3, Tdecimals = 2, xdecimals = 3, lnadecimals = 2, mudecimals = 1;
    int calcvariable = axisP;
    int othervariable = axisT;
    int diagrammode = dmPT;
    int gridkind = 0;    // grid lists: 0 none, 1 P, 2 T, 3 both
    // what kind of fluid the phases allow, set by the mode's set-up: 0 not yet
    // settled, 2 no fluid phase (values are activities), 6 a H2O-CO2 fluid of
    // fixed composition
    int fluidtype = 0;
    int variance = 1;    // the variance the window checks expect
    int setfluid = 1;    // the script's fluid flag once settled at the console
    std::string axisname;  // the end-member or component of an activity or potential axis
    int lastdiagrammode = -1;  // the diagram type of the previous pass, -1 before the first
};

// Which fluid species the phases of the run allow, for promptfluid.
struct FluidPhases {
    bool h2o = false;
    bool co2 = false;
    bool cordierite = false;  // crd or fcrd: wants fluid activities too
};

// True when `value` lies in a window, bounds included: kind 0 T in calcT,
// 1 P in calcP, 2 x(CO2), 3 ln a, 4 mu.
bool inrange(const Run& run, int kind, real value);

// Overall and calculation windows.
void dofigPT(Run& run);
void PTcalcs(Run& run, const std::string& title, const std::string& Ptitle,
             const std::string& Ttitle);
void checkPwindow(Run& run, real& low, real& high, int need);
void checkTwindow(Run& run, real& low, real& high, int need);
void askPwindow(Run& run, real& low, real& high, int kind);
void askTwindow(Run& run, real& low, real& high, int kind);
void askxwindow(Run& run, real& low, real& high, int kind);
void asklogawindow(Run& run, real& low, real& high, int kind);
void askmuwindow(Run& run, real& low, real& high, int kind);

// Lists of values.
void listP(Run& run);
void listT(Run& run);
void makeP(Run& run);
void makeT(Run& run);
void listxco2(Run& run);
void listlna(Run& run, int k, real low, real high);
void listmu(Run& run, int k, real low, real high);

// Set-up of a P-T line, and the whole window set-up of mode 3.
void univariantsetup(Run& run);
void diagramwindowsetup(Run& run, bool first, const FluidPhases& phases);

// The fixed fluid of the run, and its label for a heading.
void promptfluid(Run& run, const FluidPhases& phases);
void fluidlabel(const Run& run, std::string& buffer);

// Cells of a table line: a value inside its window, or its mark.
std::string Pfield(const Run& run, real value);
std::string Tfield(const Run& run, real value);  // value in kelvin, printed in Celsius
std::string xfield(const Run& run, real value);

// Looks a name up in a list with a repair prompt; index 0 when given up.
void checkname(Run& run, sstring& name, const std::vector<sstring>& names, bool silent,
               int& index);

}  // namespace sm
