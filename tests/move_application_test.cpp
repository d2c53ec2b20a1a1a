// Putting a move on a board: in the tree, on trial, at the root, and what the root trial adds for the class of the move.
#include "support/engine.h"
#include "support/moves.h"

#include "base/bounds.h"
#include "board/apply.h"
#include "eval/preparation.h"
#include "eval/root_trial.h"
#include "eval/tables.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace teste;
using namespace ondrel;

class MoveApplication : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

int em(const Tabuleiro& t, std::string_view nome) { return t[casa(nome[0] - 'a', nome[1] - '1')]; }

bool sem_marca(const Bandeiras& m) {
    return m.R_jm == Bandeiras{}.R_jm && m.T_a_jm == Bandeiras{}.T_a_jm && m.T_h_jm == Bandeiras{}.T_h_jm &&
           m.p_ah == Bandeiras{}.p_ah;
}

bool iguais(const Bandeiras& a, const Bandeiras& b) {
    return a.R_jm == b.R_jm && a.T_a_jm == b.T_a_jm && a.T_h_jm == b.T_h_jm && a.p_ah == b.p_ah;
}

// The rule seen with both colours: men and squares are White's, and for Black they are mirrored here.
class DeUmaCor {
public:
    explicit DeUmaCor(Cor c) : c_(c) {}

    [[nodiscard]] Ply no(std::string_view campo) const {
        Ply p;
        p.tabd = c_ == brancas ? tabuleiro(campo) : espelhado(tabuleiro(campo));
        p.joga_com_b_deep = c_ == brancas ? 1 : 0;
        return p;
    }
    [[nodiscard]] Lance lance_de(std::string_view m) const {
        return lance(c_ == brancas ? std::string(m) : espelhado(m));
    }
    void aplica(Ply& p, std::string_view m) const {
        c_ == brancas ? init_tabuleiro_ply<brancas>(p, lance_de(m)) : init_tabuleiro_ply<pretas>(p, lance_de(m));
    }
    void experimenta_em(int n, const Ply& p, std::string_view m) const {
        ply[n] = p;
        c_ == brancas ? init_tabuleiro2_deep<brancas>(n, lance_de(m)) : init_tabuleiro2_deep<pretas>(n, lance_de(m));
    }
    [[nodiscard]] Tabuleiro visto(const Tabuleiro& t) const { return c_ == brancas ? t : espelhado(t); }
    [[nodiscard]] Cor cor() const { return c_; }
    [[nodiscard]] Cor inimiga() const { return outra(c_); }

private:
    Cor c_;
};

const DeUmaCor das_duas[] = {DeUmaCor(brancas), DeUmaCor(pretas)};

// --- The ply form: en passant and double steps ---

TEST_F(MoveApplication, ADoubleStepSetsItsFlagAndClearsEveryOther) {
    for (const DeUmaCor& d : das_duas) {
        Ply p = d.no("4k3/8/8/8/8/8/1P6/4K3");
        p.jm_D.p_ah[d.cor()][6] = 1;
        p.jm_D.p_ah[d.inimiga()][2] = 1;
        d.aplica(p, "b2b4");
        Bandeiras esperadas;
        esperadas.p_ah[d.cor()][1] = 1;
        EXPECT_TRUE(iguais(p.jm_D, esperadas));
        EXPECT_EQ(em(d.visto(p.tabd), "b4"), 10);
        EXPECT_EQ(em(d.visto(p.tabd), "b2"), 0);
    }
}

TEST_F(MoveApplication, BlacksDoubleStepFromB7SetsTheBlackFlagOfTheBFile) {
    Ply p;
    p.tabd = tabuleiro("4k3/1p6/8/8/8/8/8/4K3");
    init_tabuleiro_ply<pretas>(p, lance("b7b5"));
    EXPECT_EQ(p.jm_D.p_ah[pretas][1], 1);
    EXPECT_EQ(p.jm_D.p_ah[brancas], Bandeiras{}.p_ah[brancas]);
}

TEST_F(MoveApplication, TheRightToEnPassantLastsOnePly) {
    for (const DeUmaCor& d : das_duas) {
        Ply p = d.no("4k3/8/8/8/8/8/1P6/4K3");
        p.jm_D.p_ah[d.inimiga()][3] = 1;
        d.aplica(p, "e1e2");
        EXPECT_EQ(p.jm_D.p_ah, Bandeiras{}.p_ah);
    }
}

TEST_F(MoveApplication, OnlyAPawnsStepOfTwoRanksFromItsOwnRankSetsAFlag) {
    for (const DeUmaCor& d : das_duas) {
        for (const auto& [campo, m] : {std::pair{"4k3/8/8/8/8/8/R7/4K3", "a2a4"},
                                       {"4k3/8/8/8/8/8/P7/4K3", "a2a3"},
                                       {"4k3/8/8/8/8/P7/8/4K3", "a3a4"},
                                       {"4k3/8/8/8/8/8/Q7/4K3", "a2a4"}}) {
            Ply p = d.no(campo);
            d.aplica(p, m);
            EXPECT_EQ(p.jm_D.p_ah, Bandeiras{}.p_ah) << campo << ' ' << m;
        }
    }
}

