// The estimate of a leaf in sets: term by term, and on thousands of boards against the walk, the sums in order and the
// judgement, which the plain engine holds to.
#include "support/boards.h"
#include "support/chess_rules.h"
#include "support/evaluation.h"
#include "support/moves.h"
#include "support/plain_judge.h"

#include "eval/leaf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace tests;

// --- How near a sum is ---

// The rule rounds a sum to float after every term: half a unit in the last place each time, which is the largest
// partial sum over 2^24. The estimate rounds the weight of a square once, to half of its own unit, and its sum once.
double slack_of_sum(double terms, double largest_partial_sum, double unit) {
    return (terms + 1) * (largest_partial_sum * std::exp2(-24) + unit / 2);
}

struct Slacks {
    double posicao, centro, atack_ksf, defesa_ksf;
};

Slacks slacks_of(const SideCounters& expected) {
    // Squares attacked, no few than there are.
    const double marks = expected.mobilidade + expected.apoios + 2 * expected.peoes;
    // A pawn has up to 24 positional terms, a piece few; an attack has one at most. Only captures by pawns can take
    // off, 10 each.
    const double terms = marks + 24 * squares;
    return {slack_of_sum(terms, std::abs(expected.posicao) + 10.0 * expected.alvos, 0),
            slack_of_sum(marks, expected.centro, std::exp2(-15)),
            slack_of_sum(marks, expected.atack_ksf, std::exp2(-20)),
            slack_of_sum(marks, expected.defesa_ksf, std::exp2(-20))};
}

// What the counting in sets has found, against the walk that takes everything.
void compare_counters(const Counters& expected, const Counters& found, const std::string& where) {
    for (const Colour c : colours) {
        const SideCounters& x = expected[c];
        const SideCounters& y = found[c];
        const Slacks slacks = slacks_of(x);
        const std::string who = where + (c == white ? " White" : " Black");
        EXPECT_TRUE(counts_whole_numbers_like(x, y)) << who;
        EXPECT_NEAR(x.posicao, y.posicao, slacks.posicao) << who;
        EXPECT_NEAR(x.centro, y.centro, slacks.centro) << who;
        EXPECT_NEAR(x.atack_ksf, y.atack_ksf, slacks.atack_ksf) << who;
        EXPECT_NEAR(x.defesa_ksf, y.defesa_ksf, slacks.defesa_ksf) << who;
    }
}

// --- The terms one by one ---

