// The rules of chess for what clients say: move counts, FENs good and bad, moves of Chess960.
#include "standard_uci/rules.h"
#include "standard_uci/words.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <fstream>

namespace {

using namespace ondrel::standard_uci;

Position position_of(std::string_view fen) {
    const ReadFen read = read_fen(words_of(fen));
    EXPECT_TRUE(read.position.has_value()) << fen << ": " << read.fault;
    return read.position.value_or(start_position());
}

std::string fault_of(std::string_view fen) {
    const ReadFen read = read_fen(words_of(fen));
    EXPECT_FALSE(read.position.has_value()) << fen;
    return read.fault;
}

long count_lines(const Position& position, int depth) {
    const auto moves = legal_moves(position);
    if (depth <= 1) {
        return static_cast<long>(moves.size());
    }
    long count = 0;
    for (const Move& move : moves) {
        count += count_lines(after(position, move), depth - 1);
    }
    return count;
}

Words texts_of(const std::vector<Move>& moves, bool chess960) {
    Words texts;
    for (const Move& move : moves) {
        texts.push_back(text_of(move, chess960));
    }
    return texts;
}

bool has(const Words& texts, std::string_view text) { return std::ranges::find(texts, text) != texts.end(); }

// --- Moves ---

TEST(Rules, CountTheLinesOfAwkwardPositions) {
    constexpr long most = 30000;
    std::ifstream file(std::string(ONDREL_TEST_DATA) + "/perft.epd");
    int counted = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        const Position position = position_of(line.substr(0, line.find(';')));
        for (auto at = line.find(";D"); at != std::string::npos; at = line.find(";D", at + 1)) {
            const long expected = std::stol(line.substr(at + 4));
            if (expected <= most) {
                EXPECT_EQ(count_lines(position, line[at + 2] - '0'), expected) << line;
                ++counted;
            }
        }
    }
    EXPECT_GT(counted, 50);
}

// The counts of positions that are known to many engines.
TEST(Rules, CountTheLinesOfChess960) {
    EXPECT_EQ(count_lines(position_of("bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR w HFhf - 2 9"), 3), 12189);
    EXPECT_EQ(count_lines(position_of("2nnrbkr/p1qppppp/8/1ppb4/6PP/3PP3/PPP2P2/BQNNRBKR w HEhe - 1 9"), 3), 18002);
    EXPECT_EQ(count_lines(position_of("qbbnnrkr/2pp2pp/p7/1p2pp2/8/P3PP2/1PPP1KPP/QBBNNR1R w hf - 0 9"), 3), 13440);
}

TEST(Rules, CastleInChess960AsKingTakesRook) {
    const Position position = position_of("4k3/8/8/8/8/8/8/1R3KR1 w GB - 0 1");
    const Words texts = texts_of(legal_moves(position), true);
    EXPECT_TRUE(has(texts, "f1g1"));
    EXPECT_TRUE(has(texts, "f1b1"));
    const auto castling = read_move(position, "f1b1", true);
    ASSERT_TRUE(castling.has_value());
    EXPECT_EQ(usual_fen(after(position, *castling)).substr(0, 25), "4k3/8/8/8/8/8/8/2KR2R1 b ");
    EXPECT_FALSE(usual_castling(*castling));
}

TEST(Rules, DoNotCastleThroughMenOrAttacks) {
    EXPECT_FALSE(has(texts_of(legal_moves(position_of("4k3/8/8/8/8/8/8/RN2K2R w KQ - 0 1")), false), "e1c1"));
    EXPECT_FALSE(has(texts_of(legal_moves(position_of("4kr2/8/8/8/8/8/8/R3K2R w KQ - 0 1")), false), "e1g1"));
    EXPECT_TRUE(has(texts_of(legal_moves(position_of("1r2k3/8/8/8/8/8/8/R3K2R w KQ - 0 1")), false), "e1c1"));
    // The castling rook itself held the attack off.
    EXPECT_FALSE(has(texts_of(legal_moves(position_of("4k3/8/8/8/8/8/8/rR1K4 w B - 0 1")), true), "d1b1"));
}

