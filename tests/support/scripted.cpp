#include "support/scripted.h"

#include "eval/strategy.h"
#include "search/schedule.h"
#include "support/chess_rules.h"

#include <iostream>
#include <stdexcept>
#include <utility>

namespace tests {

using namespace ondrel;

namespace {

// A child that is not searched must leave nothing behind but its value.
struct Kept {
    bool scripted = false;
    int deep = 0, DEEP = 0;
    Tree tree;
};

struct Play {
    Script::Line line;
    std::vector<Call> calls;
    std::vector<Kept> open;
};
Play play;

constexpr int too_shallow = -1;
constexpr int beyond_every_gate = 99;

Call call_of(int n, Move m) {
    return {n,
            m,
            search.deep,
            pass.DEEP,
            search.HASHf,
            root_move.PVSm,
            root_move.PVSm2,
            root_move.LMRtest,
            pass.SCAN1,
            pass.SCANT,
            pass.pempatee,
            pass.ataque,
            move_class.ESTRATEGIA,
            search.E,
            bounds.alfa[0],
            bounds.ALFA0,
            bounds.MAXcut};
}

void child_entered(int n, Move m) {
    play.calls.push_back(call_of(n, m));
    const std::optional<float> v = play.line(play.calls.back());
    play.open.push_back({v.has_value(), search.deep, pass.DEEP, tree});
    if (v) {
        value_of_ply(n) = *v;
        search.deep = too_shallow;
        pass.DEEP = beyond_every_gate;
    }
}

void child_left(int, Move, float) {
    if (const Kept& kept = play.open.back(); kept.scripted) {
        search.deep = kept.deep;
        pass.DEEP = kept.DEEP;
        tree = kept.tree;
    }
    play.open.pop_back();
}

}  // namespace

Script::Script(Line line) {
    play = {std::move(line), {}, {}};
    probes.child_entered = child_entered;
    probes.child_left = child_left;
}

Script::~Script() {
    probes.child_entered = nullptr;
    probes.child_left = nullptr;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): one script at a time, and its object keeps it
const std::vector<Call>& Script::calls() const { return play.calls; }

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): likewise
std::vector<std::string> Script::moves(int n) const {
    std::vector<std::string> texts;
    for (const Call& x : play.calls) {
        if (x.n == n) {
            texts.push_back(text_of(x.m));
        }
    }
    return texts;
}

std::size_t Script::count(int n) const { return moves(n).size(); }

Script::Line every_child(int n, float value) {
    return [n, value](const Call& x) { return x.n == n ? std::optional(value) : std::nullopt; };
}

Written::Written() : before_(std::cout.rdbuf(to_.rdbuf())) {}
Written::~Written() { std::cout.rdbuf(before_); }

void bare_search() {
    options.LMR = 0;
    options.NULL_MOVE = 0;
    options.PVS = 0;
    options.TURBO = 0;
    options.VERTICAL_filt = 0;
    options.TC = 0;
    options.SEARCH_EE = search.SEARCH_E = 0;
    options.HASHf = search.HASHf = 0;
    pass.pempatee = 0;
}

float mate_value(int n) {
    const auto size = static_cast<float>(16500 - 1100 * ((n + 1) / 2));
    return n % 2 == 0 ? -size : size;
}

std::string mirrored(std::string_view fen) {
    const std::optional<rules::Position> p = rules::from_fen(fen);
    if (!p) {
        throw std::invalid_argument("no position: " + std::string(fen));
    }
    return rules::to_fen(rules::mirrored(*p));
}

Move mirrored(Move m) { return move_of(m.from_file, 7 - m.from_rank, m.to_file, 7 - m.to_rank); }

void search_whole(Colour own) {
    const Written silent;
    search_root(own);
}

}  // namespace tests
