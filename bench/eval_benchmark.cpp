// What one judgement costs: the four routines of the leaves and the base value of a root move, on fixed positions from
// the opening to bare endings. The time of an iteration is that of one call.
#include "base/bounds.h"
#include "base/root.h"
#include "eval/extra_eval.h"
#include "uci/position.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <string_view>

namespace {

using namespace ondrel;

constexpr std::array<std::string_view, 20> posicoes{
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

// The position prepared as before a search, and on tab2 as the leaf that such a search would judge.
Cor poe(std::string_view fen) {
    nova_partida(brancas);
    in = "position fen " + std::string(fen);
    le_posicao();
    const Cor minha = joga_com_b ? brancas : pretas;
    prepara_busca(minha);
    tab2 = tab;
    extraevalll = 0;
    return minha;
}

template <void (*rotina)()>
void julga(benchmark::State& estado) {
    poe(posicoes.at(static_cast<std::size_t>(estado.range(0))));
    for (auto volta : estado) {
        rotina();
        benchmark::DoNotOptimize(extraeval);
        benchmark::DoNotOptimize(extraevalll);
        benchmark::ClobberMemory();
    }
}

// The mean over all positions: what a search of a whole game pays.
template <void (*rotina)()>
void julga_todas(benchmark::State& estado) {
    double total = 0;
    for (auto volta : estado) {
        for (const std::string_view fen : posicoes) {
            estado.PauseTiming();
            poe(fen);
            estado.ResumeTiming();
            for (int vez = 0; vez < 100; ++vez) {
                rotina();
                benchmark::ClobberMemory();
            }
            total += 100;
        }
    }
    estado.counters["per_call"] = benchmark::Counter(total, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// One row for each of the positions.
constexpr int ultima_posicao = static_cast<int>(posicoes.size()) - 1;

BENCHMARK(julga<extra_eval<brancas>>)->Name("extra_eval_b")->DenseRange(0, ultima_posicao);
BENCHMARK(julga<extra_eval<pretas>>)->Name("extra_eval_p")->DenseRange(0, ultima_posicao);
BENCHMARK(julga<extra_evall<brancas>>)->Name("extra_evall_b")->DenseRange(0, ultima_posicao);
BENCHMARK(julga<extra_evall<pretas>>)->Name("extra_evall_p")->DenseRange(0, ultima_posicao);
BENCHMARK(julga<valor_base<brancas>>)->Name("valor_base_b")->DenseRange(0, ultima_posicao);
BENCHMARK(julga<valor_base<pretas>>)->Name("valor_base_p")->DenseRange(0, ultima_posicao);

BENCHMARK(julga_todas<extra_eval<brancas>>)->Name("extra_eval_b/all");
BENCHMARK(julga_todas<extra_eval<pretas>>)->Name("extra_eval_p/all");
BENCHMARK(julga_todas<extra_evall<brancas>>)->Name("extra_evall_b/all");
BENCHMARK(julga_todas<extra_evall<pretas>>)->Name("extra_evall_p/all");
BENCHMARK(julga_todas<valor_base<brancas>>)->Name("valor_base_b/all");
BENCHMARK(julga_todas<valor_base<pretas>>)->Name("valor_base_p/all");

}  // namespace
