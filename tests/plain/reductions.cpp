// What shortens, lengthens or ends a subtree: reductions, passes of a side, the vertical filter, the clock.
#include <algorithm>

#include "plain/board.h"
#include "plain/eval.h"
#include "plain/memory.h"
#include "plain/node.h"

namespace plain {

// --- Reductions, plies 2 to 9 ---

static bool would_cut_parent(int N) {
    for (int k = N - 2; k >= 0; k -= 2) {
        if (N % 2 == 1 ? tree.beta[N] >= tree.beta[k] : tree.alfa[N] <= tree.alfa[k]) {
            return true;
        }
    }
    return false;
}

static bool is_reduced(Colour c, int N, Move m, int number, const Board& trial) {
    const Board& board = tree.ply[N - 1].tabd;
    return !tree.LmrT[N] && settings.LMR && tree.deep >= (N >= 8 ? 11 : 9) && value_of(N - 1) != start_value(N - 1) &&
           man_on(board, m.a, m.b) != code(c, peao) && man_on(board, m.c, m.d) == 0 && number >= 5 &&
           !gives_check(other(c), trial);
}

static bool is_passed(Colour c, int N, const Board& trial) {
    return !tree.AmrT[N] && settings.LMR &&
           tree.deep >= (N >= 8   ? 13
                         : N >= 6 ? 11
                                  : 9) &&
           tree.curr_N[N] <= 4 && !gives_check(other(c), trial);
}

bool retry_loop(Colour c, int N, Move m, const Board& trial) {
    const int number = ++tree.curr_N[N];
    for (;;) {
        const int deep = tree.deep;
        const bool HASHf = shallow.HASHf;
        const auto shorten = [&] {
            tree.deep -= 2;
            if (N <= 5) {
                shallow.HASHf = false;
            }
        };
        const bool reduced = is_reduced(c, N, m, number, trial);
        if (reduced) {
            shorten();
        }
        const bool passed = is_passed(c, N, trial);
        if (passed) {
            shorten();
        }
        run_node(c, N, m, passed, trial);
        if (!reduced && !passed) {
            return false;
        }
        tree.deep = deep;
        shallow.HASHf = HASHf;
        const bool refutes = would_cut_parent(N);
        if (passed && refutes) {
            return true;
        }
        if (passed) {
            tree.AmrT[N] = true;
        } else if (refutes) {
            tree.LmrT[N] = true;
        } else {
            return false;
        }
    }
}

// --- The null move, plies 1 to 5: o passes and c plays twice ---

static bool null_move_is_due(int N) {
    const bool root_side_has_moved = tree.alfa[2] != -16500.0F;
    switch (N) {
        case 1: return root.SCANT;
        case 2: return tree.beta[1] != 16500.0F;
        case 3: return root.SCANT || root_side_has_moved;
        case 4: return tree.beta[1] != 16500.0F || tree.beta[3] != 16500.0F;
        default: return root.SCANT || root_side_has_moved || tree.alfa[4] != -16500.0F;
    }
}

bool null_move_pass(Colour c, int N, Move m, const Board& trial) {
    const Colour o = other(c);
    if (tree.deep < (N <= 3 ? 7 : 9) || settings.NULL_MOVE < (N <= 2 ? 1 : 2) || root.npecas[o] < 5 ||
        root.npecas[c] < 3 || !null_move_is_due(N) || gives_check(o, trial)) {
        return false;
    }
    const int below = N + 1;
    tree.curr_N[below] = 0;
    tree.LmrT[below] = tree.AmrT[below] = false;
    weigh_move(c, tree.ply[N - 1].tabd, m);
    set_material(below, c, N - 1, m);

    const int deep = tree.deep;
    const bool HASHf = shallow.HASHf;
    tree.deep -= 2;
    shallow.HASHf = false;
    const auto alfa = tree.alfa;
    const auto beta = tree.beta;
    for (int k = N - 2; k >= 0; k -= 2) {
        value_of(k) = start_value(k);
    }
    if (N % 2 == 1) {
        float highest = alfa[0];
        for (int k = 2; k <= N - 1; k += 2) {
            highest = std::max(highest, alfa[k]);
        }
        tree.beta[N] = static_cast<float>(static_cast<double>(highest) + 0.001);
    } else {
        float lowest = beta[1];
        for (int k = 3; k <= N - 1; k += 2) {
            lowest = std::min(lowest, beta[k]);
        }
        tree.alfa[N] = static_cast<float>(static_cast<double>(lowest) - 0.001);
    }

    value_of(below) = start_value(below);
    copy_ply(N - 1, below);
    tree.nd = N;
    tree.ply[below].joga_com_b_deep = c;
    init_tabuleiro_ply(below, m);
    tree.ply[below].XEQUE_MATE = true;
    move_loop_flag(below) = false;
    move_order(c, below);

    tree.deep = deep;
    shallow.HASHf = HASHf;
    for (int k = N - 2; k >= 0; k -= 2) {
        value_of(k) = k % 2 == 0 ? alfa[k] : beta[k];
    }
    const float v = value_of(below);
    if (N % 2 == 1 ? !(v > -3300.0F) : !(v < 3300.0F)) {
        return false;
    }
    for (int k = N - 1; k >= 0; k -= 2) {
        if (N % 2 == 1 ? v <= tree.alfa[k] : v >= tree.beta[k]) {
            value_of(N) = v;
            return true;
        }
    }
    return false;
}

// --- The vertical filter, the extension and the time check: odd plies from 7 ---

// Men of the root over the divisor of the option.
static int men_for_clock() { return (root.npecas[white] + root.npecas[black]) / settings.Tu; }

bool soft_limit_passed() { return tree.fim - tree.inicio > tree.tempo / (2 * (5 * men_for_clock() + 25)); }
static bool hard_limit_reached() { return tree.fim - tree.inicio >= tree.tempo / (men_for_clock() + 5); }

// The root side stands m or more below one of its bounds.
static bool is_below_a_bound(int N, float S, float m) {
    for (int k = N - 1; k >= 0; k -= 2) {
        if (tree.alfa[k] - m >= S) {
            return true;
        }
    }
    return false;
}

static Next vertical_filter(Colour c, int N, Move m, const Board& trial) {
    const Colour o = other(c);
    const long double R = tree.ply[N].material[c];
    const long double O = tree.ply[N].material[o];
    const auto S = static_cast<float>(R - O + log_ratio(R, O) * settings.MQ);
    const int d = tree.deep;

    const bool last_full_ply = N >= 9 && N <= 21 && d == N;
    const bool quiet_at_ply_7 = N == 7 && d == 9 && man_on(tree.ply[6].tabd, m.c, m.d) == 0 && tree.promocao == 0;
    if ((last_full_ply || quiet_at_ply_7) && is_below_a_bound(N, S, 10.0F) && !gives_check(o, trial)) {
        tree.beta[N] = S;
        return Next::finish;
    }
    if (N >= 9 && N <= 21 && d == N + 2 && score_is_held(15.0F) && is_below_a_bound(N, S, 10.0F)) {
        tree.deep = N;
    }
    if (N == 7 && d == 7) {
        for (const int k : {0, 2, 4, 6}) {
            if (tree.alfa[k] - 10.0F >= S && tree.alfa[k] < 3300.0F) {
                tree.corte_beta[5] = true;
            }
        }
    }
    if (N == 23 && is_below_a_bound(N, S, 10.0F)) {
        tree.corte_beta[21] = true;
    }
    return Next::go_on;
}

Next filters_and_clock(Colour c, int N, Move m, const Board& trial, int& saved_deep) {
    if (settings.VERTICAL_filt && vertical_filter(c, N, m, trial) == Next::finish) {
        return Next::finish;
    }
    const bool at_nominal_end = N == 9 ? tree.DEEP == 9 : tree.DEEP >= N - 2 && tree.DEEP <= N;
    if (N >= 9 && N <= 21 && tree.SEARCH_E && tree.LMRtest && tree.deep == N && root.SCANT && at_nominal_end) {
        tree.fim = clock_reading();
        if (!soft_limit_passed() && settings.CPU != 0) {
            tree.deep = N + 2;
            clock_counts.note_extension();
        } else {
            clock_counts.note_refused_extension();
        }
    }
    if (N <= 21 && settings.TC && (N == 21 ? tree.deep == 23 : tree.deep > N + 1)) {
        tree.fim = clock_reading();
        if (hard_limit_reached()) {
            clock_counts.note_hard_stop();
            tree.deep = N;
            saved_deep = N;
            root.corte_MAXcut = true;
            if (tree.alfa[N - 1] > -3300.0F) {
                tree.corte_beta[N - 2] = true;
                tree.beta[N] = tree.alfa[N - 1];
                return Next::finish;
            }
        }
    }
    return Next::go_on;
}

}  // namespace plain
