// One node of the tree: what ends a line, what a leaf is worth, what a node expands to and in which order it tries its
// replies. Below the node the children are scripted, so that nothing but the node itself is seen.
#include "eval/extra_eval.h"
#include "support/engine.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace teste;
using namespace ondrel;

// The worth of material at a leaf in its plainest form: the lead, and five times the logarithm of the ratio.
float lead_with_ratio(float own, float other) {
    return static_cast<float>(static_cast<long double>(own - other) +
                              5.0L * std::log(static_cast<long double>(own) / static_cast<long double>(other)));
}

class Node : public testing::Test {
protected:
    void SetUp() override {
        processo_novo();
        busca_nua();
    }

    // Node n is about to be searched from the position, with all its replies above the horizon.
    static void stand_before(int n, std::string_view fen) {
        monta_ply(n - 1, fen);
        deep = n % 2 == 0 ? n + 1 : n;
        DEEP = deep;
    }
    // The same with node n as the horizon.
    static void stand_at_the_horizon(int n, std::string_view fen) {
        monta_ply(n - 1, fen);
        deep = n - 1;
        DEEP = deep;
    }
};

constexpr std::array horizon_plies{4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24};

// White to move can take a rook with the knight.
constexpr auto rook_hangs = "4k3/8/8/3r4/8/4N3/8/4K3 w - - 0 1";
// White mates on the last rank.
constexpr auto back_rank = "6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1";
// The queen can make a quiet move, a check and a capture without check; a pawn can be pushed.
constexpr auto queen_of_all_trades = "4k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1";

// --- Leaves ---

TEST_F(Node, LeafByACaptureCountsTheCapturedManThoughNoBoardHoldsTheMove) {
    EXTRA_EVALL = 0;
    for (const int n : horizon_plies) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, rook_hangs);
        const Tabuleiro before = ply[n - 1].tabd;
        // Black is the root side at even plies: a bare king against king and knight.
        EXPECT_EQ(busca_no(n, lance("e3d5")), lead_with_ratio(110.0F, 142.0F));
        EXPECT_EQ(ply[n - 1].tabd, before);
    }
}

TEST_F(Node, LeafTouchesNoBoardAndNoMarkOfItsPly) {
    for (const int n : horizon_plies) {
        if (n == ultima_ply) {
            continue;  // has no board at all
        }
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, rook_hangs);
        ply[n].tabd.fill(7);
        ply[n].X_D = 9;
        ply[n].material = {1.0F, 2.0F};
        nd = 77;
        busca_no(n, lance("e3d5"));
        EXPECT_EQ(ply[n].tabd[0], 7);
        EXPECT_EQ(ply[n].tabd[63], 7);
        EXPECT_EQ(ply[n].X_D, 9);
        EXPECT_EQ(ply[n].material[brancas], 1.0F);
        EXPECT_EQ(nd, 77);
    }
}

TEST_F(Node, MatingMoveAtTheHorizonIsWorthItsMaterialAlone) {
    EXTRA_EVALL = 0;
    for (const int n : horizon_plies) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, back_rank);
        EXPECT_EQ(busca_no(n, lance("a1a8")), lead_with_ratio(140.0F, 160.0F));
    }
    // One ply inside the horizon the same move is mate.
    for (int n = 4; n <= 22; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, back_rank);
        EXPECT_EQ(busca_no(n, lance("a1a8")), mate_na_ply(n));
    }
}

TEST_F(Node, PromotionByCaptureCountsEightyAndTheVictim) {
    EXTRA_EVALL = 0;
    for (const int n : horizon_plies) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, "1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1");
        EXPECT_EQ(busca_no(n, lance("a7b8")), lead_with_ratio(110.0F, 200.0F));
    }
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, "1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1");
        const Roteiro quiet(sempre(n + 1, 0.0F));
        busca_no(n, lance("a7b8"));
        EXPECT_EQ(ply[n].material[brancas], 120.0F + 80.0F);
        EXPECT_EQ(ply[n].material[pretas], 142.0F - 32.0F);
    }
}

