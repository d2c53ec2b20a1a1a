// What differs from ply to ply: the table, cell by cell, against the same table written as rows of text, and the
// behaviour of the shallow plies that only the table tells.
#include "search/ply_table.h"
#include "board/repetition.h"
#include "memory/shallow_tables.h"
#include "support/engine.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <sstream>

namespace {

using namespace teste;
using namespace ondrel;

// Columns, one blank apart: ply; depth at which it is a leaf; range of nominal depths of its gate; evaluator; extra
// moves; what may answer for it; least null-move level; shallow pass; least depths of reduction and free move; vertical
// filter; range of nominal depths of the extension; depth above which the clock is read; capture slot dropped before
// the horizon.
constexpr auto rows = R"(
 1  0  -     material   staged      -       1  yes  -  -   -     -      -   no
 2  1  -     ratio      -           repeat  1  yes  9  9   -     -      -   no
 3  -  -     -          -           table   2  yes  9  9   -     -      -   no
 4  3  -     eval       -           table   2  no   9  9   -     -      -   no
 5  -  -     -          -           table   2  no   9  9   -     -      -   no
 6  5  -     eval       -           -       -  no   9  11  -     -      -   yes
 7  -  -     -          promotions  -       -  no   9  11  7     -      8   no
 8  7  -     eval       -           -       -  no   11 13  -     -      -   yes
 9  -  -     -          promotions  -       -  no   11 13  9-21  9-9    10  no
10  9  9-9   eval       -           -       -  no   -  -   -     -      -   yes
11  -  9-9   evall      promotions  -       -  no   -  -   9-21  9-11   12  no
12 11  0-11  eval       -           -       -  no   -  -   -     -      -   yes
13  -  0-11  evall      promotions  -       -  no   -  -   9-21  11-13  14  no
14 13  0-13  eval       -           -       -  no   -  -   -     -      -   yes
15  -  0-13  evall      promotions  -       -  no   -  -   9-21  13-15  16  no
16 15  0-15  eval       -           -       -  no   -  -   -     -      -   yes
17  -  0-15  evall      promotions  -       -  no   -  -   9-21  15-17  18  no
18 17  0-17  eval       -           -       -  no   -  -   -     -      -   yes
19  -  0-17  evall      promotions  -       -  no   -  -   9-21  17-19  20  no
20 19  0-19  eval       -           -       -  no   -  -   -     -      -   yes
21  -  0-19  evall      promotions  -       -  no   -  -   9-21  19-21  22  no
22 21  0-21  eval       -           -       -  no   -  -   -     -      -   yes
23  -  0-21  evall      promotions  -       -  no   -  -   23    -      -   no
24 23  -     eval       none        -       -  no   -  -   -     -      -   no
)";

struct Row {
    int n;
    std::string leaf, gate, evaluator, moves, answered, null_move, shallow, lmr, amr, vertical, extension, clock, slot;
};

std::vector<Row> table_of_text() {
    std::vector<Row> table;
    std::istringstream in_rows(rows);
    for (Row r; in_rows >> r.n >> r.leaf >> r.gate >> r.evaluator >> r.moves >> r.answered >> r.null_move >>
                r.shallow >> r.lmr >> r.amr >> r.vertical >> r.extension >> r.clock >> r.slot;) {
        table.push_back(r);
    }
    return table;
}

int number(const std::string& cell, int none) { return cell == "-" ? none : std::stoi(cell); }

std::pair<int, int> range(const std::string& cell) {
    if (cell == "-") {
        return {nunca, nunca};
    }
    const std::size_t dash = cell.find('-');
    return {std::stoi(cell.substr(0, dash)), std::stoi(cell.substr(dash + 1))};
}

class PlyTable : public testing::TestWithParam<Row> {};

