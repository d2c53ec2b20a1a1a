#include "standard_uci/score.h"

#include <cmath>

namespace ondrel::standard_uci {
namespace {

// A mate is worth so much less for every move that it takes, own and answered by the opponent's.
constexpr float worth_beyond_reach = 16500.0F;
constexpr float worth_of_a_move = 1100.0F;
constexpr float least_mate = 3300.0F;
constexpr float centipawns_of_a_unit = 10.0F;

}  // namespace

bool is_score(float score) { return std::abs(score) < worth_beyond_reach; }

bool is_mate(float score) { return std::abs(score) >= least_mate; }

int moves_to_mate(float score) {
    const auto moves = static_cast<int>(std::ceil((worth_beyond_reach - std::abs(score)) / worth_of_a_move));
    return score < 0 ? -moves : moves;
}

std::string score_text(float score) {
    if (is_mate(score)) {
        return "mate " + std::to_string(moves_to_mate(score));
    }
    return "cp " + std::to_string(static_cast<int>(score * centipawns_of_a_unit));
}

}  // namespace ondrel::standard_uci