TEST_F(Node, QuietPromotionCountsEighty) {
    EXTRA_EVALL = 0;
    stand_at_the_horizon(4, "4k3/P7/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(busca_no(4, lance("a7a8")), lead_with_ratio(110.0F, 200.0F));
    // The seventh rank is the mover's own: a black pawn on the rank of White's seventh is at home.
    stand_at_the_horizon(4, "4k3/p7/8/8/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(busca_no(4, lance("a7a6")), lead_with_ratio(110.0F, 120.0F));
}

TEST_F(Node, EnPassantCountsTenForTheMoverAndTakesNothingFromTheOther) {
    // The to-square is empty: what is found there says nothing, so the pawn is booked as the mover's gain.
    EXTRA_EVALL = 0;
    constexpr auto en_passant = "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1";
    for (const int n : horizon_plies) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, en_passant);
        EXPECT_EQ(busca_no(n, lance("e5d6")), lead_with_ratio(120.0F, 130.0F));
    }
    stand_before(5, en_passant);
    const Roteiro quiet(sempre(6, 0.0F));
    busca_no(5, lance("e5d6"));
    EXPECT_EQ(ply[5].material[brancas], 130.0F);
    EXPECT_EQ(ply[5].material[pretas], 120.0F);
}

TEST_F(Node, WithoutExtraDefinitionALeafIsTheBareLead) {
    EXTRA_EVALL = 0;
    extradef = 0;
    for (const int n : horizon_plies) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, rook_hangs);
        EXPECT_EQ(busca_no(n, lance("e3d5")), -32.0F);
    }
}

TEST_F(Node, RatioAtALeafIsWeighedByItsOption) {
    EXTRA_EVALL = 0;
    MQ = 0;
    stand_at_the_horizon(4, rook_hangs);
    EXPECT_EQ(busca_no(4, lance("e3d5")), -32.0F);
    MQ = 10;
    stand_at_the_horizon(4, rook_hangs);
    EXPECT_EQ(busca_no(4, lance("e3d5")), static_cast<float>(-32.0L + 10.0L * std::log(110.0L / 142.0L)));
}

TEST_F(Node, WithExtraEvaluationOffALeafIsMaterialAndRatioAndADeadDrawIsNotSeen) {
    constexpr auto lone_knight = "4k3/8/8/8/8/8/8/1N2K3 w - - 0 1";
    for (const int n : horizon_plies) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, lone_knight);
        EXTRA_EVAL = 0;
        EMPAT = 1;
        emp = -7;
        EXPECT_EQ(busca_no(n, lance("b1c3")), lead_with_ratio(110.0F, 142.0F));
        EXPECT_EQ(quantas_vezes(Regra::julgamento), 0U);
    }
    for (const int n : horizon_plies) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, lone_knight);
        EXTRA_EVAL = 1;
        emp = -7;
        EXPECT_EQ(busca_no(n, lance("b1c3")), -7.0F);
    }
}

TEST_F(Node, LeafAddsTheJudgementOfTheRootSideWhoeverIsToMove) {
    constexpr auto fen = "r3k3/ppp5/8/3n4/8/2N5/PP3PPP/R3K3 w - - 0 1";
    for (const int n : horizon_plies) {
        SCOPED_TRACE(n);
        stand_at_the_horizon(n, fen);
        EXTRA_EVAL = 1;
        const float v = busca_no(n, lance("c3e4"));
        extraeval = 0;
        extra_eval<pretas>();
        EXPECT_EQ(v, lead_with_ratio(110.0F + 50.0F + 32.0F + 30.0F, 110.0F + 50.0F + 32.0F + 50.0F) + extraeval);
    }
    for (int n = 11; n <= 23; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, fen);
        DEEP = 9;
        EXTRA_EVAL = 1;
        const float v = busca_no(n, lance("c3e4"));
        extraeval = 0;
        extra_evall<brancas>();
        EXPECT_EQ(v, lead_with_ratio(110.0F + 50.0F + 32.0F + 50.0F, 110.0F + 50.0F + 32.0F + 30.0F) + extraeval);
    }
}

// --- The lazy test ---

TEST_F(Node, LeafFiveePawnsUnderAnyBoundOfTheRootSideIsNotJudged) {
    extradef = 0;  // so that the material value, -32, is exact
    for (const int n : horizon_plies) {
        for (int k = 0; k <= n - 2; k += 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            stand_at_the_horizon(n, rook_hangs);
            EXTRA_EVAL = 1;
            alfa[k] = -32.0F + 50.0F;
            zera_contadores();
            EXPECT_EQ(busca_no(n, lance("e3d5")), -32.0F);
            EXPECT_EQ(quantas_vezes(Regra::preguica), 1U);
            EXPECT_EQ(quantas_vezes(Regra::julgamento), 0U);

            stand_at_the_horizon(n, rook_hangs);
            EXTRA_EVAL = 1;
            alfa[k] = -32.0F + 49.5F;
            zera_contadores();
            busca_no(n, lance("e3d5"));
            EXPECT_EQ(quantas_vezes(Regra::preguica), 0U);
            EXPECT_EQ(quantas_vezes(Regra::julgamento), 1U);
        }
    }
}