TEST(Rules, ReadOnlyLegalMoves) {
    const Position start = start_position();
    for (const char* text : {"", "e2", "e2e5", "e7e5", "e2e4q", "zzzz", "e1g1", "a1a1", "e2e4 "}) {
        EXPECT_FALSE(read_move(start, text, false).has_value()) << text;
    }
    EXPECT_TRUE(read_move(start, "g1f3", false).has_value());
    EXPECT_FALSE(read_move(position_of("8/P7/8/8/8/8/8/k1K5 w - -"), "a7a8", false).has_value());
    EXPECT_TRUE(read_move(position_of("8/P7/8/8/8/8/8/k1K5 w - -"), "a7a8n", false).has_value());
}

TEST(Rules, TakeEnPassantOnlyAtOnce) {
    const Position position = position_of("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1");
    const auto move = read_move(position, "e5d6", false);
    ASSERT_TRUE(move.has_value());
    EXPECT_EQ(usual_fen(after(position, *move)), "4k3/8/3P4/8/8/8/8/4K3 b - - 0 1");
    const Position later =
        after(after(position, *read_move(position, "e1e2", false)), {square_at(4, 7), square_at(5, 7)});
    EXPECT_FALSE(read_move(later, "e5d6", false).has_value());
}

// --- FENs ---

TEST(Rules, ReadShortAndLongFens) {
    for (const char* fen : {"4k3/8/8/8/8/8/4P3/4K3 w", "4k3/8/8/8/8/8/4P3/4K3 b -", "4k3/8/8/8/8/8/4P3/4K3 w - -",
                            "4k3/8/8/8/8/8/4P3/4K3 w - - 12", "4k3/8/8/8/8/8/4P3/4K3 w - - 12 34"}) {
        EXPECT_TRUE(read_fen(words_of(fen)).position.has_value()) << fen;
    }
}

TEST(Rules, WriteThePositionThatTheyRead) {
    for (const char* fen : {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1",
                            "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w Kq - 0 1"}) {
        EXPECT_EQ(usual_fen(position_of(fen)), fen);
    }
    EXPECT_EQ(usual_fen(position_of("1r2k2r/8/8/8/8/8/8/R3K1R1 w GAhb - 0 1")), "1r2k2r/8/8/8/8/8/8/R3K1R1 w Qk - 0 1")
        << "rights of other squares are nothing to the engine";
}

TEST(Rules, SayWhatIsWrongWithAFenAndWhere) {
    EXPECT_EQ(fault_of(""), "the FEN is empty");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/8/4K3"), "the FEN does not say who is to move");
    EXPECT_EQ(fault_of("blah w"), "'l' on rank 8 of the board is no man");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/4K3 w"), "the board has only 7 ranks");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/8/8/4K3 w"), "the board has more than 8 ranks");
    EXPECT_EQ(fault_of("4k3/8/8/9/8/8/8/4K3 w"), "'9' on rank 5 of the board is no man");
    EXPECT_EQ(fault_of("4k4/8/8/8/8/8/8/4K3 w"), "rank 8 of the board has 9 squares");
    EXPECT_EQ(fault_of("4k3/8/7/8/8/8/8/4K3 w"), "rank 6 of the board has 7 squares");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/8/4K3 x"), "the side to move is 'x', not w or b");
    EXPECT_EQ(fault_of("8/8/8/8/8/8/8/4K3 w"), "Black has 0 kings");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/8/K3K3 w"), "White has 2 kings");
    EXPECT_EQ(fault_of("P3k3/8/8/8/8/8/8/4K3 w"), "a pawn stands on a8");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/PP6/PPPPPPPP/4K3 w"), "White has 10 pawns");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/4r3/4K3 b"), "the king on e1 could be taken");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/8/4K3 w x"), "'x' is no castling right");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/8/4K3 w - e4"), "'e4' is no square of en passant");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/8/4K3 w - - bm"), "the halfmove clock is 'bm'");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/8/4K3 w - - 0 -3"), "the move number is '-3'");
    EXPECT_EQ(fault_of("4k3/8/8/8/8/8/8/4K3 w - - 0 1 more"), "the FEN has more than 6 fields: 'more'");
}

TEST(Rules, LeaveOutRightsThatCannotBe) {
    const ReadFen read = read_fen(words_of("4k3/8/8/8/8/8/8/4K2R w KQ e6 0 1"));
    ASSERT_TRUE(read.position.has_value());
    EXPECT_EQ(read.left_out.size(), 2U);
    EXPECT_EQ(usual_fen(*read.position), "4k3/8/8/8/8/8/8/4K2R w K - 0 1");
}

}  // namespace
