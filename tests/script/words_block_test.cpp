// Block and list scripts: projection planes, reaction sets, isopleths,
// starting guesses, batches, filters and Monte Carlo lines.
#include "scriptfixture.h"

namespace {

using smtest::ScriptRun;

TEST(BlockWords, ProjectionPlane) {
    ScriptRun t;
    t.read("project\nsetprojplane SiO2 Al2O3 FeOt\nprojplane q 1 0 0\nprojplane ky 0.5 0.5 0\n");
    const sm::EquilibriumScripts& e = t.s().equilibrium;
    EXPECT_EQ(e.projoxides[2], "FeO");
    ASSERT_EQ(e.apices.size(), 2u);
    EXPECT_EQ(e.apices[1].values[1], 0.5L);

    ScriptRun u;
    u.read("setprojplane SiO2 Al2O3\nprojplane q 1 0\n");  // no projection: skipped
    EXPECT_TRUE(u.s().equilibrium.apices.empty());

    ScriptRun v;
    const sm::RunEnded a = v.readfails("project\nsetprojplane q 1 0 0\n");
    EXPECT_EQ(a.message, "change the setprojplane script");
    EXPECT_TRUE(v.said("now, setprojplane starts with an oxide list on a line, before the block \n"
                       "of apex compositions (this line was there before but preceded by a %)"));
    ScriptRun w;
    EXPECT_EQ(w.readfails("project\nsetprojplane SiO2\nproject\n").message,
              "projection script needs to be before reading projection plane");
}

TEST(BlockWords, IndependentReactions) {
    ScriptRun t(2);
    t.read("setisr py gr alm q\nisr 1 1 -1 0\nisr 0 2 -3 1\n");
    ASSERT_EQ(t.s().rock.isr.size(), 2u);
    EXPECT_EQ(t.s().rock.isr[1], (std::vector<int>{0, 2, -3, 1}));

    ScriptRun u(2);
    EXPECT_EQ(u.readfails("setisr 1 1 -1\n").message, "change the setisr script");
    EXPECT_TRUE(u.said("now, setisr starts with an end-member list on a line, before the block "));

    ScriptRun v(2);
    v.read("setisr py gr\nsetisr 1 0.5\nsetisr 1 1\n", "no\n");
    EXPECT_EQ(v.problems(), 1);
    EXPECT_TRUE(v.s().rock.isr.empty());  // given up after the fault
    EXPECT_EQ(v.s().rock.isrcount, 0);
    EXPECT_TRUE(v.said("for setisr, info includes \"0.5\" not just integers"));

    // a set over more end-members than one info record holds
    std::string names = "setisr", coefs = "setisr";
    for (int i = 0; i < 45; ++i) {
        names += " e" + std::to_string(i);
        coefs += i == 44 ? " -1" : " 0";
    }
    ScriptRun w(2);
    w.read(names + "\n" + coefs + "\n");
    ASSERT_EQ(w.s().rock.isr.size(), 1u);
    EXPECT_EQ(w.s().rock.isr[0][44], -1);
}

TEST(BlockWords, IsoplethShapes) {
    const struct {
        const char* line;
        size_t count;
        int nvalues1;
    } good[] = {
        {"isopleth x(g)", 1, 0},
        {"isopleth x(g) y(bi)", 2, 0},
        {"isopleth x(g) 0.3", 1, 1},
        {"isopleth x(g) 0.3 y(bi) 0.2", 2, 1},
        {"setiso x(g) 0.1 0.5 0.1", 1, 3},
        {"isopleth x(g) 0.1 0.5 0.1 y(bi)", 2, 3},
        {"isopleth x(g) 0.1 0.5 0.1 y(bi) 0.3", 2, 3},
        {"isopleth x(g) 0.1 0.5 0.1 y(bi) 0.1 0.2 0.05", 2, 3},
    };
    for (const auto& c : good) {
        ScriptRun t;
        t.act(c.line);
        ASSERT_EQ(t.s().equilibrium.iso.size(), c.count) << c.line;
        EXPECT_EQ(t.s().equilibrium.iso[0].nvalues, c.nvalues1) << c.line;
    }
    ScriptRun t;
    EXPECT_EQ(t.actfails("isopleth x(g) 0.1 0.5").message, "isopleth info inappropriate");
    EXPECT_TRUE(t.said("isopleth info not recognised: just use isopleth name(s)\n"
                       "and enter the isopleth information interactively?"));
    for (const char* bad : {"isopleth x(g) 0.5 0.1 0.1", "isopleth x(g) 0.1 0.5 0", "isopleth x(g) 1.2"}) {
        ScriptRun u;
        EXPECT_EQ(u.actfails(bad).message, "isopleth values inappropriate") << bad;
    }
    ScriptRun m;
    EXPECT_EQ(m.actfails("modeiso g 0.1 0.5").message, "mode isopleth info inappropriate");
    EXPECT_TRUE(m.said("mode isopleth info not recognised: just use mode isopleth name(s)"));
    m.act("modeiso none");
    EXPECT_EQ(m.s().equilibrium.modeisoflag, 1);
}

TEST(BlockWords, StartingGuesses) {
    ScriptRun t;
    t.act("xyzguess x(g) 0.8 sd -1 range 0.5 0.9");
    t.act("xyz y(bi) 0.2");
    const auto& g = t.s().equilibrium.xyzguess;
    ASSERT_EQ(g.size(), 2u);
    EXPECT_EQ(g[0].sd, 0);
    EXPECT_NEAR(static_cast<double>(g[0].hi), 0.9, 1e-15);
    EXPECT_EQ(g[1].lo, 0);
    t.act("xyzguess no");
    EXPECT_TRUE(t.s().equilibrium.xyzguess.empty());
    for (int i = 0; i < 200; ++i) t.act("readxyz x(g) 0.8");
    EXPECT_EQ(t.actfails("readxyz x(g) 0.8").message, "too many xyzguess");
    t.act("modeguess g 0.1");
    EXPECT_EQ(t.s().equilibrium.modeguess.size(), 1u);
}

const char* const batchscript =
    "with g bi mu q\n"
    "pseudosection no\n"
    "batchxyzguess startblock\n"
    "batchxyzguess x(g) 0.8 range 0.5 0.9\n"
    "batch g bi 2 1 1 6 550 0 1 0 0\n"
    "batch g mu q 2 1 2 7 500 600 1 1 0 1 g 1 0.3\n"
    "batch bi q 2 2 1 6 8 550 0 1 0 0\n";

TEST(BatchWords, BatchesAreReadAndEchoed) {
    ScriptRun t;
    t.read(batchscript);
    const sm::BatchScripts& b = t.s().batches;
    ASSERT_EQ(b.batch.size(), 3u);
    EXPECT_EQ(b.batchflag, 0);
    EXPECT_NEAR(static_cast<double>(b.batch[1].T[1]), 873.15, 1e-9);
    EXPECT_EQ(b.batch[1].isopleths[0].value, 0.3L);
    EXPECT_TRUE(t.said("batches\n1 : g bi . : 10 p0 i0\n2 : g . mu q : 10 p0 i1\n"
                       "3 : . bi . q : 10 p0 i0\n"))
        << t.con.output;
    EXPECT_TRUE(t.said("no of batches = 3"));
}

TEST(BatchWords, SwitchAndRequirementsRenumber) {
    ScriptRun t;
    t.read(std::string(batchscript) + "batchswitch all except 2\nbatchreq 3 1\n");
    const sm::BatchScripts& b = t.s().batches;
    ASSERT_EQ(b.batch.size(), 2u);
    EXPECT_EQ(b.batch[1].oldnumber, 3);
    EXPECT_EQ(b.batchreq[0], (std::vector<int>{2, 1}));
    EXPECT_TRUE(t.said("caring batches\n2 1 \n"));

    ScriptRun u;
    EXPECT_EQ(u.readfails(std::string(batchscript) + "batchswitch 4\n").message,
              "batchswitch not in range");
}

TEST(BatchWords, ABatchBeforeWithTurnsBatchesOff) {
    ScriptRun t;
    t.read("batch g 2 1 1 6 550 0 1 0 0\nwith g bi\nbatch g 2 1 1 6 550 0 1 0 0\n");
    EXPECT_EQ(t.s().batches.batchflag, 1);
    EXPECT_EQ(t.s().batches.batchcount, 1);  // the one plain calculation
    EXPECT_EQ(t.problems(), 0);
}

TEST(BatchWords, BatchFaults) {
    const struct {
        const char* line;
        const char* where;
        const char* message;
    } cases[] = {
        {"batch g zz 2 1 1 6 550 0 1 0 0", "reading scripts", "unrecognised phase, zz, in batch"},
        {"batch g 2 1", "reading scripts", "insufficient info in batch (1)"},
        {"batch g -1 1 1 6 550 0 1 0 0", "reading scripts", "batch with negative variance?"},
        {"batch g 2 0 1 550 0 1 0 0", "reading scripts", "not enough batch PT"},
        {"batch g 2 4 3 1 2 3 4 500 550 600 0 1 0 0", "reading scripts", "too many batch PT"},
        {"batch g 2 1 2 6 550", "reading scripts", "insufficient info in batch (2)"},
        {"batch g 2 1 1 6 550", "reading scripts", "insufficient info in batch (3a)"},
        {"batch g 2 1 1 6 550 0", "reading scripts", "in batch, no xyz flag"},
        {"batch g 2 1 1 6 550 0 0", "reading scripts", "in batch, kxyz out of range"},
        {"batch g 2 1 1 6 550 0 1", "reading scripts", "in batch, no bulk flag"},
        {"batch g 2 1 1 6 550 0 1 3", "reading scripts", "in batch, comp1 code out of range"},
        {"batch g 2 1 1 6 550 0 1 0", "reading scripts", "in batch, no isopleth flag"},
        {"batch g 2 1 1 6 550 0 1 0 1 g", "readscripts", "in batch, not enough info for isopleths"},
        {"batch g 2 1 1 6 550 0 1 0 1 zz 1 0.3", "readscripts", "in batch, wrong name for isopleths"},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        t.act("with g bi");
        const sm::RunEnded e = t.actfails(c.line);
        EXPECT_EQ(e.where, c.where) << c.line;
        EXPECT_EQ(e.message, c.message) << c.line;
    }
    ScriptRun p;
    p.act("with g bi");
    p.act("pseudosection");
    EXPECT_EQ(p.actfails("batch g 2 1 1 6 550 0 1 0 0").message,
              "in batch, pseudosection wanted but no bulk");
    p.act("batchbulk 50 50");
    p.act("mcbulk 20 80");
    p.act("batch g 2 1 1 6 550 0 1 1 2 0.5 1 g 0.2 1 g 1 0.3");
    EXPECT_EQ(p.s().batches.batch[0].bulk[0], 35);
    for (const auto& bad : {std::make_pair("batch g 2 1 1 6 550 0 1 1 2 1.5", "in batch, bung bulk proportion"),
                            std::make_pair("batch g 2 1 1 6 550 0 1 1 2 0.5 3", "in batch, wrong number of modes set"),
                            std::make_pair("batch g 2 1 1 6 550 0 1 1 0 1 zz 0.2", "in batch, modeset phase1 not in which"),
                            std::make_pair("batch g 2 1 1 6 550 0 1 1 0 1 g 2", "in batch, modeset phase1 mode stuffed"),
                            std::make_pair("batch g 2 1 1 6 550 0 1 1 0 1 g 0.2 3", "in batch, wrong number of isopleths set")})
        EXPECT_EQ(p.actfails(bad.first).message, bad.second) << bad.first;
}

TEST(BatchWords, SettlementOfBatches) {
    ScriptRun t;
    EXPECT_EQ(t.readfails("with g\nbatch g 2 1 1 6 550 0 1 0 0\n").message,
              "no batchxyzguess to use with batches");
    ScriptRun u;
    EXPECT_EQ(u.readfails(std::string(batchscript) + "xyzguess x(g) 0.8\n").message,
              "xyzguess not allowed with batches (use batchxyzguess)");
    ScriptRun v;
    const sm::RunEnded e = v.readfails(std::string(batchscript) + "filter 1 T 500 600\n");
    EXPECT_EQ(e.where, "read scripts");
    EXPECT_EQ(e.message, "flitters don't match batches");
}

TEST(BatchWords, FiltersAndMonteCarlo) {
    ScriptRun t;
    t.act("with g bi");
    EXPECT_EQ(t.actfails("filter 1 T 500 600").message, "filters not interleaved with batches");
    t.act("batchxyzguess startblock");
    t.act("batch g 2 1 1 6 550 0 1 0 0");
    EXPECT_EQ(t.actfails("filter x").message, "filter keyword must be followed by an integer");
    EXPECT_EQ(t.actfails("filter 2 T 500 600").message, "insufficient filter info");
    EXPECT_EQ(t.actfails("filter 1 T 500 600 7").message, "wrong length of filter info");
    EXPECT_EQ(t.actfails("filter 1 T x 600").message, "lower filter not a number");
    t.act("flitter 1 2 500 600");
    EXPECT_NEAR(static_cast<double>(t.s().batches.filters[0][0].low), 773.15, 1e-9);
    EXPECT_EQ(t.actfails("filter 1 T 500 600").message, "too many filter sets");

    t.act("mcrange wg 10 2");
    t.act("mcfunc W(g,bi)a 0 1 0.5 wg");
    t.act("mc g W(g,bi)a 3 0.5");
    t.act("mc g W(g,bi)b =wg");
    t.act("mc g W(g,bi)a f");
    EXPECT_EQ(t.s().batches.mc.size(), 3u);
    EXPECT_EQ(t.s().batches.mc[1].kind, 1);
    const struct {
        const char* line;
        const char* message;
    } bad[] = {
        {"mc zz W(g,bi)a 3 0.5", "zz in mc not in \"with\""},
        {"mc g W(g,bi)d 3 0.5", "in mc, abc"},
        {"mc g Wa 3 0.5", "in mc, mcvarname (1)"},
        {"mc g V(g,bi)a 3 0.5", "in mc, mcvarname (3)"},
        {"mc g W(g,bi)a <3", "in mc, >/< not currently implemented"},
        {"mc g W(g,bi)a =zz", "in mc, no match with mcrange"},
        {"mc g W(g,bi)c f", "in mc, no match with mcfunc"},
        {"mc g W(g,bi)a 3", "in mc, not enough info"},
        {"mc g W(g,bi)a x y", "in mc, bad range info"},
        {"mcfunc f1 0 1 0.5 zz", "wrong mcfunc info (3)"},
        {"mcrange r1 1", "wrong mcrange info"},
        {"mcit 1", "wrong mcit info"},
    };
    for (const auto& c : bad) EXPECT_EQ(t.actfails(c.line).message, c.message) << c.line;
    ScriptRun s;
    s.act("with g");
    s.act("samecoding g g2");
    EXPECT_EQ(s.actfails("mc g W(g,bi)a 3 0.5").message,
              "scriptfile samecoding not implemented in mcsm");
}

TEST(BatchWords, MonteCarloSettlement) {
    ScriptRun t;
    t.read("with g bi\nbatchxyzguess startblock\nbatchxyzguess x(g) 0.8\n"
           "batch g 2 1 1 6 550 0 1 0 0\nmc g W(g,bi)a 3 0.5\nmcdebug\n");
    EXPECT_EQ(t.s().batches.mcita, 5);
    EXPECT_EQ(t.s().batches.mcitn, 3);
    EXPECT_TRUE(t.said("mc info\n1 g W(g,bi)a 3.00000 0.500000\n"));
    ScriptRun u;
    EXPECT_EQ(u.readfails("with g bi\ninexcess q\nbatchxyzguess startblock\n"
                          "batch g 2 1 1 6 550 0 1 0 0\nmc g W(g,bi)a 3 0.5\n")
                  .message,
              "sorry! in-excess phases not allowed with                    ");
    ScriptRun v;
    EXPECT_EQ(v.readfails("with g bi\nbatchxyzguess startblock\n"
                          "batch g 2 1 2 6 550 600 0 1 0 0\nmc g W(g,bi)a 3 0.5\n")
                  .message,
              "only one calc per batch in mcsm currently");
}

TEST(ListWords, OverlongLists) {
    std::string many = "debuglevel";
    for (int i = 0; i < 41; ++i) many += " 1";
    ScriptRun t;
    const sm::RunEnded e = t.actfails(many);
    EXPECT_EQ(e.where, "reading script for debuglevel");
    EXPECT_EQ(e.message, "too much info");
    std::string phases = "with";
    for (int i = 0; i < 300; ++i) phases += " p" + std::to_string(i);
    t.act(phases);  // a list reads its own words
    EXPECT_EQ(t.s().phases.with.size(), 300u);
}

}  // namespace