TEST_P(PlyTable, AgreesCellByCell) {
    const Row& row = GetParam();
    const LinhaDaPly& ply_row = tabela_das_plies[row.n];
    const std::map<std::string, Folha> leaves{{"-", Folha::nenhuma},
                                              {"material", Folha::material},
                                              {"ratio", Folha::razao_simples},
                                              {"eval", Folha::extra_eval},
                                              {"evall", Folha::extra_evall}};
    const std::map<std::string, Lances> moves{{"-", Lances::comuns},
                                              {"staged", Lances::por_etapas},
                                              {"promotions", Lances::promocoes_antes},
                                              {"none", Lances::nenhum}};
    const std::map<std::string, Memoria> answers{
        {"-", Memoria::nenhuma}, {"repeat", Memoria::repeticao}, {"table", Memoria::tabela_rasa}};
    const std::map<std::string, Vertical> verticals{{"-", Vertical::nenhum},
                                                    {"7", Vertical::da_ply_7},
                                                    {"9-21", Vertical::das_plies_9_a_21},
                                                    {"23", Vertical::da_ply_23}};
    EXPECT_EQ(ply_row.folha_deep, number(row.leaf, nunca));
    EXPECT_EQ((std::pair{ply_row.porta_de, ply_row.porta_ate}), range(row.gate));
    EXPECT_EQ(ply_row.folha, leaves.at(row.evaluator));
    EXPECT_EQ(ply_row.lances, moves.at(row.moves));
    EXPECT_EQ(ply_row.memoria, answers.at(row.answered));
    EXPECT_EQ(ply_row.null_move, number(row.null_move, 0));
    EXPECT_EQ(ply_row.null_deep, row.null_move == "-" ? 0 : (row.n <= 3 ? 7 : 9));
    EXPECT_EQ(ply_row.iid, row.shallow == "yes");
    EXPECT_EQ(ply_row.lmr, number(row.lmr, 0));
    EXPECT_EQ(ply_row.amr, number(row.amr, 0));
    EXPECT_EQ(ply_row.vertical, verticals.at(row.vertical));
    EXPECT_EQ((std::pair{ply_row.extensao_de, ply_row.extensao_ate}), range(row.extension));
    if (row.clock != "-") {
        EXPECT_EQ(ply_row.relogio_deep, std::stoi(row.clock));
    } else {
        EXPECT_GT(ply_row.relogio_deep, 23);  // no depth is above it
    }
    EXPECT_EQ(ply_row.limpa_captura, row.slot == "yes");
}

TEST_P(PlyTable, AgreesInWhatOtherRulesAddByPly) {
    const Row& row = GetParam();
    const int n = row.n;
    const LinhaDaPly& ply_row = tabela_das_plies[n];
    const bool late_odd = n >= 7 && n <= 23 && n % 2 == 1;
    // The last ply that tries replies is content with one, from ply 7 on; those plies have their promotions in front.
    EXPECT_EQ(ply_row.deep_corta, late_odd);
    EXPECT_EQ(ply_row.pai_corta, n == 6);
    if (n < 24) {
        EXPECT_EQ(ply_row.promove, !late_odd);
    }
    if (row.answered == "table") {
        EXPECT_EQ(ply_row.scan_deep, n == 3 ? 3 : 8);
    }
    if (n >= 2 && n <= 5) {
        const std::array<int, 4> least{1, 3, 3, 4};
        EXPECT_EQ(ply_row.volta_deep, least[n - 2]);
    }
}

INSTANTIATE_TEST_SUITE_P(Plies, PlyTable, testing::ValuesIn(table_of_text()),
                         [](const auto& row) { return "Ply" + std::to_string(row.param.n); });

TEST(PlyTable, HasARowForEveryPly) {
    const std::vector<Row> table = table_of_text();
    ASSERT_EQ(table.size(), 24U);
    for (int n = 1; n <= 24; ++n) {
        EXPECT_EQ(table[n - 1].n, n);
    }
    EXPECT_EQ(tabela_das_plies.size(), 25U);
}

// --- The shallow plies at work ---

class ShallowPlies : public testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

constexpr auto hanging_rook = "4k3/8/8/3r4/8/4N3/8/4K3 w - - 0 1";

float lead_with_ratio(float own, float other) {
    return static_cast<float>(static_cast<long double>(own - other) +
                              5.0L * std::log(static_cast<long double>(own) / static_cast<long double>(other)));
}

TEST_F(ShallowPlies, WithoutDepthARootMoveIsWorthItsMaterial) {
    busca_nua();
    const Escrita silence;
    const auto value = [](std::string_view fen, std::string_view move) {
        monta_ply(0, fen);
        deep = DEEP = 0;
        const Roteiro children([](const Chamada&) { return std::optional(0.0F); });
        const float v = busca_no(1, lance(move));
        EXPECT_TRUE(children.chamadas().empty());
        return v;
    };
    EXPECT_EQ(value(hanging_rook, "e3d5"), 32.0F);
    EXPECT_EQ(value(hanging_rook, "e3c4"), -18.0F);
    EXPECT_EQ(value("1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7b8"), 90.0F);
    EXPECT_EQ(value("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6"), 10.0F);
    EXPECT_EQ(value("4k3/8/4n3/8/3R4/8/8/4K3 b - - 0 1", "e6d4"), 32.0F);
}

