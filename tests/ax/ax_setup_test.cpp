// What setupphases makes of the records for the chosen phases: guesses from
// the script, contraction, variable limits, copies, fluids, the run's
// end-member list, and the table limits.
#include <algorithm>

#include "ax/makename.h"
#include "ax_testing.h"

namespace sm::axtest {
namespace {

std::string datafile(const char* name) {
    std::ifstream in(std::string(SM_DATA_DIR) + "/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

std::string replaceall(std::string s, const std::string& from, const std::string& to) {
    for (size_t at = 0; (at = s.find(from, at)) != std::string::npos; at += to.size()) s.replace(at, from.size(), to);
    return s;
}

GuessLine guess(const char* name, real value) { return {name, value, 0, false, 0, 1}; }

TEST(AxSetup, WithListAndItsChecks) {
    AxRun all;
    all.read(smallfile);
    EXPECT_EQ(all.run.phases.with, (std::vector<sstring>{"g", "mu", "q", "ky"}));
    const Damaged cases[] = {
        {"same short name", smallfile, "setupphases", "two phases, g_x and g, with the same name in \"with\""},
        {"excess not chosen", smallfile, "setupphases", "in excess phase, ky, not in \"with\""},
        {"tozero not chosen", smallfile, "setupphases", "tozero phase, ky,  not in \"with\""},
    };
    for (int k = 0; k < 3; ++k) {
        SCOPED_TRACE(cases[k].name);
        AxRun a;
        a.choice.with = k == 0 ? std::vector<sstring>{"g_x", "g"} : std::vector<sstring>{"g", "q"};
        if (k == 1) a.choice.inexcess = {"q", "ky"};
        if (k == 2) a.choice.tozero = {"ky"};
        const RunEnded e = a.fails(cases[k].text);
        EXPECT_EQ(e.where, cases[k].where);
        EXPECT_EQ(e.message, cases[k].message);
    }
}

TEST(AxSetup, GuessesFromTheScript) {
    AxRun a;
    a.choice.xyzguess = {guess("x(g)", 0.5L), {"x(mu)", 0.3L, 0.02L, true, 0.2L, 0.6L}, guess("y(mu)", 0.8L)};
    a.read(smallfile);
    EXPECT_EQ(a.ax(1).xv[1].guess, 0.5L);
    EXPECT_TRUE(a.ax(1).hasguesses);
    const AxVariable& x = a.ax(2).xv[1];
    EXPECT_EQ(x.guess, 0.3L);
    EXPECT_EQ(x.sd, 0.02L);
    EXPECT_EQ(x.lower, 0.2L);
    EXPECT_EQ(x.upper, 0.6L);
    EXPECT_EQ(x.limlo, limordinary);
    // Guesses in the file: the script's replace those it names.
    AxRun part;
    part.choice.xyzguess = {guess("y(mu)", 0.7L), guess("w(mu)", 0.1L)};
    part.read(smallfile);
    EXPECT_EQ(part.ax(2).xv[1].guess, 0.4L);
    EXPECT_EQ(part.ax(2).xv[2].guess, 0.7L);
    AxRun crossed;
    crossed.choice.xyzguess = {{"x(mu)", 0.6L, 0, true, 0.1L, 0.4L}};
    EXPECT_EQ(crossed.fails(edit(smallfile, "x(mu)  0.4  -", "x(mu)  0.4  -  range 0.5 0.9")).message,
              "read in lower limit > upper limit in xyz range");
}

TEST(AxSetup, CodingTwoGuessesByPosition) {
    const std::string mu2 = R"(mu_2  3  2  mica  11  verbatim
verbatim
  x(mu)  -
  y(mu)  -
  p(mu)    1   1 0 1 1 y(mu)
  p(cel)   1   2 1 1 -1 y(mu) 1 1 -1 x(mu)
  p(fcel)  1   2 1 1 -1 y(mu) 0 1 1 x(mu)
  ideal
  2
  xAlM2A  1  1 0 1 1 y(mu)
  xMgM2A  1  2 1 1 -1 y(mu) 1 1 -1 x(mu)
  mu    1  1  xAlM2A 1
  cel   1  1  xMgM2A 1
  fcel  1  1  xMgM2A 1
)";
    AxRun a;
    a.choice.xyzguess = {guess("x(mu)", 0.3L), guess("y(mu)", 0.8L)};
    a.read(mu2);
    EXPECT_EQ(a.ax(1).xv[1].guess, 0.3L);
    EXPECT_EQ(a.ax(1).xv[2].guess, 0.8L);
    const Damaged cases[] = {
        {"names", mu2, "setupphases", "xyzguess names don't match axfile: \"y(mu)\" \"x(mu)\""},
        {"count", mu2, "setupphases", "xyzguess: wrong no of vars"},
    };
    const std::vector<GuessLine> lines[] = {{guess("y(mu)", 0.8L), guess("x(mu)", 0.3L)}, {guess("x(mu)", 0.3L)}};
    for (int k = 0; k < 2; ++k) {
        SCOPED_TRACE(cases[k].name);
        AxRun b;
        b.choice.xyzguess = lines[k];
        const RunEnded e = b.fails(cases[k].text);
        EXPECT_EQ(e.where, cases[k].where);
        EXPECT_EQ(e.message, cases[k].message);
    }
}

TEST(AxSetup, GuessesInsideTheirLimits) {
    const Damaged cases[] = {
        {"above a range", edit(smallfile, "x(mu)  0.4  -", "x(mu)  0.4  -  range 0 0.3"), "setupphases",
         "guess too large for x(mu)"},
        {"below a range", edit(smallfile, "x(mu)  0.4  -", "x(mu)  0.4  -  range 0.5 0.9"), "setupphases",
         "guess too small for x(mu)"},
        {"a site fraction below zero", edit(smallfile, "x(g)  0.85", "x(g)  1.2"), "setupphases",
         "inconsistent starting guesses"},
    };
    expectfatal(cases);
    AxRun shown;
    shown.fails(edit(smallfile, "x(g)  0.85", "x(g)  1.2"));
    EXPECT_NE(shown.con.output.find("for g, site fractions are:\nxMgX = -0.200000\nxFeX = 1.20000\n"
                                    "site fractions must all be positive (starting guess problems)\n"),
              std::string::npos)
        << shown.con.output;
}

TEST(AxSetup, LimitsFromSiteFractions) {
    // A range of 0.2 to 0.8 and a site fraction 7/10 - x: the upper limit
    // is 0.7, and hard.
    const std::string h = R"(h  2  1  0
  x(h)  0.5  -  range  0.2  0.8
  p(a)  1  1 1 1 -1 x(h)
  p(b)  1  1 0 1 1 x(h)
  ideal
  2
  s1  1  1 7/10 1 -1 x(h)
  s2  1  1 0 1 1 x(h)
  a  1  1  s1 1
  b  1  1  s2 1
)";
    AxRun a;
    a.read(h);
    const AxVariable& x = a.ax(1).xv[1];
    EXPECT_EQ(x.lower, 0.2L);
    EXPECT_EQ(x.limlo, limordinary);
    EXPECT_NEAR(x.upper, 0.7L, 1e-18L);
    EXPECT_EQ(x.limhi, limhard);
    EXPECT_NEAR(x.scale, 1 / 0.5L, 1e-15L);
    EXPECT_NEAR(x.offset, -0.2L / 0.5L, 1e-15L);
    EXPECT_NEAR(x.xtol, 0.0001L / 0.5L, 1e-18L);
    EXPECT_TRUE(a.ax(1).nofsfok);

    // Feldspar: xNaA = 1 - ca - k is an oblique limit.
    AxRun f;
    f.choice.with = {"pl4tr"};
    f.load(datafile("sm-axpel.txt"));
    const AxPhase& pl = f.ax(2);
    ASSERT_EQ(pl.pname, "pl4tr");
    ASSERT_EQ(pl.nvarlim, 1);
    EXPECT_EQ(pl.varlim[1].num[1], -1);
    EXPECT_EQ(pl.varlim[1].num[2], -1);
    EXPECT_EQ(pl.varlim[1].num[3], 1);
    EXPECT_EQ(pl.varlim[1].den[3], 1);
    EXPECT_TRUE(pl.nofsfok);
    EXPECT_EQ(pl.xv[1].lower, 0);
    EXPECT_EQ(pl.xv[1].limlo, limhard);
    EXPECT_EQ(pl.xv[1].upper, 3);  // xSiTB = 3/4 - 1/4 ca
    EXPECT_EQ(pl.xv[2].upper, 1);
    EXPECT_EQ(pl.xv[2].limhi, limordinary);
    // A phase with products among its site fractions needs them watched.
    EXPECT_FALSE(f.ax(1).nofsfok);

    AxRun bad;
    EXPECT_EQ(bad.fails(edit(edit(h, "s1  1  1 7/10", "s1  1  1 1/10"), "x(h)  0.5", "x(h)  0.05")).message,
              "lower limit > upper limit in xyz range");
}

TEST(AxSetup, ContractionOfAGarnetWithoutCalcium) {
    AxRun a;
    a.choice.with = {"g"};
    a.choice.xyzguess = {guess("x(g)", 0.8L), guess("z(g)", 0), guess("f(g)", 0.05L)};
    a.load(datafile("sm-axpel.txt"));
    const AxPhase& g = a.ax(1);
    EXPECT_TRUE(g.contracted);
    ASSERT_EQ(g.nem, 3);
    EXPECT_EQ(g.nemfull, 4);
    EXPECT_EQ(g.em[1].ename, "py");
    EXPECT_EQ(g.em[2].ename, "alm");
    EXPECT_EQ(g.em[3].ename, "kho");
    EXPECT_TRUE(g.emcontract[3]);
    ASSERT_EQ(g.nxv, 2);
    EXPECT_EQ(g.xv[2].xname, "f(g)");
    EXPECT_EQ(g.zeroname[1], "z(g)");
    EXPECT_EQ(g.ngt, 3);
    EXPECT_EQ(g.wname[3], "W(alm,kho)");
    for (int s = 1; s <= g.nsf; ++s) EXPECT_NE(g.sfname[s], "xCaX");
    EXPECT_EQ(g.nsf, g.nsffull - 1);
    // The proportions still sum to one over what is left.
    const real x[] = {0, 0.8L, 0.05L};
    real sum = 0;
    for (int j = 1; j <= 3; ++j) sum += evalx(g.pool, g.pexpr[j], x, 1);
    EXPECT_NEAR(sum, 1, 1e-18L);
    // ... and the check values of the variables that are left.
    EXPECT_EQ(g.em[3].checkx[1], 0);
    EXPECT_EQ(g.em[3].checkx[2], 1);

    AxRun q;
    q.choice.with = {"bi"};
    q.choice.xyzguess = {guess("x(bi)", 0.4L), guess("y(bi)", 0.2L), guess("Q(bi)", 0)};
    EXPECT_EQ(q.fails(datafile("sm-axkfm.txt")).message, "contraction wrong size");
}

TEST(AxSetup, SamecodingCopies) {
    AxRun a;
    a.choice.samecoding = {{"g", "g2"}};
    a.choice.samecodingoff = false;
    a.choice.with = {"g", "g2", "q"};
    a.read(smallfile);
    ASSERT_EQ(a.run.store.npss, 3);
    const AxPhase& c = a.ax(3);
    EXPECT_EQ(c.pname, "g2");
    EXPECT_EQ(c.copyof, "g");
    EXPECT_EQ(c.xv[1].xname, "x(g2)");
    EXPECT_EQ(c.em[1].ename, "py");
    AxRun off;
    off.choice.samecoding = {{"g", "g2"}};
    off.choice.samecodingoff = true;
    off.read(smallfile);
    EXPECT_EQ(off.run.store.npss, 2);
    AxRun bad;
    bad.choice.samecoding = {{"gt", "g2"}};
    EXPECT_EQ(bad.fails(smallfile).message, "first samecoding phase, gt is not in the axfile");
}

const std::string fluid = R"(fluid  2  1  0
  x(fluid)  0.3  -
  p(H2O)  1  1 1 1 -1 x(fluid)
  p(CO2)  1  1 0 1 1 x(fluid)
  ideal
  2
  xH2O  1  1 1 1 -1 x(fluid)
  xCO2  1  1 0 1 1 x(fluid)
  H2O  1  1  xH2O 1
  CO2  1  1  xCO2 1
)";

TEST(AxSetup, FluidsAndAqueousPhases) {
    AxRun a;
    a.read(fluid);
    const AxPhase& f = a.ax(1);
    EXPECT_TRUE(f.fluidkind);
    EXPECT_EQ(f.nonideal, asymmetric);
    ASSERT_EQ(f.ngt, 1);
    EXPECT_NEAR(f.wa[1], 10.5L, 1e-15L);
    EXPECT_EQ(f.em[2].fluidindex, 2);
    EXPECT_EQ(f.h2oem, 1);
    EXPECT_EQ(f.co2em, 2);
    AxRun q;
    q.read(replaceall(fluid, "fluid", "aq"));
    EXPECT_TRUE(q.ax(1).aqkind);
    EXPECT_EQ(q.ax(1).gt[1][0], 1);
    EXPECT_EQ(q.ax(1).gt[1][1], 2);
    const Damaged cases[] = {
        {"species in a solid", replaceall(fluid, "fluid", "liq"), "setupphases", "H2O not in fluid/aq"},
        {"oxygen", replaceall(fluid, "CO2", "O2"), "setupphases", "O2 not implemented in fluid coding"},
        {"unknown species", replaceall(fluid, "CO2", "N2"), "setupphases", "end-member name in fluid not recognised"},
        {"aq solvent second", replaceall(replaceall(replaceall(fluid, "fluid", "aq"), "H2O", "XX"), "CO2", "H2O"),
         "setupphases", "1st H2O-CO2 aq end-member must be \"H2O\""},
        {"aq with a W", edit(edit(replaceall(fluid, "fluid", "aq"), "ideal", "sf"), "  2\n", "  W(H2O,CO2) 1 0 0\n  2\n"),
         "setupphases", "set W(H2O-CO2) = 0 (its value is then hard-wired)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        AxRun b;
        const RunEnded e = b.fails(c.text);
        EXPECT_EQ(e.where, c.where);
        EXPECT_EQ(e.message, c.message);
    }
}

TEST(AxSetup, RunEndMembersInTheirOrder) {
    AxRun a;
    a.read(smallfile);
    makename(a.run, withomit(a.run));
    const EndMemberStore& st = a.run.store;
    // Plain end-members of the a-x phases, pure phases, then make terms;
    // each name once.
    const char* expected[] = {"py", "alm", "mu", "cel", "q", "ky", "ann"};
    ASSERT_EQ(st.nem, 7);
    for (int i = 1; i <= 7; ++i) EXPECT_EQ(st.emname[i], expected[i - 1]);
    EXPECT_EQ(st.emname[8], "");

    AxRun b;
    b.choice.with = {"mu", "ky"};
    b.read(smallfile);
    makename(b.run, withomit(b.run));
    EXPECT_EQ(b.run.store.npss, 1);
    EXPECT_EQ(b.run.store.nmin, 1);
    EXPECT_EQ(b.run.store.nph, 2);
    EXPECT_EQ(b.ax(1).pname, "mu");
    EXPECT_EQ(b.pure(1).pname, "ky");
    ASSERT_EQ(b.run.store.nem, 4);
    EXPECT_EQ(b.run.store.emname[4], "ann");
}

TEST(AxSetup, TableLimits) {
    std::string many;
    for (int k = 1; k <= 81; ++k)
        many += replaceall(smallfile.substr(smallfile.find("g  2"), smallfile.find("mu  3") - smallfile.find("g  2")),
                           "(g)", "(g" + std::to_string(k) + ")")
                    .replace(0, 1, "g" + std::to_string(k));
    AxRun phases;
    EXPECT_EQ(phases.fails(many).message, "too many ss phases");

    std::string pure;
    for (int k = 1; k <= 200; ++k) pure += "p" + std::to_string(k) + "\n";
    for (int k = 1; k <= 101; ++k)
        pure += "m" + std::to_string(k) + " 1 e" + std::to_string(k) + " make 2 s" + std::to_string(k) + " 1 t" +
                std::to_string(k) + " 1\n";
    AxRun names;
    names.read(pure);
    try {
        makename(names.run, withomit(names.run));
        ADD_FAILURE() << "no fatal stop";
    } catch (const RunEnded& e) {
        EXPECT_EQ(e.where, "makename");
        EXPECT_EQ(e.message, "too many end-members");
    }
    std::string six;
    for (int k = 1; k <= 140; ++k) {
        six += "m" + std::to_string(k) + " 1 e" + std::to_string(k) + " make 6";
        for (int t = 1; t <= 6; ++t) six += " a" + std::to_string(t) + " 1";
        six += "\n";
    }
    AxRun list;
    list.read(six);
    try {
        makename(list.run, withomit(list.run));
        ADD_FAILURE() << "no fatal stop";
    } catch (const RunEnded& e) {
        EXPECT_EQ(e.message, "too many end-members 4");
    }
}

TEST(AxSetup, EndMembersTheDatasetLacks) {
    AxRun a;
    const char* known[] = {"py", "alm", "mu", "cel", "q", "ky"};
    a.run.store.ntp = 6;
    for (int i = 0; i < 6; ++i) a.run.store.dsname[i + 1] = known[i];
    const RunEnded e = a.fails(smallfile);
    EXPECT_EQ(e.where, "setupphases");
    EXPECT_EQ(e.message, "stuff up : unrecognised name : ann");
    const int line = 1 + static_cast<int>(std::count(smallfile.begin(), smallfile.begin() + smallfile.find("make  2"), '\n'));
    EXPECT_NE(a.con.output.find(", line " + std::to_string(line) + ", phase mu\n"), std::string::npos) << a.con.output;
}

}  // namespace
}  // namespace sm::axtest
