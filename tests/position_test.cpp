// From a position line to the root of a search: the replay, the FEN, the turn and the preparation.
#include "uci/position.h"

#include "base/bounds.h"
#include "base/root.h"
#include "eval/tables.h"
#include "memory/shallow_tables.h"
#include "support/engine.h"
#include "support/plain_chess.h"
#include "support/plain_eval.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using namespace teste;
using namespace ondrel;

const std::string do_inicio = "position startpos moves ";
const std::string de_fen = "position fen ";

Tabuleiro tabuleiro_de(const plain::Position& p) {
    Tabuleiro t{};
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            constexpr std::string_view letras = "pnbrqk";
            constexpr std::array codigos{10, 32, 33, 50, 90, 110};
            const char man = p.at(f, r);
            if (man != plain::empty_square) {
                const bool branca = man < 'a';
                const int codigo_dela = codigos[letras.find(branca ? static_cast<char>(man - 'A' + 'a') : man)];
                t[casa(f, r)] = static_cast<std::int8_t>(branca ? codigo_dela : -codigo_dela);
            }
        }
    }
    return t;
}

int quantos_en_passant() {
    return static_cast<int>(std::ranges::count(jm.p_ah[brancas], 1) + std::ranges::count(jm.p_ah[pretas], 1));
}

int soma_das_bandeiras() { return jm.R_jm[0] + jm.R_jm[1] + jm.T_a_jm[0] + jm.T_a_jm[1] + jm.T_h_jm[0] + jm.T_h_jm[1]; }

class PositionLine : public testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

// --- Replay from the start position ---

TEST_F(PositionLine, TwoMovesLeaveWhiteToSearch) {
    EXPECT_EQ(coloca(do_inicio + "e2e4 e7e5"), brancas);
    EXPECT_EQ(nb, 2);
    EXPECT_EQ(joga_com_b, 1);
}

TEST_F(PositionLine, ThreeMovesLeaveBlackToSearch) {
    EXPECT_EQ(coloca(do_inicio + "e2e4 e7e5 g1f3"), pretas);
    EXPECT_EQ(nb, 3);
    EXPECT_EQ(joga_com_b, 0);
}

TEST_F(PositionLine, ReplayStartsAfresh) {
    tab.fill(10);
    jm.R_jm = jm.T_a_jm = jm.T_h_jm = {1, 1};
    coloca(do_inicio + "e2e4 e7e5");
    EXPECT_EQ(soma_das_bandeiras(), 0);
    EXPECT_EQ(joga_c_ob, 1);
    const auto p = plain::from_fen("rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2");
    EXPECT_EQ(tab, tabuleiro_de(*p));
    EXPECT_EQ(jm.p_ah[pretas][4], 1);
    EXPECT_EQ(quantos_en_passant(), 1);
}

TEST_F(PositionLine, LineOfNeitherFormSetsNothingUp) {
    coloca(do_inicio + "e2e4 e7e5 g1f3");
    const Tabuleiro antes = tab;
    EXPECT_EQ(coloca("position"), pretas);  // the side stays too
    EXPECT_EQ(tab, antes);
    EXPECT_EQ(nb, 1);
}

TEST_F(PositionLine, FlagsOfTheReaderChooseTheForm) {
    joga_c_ob = 1;
    in = "xosition startpos moves e2e4 e7e5";
    le_posicao();
    EXPECT_EQ(nb, 2);
    EXPECT_EQ(tab[casa(4, 4)], -peao);
    joga_c_ob = 0;
    joga_c_fen = 1;
    in = "xosition_xen_8/8/8/8/8/8/8/K1k5 w - -";
    le_posicao();
    EXPECT_EQ(tab[casa(0, 0)], rei);
}

TEST_F(PositionLine, CapturedManIsThatOfTheLastMove) {
    coloca(do_inicio + "e2e4 d7d5 e4d5");
    EXPECT_EQ(peca, -peao);
    coloca(do_inicio + "e2e4 d7d5 e4d5 d8d5");
    EXPECT_EQ(peca, peao);
    coloca(do_inicio + "e2e4 d7d5 e4d5 d8d5 b1c3");
    EXPECT_EQ(peca, 0);
}

TEST_F(PositionLine, HistoryHoldsTheBoardAfterEveryMove) {
    coloca(do_inicio + "g1f3 g8f6 f3g1");
    plain::Position p = plain::start_position();
    int n = 0;
    for (const char* m : {"g1f3", "g8f6", "f3g1"}) {
        p = plain::play(p, *plain::from_uci(m));
        EXPECT_EQ(tabr1[n], tabuleiro_de(p)) << m;
        ++n;
    }
    EXPECT_TRUE(std::ranges::all_of(tabr1[3], [](int x) { return x == 1; }));
    EXPECT_TRUE(std::ranges::all_of(tabr1[999], [](int x) { return x == 1; }));
}

TEST_F(PositionLine, HistoryOfTheLineBeforeIsGone) {
    coloca(do_inicio + "g1f3 g8f6 f3g1 f6g8");
    coloca(do_inicio + "e2e4 e7e5");
    EXPECT_TRUE(std::ranges::all_of(tabr1[2], [](int x) { return x == 1; }));
}

