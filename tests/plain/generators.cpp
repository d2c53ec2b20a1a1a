// The generators of the tree. There is no move list: each candidate is searched where it is found.
#include "plain/board.h"
#include "plain/node.h"

namespace plain {

// --- One candidate ---

// False: illegal, and not searched.
static bool search_candidate(Colour o, int N, Move m) {
    init_tabuleiro2_deep(N, m);
    verifica_rei(o);
    if (tree.Y) {
        return false;
    }
    ++tree.nodes;
    deep_node(o, N + 1, m);
    return true;
}

static void fold_child(int N) {
    if (N % 2 == 0 && tree.beta[N + 1] > tree.alfa[N]) {
        tree.alfa[N] = tree.beta[N + 1];
        tree.ply[N].X_D = false;
    }
    if (N % 2 == 1 && tree.alfa[N + 1] < tree.beta[N]) {
        tree.beta[N] = tree.alfa[N + 1];
        tree.ply[N].X_D = false;
    }
}

// Against the bounds of every ply above, all the way to the root.
static bool crosses_a_bound(int N) {
    if (N % 2 == 0) {
        for (int k = N - 1; k >= 1; k -= 2) {
            if (tree.alfa[N] >= tree.beta[k]) {
                return true;
            }
        }
        return tree.alfa[N] >= tree.MAXcut[N];
    }
    for (int k = N - 1; k >= 0; k -= 2) {
        if (tree.beta[N] <= tree.alfa[k]) {
            return true;
        }
    }
    return tree.beta[N] <= -tree.MAXcut[N];
}

enum class LastPly { any_value_cuts, as_elsewhere };

// After a searched child: is the move loop of the node over?
static bool is_cut_off(int N, LastPly rule) {
    fold_child(N);
    bool cut = crosses_a_bound(N);
    if (N % 2 == 1 && N >= 7 && rule == LastPly::any_value_cuts && tree.deep == N) {
        cut = true;
    }
    if (N == 6 && tree.corte_beta[5]) {
        cut = true;
    }
    if (cut) {
        move_loop_flag(N) = true;
    }
    return cut;
}

// --- Captures by victim ---

constexpr std::array<Step, 8> victim_rays_white{{{1, -1}, {-1, -1}, {1, 1}, {-1, 1}, {1, 0}, {-1, 0}, {0, 1}, {0, -1}}};
constexpr std::array<Step, 8> victim_rays_black{{{1, 1}, {-1, 1}, {1, -1}, {-1, -1}, {1, 0}, {-1, 0}, {0, 1}, {0, -1}}};

static bool attacks_along_ray(Colour o, int N, int ray, int distance, int man, int rank) {
    const bool is_first_step = distance == 1;
    if (man == code(o, rei)) {
        return is_first_step;
    }
    if (man == code(o, peao)) {
        const bool leaves_promotions_out = N % 2 == 1 && N >= 7;
        return is_first_step && ray < 2 && !(leaves_promotions_out && rank == rank_of(o, 6));
    }
    return man == code(o, dama) || man == code(o, ray < 4 ? bispo : torre);
}

// True when the generator is to return.
static bool try_capture(Colour o, int N, Move victim_first, bool only_slot) {
    if ((victim_first == tree.capture_slot[N]) != only_slot) {
        return false;
    }
    if (!search_candidate(o, N, {victim_first.c, victim_first.d, victim_first.a, victim_first.b})) {
        return false;
    }
    if (!is_cut_off(N, only_slot ? LastPly::as_elsewhere : LastPly::any_value_cuts)) {
        return false;
    }
    if (!only_slot) {
        tree.capture_slot[N] = victim_first;
    }
    return true;
}

void gerador(Colour o, int N, int victim_file, int victim_rank, bool only_slot) {
    const Board& board = tree.ply[N].tabd;
    const auto& rays = o == white ? victim_rays_white : victim_rays_black;
    for (int ray = 0; ray < 8; ++ray) {
        const Step s = rays[ray];
        int f = victim_file + s.file, r = victim_rank + s.rank, distance = 1;
        while (on_board(f, r) && man_on(board, f, r) == 0) {
            f += s.file;
            r += s.rank;
            ++distance;
        }
        if (on_board(f, r) && attacks_along_ray(o, N, ray, distance, man_on(board, f, r), r) &&
            try_capture(o, N, {victim_file, victim_rank, f, r}, only_slot)) {
            return;
        }
    }
    for (const Step s : knight_jumps) {
        const int f = victim_file + s.file, r = victim_rank + s.rank;
        if (on_board(f, r) && man_on(board, f, r) == code(o, cavalo) &&
            try_capture(o, N, {victim_file, victim_rank, f, r}, only_slot)) {
            return;
        }
    }
}

// --- Quiet moves by piece ---

static bool finish_quiet(int N, Move m, bool only_slot, LastPly rule) {
    if (!is_cut_off(N, rule)) {
        return false;
    }
    if (!only_slot) {
        tree.quiet_slot[N] = m;
    }
    return true;
}

static bool try_quiet(Colour o, int N, Move m, bool only_slot, LastPly rule) {
    if ((m == tree.quiet_slot[N]) != only_slot || !search_candidate(o, N, m)) {
        return false;
    }
    return finish_quiet(N, m, only_slot, rule);
}

static int castling_value(int N) { return N >= 16 ? 2 : N == 1 ? 10 : 10 - N / 2; }

// A castling whose squares and rights are in order and whose path is safe is searched without a trial of its own.
static bool search_castling(Colour o, int N, Castling side) {
    verifica_roque(o, N, side);
    if (tree.R) {
        return false;
    }
    ++tree.nodes;
    root.roque[o] = castling_value(N);
    deep_node(o, N + 1, castling_move(o, side));
    root.roque[o] = 0;
    return true;
}

static bool has_en_passant(Colour o, int N, int r, int to_file) {
    const Ply& ply = tree.ply[N];
    return r == rank_of(o, 4) && on_board(to_file, r) && man_on(ply.tabd, to_file, rank_of(o, 5)) == 0 &&
           ply.flags.double_step[other(o)][to_file];
}

static void analiselivre_peao(Colour o, int N, int f, int r, bool only_slot) {
    const Board& board = tree.ply[N].tabd;
    const int next = r + ahead(o);
    for (const int to_file : {f + 1, f - 1}) {
        if (has_en_passant(o, N, r, to_file) &&
            try_quiet(o, N, {f, r, to_file, next}, only_slot, LastPly::any_value_cuts)) {
            return;
        }
    }
    if (r == rank_of(o, 1) && man_on(board, f, next) == 0 && man_on(board, f, next + ahead(o)) == 0 &&
        try_quiet(o, N, {f, r, f, next + ahead(o)}, only_slot, LastPly::as_elsewhere)) {
        return;
    }
    const bool leaves_promotions_out = N % 2 == 1 && N >= 7;
    if (leaves_promotions_out && r == rank_of(o, 6)) {
        return;
    }
    if (on_board(f, next) && man_on(board, f, next) == 0) {
        try_quiet(o, N, {f, r, f, next}, only_slot, LastPly::as_elsewhere);
    }
}

static void analiselivre_rei(Colour o, int N, int f, int r, bool only_slot) {
    const LastPly rule = only_slot ? LastPly::as_elsewhere : LastPly::any_value_cuts;
    for (const Castling side : {Castling::short_side, Castling::long_side}) {
        verifica_xequemate(o, N, f, r);
        if (!tree.XM) {
            tree.ply[N].XEQUE_MATE = false;
        }
        const Move m = castling_move(o, side);
        if (N == 1 || tree.XM || !castling_is_open(o, N, side) || (m == tree.quiet_slot[N]) != only_slot) {
            continue;
        }
        if (search_castling(o, N, side) && finish_quiet(N, m, only_slot, rule)) {
            return;
        }
    }
    for (const Step s : king_steps) {
        const int to_f = f + s.file, to_r = r + s.rank;
        if (on_board(to_f, to_r) && man_on(tree.ply[N].tabd, to_f, to_r) == 0 &&
            try_quiet(o, N, {f, r, to_f, to_r}, only_slot, rule)) {
            return;
        }
    }
}

template <typename Steps>
static void analiselivre_steps(Colour o, int N, int f, int r, const Steps& steps, bool rays, bool only_slot) {
    const LastPly rule = only_slot ? LastPly::as_elsewhere : LastPly::any_value_cuts;
    for (const Step s : steps) {
        for (int to_f = f + s.file, to_r = r + s.rank;
             on_board(to_f, to_r) && man_on(tree.ply[N].tabd, to_f, to_r) == 0; to_f += s.file, to_r += s.rank) {
            if (try_quiet(o, N, {f, r, to_f, to_r}, only_slot, rule)) {
                return;
            }
            if (!rays) {
                break;
            }
        }
    }
}

void analiselivre(Colour o, int N, int piece, int f, int r, bool only_slot) {
    if (N == 1 && !(tree.beta[1] > tree.alfa[0])) {
        return;
    }
    switch (piece) {
        case peao: analiselivre_peao(o, N, f, r, only_slot); break;
        case cavalo: analiselivre_steps(o, N, f, r, knight_jumps, false, only_slot); break;
        case bispo: analiselivre_steps(o, N, f, r, bishop_rays, true, only_slot); break;
        case torre: analiselivre_steps(o, N, f, r, rook_rays, true, only_slot); break;
        case dama: analiselivre_steps(o, N, f, r, queen_rays, true, only_slot); break;
        default: analiselivre_rei(o, N, f, r, only_slot);
    }
}

// --- Promotions at the odd plies from 7 ---

static bool is_victim(Colour o, int man) { return is_of(other(o), man) && size_of(man) != rei; }

void analisepositive_peao(Colour o, int N, int f, int r) {
    if (r != rank_of(o, 6)) {
        return;
    }
    const Board& board = tree.ply[N].tabd;
    const int next = r + ahead(o);
    for (const int to_file : {f + 1, f - 1}) {
        if (on_board(to_file, next) && is_victim(o, man_on(board, to_file, next)) &&
            search_candidate(o, N, {f, r, to_file, next}) && is_cut_off(N, LastPly::as_elsewhere)) {
            return;
        }
    }
    if (man_on(board, f, next) == 0 && search_candidate(o, N, {f, r, f, next})) {
        is_cut_off(N, LastPly::as_elsewhere);
    }
}

// --- The stages of ply 1 ---

constexpr int any_victim = 0;  // the stored capture's

static bool try_staged(Colour o, Move m, bool only_slot) {
    if ((m == tree.capture_slot[1]) != only_slot || !search_candidate(o, 1, m) ||
        !is_cut_off(1, LastPly::as_elsewhere)) {
        return false;
    }
    if (!only_slot) {
        tree.capture_slot[1] = m;
    }
    return true;
}

static bool try_staged_capture(Colour o, int victim, Move m) {
    const int man = man_on(tree.ply[1].tabd, m.c, m.d);
    const bool fits = victim == any_victim ? is_victim(o, man) : man == code(other(o), victim);
    return fits && try_staged(o, m, victim == any_victim);
}

// True when the routine is to return.
template <typename Steps>
static bool try_staged_steps(Colour o, int victim, int f, int r, const Steps& steps, bool rays) {
    for (const Step s : steps) {
        int to_f = f + s.file, to_r = r + s.rank;
        while (rays && on_board(to_f, to_r) && man_on(tree.ply[1].tabd, to_f, to_r) == 0) {
            to_f += s.file;
            to_r += s.rank;
        }
        if (on_board(to_f, to_r) && try_staged_capture(o, victim, {f, r, to_f, to_r})) {
            return true;
        }
    }
    return false;
}

static void try_staged_castlings(Colour o, int f, int r, bool only_slot) {
    for (const Castling side : {Castling::short_side, Castling::long_side}) {
        verifica_xequemate(o, 1, f, r);
        if (!tree.XM) {
            tree.ply[1].XEQUE_MATE = false;
        }
        const Move m = castling_move(o, side);
        if (tree.XM || !castling_is_open(o, 1, side) || (m == tree.capture_slot[1]) != only_slot) {
            continue;
        }
        if (search_castling(o, 1, side) && is_cut_off(1, LastPly::as_elsewhere)) {
            if (!only_slot) {
                tree.capture_slot[1] = m;
            }
            return;
        }
    }
}

static void try_captures_of_ply_1(Colour o, int victim, int piece, int f, int r) {
    if (!(tree.beta[1] > tree.alfa[0])) {
        return;
    }
    const bool only_slot = victim == any_victim;
    const std::array<Step, 2> pawn_steps{{{1, ahead(o)}, {-1, ahead(o)}}};
    switch (piece) {
        case peao:
            if (try_staged_steps(o, victim, f, r, pawn_steps, false) || victim != peao) {
                return;
            }
            for (const int to_file : {f + 1, f - 1}) {
                if (has_en_passant(o, 1, r, to_file) && try_staged(o, {f, r, to_file, r + ahead(o)}, only_slot)) {
                    return;
                }
            }
            break;
        case cavalo: try_staged_steps(o, victim, f, r, knight_jumps, false); break;
        case bispo: try_staged_steps(o, victim, f, r, bishop_rays, true); break;
        case torre: try_staged_steps(o, victim, f, r, rook_rays, true); break;
        case dama: try_staged_steps(o, victim, f, r, queen_rays, true); break;
        default:
            if (!try_staged_steps(o, victim, f, r, king_steps, false) && (victim == peao || only_slot)) {
                try_staged_castlings(o, f, r, only_slot);
            }
    }
}

void analisepositive_deep1(Colour o, int victim, int piece, int f, int r) {
    try_captures_of_ply_1(o, victim, piece, f, r);
}

void analisepositivetest_deep1(Colour o, int piece, int f, int r) { try_captures_of_ply_1(o, any_victim, piece, f, r); }

}  // namespace plain