TEST_F(ShallowPlies, WithDepthOneAReplyIsWorthMaterialAndPlainRatioWithoutAJudgement) {
    busca_nua();
    EXTRA_EVALL = 1;
    for (const std::uint8_t ratio : {std::uint8_t{1}, std::uint8_t{0}}) {
        extradef = ratio;
        monta_ply(1, hanging_rook);
        deep = DEEP = 1;
        // Ply 1 has taken the hundred of each king away. White, the root's opponent here, takes the rook.
        ply[1].material = {42.0F, 60.0F};
        const float v = busca_no(2, lance("e3d5"));
        EXPECT_EQ(v, ratio ? static_cast<float>(-32.0L - 42.0L / 10.0L) : -32.0F);
    }
    extradef = 1;
    monta_ply(1, hanging_rook);
    deep = DEEP = 1;
    ply[1].material = {42.0F, 60.0F};
    EXPECT_EQ(busca_no(2, lance("e3c4")), static_cast<float>(18.0L - 42.0L / 60.0L));
    EXPECT_EQ(quantas_vezes(Regra::julgamento), 0U);
}

TEST_F(ShallowPlies, PlyOneTakesAHundredFromBothSums) {
    busca_nua();
    const Escrita silence;
    std::array<float, 2> seen{};
    const Roteiro children([&](const Chamada&) -> std::optional<float> {
        seen = ply[1].material;
        return 0.0F;
    });
    monta_ply(0, "1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1");
    deep = DEEP = 3;
    busca_no(1, lance("a7b8"));
    EXPECT_EQ(seen[brancas], 120.0F - 100.0F + 80.0F);
    EXPECT_EQ(seen[pretas], 142.0F - 100.0F - 32.0F);
    monta_ply(0, "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1");
    deep = DEEP = 3;
    busca_no(1, lance("e5d6"));
    EXPECT_EQ(seen[brancas], 30.0F);
    EXPECT_EQ(seen[pretas], 20.0F);
}

TEST_F(ShallowPlies, WithDepthThreePlyFourLeavesAreJudgedAndBookEnPassantAsAGain) {
    busca_nua();
    monta_ply(3, "r3k3/ppp5/8/3pP3/8/8/PP3PPP/R3K3 w - d6 0 1");
    deep = DEEP = 3;
    const float v = busca_no(4, lance("e5d6"));
    EXPECT_EQ(quantas_vezes(Regra::julgamento), 1U);
    // Black, the root side, still counts the pawn that is gone; White counts ten more.
    EXPECT_EQ(v, lead_with_ratio(110.0F + 50.0F + 40.0F, 110.0F + 50.0F + 60.0F + 10.0F) + extraeval);
}

TEST_F(ShallowPlies, BelowDepthSevenThereIsNeitherNullMoveNorShallowPass) {
    constexpr auto fen = "r1bqkb1r/pppp1ppp/2n2n2/4p3/4P3/2N2N2/PPPP1PPP/R1BQKB1R w KQkq - 4 4";
    const Cor own = coloca_fen(fen);
    deep = 5;
    busca_inteira(own);
    EXPECT_GT(nodes, 1000U);
    EXPECT_EQ(quantas_vezes(Regra::null_move), 0U);
    EXPECT_EQ(quantas_vezes(Regra::iid), 0U);
    processo_novo();
    const Cor again = coloca_fen("r3k3/ppp2ppp/8/8/8/8/PPP2PPP/R3K3 w - - 0 1");
    deep = 7;
    busca_inteira(again);
    EXPECT_GT(quantas_vezes(Regra::null_move), 0U);
    EXPECT_GT(quantas_vezes(Regra::iid), 0U);
}

TEST_F(ShallowPlies, PlyTwentyFourWritesNothingUnderItsDepth) {
    busca_nua();
    for (const int depth : {21, 23}) {
        monta_ply(23, hanging_rook);
        EXTRA_EVAL = 0;
        deep = DEEP = depth;
        alfa[24] = 123.0F;
        EXPECT_EQ(busca_no(24, lance("e3d5")), depth == 23 ? lead_with_ratio(110.0F, 142.0F) : 123.0F);
    }
}

