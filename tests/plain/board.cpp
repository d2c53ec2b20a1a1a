#include "plain/board.h"

#include "plain/eval.h"

namespace plain {

Board start_position() {
    Board board{};
    constexpr std::array order = {torre, cavalo, bispo, dama, rei, bispo, cavalo, torre};
    for (int f = 0; f < 8; ++f) {
        put(board, f, 0, order[f]);
        put(board, f, 1, peao);
        put(board, f, 6, -peao);
        put(board, f, 7, -order[f]);
    }
    return board;
}

// --- Attacks ---

static bool holds(const Board& board, int file, int rank, int man) {
    return on_board(file, rank) && man_on(board, file, rank) == man;
}

static bool ray_meets(const Board& board, int file, int rank, Step step, int first, int second) {
    for (int f = file + step.file, r = rank + step.rank; on_board(f, r); f += step.file, r += step.rank) {
        const int x = man_on(board, f, r);
        if (x != 0) {
            return x == first || x == second;
        }
    }
    return false;
}

bool is_attacked(const Board& board, int file, int rank, Colour by) {
    // A pawn stands one rank in front of what it attacks, seen from the attacked side.
    const int pawn_rank = rank - ahead(by);
    if (holds(board, file + 1, pawn_rank, code(by, peao)) || holds(board, file - 1, pawn_rank, code(by, peao))) {
        return true;
    }
    for (const Step s : king_steps) {
        if (holds(board, file + s.file, rank + s.rank, code(by, rei))) {
            return true;
        }
    }
    for (const Step s : knight_jumps) {
        if (holds(board, file + s.file, rank + s.rank, code(by, cavalo))) {
            return true;
        }
    }
    for (const Step s : bishop_rays) {
        if (ray_meets(board, file, rank, s, code(by, dama), code(by, bispo))) {
            return true;
        }
    }
    for (const Step s : rook_rays) {
        if (ray_meets(board, file, rank, s, code(by, dama), code(by, torre))) {
            return true;
        }
    }
    return false;
}

bool king_attacked(const Board& board, Colour c) {
    const int king = code(c, rei);
    for (int sq = 0; sq < 64; ++sq) {
        if (board[sq] == king && is_attacked(board, sq / 8, sq % 8, other(c))) {
            return true;
        }
    }
    return false;
}

void verifica_rei(Colour c) {
    const int king = code(c, rei);
    tree.Y = false;
    for (int sq = 0; sq < 64; ++sq) {
        if (tree.tab2[sq] == king) {
            root.p_x_R[c] = sq / 8;
            root.p_y_R[c] = sq % 8;
            tree.Y = tree.Y || is_attacked(tree.tab2, sq / 8, sq % 8, other(c));
        }
    }
}

void verifica_xeque(Colour c) { root.XEQUE = king_attacked(tree.tab2, other(c)); }

void verifica_xequemate(Colour c, int N, int file, int rank) {
    tree.XM = is_attacked(tree.ply[N].tabd, file, rank, other(c));
}

bool leaves_king_attacked(const Board& board, Colour c, Move m) {
    Board tab2t = board;
    const int man = man_on(tab2t, m.a, m.b);
    put(tab2t, m.c, m.d, man);
    put(tab2t, m.a, m.b, 0);
    if (man == code(c, peao) && m.d == rank_of(c, 7)) {
        put(tab2t, m.c, m.d, code(c, dama));
    }
    return king_attacked(tab2t, c);
}

// --- Moves put on boards: the steps that every form shares ---

// The rook's jump goes by the king's square and the to-file alone: nobody asks whether a rook stands in the corner.
static void move_castling_rook(Board& board, Colour c, Move m) {
    const int home = rank_of(c, 0);
    if (man_on(board, m.a, m.b) == code(c, rei) && m.a == 4 && m.b == home) {
        if (m.c == 2) {
            put(board, 3, home, code(c, torre));
            put(board, 0, home, 0);
        } else if (m.c == 6) {
            put(board, 5, home, code(c, torre));
            put(board, 7, home, 0);
        }
    }
}

static bool take_en_passant(Board& board, const Flags& flags, Colour c, Move m) {
    if (man_on(board, m.a, m.b) != code(c, peao) || m.d != rank_of(c, 5) || !flags.double_step[other(c)][m.c]) {
        return false;
    }
    put(board, m.a, m.b, 0);
    put(board, m.c, rank_of(c, 4), 0);
    put(board, m.c, m.d, code(c, peao));
    return true;
}

static void transfer(Board& board, Move m) {
    put(board, m.c, m.d, man_on(board, m.a, m.b));
    put(board, m.a, m.b, 0);
}

static void promote(Board& board, Move m) {
    if (man_on(board, m.c, m.d) == peao && m.d == 7) {
        put(board, m.c, m.d, dama);
    } else if (man_on(board, m.c, m.d) == -peao && m.d == 0) {
        put(board, m.c, m.d, -dama);
    }
}

static void note_king_and_rook(Flags& flags, int man, Colour c, Move m) {
    if (man == code(c, rei)) {
        flags.R_jm[c] = true;
    }
    if (man == code(c, torre) && m.a == 0) {
        flags.T_a_jm[c] = true;
    }
    if (man == code(c, torre) && m.a == 7) {
        flags.T_h_jm[c] = true;
    }
}

static void note_double_step(const Board& board, Flags& flags, Colour c, Move m) {
    if (man_on(board, m.a, m.b) == code(c, peao) && m.b == rank_of(c, 1) && m.d == rank_of(c, 3)) {
        flags.double_step[c][m.a] = true;
    }
}

// --- Their four forms ---

void init_tabuleiro_ply(int N, Move m) {
    Ply& ply = tree.ply[N];
    const Colour c = ply.joga_com_b_deep;
    note_king_and_rook(ply.flags, man_on(ply.tabd, m.a, m.b), c, m);
    move_castling_rook(ply.tabd, c, m);
    ply.pp_D = ply.pp_D || take_en_passant(ply.tabd, ply.flags, c, m);
    ply.flags.double_step = {};
    note_double_step(ply.tabd, ply.flags, c, m);
    if (!ply.pp_D) {
        transfer(ply.tabd, m);
    }
    promote(ply.tabd, m);
    ply.X_D = true;
    ply.pp_D = false;
}

static void put_trial_on_tab2(const Board& board, const Flags& flags, Colour c, Move m) {
    tree.tab2 = board;
    move_castling_rook(tree.tab2, c, m);
    if (!take_en_passant(tree.tab2, flags, c, m)) {
        transfer(tree.tab2, m);
    }
    promote(tree.tab2, m);
}

void init_tabuleiro2_deep(int N, Move m) {
    const Ply& ply = tree.ply[N];
    put_trial_on_tab2(ply.tabd, ply.flags, ply.joga_com_b_deep, m);
}

static void set_root_gate(bool is_stored_move) {
    root.TEST1IID = true;
    if (root.SCAN1 && !is_stored_move) {
        root.TEST1IID = false;
    }
    if (root.SCANT && is_stored_move) {
        root.TEST1IID = false;
    }
}

static void count_attack(Colour c, int kind, int file, int rank) {
    ++root.ataca[c][kind][at(file, rank)];
    ++root.N_A[c][at(file, rank)];
}

static void count_ray_attacks(const Board& board, Colour c, int kind, int file, int rank, Step step) {
    for (int f = file + step.file, r = rank + step.rank; on_board(f, r); f += step.file, r += step.rank) {
        count_attack(c, kind, f, r);
        if (man_on(board, f, r) != 0) {
            return;
        }
    }
}

static void count_step_attack(Colour c, int kind, int file, int rank) {
    if (on_board(file, rank)) {
        count_attack(c, kind, file, rank);
    }
}

static void rebuild_attack_maps(const Board& board) {
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            const int man = man_on(board, f, r);
            if (man == 0) {
                continue;
            }
            const Colour c = man > 0 ? white : black;
            int kind = 0;
            while (pieces_by_name[kind] != size_of(man)) {
                ++kind;
            }
            switch (size_of(man)) {
                case peao:
                    count_step_attack(c, kind, f + 1, r + ahead(c));
                    count_step_attack(c, kind, f - 1, r + ahead(c));
                    break;
                case cavalo:
                    for (const Step s : knight_jumps) {
                        count_step_attack(c, kind, f + s.file, r + s.rank);
                    }
                    break;
                case rei:
                    for (const Step s : king_steps) {
                        count_step_attack(c, kind, f + s.file, r + s.rank);
                    }
                    break;
                case bispo:
                    for (const Step s : bishop_rays) {
                        count_ray_attacks(board, c, kind, f, r, s);
                    }
                    break;
                case torre:
                    for (const Step s : rook_rays) {
                        count_ray_attacks(board, c, kind, f, r, s);
                    }
                    break;
                default:
                    for (const Step s : queen_rays) {
                        count_ray_attacks(board, c, kind, f, r, s);
                    }
            }
        }
    }
}

