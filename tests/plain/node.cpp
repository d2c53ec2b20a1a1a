#include "plain/node.h"

#include <algorithm>

#include "plain/board.h"
#include "plain/eval.h"
#include "plain/memory.h"
#include "plain/root.h"

namespace plain {

// --- Bounds ---

float& value_of(int N) { return N % 2 == 0 ? tree.alfa[N] : tree.beta[N]; }
bool& move_loop_flag(int N) { return N % 2 == 0 ? tree.corte_beta[N - 1] : tree.corte_alfa[N - 1]; }

bool score_is_held(float first_limit) {
    return tree.alfa[0] >= first_limit || (tree.alfa[0] >= root.ALFA0 - 5.0F && tree.alfa[0] >= -15.0F);
}

// --- Parts of a node ---

bool gives_check(Colour o, const Board& trial) {
    tree.tab2 = trial;
    verifica_rei(o);
    return tree.Y;
}

static bool is_pawn_move(Colour c, const Board& board, Move m) { return man_on(board, m.a, m.b) == code(c, peao); }

void weigh_move(Colour c, const Board& board, Move m) {
    const bool pawn = is_pawn_move(c, board, m);
    tree.promocao = pawn && m.b == rank_of(c, 6) ? 80 : 0;
    tree.ppassado = pawn && m.a != m.c && man_on(board, m.c, m.d) == 0 ? 10 : 0;
}

// The sums after the move, which has been weighed: by colour.
static std::array<float, 2> material_after(Colour c, const Ply& before, Move m) {
    std::array<float, 2> sums = before.material;
    sums[c] += static_cast<float>(tree.promocao + tree.ppassado);
    sums[other(c)] -= static_cast<float>(size_of(man_on(before.tabd, m.c, m.d)));
    return sums;
}

void set_material(int N, Colour c, int from_ply, Move m) {
    tree.ply[N].material = material_after(c, tree.ply[from_ply], m);
}

// Board and flags; the rest of a ply is set by the node.
void copy_ply(int from, int to) {
    tree.ply[to].tabd = tree.ply[from].tabd;
    tree.ply[to].flags = tree.ply[from].flags;
    tree.ply[to].X_D = tree.ply[from].X_D;
    tree.ply[to].pp_D = false;
}

static void judge_missing_replies(int N) {
    if (tree.ply[N].X_D && tree.nd == N) {
        value_of(N) = tree.ply[N].XEQUE_MATE ? mate_value(N) : static_cast<float>(root.emp);
    }
}

static void write_line_text(int k, Move m) {
    tree.line[k] = {static_cast<char>('a' + m.a), static_cast<char>('1' + m.b), static_cast<char>('a' + m.c),
                    static_cast<char>('1' + m.d)};
}

// --- Leaves ---

static void judge_leaf(Colour c, int N, Move m) {
    const Colour o = other(c);
    const Colour root_side = N % 2 == 0 ? o : c;
    const auto sums = material_after(c, tree.ply[N - 1], m);
    const long double R = sums[root_side];
    const long double O = sums[other(root_side)];
    float& value = value_of(N);

    if (N == 2) {
        value = static_cast<float>(settings.extradef ? R - O - ratio(O, R) : R - O);
        return;
    }
    value = static_cast<float>(settings.extradef ? R - O + log_ratio(R, O) * settings.MQ : R - O);
    if (!tree.EXTRA_EVAL) {
        return;
    }
    for (int k = N - 2; k >= 0; k -= 2) {
        const bool inside = N % 2 == 0 ? value > tree.alfa[k] - piecesac : value < tree.beta[k] + piecesac;
        if (!inside) {
            return;
        }
    }
    if (N % 2 == 0) {
        extra_eval(root_side);
    } else {
        extra_evall(root_side);
    }
    value += tree.extraeval;
    if (tree.EMPAT) {
        value = static_cast<float>(root.emp);
    }
}

// Beyond the nominal depth only captures, pawn moves and checks go on.
static bool is_gated(int N) {
    if (N == 10 || N == 11) {
        return tree.DEEP == 9;
    }
    return N >= 12 && tree.DEEP <= (N % 2 == 0 ? N - 1 : N - 2);
}

// --- A run of a node, plies 2 to 23 ---

void run_node(Colour c, int N, Move m, bool passed, const Board& trial) {
    const Colour o = other(c);
    const Ply& before = tree.ply[N - 1];
    Ply& ply = tree.ply[N];
    if (N <= 8) {
        tree.curr_N[N + 1] = 0;
        tree.LmrT[N + 1] = tree.AmrT[N + 1] = false;
    }
    weigh_move(c, before.tabd, m);
    int saved_deep = tree.deep;

    if (!passed) {
        if (N % 2 == 0 && tree.deep == N - 1) {
            judge_leaf(c, N, m);
            return;
        }
        if (is_gated(N) && man_on(before.tabd, m.c, m.d) == 0 && !is_pawn_move(c, before.tabd, m) &&
            !gives_check(o, trial)) {
            judge_leaf(c, N, m);
            return;
        }
    }
    if (tree.deep < N) {
        return;
    }
    value_of(N) = start_value(N);
    if (passed) {
        ply.material = before.material;
    } else {
        set_material(N, c, N - 1, m);
    }
    if (N % 2 == 1 && N >= 7 && filters_and_clock(c, N, m, trial, saved_deep) == Next::finish) {
        tree.deep = saved_deep;
        return;
    }

    copy_ply(N - 1, N);
    tree.nd = N;
    ply.joga_com_b_deep = c;
    if (!passed) {
        if (N <= 8 && tree.line[N - 1][0] == ' ') {
            write_line_text(N - 1, m);
        }
        init_tabuleiro_ply(N, m);
    }
    ply.XEQUE_MATE = true;
    ply.joga_com_b_deep = o;
    move_loop_flag(N) = false;
    move_order(o, N);
    judge_missing_replies(N);
    if (N % 2 == 1) {
        tree.deep = saved_deep;
    }
}

// --- The order of moves ---

// Calls visit for every square that holds the man, until the flag of the node is set.
template <typename Visit>
static void visit_men(int N, int man, const Visit& visit) {
    const bool& flag = move_loop_flag(N);
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            if (!flag && man_on(tree.ply[N].tabd, f, r) == man) {
                visit(f, r);
            }
        }
    }
}