TEST_F(MoveApplication, EnPassantClearsTheVictimsSquareAndLandsBehindIt) {
    for (const DeUmaCor& d : das_duas) {
        for (const int f : {2, 4}) {
            Ply p = d.no("4k3/8/8/2pPp3/8/8/8/4K3");
            p.jm_D.p_ah[d.inimiga()][f] = 1;
            d.aplica(p, f == 2 ? "d5c6" : "d5e6");
            const Tabuleiro t = d.visto(p.tabd);
            EXPECT_EQ(em(t, f == 2 ? "c6" : "e6"), 10);
            EXPECT_EQ(em(t, f == 2 ? "c5" : "e5"), 0);
            EXPECT_EQ(em(t, f == 2 ? "e5" : "c5"), -10);
            EXPECT_EQ(em(t, "d5"), 0);
            EXPECT_EQ(p.pp_D, 0);
            EXPECT_EQ(p.jm_D.p_ah, Bandeiras{}.p_ah);
        }
    }
}

TEST_F(MoveApplication, WithoutTheFlagOfItsFileTheNeighbourStays) {
    for (const DeUmaCor& d : das_duas) {
        Ply p = d.no("4k3/8/8/2pPp3/8/8/8/4K3");
        p.jm_D.p_ah[d.inimiga()][2] = 1;  // of the other neighbour
        p.jm_D.p_ah[d.cor()][4] = 1;      // of the other colour
        d.aplica(p, "d5e6");
        const Tabuleiro t = d.visto(p.tabd);
        EXPECT_EQ(em(t, "e6"), 10);
        EXPECT_EQ(em(t, "e5"), -10);
    }
}

TEST_F(MoveApplication, AnyOtherPawnMoveToTheFlaggedFileLeavesTheNeighbour) {
    for (const DeUmaCor& d : das_duas) {
        for (const auto& [campo, m, depois] : {std::tuple{"4k3/8/8/4p3/8/8/4P3/4K3", "e2e3", "4k3/8/8/4p3/8/4P3/8/4K3"},
                                               {"4k3/8/8/4p3/8/8/4P3/4K3", "e2e4", "4k3/8/8/4p3/4P3/8/8/4K3"},
                                               {"4k3/4n3/3P4/4p3/8/8/8/4K3", "d6e7", "4k3/4P3/8/4p3/8/8/8/4K3"}}) {
            Ply p = d.no(campo);
            p.jm_D.p_ah[d.inimiga()][4] = 1;
            d.experimenta_em(5, p, m);
            d.aplica(p, m);
            EXPECT_EQ(d.visto(p.tabd), tabuleiro(depois)) << m;
            EXPECT_EQ(d.visto(tab2), d.visto(p.tabd)) << m;
        }
    }
}

TEST_F(MoveApplication, OnlyPawnsCaptureEnPassant) {
    for (const DeUmaCor& d : das_duas) {
        Ply p = d.no("4k3/8/8/3Bp3/8/8/8/4K3");
        p.jm_D.p_ah[d.inimiga()][4] = 1;
        d.aplica(p, "d5e6");
        EXPECT_EQ(em(d.visto(p.tabd), "e5"), -10);
    }
}

// --- The ply form: transfer and promotion ---

TEST_F(MoveApplication, ACaptureOverwritesTheVictim) {
    for (const DeUmaCor& d : das_duas) {
        Ply p = d.no("4k3/8/8/n7/8/8/8/R3K3");
        d.aplica(p, "a1a5");
        EXPECT_EQ(em(d.visto(p.tabd), "a5"), 50);
        EXPECT_EQ(em(d.visto(p.tabd), "a1"), 0);
    }
}

TEST_F(MoveApplication, APawnOnItsLastRankBecomesAQueenByPushAndByCapture) {
    for (const DeUmaCor& d : das_duas) {
        for (const auto& [m, para] : {std::pair{"b7b8", "b8"}, {"b7a8", "a8"}, {"b7c8", "c8"}}) {
            Ply p = d.no("r1n1k3/1P6/8/8/8/8/8/4K3");
            d.aplica(p, m);
            EXPECT_EQ(em(d.visto(p.tabd), para), 90) << m;
            EXPECT_EQ(em(d.visto(p.tabd), "b7"), 0) << m;
        }
    }
}

TEST_F(MoveApplication, NoOtherManPromotes) {
    for (const DeUmaCor& d : das_duas) {
        Ply p = d.no("4k3/1N6/8/8/8/8/8/4K3");
        d.aplica(p, "b7d8");
        EXPECT_EQ(em(d.visto(p.tabd), "d8"), 32);
    }
}

TEST_F(MoveApplication, ThePlyIsReadyForItsReplies) {
    for (const DeUmaCor& d : das_duas) {
        Ply p = d.no("4k3/8/8/8/8/8/8/4K3");
        p.X_D = 0;
        d.aplica(p, "e1e2");
        EXPECT_EQ(p.X_D, 1);
        EXPECT_EQ(p.pp_D, 0);
    }
}

// --- The ply form: king and rooks ---

