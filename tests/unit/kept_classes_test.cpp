// The classes that root moves keep from visit to visit, and the visits that castling is judged by: the root routines
// are held against a root that makes every visit of every routine in full.
#include "board/castling.h"
#include "eval/leaf.h"
#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "search/move_walks.h"
#include "search/observers.h"
#include "search/root_routines.h"
#include "search/schedule.h"
#include "support/moves.h"
#include "support/sanitizers.h"
#include "support/scripted.h"
#include "uci/position.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace {

using namespace tests;
using namespace ondrel;

// --- Routines and passes ---

struct Routine {
    Stage stage;
    bool ch;
    Piece piece;
    int from;
};

// The routines that share a sweep over the classes, one for each man.
using Sweep = std::vector<Routine>;

template <Colour c>
Sweep routines_of_stage(Stage stage, bool ch) {
    Sweep routines;
    for (const Piece piece : piece_order) {
        squares_of(ply[0].sets.of(c, piece), [&](int from) {
            routines.push_back({stage, ch, piece, from});
            return false;
        });
    }
    return routines;
}

constexpr std::array captures_by_victim{positive5, positive4, positive3, positive2, positive1};

// A sweep for every routine of captures, castling among them, and behind them one of all quiet moves: where nothing can
// be taken castling is judged by what the pass before has left, and judged again and again at once.
template <Colour c>
std::vector<Sweep> captures_first() {
    std::vector<Sweep> sweeps;
    for (const Stage stage : captures_by_victim) {
        for (const bool ch : {true, false}) {
            for (const Routine& r : routines_of_stage<c>(stage, ch)) {
                sweeps.push_back({r});
            }
        }
    }
    sweeps.push_back(routines_of_stage<c>(livre, true));
    const Sweep without_check = routines_of_stage<c>(livre, false);
    sweeps.back().insert(sweeps.back().end(), without_check.begin(), without_check.end());
    return sweeps;
}

// One sweep of all routines: castling stands behind the quiet moves of every class.
template <Colour c>
std::vector<Sweep> all_at_once() {
    Sweep sweep;
    for (const Stage stage : {livre, positive1, positive2, positive3, positive4, positive5}) {
        for (const bool ch : {true, false}) {
            const Sweep routines = routines_of_stage<c>(stage, ch);
            sweep.insert(sweep.end(), routines.begin(), routines.end());
        }
    }
    return {sweep};
}

enum class Shape { captures_first, all_at_once };

template <Colour c>
std::vector<Sweep> sweeps_of(Shape shape) {
    return shape == Shape::captures_first ? captures_first<c>() : all_at_once<c>();
}

enum class PassKind { all_moves, best_move, other_moves };

// What a root move finds when it is searched.
struct SearchedMove {
    std::string move;
    int ataque;
    float base_value;
    bool operator==(const SearchedMove&) const = default;
};
std::ostream& operator<<(std::ostream& out, const SearchedMove& x) {
    return out << x.move << " at " << x.ataque << " on " << x.base_value;
}
using SearchedMoves = std::vector<SearchedMove>;

SearchedMove searched_now(Move m) { return {text_of(m), pass.ataque, judgement.extraevalll}; }

// A score for every move, so that now this one and now that one is the best.
float score_of(Move m) { return static_cast<float>((m.from() * 7 + m.to() * 13) % 41 - 20); }

// --- The root at length ---

template <Colour c>
class RootAtLength {
public:
    void call(const Routine& r) {
        if (r.piece == peao) {
            call_pawn(r);
        } else if (r.stage == livre) {
            quiet_moves(ply[0], r.piece, r.from, [&](Move m) { return visit(r, m); });
        } else {
            moves_onto_men(ply[0], r.piece, r.from, [&](Move m) { return visit_if_victim(r, m); });
            if (r.piece == rei && r.stage == positive1) {
                castle(r, short_side);
                castle(r, long_side);
            }
        }
    }

    [[nodiscard]] const SearchedMoves& searched() const { return searched_; }

private:
    void call_pawn(const Routine& r) {
        if (r.stage == livre) {
            pawn_pushes<c>(ply[0], r.from, [&](Move m) { return visit(r, m); });
            return;
        }
        pawn_captures<c>(r.from, [&](Move m) { return visit_if_victim(r, m); });
        if (r.stage == positive1) {
            en_passant_captures<c>(ply[0], r.from, [&](Move m) { return visit(r, m); });
        }
    }

    bool visit_if_victim(const Routine& r, Move m) {
        constexpr std::array victims{no_piece, peao, bispo, cavalo, torre, dama};
        return tab[m.to()] == code(other(c), victims[r.stage]) && visit(r, m);
    }