void init_tabuleiro2(Move m) {
    const Ply& ply = tree.ply[0];
    set_root_gate(m == root.aab);
    root.ataca = {};
    root.N_A = {};
    set_destination_value(m);
    put_trial_on_tab2(ply.tabd, ply.flags, root.joga_com_b, m);
    rebuild_attack_maps(tree.tab2);
}

// On the root board the colour comes from the man: both colours' rules are tried.
void play_on_root(Move m) {
    Board& tab = tree.ply[0].tabd;
    Flags& flags = tree.ply[0].flags;
    const auto is_tried = [](Colour c) { return !tree.deeppromo || c == root.joga_com_b; };
    const int man = man_on(tab, m.a, m.b);

    for (const Colour c : {white, black}) {
        if (!is_tried(c)) {
            continue;
        }
        note_king_and_rook(flags, man, c, m);
        const int home = rank_of(c, 0);
        if (!settings.CHESS_960) {
            move_castling_rook(tab, c, m);
        } else if (man == code(c, rei) && man_on(tab, m.c, m.d) == code(c, torre)) {
            root.pp = true;
            put(tab, m.a, m.b, 0);
            put(tab, m.c, m.d, 0);
            if (m.c < m.a) {
                put(tab, 2, home, code(c, rei));
                put(tab, 3, home, code(c, torre));
            } else if (m.c > m.a) {
                put(tab, 6, home, code(c, rei));
                put(tab, 5, home, code(c, torre));
            }
        }
        root.pp = root.pp || take_en_passant(tab, flags, c, m);
    }
    flags.double_step = {};
    for (const Colour c : {white, black}) {
        if (is_tried(c)) {
            note_double_step(tab, flags, c, m);
        }
    }
    if (!root.pp) {
        transfer(tab, m);
    }

    for (const Colour c : {white, black}) {
        if (!is_tried(c) || man_on(tab, m.c, m.d) != code(c, peao) || m.d != rank_of(c, 7)) {
            continue;
        }
        int promoted = peao;
        if (tree.deeppromo) {
            promoted = dama;
        } else if (root.PRs == 'q') {
            if (root.PRe == '0') {
                promoted = dama;
                root.PR = 'q';
            }
        } else if (root.PRs == '0') {
            switch (root.PRe) {
                case 'q': promoted = dama; break;
                case 'r': promoted = torre; break;
                case 'n': promoted = cavalo; break;
                case 'b': promoted = bispo; break;
                default: break;
            }
        }
        put(tab, m.c, m.d, code(c, promoted));
    }
}

