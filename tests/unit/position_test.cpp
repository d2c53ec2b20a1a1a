// From a position line to the root of a search: the replay, the FEN, the turn and the preparation.
#include "uci/position.h"

#include "board/apply.h"
#include "eval/mobility.h"
#include "eval/root_trial.h"
#include "eval/tables.h"
#include "support/chess_rules.h"
#include "support/moves.h"
#include "support/shallow_records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using namespace tests;
using namespace ondrel;

const std::string from_start = "position startpos moves ";
const std::string from_fen = "position fen ";

Board board_from(const rules::Position& p) {
    Board t{};
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            constexpr std::string_view letters = "pnbrqk";
            constexpr std::array codes{10, 32, 33, 50, 90, 110};
            const char man = p.at(f, r);
            if (man != rules::empty_square) {
                const bool is_white = man < 'a';
                const int its_code = codes[letters.find(is_white ? static_cast<char>(man - 'A' + 'a') : man)];
                t[square(f, r)] = static_cast<std::int8_t>(is_white ? its_code : -its_code);
            }
        }
    }
    return t;
}

int count_en_passant() {
    return static_cast<int>(std::ranges::count(jm.p_ah[white], 1) + std::ranges::count(jm.p_ah[black], 1));
}

int count_moved() { return jm.R_jm[0] + jm.R_jm[1] + jm.T_a_jm[0] + jm.T_a_jm[1] + jm.T_h_jm[0] + jm.T_h_jm[1]; }

class PositionLine : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

// --- Replay from the start position ---

TEST_F(PositionLine, TwoMovesLeaveWhiteToSearch) {
    EXPECT_EQ(place(from_start + "e2e4 e7e5"), white);
    EXPECT_EQ(game_line.nb, 2);
    EXPECT_EQ(game.joga_com_b, 1);
}

TEST_F(PositionLine, ThreeMovesLeaveBlackToSearch) {
    EXPECT_EQ(place(from_start + "e2e4 e7e5 g1f3"), black);
    EXPECT_EQ(game_line.nb, 3);
    EXPECT_EQ(game.joga_com_b, 0);
}

TEST_F(PositionLine, ReplayStartsAfresh) {
    tab.fill(10);
    jm.R_jm = jm.T_a_jm = jm.T_h_jm = {1, 1};
    place(from_start + "e2e4 e7e5");
    EXPECT_EQ(count_moved(), 0);
    EXPECT_EQ(command.joga_c_ob, 1);
    const auto p = rules::from_fen("rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2");
    EXPECT_EQ(tab, board_from(*p));
    EXPECT_EQ(jm.p_ah[black][4], 1);
    EXPECT_EQ(count_en_passant(), 1);
}

TEST_F(PositionLine, LineOfNeitherFormSetsNothingUp) {
    place(from_start + "e2e4 e7e5 g1f3");
    const Board before = tab;
    EXPECT_EQ(place("position"), black);  // the side stays too
    EXPECT_EQ(tab, before);
    EXPECT_EQ(game_line.nb, 1);
}

TEST_F(PositionLine, FlagsOfTheReaderChooseTheForm) {
    command.joga_c_ob = 1;
    command.in = "xosition startpos moves e2e4 e7e5";
    read_position();
    EXPECT_EQ(game_line.nb, 2);
    EXPECT_EQ(tab[square_of("e5")], -peao);
    command.joga_c_ob = 0;
    command.joga_c_fen = 1;
    command.in = "xosition_xen_8/8/8/8/8/8/8/K1k5 w - -";
    read_position();
    EXPECT_EQ(tab[square_of("a1")], rei);
}

TEST_F(PositionLine, CapturedManIsThatOfTheLastMove) {
    place(from_start + "e2e4 d7d5 e4d5");
    EXPECT_EQ(game_line.peca, -peao);
    place(from_start + "e2e4 d7d5 e4d5 d8d5");
    EXPECT_EQ(game_line.peca, peao);
    place(from_start + "e2e4 d7d5 e4d5 d8d5 b1c3");
    EXPECT_EQ(game_line.peca, 0);
}

TEST_F(PositionLine, HistoryHoldsTheBoardAfterEveryMove) {
    place(from_start + "g1f3 g8f6 f3g1");
    rules::Position p = rules::start_position();
    int n = 0;
    for (const char* m : {"g1f3", "g8f6", "f3g1"}) {
        p = rules::play(p, *rules::from_uci(m));
        EXPECT_EQ(game_line.tabr1[n], board_from(p)) << m;
        ++n;
    }
    EXPECT_EQ(std::ranges::count(game_line.tabr1[3], 1), squares);
    EXPECT_EQ(std::ranges::count(game_line.tabr1[999], 1), squares);
}

TEST_F(PositionLine, HistoryOfTheLineBeforeIsGone) {
    place(from_start + "g1f3 g8f6 f3g1 f6g8");
    place(from_start + "e2e4 e7e5");
    EXPECT_EQ(std::ranges::count(game_line.tabr1[2], 1), squares);
}

std::string knight_moves(int count) {
    constexpr std::array moves{"g1f3", "g8f6", "f3g1", "f6g8"};
    std::string text;
    for (int k = 0; k < count; ++k) {
        text.append(k == 0 ? "" : " ").append(moves[k % 4]);
    }
    return text;
}

