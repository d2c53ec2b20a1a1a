#include "eval/root_trial.h"

#include "board/apply.h"
#include "board/game.h"

#include <algorithm>
#include <span>

namespace ondrel {
namespace {

// --- MATRIZ ---

// The phases of the game by its half-moves.
constexpr int opening_moves = 30;
constexpr int late_moves = 70;

// A small ending named by the enemy's material, king included, and his men.
struct Ending {
    int material, men;
};

bool contains(std::span<const Ending> endings, float material, int men) {
    return std::ranges::any_of(endings,
                               [&](Ending x) { return static_cast<float>(x.material) == material && x.men == men; });
}

bool contains(std::span<const int> materials, float material) {
    return std::ranges::any_of(materials, [&](int x) { return static_cast<float>(x) == material; });
}

constexpr float bare_king = 110.0F;
constexpr std::array pawns_only{120, 130, 150};
constexpr Ending no_three_pawns{140, 1};  // the same material in one man
constexpr std::array few_pieces{153, 163, 186, 152, 162, 184, 185};
constexpr std::array<Ending, 15> endings_with_pawns{{{173, 4},
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
                                                     {180, 3}}};
constexpr std::array<Ending, 6> endings_of_own_pawns{{{142, 1}, {143, 1}, {160, 1}, {174, 2}, {175, 2}, {176, 2}}};
constexpr int divisor_for_own_pawns = 5;

// The king's destination by the ending on the board; later cases overwrite earlier ones.
template <Colour c>
int value_for_king(int to) {
    const float m = root.material_a[other(c)];
    const float w = root.material_a[c];
    const int n = root.npecas[other(c)];
    const bool three_pawns = m == static_cast<float>(no_three_pawns.material) && n != no_three_pawns.men;
    int value = 0;
    if (m == bare_king) {
        value = root.Xr[other(c)][to] + root.XP[c][to];
    }
    if (w == bare_king) {
        value = tables.posix_reifinal[c][to] + root.XP[other(c)][to];
    }
    if (contains(pawns_only, m) || three_pawns || contains(few_pieces, m) || contains(endings_with_pawns, m, n)) {
        value = root.XP[other(c)][to];
    }
    if (w != bare_king && contains(endings_of_own_pawns, m, n)) {
        value = root.XP[c][to] / divisor_for_own_pawns;
    }
    return value;
}

template <Colour c>
int value_for_pawn(int to) {
    if (game_line.nb < opening_moves) {
        return tables.posix_peao_inici[c][to];
    }
    return (game_line.nb < late_moves ? tables.posix_peao_medio : posix_peao_final)[c][to];
}

template <Colour c>
int value_of_destination(Move m) {
    const int to = m.to();
    const int near_king = root.Xr[other(c)][to];
    switch (tab[m.from()]) {
        case code(c, peao): return value_for_pawn<c>(to);
        case code(c, bispo): return tables.posix_bispo[c][to] + near_king;
        case code(c, cavalo): return tables.posix_cavalo[c][to] + near_king;
        case code(c, torre): return tables.posix_torre[c][to] + near_king;
        case code(c, dama): return tables.posix_dama[c][to] + near_king;
        case code(c, rei): return value_for_king<c>(to);
        default: return 0;
    }
}

// --- Attack maps ---

void attack_square(AttackMaps& maps, IntTable& map, int f, int r) {
    if (on_board(f, r)) {
        ++map[square(f, r)];
        ++maps.N_A[square(f, r)];
    }
}

void map_leaps(AttackMaps& maps, IntTable& map, int i, std::span<const Step> steps) {
    for (const Step s : steps) {
        attack_square(maps, map, file_of(i) + s.file, rank_of(i) + s.rank);
    }
}

void map_rays(AttackMaps& maps, IntTable& map, int i, std::span<const Step> steps) {
    for (const Step s : steps) {
        for (int f = file_of(i) + s.file, r = rank_of(i) + s.rank; on_board(f, r); f += s.file, r += s.rank) {
            attack_square(maps, map, f, r);
            if (trial.tab2[square(f, r)] != no_piece) {
                break;
            }
        }
    }
}

void map_man(int x, int i) {
    const Colour c = colour_of(x);
    AttackMaps& maps = root_trial.maps[c];
    switch (value_of(x)) {
        case peao: {
            const std::array<Step, 2> captures{{{1, forward(c)}, {-1, forward(c)}}};
            return map_leaps(maps, maps.peao_ataca, i, captures);
        }
        case cavalo: return map_leaps(maps, maps.cavalo_ataca, i, knight_steps);
        case bispo: return map_rays(maps, maps.bispo_ataca, i, bishop_steps);
        case torre: return map_rays(maps, maps.torre_ataca, i, rook_steps);
        case dama: return map_rays(maps, maps.dama_ataca, i, queen_steps);
        default: return map_leaps(maps, maps.rei_ataca, i, king_steps);
    }
}

void map_attacks() {
    root_trial.maps = {};
    for (int i = 0; i < squares; ++i) {
        if (trial.tab2[i] != no_piece) {
            map_man(trial.tab2[i], i);
        }
    }
}

}  // namespace

template <Colour c>
void init_tabuleiro2(Move m) {
    root_trial.MATRIZ = value_of_destination<c>(m);
    root_trial.incentiva_promo = tab[m.from()] == code(c, peao) && game_line.nb >= late_moves ? 1 : 0;
    try_move<c>(tab, jm, m);
    map_attacks();
}

template void init_tabuleiro2<white>(Move m);
template void init_tabuleiro2<black>(Move m);

}  // namespace ondrel