enum class Counter : std::uint8_t {
    posicao,
    posicao_of_other,  // the other colour's
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

double counter_of(const Counters& counters, Counter counter, Colour c) {
    const SideCounters& x = counters[c];
    switch (counter) {
        case Counter::posicao: return x.posicao;
        case Counter::posicao_of_other: return counters[other(c)].posicao;
        case Counter::centro: return x.centro;
        case Counter::atack_ksf: return x.atack_ksf;
        case Counter::defesa_ksf: return x.defesa_ksf;
        case Counter::mobilidade: return x.mobilidade;
        case Counter::alvos: return x.alvos;
        case Counter::apoios: return x.apoios;
        case Counter::pecas: return x.pecas;
        case Counter::peoes: return x.peoes;
        case Counter::pontos: return x.pontos;
        case Counter::avanco: return x.avanco;
        case Counter::abrigo: return x.abrigo;
        default: return x.caixa();
    }
}

// Men of the root, by which the phases go, and the piece material up to which the enemy's king comes out.
constexpr int many = 15;
constexpr int few = 14;
constexpr int eleven = 11;
constexpr int very_few = 10;
constexpr float strong = 90.5F;
constexpr float weak = 90.0F;

// A board, its kings remembered on e1 and e8 where it has none, and one counter of White's with White to move.
struct Case {
    const char* name;
    const char* field;
    double value;
    Counter counter = Counter::posicao;
    int men = many;
    float major = strong;
    Colour stm = white;
    float agres = 1;
};

// The same board from the other side.
std::string mirrored_field(const std::string& field) {
    const std::string fen = mirrored_fen(field + " w - - 0 1");
    return fen.substr(0, fen.find(' '));
}

class LeafEstimate : public ::testing::Test {
protected:
    void SetUp() override {
        fresh_process();
        place_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    }
};

// Each case for White, and from the other side for Black.
class LeafEstimateTerms : public LeafEstimate {
protected:
    static void check(const std::vector<Case>& cases) {
        for (const Case& x : cases) {
            check_for(white, x, x.field);
            check_for(black, x, mirrored_field(x.field));
        }
    }

private:
    static void check_for(Colour c, const Case& x, const std::string& field) {
        change_leaf(field);
        remember_kings();
        set_phase(x.men, x.major);
        options.agres = x.agres;
        const Colour stm = c == white ? x.stm : other(x.stm);
        for (const Colour own : colours) {
            Counters in_sets;
            count_in_sets(own, stm, in_sets);
            EXPECT_NEAR(counter_of(in_sets, x.counter, c), x.value, 1e-3) << x.name << ", " << field;
            EXPECT_NEAR(counter_of(count_all_of_leaf(own, stm), x.counter, c), x.value, 1e-3)
                << x.name << " in the walk, " << field;
        }
    }
};

// Two breakthroughs and a free way; one breakthrough and a free way.
constexpr double free_pawn = 25 + 25 + 33;
constexpr double free_pawn_on_the_edge = 25 + 33;

// clang-format off
const std::vector<Case> breakthroughs{
    {"ToBothSides",                          "8/8/8/8/4P3/8/8/8",       free_pawn},
    {"OfTheFirstFileToOneSide",              "8/8/8/8/P7/8/8/8",        free_pawn_on_the_edge},
    {"OfTheLastFileToOneSide",               "8/8/8/8/7P/8/8/8",        free_pawn_on_the_edge},
    {"FromTheFirstRank",                     "8/8/8/8/8/8/8/4P3",       free_pawn},
    {"FromTheFifthRank",                     "8/8/8/4P3/8/8/8/8",       free_pawn},
    {"NotFromTheSixthRank",                  "8/8/4P3/8/8/8/8/8",       33},
    {"StoppedAheadTwoAway",                  "8/8/4p3/8/4P3/8/8/8",     0},
    {"StoppedAheadThreeAway",                "8/4p3/8/8/4P3/8/8/8",     0},
    {"StoppedAheadFourAway",                 "8/8/4p3/8/8/8/4P3/8",     0},
    {"StoppedAheadFiveAway",                 "8/4p3/8/8/8/8/4P3/8",     0},
    {"StoppedAheadSixAway",                  "8/4p3/8/8/8/8/8/4P3",     0},
    {"NotStoppedRightAhead",                 "8/8/8/4p3/4P3/8/8/8",     50},
    {"NotStoppedOnTheLastRank",              "4p3/8/8/8/4P3/8/8/8",     free_pawn},
    {"NotStoppedFromBehind",                 "8/8/8/8/4P3/4p3/8/8",     free_pawn},
    {"StoppedBeyondTheHigherFileTwoAway",    "8/8/6p1/8/4P3/8/8/8",     free_pawn - 25},
    {"StoppedBeyondTheHigherFileThreeAway",  "8/6p1/8/8/4P3/8/8/8",     free_pawn - 25},
    {"StoppedBeyondTheHigherFileFiveAway",   "8/6p1/8/8/8/8/4P3/8",     free_pawn - 25},
    {"StoppedBeyondTheLowerFileTwoAway",     "8/8/2p5/8/4P3/8/8/8",     free_pawn - 25},
    {"StoppedBeyondTheLowerFileFourAway",    "8/8/2p5/8/8/8/4P3/8",     free_pawn - 25},
    {"NotStoppedBeyondOneAhead",             "8/8/8/2p3p1/4P3/8/8/8",   free_pawn},
    {"NotStoppedBeyondOnTheLastRank",        "2p3p1/8/8/8/4P3/8/8/8",   free_pawn},
    {"NotStoppedAroundTheHigherEdge",        "8/8/p7/8/6P1/8/8/8",      free_pawn},
    {"NotStoppedAroundTheLowerEdge",         "8/8/7p/8/1P6/8/8/8",      free_pawn},
    {"NotOntoAnEnemyPawn",                   "8/8/8/5p2/4P3/8/8/8",     25},
    {"NotOntoAnEnemyPawnOfTheLowerFile",     "8/8/8/3p4/4P3/8/8/8",     25},
    // d5 is loose; e4 has the way, one side, the pawn beside it and its cover.
    {"NotOntoAnOwnPawn",                     "8/8/8/3P4/4P3/8/8/8",     free_pawn + 33 + 25 + 10 + 11},
    {"NotOntoAnOwnPawnOfTheHigherFile",      "8/8/8/5P2/4P3/8/8/8",     free_pawn + 33 + 25 + 10 + 11},
    {"OntoAPiece",                           "8/8/8/5n2/4P3/8/8/8",     free_pawn, Counter::posicao, many, strong, black},
};

const std::vector<Case> passed_pawns{
    {"ToTheSeventhRank",                     "8/8/4P3/8/8/8/8/8",       33},
    {"NotFromTheSeventhRankItself",          "8/4P3/8/8/8/8/8/8",       100},
    {"NotFromTheLastRank",                   "4P3/8/8/8/8/8/8/8",       0},
    {"StoppedAheadByAnEnemy",                "8/4p3/4P3/8/8/8/8/8",     0},
    {"StoppedAheadByAnOwnPawn",              "8/8/4P3/8/4P3/8/8/8",     33 + 50},
    {"StoppedRightAheadByAnOwnPawn",         "8/8/8/4P3/4P3/8/8/8",     free_pawn + 50},
    {"StoppedFromTheHigherFile",             "8/8/5p2/8/4P3/8/8/8",     50},
    {"StoppedFromTheLowerFile",              "8/8/3p4/8/4P3/8/8/8",     50},
    {"StoppedFromTheFileBesideOnTheSeventh", "8/5p2/8/8/4P3/8/8/8",     50},
    {"NotStoppedFromTheLastRank",            "5p2/8/8/8/4P3/8/8/8",     free_pawn},
    {"NotStoppedFromItsOwnRank",             "8/8/8/8/4Pp2/8/8/8",      free_pawn},
    {"NotStoppedAroundTheEdge",              "8/7p/8/8/P7/8/8/8",       free_pawn_on_the_edge},
    {"NotStoppedByAPiece",                   "8/8/4n3/8/4P3/8/8/8",     free_pawn},
    // e3: the pawn d5 beside its way counts, for it is before the stop e6; the pawn d7 beyond does not. d5 keeps one
    // breakthrough.
    {"OwnPawnsBesideCountUpToTheStop",       "8/3P4/4p3/3P4/8/4P3/8/8", 10 + 25 + 100},
    {"OwnPawnsBesideTheStopDoNotCount",      "8/8/8/4pP2/8/4P3/8/8",    free_pawn},
    {"OwnPawnsBesideOnBothSidesCount",       "8/8/8/5P2/3P4/8/4P3/8",   10 + 10 + 3 * free_pawn},
    {"OwnPawnsBesideOnTheSeventhCount",      "8/3P4/8/8/4P3/8/8/8",     100 + 10 + free_pawn},
    {"OwnPawnsBesideOnTheLastRankDoNot",     "3P4/8/8/8/4P3/8/8/8",     free_pawn},
    {"OwnPawnsAroundTheEdgeDoNot",           "8/7P/8/8/P7/8/8/8",       100 + free_pawn_on_the_edge},
};

const std::vector<Case> pawns_together{
    {"NeighboursGetThirteenEach",            "8/8/8/8/3PP3/8/8/8",      13 + 13 + free_pawn + free_pawn},
    {"NeighboursOnTheEdge",                  "8/8/8/8/PP6/8/8/8",       13 + 13 + free_pawn_on_the_edge + free_pawn},
    {"NoNeighboursAroundTheEdge",            "8/8/8/8/P6P/8/8/8",       2 * free_pawn_on_the_edge},
    {"NoNeighboursTwoFilesApart",            "8/8/8/8/2P1P3/8/8/8",     2 * free_pawn},
    // The pawn that covers has a pawn beside its way and one breakthrough less.
    {"CoverGetsEleven",                      "8/8/8/8/4P3/3P4/8/8",     11 + free_pawn + 33 + 25 + 10},
    {"CoverFromBothSidesGetsItTwice",        "8/8/8/8/4P3/3P1P2/8/8",   22 + free_pawn + 2 * (33 + 25 + 10)},
    {"TheSeventhRankGetsAHundred",           "8/P7/8/8/8/8/8/8",        100},
    {"TheSecondRankGetsNone",                "8/8/8/8/8/8/P7/8",        free_pawn_on_the_edge},
    {"DefendedMenAreSupported",              "8/8/8/8/4P3/3P1P2/8/8",   2, Counter::apoios},
    {"DefendedPiecesAreSupported",           "8/8/8/8/4N3/3P4/8/8",     1, Counter::apoios},
    {"NobodyIsDefendedAroundTheEdge",        "8/8/8/8/P7/7P/8/8",       0, Counter::apoios},
    {"NobodyIsDefendedFromTheLastRank",      "4P3/8/8/8/8/8/8/5P2",     0, Counter::apoios},
};

const std::vector<Case> captures_of_pawns{
    {"OfAPawnToMove",                        "8/8/8/5p2/4P3/8/8/8",     25 + 20 - 10, Counter::posicao, many, strong, white, 2},
    {"OfAKnightToMove",                      "8/8/8/5n2/4P3/8/8/8",     free_pawn + 64 - 10, Counter::posicao, many, strong, white, 2},
    {"OfABishopToMove",                      "8/8/8/5b2/4P3/8/8/8",     free_pawn + 66 - 10, Counter::posicao, many, strong, white, 2},
    {"OfARookToMove",                        "8/8/8/5r2/4P3/8/8/8",     free_pawn + 100 - 10, Counter::posicao, many, strong, white, 2},
    {"OfAQueenToMove",                       "8/8/8/5q2/4P3/8/8/8",     free_pawn + 180 - 10, Counter::posicao, many, strong, white, 2},
    {"OfAKingToMove",                        "8/8/8/5k2/4P3/8/8/8",     free_pawn + 220 - 10, Counter::posicao, many, strong, white, 2},
    {"ToTheLowerFileToMove",                 "8/8/8/3n4/4P3/8/8/8",     free_pawn + 64 - 10, Counter::posicao, many, strong, white, 2},
    {"ToBothSidesToMove",                    "8/8/8/3n1r2/4P3/8/8/8",   free_pawn + 64 + 100 - 20, Counter::posicao, many, strong, white, 2},
    {"ByTwoPawnsToMove",                     "8/8/8/4n3/3P1P2/8/8/8",   2 * free_pawn + 2 * (64 - 10), Counter::posicao, many, strong, white, 2},
    {"WithoutAggressionToMove",              "8/8/8/5q2/4P3/8/8/8",     free_pawn - 10, Counter::posicao, many, strong, white, 0},
    {"NoneAroundTheHigherEdge",              "8/8/8/n7/7P/8/8/8",       0, Counter::alvos},
    {"NoneAroundTheLowerEdge",               "8/8/8/7n/P7/8/8/8",       0, Counter::alvos},
    {"NoneFromTheLastRank",                  "4P3/8/8/8/8/8/8/3n1n2",   0, Counter::alvos},
    {"OfAKnightByACoveredPawn",              "8/8/8/5n2/4P3/3P4/8/8",   11 + free_pawn + 68 + 16, Counter::posicao, many, strong, black, 2},
    {"OfABishopByACoveredPawn",              "8/8/8/5b2/4P3/3P4/8/8",   11 + free_pawn + 68 + 16, Counter::posicao, many, strong, black, 2},
    {"OfARookByACoveredPawn",                "8/8/8/5r2/4P3/3P4/8/8",   11 + free_pawn + 68 + 25, Counter::posicao, many, strong, black, 2},
    {"OfAQueenByACoveredPawn",               "8/8/8/5q2/4P3/3P4/8/8",   11 + free_pawn + 68 + 45, Counter::posicao, many, strong, black, 2},
    {"OfAKingByACoveredPawn",                "8/8/8/5k2/4P3/3P4/8/8",   11 + free_pawn + 68 + 55, Counter::posicao, many, strong, black, 2},
    {"OfAPawnByACoveredPawnCountsNothing",   "8/8/8/5p2/4P3/3P4/8/8",   11 + 25 + 25 + 10 + 33, Counter::posicao, many, strong, black, 2},
    {"ByAPawnCoveredFromBothSidesCountsOnce","8/8/8/5n2/4P3/3P1P2/8/8", 22 + free_pawn + 2 * 68 + 16, Counter::posicao, many, strong, black, 2},
    {"CoveredFromTheHigherFile",             "8/8/8/3n4/4P3/5P2/8/8",   11 + free_pawn + 68 + 16, Counter::posicao, many, strong, black, 2},
    {"ByABarePawnCountsNothing",             "8/8/8/5q2/4P3/8/8/8",     free_pawn, Counter::posicao, many, strong, black, 2},
    {"ByAPawnWithANeighbourCountsNothing",   "8/8/8/5q2/3PP3/8/8/8",    26 + 2 * free_pawn, Counter::posicao, many, strong, black, 2},
    {"AreTargets",                           "8/8/8/3n1p2/4P3/8/8/8",   2, Counter::alvos},
    {"AreMoves",                             "8/8/8/3n1p2/4P3/8/8/8",   3, Counter::mobilidade},
};

const std::vector<Case> steps_of_pawns{
    {"DoubleStep",                           "8/8/8/8/8/8/4P3/8",       2, Counter::mobilidade},
    {"NoDoubleStepOntoAMan",                 "8/8/8/8/4n3/8/4P3/8",     1, Counter::mobilidade},
    {"NoStepOntoAMan",                       "8/8/8/8/8/4n3/4P3/8",     0, Counter::mobilidade},
    {"NoDoubleStepFromTheThirdRank",         "8/8/8/8/8/4P3/8/8",       1, Counter::mobilidade},
    {"NoDoubleStepFromTheFirstRank",         "8/8/8/8/8/8/8/4P3",       1, Counter::mobilidade},
    {"ToTheLastRank",                        "8/4P3/8/8/8/8/8/8",       1, Counter::mobilidade},
    {"NoneFromTheLastRank",                  "4P3/8/8/8/8/8/8/8",       0, Counter::mobilidade},
};

const std::vector<Case> pawns_and_kings{
    {"ThreeFilesShelter",                    "8/8/8/8/8/8/3PPP2/8",     3, Counter::abrigo},
    {"TwoRanksAheadShelter",                 "8/8/8/8/8/3PPP2/8/8",     3, Counter::abrigo},
    {"TheKingsOwnRankShelters",              "8/8/8/8/8/8/8/3P1P2",     2, Counter::abrigo},
    {"ThreeRanksAheadDoNot",                 "8/8/8/8/3PPP2/8/8/8",     0, Counter::abrigo},
    {"TwoFilesAwayDoNot",                    "8/8/8/8/8/8/2P3P1/8",     0, Counter::abrigo},
    {"FromBehindDoNot",                      "8/8/8/8/4K3/3PPP2/8/8",   0, Counter::abrigo},
    {"NoShelterOnceKingsComeOut",            "8/8/8/8/8/8/3PPP2/8",     0, Counter::abrigo, few, weak},
    {"MarkTheMiddle",                        "8/8/8/8/4P3/8/8/8",       sum_of_centroo({"d5", "f5"}), Counter::centro},
    {"MarkTheEnemysKing",                    "8/8/8/8/4P3/8/8/8",       2.0 / distance("d5", "e8"), Counter::atack_ksf},
    {"MarkTheirOwnKing",                     "8/8/8/8/4P3/8/8/8",       2.0 / distance("d5", "e1"), Counter::defesa_ksf},
    {"MarkNothingAroundTheEdge",             "8/8/8/8/P7/8/8/8",        sum_of_centroo({"b5"}), Counter::centro},
    {"MarkNoMiddleOnceKingsComeOut",         "8/8/8/8/4P3/8/8/8",       0, Counter::centro, few, weak},
    {"MarkNoKingOnceKingsComeOut",           "8/8/8/8/4P3/8/8/8",       0, Counter::atack_ksf, few, weak},
    {"WeighTheirWayOnceKingsComeOut",        "8/8/8/4P3/8/8/8/8",       free_pawn + 100.0 / 20 + 25.0 / distance("e5", "e1"), Counter::posicao, few, weak},
    {"DrawTheEnemysKingOnceKingsComeOut",    "8/8/8/4P3/8/8/8/8",       25.0 / distance("e5", "e8"), Counter::posicao_of_other, few, weak},
    {"DrawNoKingBefore",                     "8/8/8/4P3/8/8/8/8",       0, Counter::posicao_of_other},
};

const std::vector<Case> pieces_on_squares{
    {"KnightWithManyMen",                    "8/8/8/8/4N3/8/8/8",       15 + 5.0 / distance("e4", "e8") + 25 * centro_on("e4")},
    {"KnightWithFewMen",                     "8/8/8/8/4N3/8/8/8",       15 + 15.0 / distance("e4", "e8") + 10 * centro_on("e4"), Counter::posicao, few},
    {"KnightOnItsFirstRank",                 "8/8/8/8/8/8/8/1N6",       5.0 / distance("b1", "e8") + 25 * centro_on("b1")},
    {"KnightOnItsLastRank",                  "1N6/8/8/8/8/8/8/8",       15 + 5.0 / distance("b8", "e8") + 25 * centro_on("b8")},
    {"BishopWithManyMen",                    "8/8/8/8/4B3/8/8/8",       15 + 11},
    {"BishopWithFewMen",                     "8/8/8/8/4B3/8/8/8",       15 + 5, Counter::posicao, few},
    {"BishopOnTheOtherDiagonal",             "8/8/8/8/3B4/8/8/8",       15 + 11},
    {"BishopOffTheDiagonals",                "8/8/8/8/5B2/8/8/8",       15},
    {"BishopOnItsFirstRank",                 "8/8/8/8/8/8/8/2B5",       0},
    {"BishopInTheCorner",                    "8/8/8/8/8/8/8/B7",        11},
    {"RookOnTheFirstFile",                   "8/8/8/8/R7/8/8/8",        0},
    {"RookOnTheLastFile",                    "8/8/8/8/7R/8/8/8",        0},
    {"RookOffTheEdge",                       "8/8/8/8/3R4/8/8/8",       15},
    {"RookOffTheEdgeOnItsFirstRank",         "8/8/8/8/8/8/8/3R4",       15},
    {"RookWithFewMen",                       "8/8/8/8/R7/8/8/8",        10.0 / distance("a4", "e8"), Counter::posicao, few},
    {"RookOnTheSeventhWithElevenMen",        "8/R7/8/8/8/8/8/8",        10.0 / distance("a7", "e8"), Counter::posicao, eleven},
    {"RookOnTheSeventhWithTenMen",           "8/R7/8/8/8/8/8/8",        11 + 10.0 / distance("a7", "e8"), Counter::posicao, very_few},
    {"RookOnTheEighthWithTenMen",            "R7/8/8/8/8/8/8/8",        11 + 10.0 / distance("a8", "e8"), Counter::posicao, very_few},
    {"RookOnTheSixthWithTenMen",             "8/8/R7/8/8/8/8/8",        10.0 / distance("a6", "e8"), Counter::posicao, very_few},
    {"RookOnTheSecondWithTenMen",            "8/8/8/8/8/8/R7/8",        10.0 / distance("a2", "e8"), Counter::posicao, very_few},
    {"QueenWithManyMen",                     "8/8/8/8/4Q3/8/8/8",       15 + 5.0 / distance("e4", "e8") + 10 * centro_on("e4")},
    {"QueenWithFewMen",                      "8/8/8/8/4Q3/8/8/8",       15 + 25.0 / distance("e4", "e8") + 15 * centro_on("e4"), Counter::posicao, few},
    {"QueenOnItsFirstRank",                  "8/8/8/8/8/8/8/3Q4",       5.0 / distance("d1", "e8") + 10 * centro_on("d1")},
    {"KingAtHome",                           "8/8/8/8/4K3/8/8/8",       0},
    {"KingComeOut",                          "8/8/8/8/4K3/8/8/8",       50 * centro_on("e4"), Counter::posicao, few, weak},
    {"KingsMovesAtHome",                     "8/8/8/8/4K3/8/8/8",       0, Counter::mobilidade},
    {"KingsMovesComeOut",                    "8/8/8/3PPp2/4K3/8/8/8",   6 + 2, Counter::mobilidade, few, weak},
    {"KingsHitsComeOut",                     "8/8/8/3PPp2/4K3/8/8/8",   1, Counter::alvos, few, weak},
    {"KingsSupportsComeOut",                 "8/8/8/3PPp2/4K3/8/8/8",   2, Counter::apoios, few, weak},
    {"KingsMarksAtHome",                     "8/8/8/8/8/8/8/K7",        0, Counter::centro},
    {"KingsMarksComeOut",                    "8/8/8/8/8/8/8/K7",        sum_of_centroo({"a2", "b1", "b2"}), Counter::centro, few, weak},
    {"KingsMarksOfTheEnemyComeOut",          "8/8/8/8/8/8/8/K7",        sum_of_inverses({distance("a2", "e8"), distance("b1", "e8"), distance("b2", "e8")}), Counter::atack_ksf, few, weak},
    {"KingsMarksOfItselfComeOut",            "8/8/8/8/8/8/8/K7",        sum_of_inverses({3, 3, 4}), Counter::defesa_ksf, few, weak},
};

double knight_on_a1(const char* black_king) { return 5.0 / distance("a1", black_king) + 25 * centro_on("a1"); }
double queen_on_a1(const char* black_king) { return 5.0 / distance("a1", black_king) + 10 * centro_on("a1"); }
double queen_on(const char* where) { return 15 + 5.0 / distance(where, "e8") + 10 * centro_on(where); }

const std::vector<Case> attacks_on_richer_men{
    {"KnightAtAPawn",                        "8/8/8/8/8/1p6/8/N7",      knight_on_a1("e8")},
    {"KnightAtAKnight",                      "8/8/8/8/8/1n6/8/N7",      knight_on_a1("e8")},
    {"KnightAtABishop",                      "8/8/8/8/8/1b6/8/N7",      knight_on_a1("e8") + 1},
    {"KnightAtARook",                        "8/8/8/8/8/1r6/8/N7",      knight_on_a1("e8") + 18},
    {"KnightAtAQueen",                       "8/8/8/8/8/1q6/8/N7",      knight_on_a1("e8") + 58},
    {"KnightAtAKing",                        "8/8/8/8/8/1k6/8/N7",      knight_on_a1("b3") + 78},
    {"BishopAtAKnight",                      "8/8/8/8/8/2n5/8/B7",      11},
    {"BishopAtABishop",                      "8/8/8/8/8/2b5/8/B7",      11},
    {"BishopAtARook",                        "8/8/8/8/8/2r5/8/B7",      11 + 17},
    {"BishopAtAQueen",                       "8/8/8/8/8/2q5/8/B7",      11 + 57},
    {"BishopAtAKing",                        "8/8/8/8/8/2k5/8/B7",      11 + 77},
    {"RookAtABishop",                        "8/8/8/8/8/b7/8/R7",       0},
    {"RookAtARook",                          "8/8/8/8/8/r7/8/R7",       0},
    {"RookAtAQueen",                         "8/8/8/8/8/q7/8/R7",       40},
    {"RookAtAKing",                          "8/8/8/8/8/k7/8/R7",       60},
    {"QueenAtAKing",                         "8/8/8/8/8/k7/8/Q7",       queen_on_a1("a3")},
    {"TwoAtOnce",                            "8/8/8/8/8/q7/8/R1q5",     80},
    {"KnightNotToMove",                      "8/8/8/8/8/1q6/8/N7",      knight_on_a1("e8"), Counter::posicao, many, strong, black},
    {"BishopNotToMove",                      "8/8/8/8/8/2q5/8/B7",      11, Counter::posicao, many, strong, black},
    {"RookNotToMove",                        "8/8/8/8/8/q7/8/R7",       0, Counter::posicao, many, strong, black},
    {"OwnMenAreNone",                        "8/8/8/8/8/2K5/8/B7",      11},
};

const std::vector<Case> batteries{
    {"RooksOnARank",                         "8/8/8/8/8/8/8/R2R4",      15 + 3 + 3},
    {"RooksOnAFile",                         "8/8/8/R7/8/8/8/R7",       5 + 5},
    {"RookAndQueenOnARank",                  "8/8/8/8/8/8/8/R2Q4",      5.0 / distance("d1", "e8") + 10 * centro_on("d1") + 3 + 1},
    {"RookAndQueenOnAFile",                  "8/8/8/Q7/8/8/8/R7",       queen_on("a5") + 5 + 1},
    {"QueensOnADiagonal",                    "8/8/8/8/3Q4/8/8/Q7",      queen_on_a1("e8") + queen_on("d4") + 2},
    {"QueensOnARank",                        "8/8/8/8/Q2Q4/8/8/8",      queen_on("a4") + queen_on("d4") + 2},
    {"NoneOfABishop",                        "8/8/8/8/3Q4/8/8/B7",      queen_on("d4") + 11},
    {"NoneThroughAMan",                      "8/8/8/R7/8/8/n7/R7",      0},
    {"NoneOfTheEnemys",                      "8/8/8/r7/8/8/8/R7",       0},
};

const std::vector<Case> counts_of_pieces{
    {"KnightsMoves",                         "8/8/8/8/8/8/8/N7",        2, Counter::mobilidade},
    {"KnightsMarks",                         "8/8/8/8/8/8/8/N7",        sum_of_centroo({"b3", "c2"}), Counter::centro},
    {"KnightsMarksOfTheEnemysKing",          "8/8/8/8/8/8/8/N7",        sum_of_inverses({distance("b3", "e8"), distance("c2", "e8")}), Counter::atack_ksf},
    {"KnightsMarksOfItsOwnKing",             "8/8/8/8/8/8/8/N7",        sum_of_inverses({distance("b3", "e1"), distance("c2", "e1")}), Counter::defesa_ksf},
    {"BishopsMoves",                         "8/8/8/8/3B4/8/8/8",       13, Counter::mobilidade},
    {"RooksMoves",                           "8/8/8/8/3R4/8/8/8",       14, Counter::mobilidade},
    {"QueensMoves",                          "8/8/8/8/3Q4/8/8/8",       27, Counter::mobilidade},
    {"RaysEndOnTheFirstMan",                 "8/8/p7/p7/8/8/8/R2B4",    4 + 2 + 7, Counter::mobilidade},
    {"EnemiesAreTargets",                    "8/8/p7/p7/8/8/8/R2B4",    1, Counter::alvos},
    {"OwnMenAreSupported",                   "8/8/p7/p7/8/8/8/R2B4",    1, Counter::apoios},
    {"BishopsMarks",                         "8/8/8/2n1n3/3B4/2n1n3/8/8", sum_of_centroo({"c5", "e5", "c3", "e3"}), Counter::centro},
    {"BishopsMarksOfTheEnemysKing",          "8/8/8/2n1n3/3B4/2n1n3/8/8", sum_of_inverses({distance("c5", "e8"), distance("e5", "e8"), distance("c3", "e8"), distance("e3", "e8")}), Counter::atack_ksf},
    {"RooksMarks",                           "8/8/8/8/8/n7/8/R1n5",     sum_of_centroo({"a2", "a3", "b1", "c1"}), Counter::centro},
    {"RooksMarksOfTheEnemysKing",            "8/8/8/8/8/n7/8/R1n5",     sum_of_inverses({distance("a2", "e8"), distance("a3", "e8"), distance("b1", "e8"), distance("c1", "e8")}), Counter::atack_ksf},
    {"RooksMarksOfItsOwnKing",               "8/8/8/8/8/n7/8/R1n5",     sum_of_inverses({distance("a2", "e1"), distance("a3", "e1"), distance("b1", "e1"), distance("c1", "e1")}), Counter::defesa_ksf},
    {"QueensMarks",                          "6nQ/6nn/8/8/8/8/8/8",     sum_of_centroo({"g8", "g7", "h7"}), Counter::centro},
    {"QueensMarksOfItsOwnKing",              "6nQ/6nn/8/8/8/8/8/8",     sum_of_inverses({distance("g8", "e1"), distance("g7", "e1"), distance("h7", "e1")}), Counter::defesa_ksf},
    {"Pieces",                               "8/8/8/8/8/8/P7/NBRQK3",   4, Counter::pecas},
    {"PointsOfAKnight",                      "8/8/8/8/8/8/P7/N3K3",     3, Counter::pontos},
    {"PointsOfABishop",                      "8/8/8/8/8/8/P7/B3K3",     3, Counter::pontos},
    {"PointsOfARook",                        "8/8/8/8/8/8/P7/R3K3",     5, Counter::pontos},
    {"PointsOfAQueen",                       "8/8/8/8/8/8/P7/Q3K3",     9, Counter::pontos},
    {"Pawns",                                "8/P7/8/8/8/8/PP6/N3K3",   3, Counter::peoes},
    {"AdvanceOfAllMen",                      "N7/1P6/2R5/3Q4/4K3/5B2/6N1/7P", 8 + 7 + 6 + 5 + 4 + 3 + 2 + 1, Counter::avanco},
    {"BoxOfPawnsAndKing",                    "N7/8/3P4/8/8/8/P7/4K2R",  5 * 6, Counter::caixa},
    {"BoxOfTheKingAlone",                    "8/8/8/8/4K3/8/8/N6R",     1, Counter::caixa},
    {"BoxOfPawnsAlone",                      "8/8/8/8/1P4P1/8/8/8",     6, Counter::caixa},
};
// clang-format on

TEST_F(LeafEstimateTerms, Breakthroughs) { check(breakthroughs); }
TEST_F(LeafEstimateTerms, PassedPawns) { check(passed_pawns); }
TEST_F(LeafEstimateTerms, PawnsTogether) { check(pawns_together); }
TEST_F(LeafEstimateTerms, CapturesOfPawns) { check(captures_of_pawns); }
TEST_F(LeafEstimateTerms, StepsOfPawns) { check(steps_of_pawns); }
TEST_F(LeafEstimateTerms, PawnsAndKings) { check(pawns_and_kings); }
TEST_F(LeafEstimateTerms, PiecesByTheirSquares) { check(pieces_on_squares); }
TEST_F(LeafEstimateTerms, AttacksOnRicherMen) { check(attacks_on_richer_men); }
TEST_F(LeafEstimateTerms, Batteries) { check(batteries); }
TEST_F(LeafEstimateTerms, CountsOfThePieces) { check(counts_of_pieces); }

TEST_F(LeafEstimate, HuntsABareKing) {
    options.agresprxrei = 2;
    for (const Colour c : colours) {
        change_leaf(c == white ? "8/8/8/8/3K4/8/8/8" : "8/8/8/3k4/8/8/8/8");
        remember_kings();
        root.materialmaior = {strong, strong};
        for (const Colour own : colours) {
            root.npecas[c] = 14;
            root.npecas[other(c)] = 0;
            count_in_sets(own, c, counted);
            EXPECT_NEAR(counted[c].posicao, 75.0 * (own == c ? 2 : 1) / distance("d4", "e8"), 1e-5);
            root.npecas = {7, 7};
            count_in_sets(own, c, counted);
            EXPECT_EQ(counted[c].posicao, 0.0F);
        }
    }
}

TEST_F(LeafEstimate, KnowsADeadDraw) {
    const auto is_draw = [](const char* field) {
        change_leaf(field);
        remember_kings();
        estimate(white, white);
        return judgement.EMPAT != 0;
    };
    EXPECT_TRUE(is_draw("4k3/8/8/8/8/8/8/1NN1K3"));
    EXPECT_TRUE(is_draw("4kb2/8/8/8/8/8/8/2B1K3"));
    EXPECT_FALSE(is_draw("4k3/8/8/8/8/8/8/1NB1K3"));
    EXPECT_FALSE(is_draw("4k3/8/8/8/8/8/8/1NNNK3"));
    EXPECT_FALSE(is_draw("4k3/8/8/8/8/8/8/2BBK3"));
    EXPECT_FALSE(is_draw("4k3/8/8/8/8/8/P7/4K3"));
    EXPECT_FALSE(is_draw("4kr2/8/8/8/8/8/8/4K3"));
    EXPECT_FALSE(is_draw("4kq2/8/8/8/8/8/8/4K3"));
}

constexpr float untouched = 77.0F;

// A sum near the pole of its logarithm would blow a small error up.
TEST_F(LeafEstimate, StandsAsideBelowZero) {
    options.agres = 0;
    for (const Colour c : colours) {
        change_leaf(c == white ? "8/8/8/3p1p2/4P3/8/8/8" : "8/8/8/4p3/3P1P2/8/8/8");
        // Far from all pawns.
        trial.p_xy_R = {square_of("a1"), square_of("a8")};
        set_phase(few, weak);
        for (const Colour own : colours) {
            judgement.extraeval = untouched;
            EXPECT_FALSE(estimate(own, c));
            count_in_sets(own, c, counted);
            EXPECT_LT(counted[c].posicao + counted[c].centro, -10.0F);
            EXPECT_EQ(judgement.extraeval, untouched);
            EXPECT_TRUE(estimate(own, other(c)));
            EXPECT_NE(judgement.extraeval, untouched);
        }
    }
}

TEST_F(LeafEstimate, StandsAsideBeyondTheTables) {
    for (const Colour c : colours) {
        trial.tab2 = {};
        for (int i = 0; i < 56; ++i) {
            trial.tab2[i] = man(c, dama);
        }
        for (const Colour own : colours) {
            judgement.extraeval = untouched;
            trial.tab2[56] = no_piece;
            EXPECT_TRUE(estimate(own, white));  // 504 points
            EXPECT_NE(judgement.extraeval, untouched);
            judgement.extraeval = untouched;
            trial.tab2[56] = man(c, dama);
            EXPECT_FALSE(estimate(own, white));  // 513
            count_in_sets(own, white, counted);
            EXPECT_EQ(counted[c].pontos, 513);
            EXPECT_EQ(judgement.extraeval, untouched);
        }
    }
}

// --- Boards by chance ---

// Puts men of the kinds on empty squares of the ranks from `lowest` to `highest`.
template <std::size_t how_many>
void populate(Chance& chance, int men, const std::array<Piece, how_many>& kinds, int lowest = 0, int highest = 7) {
    for (; men > 0; --men) {
        const int i = square(chance.below(8), lowest + chance.below(highest - lowest + 1));
        if (trial.tab2[i] == no_piece) {
            trial.tab2[i] = man(chance.coin() ? white : black, chance.one_of(kinds));
        }
    }
}

void put_kings(Chance& chance, int of_each_colour = 1) {
    for (; of_each_colour > 0; --of_each_colour) {
        for (const Colour c : colours) {
            trial.tab2[chance.below(squares)] = man(c, rei);
        }
    }
}

void any_ending(Chance& chance) {
    populate(chance, 1 + chance.below(7), std::array{peao, cavalo, bispo, torre, dama});
    put_kings(chance);
}
void pawn_ending(Chance& chance) {
    populate(chance, 2 + chance.below(15), std::array{peao}, 1, 6);
    put_kings(chance);
}
void many_queens(Chance& chance) {
    populate(chance, 4 + chance.below(25), std::array{dama, dama, peao, torre});
    put_kings(chance);
}
void no_king_or_several(Chance& chance) {
    populate(chance, chance.below(30), std::array{peao, peao, cavalo, bispo, torre, dama});
    put_kings(chance, chance.coin() ? 2 + chance.below(4) : 0);
}
void pawns_on_edge_ranks(Chance& chance) {
    populate(chance, 4 + chance.below(12), std::array{peao}, 0, 1);
    populate(chance, 4 + chance.below(12), std::array{peao}, 6, 7);
    populate(chance, chance.below(20), std::array{peao, cavalo, bispo, torre, dama});
    put_kings(chance);
}

// Whether the estimate may stand, by the walk; nothing where its own error decides.
std::optional<bool> is_firm(const Counters& counters) {
    bool firm = true;
    for (const SideCounters& x : counters) {
        const float sum = x.posicao + x.centro;
        if (std::abs(sum) < 0.01F) {
            return std::nullopt;
        }
        firm = firm && sum >= 0 && x.mobilidade < 512 && x.alvos < 512 && x.apoios < 512 && x.pontos < 512;
    }
    return firm;
}

// A colour without pawns and king has no box: no rule says what its area is.
bool have_boxes() {
    const PieceSets sets = piece_sets(trial.tab2);
    const SquareSet boxed = sets.kind(peao) | sets.kind(rei);
    return (boxed & sets.of_colour[white]) != 0 && (boxed & sets.of_colour[black]) != 0;
}

// What the boards of a test have come to.
struct Outcome {
    int firm = 0, others = 0;
    float largest_deviation = 0;
};

// The leaf on tab2 for one colour of the engine and one side to move: the counters of all three, the estimate, and the
// judgement made of it.
void examine(Colour own, Colour stm, const std::string& where, Outcome& outcome) {
    const Counters expected = count_all_of_leaf(own, stm);
    Counters found;
    count_in_sets(own, stm, found);
    compare_counters(expected, found, where);
    sum_in_order(own, stm, found);
    EXPECT_TRUE(counts_like(expected, found)) << where;

    judgement.extraeval = untouched;
    judgement.EMPAT = 2;
    const bool firm = estimate(own, stm);
    const float estimated = judgement.extraeval;
    EXPECT_EQ(firm, is_firm(expected).value_or(firm)) << where;
    const auto dead_draw = judgement.EMPAT;
    EXPECT_LE(dead_draw, 1) << where;

    judge_estimated(own, stm);
    const float exact = judgement.extraeval;
    EXPECT_EQ(judgement.EMPAT, dead_draw) << where;
    if (firm) {
        ++outcome.firm;
        outcome.largest_deviation = std::max(outcome.largest_deviation, std::abs(estimated - exact));
    } else {
        ++outcome.others;
        EXPECT_EQ(estimated, untouched) << where;
    }
    if (have_boxes()) {
        const PlainLeaf judged = plain_leaf(own, stm);
        EXPECT_TRUE(same_bits(judged.extraeval, exact)) << where << ": " << exact << " for " << judged.extraeval;
        EXPECT_EQ(dead_draw != 0, judged.EMPAT) << where;
    }
}

template <class F>
Outcome examine_boards(std::uint32_t seed, int how_many, F put_board) {
    Chance chance(seed);
    Outcome outcome;
    for (int number = 0; number < how_many && !::testing::Test::HasFailure(); ++number) {
        trial.tab2 = {};
        put_board(chance);
        vary_options(chance);
        vary_line(chance);
        vary_phase(chance);
        if (chance.below(4) == 0) {
            vary_kings(chance);
        } else {
            remember_kings();
        }
        for (const Colour own : colours) {
            for (const Colour stm : colours) {
                examine(own, stm, "board " + std::to_string(number), outcome);
            }
        }
    }
    return outcome;
}

// At least so many leaves were estimated. No estimate was farther off than a hundredth of the slack, and some were off:
// without the slack a bound could lie between an estimate and its judgement.
void expect_estimates(const Outcome& outcome, int at_least) {
    EXPECT_GE(outcome.firm, at_least);
    EXPECT_GT(outcome.largest_deviation, 0.0F);
    EXPECT_LT(outcome.largest_deviation, estimate_slack / 100);
}

TEST_F(LeafEstimate, OfPositionsFromGames) {
    std::vector<rules::Position> all = rules::data_positions("positions.fen");
    const std::vector<rules::Position> played = rules::positions_from_random_games(20241105, 6, 160);
    all.insert(all.end(), played.begin(), played.end());
    ASSERT_GE(all.size(), 800U);
    std::size_t next = 0;
    const auto put_board = [&](Chance&) { trial.tab2 = board_from(all[next++]); };
    expect_estimates(examine_boards(1, static_cast<int>(all.size()), put_board), 3000);
}

TEST_F(LeafEstimate, OfEndings) { expect_estimates(examine_boards(2, 400, any_ending), 1500); }
TEST_F(LeafEstimate, OfPawnEndings) { expect_estimates(examine_boards(3, 400, pawn_ending), 1200); }
TEST_F(LeafEstimate, OfManyQueens) { expect_estimates(examine_boards(4, 300, many_queens), 1000); }
TEST_F(LeafEstimate, OfBoardsWithNoKingOrSeveral) {
    expect_estimates(examine_boards(5, 300, no_king_or_several), 1000);
}
TEST_F(LeafEstimate, OfPawnsOnTheFirstAndTheLastRank) {
    expect_estimates(examine_boards(6, 400, pawns_on_edge_ranks), 1200);
}
TEST_F(LeafEstimate, OfBoardsThatNoGameLeadsTo) { expect_estimates(examine_boards(7, 400, fill_board), 1000); }

}  // namespace
