// The estimate of a leaf in sets: term by term, and against the plain evaluation and the judgement on thousands of
// boards.
#include "support/evaluation.h"

#include "eval/leaf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace teste;

constexpr std::array<Cor, 2> cores{brancas, pretas};

// --- Calls with the colours as the templates want them ---

template <class F>
auto com_cores(Cor own, Cor stm, F f) {
    using B = std::integral_constant<Cor, brancas>;
    using P = std::integral_constant<Cor, pretas>;
    prepara_julgamento(own);
    if (own == brancas) {
        return stm == brancas ? f(B{}, B{}) : f(B{}, P{});
    }
    return stm == brancas ? f(P{}, B{}) : f(P{}, P{});
}

bool estima(Cor own, Cor stm) {
    return com_cores(own, stm, [](auto o, auto s) { return estima_a_folha<o(), s()>(mascaras_de(tab2)); });
}
void afina(Cor own, Cor stm) {
    com_cores(own, stm, [](auto o, auto s) { afina_a_folha<o(), s()>(tab2, mascaras_de(tab2)); });
}
void julga_de_uma_vez(Cor own, Cor stm) {
    com_cores(own, stm, [](auto o, auto s) { julga_a_folha<o(), s()>(tab2, mascaras_de(tab2)); });
}

// --- How near a sum is ---

// The rule rounds a sum to float after every term: half a unit in the last place each time, which is the largest
// partial sum over 2^24. The estimate rounds the weight of a square once, to half of its own unit, and its sum once.
double folga_da_soma(double parcelas, double maior_parcial, double unidade) {
    return (parcelas + 1) * (maior_parcial * std::exp2(-24) + unidade / 2);
}

struct Folgas {
    double posicao, centro, atack_ksf, defesa_ksf;
};

Folgas folgas_de(Cor c, const plain::SideCounts& certo, const plain::AttackMaps& mapas) {
    double marcas = 0;
    for (const int n : mapas.total[c]) {
        marcas += n;
    }
    // A pawn has up to 24 positional terms, a piece fewer; an attack has one at most. Only captures by pawns can take
    // off, 10 each.
    const double termos = marcas + 24 * 64;
    return {folga_da_soma(termos, std::abs(certo.posicao) + 10.0 * certo.alvos, 0),
            folga_da_soma(marcas, certo.centro, std::exp2(-15)), folga_da_soma(marcas, certo.atack_ksf, std::exp2(-20)),
            folga_da_soma(marcas, certo.defesa_ksf, std::exp2(-20))};
}

// The counters of the estimate for tab2, against the plain walk.
void compara_contas(const plain::Walk& certo, const std::string& onde) {
    const plain::AttackMaps mapas = plain::attack_maps(casas(tab2));
    for (const Cor c : cores) {
        const plain::SideCounts& x = certo.side[c];
        const Contagem& y = contagem[c];
        const Folgas folgas = folgas_de(c, x, mapas);
        const std::string quem = onde + (c == brancas ? " White" : " Black");
        EXPECT_TRUE(conta_inteiros_como(x, y)) << quem;
        EXPECT_NEAR(x.posicao, y.posicao, folgas.posicao) << quem;
        EXPECT_NEAR(x.centro, y.centro, folgas.centro) << quem;
        EXPECT_NEAR(x.atack_ksf, y.atack_ksf, folgas.atack_ksf) << quem;
        EXPECT_NEAR(x.defesa_ksf, y.defesa_ksf, folgas.defesa_ksf) << quem;
    }
    EXPECT_EQ(EMPAT != 0, certo.dead_draw) << onde;
}

// --- The terms one by one ---

enum class Que : std::uint8_t {
    posicao,
    posicao_dele,  // the other colour's
    centro,
    atack_ksf,
    defesa_ksf,
    mobilidade,
    alvos,
    apoios,
    pecas,
    peoes,
    pontos,
    avanco,
    abrigo,
    caixa
};

double conta_de(Que que, Cor c) {
    const Contagem& x = contagem[c];
    switch (que) {
        case Que::posicao: return x.posicao;
        case Que::posicao_dele: return contagem[outra(c)].posicao;
        case Que::centro: return x.centro;
        case Que::atack_ksf: return x.atack_ksf;
        case Que::defesa_ksf: return x.defesa_ksf;
        case Que::mobilidade: return x.mobilidade;
        case Que::alvos: return x.alvos;
        case Que::apoios: return x.apoios;
        case Que::pecas: return x.pecas;
        case Que::peoes: return x.peoes;
        case Que::pontos: return x.pontos;
        case Que::avanco: return x.avanco;
        case Que::abrigo: return x.abrigo;
        default: return x.caixa();
    }
}

// Men of the root, by which the phases go, and the piece material up to which the enemy's king comes out.
constexpr int cheio = 15;
constexpr int meio = 14;
constexpr int onze = 11;
constexpr int vazio = 10;
constexpr float forte = 90.5F;
constexpr float fraco = 90.0F;

// A board, its kings remembered on e1 and e8 where it has none, and one counter of White's with White to move.
struct Caso {
    const char* nome;
    const char* campo;
    double valor;
    Que que = Que::posicao;
    int homens = cheio;
    float maior = forte;
    Cor jogam = brancas;
    float agressivo = 1;
};

// The same board from the other side.
std::string espelho(const std::string& campo) {
    std::string linhas;
    for (std::size_t i = 0; i < campo.size();) {
        const std::size_t j = std::min(campo.find('/', i), campo.size());
        linhas.insert(0, campo.substr(i, j - i) + (linhas.empty() ? "" : "/"));
        i = j + 1;
    }
    for (char& x : linhas) {
        const auto letra = static_cast<unsigned char>(x);
        x = static_cast<char>(std::isupper(letra) != 0 ? std::tolower(letra) : std::toupper(letra));
    }
    return linhas;
}

void lembra_reis() {
    p_x_R = {4, 4};
    p_y_R = {0, 7};
    for (const Cor c : cores) {
        for (int i = 0; i < 64; ++i) {
            if (tab2[i] == codigo(c, rei)) {
                p_x_R[c] = i / 8;
                p_y_R[c] = i % 8;
            }
        }
    }
}