TEST_F(MoveApplication, AKingsMoveIsNoted) {
    for (const DeUmaCor& d : das_duas) {
        Ply p = d.no("r3k2r/8/8/8/8/8/8/R3K2R");
        d.aplica(p, "e1e2");
        EXPECT_EQ(p.jm_D.R_jm[d.cor()], 1);
        EXPECT_EQ(p.jm_D.R_jm[d.inimiga()], 0);
        EXPECT_EQ(p.jm_D.T_a_jm[d.cor()] + p.jm_D.T_h_jm[d.cor()], 0);
    }
}

TEST_F(MoveApplication, CastlingTakesTheRookAlong) {
    for (const DeUmaCor& d : das_duas) {
        Ply curto = d.no("r3k2r/8/8/8/8/8/8/R3K2R");
        d.aplica(curto, "e1g1");
        EXPECT_EQ(d.visto(curto.tabd), tabuleiro("r3k2r/8/8/8/8/8/8/R4RK1"));
        Ply longo = d.no("r3k2r/8/8/8/8/8/8/R3K2R");
        d.aplica(longo, "e1c1");
        EXPECT_EQ(d.visto(longo.tabd), tabuleiro("r3k2r/8/8/8/8/8/8/2KR3R"));
        EXPECT_EQ(longo.jm_D.R_jm[d.cor()], 1);
        EXPECT_EQ(longo.jm_D.T_a_jm[d.cor()], 0) << "the rook's own flag tells of its own moves";
    }
}

// Only files are looked at: no generator makes such moves, so that nothing needs to be asked.
TEST_F(MoveApplication, TheRookJumpsWhateverStandsOnTheCorner) {
    for (const DeUmaCor& d : das_duas) {
        for (const char* campo : {"4k3/8/8/8/8/8/8/4K3", "4k3/8/8/8/8/8/8/N3K3", "4k3/8/8/8/8/8/8/q3K3"}) {
            Ply p = d.no(campo);
            p.jm_D.R_jm[d.cor()] = 1;
            d.aplica(p, "e1c1");
            EXPECT_EQ(d.visto(p.tabd), tabuleiro("4k3/8/8/8/8/8/8/2KR4")) << campo;
        }
        Ply p = d.no("4k3/8/8/8/8/8/8/4K3");
        d.aplica(p, "e1g2");  // nor is the to-rank asked
        EXPECT_EQ(d.visto(p.tabd), tabuleiro("4k3/8/8/8/8/8/6K1/5R2"));
    }
}

TEST_F(MoveApplication, AKingFromAnotherSquareTakesNoRookAlong) {
    for (const DeUmaCor& d : das_duas) {
        for (const auto& [campo, m, depois] : {std::tuple{"4k3/8/8/8/8/8/8/R4K1R", "f1g1", "4k3/8/8/8/8/8/8/R5KR"},
                                               {"4k3/8/8/8/8/8/4K3/R6R", "e2g2", "4k3/8/8/8/8/8/6K1/R6R"},
                                               {"4k3/8/8/8/8/8/8/R2K3R", "d1c1", "4k3/8/8/8/8/8/8/R1K4R"}}) {
            Ply p = d.no(campo);
            d.aplica(p, m);
            EXPECT_EQ(d.visto(p.tabd), tabuleiro(depois)) << m;
        }
    }
}

TEST_F(MoveApplication, OtherMenOnTheKingsSquareTakeNoRookAlong) {
    for (const DeUmaCor& d : das_duas) {
        Ply p = d.no("4k3/8/8/8/8/4K3/8/R3Q2R");
        d.aplica(p, "e1g1");
        EXPECT_EQ(d.visto(p.tabd), tabuleiro("4k3/8/8/8/8/4K3/8/R5QR"));
    }
}

TEST_F(MoveApplication, ARookIsNotedByTheFileItLeavesOnAnyRank) {
    for (const DeUmaCor& d : das_duas) {
        for (const auto& [campo, m, a, h] : {std::tuple{"4k3/8/8/8/8/8/8/R3K3", "a1a2", 1, 0},
                                             {"4k3/8/8/R7/8/8/8/4K3", "a5b5", 1, 0},
                                             {"4k3/8/8/8/8/8/8/4K2R", "h1h3", 0, 1},
                                             {"4k3/7R/8/8/8/8/8/4K3", "h7g7", 0, 1},
                                             {"4k3/8/8/8/8/8/8/1R2K3", "b1a1", 0, 0},
                                             {"4k3/8/8/8/8/8/8/Q3K3", "a1a2", 0, 0}}) {
            Ply p = d.no(campo);
            d.aplica(p, m);
            EXPECT_EQ(p.jm_D.T_a_jm[d.cor()], a) << m;
            EXPECT_EQ(p.jm_D.T_h_jm[d.cor()], h) << m;
            EXPECT_EQ(p.jm_D.T_a_jm[d.inimiga()] + p.jm_D.T_h_jm[d.inimiga()] + p.jm_D.R_jm[d.cor()], 0) << m;
        }
    }
}