std::string lances_de_cavalo(int quantos) {
    constexpr std::array lances{"g1f3", "g8f6", "f3g1", "f6g8"};
    std::string texto;
    for (int k = 0; k < quantos; ++k) {
        texto.append(k == 0 ? "" : " ").append(lances[k % 4]);
    }
    return texto;
}

TEST_F(PositionLine, HistoryEndsAtItsLastRow) {
    for (const int quantos : {999, 1000, 1001, 1500}) {
        EXPECT_EQ(coloca(do_inicio + lances_de_cavalo(quantos)), quantos % 2 == 0 ? brancas : pretas);
        EXPECT_EQ(nb, quantos);
        EXPECT_EQ(tabr1[998][casa(5, 5)], -cavalo);  // after 999 moves one knight is still out
        EXPECT_EQ(tabr1[999][casa(5, 5)], quantos >= 1000 ? 0 : 1);
        EXPECT_EQ(tab[casa(5, 2)], quantos % 4 == 1 || quantos % 4 == 2 ? cavalo : 0);
    }
}

// A line far longer than any game, of moves that change nothing.
std::string linha_sem_fim(int quantos) {
    std::string linha = do_inicio + "e4e4";
    for (int k = 1; k < quantos; ++k) {
        linha += " e4e4";
    }
    return linha;
}

TEST_F(PositionLine, WalkEndsAfter99999Moves) {
    coloca(linha_sem_fim(100010));
    EXPECT_EQ(nb, 100000);
}

// The count has gone one past the last move played when the walk is broken off, and the turn goes by the count.
TEST_F(PositionLine, TurnOfAWalkBrokenOffGoesByTheCount) {
    EXPECT_EQ(coloca(linha_sem_fim(99999)), pretas);
    EXPECT_EQ(nb, 99999);
    EXPECT_EQ(coloca(linha_sem_fim(100000)), brancas);
    EXPECT_EQ(nb, 100000);
    EXPECT_EQ(coloca(linha_sem_fim(100001)), brancas);
    EXPECT_EQ(nb, 100000);
}

// --- The move walk ---

TEST_F(PositionLine, BlankBehindAMoveMeansAnother) {
    coloca(do_inicio + "e2e4 ");
    EXPECT_EQ(nb, 2);
    // The second move has no characters: the coordinates stand, and the empty e2 moves onto the pawn.
    EXPECT_EQ(tab[casa(4, 3)], 0);
}

TEST_F(PositionLine, AnythingElseBehindAMoveEndsTheWalk) {
    for (const char* resto : {"x", "xe7e5", "-", "x e7e5", "Q e7e5", "qx e7e5", "k e7e5", "p", "\t", "\te7e5"}) {
        coloca(do_inicio + "e2e4" + resto);
        EXPECT_EQ(nb, 1) << resto;
        EXPECT_EQ(tab[casa(4, 3)], peao) << resto;
        EXPECT_EQ(tab[casa(4, 6)], -peao) << resto;
    }
}

TEST_F(PositionLine, LetterBehindAnyMoveIsPassedOver) {
    for (const char* letra : {"q", "r", "b", "n"}) {
        coloca(do_inicio + "e2e4" + letra + " e7e5");
        EXPECT_EQ(nb, 2) << letra;
        EXPECT_EQ(tab[casa(4, 4)], -peao) << letra;
        EXPECT_EQ(PRe, '0') << letra;
    }
}

const std::string ate_a_setima = "a2a4 b7b5 a4b5 a7a6 b5a6 h7h6 a6a7 h6h5 ";

struct Promocao {
    char letra;
    Peca piece;
};
constexpr std::array<Promocao, 4> promocoes{{{'q', dama}, {'r', torre}, {'b', bispo}, {'n', cavalo}}};

TEST_F(PositionLine, PromotionLetterReachesTheBoard) {
    for (const auto& [letra, piece] : promocoes) {
        EXPECT_EQ(coloca(do_inicio + ate_a_setima + "a7b8" + letra), pretas);
        EXPECT_EQ(nb, 9);
        EXPECT_EQ(tab[casa(1, 7)], piece) << letra;
        EXPECT_EQ(peca, -cavalo);
        EXPECT_EQ(PRe, '0');
        EXPECT_EQ(PROMO, 1);
        EXPECT_EQ(book, 0);
        EXPECT_EQ(PR, '0');  // that is of the search's own promotion
    }
}

TEST_F(PositionLine, WalkGoesOnBehindAPromotion) {
    for (const auto& [letra, piece] : promocoes) {
        EXPECT_EQ(coloca(do_inicio + ate_a_setima + "a7b8" + letra + " h5h4 b2b4"), pretas);
        EXPECT_EQ(nb, 11);
        EXPECT_EQ(tab[casa(1, 7)], piece) << letra;
        EXPECT_EQ(tab[casa(7, 3)], -peao);
        EXPECT_EQ(tab[casa(1, 3)], peao);
    }
}

