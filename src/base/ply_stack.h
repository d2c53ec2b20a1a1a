// The ply stack: one record per ply, copied from the ply above by its node, so that nothing is ever undone.
#pragma once

#include "base/masks.h"
#include "base/types.h"

namespace ondrel {

constexpr int sem_rei = -1;
constexpr int ultima_ply = 24;  // a leaf only: it has no board of its own

// The position after N plies of the line now being searched. Written by the node of ply N alone (and by the null-move
// pass of ply N-1 for its time); ply 0 is the position of the game, which the search does not change.
struct Ply {
    Tabuleiro tabd{};
    Bandeiras jm_D{};
    std::uint8_t pp_D = 0;  // the move is already on the board: skip the transfer; only inside an application
    std::uint8_t joga_com_b_deep = 0;  // 1 = white: the mover before the application, the side to move after it
    std::uint8_t X_D = 0;              // 1 until a reply has improved the ply's bound
    std::uint8_t XEQUE_MATE = 0;       // 1 until the king's generator has found its side not in check
    std::array<float, 2> material{};   // running material by Cor, score units
    Mascaras mascaras;                 // tabd in sets of squares

    // Prepared by prepara_lances for the move loop of the ply, and constant while it runs.
    Mascara destinos = 0;   // where a man other than the king may go: all squares, or those that answer a check
    Mascara cravadas = 0;   // men of the side to move that may leave its king on their line alone
    int rei_em = sem_rei;   // square of the king of the side to move; sem_rei where it has none or several
    bool em_xeque = false;  // that king is attacked
    float cadeia = 0;       // the bound above that cuts first: the highest alfa above an odd ply, the lowest beta
    float corta_em = 0;     // the same with the ply's own limit: a value that reaches it ends the loop
};

inline std::array<Ply, ultima_ply> ply;

// The trial of the move that enters a ply, where that is not the position after the move: castling by rights that the
// line gives without a king on his square. Null for every other move.
inline std::array<const Tabuleiro*, ultima_ply + 1> ensaio_alheio{};

// The root board, ply 0 of the stack.
inline Tabuleiro& tab = ply[0].tabd;
// The root's flags: R_b_jm .. pph.
inline Bandeiras& jm = ply[0].jm_D;

// The scratch board of the move under test. Every trial overwrites it; a test reads it at once.
inline Tabuleiro tab2{};

// Result flags, overwritten at each call and read at once (or stale, where a rule says so).
inline std::uint8_t Y = 0;        // verifica_rei: the king tested is attacked
inline std::uint8_t XEQUE = 0;    // verifica_xeque: the mover gives check
inline std::uint8_t XM = 0;       // verifica_xequemate: the square is attacked
inline std::uint8_t R = 0;        // verifica_roque: the castling path is attacked
inline std::uint8_t pempate = 0;  // verifica_empate: the position repeats

// King squares by Cor, on the board last tested: not on any given ply.
inline std::array<int, 2> p_x_R{4, 4};  // p_x_Rb, p_x_Rp: file
inline std::array<int, 2> p_y_R{0, 7};  // p_y_Rb, p_y_Rp: rank

}  // namespace ondrel