TEST_F(PositionLine, HistoryEndsAtItsLastRow) {
    for (const int count : {999, 1000, 1001, 1500}) {
        EXPECT_EQ(place(from_start + knight_moves(count)), count % 2 == 0 ? white : black);
        EXPECT_EQ(game_line.nb, count);
        EXPECT_EQ(game_line.tabr1[998][square_of("f6")], -cavalo);  // after 999 moves one knight is still out
        EXPECT_EQ(game_line.tabr1[999][square_of("f6")], count >= 1000 ? 0 : 1);
        EXPECT_EQ(tab[square_of("f3")], count % 4 == 1 || count % 4 == 2 ? cavalo : 0);
    }
}

// A line far longer than any game, of moves that change nothing.
std::string endless_line(int count) {
    std::string line = from_start + "e4e4";
    for (int k = 1; k < count; ++k) {
        line += " e4e4";
    }
    return line;
}

TEST_F(PositionLine, WalkEndsAfter99999Moves) {
    place(endless_line(100010));
    EXPECT_EQ(game_line.nb, 100000);
}

// The count has gone one past the last move played when the walk is broken off, and the turn goes by the count.
TEST_F(PositionLine, TurnOfAWalkBrokenOffGoesByTheCount) {
    EXPECT_EQ(place(endless_line(99999)), black);
    EXPECT_EQ(game_line.nb, 99999);
    EXPECT_EQ(place(endless_line(100000)), white);
    EXPECT_EQ(game_line.nb, 100000);
    EXPECT_EQ(place(endless_line(100001)), white);
    EXPECT_EQ(game_line.nb, 100000);
}

// --- The move walk ---

TEST_F(PositionLine, BlankBehindAMoveMeansAnother) {
    place(from_start + "e2e4 ");
    EXPECT_EQ(game_line.nb, 2);
    // The second move has no characters: the coordinates stand, and the empty e2 moves onto the pawn.
    EXPECT_EQ(tab[square_of("e4")], 0);
}

TEST_F(PositionLine, AnythingElseBehindAMoveEndsTheWalk) {
    for (const char* rest : {"x", "xe7e5", "-", "x e7e5", "Q e7e5", "qx e7e5", "k e7e5", "p", "\t", "\te7e5"}) {
        place(from_start + "e2e4" + rest);
        EXPECT_EQ(game_line.nb, 1) << rest;
        EXPECT_EQ(tab[square_of("e4")], peao) << rest;
        EXPECT_EQ(tab[square_of("e7")], -peao) << rest;
    }
}

TEST_F(PositionLine, LetterBehindAnyMoveIsPassedOver) {
    for (const char* letter : {"q", "r", "b", "n"}) {
        place(from_start + "e2e4" + letter + " e7e5");
        EXPECT_EQ(game_line.nb, 2) << letter;
        EXPECT_EQ(tab[square_of("e5")], -peao) << letter;
        EXPECT_EQ(game_line.PRe, '0') << letter;
    }
}

const std::string to_the_seventh = "a2a4 b7b5 a4b5 a7a6 b5a6 h7h6 a6a7 h6h5 ";

struct Promotion {
    char letter;
    Piece piece;
};
constexpr std::array<Promotion, 4> promotions{{{'q', dama}, {'r', torre}, {'b', bispo}, {'n', cavalo}}};

TEST_F(PositionLine, PromotionLetterReachesTheBoard) {
    for (const auto& [letter, piece] : promotions) {
        EXPECT_EQ(place(from_start + to_the_seventh + "a7b8" + letter), black);
        EXPECT_EQ(game_line.nb, 9);
        EXPECT_EQ(tab[square_of("b8")], piece) << letter;
        EXPECT_EQ(game_line.peca, -cavalo);
        EXPECT_EQ(game_line.PRe, '0');
        EXPECT_EQ(command.PROMO, 1);
        EXPECT_EQ(command.book, 0);
        EXPECT_EQ(game_line.PR, '0');  // that is of the search's own promotion
    }
}

TEST_F(PositionLine, WalkGoesOnBehindAPromotion) {
    for (const auto& [letter, piece] : promotions) {
        EXPECT_EQ(place(from_start + to_the_seventh + "a7b8" + letter + " h5h4 b2b4"), black);
        EXPECT_EQ(game_line.nb, 11);
        EXPECT_EQ(tab[square_of("b8")], piece) << letter;
        EXPECT_EQ(tab[square_of("h4")], -peao);
        EXPECT_EQ(tab[square_of("b4")], peao);
    }
}

TEST_F(PositionLine, BlackPromotesToo) {
    for (const auto& [letter, piece] : promotions) {
        place(from_fen + "4k3/8/8/8/8/8/p6p/4K3 b - - 0 1 moves a2a1" + letter + " e1e2 h2h1" + letter);
        EXPECT_EQ(tab[square_of("a1")], -piece) << letter;
        EXPECT_EQ(tab[square_of("h1")], -piece) << letter;
    }
}

TEST_F(PositionLine, UpperCaseLetterIsNoPromotion) {
    for (const char letter : {'Q', 'R', 'B', 'N'}) {
        place(from_start + to_the_seventh + "a7b8" + letter + " h5h4");
        EXPECT_EQ(game_line.nb, 9);  // the walk ends there
        EXPECT_EQ(tab[square_of("b8")], peao) << letter;
    }
}

TEST_F(PositionLine, LetterWithTextBehindItIsNoPromotion) {
    for (const auto& [letter, piece] : promotions) {
        place(from_start + to_the_seventh + "a7b8" + letter + "x h5h4");
        EXPECT_EQ(game_line.nb, 9) << letter;  // the walk ends there
        EXPECT_EQ(command.PROMO, 0) << letter;
        EXPECT_EQ(tab[square_of("b8")], peao) << letter;
    }
}