// Pawns of ranks 1 to 6, on each file the most advanced first.
template <typename Visit>
static void visit_pawns(int N, Colour o, const Visit& visit) {
    const bool& flag = move_loop_flag(N);
    for (int f = 0; f < 8; ++f) {
        for (int advance = 6; advance >= 1; --advance) {
            const int r = rank_of(o, advance);
            if (!flag && man_on(tree.ply[N].tabd, f, r) == code(o, peao)) {
                visit(f, r);
            }
        }
    }
}

static void try_quiet_moves(Colour o, int N) {
    const Move slot = tree.quiet_slot[N];
    if (slot.a != -1 && is_of(o, man_on(tree.ply[N].tabd, slot.a, slot.b))) {
        analiselivre(o, N, size_of(man_on(tree.ply[N].tabd, slot.a, slot.b)), slot.a, slot.b, true);
    }
    visit_pawns(N, o, [&](int f, int r) { analiselivre(o, N, peao, f, r, false); });
    for (const int piece : {cavalo, bispo, torre, dama, rei}) {
        visit_men(N, code(o, piece), [&](int f, int r) { analiselivre(o, N, piece, f, r, false); });
    }
}

void move_order(Colour o, int N) {
    const Colour c = other(o);
    const Board& board = tree.ply[N].tabd;
    const bool& flag = move_loop_flag(N);

    if (N % 2 == 0 && N >= 6 && N <= 22 && tree.deep == N + 1) {
        tree.capture_slot[N].a = -1;
    } else if (const Move slot = tree.capture_slot[N]; slot.a != -1) {
        const int victim = man_on(board, slot.a, slot.b);
        if (is_of(c, victim) && size_of(victim) != rei && is_of(o, man_on(board, slot.c, slot.d))) {
            gerador(o, N, slot.a, slot.b, true);
        }
    }
    if (N % 2 == 1 && N >= 7) {
        visit_men(N, code(o, peao), [&](int f, int r) { analisepositive_peao(o, N, f, r); });
    }
    for (const int victim : {dama, torre, cavalo, bispo, peao}) {
        visit_men(N, code(c, victim), [&](int f, int r) { gerador(o, N, f, r, false); });
    }
    if (!flag) {
        try_quiet_moves(o, N);
    }
}

