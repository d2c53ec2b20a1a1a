// The evaluation by itself: leaves and root moves set up, judged, and what their walks count.
#pragma once

#include "support/chess_rules.h"
#include "support/engine.h"

#include "eval/counters.h"
#include "eval/weights.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>

namespace tests {

using ondrel::Counters;
using ondrel::SideCounters;

constexpr std::array<Colour, 2> colours{ondrel::white, ondrel::black};

// --- Leaves and root moves ---

// The position of the FEN, prepared for the search of its side to move; the same board stands on tab2 as the leaf.
Colour place_leaf(std::string_view fen);

// Another leaf under the root that stands, given by its board field. The kings stay remembered where they were.
void change_leaf(std::string_view field);

// The board field of a position's FEN.
std::string field_of(const rules::Position& p);

// The kings remembered where they stand on tab2; on e1 and e8 where there are none.
void remember_kings();

// The phase of the game, which a judgement takes from the root and not from the leaf: men of both colours without the
// kings (at least two), and the piece material of each colour.
void set_phase(int men, float major);

// What the last of the two routines below has counted: for a leaf the whole numbers and the sums that the judgement is
// made of, for a root move those of the walk behind the base value.
inline Counters counted;

// Judges the leaf on tab2 as the side `own` with `stm` to move, and returns extraeval. The castling value is the pass's.
float judge(Colour own, Colour stm);
// Classifies a root move of own, whose position stands on tab2, and returns its base value.
float judge_root_move(Colour own);

// The trial of a root move of c, and its class with the base value.
void try_root_move(Colour c, Move m);
void classify_trial(Colour c);

// The estimate alone, and what makes a judgement of it.
bool estimate(Colour own, Colour stm);
void judge_estimated(Colour own, Colour stm);

// What the counting in sets, the sums in order and the walk that takes everything find on tab2. The first two leave
// alone what the other fills.
void count_in_sets(Colour own, Colour stm, Counters& counters);
void sum_in_order(Colour own, Colour stm, Counters& counters);
Counters count_all_of_leaf(Colour own, Colour stm);
// The walk of the root position behind its balance.
Counters count_root();

// Calls `f` with the colours as the templates want them, the weights being those of `own`.
template <class F>
auto with_colours(Colour own, Colour stm, F f) {
    using White = std::integral_constant<Colour, ondrel::white>;
    using Black = std::integral_constant<Colour, ondrel::black>;
    ondrel::prepare_weights(own);
    if (own == ondrel::white) {
        return stm == ondrel::white ? f(White{}, White{}) : f(White{}, Black{});
    }
    return stm == ondrel::white ? f(Black{}, White{}) : f(Black{}, Black{});
}

// --- Sums worked out by hand ---

// Sums as a walk forms them: each term in double, the sum rounded to float each time.
float sum_of_inverses(std::initializer_list<int> distances);
float sum_of_terms(std::initializer_list<double> terms);
// The weight of the squares named, "e4" and so on, in the middle of the board: one of them, and as a walk sums them.
double centro_on(std::string_view name);
float sum_of_centroo(std::initializer_list<std::string_view> names);
// Nearness of two squares named.
int distance(std::string_view a, std::string_view b);

// --- Comparison ---

// Equal to the last bit; all that is no number counts as one value.
bool same_bits(float a, float b);

// Whether the counters of one colour are those expected, to the last bit; of both colours; of one, the whole numbers.
::testing::AssertionResult counts_like(const SideCounters& expected, const SideCounters& found);
::testing::AssertionResult counts_like(const Counters& expected, const Counters& found);
::testing::AssertionResult counts_whole_numbers_like(const SideCounters& expected, const SideCounters& found);

// --- By chance ---

// Draws that are the same everywhere: the engine of the library, no distribution of it.
class Chance {
public:
    explicit Chance(std::uint32_t seed) : generator_(seed) {}
    int below(int n) { return static_cast<int>(generator_() % static_cast<std::uint32_t>(n)); }
    bool coin() { return below(2) != 0; }
    template <class T, std::size_t how_many>
    T one_of(const std::array<T, how_many>& values) {
        return values.at(static_cast<std::size_t>(below(static_cast<int>(how_many))));
    }

private:
    std::mt19937 generator_;
};

// A digit of an option from 0 to 9; the last step is 9 or 10.
float option_step(Chance& chance, float last);
// The options that a judgement reads; castling, base value and balance; men and piece material of the root, either side of
// every threshold of the phases; the kings remembered, which the last test of a king need not have found on this board.
void vary_options(Chance& chance);
void vary_line(Chance& chance);
void vary_phase(Chance& chance);
void vary_kings(Chance& chance);

// Makes tab2 a board that no game leads to, up to 64 men of any kind with pawns on the last ranks and kings by the
// dozen: the counters go as far as they can.
void fill_board(Chance& chance);

}  // namespace tests
