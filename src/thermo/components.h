#pragma once
// The 26 components known to the program, by the element number (`ell`) the
// dataset uses.
namespace sm {

struct ComponentRow {
    const char* element;
    const char* oxide;
    double molarmass;  // g/mol of the oxide
    int cations;
    int oxygens;
    int dispno;        // place in the fixed display order
};

// Row ell (1..26) is componenttable[ell - 1].
extern const ComponentRow componenttable[26];

}  // namespace sm
