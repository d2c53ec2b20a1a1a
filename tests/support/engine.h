// The engine inside the test: its state set up, its routines called, its conversation held in memory.
#pragma once

#include "base/bounds.h"
#include "base/options.h"
#include "base/probe.h"
#include "base/root.h"

#include <string>
#include <string_view>
#include <vector>

namespace teste {

using ondrel::Cor;
using ondrel::Lance;
using ondrel::Peca;
using ondrel::Tabuleiro;

// Puts every setting, table, memory and stored value back to what it is at the start of the process, and the probes to
// nothing. Called by the fixture before each test.
void processo_novo();

// Holds a conversation: gives the lines to the command loop, then the end of input, and returns the lines it wrote.
std::vector<std::string> conversa(const std::vector<std::string>& linhas);
// The same with the input as it stands, line ends included, and the output as one text.
std::string conversa_crua(std::string_view entrada);

// Sets the value of a UCI option through an option line.
void opcao(std::string_view nome, std::string_view valor);

// Replays a position line ("position startpos moves ..." or "position fen ...") and prepares the search of the side to
// move, as before the go wait. Returns that side.
Cor coloca(std::string_view linha);
// The same for a bare FEN.
Cor coloca_fen(std::string_view fen);

// The move in the four coordinates; "e2e4", a promotion letter is passed over.
Lance lance(std::string_view texto);
std::string texto(Lance m);

// A board from the first field of a FEN.
Tabuleiro tabuleiro(std::string_view campo);

// Makes ply n the position of the FEN as a node of ply n leaves it before its move order: board, flags, material (kings
// included), the side to move being the FEN's; bounds of all plies at their start values, limits at the mate ladder.
// Returns the side to move.
Cor monta_ply(int n, std::string_view fen);

// The replies that the generators of ply n try, in order: the whole move order of ply n for the side to move, on the
// position that monta_ply has made, no child being entered and no bound changing. Stored moves are used as they stand.
// For n = 1 the staged move order of ply 1.
std::vector<Lance> lances_tentados(int n);

// One generator of ply n alone, in its full or its test form, the same way.
std::vector<Lance> gera_capturas(int n, std::string_view vitima, bool forma_de_teste = false);
std::vector<Lance> gera_livres(int n, std::string_view casa, bool forma_de_teste = false);
std::vector<Lance> gera_promocoes(int n, std::string_view casa);
std::vector<Lance> gera_etapa_da_ply_1(int K, std::string_view casa);  // K = 0: the test form

// The root moves that a whole pass of the schedule would search, in order, with all classes and stages, no move being
// searched. The position is the one that `coloca` has prepared.
std::vector<Lance> lances_da_raiz();

// Searches the move m of colour c at ply n (1..24): as a generator of ply n-1 would, with the trial made on tab2, from
// the position that monta_ply(n-1, ...) (or, for n = 1, coloca) has made. Returns the value of the node.
float busca_no(int n, Lance m);

// How often a rule has acted since processo_novo or zera_contadores.
std::uint64_t quantas_vezes(ondrel::Regra r);
void zera_contadores();

// What the search shows of its children while an Escuta lives.
struct Filho {
    int n;  // ply of the child
    Lance m;
    int deep;  // at its entry
    std::uint32_t nodes;
    float valor;  // when it has come back
};
class Escuta {
public:
    Escuta();
    ~Escuta();
    Escuta(const Escuta&) = delete;
    Escuta& operator=(const Escuta&) = delete;
    [[nodiscard]] const std::vector<Filho>& filhos() const;
};

}  // namespace teste
