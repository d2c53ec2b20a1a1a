#include "eval/strategy.h"

#include "base/options.h"
#include "base/ply_stack.h"
#include "board/game.h"
#include "eval/judgement.h"
#include "eval/leaf.h"
#include "eval/root_trial.h"
#include "eval/root_walk.h"

#include <algorithm>

namespace ondrel {
namespace {

// What the mover's attacks on an enemy man are worth. The rows list attackers on purpose as they do: no queen against a
// bishop, no piece against its like.
struct Threat {
    int certain;     // attacked by a man of less worth
    int undefended;  // attacked otherwise, and not defended
};
constexpr int check_on_king = 11;  // times the option Attack by check to King
constexpr Threat on_queen{100, 0}, on_rook{50, 25}, on_knight{35, 17}, on_bishop{30, 15}, on_pawn{0, 10};

int worth_of(Threat threat, int cheaper_attackers, int others, bool undefended) {
    if (cheaper_attackers != 0) {
        return threat.certain;
    }
    return others != 0 && undefended ? threat.undefended : 0;
}

template <Colour c>
int threat_to(int v, int i) {
    const AttackMaps& own = root_trial.maps[c];
    const AttackMaps& opp = root_trial.maps[other(c)];
    const bool undefended = opp.N_A[i] == 0;
    const int pawns = own.peao_ataca[i];
    const int knights = own.cavalo_ataca[i];
    const int bishops = own.bispo_ataca[i];
    const int rooks = own.torre_ataca[i];
    const int queens = own.dama_ataca[i];
    const int kings = own.rei_ataca[i];
    switch (v) {
        case rei: return root.npecas[other(c)] != 0 && own.N_A[i] != 0 ? check_on_king * options.agreschrei : 0;
        case dama: return worth_of(on_queen, pawns + bishops + knights + rooks, 0, undefended);
        case torre: return worth_of(on_rook, pawns + bishops + knights, queens + kings, undefended);
        case cavalo: return worth_of(on_knight, pawns, bishops + rooks + queens + kings, undefended);
        case bispo: return worth_of(on_bishop, pawns, knights + rooks + kings, undefended);
        default:
            return pawns + opp.peao_ataca[i] == 0
                       ? worth_of(on_pawn, 0, bishops + knights + rooks + queens + kings, undefended)
                       : 0;
    }
}

// What the enemy's attacks on an own man cost.
constexpr int loss_of_queen = 100, loss_of_rook = 50, loss_of_minor = 30, loss_of_pawn = 10;

template <Colour c>
int danger_to(int v, int i) {
    const AttackMaps& own = root_trial.maps[c];
    const AttackMaps& opp = root_trial.maps[other(c)];
    const bool outnumbered = opp.N_A[i] > own.N_A[i];
    const bool without_pawn = outnumbered && own.peao_ataca[i] == 0;
    const int minors = own.bispo_ataca[i] + own.cavalo_ataca[i];
    const int enemy_minors = opp.peao_ataca[i] + opp.bispo_ataca[i] + opp.cavalo_ataca[i];
    switch (v) {
        case dama:
            return enemy_minors + opp.torre_ataca[i] != 0 || (without_pawn && minors + own.torre_ataca[i] <= 1)
                       ? loss_of_queen
                       : 0;
        case torre: return enemy_minors != 0 || (without_pawn && minors <= 1) ? loss_of_rook : 0;
        case cavalo:
        case bispo: return opp.peao_ataca[i] != 0 || without_pawn ? loss_of_minor : 0;
        case peao: return outnumbered ? loss_of_pawn : 0;
        default: return 0;
    }
}

template <Colour c>
int tally_threats() {
    int tally = 0;
    for (int i = 0; i < squares; ++i) {
        const int x = trial.tab2[i];
        if (is_of(other(c), x)) {
            tally += threat_to<c>(value_of(x), i);
        } else if (is_of(c, x)) {
            tally -= danger_to<c>(value_of(x), i);
        }
    }
    return tally;
}

// A pawn late in the game is pushed the more the better the mover stands. Wraps at 32 bits: castling finds the value of
// the visit before it, which is scaled again and again.
template <Colour c>
void scale_MATRIZ(int tally) {
    constexpr int scale_when_equal = 4;
    const float own = root.material_a[c];
    const float opp = root.material_a[other(c)];
    const int lead = own > opp ? 1 : (own == opp ? 0 : -1);
    int& value = root_trial.MATRIZ;
    if (tally < 0) {
        value /= scale_when_equal - lead;
    } else {
        value =
            static_cast<int>(static_cast<std::uint32_t>(value) * static_cast<std::uint32_t>(scale_when_equal + lead));
    }
}

}  // namespace

template <Colour c>
void classify() {
    const int tally = tally_threats<c>();
    if (root_trial.incentiva_promo) {
        scale_MATRIZ<c>(tally);
    }
    const int value = root_trial.MATRIZ * options.matrix;
    move_class.ATAQUE = static_cast<int>(static_cast<std::uint32_t>(tally) + static_cast<std::uint32_t>(value));
    move_class.ESTRATEGIA = std::clamp(move_class.ATAQUE, lowest_class, highest_class);
}

template <Colour c>
void verifica_estrategia(const std::array<int, 2>& roque) {
    prepare_weights(c);
    const Counters counters = count_all<other(c), AllCounters<LegalMove>>(trial.tab2, trial.p_xy_R);
    judgement.extraevalll = base_value({c, roque, 0}, counters);
    classify<c>();
}

template void classify<white>();
template void classify<black>();
template void verifica_estrategia<white>(const std::array<int, 2>& roque);
template void verifica_estrategia<black>(const std::array<int, 2>& roque);

}  // namespace ondrel