TEST_F(Node, LeafFivePawnsOverAnyBoundOfTheOpponentIsNotJudged) {
    extradef = 0;
    for (int n = 11; n <= 23; n += 2) {
        for (int k = 1; k <= n - 2; k += 2) {
            SCOPED_TRACE(testing::Message() << "ply " << n << ", bound " << k);
            for (const float over : {50.0F, 49.5F}) {
                stand_before(n, "4k3/8/8/8/8/4N3/8/4K3 w - - 0 1");  // White, the root side, leads by 32
                DEEP = 9;
                EXTRA_EVAL = 1;
                beta[k] = 32.0F - over;
                zera_contadores();
                busca_no(n, lance("e3d5"));
                EXPECT_EQ(quantas_vezes(Regra::preguica), over == 50.0F ? 1U : 0U);
                EXPECT_EQ(quantas_vezes(Regra::julgamento), over == 50.0F ? 0U : 1U);
            }
        }
    }
}

// --- The gate beyond the nominal depth ---

// Whether node n tried any reply to the move.
bool expands(int n, std::string_view move) {
    const Roteiro children(sempre(n + 1, 0.0F));
    busca_no(n, lance(move));
    return children.quantas(n + 1) > 0;
}

// The deepest nominal depth that still lies under ply n's gate.
int gate_depth(int n) { return n <= 11 ? 9 : (n % 2 == 0 ? n - 1 : n - 2); }

TEST_F(Node, BeyondTheNominalDepthOnlyCapturesPawnMovesAndChecksGoOn) {
    for (int n = 10; n <= 23; ++n) {
        SCOPED_TRACE(n);
        const auto beyond = [n](std::string_view move) {
            stand_before(n, queen_of_all_trades);
            DEEP = gate_depth(n);
            return expands(n, move);
        };
        EXPECT_FALSE(beyond("d1b1"));
        EXPECT_EQ(quantas_vezes(Regra::porta), 1U);
        EXPECT_TRUE(beyond("a2a3"));
        EXPECT_TRUE(beyond("d1g4"));
        EXPECT_TRUE(beyond("d1e2"));
        EXPECT_EQ(quantas_vezes(Regra::porta), 1U);
        zera_contadores();
    }
}

TEST_F(Node, WithinTheNominalDepthAQuietMoveGoesOn) {
    for (int n = 2; n <= 22; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, queen_of_all_trades);
        DEEP = gate_depth(n) + 2;
        EXPECT_TRUE(expands(n, "d1b1"));
    }
}

TEST_F(Node, PliesUpToNineHaveNoGate) {
    for (int n = 2; n <= 9; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, queen_of_all_trades);
        DEEP = 1;
        EXPECT_TRUE(expands(n, "d1b1"));
    }
}

TEST_F(Node, UnderItsDepthANodeReturnsWithNothingWritten) {
    for (int n = 12; n <= 22; n += 2) {
        SCOPED_TRACE(n);
        stand_before(n, rook_hangs);
        deep = n - 3;
        DEEP = deep;
        alfa[n] = 123.0F;
        const Roteiro children(sempre(n + 1, 0.0F));
        EXPECT_EQ(busca_no(n, lance("e3d5")), 123.0F);  // a capture: no leaf by the gate
        EXPECT_EQ(children.quantas(n + 1), 0U);
    }
}

// --- No reply ---

TEST_F(Node, MateIsWorthItsPlyAlone) {
    for (int n = 1; n <= 23; ++n) {
        SCOPED_TRACE(n);
        const Escrita silence;
        stand_before(n, back_rank);
        EXPECT_EQ(busca_no(n, lance("a1a8")), mate_na_ply(n));
        stand_before(n, espelho(back_rank));
        EXPECT_EQ(busca_no(n, espelho(lance("a1a8"))), mate_na_ply(n));
    }
}

TEST_F(Node, SoonerMateIsTheLarger) {
    for (int n = 1; n <= 21; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, back_rank);
        const Escrita silence;
        const float sooner = busca_no(n, lance("a1a8"));
        stand_before(n + 2, back_rank);
        const float later = busca_no(n + 2, lance("a1a8"));
        EXPECT_EQ(std::fabs(sooner) - std::fabs(later), 1100.0F);
        EXPECT_GE(std::fabs(later), 3300.0F);
    }
}

