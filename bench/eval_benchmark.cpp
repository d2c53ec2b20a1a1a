// What one judgement costs: the estimate of a leaf, the four routines that judge it to the last bit, and base value and
// class of a root move, on fixed positions from the opening to bare endings. The time of an iteration is that of one
// call.
#include "base/ply_stack.h"
#include "board/game.h"
#include "eval/leaf.h"
#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "eval/weights.h"
#include "uci/command_line.h"
#include "uci/position.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <string_view>

namespace {

using namespace ondrel;

constexpr std::array<std::string_view, 20> positions{
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "rnbqkb1r/pp2pppp/3p1n2/8/3NP3/8/PPP2PPP/RNBQKB1R w KQkq - 1 5",
    "r1bqkbnr/1ppp1ppp/p1n5/4p3/B3P3/5N2/PPPP1PPP/RNBQK2R b KQkq - 1 4",
    "rnbq1rk1/ppp1bppp/4pn2/3p2B1/2PP4/2N2N2/PP2PPPP/R2QKB1R w KQ - 4 6",
    "r1bq1rk1/pp2ppbp/2np1np1/8/3NP3/2N1BP2/PPPQ2PP/R3KB1R w KQ - 3 9",
    "r2q1rk1/1b1nbppp/p2ppn2/1p6/3NPP2/2N1B3/PPPQB1PP/R4RK1 w - - 2 12",
    "r1b2rk1/2q1bppp/p1n1pn2/1p2N3/3P4/1BN1B3/PP2QPPP/R2R2K1 b - - 5 15",
    "2rq1rk1/pb2bppp/1pn1pn2/3p4/3P1B2/2NBPN2/PP2QPPP/2R2RK1 w - - 4 12",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "2r2rk1/1bqnbpp1/1p1ppn1p/pP6/N1P1P3/P2B1N1P/1B2QPP1/R2R2K1 b - - 0 1",
    "3r1rk1/p4ppp/1qp1p3/3nP3/2B5/P4Q2/1P3PPP/3RR1K1 w - - 1 24",
    "4r1k1/1q3pp1/p2p3p/1p1P4/2n2P2/P1Q4P/1P4P1/3R1R1K w - - 0 30",
    "8/5pk1/3q2p1/p1pP3p/P1P1Q3/1P4P1/5PK1/8 w - - 4 42",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "5k2/R7/4p3/3bPp2/5P2/6r1/8/4B1K1 b - - 7 55",
    "8/8/1p1k4/p1pPp1p1/P1P1P1P1/3K4/8/8 w - - 0 50",
    "6k1/5ppp/8/8/2r5/6P1/R4P1P/6K1 w - - 0 35",
    "8/8/4kpp1/3p1b2/p6P/2B5/6P1/6K1 b - - 0 47",
    "8/8/8/4k3/8/8/4P3/4K3 w - - 0 60",
};

constexpr std::array<int, 2> nobody_castled{0, 0};

// A move between empty squares, which leaves the board as it is.
Move move_of_nobody() {
    const SquareSet empty = ~piece_sets(tab).occupied();
    return move_between(first_square(empty), last_square(empty));
}

// The position prepared as before a search, and on tab2 as the leaf that such a search would judge, with the attack
// maps of a root move that led to it.
void set_up(std::string_view fen) {
    begin_game(white);
    command.in = "position fen " + std::string(fen);
    read_position();
    const Colour own = side_to_search();
    prepare_search(own);
    const Move m = move_of_nobody();
    own == white ? init_tabuleiro2<white>(m) : init_tabuleiro2<black>(m);
    judgement.extraevalll = 0;
}

template <Colour own, Colour stm>
void estimate() {
    prepare_weights(own);
    const PieceSets sets = piece_sets(trial.tab2);
    estimate_leaf<own, stm>({sets, trial.p_xy_R, nobody_castled});
}

template <void (*judge)(const std::array<int, 2>&)>
void without_castling() {
    judge(nobody_castled);
}

template <void (*routine)()>
void judge_one(benchmark::State& state) {
    set_up(positions.at(static_cast<std::size_t>(state.range(0))));
    for (auto iteration : state) {
        routine();
        benchmark::DoNotOptimize(judgement);
        benchmark::ClobberMemory();
    }
}

// The mean over all positions: what a search of a whole game pays.
template <void (*routine)()>
void judge_all(benchmark::State& state) {
    constexpr int calls = 100;
    double total = 0;
    for (auto iteration : state) {
        for (const std::string_view fen : positions) {
            state.PauseTiming();
            set_up(fen);
            state.ResumeTiming();
            for (int call = 0; call < calls; ++call) {
                routine();
                benchmark::DoNotOptimize(judgement);
                benchmark::ClobberMemory();
            }
            total += calls;
        }
    }
    state.counters["per_call"] = benchmark::Counter(total, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// One row for each of the positions, and one for all of them.
template <void (*routine)()>
void add(const std::string& name) {
    benchmark::RegisterBenchmark(name.c_str(), judge_one<routine>)
        ->DenseRange(0, static_cast<int>(positions.size()) - 1);
    benchmark::RegisterBenchmark((name + "/all").c_str(), judge_all<routine>);
}

template <Colour own>
void add_all_of(const std::string& colour) {
    add<estimate<own, own>>("estimate_leaf_" + colour);
    add<without_castling<extra_eval<own>>>("extra_eval_" + colour);
    add<without_castling<extra_evall<own>>>("extra_evall_" + colour);
    add<without_castling<verifica_estrategia<own>>>("verifica_estrategia_" + colour);
}

[[maybe_unused]] const bool added = [] {
    add_all_of<white>("white");
    add_all_of<black>("black");
    return true;
}();

}  // namespace