class LeafEstimate : public ::testing::Test {
protected:
    void SetUp() override {
        processo_novo();
        coloca_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    }
};

// Each case for White, and from the other side for Black.
class LeafEstimateTerms : public LeafEstimate {
protected:
    static void confere(const std::vector<Caso>& casos) {
        for (const Caso& x : casos) {
            confere_de(brancas, x, x.campo);
            confere_de(pretas, x, espelho(x.campo));
        }
    }

private:
    static void confere_de(Cor c, const Caso& x, const std::string& campo) {
        muda_folha(campo);
        lembra_reis();
        poe_fase(x.homens, x.maior);
        agres = x.agressivo;
        const Cor stm = c == brancas ? x.jogam : outra(x.jogam);
        for (const Cor own : cores) {
            estima(own, stm);
            EXPECT_NEAR(conta_de(x.que, c), x.valor, 1e-3) << x.nome << ", " << campo;
        }
    }
};

int entre_casas(std::string_view a, std::string_view b) {
    return proximidade(a[0] - 'a', a[1] - '1', b[0] - 'a', b[1] - '1');
}
double centro_em(std::string_view nome) { return static_cast<double>(centro[casa_de(nome)]); }

// Two breakthroughs and a free way; one breakthrough and a free way.
constexpr double solto = 25 + 25 + 33;
constexpr double solto_na_borda = 25 + 33;

// clang-format off
const std::vector<Caso> rompimentos{
    {"ToBothSides",                          "8/8/8/8/4P3/8/8/8",       solto},
    {"OfTheFirstFileToOneSide",              "8/8/8/8/P7/8/8/8",        solto_na_borda},
    {"OfTheLastFileToOneSide",               "8/8/8/8/7P/8/8/8",        solto_na_borda},
    {"FromTheFirstRank",                     "8/8/8/8/8/8/8/4P3",       solto},
    {"FromTheFifthRank",                     "8/8/8/4P3/8/8/8/8",       solto},
    {"NotFromTheSixthRank",                  "8/8/4P3/8/8/8/8/8",       33},
    {"StoppedAheadTwoAway",                  "8/8/4p3/8/4P3/8/8/8",     0},
    {"StoppedAheadThreeAway",                "8/4p3/8/8/4P3/8/8/8",     0},
    {"StoppedAheadFourAway",                 "8/8/4p3/8/8/8/4P3/8",     0},
    {"StoppedAheadFiveAway",                 "8/4p3/8/8/8/8/4P3/8",     0},
    {"StoppedAheadSixAway",                  "8/4p3/8/8/8/8/8/4P3",     0},
    {"NotStoppedRightAhead",                 "8/8/8/4p3/4P3/8/8/8",     50},
    {"NotStoppedOnTheLastRank",              "4p3/8/8/8/4P3/8/8/8",     solto},
    {"NotStoppedFromBehind",                 "8/8/8/8/4P3/4p3/8/8",     solto},
    {"StoppedBeyondTheHigherFileTwoAway",    "8/8/6p1/8/4P3/8/8/8",     solto - 25},
    {"StoppedBeyondTheHigherFileThreeAway",  "8/6p1/8/8/4P3/8/8/8",     solto - 25},
    {"StoppedBeyondTheHigherFileFiveAway",   "8/6p1/8/8/8/8/4P3/8",     solto - 25},
    {"StoppedBeyondTheLowerFileTwoAway",     "8/8/2p5/8/4P3/8/8/8",     solto - 25},
    {"StoppedBeyondTheLowerFileFourAway",    "8/8/2p5/8/8/8/4P3/8",     solto - 25},
    {"NotStoppedBeyondOneAhead",             "8/8/8/2p3p1/4P3/8/8/8",   solto},
    {"NotStoppedBeyondOnTheLastRank",        "2p3p1/8/8/8/4P3/8/8/8",   solto},
    {"NotStoppedAroundTheHigherEdge",        "8/8/p7/8/6P1/8/8/8",      solto},
    {"NotStoppedAroundTheLowerEdge",         "8/8/7p/8/1P6/8/8/8",      solto},
    {"NotOntoAnEnemyPawn",                   "8/8/8/5p2/4P3/8/8/8",     25},
    {"NotOntoAnEnemyPawnOfTheLowerFile",     "8/8/8/3p4/4P3/8/8/8",     25},
    // d5 is loose; e4 has the way, one side, the pawn beside it and its cover.
    {"NotOntoAnOwnPawn",                     "8/8/8/3P4/4P3/8/8/8",     solto + 33 + 25 + 10 + 11},
    {"NotOntoAnOwnPawnOfTheHigherFile",      "8/8/8/5P2/4P3/8/8/8",     solto + 33 + 25 + 10 + 11},
    {"OntoAPiece",                           "8/8/8/5n2/4P3/8/8/8",     solto, Que::posicao, cheio, forte, pretas},
};

