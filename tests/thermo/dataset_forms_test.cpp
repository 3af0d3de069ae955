// The forms of the dataset other than the shipped one: Einstein and aqueous
// rows of the newest form, and the two older forms, on small made-up files.
#include <cmath>

#include "thermo/store.h"
#include "thermo_testing.h"

namespace sm {
namespace {

using namespace sm::testing;

// A covariance block of zeros and a label for n entries.
std::string tail(int n) {
    std::string text = "\n1.0\n";
    const long count = static_cast<long>(n) * (n + 1) / 2;
    for (long k = 0; k < count; ++k) text += (k % 20 == 19) ? "0\n" : "0 ";
    text += "\n\nmade-up data for the tests (sigfit =  1.000)\n";
    return text;
}

const char* const header10 = "don't fiddle with the numbers: you'll BREAK the dataset...";

TEST(DatasetForms, NewestFormWithEinsteinAndAqueousRows) {
    smtest::ScratchDir dir;
    std::string text = std::string("7  7    ") + header10 + "\n  \n";
    // Einstein (eos 3): H S V cpa cpb theta, then alpha k0 k0p k0pp
    text += "ein   MgO   2  5 1  10 1  0\n  3  -600  0.027  1.125\n  0.0605  -4e-7  476\n  3.1e-05  1616  3.95  -0.0024443\n\n";
    // Einstein with Landau data
    text += "einl  SiO2  2  1 1  10 2  0\n  4  -910  0.041  2.27\n  0.0929  -6.4e-7  510\n  0  730  6  -0.0082192  847  0.00495  0.1188\n\n";
    // aqueous: the parameter less 298.15 cpb
    text += "aqx   Na2O  1  8 2  10 1  0\n  8  -240  0.059  -0.1\n  0.038  0.0001  0  0\n  0  0  0  1.5\n\n";
    // a melt of the newer form, and a name ending in a lower-case l
    text += "xyzL  SiO2  2  1 1  10 2  0\n  7  -920  0.016  2.73\n  0.0825  0  0  0\n  0  220  9.46  -0.035\n\n";
    text += "xyzl  SiO2  2  1 1  10 2  0\n  0  -920  0.0415  2.27\n  0.0929  0  0  0\n  0  730  6\n\n";
    // no elements: theta 10
    text += "none  -  0  0\n  0  -1  0.1  1\n  0  0  0  0\n  0  100  4\n\n";
    // theta from S per atom: 10636/(6.44 + 1000*0.0003/3) = 1626.3 -> 1626
    text += "hard  SiO2  2  1 1  10 2  0\n  0  -1  0.0003  1\n  0  0  0  0\n  0  100  4\n\n";
    text += tail(7);
    TestRun t;
    ASSERT_EQ(stopof([&] { readdataset(t.run, put(dir, "sm-ds7z.txt", text)); }), "");
    const EndMemberStore& s = t.run.store;
    EXPECT_EQ(s.dsmode, 7);
    EXPECT_TRUE(s.newds);
    EXPECT_EQ(t.run.dataset.label, "made-up data for the tests");
    const TdRow& ein = s.td[rowof(t.run, "ein")];
    EXPECT_EQ(ein[tdeos], 3);
    EXPECT_EQ(ein[tdtheta], 476);
    EXPECT_EQ(ein[tdcpc], 0);
    EXPECT_EQ(ein[tdcpd], 0);
    EXPECT_NEAR(static_cast<double>(ein[tdk0pp]), -0.0024443, 1e-12);
    EXPECT_EQ(ein[tdk0], 1616);
    EXPECT_EQ(ein[tdSmax], -1);
    const TdRow& einl = s.td[rowof(t.run, "einl")];
    EXPECT_EQ(einl[tdeos], 4);
    EXPECT_EQ(einl[tdTc], 847);
    EXPECT_NEAR(static_cast<double>(einl[tdVmax]), 0.1188, 1e-15);
    const TdRow& aq = s.td[rowof(t.run, "aqx")];
    EXPECT_EQ(aq[tdeos], 8);
    EXPECT_NEAR(static_cast<double>(aq[tdaqz]), 1.5 - 298.15 * 0.0001, 1e-15);
    const TdRow& melt = s.td[rowof(t.run, "xyzL")];
    EXPECT_EQ(melt[tdtheta], 0);
    EXPECT_NEAR(static_cast<double>(melt[tddkdT]), -0.035, 1e-15);
    const TdRow& notmelt = s.td[rowof(t.run, "xyzl")];
    EXPECT_EQ(notmelt[tddkdT], 0);
    EXPECT_EQ(notmelt[tdtheta], std::round(10636 / (6.44 + 1000 * 0.0415 / 3)));
    EXPECT_EQ(s.td[rowof(t.run, "none")][tdtheta], 10);
    EXPECT_EQ(s.natoms[rowof(t.run, "none")], 0);
    EXPECT_EQ(s.td[rowof(t.run, "hard")][tdtheta], 1626);

    // an Einstein row whose k0pp is not -k0p/k0
    std::string bad = text;
    bad.replace(bad.find("-0.0024443"), 10, "-0.0030000");
    TestRun u;
    EXPECT_EQ(stopof([&] { readdataset(u.run, put(dir, "sm-ds7z.txt", bad)); }),
              "texthermoread : k0pp not regularised?");
}

// Entries of the fifth generation: 4 lines, no eos word, the extra data by a
// code after the eleven reals. At least 51 entries, the count standing first.
std::string fifthgeneration(int ntp) {
    std::string text = std::to_string(ntp) + "  " + header10 + " x\n  \nfree text line\n";
    const char* const entries[] = {
        "pl  2  1 1  10 2  0\n -900 0.04 2.2 0.09 0 0 0\n 1e-5 700 4 -0.0057\n 0\n",
        "la  2  1 1  10 2  0\n -900 0.04 2.2 0.09 0 0 0\n 1e-5 700 4 -0.0057\n 1  847 0.00495 0.1188\n",
        "bw  2  1 1  10 2  0\n -900 0.04 2.2 0.09 0 0 0\n 1e-5 700 4 -0.0057\n 2  8 0 1.2 0 2 0.5\n",
        "aq  2  1 1  10 2  0\n -900 0.04 2.2 0.09 0.001 0 0\n 1e-5 700 4 -0.0057\n -1  2.5\n",
        "fl  2  1 1  10 2  0\n -900 0.04 0 0.09 0 0 0\n 0 0 0 0\n 0\n",
        "mtL  2  1 1  10 2  0\n -900 0.04 2.2 0.09 0 0 0\n 1e-5 700 4 -0.0057\n -0.02 0\n",
    };
    for (int i = 0; i < ntp; ++i) {
        if (i < 6)
            text += entries[i];
        else
            text += "f" + std::to_string(i) +
                    "  1  1 1  0\n -1 0.01 1 0 0 0 0\n 0 0 0 0\n 0\n";
    }
    return text + tail(ntp);
}

TEST(DatasetForms, FifthGeneration) {
    smtest::ScratchDir dir;
    TestRun t;
    readdataset(t.run, put(dir, "sm-ds5z.txt", fifthgeneration(51)));
    const EndMemberStore& s = t.run.store;
    EXPECT_EQ(s.dsmode, 5);
    EXPECT_FALSE(s.newds);
    EXPECT_EQ(s.ntp, 51);
    EXPECT_EQ(s.dscomment[1], "");
    const TdRow& pl = s.td[1];
    EXPECT_EQ(pl[tdeos], 0);
    EXPECT_NEAR(static_cast<double>(pl[tdk0pp]), -0.0057, 1e-15);  // as given, not -k0p/k0
    EXPECT_EQ(pl[tdtheta], std::round(10636 / (6.44 + 1000 * 0.04 / 3)));
    EXPECT_EQ(s.td[2][tdeos], 1);
    EXPECT_EQ(s.td[2][tdTc], 847);
    EXPECT_EQ(s.td[3][tdeos], 2);
    EXPECT_EQ(s.td[3][tdbwn], 2);
    EXPECT_EQ(s.td[4][tdeos], 8);
    EXPECT_NEAR(static_cast<double>(s.td[4][tdaqz]), 2.5 - 298.15 * 0.001, 1e-15);
    EXPECT_EQ(s.td[5][tdeos], 6);  // V of 0
    EXPECT_EQ(s.td[6][tdeos], 7);
    EXPECT_NEAR(static_cast<double>(s.td[6][tddkdT]), -0.02, 1e-15);
    EXPECT_NEAR(static_cast<double>(s.td[51][tdH]), -1, 1e-15);

    // 191 also selects this form; 50 does not
    TestRun u;
    readdataset(u.run, put(dir, "sm-ds5z.txt", fifthgeneration(191)));
    EXPECT_EQ(u.run.store.dsmode, 5);
}

// The oldest form: exactly 190 entries of 2 lines, H S V on the name line.
std::string oldestform(int ntp = 190) {
    std::string text = std::to_string(ntp) + "  " + header10 + " x\n  \n";
    text += "ol  2  1 1  10 2  0  -900 0.04 2.2\n 0.09 1e-6 -600 -0.7  3e-5 2e-3 700 4 -0.001  1  847 0.00495 0.1188\n";
    text += "ox  2  1 1  10 2  0  -800 0.05 0\n 0.09 0 0 0  0 0 0 0 0  0\n";
    for (int i = 2; i < ntp; ++i)
        text += "g" + std::to_string(i) + "  1  1 1  0  -1 0.01 1\n 0 0 0 0 0 0 0 0 0  0\n";
    return text + tail(ntp);
}

TEST(DatasetForms, OldestForm) {
    smtest::ScratchDir dir;
    TestRun t;
    readdataset(t.run, put(dir, "sm-ds5y.txt", oldestform()));
    const EndMemberStore& s = t.run.store;
    EXPECT_EQ(s.dsmode, -1);
    const TdRow& ol = s.td[1];
    EXPECT_EQ(ol[tdH], -900);
    EXPECT_NEAR(static_cast<double>(ol[tdV]), 2.2, 1e-15);
    EXPECT_NEAR(static_cast<double>(ol[tdcpd]), -0.7, 1e-15);
    EXPECT_NEAR(static_cast<double>(ol[8]), 3e-5, 1e-18);   // alpha0
    EXPECT_NEAR(static_cast<double>(ol[9]), 2e-3, 1e-15);   // alpha1
    EXPECT_EQ(ol[10], 0);
    EXPECT_EQ(ol[11], 700);                                 // k
    EXPECT_EQ(ol[12], 4);                                   // k'
    EXPECT_NEAR(static_cast<double>(ol[13]), -0.001, 1e-15);  // dk/dT
    EXPECT_EQ(ol[tdeos], 1);
    EXPECT_EQ(ol[tdTc], 847);
    EXPECT_EQ(s.td[2][tdeos], 6);
    // the label loses 25 characters in this form
    EXPECT_EQ(t.run.dataset.label, "made-up data for th");

    std::string shortline = oldestform();
    shortline.replace(shortline.find(" 0.09 1e-6"), 10, "");
    shortline.replace(shortline.find("  1  847"), 22, "");
    TestRun u;
    EXPECT_EQ(stopof([&] { readdataset(u.run, put(dir, "sm-ds5y.txt", shortline)); }),
              "readthermo : insufficient info on 2nd line");
    TestRun v;
    v.run.calcmode = 9;
    EXPECT_EQ(stopof([&] { setuptextread(v.run, put(dir, "sm-ds5y.txt", oldestform())); }),
              "thermo read : old calib not implemented");
}

TEST(DatasetForms, EntryCountLimit) {
    smtest::ScratchDir dir;
    // 320 entries are accepted, 321 are not
    auto make = [](int n) {
        std::string text = "6  " + std::to_string(n) + "    " + header10 + "\n  \n";
        for (int i = 1; i <= n; ++i)
            text += "e" + std::to_string(i) + "  E  1  1 1  0\n  0  -1  0.01  1\n  0 0 0 0\n  0 100 4\n\n";
        return text + tail(n);
    };
    TestRun t;
    EXPECT_EQ(stopof([&] { setuptextread(t.run, put(dir, "sm-ds6z.txt", make(320))); }), "");
    EXPECT_EQ(t.run.store.ntp, 320);
    TestRun u;
    EXPECT_EQ(stopof([&] { setuptextread(u.run, put(dir, "sm-ds6z.txt", make(321))); }),
              "setuptextread : too many end-members");
}

TEST(DatasetForms, SummaryInTheLog) {
    smtest::ScratchDir dir;
    TestRun t;
    const std::string logname = put(dir, "sm-log-summary.txt", "");
    openchannel(t.run.io, 3, logname);
    readdataset(t.run, datafile("sm-ds6a.txt"), {"fo", "q", "sp", "H2O", "CO2", "h2oL", "hem"});
    printdatasetsummary(t.run, 1);
    flushfiles(t.run.io);
    EXPECT_EQ(readtext(logname), "");
    printdatasetsummary(t.run, 3);
    flushfiles(t.run.io);
    const std::string log = readtext(logname);
    EXPECT_NE(log.find("dataset sm-ds6a.txt: 230 end-members, dsmode 6"), std::string::npos) << log;
    EXPECT_NE(log.find("end-members read: 7 (7 dataset entries)"), std::string::npos) << log;
    EXPECT_NE(log.find("  eos 0 (plain): 1\n  eos 1 (Landau): 2\n  eos 2 (Bragg-Williams): 1\n"
                       "  eos 6 (fluid): 2\n  eos 7 (melt): 1\n"),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("components (7): H2O CO2 SiO2 Al2O3 MgO FeO O\n"), std::string::npos) << log;
    EXPECT_EQ(t.console.output.find("eos"), std::string::npos);

    // the data reading itself writes it at the script's debuglevel
    TestRun u;
    u.run.script.control.debuglevel = 3;
    const std::string logname2 = put(dir, "sm-log-summary2.txt", "");
    openchannel(u.run.io, 3, logname2);
    readdataset(u.run, datafile("sm-ds6a.txt"), {"fo", "q"});
    flushfiles(u.run.io);
    EXPECT_NE(readtext(logname2).find("components (2): SiO2 MgO\n"), std::string::npos);
}

}  // namespace
}  // namespace sm