static void move_order_of_ply_1(Colour o) {
    const Board& board = tree.ply[1].tabd;
    const bool& flag = move_loop_flag(1);
    if (const Move slot = tree.capture_slot[1]; slot.a != -1 && is_of(o, man_on(board, slot.a, slot.b))) {
        analisepositivetest_deep1(o, size_of(man_on(board, slot.a, slot.b)), slot.a, slot.b);
    }
    for (const int victim : {dama, torre, cavalo, bispo, peao}) {
        visit_pawns(1, o, [&](int f, int r) { analisepositive_deep1(o, victim, peao, f, r); });
        for (const int piece : {cavalo, bispo, torre, dama, rei}) {
            visit_men(1, code(o, piece), [&](int f, int r) { analisepositive_deep1(o, victim, piece, f, r); });
        }
    }
    if (!flag) {
        try_quiet_moves(o, 1);
    }
}

// --- Plies 2 to 24 ---

// A run of the node with less depth, to fill the slots below and to spot a mate.
static void iid_pass(Colour c, int N, Move m, const Board& trial) {
    const int deep = tree.deep;
    const bool HASHf = shallow.HASHf;
    tree.deep -= 4;
    shallow.HASHf = false;
    run_node(c, N, m, false, trial);
    tree.deep = deep;
    shallow.HASHf = HASHf;
}

static void deep_2(Colour c, Move m) {
    if (tree.deep < 1) {
        return;
    }
    verifica_empate();
    if (root.pempate) {
        tree.alfa[2] = static_cast<float>(root.emp);
        return;
    }
    const Board trial = tree.tab2;
    if (tree.deep > 6) {
        if (null_move_pass(c, 2, m, trial)) {
            return;
        }
        iid_pass(c, 2, m, trial);
        if (tree.alfa[2] <= -3300.0F) {
            return;
        }
    }
    if (settings.PVS && tree.beta[1] != 16500.0F) {
        tree.PVSm2 = true;
        for (int k = 3; k <= 23; k += 2) {
            if (tree.beta[1] - 1.0F > -tree.MAXcut[k]) {
                tree.MAXcut[k] = 1.0F - tree.beta[1];
            }
        }
        const bool refuted = retry_loop(c, 2, m, trial);
        tree.PVSm2 = false;
        for (int k = 3; k <= 23; k += 2) {
            tree.MAXcut[k] = tree.MAXcutt[k];
        }
        if (refuted || tree.alfa[2] > tree.beta[1] - 1.0F || tree.alfa[2] <= -tree.MAXcutt[1]) {
            return;
        }
    }
    retry_loop(c, 2, m, trial);
}

static void deep_3(Colour c, Move m) {
    if (tree.deep >= 3 && shallow.HASHf && hash_table_scan(3, c)) {
        return;
    }
    if (tree.deep <= 2) {
        return;
    }
    const Board trial = tree.tab2;
    const bool remembers = shallow.HASHf;
    tree.LmrT[4] = tree.AmrT[4] = false;
    if (remembers) {
        hash_table_build(3, c);
    }
    bool finished = false;
    if (tree.deep >= 7) {
        finished = null_move_pass(c, 3, m, trial);
        if (!finished) {
            iid_pass(c, 3, m, trial);
            finished = tree.beta[3] >= 3300.0F;
        }
    }
    if (!finished) {
        retry_loop(c, 3, m, trial);
    }
    if (remembers) {
        store_and_advance(3, c);
    }
}

static void deep_4_or_5(Colour c, int N, Move m) {
    tree.LmrT[N + 1] = tree.AmrT[N + 1] = false;
    const bool remembers = tree.deep >= 8 && shallow.HASHf;
    if (remembers && hash_table_scan(N, c)) {
        return;
    }
    if (tree.deep < N - 1) {
        return;
    }
    const Board trial = tree.tab2;
    if (remembers) {
        hash_table_build(N, c);
    }
    if (!null_move_pass(c, N, m, trial)) {
        retry_loop(c, N, m, trial);
    }
    if (remembers) {
        store_and_advance(N, c);
    }
}

