// Line and free-format reading of text files.
#include <gtest/gtest.h>

#include "console/textfile.h"
#include "testutil.h"

namespace sm {
namespace {

std::string scratch(const smtest::ScratchDir& dir, const std::string& text) {
    dir.write("text.txt", text);
    return "text.txt";
}

TEST(TextFile, NumbersRunOnAcrossLines) {
    smtest::ScratchDir dir;
    TextFile f;
    ASSERT_TRUE(f.open(scratch(dir, "name 1 2\r\n  3\t4\n\n5\xCA" "6 7\nnext line\nlast")));
    std::string line;
    ASSERT_TRUE(f.getline(line));
    EXPECT_EQ(line, "name 1 2");
    std::string_view tok;
    std::string got;
    for (int i = 0; i < 4; ++i) {
        ASSERT_TRUE(f.nexttoken(tok));
        got += std::string(tok) + ",";
    }
    EXPECT_EQ(got, "3,4,5,6,");  // across the blank line; 0xCA is a blank
    EXPECT_EQ(f.linenumber(), 4);
    f.skipline();  // drops " 7"
    ASSERT_TRUE(f.getline(line));
    EXPECT_EQ(line, "next line");
    ASSERT_TRUE(f.nexttoken(tok));
    EXPECT_EQ(tok, "last");
    EXPECT_EQ(f.linenumber(), 6);
    EXPECT_FALSE(f.nexttoken(tok));
    EXPECT_TRUE(f.atend());
    f.rewind();
    ASSERT_TRUE(f.getline(line));
    EXPECT_EQ(line, "name 1 2");
    f.skipline();
    f.skipline();
    ASSERT_TRUE(f.getline(line));
    EXPECT_EQ(line, "5\xCA" "6 7");
    EXPECT_EQ(f.linenumber(), 4);
}

TEST(TextFile, RestOfALineAfterATokenIsReadByGetline) {
    smtest::ScratchDir dir;
    TextFile f;
    ASSERT_TRUE(f.open(scratch(dir, "1 2 rest\nnext")));
    std::string_view tok;
    ASSERT_TRUE(f.nexttoken(tok));
    std::string line;
    ASSERT_TRUE(f.getline(line));
    EXPECT_EQ(line, " 2 rest");
    ASSERT_TRUE(f.getline(line));
    EXPECT_EQ(line, "next");
    EXPECT_EQ(f.linenumber(), 2);
    EXPECT_FALSE(f.getline(line));
    TextFile missing;
    EXPECT_FALSE(missing.open("/nonexistent/file.txt"));
    EXPECT_FALSE(missing.isopen());
}

}  // namespace
}  // namespace sm
