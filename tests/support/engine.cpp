#include "support/engine.h"

#include "board/apply.h"
#include "board/attacks.h"
#include "eval/leaf.h"
#include "eval/mobility.h"
#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "eval/tables.h"
#include "eval/weights.h"
#include "memory/game_memory.h"
#include "memory/shallow_tables.h"
#include "search/observers.h"
#include "search/ply_one.h"
#include "search/ply_one_replies.h"
#include "search/root_routines.h"
#include "search/schedule.h"
#include "uci/book.h"
#include "uci/command_loop.h"
#include "uci/options.h"
#include "uci/position.h"
#include "uci/process.h"

#include <iostream>
#include <sstream>
#include <stdexcept>

namespace tests {

using namespace ondrel;

namespace {

// The side to move on the ply set up last.
Colour side_to_move = white;

// Calls `f` with the colour and the ply as the templates want them.
template <class F>
void with_colour_and_ply(int n, Colour c, F f) {
    const auto with_ply = [&](auto colour) {
        n % 2 == 0 ? f(colour, PlyNumber<true>{n}) : f(colour, PlyNumber<false>{n});
    };
    c == white ? with_ply(std::integral_constant<Colour, white>{}) : with_ply(std::integral_constant<Colour, black>{});
}

// The value that improves nothing at a ply of that parity.
float worst_child_value(int n) { return n % 2 == 0 ? start_of_alfa : start_of_beta; }

template <class Routine>
std::vector<Move> tried_by(int n, Routine routine) {
    const ChildrenOf children(n);
    routine();
    return children.moves();
}

}  // namespace

void fresh_process() {
    probes = {};
    begin_process();
    side_to_move = white;
}

// --- Conversations ---

std::string converse_raw(std::string_view input) {
    std::istringstream from{std::string(input)};
    std::ostringstream to;
    auto* const cin_before = std::cin.rdbuf(from.rdbuf());
    auto* const cout_before = std::cout.rdbuf(to.rdbuf());
    std::cin.clear();
    run_command_loop();
    std::cin.rdbuf(cin_before);
    std::cout.rdbuf(cout_before);
    return to.str();
}

std::vector<std::string> converse(const std::vector<std::string>& lines) {
    std::string input;
    for (const std::string& line : lines) {
        input += line + '\n';
    }
    std::istringstream output(converse_raw(input));
    std::vector<std::string> written;
    for (std::string line; std::getline(output, line);) {
        written.push_back(line);
    }
    return written;
}

void set_option(std::string_view name, std::string_view value) {
    command.in = "setoption name " + std::string(name) + " value " + std::string(value);
    read_option();
}

// --- Positions ---

Colour place(std::string_view line) {
    command.in = line;
    command.joga_c_ob = 0;
    command.joga_c_fen = 0;
    read_position();
    const Colour own = side_to_search();
    prepare_search(own);
    ply[0].sets = piece_sets(tab);
    forget_classes();
    return own;
}

Colour place_fen(std::string_view fen) { return place("position fen " + std::string(fen)); }

int square_of(std::string_view name) { return square(name[0] - 'a', name[1] - '1'); }

Move move_from(std::string_view t) {
    if (t.size() < 4) {
        throw std::invalid_argument("a move needs four characters: " + std::string(t));
    }
    return move_of(t[0] - 'a', t[1] - '1', t[2] - 'a', t[3] - '1');
}

std::string text_of(Move m) {
    return {static_cast<char>('a' + m.from_file), static_cast<char>('1' + m.from_rank),
            static_cast<char>('a' + m.to_file), static_cast<char>('1' + m.to_rank)};
}

Colour set_up_ply(int n, std::string_view fen) {
    side_to_move = place_fen(fen);
    prepare_weights(n % 2 == 0 ? side_to_move : other(side_to_move));
    const Ply at_root = ply[0];
    bounds = {};
    slots = {};
    for (int k = 1; k <= n; ++k) {
        ply[k] = at_root;
        ply[k].material = root.material_a;
        ply[k].X_D = 1;
        ply[k].XEQUE_MATE = 1;
    }
    tree.nd = n;
    search.deep = n % 2 == 0 ? n + 3 : n + 2;
    pass.DEEP = search.deep;
    return side_to_move;
}

Colour side_on_ply() { return side_to_move; }

// --- Children seen and not searched ---

namespace {

// What a child must not leave behind, kept while it is entered.
struct Kept {
    int deep, DEEP;
    Tree tree;
};

struct Watch {
    int n = -1;
    std::vector<Move> moves;
    ChildrenOf::OnEntry on_entry;
    std::vector<Kept> kept;
};
Watch watch;

constexpr int too_shallow = -1;
constexpr int beyond_every_gate = 99;

void child_entered(int n, Move m) {
    if (n != watch.n + 1) {
        return;
    }
    watch.moves.push_back(m);
    (n % 2 == 0 ? bounds.alfa : bounds.beta)[n] = worst_child_value(watch.n);
    if (watch.on_entry) {
        watch.on_entry(m);
    }
    watch.kept.push_back({search.deep, pass.DEEP, tree});
    search.deep = too_shallow;
    pass.DEEP = beyond_every_gate;
}

void child_left(int n, Move, float) {
    if (n != watch.n + 1) {
        return;
    }
    search.deep = watch.kept.back().deep;
    pass.DEEP = watch.kept.back().DEEP;
    tree = watch.kept.back().tree;
    watch.kept.pop_back();
}

}  // namespace

ChildrenOf::ChildrenOf(int n, OnEntry on_entry) {
    watch = {n, {}, std::move(on_entry), {}};
    probes.child_entered = child_entered;
    probes.child_left = child_left;
}

ChildrenOf::~ChildrenOf() {
    probes.child_entered = nullptr;
    probes.child_left = nullptr;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): one watch at a time, and its object keeps it
std::vector<Move> ChildrenOf::moves() const { return watch.moves; }

// --- Routines ---

void run_replies(int n) {
    with_colour_and_ply(n, side_to_move, [n](auto colour, auto p) {
        if (n == 1) {
            search_replies_of_ply_1<colour()>();
        } else {
            search_replies<colour()>(p);
        }
    });
}

void run_captures(int n, std::string_view victim, bool test_form) {
    with_colour_and_ply(n, side_to_move, [&](auto colour, auto p) {
        prepare_move_loop<colour()>(p);
        const int i = square_of(victim);
        test_form ? gerador_deep<colour(), true>(p, i) : gerador_deep<colour(), false>(p, i);
    });
}

void run_quiet(int n, std::string_view from, bool test_form) {
    const int i = square_of(from);
    const auto piece = static_cast<Piece>(value_of(ply[n].tabd[i]));
    with_colour_and_ply(n, side_to_move, [&](auto colour, auto p) {
        prepare_move_loop<colour()>(p);
        test_form ? analiselivre_deep<colour(), true>(p, piece, i) : analiselivre_deep<colour(), false>(p, piece, i);
    });
}

void run_promotions(int n, std::string_view from) {
    with_colour_and_ply(n, side_to_move, [&](auto colour, auto p) {
        prepare_move_loop<colour()>(p);
        analisepositive_peao_deep<colour()>(p, square_of(from));
    });
}

void run_stage(int K, std::string_view from) {
    const int i = square_of(from);
    const auto piece = static_cast<Piece>(value_of(ply[1].tabd[i]));
    with_colour_and_ply(1, side_to_move, [&](auto colour, auto) {
        prepare_move_loop<colour()>(ply_1);
        analisepositive_deep1<colour()>(K, piece, i);
    });
}

std::vector<Move> replies_tried(int n) {
    return tried_by(n, [n] { run_replies(n); });
}
std::vector<Move> captures_tried(int n, std::string_view victim, bool test_form) {
    return tried_by(n, [&] { run_captures(n, victim, test_form); });
}
std::vector<Move> quiet_moves_tried(int n, std::string_view from, bool test_form) {
    return tried_by(n, [&] { run_quiet(n, from, test_form); });
}
std::vector<Move> promotions_tried(int n, std::string_view from) {
    return tried_by(n, [&] { run_promotions(n, from); });
}
std::vector<Move> stage_tried(int K, std::string_view from) {
    return tried_by(1, [&] { run_stage(K, from); });
}

namespace {

std::vector<Move> root_moves_seen;

}  // namespace

// At depth 0 a root move is worth its material: every one is searched, and nothing below it.
std::vector<Move> root_moves_tried() {
    root_moves_seen.clear();
    probes.child_entered = [](int n, Move m) {
        if (n == 1) {
            root_moves_seen.push_back(m);
        }
    };
    const int deep = search.deep;
    const auto HASH1 = options.HASH1;
    search.deep = 0;
    options.HASH1 = 0;
    search_root(side_to_search());
    search.deep = deep;
    options.HASH1 = HASH1;
    probes.child_entered = nullptr;
    return root_moves_seen;
}

float search_node(int n, Move m) {
    const Colour c = n == 1 ? side_to_search() : side_to_move;
    with_colour_and_ply(n, c, [=](auto colour, auto p) {
        constexpr Colour mover = colour();
        if (n == 1) {
            init_tabuleiro2<mover>(m);
        } else {
            init_tabuleiro2_deep<mover>(n - 1, m);
        }
        verifica_rei<mover>();
        ++search.nodes;
        if (n == 1) {
            deep_1<mover>(m);
            return;
        }
        const PlyNumber<!decltype(p)::even> above{n - 1};
        prepare_weights(n % 2 == 0 ? other(c) : c);
        prepare_move_loop<mover>(above);
        deep_<mover>(p, m);
    });
    return value_of_ply(n);
}

float& value_of_ply(int n) { return n % 2 == 0 ? bounds.alfa[n] : bounds.beta[n]; }
float& value_of_child(int n) { return value_of_ply(n + 1); }
std::uint8_t& cut_flag_of(int n) { return n % 2 == 0 ? bounds.corte_beta[n - 1] : bounds.corte_alfa[n - 1]; }

std::uint64_t times(Rule r) { return probes.times[static_cast<std::size_t>(r)]; }
void clear_counts() { probes.times = {}; }

}  // namespace tests
