// A leaf set up by hand, and what its judgement leaves behind.
#pragma once

#include "support/engine.h"
#include "support/plain_chess.h"
#include "support/plain_eval.h"

#include "eval/mobility.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string_view>

namespace teste {

// The position of the FEN, prepared for the search of its side to move; the same board stands on tab2 as the leaf.
Cor poe_folha(std::string_view fen);

// Another leaf under the root that stands, given by its board field. The kings stay remembered where they were.
void muda_folha(std::string_view campo);

// The phase of the game, which a judgement takes from the root and not from the leaf: men of both colours without the
// kings (at least two), and the piece material of each colour.
void poe_fase(int homens, float maior);

// Judges the leaf on tab2 as the side `own` with `stm` to move, and returns extraeval.
float julga(Cor own, Cor stm);
// The base value of a root move of own, whose position stands on tab2; returns extraevalll.
float valor_da_base(Cor own);

const ondrel::Contagem& brancas_contadas();
const ondrel::Contagem& pretas_contadas();

// The same question for the plain evaluation: tab2, what is remembered of the root, and the options.
plain::Board casas(const Tabuleiro& t);
plain::Board casas(const plain::Position& p);
plain::EvalInput entrada();

// Sums as a walk forms them: each term in double, the sum rounded to float each time.
float soma_dos_inversos(std::initializer_list<int> distancias);
float soma_dos_termos(std::initializer_list<double> termos);
// The weight of the squares named, "e4" and so on, in the middle of the board.
float soma_do_centroo(std::initializer_list<std::string_view> nomes);

int casa_de(std::string_view nome);

// Equal to the last bit; all that is no number counts as one value.
bool mesmos_bits(float a, float b);

// Whether the counters of one colour are those of the plain walk, to the last bit. The box is compared where the colour
// has a king or a pawn.
::testing::AssertionResult conta_como(const plain::SideCounts& certo, const ondrel::Contagem& contado);
// The same of the whole numbers alone.
::testing::AssertionResult conta_inteiros_como(const plain::SideCounts& certo, const ondrel::Contagem& contado);

// --- By chance ---

// Draws that are the same everywhere: the engine of the library, no distribution of it.
class Sorte {
public:
    explicit Sorte(std::uint32_t semente) : gerador_(semente) {}
    int ate(int n) { return static_cast<int>(gerador_() % static_cast<std::uint32_t>(n)); }
    bool sim() { return ate(2) != 0; }
    template <class T, std::size_t quantos>
    T um_de(const std::array<T, quantos>& valores) {
        return valores.at(static_cast<std::size_t>(ate(static_cast<int>(quantos))));
    }

private:
    std::mt19937 gerador_;
};

// A digit of an option from 0 to 9; the last step is 9 or 10.
float degrau(Sorte& sorte, float ultimo);
// The options that a judgement reads; castling, base value and balance; the kings remembered, which the last test of a
// king need not have found on this board.
void varia_opcoes(Sorte& sorte);
void varia_linha(Sorte& sorte);
void desloca_reis(Sorte& sorte);

// Makes tab2 a board that no game leads to, up to 64 men of any kind with pawns on the last ranks and kings by the
// dozen: the counters go as far as they can.
void enche(Sorte& sorte);

}  // namespace teste