TEST_F(MoveApplication, TakingARookNotesNothingForItsOwner) {
    for (const DeUmaCor& d : das_duas) {
        Ply p = d.no("r3k2r/8/8/3B4/8/8/8/4K3");
        d.aplica(p, "d5a8");
        EXPECT_TRUE(sem_marca(p.jm_D));
    }
}

// --- The trial ---

TEST_F(MoveApplication, ATrialLeavesThePlyAsItIs) {
    for (const DeUmaCor& d : das_duas) {
        for (const auto& [campo, m] : {std::pair{"r3k2r/8/8/8/8/8/8/R3K2R", "e1g1"},
                                       {"4k3/8/8/8/8/8/1P6/4K3", "b2b4"},
                                       {"4k3/8/8/3Pp3/8/8/8/4K3", "d5e6"},
                                       {"4k3/1P6/8/8/8/8/8/4K3", "b7b8"},
                                       {"4k3/8/8/8/8/8/8/R3K3", "a1a5"}}) {
            Ply p = d.no(campo);
            p.jm_D.p_ah[d.inimiga()][4] = 1;
            p.X_D = 0;
            p.pp_D = 0;
            d.experimenta_em(5, p, m);
            EXPECT_EQ(ply[5].tabd, p.tabd) << m;
            EXPECT_TRUE(iguais(ply[5].jm_D, p.jm_D)) << m;
            EXPECT_EQ(ply[5].X_D, 0) << m;
            EXPECT_EQ(ply[5].pp_D, 0) << m;
        }
    }
}

TEST_F(MoveApplication, ATrialShowsThePositionAfterTheMove) {
    for (const DeUmaCor& d : das_duas) {
        for (const auto& [campo, m, depois] : {std::tuple{"r3k2r/8/8/8/8/8/8/R3K2R", "e1g1", "r3k2r/8/8/8/8/8/8/R4RK1"},
                                               {"r3k2r/8/8/8/8/8/8/R3K2R", "e1c1", "r3k2r/8/8/8/8/8/8/2KR3R"},
                                               {"4k3/8/8/3Pp3/8/8/8/4K3", "d5e6", "4k3/8/4P3/8/8/8/8/4K3"},
                                               {"4k3/1P6/8/8/8/8/8/4K3", "b7b8", "1Q2k3/8/8/8/8/8/8/4K3"},
                                               {"r3k3/1P6/8/8/8/8/8/4K3", "b7a8", "Q3k3/8/8/8/8/8/8/4K3"},
                                               {"4k3/8/8/n7/8/8/8/R3K3", "a1a5", "4k3/8/8/R7/8/8/8/4K3"}}) {
            Ply p = d.no(campo);
            p.jm_D.p_ah[d.inimiga()][4] = 1;
            d.experimenta_em(5, p, m);
            EXPECT_EQ(d.visto(tab2), tabuleiro(depois)) << m;
        }
    }
}

// --- The root ---

std::string linha_do_fen(std::string_view fen, std::string_view lances) {
    return "position fen " + std::string(fen) + " moves " + std::string(lances);
}

TEST_F(MoveApplication, TheLineTellsThePromotionOfTheGame) {
    const std::string fen = "4k3/P7/8/8/8/8/8/4K3 w - - 0 1";
    for (const auto& [m, codigo_] :
         {std::pair{"a7a8q", 90}, {"a7a8r", 50}, {"a7a8n", 32}, {"a7a8b", 33}, {"a7a8", 10}}) {
        coloca(linha_do_fen(fen, m));
        EXPECT_EQ(em(tab, "a8"), codigo_) << m;
        EXPECT_EQ(em(tab, "a7"), 0) << m;
        EXPECT_EQ(PRe, '0') << m;
    }
    coloca(linha_do_fen(fen_espelhado(fen), "a2a1n"));
    EXPECT_EQ(em(tab, "a1"), -32);
}

TEST_F(MoveApplication, TheSearchsOwnPromotionBecomesAQueen) {
    struct Linha {
        char s, e;
        int vira;
        char PR_depois;
    };
    for (const Linha& l : {Linha{'q', '0', 90, 'q'},
                           {'q', 'r', 10, '0'},
                           {'q', 'q', 10, '0'},
                           {'0', 'q', 90, '0'},
                           {'0', 'r', 50, '0'},
                           {'0', 'n', 32, '0'},
                           {'0', 'b', 33, '0'},
                           {'0', '0', 10, '0'},
                           {'x', 'q', 10, '0'},
                           {'x', 'r', 10, '0'},
                           {'x', 'n', 10, '0'},
                           {'x', 'b', 10, '0'}}) {
        for (const bool espelho : {false, true}) {
            processo_novo();
            tab = tabuleiro("4k3/P7/8/8/8/8/8/4K3");
            if (espelho) {
                tab = espelhado(tab);
            }
            abcd = lance(espelho ? "a2a1" : "a7a8");
            PRs = l.s;
            PRe = l.e;
            PR = '0';
            init_tabuleiro();
            EXPECT_EQ(em(tab, espelho ? "a1" : "a8"), espelho ? -l.vira : l.vira) << l.s << l.e;
            EXPECT_EQ(PR, l.PR_depois) << l.s << l.e;
            EXPECT_EQ(PRe, '0') << l.s << l.e;
        }
    }
}