TEST_F(PositionLine, BlackPromotesToo) {
    for (const auto& [letra, piece] : promocoes) {
        coloca(de_fen + "4k3/8/8/8/8/8/p6p/4K3 b - - 0 1 moves a2a1" + letra + " e1e2 h2h1" + letra);
        EXPECT_EQ(tab[casa(0, 0)], -piece) << letra;
        EXPECT_EQ(tab[casa(7, 0)], -piece) << letra;
    }
}

TEST_F(PositionLine, UpperCaseLetterIsNoPromotion) {
    for (const char letra : {'Q', 'R', 'B', 'N'}) {
        coloca(do_inicio + ate_a_setima + "a7b8" + letra + " h5h4");
        EXPECT_EQ(nb, 9);  // the walk ends there
        EXPECT_EQ(tab[casa(1, 7)], peao) << letra;
    }
}

TEST_F(PositionLine, LetterWithTextBehindItIsNoPromotion) {
    for (const auto& [letra, piece] : promocoes) {
        coloca(do_inicio + ate_a_setima + "a7b8" + letra + "x h5h4");
        EXPECT_EQ(nb, 9) << letra;  // the walk ends there
        EXPECT_EQ(PROMO, 0) << letra;
        EXPECT_EQ(tab[casa(1, 7)], peao) << letra;
    }
}

TEST_F(PositionLine, PawnWithoutALetterStaysAPawn) {
    coloca(do_inicio + ate_a_setima + "a7b8 h5h4");
    EXPECT_EQ(nb, 10);
    EXPECT_EQ(tab[casa(1, 7)], peao);
}

TEST_F(PositionLine, CharacterOutsideTheBoardLeavesTheCoordinate) {
    coloca(do_inicio + "e2e4 e7e5 z1f3");  // the file of e7e5 stands: the king goes to f3
    EXPECT_EQ(tab[casa(5, 2)], rei);
    EXPECT_EQ(tab[casa(4, 0)], 0);
    coloca(do_inicio + "e2e4 e7e5 g9f3");  // its rank: g7 goes to f3
    EXPECT_EQ(tab[casa(5, 2)], -peao);
    EXPECT_EQ(tab[casa(6, 6)], 0);
    coloca(do_inicio + "e2e4 e7e5 g1i3");  // e3
    EXPECT_EQ(tab[casa(4, 2)], cavalo);
    coloca(do_inicio + "e2e4 e7e5 g1f0");  // f5
    EXPECT_EQ(tab[casa(5, 4)], cavalo);
    coloca(do_inicio + "e2e4 e7e5 G1F3");  // upper case is outside: e1e3
    EXPECT_EQ(tab[casa(4, 2)], rei);
}

TEST_F(PositionLine, IllegalMoveIsPlayedAsItStands) {
    coloca(do_inicio + "e2e5 a8h1");
    EXPECT_EQ(tab[casa(4, 4)], peao);
    EXPECT_EQ(tab[casa(7, 0)], -torre);
    EXPECT_EQ(tab[casa(0, 7)], 0);
    EXPECT_EQ(nb, 2);
}

TEST_F(PositionLine, EmptySquareMoves) {
    coloca(do_inicio + "e4d8 e7e6");
    EXPECT_EQ(tab[casa(3, 7)], 0);
    EXPECT_EQ(tab[casa(4, 1)], peao);
}

// Whole games of legal moves against the plain rules: board, history, castling and en passant.
TEST_F(PositionLine, RandomGamesAreReplayedByTheRules) {
    std::mt19937 sorte(20240607);
    for (int partida = 0; partida < 40; ++partida) {
        plain::Position p = plain::start_position();
        std::string lances;
        std::array<bool, 6> moveu{};  // white king, a1 and h1 files' rooks, then black's
        for (int k = 0; k < 120; ++k) {
            const auto possiveis = plain::legal_moves(p);
            if (possiveis.empty()) {
                break;
            }
            const plain::Move m = possiveis[sorte() % possiveis.size()];
            const char man = p.at(m.from_file, m.from_rank);
            moveu[0] |= man == 'K';
            moveu[1] |= man == 'R' && m.from_file == 0;
            moveu[2] |= man == 'R' && m.from_file == 7;
            moveu[3] |= man == 'k';
            moveu[4] |= man == 'r' && m.from_file == 0;
            moveu[5] |= man == 'r' && m.from_file == 7;
            p = plain::play(p, m);
            lances.append(k == 0 ? "" : " ").append(plain::to_uci(m));
        }
        EXPECT_EQ(coloca(do_inicio + lances), p.white_to_move ? brancas : pretas);
        EXPECT_EQ(tab, tabuleiro_de(p)) << lances;
        EXPECT_EQ(tabr1[nb - 1], tab);
        EXPECT_EQ(quantos_en_passant(), p.en_passant_file >= 0 ? 1 : 0) << lances;
        if (p.en_passant_file >= 0) {
            EXPECT_EQ(jm.p_ah[p.white_to_move ? pretas : brancas][p.en_passant_file], 1) << lances;
        }
        EXPECT_EQ((std::array<bool, 6>{jm.R_jm[0] != 0, jm.T_a_jm[0] != 0, jm.T_h_jm[0] != 0, jm.R_jm[1] != 0,
                                       jm.T_a_jm[1] != 0, jm.T_h_jm[1] != 0}),
                  moveu)
            << lances;
    }
}

