#include "eval/weights.h"

#include "base/options.h"
#include "board/game.h"
#include "eval/context.h"

namespace ondrel {
namespace {

BySquare near_centre(double weight) {
    BySquare t{};
    for (int i = 0; i < squares; ++i) {
        t[i] = weight * static_cast<double>(centro[i]);
    }
    return t;
}

double in_phase(ByPhase weight) { return weights.few_men ? weight.few_men : weight.many_men; }

void prepare_weights_of(Colour c) {
    const double scale = c == weights.own ? static_cast<double>(options.agresprxrei) : 1.0;
    weights.endgame_for[c] = root.materialmaior[other(c)] <= queen_or_less;
    weights.enemy_has_no_men[c] = root.npecas[other(c)] == 0;
    weights.knight_near_king[c] = divided_by_proximidade(in_phase(knight_near_king) * scale);
    weights.rook_near_king[c] = divided_by_proximidade(rook_near_king * scale);
    weights.queen_near_king[c] = divided_by_proximidade(in_phase(queen_near_king) * scale);
    weights.king_near_king[c] = divided_by_proximidade(king_near_bare_king * scale);
}

}  // namespace

void prepare_weights(Colour own) {
    refresh_context(own);
    if (weights.own == own && weights.npecas == root.npecas && weights.materialmaior == root.materialmaior &&
        weights.agresprxrei == options.agresprxrei) {
        return;
    }
    weights.own = own;
    weights.npecas = root.npecas;
    weights.materialmaior = root.materialmaior;
    weights.agresprxrei = options.agresprxrei;
    weights.few_men = men_at_root() < few_men;
    weights.very_few_men = men_at_root() < very_few_men;
    weights.bishop_on_long_diagonal =
        weights.few_men ? bishop_on_long_diagonal_few_men : bishop_on_long_diagonal_many_men;
    weights.knight_near_centre = near_centre(in_phase(knight_near_centre));
    weights.queen_near_centre = near_centre(in_phase(queen_near_centre));
    weights.king_near_centre = near_centre(king_near_centre);
    prepare_weights_of(white);
    prepare_weights_of(black);
}

}  // namespace ondrel