const std::vector<Caso> passados{
    {"ToTheSeventhRank",                     "8/8/4P3/8/8/8/8/8",       33},
    {"NotFromTheSeventhRankItself",          "8/4P3/8/8/8/8/8/8",       100},
    {"NotFromTheLastRank",                   "4P3/8/8/8/8/8/8/8",       0},
    {"StoppedAheadByAnEnemy",                "8/4p3/4P3/8/8/8/8/8",     0},
    {"StoppedAheadByAnOwnPawn",              "8/8/4P3/8/4P3/8/8/8",     33 + 50},
    {"StoppedRightAheadByAnOwnPawn",         "8/8/8/4P3/4P3/8/8/8",     solto + 50},
    {"StoppedFromTheHigherFile",             "8/8/5p2/8/4P3/8/8/8",     50},
    {"StoppedFromTheLowerFile",              "8/8/3p4/8/4P3/8/8/8",     50},
    {"StoppedFromTheFileBesideOnTheSeventh", "8/5p2/8/8/4P3/8/8/8",     50},
    {"NotStoppedFromTheLastRank",            "5p2/8/8/8/4P3/8/8/8",     solto},
    {"NotStoppedFromItsOwnRank",             "8/8/8/8/4Pp2/8/8/8",      solto},
    {"NotStoppedAroundTheEdge",              "8/7p/8/8/P7/8/8/8",       solto_na_borda},
    {"NotStoppedByAPiece",                   "8/8/4n3/8/4P3/8/8/8",     solto},
    // e3: the pawn d5 beside its way counts, for it is before the stop e6; the pawn d7 beyond does not. d5 keeps one
    // breakthrough.
    {"OwnPawnsBesideCountUpToTheStop",       "8/3P4/4p3/3P4/8/4P3/8/8", 10 + 25 + 100},
    {"OwnPawnsBesideTheStopDoNotCount",      "8/8/8/4pP2/8/4P3/8/8",    solto},
    {"OwnPawnsBesideOnBothSidesCount",       "8/8/8/5P2/3P4/8/4P3/8",   10 + 10 + 3 * solto},
    {"OwnPawnsBesideOnTheSeventhCount",      "8/3P4/8/8/4P3/8/8/8",     100 + 10 + solto},
    {"OwnPawnsBesideOnTheLastRankDoNot",     "3P4/8/8/8/4P3/8/8/8",     solto},
    {"OwnPawnsAroundTheEdgeDoNot",           "8/7P/8/8/P7/8/8/8",       100 + solto_na_borda},
};

const std::vector<Caso> peoes_entre_si{
    {"NeighboursGetThirteenEach",            "8/8/8/8/3PP3/8/8/8",      13 + 13 + solto + solto},
    {"NeighboursOnTheEdge",                  "8/8/8/8/PP6/8/8/8",       13 + 13 + solto_na_borda + solto},
    {"NoNeighboursAroundTheEdge",            "8/8/8/8/P6P/8/8/8",       2 * solto_na_borda},
    {"NoNeighboursTwoFilesApart",            "8/8/8/8/2P1P3/8/8/8",     2 * solto},
    // The pawn that covers has a pawn beside its way and one breakthrough less.
    {"CoverGetsEleven",                      "8/8/8/8/4P3/3P4/8/8",     11 + solto + 33 + 25 + 10},
    {"CoverFromBothSidesGetsItTwice",        "8/8/8/8/4P3/3P1P2/8/8",   22 + solto + 2 * (33 + 25 + 10)},
    {"TheSeventhRankGetsAHundred",           "8/P7/8/8/8/8/8/8",        100},
    {"TheSecondRankGetsNone",                "8/8/8/8/8/8/P7/8",        solto_na_borda},
    {"DefendedMenAreSupported",              "8/8/8/8/4P3/3P1P2/8/8",   2, Que::apoios},
    {"DefendedPiecesAreSupported",           "8/8/8/8/4N3/3P4/8/8",     1, Que::apoios},
    {"NobodyIsDefendedAroundTheEdge",        "8/8/8/8/P7/7P/8/8",       0, Que::apoios},
    {"NobodyIsDefendedFromTheLastRank",      "4P3/8/8/8/8/8/8/5P2",     0, Que::apoios},
};

const std::vector<Caso> capturas_de_peao{
    {"OfAPawnToMove",                        "8/8/8/5p2/4P3/8/8/8",     25 + 20 - 10, Que::posicao, cheio, forte, brancas, 2},
    {"OfAKnightToMove",                      "8/8/8/5n2/4P3/8/8/8",     solto + 64 - 10, Que::posicao, cheio, forte, brancas, 2},
    {"OfABishopToMove",                      "8/8/8/5b2/4P3/8/8/8",     solto + 66 - 10, Que::posicao, cheio, forte, brancas, 2},
    {"OfARookToMove",                        "8/8/8/5r2/4P3/8/8/8",     solto + 100 - 10, Que::posicao, cheio, forte, brancas, 2},
    {"OfAQueenToMove",                       "8/8/8/5q2/4P3/8/8/8",     solto + 180 - 10, Que::posicao, cheio, forte, brancas, 2},
    {"OfAKingToMove",                        "8/8/8/5k2/4P3/8/8/8",     solto + 220 - 10, Que::posicao, cheio, forte, brancas, 2},
    {"ToTheLowerFileToMove",                 "8/8/8/3n4/4P3/8/8/8",     solto + 64 - 10, Que::posicao, cheio, forte, brancas, 2},
    {"ToBothSidesToMove",                    "8/8/8/3n1r2/4P3/8/8/8",   solto + 64 + 100 - 20, Que::posicao, cheio, forte, brancas, 2},
    {"ByTwoPawnsToMove",                     "8/8/8/4n3/3P1P2/8/8/8",   2 * solto + 2 * (64 - 10), Que::posicao, cheio, forte, brancas, 2},
    {"WithoutAggressionToMove",              "8/8/8/5q2/4P3/8/8/8",     solto - 10, Que::posicao, cheio, forte, brancas, 0},
    {"NoneAroundTheHigherEdge",              "8/8/8/n7/7P/8/8/8",       0, Que::alvos},
    {"NoneAroundTheLowerEdge",               "8/8/8/7n/P7/8/8/8",       0, Que::alvos},
    {"NoneFromTheLastRank",                  "4P3/8/8/8/8/8/8/3n1n2",   0, Que::alvos},
    {"OfAKnightByACoveredPawn",              "8/8/8/5n2/4P3/3P4/8/8",   11 + solto + 68 + 16, Que::posicao, cheio, forte, pretas, 2},
    {"OfABishopByACoveredPawn",              "8/8/8/5b2/4P3/3P4/8/8",   11 + solto + 68 + 16, Que::posicao, cheio, forte, pretas, 2},
    {"OfARookByACoveredPawn",                "8/8/8/5r2/4P3/3P4/8/8",   11 + solto + 68 + 25, Que::posicao, cheio, forte, pretas, 2},
    {"OfAQueenByACoveredPawn",               "8/8/8/5q2/4P3/3P4/8/8",   11 + solto + 68 + 45, Que::posicao, cheio, forte, pretas, 2},
    {"OfAKingByACoveredPawn",                "8/8/8/5k2/4P3/3P4/8/8",   11 + solto + 68 + 55, Que::posicao, cheio, forte, pretas, 2},
    {"OfAPawnByACoveredPawnCountsNothing",   "8/8/8/5p2/4P3/3P4/8/8",   11 + 25 + 25 + 10 + 33, Que::posicao, cheio, forte, pretas, 2},
    {"ByAPawnCoveredFromBothSidesCountsOnce","8/8/8/5n2/4P3/3P1P2/8/8", 22 + solto + 2 * 68 + 16, Que::posicao, cheio, forte, pretas, 2},
    {"CoveredFromTheHigherFile",             "8/8/8/3n4/4P3/5P2/8/8",   11 + solto + 68 + 16, Que::posicao, cheio, forte, pretas, 2},
    {"ByABarePawnCountsNothing",             "8/8/8/5q2/4P3/8/8/8",     solto, Que::posicao, cheio, forte, pretas, 2},
    {"ByAPawnWithANeighbourCountsNothing",   "8/8/8/5q2/3PP3/8/8/8",    26 + 2 * solto, Que::posicao, cheio, forte, pretas, 2},
    {"AreTargets",                           "8/8/8/3n1p2/4P3/8/8/8",   2, Que::alvos},
    {"AreMoves",                             "8/8/8/3n1p2/4P3/8/8/8",   3, Que::mobilidade},
};

