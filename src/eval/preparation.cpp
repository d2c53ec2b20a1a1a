#include "eval/preparation.h"

#include "base/numeric.h"
#include "base/options.h"
#include "board/apply.h"
#include "board/game.h"
#include "eval/judgement.h"
#include "eval/root_walk.h"

namespace ondrel {
namespace {

constexpr float material_of_king = 110.0F;
constexpr int nearness_of_king = 15;        // numerators of Xr and XP
constexpr int nearness_of_bare_king = 375;  // he is hunted
constexpr int nearness_of_pawn = 75;

void find_king(Colour c) {
    for (int i = 0; i < squares; ++i) {
        if (tab[i] == code(c, rei)) {
            trial.p_xy_R[c] = i;
        }
    }
}

// Below the weight of a king the table stands as it was.
void fill_Xr(Colour c) {
    if (root.material_a[c] < material_of_king) {
        return;
    }
    const int numerator = root.material_a[c] == material_of_king ? nearness_of_bare_king : nearness_of_king;
    for (int i = 0; i < squares; ++i) {
        root.Xr[c][i] = numerator / proximidade(i, trial.p_xy_R[c]);
    }
}

// The foremost pawn; of several on one rank, that of the highest file.
int foremost_pawn(Colour c) {
    int found = no_square;
    for (int r = 0; r < 8; ++r) {
        for (int f = 0; f < 8; ++f) {
            const int i = square(f, relative_rank(c, r));
            found = tab[i] == code(c, peao) ? i : found;
        }
    }
    return found;
}

void fill_XP(Colour c) {
    root.XP[c] = {};
    const int pawn = foremost_pawn(c);
    if (pawn == no_square) {
        return;
    }
    for (int i = 0; i < squares; ++i) {
        root.XP[c][i] = nearness_of_pawn / proximidade(i, pawn);
    }
}

void count_material() {
    std::array<int, 2> pawns{};
    root.material_a = {};
    root.npecas = {};
    for (const int x : tab) {
        if (x == no_piece) {
            continue;
        }
        const Colour c = colour_of(x);
        root.material_a[c] += static_cast<float>(value_of(x));
        root.npecas[c] += value_of(x) != rei ? 1 : 0;
        pawns[c] += value_of(x) == peao ? 1 : 0;
    }
    for (const Colour c : {white, black}) {
        root.materialmaior[c] = root.material_a[c] - 10.0F * static_cast<float>(pawns[c]) - material_of_king;
    }
    const Colour own = side_to_search();
    root.materialflot0 = root.material_a[own] - root.material_a[other(own)];
}

// The balance of the root position. Total material and advancement count against the engine here.
float balance(Colour own) {
    using Real = long double;
    prepare_weights(own);
    const Counters counters = count_all<white, AllCounters<LegalMove, false>>(tab, trial.p_xy_R);
    const SideCounters& me = counters[own];
    const SideCounters& opp = counters[other(own)];
    const auto defence = [](const SideCounters& x) {
        return static_cast<Real>(x.defesa_ksf) + count_offset + x.abrigo;
    };
    const auto attack = [](const SideCounters& x) { return static_cast<Real>(x.atack_ksf) + count_offset; };
    const auto material = [](Colour c) { return static_cast<Real>(root.material_a[c]) + advance_offset; };
    const auto points = [](const SideCounters& x) { return static_cast<Real>(x.pontos) + points_offset; };
    Real s = weight_of_material_in_balance * log_of_ratio(material(other(own)), material(own));
    s += weight_of_points * log_of_ratio(points(me), points(opp));
    s += weight_of_king_safety * log_of_ratio(defence(me), attack(opp));
    s += weight_of_king_safety * log_of_ratio(attack(me), defence(opp));
    s += options.MOB * log_of_ratio(me.mobilidade + count_offset, opp.mobilidade + count_offset);
    s += advance_per_man<Real>(opp);
    s -= advance_per_man<Real>(me);
    s += pawns_per_square<Real>(me);
    s -= pawns_per_square<Real>(opp);
    return static_cast<float>(s);
}

// What a later preparation may find as this one left it.
void prepare_what_stays() {
    for (const Colour c : {black, white}) {
        find_king(c);
        fill_Xr(c);
    }
    count_material();
}

// What the next preparation makes anew.
void prepare_what_passes() {
    fill_XP(black);
    fill_XP(white);
    root.regimen = balance(side_to_search());
}

}  // namespace

void init_tabuleiro(bool more_moves) {
    apply_to_root();
    prepare_what_stays();
    if (!more_moves) {
        prepare_what_passes();
    }
    game_line.PRe = '0';
}

void prepare_position_of_fen() {
    count_material();
    prepare_what_stays();
    prepare_what_passes();
}

}  // namespace ondrel