// --- Castling ---

bool castling_is_open(Colour c, int N, Castling side) {
    const Ply& ply = tree.ply[N];
    const int home = rank_of(c, 0);
    const auto is_empty = [&](int file) { return man_on(ply.tabd, file, home) == 0; };
    if (ply.flags.R_jm[c]) {
        return false;
    }
    if (side == Castling::short_side) {
        return man_on(ply.tabd, 7, home) == code(c, torre) && !ply.flags.T_h_jm[c] && is_empty(5) && is_empty(6);
    }
    return man_on(ply.tabd, 0, home) == code(c, torre) && !ply.flags.T_a_jm[c] && is_empty(1) && is_empty(2) &&
           is_empty(3);
}

void verifica_roque(Colour c, int N, Castling side) {
    if (N == 0) {
        set_root_gate(castling_move(c, side) == root.aab);
    }
    const int home = rank_of(c, 0);
    const bool is_long = side == Castling::long_side;
    const int corner = is_long ? 0 : 7;
    const int crossed = is_long ? 3 : 5;
    const int reached = is_long ? 2 : 6;

    tree.tab2 = tree.ply[N].tabd;
    tree.R = is_attacked(tree.tab2, crossed, home, other(c));
    put(tree.tab2, crossed, home, code(c, torre));
    put(tree.tab2, corner, home, 0);
    put(tree.tab2, reached, home, code(c, rei));
    put(tree.tab2, 4, home, 0);
    tree.R = tree.R || is_attacked(tree.tab2, reached, home, other(c));
}

// --- Repetition of a position of the game ---

void verifica_empate() {
    root.pempate = false;
    if (!root.pempatee || root.nb > 1000) {
        return;
    }
    const bool even_rows = (root.joga_com_b == white) != tree.deeppromo;
    const int hits_needed = tree.deeppromo ? 2 : 1;
    if (!even_rows && root.nb < 2) {
        return;
    }
    const int first = even_rows ? 0 : 1;
    const int limit = even_rows ? 2 * ((root.nb - 1) / 2) : 1 + 2 * ((root.nb - 2) / 2);
    int hits = 0;
    for (int row = first; row <= limit && row < 1000; row += 2) {
        if (root.tabr1[row] == tree.tab2) {
            ++hits;
            if (hits == hits_needed) {
                root.pempate = true;
                return;
            }
        }
    }
}

}  // namespace plain