const std::vector<Caso> passos_de_peao{
    {"DoubleStep",                           "8/8/8/8/8/8/4P3/8",       2, Que::mobilidade},
    {"NoDoubleStepOntoAMan",                 "8/8/8/8/4n3/8/4P3/8",     1, Que::mobilidade},
    {"NoStepOntoAMan",                       "8/8/8/8/8/4n3/4P3/8",     0, Que::mobilidade},
    {"NoDoubleStepFromTheThirdRank",         "8/8/8/8/8/4P3/8/8",       1, Que::mobilidade},
    {"NoDoubleStepFromTheFirstRank",         "8/8/8/8/8/8/8/4P3",       1, Que::mobilidade},
    {"ToTheLastRank",                        "8/4P3/8/8/8/8/8/8",       1, Que::mobilidade},
    {"NoneFromTheLastRank",                  "4P3/8/8/8/8/8/8/8",       0, Que::mobilidade},
};

const std::vector<Caso> peoes_e_reis{
    {"ThreeFilesShelter",                    "8/8/8/8/8/8/3PPP2/8",     3, Que::abrigo},
    {"TwoRanksAheadShelter",                 "8/8/8/8/8/3PPP2/8/8",     3, Que::abrigo},
    {"TheKingsOwnRankShelters",              "8/8/8/8/8/8/8/3P1P2",     2, Que::abrigo},
    {"ThreeRanksAheadDoNot",                 "8/8/8/8/3PPP2/8/8/8",     0, Que::abrigo},
    {"TwoFilesAwayDoNot",                    "8/8/8/8/8/8/2P3P1/8",     0, Que::abrigo},
    {"FromBehindDoNot",                      "8/8/8/8/4K3/3PPP2/8/8",   0, Que::abrigo},
    {"NoShelterOnceKingsComeOut",            "8/8/8/8/8/8/3PPP2/8",     0, Que::abrigo, meio, fraco},
    {"MarkTheMiddle",                        "8/8/8/8/4P3/8/8/8",       soma_do_centroo({"d5", "f5"}), Que::centro},
    {"MarkTheEnemysKing",                    "8/8/8/8/4P3/8/8/8",       2.0 / entre_casas("d5", "e8"), Que::atack_ksf},
    {"MarkTheirOwnKing",                     "8/8/8/8/4P3/8/8/8",       2.0 / entre_casas("d5", "e1"), Que::defesa_ksf},
    {"MarkNothingAroundTheEdge",             "8/8/8/8/P7/8/8/8",        soma_do_centroo({"b5"}), Que::centro},
    {"MarkNoMiddleOnceKingsComeOut",         "8/8/8/8/4P3/8/8/8",       0, Que::centro, meio, fraco},
    {"MarkNoKingOnceKingsComeOut",           "8/8/8/8/4P3/8/8/8",       0, Que::atack_ksf, meio, fraco},
    {"WeighTheirWayOnceKingsComeOut",        "8/8/8/4P3/8/8/8/8",       solto + 100.0 / 20 + 25.0 / entre_casas("e5", "e1"), Que::posicao, meio, fraco},
    {"DrawTheEnemysKingOnceKingsComeOut",    "8/8/8/4P3/8/8/8/8",       25.0 / entre_casas("e5", "e8"), Que::posicao_dele, meio, fraco},
    {"DrawNoKingBefore",                     "8/8/8/4P3/8/8/8/8",       0, Que::posicao_dele},
};

