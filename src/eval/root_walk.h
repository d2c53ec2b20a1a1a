// The sink that takes everything a walk finds: the walks at the root (base value, balance) use it with true mobility,
// the tests with that of a leaf.
#pragma once

#include "eval/mobility.h"
#include "eval/walk.h"

namespace ondrel {

// At a leaf every pseudo-legal move counts as mobility, at the root legal ones alone.
struct EveryMove {
    template <Colour c>
    static bool counts(const Board&, Move) {
        return true;
    }
};
struct LegalMove {
    template <Colour c>
    static bool counts(const Board& board, Move m) {
        verifica_liberdade<c>(board, m);
        return !liberty.YY;
    }
};

// `positional` off leaves posicao_<c> alone, as the balance does.
template <class Mobility, bool positional = true>
struct AllCounters {
    static constexpr bool counts = true;

    // King_safety_<c>: the accounting of the squares that c attacks.
    struct King_safety {
        SideCounters* side;
        std::array<int, 2> king;  // the enemy's, the own
        void mark(const std::uint8_t* in_order, int n) {
            for (int k = 0; k < n; ++k) {
                side->centro += centroo[in_order[k]];
                add_term(side->atack_ksf, 1.0 / nearness[in_order[k]][king[0]]);
                add_term(side->defesa_ksf, 1.0 / nearness[in_order[k]][king[1]]);
            }
        }
    };

    Counters side{};
    std::array<int, 2> king;  // by Colour

    explicit AllCounters(const std::array<int, 2>& king_squares) : king(king_squares) {}

    King_safety cursor(Colour c) { return {&side[c], {king[other(c)], king[c]}}; }
    void commit(Colour, const King_safety&) {}
    void whole(Colour c, int term) { real(c, term); }
    void real(Colour c, double term) {
        if constexpr (positional) {
            add_term(side[c].posicao, term);
        }
    }
    template <Colour c>
    int moves(const View& v, int from, SquareSet to) {
        int n = 0;
        for_each_square(to, [&](int i) { n += Mobility::template counts<c>(v.board, move_between(from, i)) ? 1 : 0; });
        return n;
    }
    void man_done() {}
};

// All counters of a board with `stm` to move.
template <Colour stm, class Sink>
Counters count_all(const Board& board, const std::array<int, 2>& king) {
    const PieceSets sets = piece_sets(board);
    Sink s(king);
    walk<stm>(view_of(board, sets, king), s);
    return s.side;
}

}  // namespace ondrel