TEST_F(MoveApplication, WithinTheSearchEveryPromotionIsToTheQueen) {
    tab = tabuleiro("4k3/P7/8/8/8/8/8/4K3");
    abcd = lance("a7a8");
    joga_com_b = 1;
    deeppromo = 1;
    PRe = 'r';
    init_tabuleiro();
    EXPECT_EQ(em(tab, "a8"), 90);
    EXPECT_EQ(PRe, 'r') << "the letter stays for the game's own move";
}

TEST_F(MoveApplication, TheRootReadsTheColourFromTheMan) {
    tab = tabuleiro("r3k3/8/8/8/8/8/8/R3K2R");
    jm = {};
    joga_com_b = 0;  // Black's turn, and yet the rook's
    abcd = lance("e1g1");
    init_tabuleiro();
    EXPECT_EQ(tab, tabuleiro("r3k3/8/8/8/8/8/8/R4RK1"));
}

TEST_F(MoveApplication, WithinTheSearchTheOtherColoursRulesAreSkipped) {
    for (const int brancas_jogam : {0, 1}) {
        processo_novo();
        const Tabuleiro antes = tabuleiro("4k3/8/8/8/8/8/8/R3K2R");
        tab = antes;
        jm = {};
        joga_com_b = static_cast<std::uint8_t>(brancas_jogam);
        deeppromo = 1;
        abcd = lance("e1g1");
        init_tabuleiro();
        EXPECT_EQ(tab, tabuleiro(brancas_jogam ? "4k3/8/8/8/8/8/8/R4RK1" : "4k3/8/8/8/8/8/8/R5KR"));
        EXPECT_EQ(jm.R_jm[brancas], brancas_jogam);
    }
}

TEST_F(MoveApplication, TheRootIsLeftReadyForTheSearch) {
    tab = tabuleiro("4k3/8/8/3Pp3/8/8/8/4K3");
    jm = {};
    jm.p_ah[pretas][4] = 1;
    abcd = lance("d5e6");
    X = 0;
    init_tabuleiro();
    EXPECT_EQ(tab, tabuleiro("4k3/8/4P3/8/8/8/8/4K3"));
    EXPECT_EQ(pp, 0);
    EXPECT_EQ(X, 1);
    EXPECT_EQ(jm.p_ah, Bandeiras{}.p_ah);
}

TEST_F(MoveApplication, AnIllegalMoveOfTheGameIsCarriedOut) {
    coloca("position startpos moves e2e4 e4e5 a1a8");
    EXPECT_EQ(em(tab, "a8"), 50);
    EXPECT_EQ(em(tab, "e5"), 10);
    EXPECT_EQ(jm.T_a_jm[brancas], 1);
}

TEST_F(MoveApplication, AGameNotesKingsRooksAndDoubleSteps) {
    coloca("position startpos moves e2e4 e7e5 e1e2 a7a5 h2h4 a8a6 h1h3 d7d5");
    EXPECT_EQ(jm.R_jm, (std::array<std::uint8_t, 2>{1, 0}));
    EXPECT_EQ(jm.T_h_jm, (std::array<std::uint8_t, 2>{1, 0}));
    EXPECT_EQ(jm.T_a_jm, (std::array<std::uint8_t, 2>{0, 1}));
    Bandeiras so_d;
    so_d.p_ah[pretas][3] = 1;
    EXPECT_EQ(jm.p_ah, so_d.p_ah);
}

// --- Chess960 at the root ---

void joga_960(std::string_view campo, std::string_view m, bool espelho) {
    processo_novo();
    CHESS_960 = 1;
    tab = espelho ? espelhado(tabuleiro(campo)) : tabuleiro(campo);
    jm = {};
    abcd = lance(espelho ? espelhado(m) : std::string(m));
    init_tabuleiro();
}

TEST_F(MoveApplication, In960AKingThatTakesItsOwnRookCastles) {
    for (const bool espelho : {false, true}) {
        for (const auto& [campo, m, depois] : {std::tuple{"4k3/8/8/8/8/8/8/R4K1R", "f1h1", "4k3/8/8/8/8/8/8/R4RK1"},
                                               {"4k3/8/8/8/8/8/8/R4K1R", "f1a1", "4k3/8/8/8/8/8/8/2KR3R"},
                                               {"4k3/8/8/8/8/8/8/1R4KR", "g1h1", "4k3/8/8/8/8/8/8/1R3RK1"},
                                               {"4k3/8/8/8/8/8/8/1R4KR", "g1b1", "4k3/8/8/8/8/8/8/2KR3R"},
                                               {"4k3/8/8/8/8/8/8/1KR5", "b1c1", "4k3/8/8/8/8/8/8/5RK1"},
                                               {"4k3/8/8/8/8/8/8/2RK4", "d1c1", "4k3/8/8/8/8/8/8/2KR4"},
                                               {"4k3/8/8/8/8/8/8/R3K2R", "e1h1", "4k3/8/8/8/8/8/8/R4RK1"}}) {
            joga_960(campo, m, espelho);
            EXPECT_EQ(espelho ? espelhado(tab) : tab, tabuleiro(depois)) << m;
            EXPECT_EQ(jm.R_jm[espelho ? pretas : brancas], 1) << m;
            EXPECT_EQ(pp, 0) << m;
        }
    }
}