    bool visit(const Routine& r, Move m) {
        init_tabuleiro2<c>(m);
        verifica_rei<c>();
        verifica_xeque<c>();
        const int MATRIZ = root_trial.MATRIZ;
        classify<c>();
        if (!trial.Y && is_due(r, m)) {
            // The base value of a visit is read where the move is searched, and nowhere else.
            root_trial.MATRIZ = MATRIZ;
            verifica_estrategia<c>(pass.roque);
            search_move(m);
        }
        return false;
    }

    // Castling has no trial of its own: it is judged by what the visit before it has left, White's long one with check
    // on the squares, the gate and the board of the short one.
    void castle(const Routine& r, CastlingSide k) {
        verifica_xequemate<c>(0, r.from);
        if (trial.XM || !may_castle<c>(0, k)) {
            return;
        }
        const CastlingSide judged = c == white && r.ch ? short_side : k;
        verifica_roque<c>(0, judged);
        verifica_xeque<c>();
        verifica_estrategia<c>(pass.roque);
        if (!trial.R && is_due(r, castling_move(c, judged))) {
            search_move(castling_move(c, k));
        }
    }

    static bool is_due(const Routine& r, Move m) {
        const bool is_best = m == slots.aab_ddb;
        const bool passes_gate = !(pass.SCAN1 && !is_best) && !(pass.SCANT && is_best);
        return passes_gate && move_class.ESTRATEGIA == pass.ataque && (trial.XEQUE != 0) == r.ch;
    }

    void search_move(Move m) {
        searched_.push_back(searched_now(m));
        if (score_of(m) > search.E) {
            search.E = score_of(m);
            slots.aab_ddb = m;
        }
    }

    SearchedMoves searched_;
};

// --- Games of searches, by the engine and at length ---

// A root, and how many half-moves its game is old: from the seventieth on pawns are classed by another rule.
struct Root {
    std::string fen;
    int half_moves = 1;
};

void begin_pass(PassKind kind) {
    pass = Pass{.SCAN1 = kind == PassKind::best_move, .SCANT = kind == PassKind::other_moves, .pempatee = 0};
    forget_classes();
}

template <class CallRoutine>
void run_sweeps(const std::vector<Sweep>& sweeps, CallRoutine call_routine) {
    for (const Sweep& sweep : sweeps) {
        for (pass.ataque = highest_class; pass.ataque >= lowest_class; --pass.ataque) {
            for (const Routine& r : sweep) {
                call_routine(r);
            }
        }
    }
}

constexpr std::array passes_of_search{PassKind::all_moves, PassKind::best_move, PassKind::other_moves};

template <Colour c>
SearchedMoves search_by_engine(Shape shape) {
    SearchedMoves searched;
    const ChildrenOf children(0, [&](Move m) {
        searched.push_back(searched_now(m));
        bounds.beta[1] = score_of(m);
    });
    for (const PassKind kind : passes_of_search) {
        begin_pass(kind);
        run_sweeps(sweeps_of<c>(shape), [](const Routine& r) { analise100<c>(r.stage, r.ch, r.piece, r.from); });
    }
    make_owed_visit<c>();
    return searched;
}

template <Colour c>
SearchedMoves search_at_length(Shape shape) {
    RootAtLength<c> root_at_length;
    for (const PassKind kind : passes_of_search) {
        begin_pass(kind);
        run_sweeps(sweeps_of<c>(shape), [&](const Routine& r) { root_at_length.call(r); });
    }
    return root_at_length.searched();
}

// The searches of some roots one behind the other in one process.
std::vector<SearchedMoves> searches(const std::vector<Root>& roots, Shape shape, bool at_length) {
    fresh_process();
    std::vector<SearchedMoves> all;
    for (const Root& x : roots) {
        const Colour own = place_fen(x.fen);
        game_line.nb = x.half_moves;
        all.push_back(at_length ? (own == white ? search_at_length<white>(shape) : search_at_length<black>(shape))
                                : (own == white ? search_by_engine<white>(shape) : search_by_engine<black>(shape)));
    }
    return all;
}

class KeptClasses : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }

    static void expect_same_searches(const std::vector<Root>& roots) {
        for (const Shape shape : {Shape::captures_first, Shape::all_at_once}) {
            const auto by_engine = searches(roots, shape, false);
            const auto at_length = searches(roots, shape, true);
            for (std::size_t k = 0; k < roots.size(); ++k) {
                EXPECT_FALSE(by_engine[k].empty()) << roots[k].fen;
                EXPECT_EQ(by_engine[k], at_length[k]) << roots[k].fen << ", half-move " << roots[k].half_moves;
            }
        }
    }
};