static void deep_24(Colour c, Move m) {
    weigh_move(c, tree.ply[23].tabd, m);
    if (tree.deep == 23) {
        judge_leaf(c, 24, m);
    }
}

void deep_node(Colour c, int N, Move m) {
    if (N == 2) {
        deep_2(c, m);
    } else if (N == 3) {
        deep_3(c, m);
    } else if (N <= 5) {
        deep_4_or_5(c, N, m);
    } else if (N <= 9) {
        const Board trial = tree.tab2;
        retry_loop(c, N, m, trial);
    } else if (N <= 23) {
        const Board trial = tree.tab2;
        run_node(c, N, m, false, trial);
    } else {
        deep_24(c, m);
    }
}

// --- Turbo windows ---

// The lead of material that the last move promises to restore.
static float lead_promised() { return root.materialflot0 + static_cast<float>(size_of(root.peca)); }

static void restore_even_limits() {
    for (int k = 2; k <= 22; k += 2) {
        tree.MAXcut[k] = tree.MAXcutt[k];
    }
}

static void set_even_limits(float limit) {
    for (int k = 2; k <= 22; k += 2) {
        tree.MAXcut[k] = std::min(tree.MAXcutt[k], limit);
    }
}

static void set_turbo_windows(bool all_rules, bool iid_ran) {
    if (!settings.TURBO) {
        return;
    }
    const float E = root.E;
    const float F = lead_promised();
    const float alfa0 = tree.alfa[0];
    const bool score_held = score_is_held(5.0F);
    const auto held = [&](float x) { return alfa0 >= 5.0F || (alfa0 >= root.ALFA0 && alfa0 >= x); };
    if (E >= F - 33.0F) {
        set_even_limits(E + 33.0F);
    }
    if (!all_rules) {
        return;
    }
    if (E >= F - 10.0F && score_held && tree.deep > 8) {
        set_even_limits(E + 10.0F);
    }
    if (E >= F - 15.0F && held(-15.0F) && tree.deep == 9) {
        set_even_limits(E + 9.0F);
    }
    if (E >= F - 5.0F && held(-5.0F) && tree.deep == 9) {
        set_even_limits(E + 5.0F);
    }
    if (E >= F && held(0.0F) && tree.deep == 9) {
        set_even_limits(E + 3.0F);
    }
    if (root.DEEP9 && tree.deep == 9 && alfa0 >= -15.0F) {
        set_even_limits(E + 1.0F);
    }
    if (iid_ran && E >= F - 10.0F && score_held) {
        const float limit = E > tree.BETA1 ? E + 1.0F : E == tree.BETA1 ? E + 3.0F : E + 7.0F;
        for (int k = 2; k <= 22; k += 2) {
            tree.MAXcut[k] = std::min(tree.MAXcut[k], limit);
        }
    }
}

// --- Ply 1 ---

static void run_root_move(Colour c, Move m, float start) {
    const Ply& before = tree.ply[0];
    Ply& ply = tree.ply[1];
    for (auto& text : tree.line) {
        text.fill(' ');
    }
    write_line_text(0, m);
    tree.curr_N[2] = 0;
    tree.LmrT[2] = tree.AmrT[2] = false;
    weigh_move(c, before.tabd, m);
    if (tree.deep == 0) {
        const auto sums = material_after(c, before, m);
        tree.beta[1] = sums[c] - sums[other(c)];
        return;
    }
    const int saved_deep = tree.deep;
    tree.beta[1] = start;
    set_material(1, c, 0, m);
    copy_ply(0, 1);
    tree.nd = 1;
    ply.joga_com_b_deep = c;
    init_tabuleiro_ply(1, m);
    ply.XEQUE_MATE = true;
    ply.joga_com_b_deep = other(c);
    move_loop_flag(1) = false;
    move_order_of_ply_1(other(c));
    judge_missing_replies(1);
    tree.deep = saved_deep;
}