TEST_F(PositionLine, PawnWithoutALetterStaysAPawn) {
    place(from_start + to_the_seventh + "a7b8 h5h4");
    EXPECT_EQ(game_line.nb, 10);
    EXPECT_EQ(tab[square_of("b8")], peao);
}

TEST_F(PositionLine, CharacterOutsideTheBoardLeavesTheCoordinate) {
    place(from_start + "e2e4 e7e5 z1f3");  // the file of e7e5 stands: the king goes to f3
    EXPECT_EQ(tab[square_of("f3")], rei);
    EXPECT_EQ(tab[square_of("e1")], 0);
    place(from_start + "e2e4 e7e5 g9f3");  // its rank: g7 goes to f3
    EXPECT_EQ(tab[square_of("f3")], -peao);
    EXPECT_EQ(tab[square_of("g7")], 0);
    place(from_start + "e2e4 e7e5 g1i3");  // e3
    EXPECT_EQ(tab[square_of("e3")], cavalo);
    place(from_start + "e2e4 e7e5 g1f0");  // f5
    EXPECT_EQ(tab[square_of("f5")], cavalo);
    place(from_start + "e2e4 e7e5 G1F3");  // upper case is outside: e1e3
    EXPECT_EQ(tab[square_of("e3")], rei);
}

TEST_F(PositionLine, IllegalMoveIsPlayedAsItStands) {
    place(from_start + "e2e5 a8h1");
    EXPECT_EQ(tab[square_of("e5")], peao);
    EXPECT_EQ(tab[square_of("h1")], -torre);
    EXPECT_EQ(tab[square_of("a8")], 0);
    EXPECT_EQ(game_line.nb, 2);
}

TEST_F(PositionLine, EmptySquareMoves) {
    place(from_start + "e4d8 e7e6");
    EXPECT_EQ(tab[square_of("d8")], 0);
    EXPECT_EQ(tab[square_of("e2")], peao);
}

// Whole games of legal moves against the plain rules: board, history, castling and en passant.
TEST_F(PositionLine, RandomGamesAreReplayedByTheRules) {
    std::mt19937 random(20240607);
    for (int game_number = 0; game_number < 40; ++game_number) {
        rules::Position p = rules::start_position();
        std::string moves;
        std::array<bool, 6> moved{};  // White's king, rooks of file a and file h; then Black's
        for (int k = 0; k < 120; ++k) {
            const auto legal = rules::legal_moves(p);
            if (legal.empty()) {
                break;
            }
            const rules::Move m = legal[random() % legal.size()];
            const char man = p.at(m.from_file, m.from_rank);
            moved[0] |= man == 'K';
            moved[1] |= man == 'R' && m.from_file == 0;
            moved[2] |= man == 'R' && m.from_file == 7;
            moved[3] |= man == 'k';
            moved[4] |= man == 'r' && m.from_file == 0;
            moved[5] |= man == 'r' && m.from_file == 7;
            p = rules::play(p, m);
            moves.append(k == 0 ? "" : " ").append(rules::to_uci(m));
        }
        EXPECT_EQ(place(from_start + moves), p.white_to_move ? white : black);
        EXPECT_EQ(tab, board_from(p)) << moves;
        EXPECT_EQ(game_line.tabr1[game_line.nb - 1], tab);
        EXPECT_EQ(count_en_passant(), p.en_passant_file >= 0 ? 1 : 0) << moves;
        if (p.en_passant_file >= 0) {
            EXPECT_EQ(jm.p_ah[p.white_to_move ? black : white][p.en_passant_file], 1) << moves;
        }
        EXPECT_EQ((std::array<bool, 6>{jm.R_jm[0] != 0, jm.T_a_jm[0] != 0, jm.T_h_jm[0] != 0, jm.R_jm[1] != 0,
                                       jm.T_a_jm[1] != 0, jm.T_h_jm[1] != 0}),
                  moved)
            << moves;
    }
}

// --- Moves onto their own square: the man is copied onto it, and then it is cleared ---

TEST_F(PositionLine, MoveOntoItsOwnSquareEmptiesIt) {
    EXPECT_EQ(place(from_start + "e2e2 e7e5 d1d1 e8e8"), white);
    EXPECT_EQ(tab, board_from(position_of("rnbq1bnr/pppp1ppp/8/4p3/8/8/PPPP1PPP/RNB1KBNR w - - 0 1")));
    EXPECT_EQ(game_line.nb, 4);
    EXPECT_EQ(game_line.tabr1[0], board_from(position_of("rnbqkbnr/pppppppp/8/8/8/8/PPPP1PPP/RNBQKBNR w - - 0 1")));
    EXPECT_EQ(game_line.peca, -rei);  // what stood on the to-square before
    EXPECT_EQ(root.material_a, (std::array{510.0F - 10 - 90, 510.0F - 110}));
    EXPECT_EQ(root.npecas, (std::array{13, 15}));
    EXPECT_EQ(count_en_passant(), 0);
}

TEST_F(PositionLine, MoveOntoItsOwnSquareOfAFenEmptiesItToo) {
    for (const char* name : {"a1", "b2", "c3", "d4", "e5", "e1", "f6", "g7", "b7", "c6", "f3", "e8"}) {
        const std::string move = std::string(name) + name;
        place(from_fen + "4k3/1q4B1/2b2Q2/4p3/3P4/2N2n2/1R6/R3K3 w - - 0 1 moves " + move);
        EXPECT_EQ(tab[square_of(name)], no_piece) << name;
        EXPECT_EQ(std::ranges::count(tab, 0), 64 - 11) << name;
    }
}

