// The same tests of legality and check as in board/attacks.h, asked in sets of squares: what the tree calls for every
// candidate. Everything here leaves Y and the king squares as the trial of the move on tab2 and the test of the king
// would.
#pragma once

#include "board/apply.h"
#include "board/attacks.h"

namespace ondrel {

// The position after the capture en passant m of c.
template <Colour c>
inline PieceSets after_en_passant(const Ply& node, Move m) {
    PieceSets x = node.sets;
    const int captured = square(m.to_file, relative_rank(c, 4));
    x.toggle(c, peao, set_of(m.from()));
    if (captured != m.from()) {
        x.clear(node.tabd[captured], captured);
    }
    x.clear(node.tabd[m.to()], m.to());
    x.toggle(c, peao, set_of(m.to()));
    return x;
}

// The position after the move m of c on a ply.
template <Colour c>
inline PieceSets sets_after(const Ply& node, Move m) {
    const int from = m.from();
    const int to = m.to();
    const int v = value_of(node.tabd[from]);
    if (v == peao && is_en_passant<c>(node.tabd, node.jm_D, m)) {
        return after_en_passant<c>(node, m);
    }
    PieceSets x = node.sets;
    // Castling rights without a king on his square move whatever stands there, nothing or an enemy included.
    const Colour owner = node.tabd[from] == code(c, static_cast<Piece>(v)) ? c : other(c);
    x.clear(node.tabd[to], to);
    x.clear(node.tabd[from], from);
    if (v == no_piece) {
        return x;
    }
    const bool promotes = owner == c && v == peao && m.to_rank == relative_rank(c, last_rank);
    x.toggle(owner, promotes ? dama : v, set_of(to));
    constexpr int home = relative_rank(c, 0);
    if (owner == c && v == rei && from == square(king_file, home) && (m.to_file == 2 || m.to_file == 6)) {
        const bool long_castling = m.to_file == 2;
        x.toggle(c, torre,
                 set_of(square(long_castling ? file_a : file_h, home)) | set_of(square(long_castling ? 3 : 5, home)));
    }
    return x;
}

// verifica_rei_<c>, asked in sets.
template <Colour c>
inline bool king_attacked(const PieceSets& m) {
    trial.Y = 0;
    for_each_square(m.of(c, rei), [&](int i) {
        trial.p_xy_R[c] = i;
        if (is_attacked(m, c, i, m.occupied())) {
            trial.Y = 1;
        }
    });
    return trial.Y;
}

// Finds the men that give check to the king of c on ply n and those that are pinned before it.
template <Colour c>
inline void find_checks_and_pins(int n) {
    Ply& node = ply[n];
    const PieceSets& m = node.sets;
    const SquareSet kings = m.of(c, rei);
    node.pinned = 0;
    node.in_check = false;
    node.targets = ~SquareSet{0};
    if (std::popcount(kings) != 1) {
        node.king_at = no_square;
        return;
    }
    const int king = first_square(kings);
    const SquareSet occupied = m.occupied();
    node.king_at = king;
    const auto check_from = [&node](SquareSet answers) {
        node.targets &= answers;
        node.in_check = true;
    };
    for_each_square(near_attackers(m, c, king), [&](int from) { check_from(set_of(from)); });
    for_each_square(line_attackers(m, c, king), [&](int from) {
        const SquareSet path = between(king, from);
        const SquareSet in_the_way = path & occupied;
        if (in_the_way == 0) {
            check_from(path | set_of(from));
        } else if (without_first(in_the_way) == 0) {
            node.pinned |= in_the_way & m.of_colour[c];
        }
    });
}

// Whether the move of a man of c on a ply leaves its king safe. The plain cases are told from what the move loop has
// prepared.
template <Colour c>
inline bool leaves_king_safe(const Ply& node, Move m) {
    const int from = m.from();
    const int to = m.to();
    if (from == node.king_at) {
        trial.p_xy_R[c] = to;
        return !is_attacked(node.sets, c, to, node.sets.occupied() & ~set_of(from));
    }
    if (node.king_at == no_square || is_en_passant<c>(node.tabd, node.jm_D, m)) {
        return !king_attacked<c>(sets_after<c>(node, m));
    }
    trial.p_xy_R[c] = node.king_at;
    return (node.targets & set_of(to)) != 0 &&
           ((node.pinned & set_of(from)) == 0 ||
            direction_between[node.king_at][from] == direction_between[node.king_at][to]);
}

// The legality test of a candidate m of c on ply n: init_tabuleiro2_deep<N> and verifica_rei_<c>.
template <Colour c>
inline bool is_legal(int n, Move m) {
    trial.Y = leaves_king_safe<c>(ply[n], m) ? 0 : 1;
    return !trial.Y;
}

}  // namespace ondrel