static void iid_pass_of_ply_1(Colour c, Move m) {
    const int deep = tree.deep;
    const bool HASHf = shallow.HASHf;
    tree.deeppromo = true;
    tree.deep -= 4;
    shallow.HASHf = false;
    set_turbo_windows(false, false);
    run_root_move(c, m, 16500.0F);
    restore_even_limits();
    tree.BETA1 = tree.beta[1];
    tree.deep = deep;
    shallow.HASHf = HASHf;
    tree.deeppromo = false;
}

// True when the scout pass has settled the move.
static bool scout_pass_of_ply_1(Colour c, Move m, bool iid_ran) {
    tree.deeppromo = true;
    tree.PVSm = true;
    set_turbo_windows(true, iid_ran);
    if (root.SCAN1) {
        for (int k = 2; k <= 22; k += 2) {
            tree.MAXcut[k] = std::min(tree.MAXcutt[k], root.ALFA0 + 5.0F);
        }
    }
    const double to_beat = static_cast<double>(tree.alfa[0]) + 0.001;
    if (root.SCANT && root.ALFA0 != -16500.0F && score_is_held(5.0F)) {
        for (int k = 2; k <= 22; k += 2) {
            if (to_beat < static_cast<double>(tree.MAXcut[k])) {
                tree.MAXcut[k] = static_cast<float>(to_beat);
            }
        }
    }
    ++tree.curr;
    run_root_move(c, m, 16500.0F);
    const float MAXcut2_of_pass = tree.MAXcut[2];
    restore_even_limits();
    tree.PVSm = false;

    const float beta1 = tree.beta[1];
    if (root.SCAN1 && !(beta1 <= tree.alfa[0] && !root.DEEP9 && tree.deep <= 9)) {
        if (beta1 < root.ALFA0 + 5.0F || beta1 >= 15.0F + lead_promised()) {
            return true;
        }
    }
    return root.SCANT && (to_beat > static_cast<double>(beta1) || beta1 >= MAXcut2_of_pass);
}

// The best move of the depth before fails at the critical depth: the root is opened. The bound that ply 1 starts with.
static float start_of_full_pass(Colour c) {
    if (!root.SCAN1 || root.DEEP9 || tree.deep != 9 || !(tree.alfa[0] >= tree.beta[1])) {
        return 16500.0F;
    }
    const float start = tree.alfa[0];
    const long double promised = -15.0L + static_cast<long double>(root.materialflot0) + size_of(root.peca) +
                                 log_ratio(root.material_a[c], root.material_a[other(c)]) * settings.MQ;
    if (tree.alfa[0] >= -15.0F && root.E >= promised) {
        tree.alfa[0] -= 75.0F;
        root.E -= 75.0F;
    }
    if (tree.alfa[0] < -15.0F || root.E < promised) {
        tree.alfa[0] = -16500.0F;
        root.E = -10000000.0F;
    }
    return start;
}

static void leave_ply_1() {
    tree.deeppromo = false;
    root.roque = {};
}

void deep_root_move(Colour c, Move m) {
    tree.PVSm = false;
    tree.LMRtest = false;
    tree.BETA1 = 16500.0F;
    for (const Colour side : {white, black}) {
        tree.ply[0].material[side] = root.material_a[side] - 100.0F;
    }
    if (tree.deep < 0) {
        leave_ply_1();
        return;
    }
    const bool iid_runs = tree.deep >= 7;
    if (iid_runs) {
        const Board trial = tree.tab2;
        if (null_move_pass(c, 1, m, trial)) {
            leave_ply_1();
            return;
        }
        iid_pass_of_ply_1(c, m);
        if (tree.beta[1] >= 3300.0F) {
            leave_ply_1();
            return;
        }
    }
    const bool scouts = settings.PVS && (root.SCAN1 || (root.SCANT && root.ALFA0 != -16500.0F));
    if (scouts && scout_pass_of_ply_1(c, m, iid_runs)) {
        report_root_move();
        leave_ply_1();
        return;
    }
    if (scouts) {
        tree.LMRtest = true;
    } else {
        ++tree.curr;
    }
    const float start = start_of_full_pass(c);
    set_turbo_windows(true, iid_runs);
    tree.deeppromo = true;
    run_root_move(c, m, start);
    restore_even_limits();
    if (root.SCAN1 || root.SCANT) {
        report_root_move();
    }
    leave_ply_1();
}

}  // namespace plain
