// STRATAMATH: mineral equilibria from an internally consistent dataset.
#include "console/console.h"
#include "entry/program.h"

int main() {
    sm::StdConsole console;
    return sm::runprogram(console);
}
