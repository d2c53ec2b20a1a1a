// The replies at ply 1: captures by attacker, in stages of falling victim value, then the quiet moves of the common order.
// Called by the runs of ply 1 (ply_one.cpp). us is the side to move on tabd1, the opponent of the root.
#pragma once

#include "search/node.h"

namespace ondrel {

constexpr PlyNumber<false> ply_1{1};

// --- Captures by attacker, in five stages of falling victim value ---

// Victims of the stages 5 to 1, by K; the test form, K = 0, takes any victim.
constexpr std::array<Piece, 6> victim_of_stage{no_piece, peao, bispo, cavalo, torre, dama};
constexpr int test_form = 0;

// Searches a capture or castling found legal. Tells whether it refutes the root move.
template <Colour us>
inline bool search_staged(int K, Move m) {
    if (!search_reply<us>(ply_1, m, false)) {
        return false;
    }
    if (K != test_form) {
        slots.aag_ddg[1] = m;
    }
    return cut(ply_1);
}

// Whether the stage may take this move: the test form the stored one alone, a stage every other one.
inline bool is_due(int K, Move m) { return (m == slots.aag_ddg[1]) == (K == test_form); }

template <Colour us>
inline bool is_victim(int K, int x) {
    if (K == test_form) {
        return is_of(other(us), x) && value_of(x) != rei;
    }
    return x == code(other(us), victim_of_stage[K]);
}

template <Colour us>
inline bool try_staged(int K, Move m) {
    return is_due(K, m) && is_victim<us>(K, ply[1].tabd[m.to()]) && is_legal<us>(ply_1, m) && search_staged<us>(K, m);
}

// Castling closes the king's captures of pawns, and with it the word on check.
template <Colour us>
inline void castle_at_ply_1(int K, int from) {
    for (const CastlingSide k : {short_side, long_side}) {
        const Move m = castling_move(us, k);
        verifica_xequemate<us>(ply_1, from);
        if (trial.XM) {
            return;
        }
        ply[1].XEQUE_MATE = 0;
        if (!may_castle<us>(ply_1, k) || !is_due(K, m)) {
            continue;
        }
        verifica_roque<us>(ply_1, k);
        if (trial.R) {
            continue;
        }
        const CastlingTrial<us> kept(2);
        const CastlingMark mark(us, ply_table[1].castling);
        if (search_staged<us>(K, m)) {
            return;
        }
    }
}

template <Colour us>
inline void take_with_pawn(int K, int from) {
    const auto try_it = [K](Move m) { return try_staged<us>(K, m); };
    const auto try_en_passant = [K](Move m) {
        return is_due(K, m) && is_legal<us>(ply_1, m) && search_staged<us>(K, m);
    };
    if (!pawn_captures<us>(from, try_it) && K == 1) {
        en_passant_captures<us>(ply[1], from, try_en_passant);
    }
}

template <Colour us>
inline void take_with_piece(int K, Piece piece, int from) {
    const bool refuted = moves_onto_men(ply[1], piece, from, [K](Move m) { return try_staged<us>(K, m); });
    if (!refuted && piece == rei && (K == 1 || K == test_form)) {
        castle_at_ply_1<us>(K, from);
    }
}

// analisepositive<K>_<piece>_<us>_deep1, and with K = test_form analisepositivetest_<piece>_<us>_deep1. Does nothing once
// the root move is refuted.
template <Colour us>
inline void analisepositive_deep1(int K, Piece piece, int from) {
    if (refuted_at_ply_1(ply_1)) {
        return;
    }
    if (piece == peao) {
        take_with_pawn<us>(K, from);
    } else {
        take_with_piece<us>(K, piece, from);
    }
}

// --- The replies ---

template <Colour us>
inline bool stored_capture_of_ply_1() {
    const Move slot = slots.aag_ddg[1];
    if (!is_move(slot)) {
        return false;
    }
    const int x = ply[1].tabd[slot.from()];
    if (is_of(us, x)) {
        analisepositive_deep1<us>(test_form, static_cast<Piece>(value_of(x)), slot.from());
    }
    return bounds.corte_alfa[0];
}

template <Colour us>
inline bool stage(int K) {
    for (const Piece piece : piece_order) {
        if (men_of<us>(ply[1], piece, [K, piece](int from) {
                analisepositive_deep1<us>(K, piece, from);
                return bounds.corte_alfa[0] != 0;
            })) {
            return true;
        }
    }
    return false;
}

template <Colour us>
inline void search_replies_of_ply_1() {
    prepare_move_loop<us>(ply_1);
    if (stored_capture_of_ply_1<us>()) {
        return;
    }
    for (int K = 5; K >= 1; --K) {
        if (stage<us>(K)) {
            return;
        }
    }
    if (!stored_quiet<us>(ply_1)) {
        quiet<us>(ply_1);
    }
}

}  // namespace ondrel