TEST_F(MoveApplication, In960AKingsStepOfTwoFilesTakesNoRookAlong) {
    for (const bool espelho : {false, true}) {
        joga_960("4k3/8/8/8/8/8/8/R3K2R", "e1g1", espelho);
        EXPECT_EQ(espelho ? espelhado(tab) : tab, tabuleiro("4k3/8/8/8/8/8/8/R5KR"));
    }
}

TEST_F(MoveApplication, In960ARooksMoveIsNotedByItsFile) {
    joga_960("4k3/8/8/8/8/8/8/R3K2R", "h1h4", false);
    EXPECT_EQ(jm.T_h_jm[brancas], 1);
    EXPECT_EQ(jm.T_a_jm[brancas], 0);
}

TEST_F(MoveApplication, Without960AKingOntoItsRookIsATransfer) {
    tab = tabuleiro("4k3/8/8/8/8/8/8/R4K1R");
    abcd = lance("f1h1");
    init_tabuleiro();
    EXPECT_EQ(tab, tabuleiro("4k3/8/8/8/8/8/8/R6K"));
}

// --- The root trial: gate, board ---

TEST_F(MoveApplication, TheGateKeepsTheBestMoveToItsOwnPass) {
    coloca_fen("4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    aab_ddb = lance("a1a2");
    for (const auto& [scan1, scant, m, passa] : {std::tuple{0, 0, "a1a2", 1},
                                                 {0, 0, "a1a3", 1},
                                                 {1, 0, "a1a2", 1},
                                                 {1, 0, "a1a3", 0},
                                                 {0, 1, "a1a2", 0},
                                                 {0, 1, "a1a3", 1}}) {
        SCAN1 = static_cast<std::uint8_t>(scan1);
        SCANT = static_cast<std::uint8_t>(scant);
        TEST1IID = passa ? 0 : 1;
        init_tabuleiro2(lance(m));
        EXPECT_EQ(TEST1IID, passa) << scan1 << scant << m;
    }
}

TEST_F(MoveApplication, AnEmptySlotExcludesNoRootMove) {
    coloca_fen("4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    SCANT = 1;
    SCAN1 = 0;
    ASSERT_EQ(aab_ddb.a, -1);
    init_tabuleiro2(lance("a1a2"));
    EXPECT_EQ(TEST1IID, 1);
}

TEST_F(MoveApplication, ARootTrialShowsTheMoveAndLeavesTheRoot) {
    for (const auto& [fen, m, depois] :
         {std::tuple{"4k3/8/8/3Pp3/8/8/8/4K3 w - e6 0 1", "d5e6", "4k3/8/4P3/8/8/8/8/4K3"},
          {"r3k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b7a8", "Q3k3/8/8/8/8/8/8/4K3"},
          {"4k3/8/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", "R3k3/8/8/8/8/8/8/4K3"},
          {"4k3/8/8/8/8/8/P7/4K3 w - - 0 1", "a2a4", "4k3/8/8/8/P7/8/8/4K3"}}) {
        for (const bool espelho : {false, true}) {
            coloca_fen(espelho ? fen_espelhado(fen) : fen);
            init_tabuleiro2(lance(espelho ? espelhado(m) : std::string(m)));
            EXPECT_EQ(espelho ? espelhado(tab2) : tab2, tabuleiro(depois)) << m;
        }
        coloca_fen(fen);
        const Tabuleiro antes = tab;
        const Bandeiras bandeiras = jm;
        init_tabuleiro2(lance(m));
        EXPECT_EQ(tab, antes) << m;
        EXPECT_TRUE(iguais(jm, bandeiras)) << m;
    }
}

// --- The root trial: worth of the destination ---

// Tables that tell every square and every kind apart.
void preenche_tabelas_de_teste() {
    for (int i = 0; i < 64; ++i) {
        for (const Cor c : {brancas, pretas}) {
            posix_peao_inici[c][i] = 1000 + i;
            posix_peao_medio[c][i] = 2000 + i;
            posix_cavalo[c][i] = 3000 + i;
            posix_bispo[c][i] = 4000 + i;
            posix_torre[c][i] = 5000 + i;
            posix_dama[c][i] = 6000 + i;
            posix_reifinal[c][i] = 7000 + i;
            Xr[c][i] = (c == brancas ? 10000 : 20000) + 100 * i;
            XP[c][i] = (c == brancas ? 100003 : 200003) + 1000 * i;
        }
    }
}

TEST_F(MoveApplication, TheDestinationOfAPieceIsWorthItsTableAndItsNearnessToTheEnemyKing) {
    const std::string fen = "4k3/8/8/8/8/8/8/RNBQK3 w - - 0 1";
    for (const auto& [m, base] : {std::pair{"a1a5", 5000}, {"b1c3", 3000}, {"c1f4", 4000}, {"d1d7", 6000}}) {
        for (const Cor c : {brancas, pretas}) {
            coloca_fen(c == brancas ? fen : fen_espelhado(fen));
            preenche_tabelas_de_teste();
            const Lance l = lance(c == brancas ? std::string(m) : espelhado(m));
            const int i = l.destino();
            init_tabuleiro2(l);
            EXPECT_EQ(MATRIZ, base + i + (c == brancas ? 20000 : 10000) + 100 * i) << m;
            EXPECT_EQ(incentiva_promo, 0) << m;
        }
    }
}

TEST_F(MoveApplication, ThePhaseOfTheGameChoosesThePawnTable) {
    const std::string fen = "4k3/8/8/8/8/8/P7/4K3 w - - 0 1";
    for (const Cor c : {brancas, pretas}) {
        coloca_fen(c == brancas ? fen : fen_espelhado(fen));
        preenche_tabelas_de_teste();
        const Lance l = lance(c == brancas ? "a2a3" : "a7a6");
        const int i = l.destino();
        for (const auto& [meio_lance, valor_, incentivo] : {std::tuple{1, 1000 + i, 0},
                                                            {29, 1000 + i, 0},
                                                            {30, 2000 + i, 0},
                                                            {69, 2000 + i, 0},
                                                            {70, posix_peao_final[c][i], 1},
                                                            {200, posix_peao_final[c][i], 1}}) {
            nb = meio_lance;
            init_tabuleiro2(l);
            EXPECT_EQ(MATRIZ, valor_) << meio_lance;
            EXPECT_EQ(incentiva_promo, incentivo) << meio_lance;
        }
    }
}

TEST_F(MoveApplication, OnlyPawnMovesAreUrgedOnLate) {
    coloca_fen("4k3/8/8/8/8/8/P7/R3K3 w - - 0 1");
    nb = 90;
    init_tabuleiro2(lance("a2a3"));
    ASSERT_EQ(incentiva_promo, 1);
    init_tabuleiro2(lance("a1b1"));
    EXPECT_EQ(incentiva_promo, 0);
}

struct DoRei {
    int m, n, w;  // the enemy's material and men, the mover's material
    enum { nada, caca, fuga, peoes_do_inimigo, quinto } vale;
};

// The king's destination by the ending: m and n are the enemy's, w the mover's.
TEST_F(MoveApplication, TheKingsDestinationGoesByTheEnding) {
    std::vector<DoRei> casos{
        {110, 0, 200, DoRei::caca},
        {111, 0, 200, DoRei::nada},
        {200, 2, 110, DoRei::fuga},
        {110, 0, 110, DoRei::fuga},  // the later case stands
        {120, 1, 200, DoRei::peoes_do_inimigo},
        {130, 2, 200, DoRei::peoes_do_inimigo},
        {150, 4, 200, DoRei::peoes_do_inimigo},
        {140, 3, 200, DoRei::peoes_do_inimigo},
        {140, 1, 200, DoRei::nada},
        {160, 5, 200, DoRei::nada},
        {142, 1, 200, DoRei::quinto},
        {143, 1, 200, DoRei::quinto},
        {160, 1, 200, DoRei::quinto},
        {174, 2, 200, DoRei::quinto},
        {175, 2, 200, DoRei::quinto},
        {176, 2, 200, DoRei::quinto},
        {142, 2, 200, DoRei::nada},
        {143, 2, 200, DoRei::nada},
        {160, 2, 200, DoRei::nada},
        {174, 1, 200, DoRei::nada},
        {175, 3, 200, DoRei::nada},
        {176, 1, 200, DoRei::nada},
        {142, 1, 110, DoRei::fuga},
        {174, 2, 110, DoRei::fuga},  // a bare king does not hunt
        {120, 1, 110, DoRei::peoes_do_inimigo},
        {400, 9, 400, DoRei::nada},
    };
    for (const int m : {153, 163, 186, 152, 162, 184, 185}) {
        casos.push_back({m, 7, 200, DoRei::peoes_do_inimigo});
    }
    for (const auto& [m, n] : {std::pair{173, 4},
                               {183, 5},
                               {196, 4},
                               {206, 5},
                               {216, 6},
                               {172, 4},
                               {182, 5},
                               {194, 4},
                               {204, 5},
                               {214, 6},
                               {195, 4},
                               {205, 5},
                               {215, 6},
                               {170, 2},
                               {180, 3}}) {
        casos.push_back({m, n, 200, DoRei::peoes_do_inimigo});
        casos.push_back({m, n + 1, 200, DoRei::nada});
    }
    for (const Cor c : {brancas, pretas}) {
        coloca_fen(c == brancas ? "4k3/8/8/8/8/8/8/4K3 w - - 0 1" : "4k3/8/8/8/8/8/8/4K3 b - - 0 1");
        preenche_tabelas_de_teste();
        const Lance l = lance(c == brancas ? "e1f2" : "e8f7");
        const int i = l.destino();
        const Cor o = outra(c);
        for (const DoRei& x : casos) {
            material_a[o] = static_cast<float>(x.m);
            material_a[c] = static_cast<float>(x.w);
            npecas[o] = x.n;
            MATRIZ = -1;
            init_tabuleiro2(l);
            const int esperado = x.vale == DoRei::caca               ? Xr[o][i] + XP[c][i]
                                 : x.vale == DoRei::fuga             ? posix_reifinal[c][i] + XP[o][i]
                                 : x.vale == DoRei::peoes_do_inimigo ? XP[o][i]
                                 : x.vale == DoRei::quinto           ? XP[c][i] / 5
                                                                     : 0;
            EXPECT_EQ(MATRIZ, esperado) << x.m << ' ' << x.n << ' ' << x.w;
        }
    }
}

TEST_F(MoveApplication, AFifthIsCutTowardsZero) {
    coloca_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    material_a = {200.0F, 142.0F};
    npecas[pretas] = 1;
    XP[brancas].fill(-9);
    init_tabuleiro2(lance("e1f2"));
    EXPECT_EQ(MATRIZ, -1);
}

// --- The root trial: attack maps ---

int soma(const TabelaInteira& t) {
    int s = 0;
    for (const int x : t) {
        s += x;
    }
    return s;
}

int no_mapa(const TabelaInteira& t, std::string_view nome) { return t[casa(nome[0] - 'a', nome[1] - '1')]; }

TEST_F(MoveApplication, AttackMapsAreThoseOfThePositionAfterTheMove) {
    coloca_fen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    init_tabuleiro2(lance("a1a4"));
    EXPECT_EQ(soma(ataca[brancas].torre), 14);
    EXPECT_EQ(no_mapa(ataca[brancas].torre, "h4"), 1);
    EXPECT_EQ(no_mapa(ataca[brancas].torre, "b1"), 0);
    init_tabuleiro2(lance("a1a2"));  // nothing of the trial before it is left
    EXPECT_EQ(soma(ataca[brancas].torre), 14);
    EXPECT_EQ(no_mapa(ataca[brancas].torre, "h4"), 0);
}

TEST_F(MoveApplication, ARayEndsOnTheFirstManWhichCountsWhoeverItIs) {
    // The rook on d4 sees the own pawn on d6 and the enemy's on f4, and nothing behind them.
    coloca_fen("4k3/8/3P4/8/3R1p1p/8/8/4K3 w - - 0 1");
    init_tabuleiro2(lance("e1e2"));
    const TabelaInteira& mapa = ataca[brancas].torre;
    for (const char* vista : {"d5", "d6", "e4", "f4", "c4", "b4", "a4", "d3", "d2", "d1"}) {
        EXPECT_EQ(no_mapa(mapa, vista), 1) << vista;
    }
    EXPECT_EQ(soma(mapa), 10);
}

TEST_F(MoveApplication, AQueenCountsInHerOwnMapAndInTheTotal) {
    coloca_fen("4k3/8/8/8/3Q4/8/8/4K3 w - - 0 1");
    init_tabuleiro2(lance("e1e2"));
    EXPECT_EQ(soma(ataca[brancas].dama), 27);
    EXPECT_EQ(soma(ataca[brancas].torre), 0);
    EXPECT_EQ(soma(ataca[brancas].bispo), 0);
    EXPECT_EQ(no_mapa(ataca[brancas].N_A, "d8"), 1);
}

TEST_F(MoveApplication, PawnsAttackForwardAndNothingLeavesTheBoard) {
    coloca_fen("4k3/p6p/8/8/3p4/8/P6P/4K3 w - - 0 1");
    init_tabuleiro2(lance("e1e2"));
    EXPECT_EQ(soma(ataca[brancas].peao), 2);
    EXPECT_EQ(no_mapa(ataca[brancas].peao, "b3"), 1);
    EXPECT_EQ(no_mapa(ataca[brancas].peao, "g3"), 1);
    EXPECT_EQ(soma(ataca[pretas].peao), 4);
    for (const char* vista : {"b6", "g6", "c3", "e3"}) {
        EXPECT_EQ(no_mapa(ataca[pretas].peao, vista), 1) << vista;
    }
}

TEST_F(MoveApplication, EveryAttackerAddsOneToItsKindAndToItsColoursTotal) {
    // On d5: a pawn, two knights, a bishop, a rook, the queen and the king.
    coloca_fen("7k/1B6/3K4/8/2P1QN2/2N5/8/3R4 w - - 0 1");
    init_tabuleiro2(lance("h1h1"));  // an empty square is moved: the board stays
    EXPECT_EQ(no_mapa(ataca[brancas].peao, "d5"), 1);
    EXPECT_EQ(no_mapa(ataca[brancas].cavalo, "d5"), 2);
    EXPECT_EQ(no_mapa(ataca[brancas].bispo, "d5"), 1);
    EXPECT_EQ(no_mapa(ataca[brancas].torre, "d5"), 1);
    EXPECT_EQ(no_mapa(ataca[brancas].dama, "d5"), 1);
    EXPECT_EQ(no_mapa(ataca[brancas].rei, "d5"), 1);
    EXPECT_EQ(no_mapa(ataca[brancas].N_A, "d5"), 7);
    EXPECT_EQ(no_mapa(ataca[pretas].N_A, "d5"), 0);
    EXPECT_EQ(no_mapa(ataca[pretas].rei, "g7"), 1);
}

}  // namespace
