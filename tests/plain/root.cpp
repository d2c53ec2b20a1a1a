#include "plain/root.h"

#include <algorithm>

#include "plain/board.h"
#include "plain/eval.h"
#include "plain/memory.h"
#include "plain/node.h"

namespace plain {

// --- Root move routines, analise100<stage><h>_<piece>_<c> ---

constexpr int quiet = 0;  // the stage `livre`; the other stages are their victims

struct Routine {
    int victim;  // or quiet
    bool check;  // ch: moves that give check; sh: the others
    int piece;
};

static void take_best_move(Move m) {
    root.a = m.a;
    root.b = m.b;
    root.c = m.c;
    root.d = m.d;
    root.aab = m;
    root.X = false;
}

// True when the root search is over.
static bool search_root_move(Colour c, int piece, Move m) {
    ++tree.nodes;
    deep_root_move(c, m);
    const float v = tree.beta[1];
    if (v > tree.alfa[0]) {
        tree.alfa[0] = v;
    }
    if (v > root.E) {
        root.E = v;
        take_best_move(m);
        if (piece == peao && m.b == rank_of(c, 6)) {
            root.PRs = 'q';
        }
    }
    if (tree.alfa[0] >= tree.MAXcut[0] || root.corte_MAXcut) {
        root.corte_MAXcut = true;
        return true;
    }
    return false;
}

// True when the routine is to return.
static bool try_root_move(Colour c, const Routine& routine, Move m) {
    init_tabuleiro2(m);
    verifica_rei(c);
    verifica_xeque(c);
    verifica_estrategia(c);
    const bool can_repeat = routine.piece != peao;
    if (can_repeat) {
        verifica_empate();
    }
    const auto passes_gate = [] { return !tree.Y && root.ESTRATEGIA == root.ataque; };
    if (!passes_gate()) {
        return false;
    }
    const bool is_due = root.TEST1IID && root.XEQUE == routine.check;
    if (is_due && !(can_repeat && root.pempate)) {
        if (search_root_move(c, routine.piece, m)) {
            return true;
        }
        if (!passes_gate()) {
            return false;
        }
    }
    if (can_repeat && is_due && root.pempate) {
        const auto v = static_cast<float>(root.emp);
        root.EP = v;
        if (v > root.E) {
            root.E = v;
            tree.alfa[0] = v;
            take_best_move(m);
        }
    }
    return false;
}

template <typename Steps>
static bool try_root_steps(Colour c, const Routine& routine, int f, int r, const Steps& steps, bool rays) {
    const Board& tab = tree.ply[0].tabd;
    for (const Step s : steps) {
        for (int to_f = f + s.file, to_r = r + s.rank; on_board(to_f, to_r); to_f += s.file, to_r += s.rank) {
            const int man = man_on(tab, to_f, to_r);
            const bool fits = routine.victim == quiet ? man == 0 : man == code(other(c), routine.victim);
            if (fits && try_root_move(c, routine, {f, r, to_f, to_r})) {
                return true;
            }
            if (!rays || man != 0) {
                break;
            }
        }
    }
    return false;
}

static void try_root_pawn(Colour c, const Routine& routine, int f, int r) {
    const Board& tab = tree.ply[0].tabd;
    const int next = r + ahead(c);
    if (r == rank_of(c, 7)) {
        return;
    }
    if (routine.victim == quiet) {
        if (r == rank_of(c, 1) && man_on(tab, f, next) == 0 && man_on(tab, f, next + ahead(c)) == 0 &&
            try_root_move(c, routine, {f, r, f, next + ahead(c)})) {
            return;
        }
        if (man_on(tab, f, next) == 0) {
            try_root_move(c, routine, {f, r, f, next});
        }
        return;
    }
    const std::array<Step, 2> diagonals{{{1, ahead(c)}, {-1, ahead(c)}}};
    if (try_root_steps(c, routine, f, r, diagonals, false) || routine.victim != peao || r != rank_of(c, 4)) {
        return;
    }
    for (const int to_file : {f + 1, f - 1}) {
        if (on_board(to_file, next) && man_on(tab, to_file, next) == 0 &&
            tree.ply[0].flags.double_step[other(c)][to_file] && try_root_move(c, routine, {f, r, to_file, next})) {
            return;
        }
    }
}

static void try_root_castlings(Colour c, const Routine& routine, int f, int r) {
    for (const Castling side : {Castling::short_side, Castling::long_side}) {
        verifica_xequemate(c, 0, f, r);
        if (tree.XM || !castling_is_open(c, 0, side)) {
            continue;
        }
        // White's long castling with check is tested as if it were the short one.
        const bool wrong_side = c == white && routine.check && side == Castling::long_side;
        verifica_roque(c, 0, wrong_side ? Castling::short_side : side);
        verifica_xeque(c);
        verifica_estrategia(c);
        if (tree.R || root.ESTRATEGIA != root.ataque || !root.TEST1IID || root.XEQUE != routine.check) {
            continue;
        }
        root.roque[c] = 10;
        const bool over = search_root_move(c, rei, castling_move(c, side));
        root.roque[c] = 0;
        if (over) {
            return;
        }
    }
}

static void call_routine(Colour c, const Routine& routine, int f, int r) {
    switch (routine.piece) {
        case peao: try_root_pawn(c, routine, f, r); break;
        case cavalo: try_root_steps(c, routine, f, r, knight_jumps, false); break;
        case bispo: try_root_steps(c, routine, f, r, bishop_rays, true); break;
        case torre: try_root_steps(c, routine, f, r, rook_rays, true); break;
        case dama: try_root_steps(c, routine, f, r, queen_rays, true); break;
        default:
            if (!try_root_steps(c, routine, f, r, king_steps, false) && routine.victim == peao) {
                try_root_castlings(c, routine, f, r);
            }
    }
}

// --- The schedule of one pass ---

// One loop: a sweep of ataque, at each value all routines in order, for each all squares that hold its piece.
using Loop = std::vector<Routine>;

static void sweep(Colour c, const Loop& loop) {
    for (root.ataque = 100; root.ataque >= -100; --root.ataque) {
        for (const Routine& routine : loop) {
            for (int sq = 0; sq < 64; ++sq) {
                if (root.corte_MAXcut) {
                    break;
                }
                if (tree.ply[0].tabd[sq] == code(c, routine.piece)) {
                    call_routine(c, routine, sq / 8, sq % 8);
                }
            }
        }
    }
}

// Routines by text: 5ch stands for analise100positive5ch, Lsh for analise100livresh, PNBRQK for the pieces.
static Loop loop_of(const std::string& text) {
    Loop loop;
    Routine routine{quiet, false, peao};
    for (std::size_t i = 0; i < text.size(); ++i) {
        switch (text[i]) {
            case '5': routine.victim = dama; break;
            case '4': routine.victim = torre; break;
            case '3': routine.victim = cavalo; break;
            case '2': routine.victim = bispo; break;
            case '1': routine.victim = peao; break;
            case 'L': routine.victim = quiet; break;
            case 'c': routine.check = true; break;
            case 's': routine.check = false; break;
            case 'h':
            case ' ': break;
            default: routine.piece = pieces_by_name[std::string("PNBRQK").find(text[i])]; loop.push_back(routine);
        }
    }
    return loop;
}

static std::vector<Loop> loops_of(std::initializer_list<std::string> texts) {
    std::vector<Loop> loops;
    std::transform(texts.begin(), texts.end(), std::back_inserter(loops), loop_of);
    return loops;
}

static std::vector<Loop> each_alone(const std::vector<Loop>& loops) {
    std::vector<Loop> alone;
    for (const Loop& loop : loops) {
        for (const Routine& routine : loop) {
            alone.push_back({routine});
        }
    }
    return alone;
}

static std::vector<Loop> loops_of_temperament() {
    const auto captures = loops_of(
        {"5ch PNBRQK 5sh PNBRQK", "4ch PNBRK 4sh PNBRK", "3ch PNBK 3sh PNBK", "2ch PNBK 2sh PNBK", "1ch PK 1sh PK"});
    const Loop rest = loop_of(
        "3ch R 2ch R 4ch Q 1ch B 1ch N 1ch R 3ch Q 2ch Q 1ch Q Lch PNBRQK "
        "3sh R 2sh R 4sh Q 1sh B 1sh N 1sh R 3sh Q 2sh Q 1sh Q Lsh PNBRQK");
    std::vector<Loop> loops;
    if (settings.Temperamento == 1) {
        loops = captures;
        loops.push_back(rest);
    } else if (settings.Temperamento == 2) {
        loops = each_alone(captures);
        loops.push_back(rest);
    } else {
        loops =
            each_alone(loops_of({"5ch PNBRQK 5sh PNBRQK 4ch PNBRQK 4sh PNBRQK 3ch PNBRQK 3sh PNBRQK "
                                 "2ch PNBRQK 2sh PNBRQK 1ch PNBRQK 1sh PNBRQK"}));
        loops.push_back(loop_of("Lch PNBRQK Lsh PNBRQK"));
    }
    return loops;
}

static void run_schedule(Colour c) {
    root.corte_MAXcut = false;
    std::vector<Loop> loops;
    if (root.material_a[other(c)] > 110.0F) {
        loops = loops_of_temperament();
    } else if (root.material_a[other(c)] == 110.0F) {
        loops = loops_of({"Lch P Lsh P", "Lch NBRQ Lsh NBRQK Lch K", "1ch K 1sh K"});
    }
    for (const Loop& loop : loops) {
        sweep(c, loop);
    }
}

void search_first_move(Colour c) {
    root.corte_MAXcut = false;
    sweep(c, loop_of("Lsh PN"));
    root.EP = root.E;
}

// --- Score windows ---

static float ladder(int N) { return static_cast<float>(15400 - 1100 * (N / 2)); }

static void set_limits(int first, int last, float limit) {
    for (int N = first; N <= last; N += 2) {
        tree.MAXcut[N] = limit;
    }
}

static void set_ladder(int first, int last) {
    for (int N = first; N <= last; N += 2) {
        tree.MAXcut[N] = ladder(N);
    }
}

void set_mate_limits() {
    set_ladder(0, 22);
    set_ladder(1, 23);
    tree.MAXcutt = tree.MAXcut;
}

static bool is_almost_bare(Colour c) {
    const float material = root.material_a[c];
    return material == 110.0F || ((material == 142.0F || material == 143.0F) && root.npecas[c] == 1) ||
           (material == 174.0F && root.npecas[c] == 2);
}

void set_score_windows(Colour c) {
    const Colour opp = other(c);
    const long double m = root.materialflot0;
    const long double p = c == white ? root.peca : -root.peca;
    const long double L = log_ratio(root.material_a[c], root.material_a[opp]) * settings.MQ;
    const auto positive = [&](long double width) { return static_cast<float>(m + width + p + L); };
    const auto negative = [&](long double width) { return static_cast<float>(width - m - L); };
    const int positive_mode = tree.Positive_filter;
    const int negative_mode = tree.Negative_filter;

    if (positive_mode == 1) {
        set_ladder(0, 4);
        set_limits(6, 16, static_cast<float>(settings.positfilter + m + p + L));
    }
    if (negative_mode == 1) {
        set_ladder(1, 3);
        set_limits(5, 17, negative(settings.negatfilter));
    }
    if (positive_mode != 1) {
        set_ladder(0, 16);
    }
    if (negative_mode != 1) {
        set_ladder(1, 17);
    }
    if (positive_mode == 2) {
        set_limits(6, 16, m <= -33 ? 1100.0F : m < 50 ? positive(100) : positive(90));
        if (is_almost_bare(opp)) {
            set_ladder(0, 16);
            if (root.material_a[opp] == 110.0F && root.material_a[c] >= 160.0F) {
                set_limits(6, 16, 1100.0F);
            }
        }
        if (is_almost_bare(c)) {
            set_limits(2, 16, positive(90));
        }
    }
    if (positive_mode == 3) {
        if (root.npecas[white] + root.npecas[black] > 20) {
            tree.MAXcut[0] = positive(33);
        }
        set_limits(6, 16, positive(m <= -33 ? 50 : m < 50 ? 32 : m < 90 ? 33 : 10));
        if (is_almost_bare(c)) {
            set_limits(0, 16, positive(50));
        }
    }
    if (negative_mode == 2) {
        set_limits(5, 17, m <= -33 ? 1100.0F : m < 50 ? negative(100) : negative(90));
    }
    if (negative_mode == 3) {
        set_limits(5, 17, negative(m <= -33 ? 90 : m < 50 ? 50 : m < 90 ? 32 : 33));
    }
    if (negative_mode == 2 || negative_mode == 3) {
        if (is_almost_bare(opp)) {
            set_limits(1, 17, negative(33));
        }
        if (is_almost_bare(c)) {
            set_ladder(1, 17);
        }
    }
}

// --- The iteration over depths ---

void restore_limits() { tree.MAXcut = tree.MAXcutt; }

enum class Kind { build, stored_move, other_moves };

static void set_kind(Kind kind) {
    root.SCAN1 = kind == Kind::stored_move;
    root.SCANT = kind == Kind::other_moves;
    root.BUIL1D = kind == Kind::build;
    root.roque = {};
}

static void run_pass(Colour c) {
    tree.DEEP = tree.deep;
    run_schedule(c);
}

static void adjust_draw_score(Colour c) {
    const long double expected = static_cast<long double>(root.materialflot0) - 5.0L +
                                 log_ratio(root.material_a[c], root.material_a[other(c)]) * settings.MQ;
    if (tree.alfa[0] >= expected && root.peca == 0) {
        root.emp += 10;
    }
}

static void step_window() {
    root.EP = 0;
    root.ALFA0 = tree.alfa[0];
    const float step = root.DEEP9 ? 1.0F : 10.0F;
    tree.alfa[0] -= step;
    root.E -= step;
}

static bool goes_on_to_next_depth() {
    tree.fim = clock_reading();
    const bool in_time = !soft_limit_passed() || !settings.TC;
    const bool else_goes_on = !root.corte_MAXcut && root.IIDS && tree.EXTRA_EVAL && tree.alfa[0] < 3300.0F &&
                              tree.deep >= 9 && tree.deep <= 21 &&
                              (tree.deep + 1 < settings.deepp || settings.deepp == 17);
    if (else_goes_on && !in_time) {
        clock_counts.note_soft_stop();
    }
    return else_goes_on && in_time;
}

static void search_build_pass(Colour c) {
    const int deepIID1 = tree.deep;
    tree.deep = 7;
    set_kind(Kind::build);
    root.pempatee = false;
    run_pass(c);
    tree.deep = deepIID1;
}

static void search_first_depth(Colour c) {
    if (shallow.HASHf) {
        clear_shallow_tables_of_search(c);
    }
    tree.curr = 0;
    set_kind(Kind::stored_move);
    root.pempatee = true;
    adjust_draw_score(c);
    step_window();
    if (tree.alfa[0] >= 3300.0F) {
        root.ALFA0 = tree.alfa[0];
        root.EP = 0;
        tree.alfa[0] = -16500.0F;
        root.E = -10000000.0F;
    }
    run_pass(c);
}

static void iterate(Colour c) {
    for (int pass = 0; pass <= 49; ++pass) {
        restore_limits();
        if (pass == 0) {
            if (tree.deep > 8) {
                search_build_pass(c);
                if (tree.curr == 1) {
                    return;
                }
            }
        } else if (pass == 1) {
            if (tree.deep > 8) {
                search_first_depth(c);
            }
        } else if (pass == 2) {
            if (!root.corte_MAXcut) {
                set_kind(Kind::other_moves);
                run_pass(c);
            }
        } else if (pass % 2 == 1) {
            if (!goes_on_to_next_depth()) {
                return;
            }
            set_kind(Kind::stored_move);
            tree.curr = 0;
            step_window();
            tree.deep += 2;
            run_pass(c);
        } else if (!root.corte_MAXcut && root.IIDS && tree.EXTRA_EVAL && tree.alfa[0] < 3300.0F && tree.deep >= 9 &&
                   tree.deep <= 23) {
            set_kind(Kind::other_moves);
            run_pass(c);
        }
    }
}

void search(Colour c) {
    game_memory.mem_TEST = false;
    if (settings.HASH1 && game_memory.HASH_MEM) {
        hash_mem_scan();
        if (game_memory.mem_TEST) {
            return;
        }
    }
    clock_counts.begin_search();
    set_score_windows(c);
    for (int N = 18; N <= 23; ++N) {
        tree.MAXcut[N] = tree.MAXcut[N % 2 == 0 ? 16 : 17];
    }
    tree.MAXcutt = tree.MAXcut;
    root.SCAN1 = root.SCANT = root.BUIL1D = root.corte_MAXcut = false;
    iterate(c);
}

}  // namespace plain
