// The rules of the plain engine, held against known numbers of move sequences.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>

#include "plain/frontend.h"
#include "plain/questions.h"

namespace plain {
namespace {

Situation situation_of(const std::string& fen) {
    const Colour side = replay_position("position fen " + fen);
    return {tree.ply[0].tabd, tree.ply[0].flags, side};
}

std::uint64_t count_sequences(const Situation& situation, int depth) {
    if (depth == 0) {
        return 1;
    }
    std::uint64_t sum = 0;
    for (const std::string& move : legal_moves(situation)) {
        sum += count_sequences(play(situation, move), depth - 1);
    }
    return sum;
}

TEST(PlainRules, CountMoveSequences) {
    std::ifstream file(ONDREL_TEST_DATA "/perft.epd");
    ASSERT_TRUE(file);
    int counted = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        std::istringstream fields(line);
        std::string fen;
        std::getline(fields, fen, ';');
        for (std::string field; std::getline(fields, field, ';');) {
            const int depth = std::stoi(field.substr(1));
            const std::uint64_t sequences = std::stoull(field.substr(field.find(' ')));
            if (sequences <= 50000) {
                EXPECT_EQ(count_sequences(situation_of(fen), depth), sequences) << fen << " depth " << depth;
                ++counted;
            }
        }
    }
    EXPECT_GT(counted, 50);
}

TEST(PlainRules, WritesAPositionAsItReadsIt) {
    for (const std::string fen :
         {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", "r3k2r/8/8/2pP4/8/8/8/R3K2R w Kq c6 0 1",
          "8/8/8/8/8/8/8/K1k5 b - - 0 1", "4k3/8/8/8/3Pp3/8/8/4K3 b - d3 0 1"}) {
        EXPECT_EQ(fen_of(situation_of(fen)), fen);
    }
}

TEST(PlainEvaluation, JudgesALeafForEitherSide) {
    replay_position("position fen 4k3/8/8/8/8/8/8/R3K3 w Q - 0 1");
    const Board& board = tree.ply[0].tabd;
    EXPECT_GT(judge_leaf_board(board, white, white).extraeval, 0.0F);
    EXPECT_LT(judge_leaf_board(board, black, black).extraeval, 0.0F);
    EXPECT_FALSE(judge_leaf_board(board, white, black).EMPAT);
    replay_position("position fen 4k3/8/8/8/8/8/8/N3K1N1 w - - 0 1");
    EXPECT_TRUE(judge_leaf_board(tree.ply[0].tabd, white, black).EMPAT);
}

TEST(PlainEvaluation, ClassesARootMove) {
    prepare_search(replay_position("position startpos moves e2e4 d7d5"));
    const RootMoveJudgement takes = judge_root_move({4, 3, 3, 4});
    EXPECT_TRUE(takes.legal);
    EXPECT_FALSE(takes.check);
    EXPECT_GT(takes.ESTRATEGIA, judge_root_move({4, 0, 4, 1}).ESTRATEGIA);
    prepare_search(replay_position("position startpos moves e2e4 d7d5 a2a3 d8e7 e4d5 e8d8 d1e2 a7a6"));
    EXPECT_TRUE(judge_root_move({4, 1, 4, 6}).check);
}

}  // namespace
}  // namespace plain
