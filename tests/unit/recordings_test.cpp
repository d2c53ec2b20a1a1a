// Whole conversations, held against what the engine once wrote to them. A recording is a text file: lines that begin
// "> " are given to the engine, lines that begin "< " are what it wrote, without what the clock puts into them. The
// clocks given are far from any limit and the depths are set, so that nothing depends on the machine. Blanks at the end
// of a line belong to it: the engine writes the eight moves of a line of play as eight fields, used or not.
#include "support/chess_rules.h"
#include "support/process.h"
#include "support/transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

using namespace tests;

struct Recording {
    std::string given;                  // the input, line ends included
    std::vector<std::string> expected;  // the output
};

Recording read_recording(const std::filesystem::path& path) {
    Recording recording;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("> ")) {
            recording.given += line.substr(2) + '\n';
        } else if (line.starts_with("< ")) {
            recording.expected.push_back(line.substr(2));
        } else {
            throw std::runtime_error(path.string() + ": neither given nor expected: " + line);
        }
    }
    return recording;
}

std::vector<std::string> names_of_recordings() {
    std::vector<std::string> names;
    for (const auto& x : std::filesystem::directory_iterator(rules::data_file("recordings"))) {
        names.push_back(x.path().stem().string());
    }
    std::ranges::sort(names);
    return names;
}

std::string name_of_test(const testing::TestParamInfo<std::string>& x) {
    std::string name = x.param;
    std::ranges::replace_if(
        name, [](char letter) { return letter == '-' || letter == '.'; }, '_');
    return name;
}

class Recordings : public testing::TestWithParam<std::string> {};

TEST_P(Recordings, AreRepeatedLineByLine) {
    const Recording recording = read_recording(rules::data_file("recordings") / (GetParam() + ".txt"));
    ASSERT_FALSE(recording.given.empty());
    const Outcome r = run_engine(recording.given, std::chrono::seconds(200));
    EXPECT_EQ(r.exit_code, 0);
    EXPECT_EQ(r.error, "");
    const std::vector<std::string> written = without_clock(r.lines());
    for (std::size_t k = 0; k < std::min(written.size(), recording.expected.size()); ++k) {
        ASSERT_EQ(written[k], recording.expected[k]) << "output line " << k + 1;
    }
    EXPECT_EQ(written.size(), recording.expected.size());
}

INSTANTIATE_TEST_SUITE_P(Conversation, Recordings, testing::ValuesIn(names_of_recordings()), name_of_test);

}  // namespace