// --- FEN, rule by rule ---

const std::string dois_reis = "4k3/8/8/8/8/8/8/4K3";

TEST_F(PositionLine, FenOfTwoKings) {
    EXPECT_EQ(coloca(de_fen + "8/8/8/8/8/8/8/K1k5 w - - 0 1"), brancas);
    EXPECT_EQ(soma_das_bandeiras(), 6);
    EXPECT_EQ(MOVESfen, 0);
    EXPECT_EQ(nb, 1);
    EXPECT_EQ(joga_c_fen, 1);
    EXPECT_EQ(tab[casa(0, 0)], rei);
    EXPECT_EQ(tab[casa(2, 0)], -rei);
    EXPECT_EQ(std::ranges::count(tab, 0), 62);
}

TEST_F(PositionLine, EveryFenIsReadByTheRules) {
    for (const plain::Position& p : plain::data_positions("positions.fen")) {
        const std::string fen = plain::to_fen(p);
        EXPECT_EQ(coloca(de_fen + fen), p.white_to_move ? brancas : pretas) << fen;
        EXPECT_EQ(tab, tabuleiro_de(p)) << fen;
        EXPECT_EQ(jm.R_jm[brancas] == 0, p.white_castles_short || p.white_castles_long) << fen;
        EXPECT_EQ(jm.R_jm[pretas] == 0, p.black_castles_short || p.black_castles_long) << fen;
        EXPECT_EQ(jm.T_h_jm[brancas] == 0, p.white_castles_short) << fen;
        EXPECT_EQ(jm.T_a_jm[brancas] == 0, p.white_castles_long) << fen;
        EXPECT_EQ(jm.T_h_jm[pretas] == 0, p.black_castles_short) << fen;
        EXPECT_EQ(jm.T_a_jm[pretas] == 0, p.black_castles_long) << fen;
        EXPECT_EQ(quantos_en_passant(), p.en_passant_file >= 0 ? 1 : 0) << fen;
        EXPECT_EQ(nb, 1);
    }
}

TEST_F(PositionLine, EveryLetterOfTheBoardField) {
    coloca(de_fen + "PNBRQKpn/brqk4/8/8/8/8/8/8 w - -");
    constexpr std::array<int, 8> oitava{10, 32, 33, 50, 90, 110, -10, -32};
    constexpr std::array<int, 8> setima{-33, -50, -90, -110, 0, 0, 0, 0};
    for (int f = 0; f < 8; ++f) {
        EXPECT_EQ(tab[casa(f, 7)], oitava[f]);
        EXPECT_EQ(tab[casa(f, 6)], setima[f]);
    }
}

TEST_F(PositionLine, EveryDigitMovesTheFile) {
    for (int n = 1; n <= 7; ++n) {
        coloca(de_fen + std::to_string(n) + "R/8/8/8/8/8/8/K1k5 w - -");
        EXPECT_EQ(tab[casa(n, 7)], torre) << n;
        EXPECT_EQ(std::ranges::count(tab, 0), 61) << n;
    }
}

TEST_F(PositionLine, UnknownCharactersOfTheBoardFieldAreSkipped) {
    coloca(de_fen + "xk0zy9-R/8/8/8/ 8 /?/ /K w - -");
    EXPECT_EQ(tab[casa(0, 7)], -rei);
    EXPECT_EQ(tab[casa(1, 7)], torre);
    EXPECT_EQ(tab[casa(0, 0)], rei);
    EXPECT_EQ(std::ranges::count(tab, 0), 61);
}

TEST_F(PositionLine, BlankBeforeTheFirstRankIsSkipped) {
    EXPECT_EQ(coloca(de_fen + "k w 7/8/8/8/8/8/8/K b - -"), pretas);
    EXPECT_EQ(tab[casa(0, 7)], -rei);
    EXPECT_EQ(tab[casa(0, 0)], rei);
}

TEST_F(PositionLine, SquaresThatTheLineLeavesOutAreEmpty) {
    coloca(do_inicio + "e2e4 e7e5");
    coloca(de_fen + "k///////K w - -");
    EXPECT_EQ(std::ranges::count(tab, 0), 62);
    coloca(do_inicio + "e2e4 e7e5");
    coloca(de_fen + "k");
    EXPECT_EQ(std::ranges::count(tab, 0), 63);
    coloca(de_fen);
    EXPECT_EQ(std::ranges::count(tab, 0), 64);
}

TEST_F(PositionLine, MenOutsideTheBoardAreDropped) {
    coloca(de_fen + "8k/7KK/ppppppppp/8/8/8/8/8/QQQQ w - -");
    EXPECT_EQ(std::ranges::count(tab, 0), 64 - 1 - 8);
    EXPECT_EQ(tab[casa(7, 6)], rei);
}