TEST_F(ShallowPlies, ARepetitionAtPlyTwoIsADrawBeforeNullMoveMemoryAndSearch) {
    // The position after the reply has stood twice before: once more and the game is drawn.
    constexpr auto shuffle = "position startpos moves g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8";
    const Cor own = coloca(shuffle);
    ASSERT_EQ(own, brancas);
    emp = -13;
    deep = DEEP = 9;
    deeppromo = 1;
    SCANT = 1;
    beta[1] = 100.0F;
    // Ply 1 as it stands after g1f3.
    ply[1] = ply[0];
    ply[1].tabd[lance("g1f3").destino()] = cavalo;
    ply[1].tabd[lance("g1f3").origem()] = vazia;
    ply[1].mascaras = mascaras_de(ply[1].tabd);
    ply[1].joga_com_b_deep = 0;
    const Roteiro children([](const Chamada&) { return std::optional(0.0F); });
    EXPECT_EQ(busca_no(2, lance("g8f6")), -13.0F);
    EXPECT_TRUE(children.chamadas().empty());
    EXPECT_EQ(quantas_vezes(Regra::repeticao), 1U);
    EXPECT_EQ(quantas_vezes(Regra::null_move), 0U);
    EXPECT_EQ(quantas_vezes(Regra::iid), 0U);
    EXPECT_EQ(quantas_vezes(Regra::sonda_da_ply_2), 0U);
    // Another reply is searched, and so is the same one where repetitions are not looked for.
    busca_no(2, lance("b8c6"));
    EXPECT_FALSE(children.chamadas().empty());
    EXPECT_EQ(quantas_vezes(Regra::repeticao), 1U);
    pempatee = 0;
    EXPECT_NE(busca_no(2, lance("g8f6")), -13.0F);
    EXPECT_EQ(quantas_vezes(Regra::repeticao), 1U);
}

TEST_F(ShallowPlies, NothingIsSearchedUnderItsLeastDepth) {
    busca_nua();
    const std::array<int, 4> least{1, 3, 3, 4};
    for (int n = 2; n <= 5; ++n) {
        SCOPED_TRACE(n);
        monta_ply(n - 1, "4k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1");
        deep = DEEP = least[n - 2] - 1;
        (n % 2 == 0 ? alfa : beta)[n] = 123.0F;
        const Roteiro children([](const Chamada&) { return std::optional(0.0F); });
        EXPECT_EQ(busca_no(n, lance("a2a3")), 123.0F);
        EXPECT_TRUE(children.chamadas().empty());
    }
}

TEST_F(ShallowPlies, PassesOfPlyOneRunWithTheirMarkButItsNullMoveWithout) {
    const Escrita silence;
    busca_nua();
    monta_ply(0, "r3k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1");
    deep = DEEP = 9;
    NULL_MOVE = 2;
    PVS = 1;
    SCAN1 = 0;
    SCANT = 1;
    alfa[0] = -100.0F;
    ALFA0 = 0;
    npecas = {5, 6};
    std::set<std::pair<int, int>> passes;  // ply of the child and the mark
    const Roteiro children([&](const Chamada& x) {
        passes.insert({x.n, x.deeppromo});
        return std::optional(0.0F);
    });
    busca_no(1, lance("d1b1"));
    EXPECT_EQ(passes, (std::set<std::pair<int, int>>{{2, 1}, {3, 0}}));
    EXPECT_EQ(deeppromo, 0);
}

TEST_F(ShallowPlies, TheLineShownIsThatOfTheFirstBranch) {
    const Escrita silence;
    busca_nua();
    monta_ply(0, "4k3/pppp4/8/8/6n1/8/PPPP4/3QK3 w - - 0 1");
    deep = DEEP = 5;
    for (auto& text : A0_D7) {
        text.fill('x');
    }
    const Roteiro children([](const Chamada& x) { return x.n == 4 ? std::optional(0.0F) : std::nullopt; });
    busca_no(1, lance("d1b1"));
    const auto line = [](int k) { return std::string(A0_D7[k].data(), 4); };
    EXPECT_EQ(line(0), "d1b1");
    EXPECT_EQ(line(1), children.lances(2).front());
    EXPECT_EQ(line(2), children.lances(3).front());
    for (int k = 3; k < 8; ++k) {
        EXPECT_EQ(line(k), "    ") << k;
    }
}

}  // namespace