const std::vector<Caso> pecas_em_casa{
    {"KnightWithManyMen",                    "8/8/8/8/4N3/8/8/8",       15 + 5.0 / entre_casas("e4", "e8") + 25 * centro_em("e4")},
    {"KnightWithFewMen",                     "8/8/8/8/4N3/8/8/8",       15 + 15.0 / entre_casas("e4", "e8") + 10 * centro_em("e4"), Que::posicao, meio},
    {"KnightOnItsFirstRank",                 "8/8/8/8/8/8/8/1N6",       5.0 / entre_casas("b1", "e8") + 25 * centro_em("b1")},
    {"KnightOnItsLastRank",                  "1N6/8/8/8/8/8/8/8",       15 + 5.0 / entre_casas("b8", "e8") + 25 * centro_em("b8")},
    {"BishopWithManyMen",                    "8/8/8/8/4B3/8/8/8",       15 + 11},
    {"BishopWithFewMen",                     "8/8/8/8/4B3/8/8/8",       15 + 5, Que::posicao, meio},
    {"BishopOnTheOtherDiagonal",             "8/8/8/8/3B4/8/8/8",       15 + 11},
    {"BishopOffTheDiagonals",                "8/8/8/8/5B2/8/8/8",       15},
    {"BishopOnItsFirstRank",                 "8/8/8/8/8/8/8/2B5",       0},
    {"BishopInTheCorner",                    "8/8/8/8/8/8/8/B7",        11},
    {"RookOnTheFirstFile",                   "8/8/8/8/R7/8/8/8",        0},
    {"RookOnTheLastFile",                    "8/8/8/8/7R/8/8/8",        0},
    {"RookOffTheEdge",                       "8/8/8/8/3R4/8/8/8",       15},
    {"RookOffTheEdgeOnItsFirstRank",         "8/8/8/8/8/8/8/3R4",       15},
    {"RookWithFewMen",                       "8/8/8/8/R7/8/8/8",        10.0 / entre_casas("a4", "e8"), Que::posicao, meio},
    {"RookOnTheSeventhWithElevenMen",        "8/R7/8/8/8/8/8/8",        10.0 / entre_casas("a7", "e8"), Que::posicao, onze},
    {"RookOnTheSeventhWithTenMen",           "8/R7/8/8/8/8/8/8",        11 + 10.0 / entre_casas("a7", "e8"), Que::posicao, vazio},
    {"RookOnTheEighthWithTenMen",            "R7/8/8/8/8/8/8/8",        11 + 10.0 / entre_casas("a8", "e8"), Que::posicao, vazio},
    {"RookOnTheSixthWithTenMen",             "8/8/R7/8/8/8/8/8",        10.0 / entre_casas("a6", "e8"), Que::posicao, vazio},
    {"RookOnTheSecondWithTenMen",            "8/8/8/8/8/8/R7/8",        10.0 / entre_casas("a2", "e8"), Que::posicao, vazio},
    {"QueenWithManyMen",                     "8/8/8/8/4Q3/8/8/8",       15 + 5.0 / entre_casas("e4", "e8") + 10 * centro_em("e4")},
    {"QueenWithFewMen",                      "8/8/8/8/4Q3/8/8/8",       15 + 25.0 / entre_casas("e4", "e8") + 15 * centro_em("e4"), Que::posicao, meio},
    {"QueenOnItsFirstRank",                  "8/8/8/8/8/8/8/3Q4",       5.0 / entre_casas("d1", "e8") + 10 * centro_em("d1")},
    {"KingAtHome",                           "8/8/8/8/4K3/8/8/8",       0},
    {"KingComeOut",                          "8/8/8/8/4K3/8/8/8",       50 * centro_em("e4"), Que::posicao, meio, fraco},
    {"KingsMovesAtHome",                     "8/8/8/8/4K3/8/8/8",       0, Que::mobilidade},
    {"KingsMovesComeOut",                    "8/8/8/3PPp2/4K3/8/8/8",   6 + 2, Que::mobilidade, meio, fraco},
    {"KingsHitsComeOut",                     "8/8/8/3PPp2/4K3/8/8/8",   1, Que::alvos, meio, fraco},
    {"KingsSupportsComeOut",                 "8/8/8/3PPp2/4K3/8/8/8",   2, Que::apoios, meio, fraco},
    {"KingsMarksAtHome",                     "8/8/8/8/8/8/8/K7",        0, Que::centro},
    {"KingsMarksComeOut",                    "8/8/8/8/8/8/8/K7",        soma_do_centroo({"a2", "b1", "b2"}), Que::centro, meio, fraco},
    {"KingsMarksOfTheEnemyComeOut",          "8/8/8/8/8/8/8/K7",        soma_dos_inversos({entre_casas("a2", "e8"), entre_casas("b1", "e8"), entre_casas("b2", "e8")}), Que::atack_ksf, meio, fraco},
    {"KingsMarksOfItselfComeOut",            "8/8/8/8/8/8/8/K7",        soma_dos_inversos({3, 3, 4}), Que::defesa_ksf, meio, fraco},
};

double cavalo_em_a1(const char* rei_preto) { return 5.0 / entre_casas("a1", rei_preto) + 25 * centro_em("a1"); }
double dama_em_a1(const char* rei_preto) { return 5.0 / entre_casas("a1", rei_preto) + 10 * centro_em("a1"); }
double dama_em(const char* onde) { return 15 + 5.0 / entre_casas(onde, "e8") + 10 * centro_em(onde); }

const std::vector<Caso> ataques_a_mais_ricos{
    {"KnightAtAPawn",                        "8/8/8/8/8/1p6/8/N7",      cavalo_em_a1("e8")},
    {"KnightAtAKnight",                      "8/8/8/8/8/1n6/8/N7",      cavalo_em_a1("e8")},
    {"KnightAtABishop",                      "8/8/8/8/8/1b6/8/N7",      cavalo_em_a1("e8") + 1},
    {"KnightAtARook",                        "8/8/8/8/8/1r6/8/N7",      cavalo_em_a1("e8") + 18},
    {"KnightAtAQueen",                       "8/8/8/8/8/1q6/8/N7",      cavalo_em_a1("e8") + 58},
    {"KnightAtAKing",                        "8/8/8/8/8/1k6/8/N7",      cavalo_em_a1("b3") + 78},
    {"BishopAtAKnight",                      "8/8/8/8/8/2n5/8/B7",      11},
    {"BishopAtABishop",                      "8/8/8/8/8/2b5/8/B7",      11},
    {"BishopAtARook",                        "8/8/8/8/8/2r5/8/B7",      11 + 17},
    {"BishopAtAQueen",                       "8/8/8/8/8/2q5/8/B7",      11 + 57},
    {"BishopAtAKing",                        "8/8/8/8/8/2k5/8/B7",      11 + 77},
    {"RookAtABishop",                        "8/8/8/8/8/b7/8/R7",       0},
    {"RookAtARook",                          "8/8/8/8/8/r7/8/R7",       0},
    {"RookAtAQueen",                         "8/8/8/8/8/q7/8/R7",       40},
    {"RookAtAKing",                          "8/8/8/8/8/k7/8/R7",       60},
    {"QueenAtAKing",                         "8/8/8/8/8/k7/8/Q7",       dama_em_a1("a3")},
    {"TwoAtOnce",                            "8/8/8/8/8/q7/8/R1q5",     80},
    {"KnightNotToMove",                      "8/8/8/8/8/1q6/8/N7",      cavalo_em_a1("e8"), Que::posicao, cheio, forte, pretas},
    {"BishopNotToMove",                      "8/8/8/8/8/2q5/8/B7",      11, Que::posicao, cheio, forte, pretas},
    {"RookNotToMove",                        "8/8/8/8/8/q7/8/R7",       0, Que::posicao, cheio, forte, pretas},
    {"OwnMenAreNone",                        "8/8/8/8/8/2K5/8/B7",      11},
};