TEST_F(PositionLine, SideIsTheCharacterBehindTheBoard) {
    EXPECT_EQ(coloca(de_fen + dois_reis + " w - - 0 1"), brancas);
    EXPECT_EQ(coloca(de_fen + dois_reis + " b - - 0 1"), pretas);
    EXPECT_EQ(joga_com_b, 0);
}

TEST_F(PositionLine, OtherSideLettersLeaveTheSide) {
    for (const char* lado : {"x", "W", "B", "-", " ", ""}) {
        coloca(de_fen + dois_reis + " w - -");
        EXPECT_EQ(coloca(de_fen + dois_reis + " " + lado + " - -"), brancas) << lado;
        coloca(de_fen + dois_reis + " b - -");
        EXPECT_EQ(coloca(de_fen + dois_reis + " " + lado + " - -"), pretas) << lado;
    }
}

// Which castlings the field allows, as its own letters.
std::string roques(const std::string& campo) {
    coloca(de_fen + dois_reis + " w " + campo);
    std::string letras;
    for (const Cor c : {brancas, pretas}) {
        EXPECT_EQ(jm.R_jm[c] == 0, jm.T_h_jm[c] == 0 || jm.T_a_jm[c] == 0) << campo;
        letras += jm.T_h_jm[c] == 0 ? (c == brancas ? "K" : "k") : "";
        letras += jm.T_a_jm[c] == 0 ? (c == brancas ? "Q" : "q") : "";
    }
    return letras;
}

TEST_F(PositionLine, EveryCastlingField) {
    for (int quais = 0; quais < 16; ++quais) {
        std::string campo;
        for (int k = 0; k < 4; ++k) {
            campo += (quais & (1 << k)) != 0 ? std::string(1, "KQkq"[k]) : "";
        }
        EXPECT_EQ(roques((campo.empty() ? "-" : campo) + " - 0 1"), campo);
        EXPECT_EQ(roques(std::string(campo.rbegin(), campo.rend()) + " - 0 1"), campo);
    }
}

TEST_F(PositionLine, CastlingFieldIsReadForFiveCharacters) {
    EXPECT_EQ(roques("xxxxK"), "K");
    EXPECT_EQ(roques("xxxxxK"), "");
    EXPECT_EQ(roques("K-Q"), "K");
    EXPECT_EQ(roques("K Q"), "K");
    EXPECT_EQ(roques("AHah"), "");
    EXPECT_EQ(roques(""), "");
}

int lido_de(const std::string& resto, Cor c, int f) {
    coloca(de_fen + dois_reis + " w " + resto);
    return quantos_en_passant() == 1 ? jm.p_ah[c][f] : 0;
}

TEST_F(PositionLine, EveryEnPassantSquare) {
    for (int f = 0; f < 8; ++f) {
        const std::string file(1, static_cast<char>('a' + f));
        for (const char* campo : {"KQkq ", "Kq ", "K ", "- "}) {
            EXPECT_EQ(lido_de(campo + file + "3 0 1", brancas, f), 1) << campo << file;
            EXPECT_EQ(lido_de(campo + file + "6 0 1", pretas, f), 1) << campo << file;
        }
    }
}