TEST_F(PositionLine, MoveOntoItsOwnSquareCountsAsAMoveOfKingAndRook) {
    const std::string with_all_rights = from_fen + "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1 moves ";
    place(with_all_rights + "a1a1 h8h8");
    EXPECT_EQ(jm.T_a_jm, (std::array<std::uint8_t, 2>{1, 0}));
    EXPECT_EQ(jm.T_h_jm, (std::array<std::uint8_t, 2>{0, 1}));
    EXPECT_EQ(jm.R_jm, (std::array<std::uint8_t, 2>{0, 0}));
    EXPECT_EQ(tab, board_from(position_of("r3k3/8/8/8/8/8/8/4K2R w - - 0 1")));
    place(with_all_rights + "e1e1 e8e8");
    EXPECT_EQ(jm.R_jm, (std::array<std::uint8_t, 2>{1, 1}));
    EXPECT_EQ(tab, board_from(position_of("r6r/8/8/8/8/8/8/R6R w - - 0 1")));
    options.CHESS_960 = 1;
    place(with_all_rights + "e1e1 e8e8");
    EXPECT_EQ(tab, board_from(position_of("r6r/8/8/8/8/8/8/R6R w - - 0 1")));
}

TEST_F(PositionLine, MoveOntoItsOwnSquarePromotesNobody) {
    place(from_fen + "P3k3/8/8/8/8/8/8/p3K3 w - - 0 1 moves a8a8q a1a1q");
    EXPECT_EQ(tab, board_from(position_of("4k3/8/8/8/8/8/8/4K3 w - - 0 1")));
}

// En passant is no transfer: the pawn is put on its square last.
TEST_F(PositionLine, MoveOntoItsOwnSquareMayCaptureEnPassant) {
    place(from_fen + "4k3/4p3/4P3/8/8/8/8/4K3 b - - 0 1 moves e7e5 e6e6");
    EXPECT_EQ(tab, board_from(position_of("4k3/8/4P3/8/8/8/8/4K3 b - - 0 1")));
}

// The coordinates of a process that has read no move are those of a1.
TEST_F(PositionLine, FirstMoveWithoutASquareEmptiesA1) {
    place(from_start + "zzzz e7e6");
    EXPECT_EQ(tab, board_from(position_of("rnbqkbnr/pppp1ppp/4p3/8/8/8/PPPPPPPP/1NBQKBNR w - - 0 1")));
    EXPECT_EQ(jm.T_a_jm[white], 1);
}

// The other forms have the same transfer, though the search builds no such move.
template <Colour c>
void expect_empty_in_every_form(const std::string& name) {
    const Move m = move_from(name + name);
    init_tabuleiro2<c>(m);
    EXPECT_EQ(trial.tab2[m.from()], no_piece) << name;
    init_tabuleiro2_deep<c>(3, m);
    EXPECT_EQ(trial.tab2[m.from()], no_piece) << name;
    verifica_liberdade<c>(tab, m);
    EXPECT_EQ(liberty.tab2t[m.from()], no_piece) << name;
    Ply node = ply[3];
    init_tabuleiro_ply<c>(node, m);
    EXPECT_EQ(node.tabd[m.from()], no_piece) << name;
    EXPECT_EQ(std::ranges::count(node.tabd, 0), 64 - 11) << name;
}

TEST_F(PositionLine, MoveOntoItsOwnSquareEmptiesItInTrialsAndPliesToo) {
    const std::string board = "4k3/1q4B1/2b2Q2/4p3/3P4/2N2n2/1R6/R3K3";
    for (const char* name : {"a1", "b2", "c3", "d4", "e1", "f6", "g7"}) {
        set_up_ply(3, board + " w - - 0 1");
        expect_empty_in_every_form<white>(name);
    }
    for (const char* name : {"b7", "c6", "f3", "e5", "e8"}) {
        set_up_ply(3, board + " b - - 0 1");
        expect_empty_in_every_form<black>(name);
    }
}

// --- FEN, rule by rule ---

const std::string two_kings = "4k3/8/8/8/8/8/8/4K3";

TEST_F(PositionLine, FenOfTwoKings) {
    EXPECT_EQ(place(from_fen + "8/8/8/8/8/8/8/K1k5 w - - 0 1"), white);
    EXPECT_EQ(count_moved(), 6);
    EXPECT_EQ(command.MOVESfen, 0);
    EXPECT_EQ(game_line.nb, 1);
    EXPECT_EQ(command.joga_c_fen, 1);
    EXPECT_EQ(tab[square_of("a1")], rei);
    EXPECT_EQ(tab[square_of("c1")], -rei);
    EXPECT_EQ(std::ranges::count(tab, 0), 62);
}