const std::vector<Caso> baterias{
    {"RooksOnARank",                         "8/8/8/8/8/8/8/R2R4",      15 + 3 + 3},
    {"RooksOnAFile",                         "8/8/8/R7/8/8/8/R7",       5 + 5},
    {"RookAndQueenOnARank",                  "8/8/8/8/8/8/8/R2Q4",      5.0 / entre_casas("d1", "e8") + 10 * centro_em("d1") + 3 + 1},
    {"RookAndQueenOnAFile",                  "8/8/8/Q7/8/8/8/R7",       dama_em("a5") + 5 + 1},
    {"QueensOnADiagonal",                    "8/8/8/8/3Q4/8/8/Q7",      dama_em_a1("e8") + dama_em("d4") + 2},
    {"QueensOnARank",                        "8/8/8/8/Q2Q4/8/8/8",      dama_em("a4") + dama_em("d4") + 2},
    {"NoneOfABishop",                        "8/8/8/8/3Q4/8/8/B7",      dama_em("d4") + 11},
    {"NoneThroughAMan",                      "8/8/8/R7/8/8/n7/R7",      0},
    {"NoneOfTheEnemys",                      "8/8/8/r7/8/8/8/R7",       0},
};

const std::vector<Caso> contas_das_pecas{
    {"KnightsMoves",                         "8/8/8/8/8/8/8/N7",        2, Que::mobilidade},
    {"KnightsMarks",                         "8/8/8/8/8/8/8/N7",        soma_do_centroo({"b3", "c2"}), Que::centro},
    {"KnightsMarksOfTheEnemysKing",          "8/8/8/8/8/8/8/N7",        soma_dos_inversos({entre_casas("b3", "e8"), entre_casas("c2", "e8")}), Que::atack_ksf},
    {"KnightsMarksOfItsOwnKing",             "8/8/8/8/8/8/8/N7",        soma_dos_inversos({entre_casas("b3", "e1"), entre_casas("c2", "e1")}), Que::defesa_ksf},
    {"BishopsMoves",                         "8/8/8/8/3B4/8/8/8",       13, Que::mobilidade},
    {"RooksMoves",                           "8/8/8/8/3R4/8/8/8",       14, Que::mobilidade},
    {"QueensMoves",                          "8/8/8/8/3Q4/8/8/8",       27, Que::mobilidade},
    {"RaysEndOnTheFirstMan",                 "8/8/p7/p7/8/8/8/R2B4",    4 + 2 + 7, Que::mobilidade},
    {"EnemiesAreTargets",                    "8/8/p7/p7/8/8/8/R2B4",    1, Que::alvos},
    {"OwnMenAreSupported",                   "8/8/p7/p7/8/8/8/R2B4",    1, Que::apoios},
    {"BishopsMarks",                         "8/8/8/2n1n3/3B4/2n1n3/8/8", soma_do_centroo({"c5", "e5", "c3", "e3"}), Que::centro},
    {"BishopsMarksOfTheEnemysKing",          "8/8/8/2n1n3/3B4/2n1n3/8/8", soma_dos_inversos({entre_casas("c5", "e8"), entre_casas("e5", "e8"), entre_casas("c3", "e8"), entre_casas("e3", "e8")}), Que::atack_ksf},
    {"RooksMarks",                           "8/8/8/8/8/n7/8/R1n5",     soma_do_centroo({"a2", "a3", "b1", "c1"}), Que::centro},
    {"RooksMarksOfTheEnemysKing",            "8/8/8/8/8/n7/8/R1n5",     soma_dos_inversos({entre_casas("a2", "e8"), entre_casas("a3", "e8"), entre_casas("b1", "e8"), entre_casas("c1", "e8")}), Que::atack_ksf},
    {"RooksMarksOfItsOwnKing",               "8/8/8/8/8/n7/8/R1n5",     soma_dos_inversos({entre_casas("a2", "e1"), entre_casas("a3", "e1"), entre_casas("b1", "e1"), entre_casas("c1", "e1")}), Que::defesa_ksf},
    {"QueensMarks",                          "6nQ/6nn/8/8/8/8/8/8",     soma_do_centroo({"g8", "g7", "h7"}), Que::centro},
    {"QueensMarksOfItsOwnKing",              "6nQ/6nn/8/8/8/8/8/8",     soma_dos_inversos({entre_casas("g8", "e1"), entre_casas("g7", "e1"), entre_casas("h7", "e1")}), Que::defesa_ksf},
    {"Pieces",                               "8/8/8/8/8/8/P7/NBRQK3",   4, Que::pecas},
    {"PointsOfAKnight",                      "8/8/8/8/8/8/P7/N3K3",     3, Que::pontos},
    {"PointsOfABishop",                      "8/8/8/8/8/8/P7/B3K3",     3, Que::pontos},
    {"PointsOfARook",                        "8/8/8/8/8/8/P7/R3K3",     5, Que::pontos},
    {"PointsOfAQueen",                       "8/8/8/8/8/8/P7/Q3K3",     9, Que::pontos},
    {"Pawns",                                "8/P7/8/8/8/8/PP6/N3K3",   3, Que::peoes},
    {"AdvanceOfAllMen",                      "N7/1P6/2R5/3Q4/4K3/5B2/6N1/7P", 8 + 7 + 6 + 5 + 4 + 3 + 2 + 1, Que::avanco},
    {"BoxOfPawnsAndKing",                    "N7/8/3P4/8/8/8/P7/4K2R",  5 * 6, Que::caixa},
    {"BoxOfTheKingAlone",                    "8/8/8/8/4K3/8/8/N6R",     1, Que::caixa},
    {"BoxOfPawnsAlone",                      "8/8/8/8/1P4P1/8/8/8",     6, Que::caixa},
};
// clang-format on