TEST_F(PositionLine, EnPassantE3IsWhitesPawn) {
    coloca(de_fen + "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    EXPECT_EQ(jm.p_ah[brancas][4], 1);
    EXPECT_EQ(jm.p_ah[pretas][4], 0);
    EXPECT_EQ(quantos_en_passant(), 1);
}

TEST_F(PositionLine, OtherEnPassantFieldsSetNothing) {
    for (const char* campo : {"-", "e4", "e", "i3", "E3", "33", "3e", " e3", ""}) {
        coloca(de_fen + dois_reis + " w - " + campo);
        EXPECT_EQ(quantos_en_passant(), 0) << campo;
    }
}

TEST_F(PositionLine, CastlingFieldOfFiveCharactersHasNoEnPassantBehindIt) {
    EXPECT_EQ(lido_de("KQkq e3", brancas, 4), 1);
    EXPECT_EQ(lido_de("KQkqK e3", brancas, 4), 0);
    EXPECT_EQ(lido_de("KQkqKe3", brancas, 4), 0);
}

TEST_F(PositionLine, EnPassantOfTheLineBeforeIsGone) {
    coloca(de_fen + dois_reis + " w - e3");
    coloca(de_fen + dois_reis + " w - d6");
    EXPECT_EQ(jm.p_ah[brancas][4], 0);
    EXPECT_EQ(jm.p_ah[pretas][3], 1);
}

TEST_F(PositionLine, Chess960FenHasNoCastling) {
    CHESS_960 = 1;
    for (const char* campo : {"KQkq", "-", "K", "HAha", "q"}) {
        coloca(de_fen + "r3k2r/8/8/8/8/8/8/R3K2R w " + campo + " - 0 1");
        EXPECT_EQ(soma_das_bandeiras(), 6) << campo;
    }
    coloca(de_fen + "r3k2r/8/8/8/4P3/8/8/R3K2R b KQkq e3 0 1");
    EXPECT_EQ(jm.p_ah[brancas][4], 1);
}

TEST_F(PositionLine, MoveNumbersAreNotRead) {
    for (const char* resto : {"", " 0 1", " 99 200", " x y"}) {
        coloca(de_fen + dois_reis + " w - -" + resto);
        EXPECT_EQ(nb, 1) << resto;
        EXPECT_EQ(MOVESfen, 0) << resto;
    }
}

// --- FEN with moves ---

TEST_F(PositionLine, FenWithOneMoveIsTheOtherSidesTurn) {
    const std::string fen = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1";
    EXPECT_EQ(coloca(de_fen + fen + " moves e7e5"), brancas);
    EXPECT_EQ(nb, 1);
    EXPECT_EQ(MOVESfen, 1);
    EXPECT_EQ(joga_com_b, 1);
    EXPECT_EQ(tab[casa(4, 4)], -peao);
    EXPECT_EQ(tabr1[0], tab);
    EXPECT_EQ(jm.p_ah[brancas][4], 0);
    EXPECT_EQ(jm.p_ah[pretas][4], 1);
}

TEST_F(PositionLine, FenWithMovesTakesItsTurnFromTheirNumber) {
    const std::string fen = "r3k2r/8/8/8/8/8/8/R3K2R ";
    const std::string lances = " KQkq - 0 1 moves e1e2 e8e7 e2e3 e7e6";
    for (int n = 1; n <= 4; ++n) {
        const std::string alguns = lances.substr(0, lances.size() - 5 * static_cast<std::size_t>(4 - n));
        EXPECT_EQ(coloca(de_fen + fen + "w" + alguns), n % 2 == 0 ? brancas : pretas) << n;
        EXPECT_EQ(coloca(de_fen + fen + "b" + alguns), n % 2 == 0 ? pretas : brancas) << n;
        EXPECT_EQ(nb, n);
    }
}

TEST_F(PositionLine, MovesAreKnownByTwoLettersAndBeginSixFurther) {
    EXPECT_EQ(coloca(de_fen + dois_reis + " w - - moXX e1e2"), pretas);  // one too near: no square is read
    EXPECT_EQ(tab[casa(4, 0)], rei);
    EXPECT_EQ(coloca(de_fen + dois_reis + " w - - moXXXXe1e2"), pretas);
    EXPECT_EQ(tab[casa(4, 1)], rei);
}

TEST_F(PositionLine, MovesAreLookedForCloseBehindTheBoardOnly) {
    for (const std::size_t enchimento : {0U, 5U, 15U}) {
        coloca(de_fen + dois_reis + " w - - " + std::string(enchimento, '0') + " moves e1e2");
        EXPECT_EQ(MOVESfen, 1) << enchimento;
        EXPECT_EQ(tab[casa(4, 1)], rei) << enchimento;
    }
    for (const std::size_t enchimento : {30U, 100U}) {
        EXPECT_EQ(coloca(de_fen + dois_reis + " w - - " + std::string(enchimento, '0') + " moves e1e2"), brancas);
        EXPECT_EQ(MOVESfen, 0) << enchimento;
        EXPECT_EQ(tab[casa(4, 0)], rei) << enchimento;
    }
}

TEST_F(PositionLine, FenWithMovesWithoutAnyPlaysNothingThatMoves) {
    coloca(de_fen + dois_reis + " w - - 0 1 moves");
    EXPECT_EQ(nb, 1);
    EXPECT_EQ(MOVESfen, 1);
}

// --- What the root knows of the position ---

TEST_F(PositionLine, FenCountsItsMaterial) {
    coloca(de_fen + "4k3/pp6/8/8/8/8/PPPQ4/RN2K3 w - - 0 1");
    EXPECT_EQ(material_a, (std::array{110.0F + 30 + 90 + 50 + 32, 110.0F + 20}));
    EXPECT_EQ(materialmaior, (std::array{172.0F, 0.0F}));
    EXPECT_EQ(npecas, (std::array{6, 2}));
    EXPECT_EQ(npecas_dp, (std::array{3, 0}));
    EXPECT_EQ(materialflot0, 182.0F);
    EXPECT_EQ(p_x_R, (std::array{4, 4}));
    EXPECT_EQ(p_y_R, (std::array{0, 7}));
    coloca(de_fen + "4k3/pp6/8/8/8/8/PPPQ4/RN2K3 b - - 0 1");
    EXPECT_EQ(materialflot0, -182.0F);
}

TEST_F(PositionLine, MaterialIsSeenFromTheSideThatWillSearch) {
    coloca(do_inicio + "e2e4 d7d5 e4d5");  // Black is a pawn down and to move
    EXPECT_EQ(materialflot0, -10.0F);
    coloca(do_inicio + "e2e4 d7d5 e4d5 a7a6");
    EXPECT_EQ(materialflot0, 10.0F);
    coloca(de_fen + "4k3/8/8/8/8/8/4P3/4K3 b - - 0 1 moves e8e7");
    EXPECT_EQ(materialflot0, 10.0F);
}

// Everything that the root keeps of a position.
struct Raiz {
    Tabuleiro tabuleiro;
    std::array<float, 2> material, maior;
    std::array<int, 2> homens, pecas, rei_x, rei_y;
    std::array<TabelaInteira, 2> perto_do_rei, perto_do_peao;
    float balanco, saldo;

    bool operator==(const Raiz&) const = default;
};

Raiz raiz_de(const std::string& linha) {
    coloca(linha);
    return {tab, material_a, materialmaior, npecas, npecas_dp, p_x_R, p_y_R, Xr, XP, regimen, materialflot0};
}

TEST_F(PositionLine, NothingOfAnEarlierPositionShowsInAFen) {
    for (const char* fen : {"4k3/8/8/8/8/8/8/QQ2K3 w - - 0 1", "4k3/8/8/8/8/8/PPPP4/4K3 b - - 0 1",
                            "r3k2r/pppqbppp/2npbn2/4p3/4P3/2NPBN2/PPPQBPPP/R3K2R w KQkq - 4 8"}) {
        processo_novo();
        const Raiz sozinha = raiz_de(de_fen + fen);
        for (const char* antes : {"7k/8/8/8/8/8/8/K7 w - - 0 1", "k7/8/8/8/8/3p4/8/7K b - - 0 1"}) {
            coloca(de_fen + antes);
            EXPECT_TRUE(raiz_de(de_fen + fen) == sozinha) << fen << " after " << antes;
        }
    }
}

// A bare king is hunted: its table weighs 25 times as much, by the FEN's own material.
TEST_F(PositionLine, BareKingOfAFenIsHuntedAtOnce) {
    coloca(do_inicio + "e2e4 e7e5");
    coloca(de_fen + "4k3/8/8/8/8/8/8/Q3K3 w - - 0 1");
    EXPECT_EQ(Xr[pretas][casa(4, 7)], 375 / 2);
    EXPECT_EQ(Xr[brancas][casa(4, 0)], 15 / 2);
}

TEST_F(PositionLine, ForemostPawnOfAFenIsKnown) {
    coloca(de_fen + "4k3/8/2P5/8/8/p7/1P6/4K3 w - - 0 1");
    EXPECT_EQ(XP[brancas][casa(2, 5)], 75 / 2);
    EXPECT_EQ(XP[pretas][casa(0, 2)], 75 / 2);
}

// --- Search preparation ---

TEST_F(PositionLine, LineOf999CharactersIsMemorised) {
    for (const auto& [tamanho, memorizada] : {std::pair{998U, 1}, {999U, 1}, {1000U, 0}, {1001U, 0}, {5000U, 0}}) {
        std::string linha = de_fen + dois_reis + " w - - 0 1";
        linha.resize(tamanho, ' ');
        coloca(linha);
        EXPECT_EQ(HASH_MEM, memorizada) << tamanho;
    }
}

TEST_F(PositionLine, KeyIsTheLineFilledUpWithNines) {
    inn.fill('x');
    const std::string linha = do_inicio + "e2e4 e7e5";
    coloca(linha);
    EXPECT_EQ(std::string(inn.data(), linha.size()), linha);
    EXPECT_EQ(std::string(inn.data() + linha.size(), inn.size() - linha.size()),
              std::string(inn.size() - linha.size(), '9'));
}

TEST_F(PositionLine, KeyOfALongLineIsItsBeginning) {
    const std::string linha = do_inicio + lances_de_cavalo(300);
    coloca(linha);
    EXPECT_EQ(std::string(inn.data(), inn.size()), linha.substr(0, 1000));
}

TEST_F(PositionLine, DrawScoreFollowsTheMaterial) {
    struct Saldo {
        const char* fen;
        int emp;
    };
    // empp - 10 + 5 ln(M), cut toward zero; M of a queen is 510 / 420, ln 0.194.
    for (const Saldo& x : {Saldo{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", -15},
                           Saldo{"rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", -14},  // -14.03
                           Saldo{"rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1", -15},  // -15.97
                           Saldo{"4k3/8/8/8/8/8/8/QQ2K3 w - - 0 1", -10},                           // 290 / 110: -10.15
                           Saldo{"4k3/8/8/8/8/8/8/QQ2K3 b - - 0 1", -19}}) {                        // -19.85
        coloca(de_fen + x.fen);
        EXPECT_EQ(emp, x.emp) << x.fen;
        EXPECT_EQ(emppp, x.emp) << x.fen;
    }
}

TEST_F(PositionLine, DrawScoreFollowsTheOptions) {
    const std::string fen = de_fen + "4k3/8/8/8/8/8/8/QQ2K3 w - - 0 1";  // ln(290 / 110) = 0.9694
    empp = 10;
    MQ = 10.0F;
    coloca(fen);
    EXPECT_EQ(emp, 9);
    MQ = 0.0F;
    coloca(fen);
    EXPECT_EQ(emp, 0);
    empp = -10;
    coloca(fen);
    EXPECT_EQ(emp, -20);
}

TEST_F(PositionLine, FirstDepthIsNineOrLower) {
    for (const auto& [opcao_, primeira] :
         {std::pair{17, 9}, {15, 9}, {11, 9}, {9, 9}, {7, 7}, {5, 5}, {1, 1}, {0, 0}}) {
        deepp = opcao_;
        coloca(do_inicio + "e2e4 e7e5");
        EXPECT_EQ(deep, primeira);
        EXPECT_EQ(deepp, opcao_);
    }
}

TEST_F(PositionLine, ManyMenAreMoreThanTwentyFive) {
    // 24, 25 and 26 men without the kings.
    coloca(de_fen + "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/1N2K3 w kq - 0 1");
    EXPECT_EQ(npecas[0] + npecas[1], 24);
    EXPECT_EQ(DEEP9, 0);
    coloca(de_fen + "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RN2K3 w Qkq - 0 1");
    EXPECT_EQ(npecas[0] + npecas[1], 25);
    EXPECT_EQ(DEEP9, 0);
    coloca(de_fen + "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RN2K2R w KQkq - 0 1");
    EXPECT_EQ(npecas[0] + npecas[1], 26);
    EXPECT_EQ(DEEP9, 1);
}

TEST_F(PositionLine, WorkingCopiesAreRestored) {
    Positive_filterp = 3;
    Positive_filter = 0;
    Negative_filterp = 1;
    Negative_filter = 0;
    EXTRA_EVALL = 1;
    EXTRA_EVAL = 0;
    SEARCH_EE = 1;
    SEARCH_E = 0;
    coloca(do_inicio + "e2e4 e7e5");
    EXPECT_EQ(Positive_filter, 3);
    EXPECT_EQ(Negative_filter, 1);
    EXPECT_EQ(EXTRA_EVAL, 1);
    EXPECT_EQ(SEARCH_E, 1);
    EXTRA_EVALL = 0;
    coloca(do_inicio + "e2e4 e7e5");
    EXPECT_EQ(EXTRA_EVAL, 0);
}

TEST_F(PositionLine, PreparationStartsClockNodesAndRepetition) {
    tempo = 7;
    nodes = 77;
    pempate = 1;
    coloca(do_inicio + "e2e4 e7e5");
    EXPECT_EQ(tempo, 300000);
    EXPECT_EQ(nodes, 0U);
    EXPECT_EQ(pempate, 0);
}

TEST_F(PositionLine, PreparationClearsTheShallowTablesOfItsColour) {
    for (const Cor c : {brancas, pretas}) {
        const std::string linha = do_inicio + (c == brancas ? "e2e4 e7e5" : "e2e4 e7e5 g1f3");
        for (const int limpa : {1, 0}) {
            HASHf = static_cast<std::uint8_t>(limpa);
            for (int n = 3; n <= 5; ++n) {
                inc[n] = {7, 7};
            }
            coloca(linha);
            EXPECT_EQ(inc[3][c], limpa ? 0 : 7);
            EXPECT_EQ(inc[4][outra(c)], limpa ? 0 : 7);
            EXPECT_EQ(inc[5][c], limpa ? 0 : 7);
            EXPECT_EQ(inc[3][outra(c)] + inc[4][c] + inc[5][outra(c)], 21);
        }
    }
}

TEST_F(PositionLine, PreparationFillsTheTablesOfItsColour) {
    for (const Cor c : {brancas, pretas}) {
        posix_peao_inici = posix_peao_medio = posix_cavalo = posix_bispo = posix_dama = posix_reifinal = {};
        coloca(do_inicio + (c == brancas ? "e2e4 e7e5" : "e2e4 e7e5 g1f3"));
        for (int i = 0; i < 64; ++i) {
            EXPECT_EQ(posix_peao_inici[c][i], plain::posix_pawn(c, 1, i));
            EXPECT_EQ(posix_peao_medio[c][i], plain::posix_pawn(c, 30, i));
            EXPECT_EQ(posix_cavalo[c][i], plain::posix_piece(c, 32, i));
            EXPECT_EQ(posix_bispo[c][i], plain::posix_piece(c, 33, i));
            EXPECT_EQ(posix_torre[c][i], plain::posix_piece(c, 50, i));
            EXPECT_EQ(posix_dama[c][i], plain::posix_piece(c, 90, i));
            EXPECT_EQ(posix_reifinal[c][i], plain::posix_king_final(c, i));
            EXPECT_EQ(centro[i], plain::centro(i));
            EXPECT_EQ(centroo[i], plain::centroo(i));
            EXPECT_EQ(promo[c][i], plain::promo(c, i));
        }
    }
}

TEST_F(PositionLine, ClockStartsAtThePositionLine) {
    inicio = -1;
    coloca(do_inicio + "e2e4 e7e5");
    EXPECT_GE(inicio, 0);
}

}  // namespace