TEST_F(PositionLine, EveryFenIsReadByTheRules) {
    for (const rules::Position& p : rules::data_positions("positions.fen")) {
        const std::string fen = rules::to_fen(p);
        EXPECT_EQ(place(from_fen + fen), p.white_to_move ? white : black) << fen;
        EXPECT_EQ(tab, board_from(p)) << fen;
        EXPECT_EQ(jm.R_jm[white] == 0, p.white_castles_short || p.white_castles_long) << fen;
        EXPECT_EQ(jm.R_jm[black] == 0, p.black_castles_short || p.black_castles_long) << fen;
        EXPECT_EQ(jm.T_h_jm[white] == 0, p.white_castles_short) << fen;
        EXPECT_EQ(jm.T_a_jm[white] == 0, p.white_castles_long) << fen;
        EXPECT_EQ(jm.T_h_jm[black] == 0, p.black_castles_short) << fen;
        EXPECT_EQ(jm.T_a_jm[black] == 0, p.black_castles_long) << fen;
        EXPECT_EQ(count_en_passant(), p.en_passant_file >= 0 ? 1 : 0) << fen;
        EXPECT_EQ(game_line.nb, 1);
    }
}

TEST_F(PositionLine, EveryLetterOfTheBoardField) {
    place(from_fen + "PNBRQKpn/brqk4/8/8/8/8/8/8 w - -");
    constexpr std::array<int, 8> eighth_rank{10, 32, 33, 50, 90, 110, -10, -32};
    constexpr std::array<int, 8> seventh_rank_men{-33, -50, -90, -110, 0, 0, 0, 0};
    for (int f = 0; f < 8; ++f) {
        EXPECT_EQ(tab[square(f, 7)], eighth_rank[f]);
        EXPECT_EQ(tab[square(f, 6)], seventh_rank_men[f]);
    }
}

TEST_F(PositionLine, EveryDigitMovesTheFile) {
    for (int n = 1; n <= 7; ++n) {
        place(from_fen + std::to_string(n) + "R/8/8/8/8/8/8/K1k5 w - -");
        EXPECT_EQ(tab[square(n, 7)], torre) << n;
        EXPECT_EQ(std::ranges::count(tab, 0), 61) << n;
    }
}

TEST_F(PositionLine, UnknownCharactersOfTheBoardFieldAreSkipped) {
    place(from_fen + "xk0zy9-R/8/8/8/ 8 /?/ /K w - -");
    EXPECT_EQ(tab[square_of("a8")], -rei);
    EXPECT_EQ(tab[square_of("b8")], torre);
    EXPECT_EQ(tab[square_of("a1")], rei);
    EXPECT_EQ(std::ranges::count(tab, 0), 61);
}

TEST_F(PositionLine, BlankBeforeTheFirstRankIsSkipped) {
    EXPECT_EQ(place(from_fen + "k w 7/8/8/8/8/8/8/K b - -"), black);
    EXPECT_EQ(tab[square_of("a8")], -rei);
    EXPECT_EQ(tab[square_of("a1")], rei);
}

TEST_F(PositionLine, SquaresThatTheLineLeavesOutAreEmpty) {
    place(from_start + "e2e4 e7e5");
    place(from_fen + "k///////K w - -");
    EXPECT_EQ(std::ranges::count(tab, 0), 62);
    place(from_start + "e2e4 e7e5");
    place(from_fen + "k");
    EXPECT_EQ(std::ranges::count(tab, 0), 63);
    place(from_fen);
    EXPECT_EQ(std::ranges::count(tab, 0), 64);
}

TEST_F(PositionLine, MenOutsideTheBoardAreDropped) {
    place(from_fen + "8k/7KK/ppppppppp/8/8/8/8/8/QQQQ w - -");
    EXPECT_EQ(std::ranges::count(tab, 0), 64 - 1 - 8);
    EXPECT_EQ(tab[square_of("h7")], rei);
}

TEST_F(PositionLine, SideIsTheCharacterBehindTheBoard) {
    EXPECT_EQ(place(from_fen + two_kings + " w - - 0 1"), white);
    EXPECT_EQ(place(from_fen + two_kings + " b - - 0 1"), black);
    EXPECT_EQ(game.joga_com_b, 0);
}

TEST_F(PositionLine, OtherSideLettersLeaveTheSide) {
    for (const char* side : {"x", "W", "B", "-", " ", ""}) {
        place(from_fen + two_kings + " w - -");
        EXPECT_EQ(place(from_fen + two_kings + " " + side + " - -"), white) << side;
        place(from_fen + two_kings + " b - -");
        EXPECT_EQ(place(from_fen + two_kings + " " + side + " - -"), black) << side;
    }
}

// Which castlings the field allows, as its own letters.
std::string castlings_allowed(const std::string& field) {
    place(from_fen + two_kings + " w " + field);
    std::string letters;
    for (const Colour c : {white, black}) {
        EXPECT_EQ(jm.R_jm[c] == 0, jm.T_h_jm[c] == 0 || jm.T_a_jm[c] == 0) << field;
        letters += jm.T_h_jm[c] == 0 ? (c == white ? "K" : "k") : "";
        letters += jm.T_a_jm[c] == 0 ? (c == white ? "Q" : "q") : "";
    }
    return letters;
}

TEST_F(PositionLine, EveryCastlingField) {
    for (int subset = 0; subset < 16; ++subset) {
        std::string field;
        for (int k = 0; k < 4; ++k) {
            field += (subset & (1 << k)) != 0 ? std::string(1, "KQkq"[k]) : "";
        }
        EXPECT_EQ(castlings_allowed((field.empty() ? "-" : field) + " - 0 1"), field);
        EXPECT_EQ(castlings_allowed(std::string(field.rbegin(), field.rend()) + " - 0 1"), field);
    }
}

TEST_F(PositionLine, CastlingFieldIsReadForFiveCharacters) {
    EXPECT_EQ(castlings_allowed("xxxxK"), "K");
    EXPECT_EQ(castlings_allowed("xxxxxK"), "");
    EXPECT_EQ(castlings_allowed("K-Q"), "K");
    EXPECT_EQ(castlings_allowed("K Q"), "K");
    EXPECT_EQ(castlings_allowed("AHah"), "");
    EXPECT_EQ(castlings_allowed(""), "");
}

