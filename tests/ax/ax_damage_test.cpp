// Damaged copies of a real a-x file: cut short anywhere, or with words
// replaced by wrong ones. Each read either succeeds or ends in a fatal stop
// with a message; nothing else may happen.
#include <random>

#include "ax_testing.h"

namespace sm::axtest {
namespace {

std::string kfm() {
    std::ifstream in(std::string(SM_DATA_DIR) + "/sm-axkfm.txt", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Reads the text; true when it ended in a fatal stop with a message.
bool bombs(const std::string& text) {
    AxRun a;
    try {
        a.load(text);
    } catch (const RunEnded& e) {
        EXPECT_FALSE(e.message.empty());
        return true;
    }
    return false;
}

TEST(AxDamage, CutShortAnywhere) {
    const std::string text = kfm();
    const size_t end = text.find("\n*");
    int stops = 0, reads = 0;
    for (size_t cut = 0; cut < end; cut += 37) (bombs(text.substr(0, cut)) ? stops : reads)++;
    // Most cuts land inside a phase; a cut between phases is a shorter file.
    EXPECT_GT(stops, 3 * reads);
    EXPECT_GT(reads, 0);
}

TEST(AxDamage, WrongWords) {
    const std::string text = kfm();
    std::vector<std::pair<size_t, size_t>> words;  // start, length, of words outside comments
    for (size_t i = 0; i < text.size();) {
        if (text[i] == '%') {
            i = text.find('\n', i);
            continue;
        }
        if (text[i] == ' ' || text[i] == '\n') {
            ++i;
            continue;
        }
        size_t j = i;
        while (j < text.size() && text[j] != ' ' && text[j] != '\n') ++j;
        words.emplace_back(i, j - i);
        i = j;
    }
    const char* wrong[] = {"x", "-1", "0", "32767", "1/0", "0.0", "99", "-", "1e999", "Q(g)", "verbatim", "header"};
    std::mt19937 random(12345);
    int stops = 0;
    for (int trial = 0; trial < 400; ++trial) {
        const auto [at, len] = words[random() % words.size()];
        std::string damaged = text;
        damaged.replace(at, len, wrong[random() % std::size(wrong)]);
        if (bombs(damaged)) ++stops;
    }
    EXPECT_GT(stops, 200);
}

}  // namespace
}  // namespace sm::axtest