TEST_F(LeafEstimateTerms, Breakthroughs) { confere(rompimentos); }
TEST_F(LeafEstimateTerms, PassedPawns) { confere(passados); }
TEST_F(LeafEstimateTerms, PawnsTogether) { confere(peoes_entre_si); }
TEST_F(LeafEstimateTerms, CapturesOfPawns) { confere(capturas_de_peao); }
TEST_F(LeafEstimateTerms, StepsOfPawns) { confere(passos_de_peao); }
TEST_F(LeafEstimateTerms, PawnsAndKings) { confere(peoes_e_reis); }
TEST_F(LeafEstimateTerms, PiecesByTheirSquares) { confere(pecas_em_casa); }
TEST_F(LeafEstimateTerms, AttacksOnRicherMen) { confere(ataques_a_mais_ricos); }
TEST_F(LeafEstimateTerms, Batteries) { confere(baterias); }
TEST_F(LeafEstimateTerms, CountsOfThePieces) { confere(contas_das_pecas); }

TEST_F(LeafEstimate, HuntsABareKing) {
    agresprxrei = 2;
    for (const Cor c : cores) {
        muda_folha(c == brancas ? "8/8/8/8/3K4/8/8/8" : "8/8/8/3k4/8/8/8/8");
        lembra_reis();
        materialmaior = {forte, forte};
        for (const Cor own : cores) {
            npecas[c] = 14;
            npecas[outra(c)] = 0;
            estima(own, c);
            EXPECT_NEAR(contagem[c].posicao, 75.0 * (own == c ? 2 : 1) / entre_casas("d4", "e8"), 1e-5);
            npecas = {7, 7};
            estima(own, c);
            EXPECT_EQ(contagem[c].posicao, 0.0F);
        }
    }
}

TEST_F(LeafEstimate, KnowsADeadDraw) {
    const auto empata = [](const char* campo) {
        muda_folha(campo);
        lembra_reis();
        estima(brancas, brancas);
        return EMPAT != 0;
    };
    EXPECT_TRUE(empata("4k3/8/8/8/8/8/8/1NN1K3"));
    EXPECT_TRUE(empata("4kb2/8/8/8/8/8/8/2B1K3"));
    EXPECT_FALSE(empata("4k3/8/8/8/8/8/8/1NB1K3"));
    EXPECT_FALSE(empata("4k3/8/8/8/8/8/8/1NNNK3"));
    EXPECT_FALSE(empata("4k3/8/8/8/8/8/8/2BBK3"));
    EXPECT_FALSE(empata("4k3/8/8/8/8/8/P7/4K3"));
    EXPECT_FALSE(empata("4kr2/8/8/8/8/8/8/4K3"));
    EXPECT_FALSE(empata("4kq2/8/8/8/8/8/8/4K3"));
}

constexpr float intocada = 77.0F;

// A sum near the pole of its logarithm would blow a small error up.
TEST_F(LeafEstimate, StandsAsideBelowZero) {
    agres = 0;
    for (const Cor c : cores) {
        muda_folha(c == brancas ? "8/8/8/3p1p2/4P3/8/8/8" : "8/8/8/4p3/3P1P2/8/8/8");
        // Far from all pawns.
        p_x_R = {0, 0};
        p_y_R = {0, 7};
        poe_fase(meio, fraco);
        for (const Cor own : cores) {
            extraeval = intocada;
            EXPECT_FALSE(estima(own, c));
            EXPECT_LT(contagem[c].posicao + contagem[c].centro, -10.0F);
            EXPECT_EQ(extraeval, intocada);
            EXPECT_TRUE(estima(own, outra(c)));
            EXPECT_NE(extraeval, intocada);
        }
    }
}

TEST_F(LeafEstimate, StandsAsideBeyondTheTables) {
    for (const Cor c : cores) {
        tab2 = {};
        for (int i = 0; i < 56; ++i) {
            tab2[i] = static_cast<std::int8_t>(codigo(c, dama));
        }
        for (const Cor own : cores) {
            extraeval = intocada;
            tab2[56] = vazia;
            EXPECT_TRUE(estima(own, brancas));  // 504 points
            EXPECT_NE(extraeval, intocada);
            extraeval = intocada;
            tab2[56] = static_cast<std::int8_t>(codigo(c, dama));
            EXPECT_FALSE(estima(own, brancas));  // 513
            EXPECT_EQ(contagem[c].pontos, 513);
            EXPECT_EQ(extraeval, intocada);
        }
    }
}

// --- Boards by chance ---

// Puts men of the kinds on empty squares of ranks `de` to `ate`.
template <std::size_t quantos>
void povoa(Sorte& sorte, int homens, const std::array<Peca, quantos>& tipos, int de = 0, int ate = 7) {
    for (; homens > 0; --homens) {
        const int i = casa(sorte.ate(8), de + sorte.ate(ate - de + 1));
        if (tab2[i] == vazia) {
            tab2[i] = static_cast<std::int8_t>(codigo(sorte.sim() ? brancas : pretas, sorte.um_de(tipos)));
        }
    }
}

void poe_reis(Sorte& sorte, int por_cor = 1) {
    for (; por_cor > 0; --por_cor) {
        for (const int um_rei : {int{rei}, -rei}) {
            tab2[sorte.ate(64)] = static_cast<std::int8_t>(um_rei);
        }
    }
}

