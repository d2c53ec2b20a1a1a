#include "search/schedule.h"

#include "base/clock.h"
#include "base/numeric.h"
#include "eval/strategy.h"
#include "memory/shallow_tables.h"
#include "search/move_walks.h"
#include "search/observers.h"
#include "search/root_routines.h"
#include "search/score_windows.h"
#include "search/state.h"

#include <span>
#include <string_view>

namespace ondrel {
namespace {

// --- Schedules ---

// One or more root routines: a stage, with or without check, and its pieces in order.
struct Routines {
    Stage stage;
    bool ch;
    std::string_view pieces;
};

constexpr bool ch = true;
constexpr bool sh = false;
constexpr std::string_view all_pieces = "PNBRQK";

// Each table is one sweep of ataque. In the "consistent" temperament the routines of the five tables of strong captures
// have a sweep of their own each.
constexpr std::array takes_queen{Routines{positive5, ch, all_pieces}, Routines{positive5, sh, all_pieces}};
constexpr std::array takes_rook{Routines{positive4, ch, "PNBRK"}, Routines{positive4, sh, "PNBRK"}};
constexpr std::array takes_knight{Routines{positive3, ch, "PNBK"}, Routines{positive3, sh, "PNBK"}};
constexpr std::array takes_bishop{Routines{positive2, ch, "PNBK"}, Routines{positive2, sh, "PNBK"}};
constexpr std::array takes_pawn{Routines{positive1, ch, "PK"}, Routines{positive1, sh, "PK"}};
constexpr std::array<std::span<const Routines>, 5> strong_captures{takes_queen, takes_rook, takes_knight, takes_bishop,
                                                                   takes_pawn};
constexpr std::array weak_captures_and_quiet{
    Routines{positive3, ch, "R"},   Routines{positive2, ch, "R"},    Routines{positive4, ch, "Q"},
    Routines{positive1, ch, "BNR"}, Routines{positive3, ch, "Q"},    Routines{positive2, ch, "Q"},
    Routines{positive1, ch, "Q"},   Routines{livre, ch, all_pieces}, Routines{positive3, sh, "R"},
    Routines{positive2, sh, "R"},   Routines{positive4, sh, "Q"},    Routines{positive1, sh, "BNR"},
    Routines{positive3, sh, "Q"},   Routines{positive2, sh, "Q"},    Routines{positive1, sh, "Q"},
    Routines{livre, sh, all_pieces}};

// The "dynamic" temperament: every capture routine has its sweep, the quiet moves share one.
constexpr std::array captures_by_victim{Routines{positive5, ch, all_pieces}, Routines{positive5, sh, all_pieces},
                                        Routines{positive4, ch, all_pieces}, Routines{positive4, sh, all_pieces},
                                        Routines{positive3, ch, all_pieces}, Routines{positive3, sh, all_pieces},
                                        Routines{positive2, ch, all_pieces}, Routines{positive2, sh, all_pieces},
                                        Routines{positive1, ch, all_pieces}, Routines{positive1, sh, all_pieces}};
constexpr std::array all_quiet{Routines{livre, ch, all_pieces}, Routines{livre, sh, all_pieces}};

// Against a bare king: pawns first, captures by the king last.
constexpr std::array bare_king_pawns{Routines{livre, ch, "P"}, Routines{livre, sh, "P"}};
constexpr std::array bare_king_pieces{Routines{livre, ch, "NBRQ"}, Routines{livre, sh, "NBRQK"},
                                      Routines{livre, ch, "K"}};
constexpr std::array bare_king_captures{Routines{positive1, ch, "K"}, Routines{positive1, sh, "K"}};

constexpr float material_of_bare_king = 110.0F;

enum Temperament : int { positional = 1, consistent = 2, dynamic = 3 };

// --- Sweeps ---

Piece piece_of_letter(char letter) {
    switch (letter) {
        case 'P': return peao;
        case 'N': return cavalo;
        case 'B': return bispo;
        case 'R': return torre;
        case 'Q': return dama;
        default: return rei;
    }
}

// Calls one routine for every square that holds its piece.
template <Colour c>
void call_routine(Stage stage, bool gives_check, Piece piece) {
    squares_of(ply[0].sets.of(c, piece), [&](int from) {
        if (!pass.corte_MAXcut) {
            analise100<c>(stage, gives_check, piece, from);
        }
        return pass.corte_MAXcut != 0;
    });
}

// One sweep of ataque over the routines given.
template <Colour c>
void sweep(std::span<const Routines> routines) {
    for (pass.ataque = highest_class; pass.ataque >= lowest_class; --pass.ataque) {
        for (const Routines& x : routines) {
            for (const char letter : x.pieces) {
                call_routine<c>(x.stage, x.ch, piece_of_letter(letter));
            }
        }
    }
}

// A sweep of its own for every routine.
template <Colour c>
void sweep_each(std::span<const Routines> routines) {
    for (const Routines& x : routines) {
        for (std::size_t k = 0; k < x.pieces.size(); ++k) {
            const std::array one{Routines{x.stage, x.ch, x.pieces.substr(k, 1)}};
            sweep<c>(one);
        }
    }
}

template <Colour c>
void run_temperament() {
    if (options.Temperamento == dynamic) {
        sweep_each<c>(captures_by_victim);
        sweep<c>(all_quiet);
        return;
    }
    for (const auto routines : strong_captures) {
        if (options.Temperamento == positional) {
            sweep<c>(routines);
        } else {
            sweep_each<c>(routines);
        }
    }
    sweep<c>(weak_captures_and_quiet);
}

// --- Passes ---

// What the root routines find made ready.
void prepare_root() {
    ply[0].sets = piece_sets(tab);
    forget_classes();
}

// Whether only the remembered best move is searched, or all but it, or all.
enum class PassKind { all_moves, best_move, other_moves };

// The schedule of one pass. Every limit that a node has lowered is back.
template <Colour c>
void run_pass(PassKind kind, bool asks_for_repetition = true) {
    bounds.MAXcut = bounds.MAXcutt;
    pass = Pass{.SCAN1 = kind == PassKind::best_move,
                .SCANT = kind == PassKind::other_moves,
                .pempatee = asks_for_repetition,
                .DEEP = search.deep};
    prepare_root();
    const float opponent = root.material_a[other(c)];
    if (opponent > material_of_bare_king) {
        run_temperament<c>();
    } else if (opponent == material_of_bare_king) {
        sweep<c>(bare_king_pawns);
        sweep<c>(bare_king_pieces);
        sweep<c>(bare_king_captures);
    }
}

// --- The iteration over depths ---

constexpr int deep_of_build_pass = 7;
constexpr int first_iterated_deep = 9;
constexpr int last_deep = 23;
constexpr int last_pass = 49;

long double weighed_log_of_material(Colour own) {
    return log_of_ratio(root.material_a[own], root.material_a[other(own)]) * options.MQ;
}

// A draw is worth more once the score is known to hold, and nothing is hanging.
void raise_draw_score(Colour own) {
    constexpr long double held_drop_of_lead = 5.0L;
    constexpr int one_pawn = 10;
    if (bounds.alfa[0] >= root.materialflot0 - held_drop_of_lead + weighed_log_of_material(own) &&
        game_line.peca == 0) {
        search.emp += one_pawn;
    }
}

// Opens the root window a step below the depth before.
void step_window() {
    constexpr float narrow = 1.0F, wide = 10.0F;
    const float step = search.DEEP9 ? narrow : wide;
    search.EP = 0;
    bounds.ALFA0 = bounds.alfa[0];
    bounds.alfa[0] -= step;
    search.E -= step;
}

// A mate of the build pass is searched again in full.
void reopen_after_mate() {
    if (bounds.alfa[0] >= least_mate) {
        bounds.ALFA0 = bounds.alfa[0];
        search.EP = 0;
        bounds.alfa[0] = start_of_alfa;
        search.E = no_score;
    }
}

// The silent pass that finds a first best move, at a lower depth.
template <Colour c>
void build() {
    const int deepIID1 = search.deep;
    search.deep = deep_of_build_pass;
    run_pass<c>(PassKind::all_moves, false);
    search.deep = deepIID1;
}

template <Colour c>
void search_best_move_of_first_depth() {
    if (options.HASHf) {
        clear_shallow_chain(c);
    }
    search.curr = 0;
    raise_draw_score(c);
    step_window();
    reopen_after_mate();
    run_pass<c>(PassKind::best_move);
}

bool is_time_left() {
    search.fim = clock_ms();
    return time_used() <= soft_limit() || !options.TC;
}

// The score is no mate, and neither clock nor options bind the search to one depth.
bool may_go_on() {
    return !pass.corte_MAXcut && search.IIDS && search.EXTRA_EVAL && bounds.alfa[0] < least_mate &&
           search.deep >= first_iterated_deep;
}

bool is_there_a_next_depth() {
    const bool in_time = is_time_left();
    return may_go_on() && search.deep + 2 <= last_deep &&
           (search.deep + 1 < options.deepp || options.deepp == no_depth_limit) && in_time;
}

// Each depth in two passes: the remembered best move alone, then all the others against its score.
template <Colour c>
void deepen() {
    for (int number = 3; number <= last_pass; number += 2) {
        if (!is_there_a_next_depth()) {
            return;
        }
        search.curr = 0;
        step_window();
        search.deep += 2;
        run_pass<c>(PassKind::best_move);
        if (number < last_pass && may_go_on() && search.deep <= last_deep) {
            run_pass<c>(PassKind::other_moves);
        }
    }
}

template <Colour c>
void iterate() {
    pass = Pass{};
    if (search.deep >= first_iterated_deep) {
        build<c>();
        if (search.curr == 1 && !observers.root_filter.on) {
            return;  // the only legal move
        }
        search_best_move_of_first_depth<c>();
    }
    if (!pass.corte_MAXcut) {
        run_pass<c>(PassKind::other_moves);
    }
    deepen<c>();
}

// The limits of the deepest plies, and the copy that passes begin from.
void keep_limits() {
    constexpr int last_filtered = 17;
    for (int n = last_filtered + 1; n < last_ply; ++n) {
        bounds.MAXcut[n] = bounds.MAXcut[n % 2 == 0 ? last_filtered - 1 : last_filtered];
    }
    bounds.MAXcutt = bounds.MAXcut;
}

// The memory answers with the move of an earlier search. Tells whether it does.
bool ask_game_memory() {
    if (!options.HASH1 || !search.HASH_MEM) {
        return false;
    }
    const auto known = hash_mem_scan(search.inn, demand_of_search());
    if (known) {
        search.E = known->E;
        game.abcd = known->abcd;
        game_line.PR = known->PR;
    }
    return known.has_value();
}

template <Colour c>
void sweep_first_move() {
    pass = Pass{.SCANT = 1};  // all moves: none is remembered
    prepare_root();
    for (pass.ataque = highest_class; pass.ataque >= lowest_class; --pass.ataque) {
        for (const Piece piece : {peao, cavalo}) {
            call_routine<c>(livre, sh, piece);
        }
    }
    make_owed_visit<c>();
}

template <Colour c>
void iterate_to_the_end() {
    iterate<c>();
    make_owed_visit<c>();
}

}  // namespace

SearchDemand demand_of_search() { return {static_cast<float>(search.tempo), static_cast<float>(search.deep)}; }

void set_draw_score(Colour own) {
    constexpr int one_pawn = 10;
    search.emp = to_int(static_cast<long double>(options.empp - one_pawn) + weighed_log_of_material(own));
    search.emppp = search.emp;
}

void search_root(Colour own) {
    search.mem_TEST = ask_game_memory() ? 1 : 0;
    if (search.mem_TEST) {
        return;
    }
    set_score_windows(own);
    keep_limits();
    own == white ? iterate_to_the_end<white>() : iterate_to_the_end<black>();
}

void search_first_move(Colour own) { own == white ? sweep_first_move<white>() : sweep_first_move<black>(); }

}  // namespace ondrel
