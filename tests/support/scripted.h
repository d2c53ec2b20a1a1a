// Searches whose children a test plays itself: what a node does with values, seen apart from the search below it.
#pragma once

#include "support/engine.h"

#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace teste {

// What a child of a node finds when it is about to be searched.
struct Chamada {
    int n;  // ply of the child
    Lance m;
    int deep, DEEP;
    std::uint8_t HASHf, deeppromo, PVSm, PVSm2, LMRtest, SCAN1, SCANT, pempatee;
    int ataque, ESTRATEGIA;
    float E, alfa0, ALFA0;
    std::array<float, ondrel::ultima_ply> MAXcut;
};

// Takes the children over while it lives. The script is asked about every child before it is searched: a number is
// returned as the child's value in place of a search, nothing lets the search go on. All calls are kept.
class Roteiro {
public:
    using Fala = std::function<std::optional<float>(const Chamada&)>;

    explicit Roteiro(Fala fala);
    ~Roteiro();
    Roteiro(const Roteiro&) = delete;
    Roteiro& operator=(const Roteiro&) = delete;

    [[nodiscard]] const std::vector<Chamada>& chamadas() const;
    // The moves of the children of ply n, in order.
    [[nodiscard]] std::vector<std::string> lances(int n) const;
    [[nodiscard]] std::size_t quantas(int n) const;
};

// A script that gives every child of ply n the same value and searches all others.
Roteiro::Fala sempre(int n, float valor);

// What is written to standard output while it lives, kept from the terminal.
class Escrita {
public:
    Escrita();
    ~Escrita();
    Escrita(const Escrita&) = delete;
    Escrita& operator=(const Escrita&) = delete;

    [[nodiscard]] std::string texto() const { return para_.str(); }

private:
    std::ostringstream para_;
    std::streambuf* antes_;
};

// Switches off what shortens or repeats a node's run: reductions, null moves, scout passes, filters, windows, clock,
// tables and repetition. What is left is the bare alpha-beta. (Below a depth of 7 there is no shallow pass either.)
void busca_nua();

// The value of mate at ply n from the view of the root side: the side to reply at node n is mated.
float mate_na_ply(int n);

// The same position, or move, with the colours changed: ranks mirrored, files kept.
std::string espelho(std::string_view fen);
Lance espelho(Lance m);

// A whole search of the prepared position, as between the go line and its answer; nothing reaches the terminal.
void busca_inteira(Cor minha);

}  // namespace teste