int flag_read(const std::string& rest, Colour c, int f) {
    place(from_fen + two_kings + " w " + rest);
    return count_en_passant() == 1 ? jm.p_ah[c][f] : 0;
}

TEST_F(PositionLine, EveryEnPassantSquare) {
    for (int f = 0; f < 8; ++f) {
        const std::string file(1, static_cast<char>('a' + f));
        for (const char* field : {"KQkq ", "Kq ", "K ", "- "}) {
            EXPECT_EQ(flag_read(field + file + "3 0 1", white, f), 1) << field << file;
            EXPECT_EQ(flag_read(field + file + "6 0 1", black, f), 1) << field << file;
        }
    }
}

TEST_F(PositionLine, EnPassantE3IsWhitesPawn) {
    place(from_fen + "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    EXPECT_EQ(jm.p_ah[white][4], 1);
    EXPECT_EQ(jm.p_ah[black][4], 0);
    EXPECT_EQ(count_en_passant(), 1);
}

TEST_F(PositionLine, OtherEnPassantFieldsSetNothing) {
    for (const char* field : {"-", "e4", "e", "i3", "E3", "33", "3e", " e3", ""}) {
        place(from_fen + two_kings + " w - " + field);
        EXPECT_EQ(count_en_passant(), 0) << field;
    }
}

TEST_F(PositionLine, CastlingFieldOfFiveCharactersHasNoEnPassantBehindIt) {
    EXPECT_EQ(flag_read("KQkq e3", white, 4), 1);
    EXPECT_EQ(flag_read("KQkqK e3", white, 4), 0);
    EXPECT_EQ(flag_read("KQkqKe3", white, 4), 0);
}

TEST_F(PositionLine, EnPassantOfTheLineBeforeIsGone) {
    place(from_fen + two_kings + " w - e3");
    place(from_fen + two_kings + " w - d6");
    EXPECT_EQ(jm.p_ah[white][4], 0);
    EXPECT_EQ(jm.p_ah[black][3], 1);
}

TEST_F(PositionLine, Chess960FenHasNoCastling) {
    options.CHESS_960 = 1;
    for (const char* field : {"KQkq", "-", "K", "HAha", "q"}) {
        place(from_fen + "r3k2r/8/8/8/8/8/8/R3K2R w " + field + " - 0 1");
        EXPECT_EQ(count_moved(), 6) << field;
    }
    place(from_fen + "r3k2r/8/8/8/4P3/8/8/R3K2R b KQkq e3 0 1");
    EXPECT_EQ(jm.p_ah[white][4], 1);
}

TEST_F(PositionLine, MoveNumbersAreNotRead) {
    for (const char* rest : {"", " 0 1", " 99 200", " x y"}) {
        place(from_fen + two_kings + " w - -" + rest);
        EXPECT_EQ(game_line.nb, 1) << rest;
        EXPECT_EQ(command.MOVESfen, 0) << rest;
    }
}

// --- FEN with moves ---

TEST_F(PositionLine, FenWithOneMoveIsTheOtherSidesTurn) {
    const std::string fen = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1";
    EXPECT_EQ(place(from_fen + fen + " moves e7e5"), white);
    EXPECT_EQ(game_line.nb, 1);
    EXPECT_EQ(command.MOVESfen, 1);
    EXPECT_EQ(game.joga_com_b, 1);
    EXPECT_EQ(tab[square_of("e5")], -peao);
    EXPECT_EQ(game_line.tabr1[0], tab);
    EXPECT_EQ(jm.p_ah[white][4], 0);
    EXPECT_EQ(jm.p_ah[black][4], 1);
}

TEST_F(PositionLine, FenWithMovesTakesItsTurnFromTheirNumber) {
    const std::string fen = "r3k2r/8/8/8/8/8/8/R3K2R ";
    const std::string moves = " KQkq - 0 1 moves e1e2 e8e7 e2e3 e7e6";
    for (int n = 1; n <= 4; ++n) {
        const std::string some_moves = moves.substr(0, moves.size() - 5 * static_cast<std::size_t>(4 - n));
        EXPECT_EQ(place(from_fen + fen + "w" + some_moves), n % 2 == 0 ? white : black) << n;
        EXPECT_EQ(place(from_fen + fen + "b" + some_moves), n % 2 == 0 ? black : white) << n;
        EXPECT_EQ(game_line.nb, n);
    }
}

TEST_F(PositionLine, MovesAreKnownByTwoLettersAndBeginSixFurther) {
    EXPECT_EQ(place(from_fen + two_kings + " w - - moXX e1e2"), black);  // one too near: no square is read
    EXPECT_EQ(tab[square_of("e1")], rei);
    EXPECT_EQ(place(from_fen + two_kings + " w - - moXXXXe1e2"), black);
    EXPECT_EQ(tab[square_of("e2")], rei);
}

TEST_F(PositionLine, MovesAreLookedForCloseBehindTheBoardOnly) {
    for (const std::size_t filling : {0U, 5U, 15U}) {
        place(from_fen + two_kings + " w - - " + std::string(filling, '0') + " moves e1e2");
        EXPECT_EQ(command.MOVESfen, 1) << filling;
        EXPECT_EQ(tab[square_of("e2")], rei) << filling;
    }
    for (const std::size_t filling : {30U, 100U}) {
        EXPECT_EQ(place(from_fen + two_kings + " w - - " + std::string(filling, '0') + " moves e1e2"), white);
        EXPECT_EQ(command.MOVESfen, 0) << filling;
        EXPECT_EQ(tab[square_of("e1")], rei) << filling;
    }
}

TEST_F(PositionLine, FenWithMovesWithoutAnyPlaysNothingThatMoves) {
    place(from_fen + two_kings + " w - - 0 1 moves");
    EXPECT_EQ(game_line.nb, 1);
    EXPECT_EQ(command.MOVESfen, 1);
}

// --- What the root knows of the position ---

TEST_F(PositionLine, FenCountsItsMaterial) {
    place(from_fen + "4k3/pp6/8/8/8/8/PPPQ4/RN2K3 w - - 0 1");
    EXPECT_EQ(root.material_a, (std::array{110.0F + 30 + 90 + 50 + 32, 110.0F + 20}));
    EXPECT_EQ(root.materialmaior, (std::array{172.0F, 0.0F}));
    EXPECT_EQ(root.npecas, (std::array{6, 2}));
    EXPECT_EQ(root.materialflot0, 182.0F);
    EXPECT_EQ(trial.p_xy_R, (std::array{square_of("e1"), square_of("e8")}));
    place(from_fen + "4k3/pp6/8/8/8/8/PPPQ4/RN2K3 b - - 0 1");
    EXPECT_EQ(root.materialflot0, -182.0F);
}

TEST_F(PositionLine, MaterialIsSeenFromTheSideThatWillSearch) {
    place(from_start + "e2e4 d7d5 e4d5");  // Black is a pawn down and to move
    EXPECT_EQ(root.materialflot0, -10.0F);
    place(from_start + "e2e4 d7d5 e4d5 a7a6");
    EXPECT_EQ(root.materialflot0, 10.0F);
    place(from_fen + "4k3/8/8/8/8/8/4P3/4K3 b - - 0 1 moves e8e7");
    EXPECT_EQ(root.materialflot0, 10.0F);
}

// Everything that the root keeps of a position.
struct KnownOfRoot {
    Board board;
    std::array<float, 2> material_a, materialmaior;
    std::array<int, 2> npecas, kings;
    std::array<IntTable, 2> Xr, XP;
    float regimen, materialflot0;

    bool operator==(const KnownOfRoot&) const = default;
};

KnownOfRoot known_of_root(const std::string& line) {
    place(line);
    return {tab,     root.material_a, root.materialmaior, root.npecas,       trial.p_xy_R,
            root.Xr, root.XP,         root.regimen,       root.materialflot0};
}

TEST_F(PositionLine, NothingOfAnEarlierPositionShowsInAFen) {
    for (const char* fen : {"4k3/8/8/8/8/8/8/QQ2K3 w - - 0 1", "4k3/8/8/8/8/8/PPPP4/4K3 b - - 0 1",
                            "r3k2r/pppqbppp/2npbn2/4p3/4P3/2NPBN2/PPPQBPPP/R3K2R w KQkq - 4 8"}) {
        fresh_process();
        const KnownOfRoot alone = known_of_root(from_fen + fen);
        for (const char* before : {"7k/8/8/8/8/8/8/K7 w - - 0 1", "k7/8/8/8/8/3p4/8/7K b - - 0 1"}) {
            place(from_fen + before);
            EXPECT_TRUE(known_of_root(from_fen + fen) == alone) << fen << " after " << before;
        }
    }
}

// A bare king is hunted: its table weighs 25 times as much, by the FEN's own material.
TEST_F(PositionLine, BareKingOfAFenIsHuntedAtOnce) {
    place(from_start + "e2e4 e7e5");
    place(from_fen + "4k3/8/8/8/8/8/8/Q3K3 w - - 0 1");
    EXPECT_EQ(root.Xr[black][square_of("e8")], 375 / 2);
    EXPECT_EQ(root.Xr[white][square_of("e1")], 15 / 2);
}

TEST_F(PositionLine, ForemostPawnOfAFenIsKnown) {
    place(from_fen + "4k3/8/2P5/8/8/p7/1P6/4K3 w - - 0 1");
    EXPECT_EQ(root.XP[white][square_of("c6")], 75 / 2);
    EXPECT_EQ(root.XP[black][square_of("a3")], 75 / 2);
}

// --- Search preparation ---

TEST_F(PositionLine, LineOf999CharactersIsMemorised) {
    for (const auto& [size, memorised] : {std::pair{998U, 1}, {999U, 1}, {1000U, 0}, {1001U, 0}, {5000U, 0}}) {
        std::string line = from_fen + two_kings + " w - - 0 1";
        line.resize(size, ' ');
        place(line);
        EXPECT_EQ(search.HASH_MEM, memorised) << size;
    }
}

TEST_F(PositionLine, KeyIsTheLineFilledUpWithNines) {
    search.inn.fill('x');
    const std::string line = from_start + "e2e4 e7e5";
    place(line);
    EXPECT_EQ(std::string(search.inn.data(), line.size()), line);
    EXPECT_EQ(std::string(search.inn.data() + line.size(), search.inn.size() - line.size()),
              std::string(search.inn.size() - line.size(), '9'));
}

TEST_F(PositionLine, KeyOfALongLineIsItsBeginning) {
    const std::string line = from_start + knight_moves(300);
    place(line);
    EXPECT_EQ(std::string(search.inn.data(), search.inn.size()), line.substr(0, 1000));
}

TEST_F(PositionLine, DrawScoreFollowsTheMaterial) {
    struct Balance {
        const char* fen;
        int emp;
    };
    // empp - 10 + 5 ln(M), cut toward zero; M of a queen is 510 / 420, ln 0.194.
    for (const Balance& x : {Balance{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", -15},
                             Balance{"rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", -14},  // -14.03
                             Balance{"rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1", -15},  // -15.97
                             Balance{"4k3/8/8/8/8/8/8/QQ2K3 w - - 0 1", -10},     // 290 / 110: -10.15
                             Balance{"4k3/8/8/8/8/8/8/QQ2K3 b - - 0 1", -19}}) {  // -19.85
        place(from_fen + x.fen);
        EXPECT_EQ(search.emp, x.emp) << x.fen;
        EXPECT_EQ(search.emppp, x.emp) << x.fen;
    }
}

TEST_F(PositionLine, DrawScoreFollowsTheOptions) {
    const std::string fen = from_fen + "4k3/8/8/8/8/8/8/QQ2K3 w - - 0 1";  // ln(290 / 110) = 0.9694
    options.empp = 10;
    options.MQ = 10.0F;
    place(fen);
    EXPECT_EQ(search.emp, 9);
    options.MQ = 0.0F;
    place(fen);
    EXPECT_EQ(search.emp, 0);
    options.empp = -10;
    place(fen);
    EXPECT_EQ(search.emp, -20);
}

TEST_F(PositionLine, FirstDepthIsNineOrLower) {
    for (const auto& [setting, first] : {std::pair{17, 9}, {15, 9}, {11, 9}, {9, 9}, {7, 7}, {5, 5}, {1, 1}, {0, 0}}) {
        options.deepp = setting;
        place(from_start + "e2e4 e7e5");
        EXPECT_EQ(search.deep, first);
        EXPECT_EQ(options.deepp, setting);
    }
}

TEST_F(PositionLine, ManyMenAreMoreThanTwentyFive) {
    // 24, 25 and 26 men without the kings.
    place(from_fen + "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/1N2K3 w kq - 0 1");
    EXPECT_EQ(root.npecas[0] + root.npecas[1], 24);
    EXPECT_EQ(search.DEEP9, 0);
    place(from_fen + "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RN2K3 w Qkq - 0 1");
    EXPECT_EQ(root.npecas[0] + root.npecas[1], 25);
    EXPECT_EQ(search.DEEP9, 0);
    place(from_fen + "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RN2K2R w KQkq - 0 1");
    EXPECT_EQ(root.npecas[0] + root.npecas[1], 26);
    EXPECT_EQ(search.DEEP9, 1);
}

// Low time and the nodes change the copies of a search, the next one begins with the settings.
TEST_F(PositionLine, WorkingCopiesAreThoseOfTheSettings) {
    for (const std::uint8_t setting : std::array<std::uint8_t, 3>{1, 0, 1}) {
        options.EXTRA_EVALL = setting;
        options.SEARCH_EE = setting;
        options.HASHf = setting;
        search.EXTRA_EVAL = search.SEARCH_E = search.HASHf = setting ? 0 : 1;
        place(from_start + "e2e4 e7e5");
        EXPECT_EQ(search.EXTRA_EVAL, setting);
        EXPECT_EQ(search.SEARCH_E, setting);
        EXPECT_EQ(search.HASHf, setting);
    }
}

TEST_F(PositionLine, PreparationStartsClockAndNodes) {
    search.tempo = 7;
    search.nodes = 77;
    place(from_start + "e2e4 e7e5");
    EXPECT_EQ(search.tempo, 300000);
    EXPECT_EQ(search.nodes, 0U);
}

// A line after which that colour is to search.
std::string line_with_turn_of(Colour c) { return from_start + (c == white ? "e2e4 e7e5" : "e2e4 e7e5 g1f3"); }

TEST_F(PositionLine, PreparationClearsTheShallowTablesOfItsColour) {
    constexpr std::array no_records{0, 0, 0};
    constexpr std::array seven_records{7, 7, 7};
    for (const Colour c : {white, black}) {
        for (const std::uint8_t in_use : std::array<std::uint8_t, 2>{1, 0}) {
            options.HASHf = in_use;
            complete_records_everywhere(7);
            place(line_with_turn_of(c));
            EXPECT_EQ(records_of_chain(c), in_use ? no_records : seven_records);
            EXPECT_EQ(records_of_chain(other(c)), seven_records);
        }
    }
}

TEST_F(PositionLine, PreparationFillsTheTablesOfItsColour) {
    for (const Colour c : {white, black}) {
        tables = {};
        fill_tables(c);
        const PositionalTables filled = tables;
        tables = {};
        place(line_with_turn_of(c));
        for (const auto table :
             {&PositionalTables::posix_peao_inici, &PositionalTables::posix_peao_medio, &PositionalTables::posix_cavalo,
              &PositionalTables::posix_bispo, &PositionalTables::posix_torre, &PositionalTables::posix_dama,
              &PositionalTables::posix_reifinal}) {
            EXPECT_EQ(tables.*table, filled.*table);
        }
        EXPECT_EQ(tables.posix_dama[c][square(4, relative_rank(c, 5))], 5);
    }
}

TEST_F(PositionLine, ClockStartsAtThePositionLine) {
    search.inicio = -1;
    place(from_start + "e2e4 e7e5");
    EXPECT_GE(search.inicio, 0);
}

}  // namespace
