// The yardstick is measured first: other tests trust the rules written down for them, these make sure that they may.
#include "support/chess_rules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using rules::Move;
using rules::Position;

Position position_of(std::string_view fen) {
    const auto position = rules::from_fen(fen);
    if (!position) {
        throw std::invalid_argument("malformed FEN: " + std::string(fen));
    }
    return *position;
}

Move move_of(std::string_view text) {
    const auto move = rules::from_uci(text);
    if (!move) {
        throw std::invalid_argument("malformed move: " + std::string(text));
    }
    return *move;
}

bool may_play(std::string_view fen, std::string_view move) { return rules::is_legal(position_of(fen), move_of(move)); }

std::string after(std::string_view fen, std::string_view move) {
    EXPECT_TRUE(may_play(fen, move)) << fen << ' ' << move;
    return rules::to_fen(rules::play(position_of(fen), move_of(move)));
}

std::vector<std::string> names_of_moves(std::string_view fen) {
    std::vector<std::string> names;
    for (const Move& move : rules::legal_moves(position_of(fen))) {
        names.push_back(rules::to_uci(move));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string fen_without_clocks(const Position& position) {
    const std::string fen = rules::to_fen(position);
    return fen.substr(0, fen.rfind(' ', fen.rfind(' ') - 1));
}

struct PerftLine {
    std::string fen;
    std::vector<std::pair<int, std::uint64_t>> counts;
};

PerftLine read_perft_line(const std::string& line) {
    std::istringstream text(line);
    PerftLine result;
    std::getline(text, result.fen, ';');
    char letter_d = 0;
    char semicolon = 0;
    int depth = 0;
    std::uint64_t count = 0;
    while (text >> letter_d >> depth >> count) {
        EXPECT_EQ(letter_d, 'D') << line;
        result.counts.emplace_back(depth, count);
        text >> semicolon;
    }
    EXPECT_TRUE(text.eof()) << line;
    EXPECT_FALSE(result.counts.empty()) << line;
    return result;
}

struct StandardPerft {
    const char* name;
    const char* fen;
    std::vector<std::uint64_t> counts;  // from depth 1
};

std::ostream& operator<<(std::ostream& out, const StandardPerft& perft) { return out << perft.fen; }

const std::vector<StandardPerft> standard_perfts{
    {"Start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", {20, 400, 8902, 197281, 4865609}},
    {"Kiwipete", "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", {48, 2039, 97862, 4085603}},
    {"Position3", "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", {14, 191, 2812, 43238, 674624}},
    {"Position4", "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", {6, 264, 9467, 422333}},
    {"Position4Mirrored", "r2q1rk1/pP1p2pp/Q4n2/bbp1p3/Np6/1B3NBn/pPPP1PPP/R3K2R b KQ - 0 1", {6, 264, 9467, 422333}},
    {"Position5", "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", {44, 1486, 62379, 2103487}},
    {"Position6",
     "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
     {46, 2079, 89890, 3894594}},
};

class ChessRulesPerft : public testing::TestWithParam<StandardPerft> {};

TEST_P(ChessRulesPerft, CountsTheKnownNumbers) {
    const Position position = position_of(GetParam().fen);
    int depth = 0;
    for (const std::uint64_t count : GetParam().counts) {
        EXPECT_EQ(rules::perft(position, ++depth), count) << depth;
    }
}

INSTANTIATE_TEST_SUITE_P(Standard, ChessRulesPerft, testing::ValuesIn(standard_perfts),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(ChessRules, PerftOfAwkwardPositions) {
    const auto lines = rules::data_lines("perft.epd");
    EXPECT_GE(lines.size(), 60u);
    for (const std::string& line : lines) {
        const PerftLine perft = read_perft_line(line);
        const Position position = position_of(perft.fen);
        EXPECT_TRUE(rules::is_legal_position(position)) << line;
        for (const auto& [depth, count] : perft.counts) {
            EXPECT_EQ(rules::perft(position, depth), count) << line;
        }
    }
}

TEST(ChessRules, PerftOfDepthZeroIsOne) { EXPECT_EQ(rules::perft(rules::start_position(), 0), 1u); }

TEST(ChessRules, ReadsTheFieldsOfAFen) {
    const Position position = position_of("r3k2r/8/8/3pP3/8/8/8/R3K2R w Kq d6 0 31");
    EXPECT_EQ(position.at(0, 0), 'R');
    EXPECT_EQ(position.at(7, 7), 'r');
    EXPECT_EQ(position.at(4, 0), 'K');
    EXPECT_EQ(position.at(4, 4), 'P');
    EXPECT_EQ(position.at(3, 4), 'p');
    EXPECT_EQ(position.at(1, 0), rules::empty_square);
    EXPECT_TRUE(position.white_to_move);
    EXPECT_TRUE(position.white_castles_short);
    EXPECT_FALSE(position.white_castles_long);
    EXPECT_FALSE(position.black_castles_short);
    EXPECT_TRUE(position.black_castles_long);
    EXPECT_EQ(position.en_passant_file, 3);
    EXPECT_EQ(position.en_passant_rank, 5);
    EXPECT_EQ(position.halfmove_clock, 0);
    EXPECT_EQ(position.fullmove_number, 31);
}

TEST(ChessRules, MissingCountersTakeTheirDefaults) {
    EXPECT_EQ(rules::to_fen(position_of("4k3/8/8/8/8/8/8/4K3 b - -")), "4k3/8/8/8/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(rules::to_fen(position_of("4k3/8/8/8/8/8/8/4K3 b - - 17")), "4k3/8/8/8/8/8/8/4K3 b - - 17 1");
}

TEST(ChessRules, RefusesMalformedFens) {
    for (const char* fen : {"",
                            "4k3/8/8/8/8/8/8/4K3",
                            "4k3/8/8/8/8/8/8/4K3 w -",
                            "4k3/8/8/8/8/8/8/4K3 w - - 0 1 1",
                            "4k3/8/8/8/8/8/4K3 w - - 0 1",
                            "4k3/8/8/8/8/8/8/8/4K3 w - - 0 1",
                            "4k4/8/8/8/8/8/8/4K3 w - - 0 1",
                            "4k2/8/8/8/8/8/8/4K3 w - - 0 1",
                            "4k3/44/8/8/8/8/8/4K3 w - - 0 1",
                            "4k3/9/8/8/8/8/8/4K3 w - - 0 1",
                            "4k3/8/8/8/8/8/8/4K2X w - - 0 1",
                            "4k3/8/8/8/8/8/8/4K3/ w - - 0 1",
                            "4k3/8/8/8/8/8/8/4K3 x - - 0 1",
                            "4k3/8/8/8/8/8/8/4K2R w KK - 0 1",
                            "4k3/8/8/8/8/8/8/4K2R w H - 0 1",
                            "4k3/8/8/8/8/8/8/4K3 w - d3 0 1",
                            "4k3/8/8/8/8/8/8/4K3 w - i6 0 1",
                            "4k3/8/8/8/8/8/8/4K3 w - d 0 1",
                            "4k3/8/8/8/8/8/8/4K3 w - - -1 1",
                            "4k3/8/8/8/8/8/8/4K3 w - - x 1",
                            "4k3/8/8/8/8/8/8/4K3 w - - 0 0",
                            "4k3/8/8/8/8/8/8/4K3 w - - 0 1a"}) {
        EXPECT_FALSE(rules::from_fen(fen)) << fen;
    }
}

TEST(ChessRules, FenSurvivesTheRoundTrip) {
    for (const std::string& fen : rules::data_lines("positions.fen")) {
        EXPECT_EQ(rules::to_fen(position_of(fen)), fen);
    }
}

TEST(ChessRules, MoveTextSurvivesTheRoundTrip) {
    for (const char* text : {"a1h8", "e2e4", "b7a8q", "g2h1n", "e1g1"}) {
        EXPECT_EQ(rules::to_uci(move_of(text)), text);
    }
    EXPECT_EQ(move_of("c7d8r"), (Move{2, 6, 3, 7, 'r'}));
}

TEST(ChessRules, RefusesMalformedMoves) {
    for (const char* text : {"", "e2", "e2e", "i2e4", "e0e4", "e2e9", "e2j4", "e7e8k", "e7e8Q", "e7e8qq", "O-O"}) {
        EXPECT_FALSE(rules::from_uci(text)) << text;
    }
}

TEST(ChessRules, StoredPositionsAreLegalVariedAndDistinct) {
    const auto positions = rules::data_positions("positions.fen");
    EXPECT_GE(positions.size(), 700u);
    std::set<std::string> seen;
    int checks = 0;
    int mates = 0;
    int stalemates = 0;
    for (const Position& position : positions) {
        const std::string fen = rules::to_fen(position);
        EXPECT_TRUE(rules::is_legal_position(position)) << fen;
        EXPECT_LE(rules::count_checkers(position, position.white_to_move), 2) << fen;
        EXPECT_TRUE(seen.insert(fen_without_clocks(position)).second) << "twice: " << fen;
        checks += rules::in_check(position, position.white_to_move);
        mates += rules::is_checkmate(position);
        stalemates += rules::is_stalemate(position);
    }
    EXPECT_GE(checks, 100);
    EXPECT_GE(mates, 30);
    EXPECT_GE(stalemates, 20);
}

TEST(ChessRules, MirroredPositionsHaveTheSameTree) {
    for (const Position& position : rules::data_positions("positions.fen")) {
        const Position mirror = rules::mirrored(position);
        EXPECT_NE(mirror, position);
        EXPECT_EQ(rules::mirrored(mirror), position) << rules::to_fen(position);
        EXPECT_TRUE(rules::is_legal_position(mirror)) << rules::to_fen(mirror);
        EXPECT_EQ(rules::perft(mirror, 2), rules::perft(position, 2)) << rules::to_fen(position);
    }
}

TEST(ChessRules, MirrorSwapsColoursAndRanksOnly) {
    EXPECT_EQ(rules::to_fen(rules::mirrored(position_of("r3k3/7p/8/3pP3/8/8/P7/4K2R w Kq d6 0 31"))),
              "4k2r/p7/8/8/3Pp3/8/7P/R3K3 b Qk d3 0 31");
}

TEST(ChessRules, MirroredMovesLeadToMirroredPositions) {
    for (const Position& position : rules::data_positions("positions.fen")) {
        std::set<std::string> mirrors_of_children;
        std::set<std::string> children_of_mirror;
        for (const Move& move : rules::legal_moves(position)) {
            mirrors_of_children.insert(fen_without_clocks(rules::mirrored(rules::play(position, move))));
        }
        const Position mirror = rules::mirrored(position);
        for (const Move& move : rules::legal_moves(mirror)) {
            children_of_mirror.insert(fen_without_clocks(rules::play(mirror, move)));
        }
        EXPECT_EQ(mirrors_of_children, children_of_mirror) << rules::to_fen(position);
    }
}

TEST(ChessRules, EveryMoveLeadsToALegalPosition) {
    for (const Position& position : rules::data_positions("positions.fen")) {
        std::set<std::string> names;
        for (const Move& move : rules::legal_moves(position)) {
            const Position child = rules::play(position, move);
            const std::string name = rules::to_uci(move);
            EXPECT_TRUE(rules::is_legal_position(child)) << rules::to_fen(position) << ' ' << name;
            EXPECT_TRUE(names.insert(name).second) << rules::to_fen(position) << ' ' << name;
        }
    }
}

TEST(ChessRules, CastlingMovesBothMen) {
    const char* white = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 3 5";
    EXPECT_EQ(after(white, "e1g1"), "r3k2r/8/8/8/8/8/8/R4RK1 b kq - 4 5");
    EXPECT_EQ(after(white, "e1c1"), "r3k2r/8/8/8/8/8/8/2KR3R b kq - 4 5");
    const char* black = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 3 5";
    EXPECT_EQ(after(black, "e8g8"), "r4rk1/8/8/8/8/8/8/R3K2R w KQ - 4 6");
    EXPECT_EQ(after(black, "e8c8"), "2kr3r/8/8/8/8/8/8/R3K2R w KQ - 4 6");
}

TEST(ChessRules, CastlingIsForbiddenOutOfThroughAndIntoCheck) {
    EXPECT_FALSE(may_play("4k3/8/8/8/8/8/4r3/R3K2R w KQ - 0 1", "e1g1"));
    EXPECT_FALSE(may_play("4k3/8/8/8/8/8/4r3/R3K2R w KQ - 0 1", "e1c1"));
    EXPECT_FALSE(may_play("4kr2/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1"));
    EXPECT_TRUE(may_play("4kr2/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1c1"));
    EXPECT_FALSE(may_play("4k1r1/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1"));
    EXPECT_FALSE(may_play("3rk3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1c1"));
    EXPECT_FALSE(may_play("2r1k3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1c1"));
    EXPECT_FALSE(may_play("4k3/8/8/8/8/8/6p1/R3K2R w KQ - 0 1", "e1g1"));
}

TEST(ChessRules, OnlyTheKingsWayMustBeUnattacked) {
    EXPECT_TRUE(may_play("1r2k3/8/8/8/8/8/8/R3K3 w Q - 0 1", "e1c1"));
    EXPECT_TRUE(may_play("r3k3/8/8/8/8/8/8/R3K3 w Q - 0 1", "e1c1"));
    EXPECT_TRUE(may_play("4k2r/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1"));
}

TEST(ChessRules, CastlingNeedsTheRightAndAFreeWay) {
    EXPECT_FALSE(may_play("4k3/8/8/8/8/8/8/R3K2R w Q - 0 1", "e1g1"));
    EXPECT_FALSE(may_play("4k3/8/8/8/8/8/8/R3K2R w K - 0 1", "e1c1"));
    for (const char* row : {"RN2K3", "R1B1K3", "R2QK3"}) {
        EXPECT_FALSE(may_play("4k3/8/8/8/8/8/8/" + std::string(row) + " w Q - 0 1", "e1c1")) << row;
    }
    for (const char* row : {"4KB1R", "4K1NR", "4K1nR"}) {
        EXPECT_FALSE(may_play("4k3/8/8/8/8/8/8/" + std::string(row) + " w K - 0 1", "e1g1")) << row;
    }
    EXPECT_FALSE(may_play("4k3/8/8/8/8/8/8/4K3 w K - 0 1", "e1g1"));
}

TEST(ChessRules, CastlingRightsGoWithTheKingAndTheRooks) {
    const char* fen = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
    EXPECT_EQ(after(fen, "e1e2"), "r3k2r/8/8/8/8/8/4K3/R6R b kq - 1 1");
    EXPECT_EQ(after(fen, "a1a2"), "r3k2r/8/8/8/8/8/R7/4K2R b Kkq - 1 1");
    EXPECT_EQ(after(fen, "h1h2"), "r3k2r/8/8/8/8/8/7R/R3K3 b Qkq - 1 1");
    EXPECT_EQ(after(fen, "a1a8"), "R3k2r/8/8/8/8/8/8/4K2R b Kk - 0 1");
    EXPECT_EQ(after(fen, "h1h8"), "r3k2R/8/8/8/8/8/8/R3K3 b Qq - 0 1");
}

TEST(ChessRules, EnPassantTakesThePawnBesideIt) {
    EXPECT_EQ(after("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 9", "e5d6"), "4k3/8/3P4/8/8/8/8/4K3 b - - 0 9");
    EXPECT_EQ(after("4k3/8/8/8/3Pp3/8/8/4K3 b - d3 0 9", "e4d3"), "4k3/8/8/8/8/3p4/8/4K3 w - - 0 10");
    EXPECT_FALSE(may_play("4k3/8/8/3pP3/8/8/8/4K3 w - - 0 9", "e5d6"));
    EXPECT_FALSE(may_play("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 9", "e5f6"));
}

TEST(ChessRules, EnPassantDoesNotReachRoundTheEdge) {
    EXPECT_EQ(names_of_moves("k7/8/8/p6P/8/8/8/K7 w - a6 0 9"),
              (std::vector<std::string>{"a1a2", "a1b1", "a1b2", "h5h6"}));
}

TEST(ChessRules, EnPassantLastsOneMove) {
    EXPECT_EQ(after("4k3/3p4/8/4P3/8/8/8/4K3 b - - 4 9", "d7d5"), "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 10");
    EXPECT_EQ(after("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 10", "e1e2"), "4k3/8/8/3pP3/8/8/4K3/8 b - - 1 10");
    EXPECT_EQ(after("4k3/3p4/8/4P3/8/8/8/4K3 b - - 4 9", "d7d6"), "4k3/8/3p4/4P3/8/8/8/4K3 w - - 0 10");
}

TEST(ChessRules, EnPassantMayNotUncoverTheKing) {
    EXPECT_FALSE(may_play("8/8/8/K1Pp3r/8/8/8/4k3 w - d6 0 40", "c5d6"));
    EXPECT_TRUE(may_play("8/8/8/K1Pp3b/8/8/8/4k3 w - d6 0 40", "c5d6"));
    EXPECT_FALSE(may_play("4k3/4r3/8/3pP3/8/8/8/4K3 w - d6 0 40", "e5d6"));
    EXPECT_FALSE(may_play("6k1/6b1/8/3pP3/3K4/8/8/8 w - d6 0 40", "e5d6"));
    EXPECT_TRUE(may_play("6k1/6b1/8/4Pp2/3K4/8/8/8 w - f6 0 40", "e5f6"));
}

TEST(ChessRules, EnPassantMayAnswerTheCheckOfThePawn) {
    EXPECT_TRUE(may_play("4k3/8/8/3pP3/4K3/8/8/8 w - d6 0 40", "e5d6"));
    EXPECT_FALSE(may_play("4k3/8/8/3pP3/4K3/8/8/8 w - d6 0 40", "e5e6"));
}

TEST(ChessRules, PinnedMenStayInLine) {
    EXPECT_EQ(names_of_moves("k3r3/8/8/8/8/8/4N3/4K3 w - - 0 1"),
              (std::vector<std::string>{"e1d1", "e1d2", "e1f1", "e1f2"}));
    EXPECT_TRUE(may_play("k3r3/8/8/8/8/8/4R3/4K3 w - - 0 1", "e2e8"));
    EXPECT_FALSE(may_play("k3r3/8/8/8/8/8/4R3/4K3 w - - 0 1", "e2d2"));
    EXPECT_TRUE(may_play("k7/8/8/8/7b/8/5B2/4K3 w - - 0 1", "f2h4"));
    EXPECT_FALSE(may_play("k7/8/8/8/7b/8/5B2/4K3 w - - 0 1", "f2e3"));
    EXPECT_TRUE(may_play("k7/8/8/8/8/6b1/5P2/4K3 w - - 0 1", "f2g3"));
    EXPECT_FALSE(may_play("k7/8/8/8/8/6b1/5P2/4K3 w - - 0 1", "f2f3"));
}

TEST(ChessRules, DoubleCheckMovesTheKing) {
    const char* fen = "4r1k1/8/8/8/8/3n4/3N4/R3K2R w KQ - 0 1";
    EXPECT_EQ(rules::count_checkers(position_of(fen), true), 2);
    EXPECT_EQ(names_of_moves(fen), (std::vector<std::string>{"e1d1", "e1f1"}));
}

TEST(ChessRules, TheKingDoesNotHideBehindItself) {
    EXPECT_FALSE(may_play("k3r3/8/8/8/8/8/4K3/8 w - - 0 1", "e2e1"));
    EXPECT_TRUE(may_play("k3r3/8/8/8/8/8/4K3/8 w - - 0 1", "e2d1"));
}

TEST(ChessRules, KingsKeepApart) {
    EXPECT_FALSE(may_play("8/8/4k3/8/4K3/8/8/8 w - - 0 1", "e4e5"));
    EXPECT_TRUE(may_play("8/8/4k3/8/4K3/8/8/8 w - - 0 1", "e4e3"));
}

TEST(ChessRules, PawnsPromoteToFourPiecesAndMust) {
    EXPECT_EQ(names_of_moves("n6k/1P6/8/8/8/8/8/7K w - - 0 1"),
              (std::vector<std::string>{"b7a8b", "b7a8n", "b7a8q", "b7a8r", "b7b8b", "b7b8n", "b7b8q", "b7b8r", "h1g1",
                                        "h1g2", "h1h2"}));
    EXPECT_FALSE(may_play("7k/1P6/8/8/8/8/8/7K w - - 0 1", "b7b8"));
    EXPECT_EQ(after("7k/8/8/8/8/8/1p6/7K b - - 7 12", "b2b1n"), "7k/8/8/8/8/8/8/1n5K w - - 0 13");
}

TEST(ChessRules, PawnsAreStoppedByAnyMan) {
    EXPECT_FALSE(may_play("4k3/8/8/8/8/4n3/4P3/4K3 w - - 0 1", "e2e3"));
    EXPECT_FALSE(may_play("4k3/8/8/8/8/4n3/4P3/4K3 w - - 0 1", "e2e4"));
    EXPECT_TRUE(may_play("4k3/8/8/8/4n3/8/4P3/4K3 w - - 0 1", "e2e3"));
    EXPECT_FALSE(may_play("4k3/8/8/8/4n3/8/4P3/4K3 w - - 0 1", "e2e4"));
    EXPECT_FALSE(may_play("4k3/8/8/8/8/4P3/8/4K3 w - - 0 1", "e3e5"));
}

TEST(ChessRules, TellsMateFromStalemate) {
    const Position mate = position_of("7k/6Q1/6K1/8/8/8/8/8 b - - 0 1");
    EXPECT_TRUE(rules::is_checkmate(mate));
    EXPECT_FALSE(rules::is_stalemate(mate));
    const Position stalemate = position_of("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
    EXPECT_FALSE(rules::is_checkmate(stalemate));
    EXPECT_TRUE(rules::is_stalemate(stalemate));
    EXPECT_FALSE(rules::is_checkmate(rules::start_position()));
    EXPECT_FALSE(rules::is_stalemate(rules::start_position()));
}

TEST(ChessRules, SeesChecksFromEveryMan) {
    for (const char* fen :
         {"4k3/8/8/8/8/8/4R3/K7 b - - 0 1", "4k3/8/8/8/B7/8/8/K7 b - - 0 1", "4k3/8/8/8/4Q3/8/8/K7 b - - 0 1",
          "4k3/8/8/8/Q7/8/8/K7 b - - 0 1", "4k3/8/3N4/8/8/8/8/K7 b - - 0 1", "4k3/3P4/8/8/8/8/8/K7 b - - 0 1",
          "4k3/5P2/8/8/8/8/8/K7 b - - 0 1"}) {
        EXPECT_TRUE(rules::in_check(position_of(fen), false)) << fen;
        EXPECT_FALSE(rules::in_check(position_of(fen), true)) << fen;
        EXPECT_TRUE(rules::in_check(rules::mirrored(position_of(fen)), true)) << fen;
    }
    for (const char* fen : {"4k3/4n3/8/8/8/8/4R3/K7 b - - 0 1", "4k3/4P3/8/8/8/8/8/K7 b - - 0 1",
                            "3Pk3/8/8/8/8/8/8/K7 b - - 0 1", "4k3/8/8/4N3/8/8/8/K7 b - - 0 1"}) {
        EXPECT_FALSE(rules::in_check(position_of(fen), false)) << fen;
    }
}

TEST(ChessRules, TellsWhatAMoveIs) {
    const Position en_passant = position_of("8/4k3/8/3pP3/8/8/3P4/R3K3 w Q d6 0 9");
    EXPECT_TRUE(rules::is_en_passant(en_passant, move_of("e5d6")));
    EXPECT_TRUE(rules::is_capture(en_passant, move_of("e5d6")));
    EXPECT_TRUE(rules::gives_check(en_passant, move_of("e5d6")));
    EXPECT_FALSE(rules::is_en_passant(en_passant, move_of("e5e6")));
    EXPECT_FALSE(rules::is_capture(en_passant, move_of("e5e6")));
    EXPECT_FALSE(rules::gives_check(en_passant, move_of("e5e6")));
    EXPECT_FALSE(rules::is_castling(en_passant, move_of("e1e2")));

    const Position castling = position_of("3k4/8/8/8/8/8/p7/R3K3 w Q - 0 9");
    EXPECT_TRUE(rules::is_castling(castling, move_of("e1c1")));
    EXPECT_FALSE(rules::is_capture(castling, move_of("e1c1")));
    EXPECT_TRUE(rules::gives_check(castling, move_of("e1c1")));
    EXPECT_TRUE(rules::is_capture(castling, move_of("a1a2")));
    EXPECT_FALSE(rules::is_castling(castling, move_of("a1c1")));

    const Position promotion = position_of("1n2k3/P7/8/8/8/8/8/4K3 w - - 0 9");
    EXPECT_TRUE(rules::is_capture(promotion, move_of("a7b8q")));
    EXPECT_FALSE(rules::is_en_passant(promotion, move_of("a7b8q")));
    EXPECT_TRUE(rules::gives_check(promotion, move_of("a7b8r")));
    EXPECT_FALSE(rules::gives_check(promotion, move_of("a7b8n")));
}

TEST(ChessRules, CountersFollowTheMoves) {
    EXPECT_EQ(after("4k3/8/8/8/8/8/4P3/R3K3 b - - 6 20", "e8e7"), "8/4k3/8/8/8/8/4P3/R3K3 w - - 7 21");
    EXPECT_EQ(after("8/4k3/8/8/8/8/4P3/R3K3 w - - 7 21", "e2e3"), "8/4k3/8/8/8/4P3/8/R3K3 b - - 0 21");
    EXPECT_EQ(after("8/4k3/8/8/8/8/n3P3/R3K3 w - - 7 21", "a1a2"), "8/4k3/8/8/8/8/R3P3/4K3 b - - 0 21");
}

TEST(ChessRules, KnowsIllegalPositions) {
    for (const char* fen :
         {"8/8/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/2K1K3 w - - 0 1", "4k3/8/8/8/8/8/8/3PK3 w - - 0 1",
          "4k2p/8/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/4R3/4K3 w - - 0 1", "8/8/8/3kK3/8/8/8/8 w - - 0 1",
          "4k3/8/8/8/8/8/8/4K3 w K - 0 1", "4k3/8/8/8/8/8/8/R2K3R w KQ - 0 1", "4k3/8/8/4P3/8/8/8/4K3 w - d6 0 1",
          "4k3/3p4/8/3pP3/8/8/8/4K3 w - d6 0 1", "4k3/8/3n4/3pP3/8/8/8/4K3 w - d6 0 1",
          "4k3/8/8/3pP3/8/8/8/4K3 w - d6 3 1",
          // White's king would have stood in check before d7-d5.
          "b3k3/8/8/3pP3/8/8/8/7K w - d6 0 1", "4k3/4r3/8/3p4/8/8/8/4K3 w - d6 0 1"}) {
        EXPECT_FALSE(rules::is_legal_position(position_of(fen))) << fen;
    }
    EXPECT_TRUE(rules::is_legal_position(position_of("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1")));
    EXPECT_TRUE(rules::is_legal_position(position_of("4k3/r6K/8/3pP3/8/8/8/8 w - d6 0 1"))) << "uncovered by d7-d5";
    EXPECT_TRUE(rules::is_legal_position(rules::start_position()));
}

TEST(ChessRules, RandomGamesAreTheSameForTheSameSeed) {
    const auto positions = rules::positions_from_random_games(1, 5, 80);
    EXPECT_EQ(rules::positions_from_random_games(1, 5, 80), positions);
    EXPECT_NE(rules::positions_from_random_games(2, 5, 80), positions);
    // Later games do not disturb the earlier ones.
    const auto more = rules::positions_from_random_games(1, 6, 80);
    ASSERT_GT(more.size(), positions.size());
    EXPECT_TRUE(std::equal(positions.begin(), positions.end(), more.begin()));
}

TEST(ChessRules, RandomGamesAreTheSameEverywhere) {
    const auto positions = rules::positions_from_random_games(20240607, 3, 100);
    ASSERT_EQ(positions.size(), 271u);
    EXPECT_EQ(rules::to_fen(positions.front()), "rnbqkbnr/pppppppp/8/8/7P/8/PPPPPPP1/RNBQKBNR b KQkq h3 0 1");
    EXPECT_EQ(rules::to_fen(positions.back()), "nN1Rbbnr/4k1p1/8/P4p2/3B1P2/1p6/N2r3P/2N1K2R w - - 12 51");
}

TEST(ChessRules, RandomGamesGiveLegalPositionsEachOnce) {
    std::set<std::string> seen;
    const auto positions = rules::positions_from_random_games(3, 20, 120);
    EXPECT_GT(positions.size(), 1000u);
    for (const Position& position : positions) {
        EXPECT_TRUE(rules::is_legal_position(position)) << rules::to_fen(position);
        EXPECT_TRUE(seen.insert(fen_without_clocks(position)).second) << rules::to_fen(position);
        EXPECT_LE(position.halfmove_clock, 100) << rules::to_fen(position);
    }
}

TEST(ChessRules, MissingDataAreReported) { EXPECT_THROW(rules::data_lines("no such file"), std::runtime_error); }

}  // namespace