TEST_F(Node, StalemateIsWorthTheDrawScore) {
    constexpr auto stalemate = "k7/8/1K6/8/8/8/8/2Q5 w - - 0 1";
    for (int n = 1; n <= 23; ++n) {
        SCOPED_TRACE(n);
        const Escrita silence;
        stand_before(n, stalemate);
        emp = -13;
        EXPECT_EQ(busca_no(n, lance("c1c7")), -13.0F);
        stand_before(n, espelho(stalemate));
        emp = 21;
        EXPECT_EQ(busca_no(n, espelho(lance("c1c7"))), 21.0F);
    }
}

TEST_F(Node, RepliesThatAllLoseAreNoMate) {
    // The bound has moved, so the node keeps what its children gave.
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, "4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
        const float bad = n % 2 == 0 ? -9000.0F : 9000.0F;
        const Roteiro children(sempre(n + 1, bad));
        EXPECT_EQ(busca_no(n, lance("a1a8")), bad);
    }
}

// --- Expansion ---

TEST_F(Node, ExpansionCopiesThePlyAboveAndPlaysTheMoveThere) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
        ply[n].pp_D = 1;
        nd = 0;
        (n % 2 == 0 ? corte_beta : corte_alfa)[n - 1] = 1;
        const Tabuleiro above = ply[n - 1].tabd;
        int seen_nd = -1;
        int seen_flag = -1;
        const Roteiro children([&](const Chamada& x) {
            seen_nd = nd;
            seen_flag = (n % 2 == 0 ? corte_beta : corte_alfa)[n - 1];
            return x.n == n + 1 ? std::optional(n % 2 == 0 ? -20.0F : 20.0F) : std::nullopt;
        });
        busca_no(n, lance("h1h8"));
        EXPECT_EQ(seen_nd, n);
        EXPECT_EQ(seen_flag, 0);
        EXPECT_EQ(ply[n - 1].tabd, above);
        Tabuleiro played = above;
        played[casa(7, 0)] = vazia;
        played[casa(7, 7)] = torre;
        EXPECT_EQ(ply[n].tabd, played);
        EXPECT_EQ(ply[n].joga_com_b_deep, 0);
        EXPECT_EQ(ply[n].jm_D.T_h_jm[brancas], 1);
        EXPECT_EQ(ply[n].jm_D.T_a_jm[brancas], 0);
        EXPECT_EQ(ply[n].jm_D.R_jm[pretas], 0);
        EXPECT_EQ(ply[n - 1].jm_D.T_h_jm[brancas], 0);
        EXPECT_EQ(ply[n].pp_D, 0);
        EXPECT_EQ(ply[n].material[brancas], 210.0F);
        EXPECT_EQ(ply[n].material[pretas], 160.0F);
    }
}

TEST_F(Node, EveryReplyIsCountedAsANode) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        stand_before(n, queen_of_all_trades);
        deep = n + (n % 2 == 0 ? 3 : 2);  // no ply that is content with its first reply
        const Roteiro children(sempre(n + 1, n % 2 == 0 ? -20.0F : 20.0F));
        nodes = 0;
        busca_no(n, lance("a2a3"));
        EXPECT_EQ(nodes, 1U + children.quantas(n + 1));
    }
}

// --- The move order ---

// All victims within reach of pawns, and quiet moves of pawns, a knight and the king.
constexpr auto full_larder = "4k3/8/8/q1r1n1b1/1P1P1P1P/8/3P4/1N2K3 w - - 0 1";

std::vector<std::string> tried(int n) {
    std::vector<std::string> moves;
    for (const Lance m : lances_tentados(n)) {
        moves.push_back(texto(m));
    }
    return moves;
}

using Moves = std::vector<std::string>;

TEST_F(Node, CapturesComeByVictimThenQuietMovesByPiece) {
    for (int n = 2; n <= 22; ++n) {
        SCOPED_TRACE(n);
        monta_ply(n, full_larder);
        EXPECT_EQ(tried(n), (Moves{"b4a5", "d4c5", "b4c5", "f4e5", "d4e5", "h4g5", "f4g5",  // Q R N B
                                   "b4b5", "d4d5", "d2d3", "f4f5", "h4h5",                  // pawns
                                   "b1a3", "b1c3", "e1f1", "e1d1", "e1e2", "e1f2"}));
    }
}