// Roots with castlings whose classes hang on what was tried before.
const Texts roots_with_castling{
    "r3k2r/3p1p1p/8/1pb3p1/1P4P1/2P2P2/N4B1P/R3K2R w KQkq - 0 1",
    "r3k2r/pp3pp1/8/7p/8/1P6/P1PP3P/R3K2R w KQkq - 0 1",
    "r3k2r/pp1n1ppp/2p1bn2/3pP3/3P4/2N1BN2/PPP2PPP/R3K2R b KQkq - 0 1",
    "rnbqk2r/pp2bppp/2p2n2/3p2B1/3P4/4PN2/PP1N1PPP/R2QKB1R b KQkq - 0 8",
    "5k2/8/8/8/8/8/P6P/R3K2R w KQ - 0 1",
    "6k1/8/8/8/n7/2P5/8/RN2K2R w KQ - 0 1",
    "4r1k1/8/8/1p6/8/8/4Q3/4K2R w K - 0 1",  // the last move before castling is a capture by a pinned queen
};

TEST_F(KeptClasses, RootMovesAreSearchedWhenVisitsInFullWouldSearchThem) {
    std::vector<Root> roots;
    const std::vector<rules::Position> positions = rules::data_positions("positions.fen");
    for (std::size_t k = 0; k < positions.size(); k += with_sanitizers ? 401 : 101) {
        if (!rules::legal_moves(positions[k]).empty()) {
            roots.push_back({rules::to_fen(positions[k]), 1});
            roots.push_back({rules::to_fen(positions[k]), 80});
        }
    }
    ASSERT_GE(roots.size(), 4U);
    expect_same_searches(roots);
}

TEST_F(KeptClasses, CastlingIsJudgedByTheVisitBeforeItOverTheEndOfPassesAndSearches) {
    std::vector<Root> roots;
    std::vector<Root> mirrored_roots;
    for (const int half_moves : {1, 80}) {
        for (const std::string& fen : roots_with_castling) {
            roots.push_back({fen, half_moves});
            mirrored_roots.push_back({mirrored_fen(fen), half_moves});
        }
    }
    expect_same_searches(roots);
    // Each of them behind another search.
    std::reverse(mirrored_roots.begin(), mirrored_roots.end());
    expect_same_searches(mirrored_roots);
}

TEST_F(KeptClasses, AFilterOfTheRootChangesNoClass) {
    const auto with_filter = [](bool on) {
        fresh_process();
        place_fen(roots_with_castling.front());
        observers.root_filter.on = on;
        observers.root_filter.allowed[square_of("e1")][square_of("g1")] = true;
        observers.root_filter.allowed[square_of("e1")][square_of("c1")] = true;
        observers.root_filter.allowed[square_of("f2")][square_of("c5")] = true;
        begin_pass(PassKind::all_moves);
        SearchedMoves searched;
        const ChildrenOf children(0, [&](Move m) {
            if (observers.root_filter.allowed[m.from()][m.to()]) {
                searched.push_back(searched_now(m));
            }
        });
        run_sweeps(captures_first<white>(),
                   [](const Routine& r) { analise100<white>(r.stage, r.ch, r.piece, r.from); });
        return searched;
    };
    EXPECT_EQ(with_filter(true).size(), 3U);
    EXPECT_EQ(with_filter(true), with_filter(false));
}

// --- The end of a search ---

// What the visit of a move leaves for the castling behind it.
struct Traces {
    Board tab2;
    std::array<IntTable, 2> attacks;
    int MATRIZ;
    std::array<int, 2> kings;
    bool operator==(const Traces&) const = default;
};

Traces traces() {
    return {trial.tab2, {root_trial.maps[white].N_A, root_trial.maps[black].N_A}, root_trial.MATRIZ, trial.p_xy_R};
}

template <Colour c>
Traces traces_of_visit(Move m) {
    init_tabuleiro2<c>(m);
    verifica_rei<c>();
    verifica_xeque<c>();
    classify<c>();
    return traces();
}

TEST_F(KeptClasses, ASearchEndsWithTheTracesOfTheLastMovePassedBy) {
    // The last routine is that of the king's quiet moves without check; its walk ends at d2.
    const Colour own = place_fen("7k/8/8/8/8/8/4P3/4K3 w - - 0 1");
    options.deepp = search.deep = 5;
    {
        const Script moves(every_child(1, 0.0F));
        search_whole(own);
    }
    EXPECT_FALSE(is_move(visits.owed));
    const Traces left = traces();
    EXPECT_EQ(left, traces_of_visit<white>(move_from("e1d2")));
}

TEST_F(KeptClasses, TheSearchOfAFirstMoveEndsWithTheTracesOfTheLastMovePassedBy) {
    begin_game(white);
    {
        const Script moves(every_child(1, 0.0F));
        search_first_move(white);
        EXPECT_EQ(moves.count(1), 20U);
    }
    EXPECT_FALSE(is_move(visits.owed));
    const Traces left = traces();
    EXPECT_EQ(left, traces_of_visit<white>(move_from("g1h3")));
}

}  // namespace
