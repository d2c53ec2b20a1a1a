// The board and the stack of plies: what a move leaves on them, and what it must leave alone.
#include "support/engine.h"
#include "support/moves.h"

#include "base/bounds.h"
#include "board/apply.h"
#include "board/attacks.h"
#include "board/castling.h"
#include "search/schedule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

namespace {

using namespace teste;
using namespace ondrel;

const std::string inicio_fen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

class Board : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

int em(const Tabuleiro& t, std::string_view nome) { return t[casa(nome[0] - 'a', nome[1] - '1')]; }

// The board as a FEN shows it.
std::string campo(const Tabuleiro& t) {
    plain::Position p;
    p.squares.fill(plain::empty_square);
    const std::map<int, char> letras{{peao, 'P'}, {cavalo, 'N'}, {bispo, 'B'}, {torre, 'R'}, {dama, 'Q'}, {rei, 'K'}};
    for (int i = 0; i < 64; ++i) {
        if (t[i] != vazia) {
            const char letra = letras.at(valor_da_peca(t[i]));
            p.put(i / 8, i % 8, static_cast<char>(t[i] > 0 ? letra : letra - 'A' + 'a'));
        }
    }
    const std::string fen = plain::to_fen(p);
    return fen.substr(0, fen.find(' '));
}

std::string campo_depois(std::string_view fen, std::string_view lance_) {
    const plain::Position p = posicao(fen);
    const auto m = plain::from_uci(std::string(lance_));
    const std::string depois = plain::to_fen(plain::play(p, *m));
    return depois.substr(0, depois.find(' '));
}

// Searches the move as the child of ply n-1, entering none of its own children.
void entra(int n, std::string_view fen, std::string_view m) {
    monta_ply(n - 1, fen);
    const Filhos nenhum(n);
    busca_no(n, lance(m));
}

// --- Squares and codes ---

TEST_F(Board, SquaresRunByFileAndThenByRank) {
    EXPECT_EQ(casa(0, 0), 0);
    EXPECT_EQ(casa(0, 1), 1);
    EXPECT_EQ(casa(1, 0), 8);
    EXPECT_EQ(casa(4, 0), 32);
    EXPECT_EQ(casa(4, 7), 39);
    EXPECT_EQ(casa(7, 7), 63);
}

TEST_F(Board, CodesAreTheValuesOfTheMenAndBlackHasTheNegatives) {
    coloca_fen(inicio_fen);
    const std::array<int, 8> primeira{50, 32, 33, 90, 110, 33, 32, 50};
    for (int f = 0; f < 8; ++f) {
        EXPECT_EQ(tab[f * 8], primeira[f]);
        EXPECT_EQ(tab[f * 8 + 1], 10);
        for (int r = 2; r < 6; ++r) {
            EXPECT_EQ(tab[f * 8 + r], 0);
        }
        EXPECT_EQ(tab[f * 8 + 6], -10);
        EXPECT_EQ(tab[f * 8 + 7], -primeira[f]);
    }
}

TEST_F(Board, RootSumsOfTheStartPosition) {
    coloca_fen(inicio_fen);
    for (const Cor c : {brancas, pretas}) {
        EXPECT_EQ(material_a[c], 510.0F);
        EXPECT_EQ(materialmaior[c], 320.0F);
        EXPECT_EQ(npecas[c], 15);
        EXPECT_EQ(npecas_dp[c], 7);
    }
    EXPECT_EQ(materialflot0, 0.0F);
}

TEST_F(Board, RootSumsCountWhatIsLeft) {
    // White: king, queen, two pawns. Black: king, rook, bishop, knight, one pawn.
    coloca_fen("4k3/r4bn1/8/3p4/8/8/PP6/3QK3 b - - 0 1");
    EXPECT_EQ(material_a[brancas], 220.0F);
    EXPECT_EQ(material_a[pretas], 235.0F);
    EXPECT_EQ(materialmaior[brancas], 90.0F);
    EXPECT_EQ(materialmaior[pretas], 115.0F);
    EXPECT_EQ(npecas[brancas], 3);
    EXPECT_EQ(npecas[pretas], 4);
    EXPECT_EQ(npecas_dp[brancas], 1);
    EXPECT_EQ(npecas_dp[pretas], 3);
    EXPECT_EQ(materialflot0, 15.0F);  // of the side to move
}

// --- The game ---

TEST_F(Board, ANewGameLeavesNoStaleDoubleStepFlag) {
    coloca("position startpos moves e2e4 e7e5 d2d4");
    ASSERT_EQ(jm.p_ah[brancas][3], 1);
    conversa({"position startpos"});
    EXPECT_EQ(jm.p_ah, Bandeiras{}.p_ah);
}

TEST_F(Board, ANewGameForgetsEveryStoredMove) {
    coloca("position startpos moves e2e4 e7e5");
    aa_dd.fill(lance("a2a3"));
    aag_ddg.fill(lance("a2a3"));
    aab_ddb = lance("a2a3");
    conversa({"position startpos"});
    for (int n = 1; n <= 23; ++n) {
        EXPECT_EQ(aa_dd[n].a, -1) << n;
        EXPECT_EQ(aag_ddg[n].a, -1) << n;
    }
    EXPECT_EQ(aab_ddb.a, -1);
}

TEST_F(Board, ANewGamePutsTheStartPositionAndClearsTheFlags) {
    coloca("position startpos moves e2e4 e7e5 e1e2 e8e7 a2a3 a7a6 a1a2 a8a7 h2h3 h7h6 h1h2 h8h7");
    ASSERT_EQ(jm.R_jm[brancas] + jm.R_jm[pretas] + jm.T_a_jm[brancas] + jm.T_h_jm[pretas], 4);
    conversa({"position startpos"});
    EXPECT_EQ(campo(tab), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR");
    EXPECT_EQ(jm.R_jm, Bandeiras{}.R_jm);
    EXPECT_EQ(jm.T_a_jm, Bandeiras{}.T_a_jm);
    EXPECT_EQ(jm.T_h_jm, Bandeiras{}.T_h_jm);
    EXPECT_EQ(nb, 1);
}

// The flag tells of moves alone: whoever takes the rook changes only the board, and there castling must look.
const char* const torre_h1_tomada = "position startpos moves g2g4 b7b6 g1h3 c8b7 f1g2 b7g2 a2a3 g2h1";

TEST_F(Board, ARookTakenOnItsCornerHasNotMoved) {
    coloca(torre_h1_tomada);
    EXPECT_EQ(em(tab, "h1"), -33);
    EXPECT_EQ(jm.T_h_jm[brancas], 0);
    EXPECT_EQ(jm.R_jm[brancas], 0);
    EXPECT_EQ(em(tab, "f1"), 0);
    EXPECT_EQ(em(tab, "g1"), 0);
    EXPECT_EQ(quantos(textos(lances_da_raiz()), "e1g1"), 0) << "a foreign man on the corner";
}

TEST_F(Board, AnEmptyCornerHasNoCastlingEither) {
    coloca(std::string(torre_h1_tomada) + " a3a4 h1d5");
    EXPECT_EQ(em(tab, "h1"), 0);
    EXPECT_EQ(jm.T_h_jm[brancas], 0);
    EXPECT_EQ(quantos(textos(lances_da_raiz()), "e1g1"), 0);
}

TEST_F(Board, TheSameSquaresWithTheRookAtHomeAllowCastling) {
    coloca("position startpos moves g2g4 b7b6 g1h3 c8b7 f1g2 b7g2 a2a3 g2d5");
    EXPECT_EQ(quantos(textos(lances_da_raiz()), "e1g1"), 1);
}

// --- The search and the root ---

TEST_F(Board, ASearchLeavesTheRootAsItWas) {
    for (const std::string fen : {"r3k2r/pp1n1ppp/2p1bn2/3pP3/3P4/2N1BN2/PPP2PPP/R3K2R w KQkq d6 0 1",
                                  "r3k2r/ppp2ppp/2n1bn2/3p4/3Pp3/2P1BN2/PP1N1PPP/R3K2R b KQkq d3 0 1"}) {
        processo_novo();
        const Cor c = coloca_fen(fen);
        deep = 3;
        const Tabuleiro antes = tab;
        const Bandeiras bandeiras = jm;
        const auto somas_antes = material_a;
        const auto maiores_antes = materialmaior;
        const auto homens_antes = npecas;
        const auto homens_dp = npecas_dp;
        sem_relato([c] { busca_na_raiz(c); });
        EXPECT_GT(nodes, 1000U);
        EXPECT_EQ(tab, antes);
        EXPECT_EQ(jm.R_jm, bandeiras.R_jm);
        EXPECT_EQ(jm.T_a_jm, bandeiras.T_a_jm);
        EXPECT_EQ(jm.T_h_jm, bandeiras.T_h_jm);
        EXPECT_EQ(jm.p_ah, bandeiras.p_ah);
        EXPECT_EQ(material_a, somas_antes);
        EXPECT_EQ(materialmaior, maiores_antes);
        EXPECT_EQ(npecas, homens_antes);
        EXPECT_EQ(npecas_dp, homens_dp);
    }
}

TEST_F(Board, KingSquaresAreThoseOfTheBoardLastTested) {
    const auto quadra = [](Cor c) { return std::pair(p_x_R[c], p_y_R[c]); };
    monta_ply(2, "4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(quadra(brancas), std::pair(4, 0));
    EXPECT_EQ(quadra(pretas), std::pair(4, 7));
    init_tabuleiro2_deep<brancas>(2, lance("e1d2"));
    verifica_rei<brancas>();
    EXPECT_EQ(quadra(brancas), std::pair(3, 1)) << "the trial's, though the ply still has its king on e1";
    EXPECT_EQ(em(ply[2].tabd, "e1"), 110);
    EXPECT_EQ(quadra(pretas), std::pair(4, 7));
    tab2 = tab;
    verifica_rei<brancas>();
    EXPECT_EQ(quadra(brancas), std::pair(4, 0));
}

TEST_F(Board, TheRootFindsBothKings) {
    coloca_fen("8/1k6/8/8/8/8/6K1/8 w - - 0 1");
    EXPECT_EQ(p_x_R, (std::array{6, 1}));
    EXPECT_EQ(p_y_R, (std::array{1, 6}));
}

// --- The stack ---

// Every ply owns its board and flags: a node copies those above it and plays its move there.
TEST_F(Board, ANodeCopiesThePlyAboveAndPlaysItsMove) {
    const std::string fen = "r3k2r/1p3ppp/8/3Pp3/8/8/PP3PPP/R3K2R w KQkq e6 0 1";
    for (const bool espelho : {false, true}) {
        const std::string aqui = espelho ? fen_espelhado(fen) : fen;
        const std::string m = espelho ? espelhado("h1g1") : "h1g1";
        const Cor c = espelho ? pretas : brancas;
        for (int n = 2; n <= 23; ++n) {
            processo_novo();
            monta_ply(n - 1, aqui);
            const Tabuleiro antes = ply[n - 1].tabd;
            const Bandeiras bandeiras = ply[n - 1].jm_D;
            ASSERT_EQ(bandeiras.p_ah[outra(c)][4], 1);
            {
                const Filhos nenhum(n);
                busca_no(n, lance(m));
            }
            EXPECT_EQ(campo(ply[n].tabd), campo_depois(aqui, m)) << n;
            EXPECT_EQ(ply[n].jm_D.T_h_jm[c], 1) << n;
            EXPECT_EQ(ply[n].jm_D.T_a_jm[c], 0) << n;
            EXPECT_EQ(ply[n].jm_D.R_jm[c], 0) << n;
            EXPECT_EQ(ply[n].jm_D.R_jm[outra(c)], 0) << n;
            EXPECT_EQ(ply[n].jm_D.p_ah, Bandeiras{}.p_ah) << n;
            EXPECT_EQ(ply[n].joga_com_b_deep, c == brancas ? 0 : 1) << n;
            EXPECT_EQ(ply[n].pp_D, 0) << n;
            EXPECT_EQ(ply[n].X_D, 1) << n << ": no child has improved the bound";
            EXPECT_EQ(nd, n);
            EXPECT_EQ(ply[n - 1].tabd, antes) << n;
            EXPECT_EQ(ply[n - 1].jm_D.T_h_jm[c], 0) << n;
            EXPECT_EQ(ply[n - 1].jm_D.p_ah, bandeiras.p_ah) << n;
        }
    }
}

TEST_F(Board, PlyOneIsCopiedFromTheRoot) {
    coloca_fen("r3k2r/1p3ppp/8/3Pp3/8/8/PP3PPP/R3K2R w KQkq e6 0 1");
    deep = 3;
    {
        const Filhos nenhum(1);
        sem_relato([] { busca_no(1, lance("d5e6")); });
    }
    EXPECT_EQ(campo(ply[1].tabd), "r3k2r/1p3ppp/4P3/8/8/8/PP3PPP/R3K2R");
    EXPECT_EQ(ply[1].jm_D.p_ah, Bandeiras{}.p_ah);
    EXPECT_EQ(jm.p_ah[pretas][4], 1);
    EXPECT_EQ(ply[1].joga_com_b_deep, 0);
}

// --- Running material ---

struct Soma {
    const char* o_que;
    const char* fen;
    const char* lance;
    int ganho, perda;  // of the mover, of the other side
};

const Soma somas[] = {
    {"a quiet move", "4k3/8/8/8/8/8/4P3/R3K3 w - - 0 1", "a1a5", 0, 0},
    {"a capture", "4k3/8/8/n7/8/8/4P3/R3K3 w - - 0 1", "a1a5", 0, 32},
    {"a promotion", "4k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b7b8", 80, 0},
    {"a promotion by capture", "r3k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b7a8", 80, 50},
    // The taken pawn is not subtracted from its side: its worth goes to the taker.
    {"en passant", "4k3/8/8/3Pp3/8/8/8/4K3 w - e6 0 1", "d5e6", 10, 0},
    {"a pawn's capture", "4k3/8/4p3/3P4/8/8/8/4K3 w - - 0 1", "d5e6", 0, 10},
    {"a pawn's push to the seventh rank", "4k3/8/1P6/8/8/8/8/4K3 w - - 0 1", "b6b7", 0, 0},
    {"a rook's move from the seventh rank", "4k3/1R6/8/8/8/8/8/4K3 w - - 0 1", "b7b8", 0, 0},
};

TEST_F(Board, RunningMaterialFollowsTheMove) {
    for (const Soma& s : somas) {
        for (const bool espelho : {false, true}) {
            const std::string fen = espelho ? fen_espelhado(s.fen) : s.fen;
            const std::string m = espelho ? espelhado(s.lance) : s.lance;
            const Cor c = espelho ? pretas : brancas;
            for (const int n : {2, 3, 6, 7, 14, 21}) {
                monta_ply(n - 1, fen);
                ply[n - 1].material = {300.0F, 400.0F};
                {
                    const Filhos nenhum(n);
                    busca_no(n, lance(m));
                }
                const float de_c = c == brancas ? 300.0F : 400.0F;
                EXPECT_EQ(ply[n].material[c], de_c + static_cast<float>(s.ganho)) << s.o_que << ", ply " << n;
                EXPECT_EQ(ply[n].material[outra(c)], 700.0F - de_c - static_cast<float>(s.perda))
                    << s.o_que << ", ply " << n;
            }
        }
    }
}

TEST_F(Board, TheWorthOfTheMoveIsReckonedAnew) {
    entra(3, "4k3/1P6/8/8/8/8/8/4K3 w - - 0 1", "b7b8");
    EXPECT_EQ(promocao, 80);
    entra(3, "4k3/8/8/3Pp3/8/8/8/4K3 w - e6 0 1", "d5e6");
    EXPECT_EQ(promocao, 0);
    EXPECT_EQ(ppassado, 10);
    entra(3, "4k3/8/8/3Pp3/8/8/8/4K3 w - e6 0 1", "e1e2");
    EXPECT_EQ(ppassado, 0);
}

// --- Stored moves ---

TEST_F(Board, QuietSlotsHoldTheMoveFromItsFirstSquare) {
    for (const int n : {1, 2, 3, 8, 9}) {
        processo_novo();
        monta_ply(n, "4k3/8/8/8/8/8/8/N3K3 w - - 0 1");
        const Filhos corta(n, [n](Lance) { valor_do_filho(n) = n % 2 == 0 ? inicio_beta : inicio_alfa; });
        roda_livres(n, "a1");
        EXPECT_EQ(texto(aa_dd[n]), "a1c2") << n;
        EXPECT_EQ(aag_ddg[n].a, -1) << n;
    }
}

TEST_F(Board, CaptureSlotsHoldTheVictimFirst) {
    for (const int n : {2, 3, 8, 9}) {
        processo_novo();
        monta_ply(n, "4k3/8/8/8/8/8/2p5/N3K3 w - - 0 1");
        const Filhos corta(n, [n](Lance) { valor_do_filho(n) = n % 2 == 0 ? inicio_beta : inicio_alfa; });
        roda_capturas(n, "c2");
        EXPECT_EQ(texto(aag_ddg[n]), "c2a1") << n;
        EXPECT_EQ(aa_dd[n].a, -1) << n;
    }
}

TEST_F(Board, TheCaptureSlotOfPlyOneHoldsTheAttackerFirst) {
    monta_ply(1, "4k3/8/8/8/8/8/2p5/N3K3 w - - 0 1");
    const Filhos corta(1, [](Lance) { valor_do_filho(1) = inicio_alfa; });
    roda_etapa_da_ply_1(1, "a1");
    EXPECT_EQ(texto(aag_ddg[1]), "a1c2");
    EXPECT_EQ(aa_dd[1].a, -1);
}

// --- Counters ---

TEST_F(Board, EveryLegalMoveCountsOneNode) {
    // The knight on e2 is pinned: its moves are tried and dropped.
    const std::string fen = "4r1k1/8/8/8/8/8/4N3/4K2R w - - 0 1";
    const auto legais = plain::legal_moves(posicao(fen)).size();
    for (const int n : {1, 2, 3, 7, 22}) {
        monta_ply(n, fen);
        nodes = 0;
        EXPECT_EQ(lances_tentados(n).size(), legais) << n;
        EXPECT_EQ(nodes, legais) << n;
    }
}

}  // namespace