TEST_F(Node, StoredMovesComeFirstOfTheirKindAndOnlyOnce) {
    for (int n = 2; n <= 22; ++n) {
        SCOPED_TRACE(n);
        monta_ply(n, full_larder);
        aag_ddg[n] = {6, 4, 5, 3};  // the bishop on g5, taken from f4
        aa_dd[n] = lance("b1c3");
        EXPECT_EQ(tried(n), (Moves{"f4g5", "b4a5", "d4c5", "b4c5", "f4e5", "d4e5", "h4g5", "b1c3", "b4b5", "d4d5",
                                   "d2d3", "f4f5", "h4h5", "b1a3", "e1f1", "e1d1", "e1e2", "e1f2"}));
    }
}

TEST_F(Node, StaleStoredMovesHaveNoEffect) {
    const std::vector<Lance> stale_captures{
        {6, 4, 0, 0},  // no man stands on the attacker's square
        {6, 4, 0, 4},  // a man of the wrong colour stands there
        {7, 7, 5, 3},  // no victim
        {3, 3, 5, 3},  // an own man as the victim
        {4, 7, 5, 3},  // the king as the victim
        {6, 4, 1, 3},  // a pawn that does not reach the victim
    };
    const std::vector<Lance> stale_quiet{
        {2, 2, 2, 3},  // no man on the from-square
        {4, 4, 2, 3},  // the opponent's man
        {1, 0, 4, 4},  // no move of that man
        {7, 3, 6, 4},  // a capture
    };
    for (int n = 2; n <= 22; ++n) {
        monta_ply(n, full_larder);
        const Moves plain = tried(n);
        ASSERT_EQ(plain.size(), 18U);
        for (const Lance capture : stale_captures) {
            for (const Lance quiet : stale_quiet) {
                SCOPED_TRACE(testing::Message() << "ply " << n << " " << texto(capture) << " " << texto(quiet));
                monta_ply(n, full_larder);
                aag_ddg[n] = capture;
                aa_dd[n] = quiet;
                EXPECT_EQ(tried(n), plain);
            }
        }
    }
}

TEST_F(Node, StoredCaptureIsDroppedAtTheLastPlyBeforeTheHorizon) {
    for (int n = 2; n <= 22; n += 2) {
        SCOPED_TRACE(n);
        monta_ply(n, full_larder);
        deep = n + 1;
        aag_ddg[n] = {6, 4, 5, 3};
        const bool dropped = n >= 6;
        EXPECT_EQ(tried(n).front(), dropped ? "b4a5" : "f4g5");
        EXPECT_EQ(aag_ddg[n].a, dropped ? -1 : 6);
    }
}

TEST_F(Node, PromotionsComeFirstAtOddPliesFromSeven) {
    for (int n = 2; n <= 23; ++n) {
        SCOPED_TRACE(n);
        monta_ply(n, "1n2k3/P7/8/8/8/8/3r4/4K3 w - - 0 1");
        const bool first = n % 2 == 1 && n >= 7;
        EXPECT_EQ(tried(n), first ? (Moves{"a7b8", "a7a8", "e1d2", "e1f1"}) : (Moves{"e1d2", "a7b8", "a7a8", "e1f1"}));
    }
}

TEST_F(Node, BlackTriesTheMirroredRepliesInTheMirroredPosition) {
    // Files keep their order and each side's own direction comes first, so that the two orders are mirrors as long as
    // no man's walk goes by ranks.
    for (int n = 2; n <= 22; ++n) {
        SCOPED_TRACE(n);
        monta_ply(n, espelho("4k3/8/8/q1r1n1b1/1P1P1P1P/8/3P4/4K3 w - - 0 1"));
        const Moves moves = tried(n);
        ASSERT_GE(moves.size(), 12U);
        EXPECT_EQ(Moves(moves.begin(), moves.begin() + 12), (Moves{"b5a4", "d5c4", "b5c4", "f5e4", "d5e4", "h5g4",
                                                                   "f5g4", "b5b4", "d5d4", "d7d6", "f5f4", "h5h4"}));
    }
}

TEST_F(Node, CutEndsTheWholeOrder) {
    for (int n = 2; n <= 22; ++n) {
        SCOPED_TRACE(n);
        monta_ply(n - 1, espelho(full_larder));
        deep = n + (n % 2 == 0 ? 3 : 2);
        DEEP = deep;
        // White answers the quiet move of the black king in the mirrored larder.
        (n % 2 == 0 ? beta[n - 1] : alfa[n - 1]) = 0.0F;
        const Roteiro children(sempre(n + 1, 0.0F));
        busca_no(n, lance("e8f8"));
        EXPECT_EQ(children.quantas(n + 1), 1U);
    }
}

}  // namespace
