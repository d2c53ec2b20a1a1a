// The harness itself: the start position through every way in.
#include "support/engine.h"
#include "support/process.h"

#include <gtest/gtest.h>

namespace {

using namespace tests;

constexpr auto start_with_black = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1";

class Engine : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

TEST_F(Engine, TriesTwentyRootMovesAtTheStart) {
    place("position fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    EXPECT_EQ(root_moves_tried().size(), 20U);
}

TEST_F(Engine, TriesTwentyRepliesAtEveryPly) {
    for (int n = 1; n < ondrel::last_ply; ++n) {
        fresh_process();
        set_up_ply(n, start_with_black);
        EXPECT_EQ(replies_tried(n).size(), 20U) << "ply " << n;
    }
}

TEST_F(Engine, AnswersAsAProcess) {
    const Outcome r = run_engine("isready\nquit\n");
    EXPECT_EQ(r.output, "readyok\n");
    EXPECT_EQ(r.exit_code, 0);
}

}  // namespace