void final_qualquer(Sorte& sorte) {
    povoa(sorte, 1 + sorte.ate(7), std::array{peao, cavalo, bispo, torre, dama});
    poe_reis(sorte);
}
void final_de_peoes(Sorte& sorte) {
    povoa(sorte, 2 + sorte.ate(15), std::array{peao}, 1, 6);
    poe_reis(sorte);
}
void muitas_damas(Sorte& sorte) {
    povoa(sorte, 4 + sorte.ate(25), std::array{dama, dama, peao, torre});
    poe_reis(sorte);
}
void reis_demais_ou_nenhum(Sorte& sorte) {
    povoa(sorte, sorte.ate(30), std::array{peao, peao, cavalo, bispo, torre, dama});
    poe_reis(sorte, sorte.sim() ? 2 + sorte.ate(4) : 0);
}
void peoes_nas_bordas(Sorte& sorte) {
    povoa(sorte, 4 + sorte.ate(12), std::array{peao}, 0, 1);
    povoa(sorte, 4 + sorte.ate(12), std::array{peao}, 6, 7);
    povoa(sorte, sorte.ate(20), std::array{peao, cavalo, bispo, torre, dama});
    poe_reis(sorte);
}

// Either side of every threshold of the phases.
void varia_fase(Sorte& sorte) {
    const int homens = sorte.um_de(std::array{0, 1, 10, 11, 14, 15, 30});
    npecas[brancas] = sorte.ate(homens + 1);
    npecas[pretas] = homens - npecas[brancas];
    for (const Cor c : cores) {
        materialmaior[c] = sorte.um_de(std::array{0.0F, 82.0F, 90.0F, 90.5F, 96.0F, 320.0F});
    }
}

// Whether the estimate may stand, by the plain walk; nothing where its own error decides.
std::optional<bool> firme(const plain::Walk& certo) {
    bool sim = true;
    for (const plain::SideCounts& x : certo.side) {
        const float soma = x.posicao + x.centro;
        if (std::abs(soma) < 0.01F) {
            return std::nullopt;
        }
        sim = sim && soma >= 0 && x.mobilidade < 512 && x.alvos < 512 && x.apoios < 512 && x.pontos < 512;
    }
    return sim;
}

struct Balanco {
    int firmes = 0, outras = 0;
};

// One board for both engine's colours and both sides to move: the counts, the bound, and the judgement after it.
void examina(const std::string& onde, Balanco& balanco) {
    for (const Cor own : cores) {
        for (const Cor stm : cores) {
            const plain::Walk certo = plain::walk(entrada(), own, stm, false);
            extraeval = intocada;
            EMPAT = 2;
            const bool vale = estima(own, stm);
            const float estimativa = extraeval;
            compara_contas(certo, onde);
            EXPECT_EQ(vale, firme(certo).value_or(vale)) << onde;
            ++(vale ? balanco.firmes : balanco.outras);

            afina(own, stm);
            const std::array<Contagem, 2> afinada = contagem;
            const float valor = extraeval;
            if (vale) {
                EXPECT_NEAR(estimativa, valor, folga_da_estimativa / 4) << onde;
            } else {
                EXPECT_EQ(estimativa, intocada) << onde;
            }
            EXPECT_EQ(EMPAT != 0, certo.dead_draw) << onde;
            julga_de_uma_vez(own, stm);
            EXPECT_TRUE(mesmos_bits(valor, extraeval)) << onde << ": " << valor << " for " << extraeval;
            for (const Cor c : cores) {
                EXPECT_TRUE(mesmos_bits(afinada[c].posicao, contagem[c].posicao)) << onde;
                EXPECT_TRUE(mesmos_bits(afinada[c].centro, contagem[c].centro)) << onde;
                EXPECT_TRUE(mesmos_bits(afinada[c].atack_ksf, contagem[c].atack_ksf)) << onde;
                EXPECT_TRUE(mesmos_bits(afinada[c].defesa_ksf, contagem[c].defesa_ksf)) << onde;
                EXPECT_TRUE(conta_inteiros_como(certo.side[c], afinada[c])) << onde;
                EXPECT_TRUE(conta_como(certo.side[c], contagem[c])) << onde;
            }
        }
    }
}

template <class F>
Balanco examina_tabuleiros(std::uint32_t semente, int quantos, F poe) {
    Sorte sorte(semente);
    Balanco balanco;
    for (int vez = 0; vez < quantos && !::testing::Test::HasFailure(); ++vez) {
        tab2 = {};
        poe(sorte);
        varia_opcoes(sorte);
        varia_linha(sorte);
        varia_fase(sorte);
        if (sorte.ate(4) == 0) {
            desloca_reis(sorte);
        } else {
            lembra_reis();
        }
        examina("board " + std::to_string(vez), balanco);
    }
    return balanco;
}

TEST_F(LeafEstimate, OfPositionsFromGames) {
    std::vector<plain::Position> todas = plain::data_positions("positions.fen");
    const std::vector<plain::Position> jogadas = plain::positions_from_random_games(20241105, 6, 160);
    todas.insert(todas.end(), jogadas.begin(), jogadas.end());
    ASSERT_GE(todas.size(), 800U);
    std::size_t proxima = 0;
    const auto poe = [&](Sorte&) { tab2 = tabuleiro(plain::to_fen(todas[proxima++])); };
    const Balanco balanco = examina_tabuleiros(1, static_cast<int>(todas.size()), poe);
    EXPECT_GT(balanco.firmes, 3000);
}

TEST_F(LeafEstimate, OfEndings) { EXPECT_GT(examina_tabuleiros(2, 400, final_qualquer).firmes, 1500); }
TEST_F(LeafEstimate, OfPawnEndings) { EXPECT_GT(examina_tabuleiros(3, 400, final_de_peoes).firmes, 1200); }
TEST_F(LeafEstimate, OfManyQueens) { EXPECT_GT(examina_tabuleiros(4, 300, muitas_damas).firmes, 1000); }
TEST_F(LeafEstimate, OfBoardsWithNoKingOrSeveral) {
    EXPECT_GT(examina_tabuleiros(5, 300, reis_demais_ou_nenhum).firmes, 1000);
}
TEST_F(LeafEstimate, OfPawnsOnTheFirstAndTheLastRank) {
    const Balanco balanco = examina_tabuleiros(6, 400, peoes_nas_bordas);
    EXPECT_GT(balanco.firmes, 1200);
}
TEST_F(LeafEstimate, OfBoardsThatNoGameLeadsTo) { EXPECT_GT(examina_tabuleiros(7, 400, enche).firmes, 1000); }

}  // namespace
