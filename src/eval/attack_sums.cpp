#include "eval/attack_sums.h"

#include "eval/tables.h"
#include "eval/weights.h"

#include <cmath>

namespace ondrel {
namespace {

constexpr int opposite(int d) {
    for (int k = 0; k < directions; ++k) {
        if (queen_steps[k].file == -queen_steps[d].file && queen_steps[k].rank == -queen_steps[d].rank) {
            return k;
        }
    }
    return d;
}

template <class Weight>
void fill(AttackSums& s, Weight weight) {
    const auto sum_of = [&s](SquareSet set) {
        int sum = 0;
        for_each_square(set, [&](int j) { sum += s.weight[j]; });
        return sum;
    };
    for (int i = 0; i < squares; ++i) {
        s.weight[i] = static_cast<int>(std::lround(weight(i)));
    }
    for (int i = 0; i < squares; ++i) {
        for (int d = 0; d < directions; ++d) {
            const SquareSet below = rises(d) ? ray[opposite(d)][i] : ray[d][i];
            s.up_to[d][as_seen(d, i)] = rises(d) ? sum_of(below) + s.weight[i] : -sum_of(below);
        }
        s.knight[i] = sum_of(knight_leaps[i].to);
        s.king[i] = sum_of(king_leaps[i].to);
        for (const Colour c : {white, black}) {
            s.pawn[c][i] = sum_of(pawn_leaps[c][i].to);
        }
    }
    s.ready = true;
}

}  // namespace

void fill_sums_near_king(int king) {
    fill(attack_sums.near_king[king], [king](int j) { return king_units / nearness[king][j]; });
}

void fill_sums_in_centre() {
    fill(attack_sums.in_centre, [](int j) { return centre_units * static_cast<double>(centroo[j]); });
}

}  // namespace ondrel
