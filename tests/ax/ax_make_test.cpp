// End-member options (make, the DQF forms, exclude, their integer codes),
// charged species, and the forms of pure phases.
#include "ax_testing.h"

namespace sm::axtest {
namespace {

// The binary garnet of smallfile with options after its second end-member.
std::string withoptions(const std::string& options) {
    return edit(smallfile, "      check  1\n", "      check  1\n" + options + "\n");
}

TEST(AxMake, TermsActionsAndCommonDenominator) {
    AxRun a;
    a.read(withoptions("make 3  ann 1/3  disordered phl 2/3  equil sp -1/2\n  delG(od)  -3  0.001  0.02"));
    const MakeRecord& m = a.ax(1).em[2].make;
    ASSERT_EQ(m.nmake, 3);
    EXPECT_EQ(m.makediv, 6);
    EXPECT_EQ(m.makename[1], "ann");
    EXPECT_EQ(m.makecoef[1], 2);
    EXPECT_EQ(m.makeaction[1], actnotgiven);
    EXPECT_EQ(m.makecoef[2], 4);
    EXPECT_EQ(m.makeaction[2], actdisordered);
    EXPECT_EQ(m.makecoef[3], -3);
    EXPECT_EQ(m.makeaction[3], actequilibrium);
    EXPECT_EQ(m.dqfcode, dqfod);
    EXPECT_EQ(m.dqfa, -3);
    EXPECT_NEAR(m.dqfb, 0.001L, 1e-18L);
    EXPECT_NEAR(m.dqfc, 0.02L, 1e-18L);
    // The make of smallfile's fcel.
    const MakeRecord& f = a.ax(2).em[3].make;
    EXPECT_EQ(f.nmake, 2);
    EXPECT_EQ(f.makediv, 2);
    EXPECT_EQ(f.dqfcode, dqfmake);
}

TEST(AxMake, KeywordsAndCodes) {
    const std::pair<const char*, int> dqf[] = {
        {"DQF", dqfplain},          {"dqf", dqfplain},          {"deltaG", dqfplain},
        {"\xC6G", dqfplain},        {"deltaG(make)", dqfmake},  {"\xC6G(make)", dqfmake},
        {"delG(mod)", dqfmod},      {"deltaG(od)", dqfod},      {"\xC6G(tran)", dqftran},
        {"delG(rcal)", dqfrcal},    {"3", dqfplain}};
    for (const auto& [word, code] : dqf) {
        AxRun a;
        a.read(withoptions(std::string("4 1 ordered sp 1\n ") + word + " 1 2 3"));
        const MakeRecord& m = a.ax(1).em[2].make;
        EXPECT_EQ(m.nmake, 1) << word;
        EXPECT_EQ(m.makeaction[1], actordered);
        EXPECT_EQ(m.dqfcode, code) << word;
        EXPECT_EQ(m.dqfc, 3);
    }
    AxRun ex;
    ex.read(withoptions("exclude"));
    EXPECT_TRUE(ex.ax(1).em[2].excluded);
    AxRun seven;
    seven.read(withoptions("7 6"));
    EXPECT_TRUE(seven.ax(1).em[2].excluded);
    EXPECT_EQ(seven.ax(1).em[2].make.nmake, -1);
}

TEST(AxMake, PurePhaseForms) {
    AxRun a;
    a.choice.buffername = "FMQ";
    a.choice.bufferoffset = 1;
    a.read(smallfile + R"(
sill 0.9 0.02
and 0.8 0
ru
kyz 1 ky 0.5
FMQ 1 buffer
   make 3 fa 3/2 q 3/2 mt -1/2   DQF 0 0 0
H2O 1 h2o
  4 1 steam 1  3 1 2 3
coe 0.9 6
)");
    ASSERT_EQ(a.run.store.nmin, 9);
    EXPECT_EQ(a.pure(4).pname, "and");
    EXPECT_EQ(a.pure(3).pname, "sill");
    EXPECT_NEAR(a.pure(3).fixeda, 0.9L, 1e-18L);
    EXPECT_NEAR(a.pure(3).sdfixeda, 0.02L, 1e-18L);
    EXPECT_NEAR(a.pure(4).fixeda, 0.8L, 1e-18L);
    EXPECT_EQ(a.pure(4).sdfixeda, 0);
    EXPECT_EQ(a.pure(5).pname, "ru");
    EXPECT_EQ(a.pure(6).pname, "kyz");
    EXPECT_EQ(a.pure(6).ename, "ky");
    EXPECT_NEAR(a.pure(6).fixeda, 0.5L, 1e-18L);
    EXPECT_TRUE(a.pure(7).isbuffer);
    EXPECT_EQ(a.run.phases.nbuffer, 1);
    EXPECT_EQ(a.run.phases.buffer[1], 7);
    // The buffer's offset of one log unit: RT ln 10 per kelvin.
    EXPECT_NEAR(a.pure(7).make.dqfb, 2.302585093L * 0.0083144L, 1e-18L);
    EXPECT_EQ(a.pure(8).ename, "h2o");
    EXPECT_EQ(a.pure(8).make.makename[1], "steam");
    EXPECT_EQ(a.pure(8).make.dqfb, 2);
    EXPECT_EQ(a.pure(9).make.nmake, -1);
}

TEST(AxMake, TheAmbiguousOne) {
    // "q 1 ..." with q in the dataset: an activity of 1, or a phase whose
    // end-member follows?
    const std::string text = smallfile + "sill 1 ky\n";
    for (const char* answer : {"y", "n"}) {
        AxRun a;
        a.choice.with = {"q", "ky", "sill"};
        a.run.store.ntp = 3;
        a.run.store.dsname[1] = "sill";
        a.run.store.dsname[2] = "ky";
        a.run.store.dsname[3] = "q";
        a.con.feed(std::string(answer) + "\n");
        a.read(text);
        EXPECT_EQ(a.con.output, "reading ax: g mu q ky sill\n\n"
                                "datafile appears to be ambiguous: a 1 immediately follows sill;\n"
                                "this means either an activity of 1, or it's a 1 end-member phase.\n"
                                "the '1' its activity ? " +
                                    std::string(answer[0] == 'y' ? "reading ax: ky\n" : ""));
        if (answer[0] == 'y') {
            ASSERT_EQ(a.run.store.nmin, 4);
            EXPECT_EQ(a.pure(3).ename, "sill");
            EXPECT_EQ(a.pure(4).pname, "ky");
        } else {
            ASSERT_EQ(a.run.store.nmin, 3);
            EXPECT_EQ(a.pure(3).ename, "ky");
        }
    }
}

TEST(AxMake, DamagedOptions) {
    const Damaged cases[] = {
        {"no terms", withoptions("make 0"), "read", "too few end-members to construct alm"},
        {"seven terms", withoptions("make 7 a 1 b 1 c 1 d 1 e 1 f 1 h 1"), "read",
         "too many end-members to construct alm"},
        {"itself", withoptions("make 2 py 1 alm 1"), "read",
         "names: end-member, alm, and name in make, alm, must be different"},
        {"DQF first", withoptions("DQF 1 0 0"), "read", "need to \"make\" end-member before DQF-ing it"},
        {"word after DQF", withoptions("make 1 ann 1 DQF make 1 0 0"), "read",
         "keyword after DQF not allowed now (include in make)"},
        {"code 1", withoptions("1"), "read", "wrong code in info for alm"},
        {"code 2", withoptions("2"), "read", "wrong code in info for alm"},
        {"check on a pure phase", smallfile + "sill 1 ky  5 1", "read", "wrong code for additional info for ky"},
        {"code on a pure phase", smallfile + "sill 1 ky  2", "read", "wrong code for additional info for ky"},
        {"pure phase named as its end-member", smallfile + "sill 1 sill", "setupphases",
         "names: phase, sill, and end-member, sill, must be different"},
        {"activity above 1", smallfile + "sill 1.5", "setupphases", "activity for sill ..."},
        {"activity of 0", smallfile + "sill 0.0", "setupphases", "activity for sill ..."},
        {"six buffers", smallfile + "a 1 buffer\nb 1 buffer\nc 1 buffer\nd 1 buffer\ne 1 buffer\nf 1 buffer\n",
         "read", "too many buffers"},
        {"coefficient not a number", withoptions("make 1 ann x"), "reading",
         "expecting a rational (4); got: x - coefficient of ann in make of alm"},
        {"truncated make", smallfile.substr(0, smallfile.find("mu  3")) + "make 2 ann 1", "reading",
         "unexpected end of input: name in make of alm"},
    };
    expectfatal(cases);
}

TEST(AxMake, ChargedSpecies) {
    AxRun a;
    a.read(withoptions("make 2 Na+ 1/2 Cl- 1/2"));
    EXPECT_EQ(a.ax(1).em[2].emtd[tdaqcharge], 1);
    EXPECT_EQ(a.ax(1).em[2].emtd[tdaqsize], 1);
    AxRun b;
    b.read(withoptions("make 2 Ca++ 1/3 Cl- 2/3"));
    EXPECT_EQ(b.ax(1).em[2].emtd[tdaqcharge], 2);
    EXPECT_EQ(b.ax(1).em[2].emtd[tdaqsize], 1);
    const Damaged cases[] = {
        {"a plain ion", edit(smallfile, "  alm  1  1  xFeX  3", "  Fe++  1  1  xFeX  3"), "read",
         "charged species not allowed as end-members"},
        {"three terms", withoptions("make 3 Na+ 1/2 Cl- 1/4 OH- 1/4"), "read",
         "must be just 2 charged species in a compound"},
        {"one neutral", withoptions("make 2 Na+ 1/2 H2O 1/2"), "read", "all species in a compound must be charged"},
        {"not a mean", withoptions("make 2 Na+ 1 Cl- 1"), "read", "compound not in mean form"},
        {"not balanced", withoptions("make 2 Ca++ 1/2 Cl- 1/2"), "read", "compound not charged-balanced"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        AxRun x;
        const RunEnded e = x.fails(c.text);
        EXPECT_EQ(e.where, c.where);
        EXPECT_EQ(e.message, c.message);
    }
}

}  // namespace
}  // namespace sm::axtest
