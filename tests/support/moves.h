// Moves as texts, and positions and moves seen from the other side: what the tests of the rules share.
#pragma once

#include "support/engine.h"
#include "support/plain_chess.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace teste {

using Textos = std::vector<std::string>;

// The moves as texts, in their order.
Textos textos(const std::vector<Lance>& lances);
// The same sorted: a multiset.
Textos em_ordem(Textos t);
// How often the move stands in the list.
int quantos(const Textos& lista, std::string_view lance);
// The moves of the list that start on the square, in their order.
Textos da_casa(const Textos& lista, std::string_view casa);

// The position, the square or the moves seen from the other side: colours and ranks exchanged, files kept.
std::string fen_espelhado(std::string_view fen);
std::string espelhado(std::string_view casas);
Textos espelhados(const Textos& lances);

// Reads a FEN, which must be sound.
plain::Position posicao(std::string_view fen);

// The board seen from the other side.
Tabuleiro espelhado(const Tabuleiro& t);

// Stands in for the children of ply n while it lives: none is entered. Each is noted, shown to `ao_entrar` as the search
// would enter it, and comes back with what that has written into its bound; the bound starts at the value that improves
// nothing.
class Filhos {
public:
    using AoEntrar = std::function<void(Lance)>;
    explicit Filhos(int n, AoEntrar ao_entrar = {});
    ~Filhos();
    Filhos(const Filhos&) = delete;
    Filhos& operator=(const Filhos&) = delete;

    // The moves that would have been searched, in order.
    [[nodiscard]] Textos lances() const;
    void esquece();
};

// The bound of the child of ply n, and that of ply n itself.
float& valor_do_filho(int n);
float& valor_do_no(int n);
// The flag that stops the move loop of ply n.
std::uint8_t& corte_do_no(int n);

// Lets a search write its lines to nowhere.
void sem_relato(const std::function<void()>& busca);

// The routines of ply n on the position of monta_ply, their children being those of a Filhos.
void roda_capturas(int n, std::string_view vitima, bool forma_de_teste = false);
void roda_livres(int n, std::string_view casa, bool forma_de_teste = false);
void roda_promocoes(int n, std::string_view casa);
void roda_etapa_da_ply_1(int K, std::string_view casa);  // K = 0: the test form
void roda_ordem(int n);

// A position and what is expected of it, for the colour given and, by mirroring, for the other.
struct Caso {
    std::string fen;
    Textos lances;
};
// The case itself and its mirror image.
std::vector<Caso> das_duas_cores(std::string_view fen, const Textos& lances);

}  // namespace teste
