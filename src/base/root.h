// The root: the game, the position to search and the move chosen. Arrays of two are indexed by Cor.
#pragma once

#include "base/options.h"
#include "base/ply_stack.h"

#include <cstdint>
#include <string>

namespace ondrel {

// --- The command line of the game (written by the front end) ---
inline std::string in;                  // the last line read, without its line end
inline int o = 24;                      // position in `in` of the move being read; p, q, r are the three behind it
inline std::uint8_t joga_c_b = 0;       // the line was exactly "position startpos"
inline std::uint8_t joga_c_p = 0;       // the line was the one-move form
inline std::uint8_t joga_c_ob = 0;      // the line was "position startpos moves" and more
inline std::uint8_t joga_c_fen = 0;     // the line was a FEN line
inline std::uint8_t SAIR_PROGRAMA = 0;  // quit was read
inline std::uint8_t book = 0;           // another move follows the one being read
inline std::uint8_t PROMO = 0;          // the move being read has a promotion letter
inline std::uint8_t MOVESfen = 0;       // the FEN line has a move list

// The character of the last line at position k; 0 past its end.
inline char in_em(std::size_t k) { return k < in.size() ? in[k] : '\0'; }

// --- The game ---
inline std::uint8_t joga_com_b = 0;  // side to search: 1 = white
inline int nb = 0;                   // half-moves replayed, 1 at the start of a game
inline int peca = 0;                 // signed code taken by the last replayed move, 0 if none
inline std::uint8_t pp = 0;          // as pp_D, for the root application
inline std::uint8_t X = 0;           // set by init_tabuleiro, cleared when a best move is set
constexpr int linhas_tabr1 = 1000;
inline std::array<Tabuleiro, linhas_tabr1> tabr1;  // row nb-1: tab after half-move nb; unwritten rows hold bytes of 1

// --- The move chosen, and its text ---
inline Lance abcd{0, 0, 0, 0};        // a, b, c, d: best root move, or the move being played
inline Lance aab_ddb = nenhum_lance;  // aab, bbb, ccb, ddb: the best move, for the gate of the coming pass
inline std::array<char, 4> ABCD{};    // A, B, C, D: characters of the move last read or written
inline std::array<std::array<char, 4>, 8> A0_D7{};  // A0..D0 to A7..D7: the line of the current root move, as text
inline char PR = '0';                               // promotion letter of the chosen move, '0' for none
inline char PRs = '0';                              // 'q' when the best move is a pawn's from its seventh rank
inline char PRe = '0';                              // promotion letter read from the line

// --- The root position, prepared by init_tabuleiro ---
inline std::array<float, 2> material_a{510.0F, 510.0F};     // materialba, materialpa: kings included
inline std::array<float, 2> materialmaior{320.0F, 320.0F};  // materialmaiorb, -p: without pawns and king
inline std::array<int, 2> npecas{15, 15};                   // npecasb, npecasp: men without the king
inline std::array<int, 2> npecas_dp{7, 7};                  // npecasbdp, npecaspdp: men without pawns and king
inline float materialflot0 = 0;                             // material of the side to search less its opponent's
inline float regimen = 0;                                   // balance value of the root position

inline int homens() { return npecas[brancas] + npecas[pretas]; }

// --- The search at the root ---
inline int DEEP = 0;                   // nominal depth of the pass
inline int curr = 0;                   // root moves searched in this pass
inline std::uint32_t nodes = 0;        // entries into a node in this search; 32 bits, shown signed
inline int ataque = 0;                 // class being swept, 100 .. -100
inline int ESTRATEGIA = 0;             // class of the root move under test, -100..100
inline int ATAQUE = 0;                 // the same before clamping
inline std::uint8_t TEST1IID = 0;      // the root move passes the gate of this pass
inline float E = -10000000.0F;         // best root score
inline float EP = 0;                   // score for the report
inline std::uint8_t corte_MAXcut = 0;  // stops the root schedule: root routines and the time check write it
inline std::uint8_t SCAN1 = 0;         // pass of the remembered best move alone
inline std::uint8_t SCANT = 0;         // pass of all moves but the remembered one
inline std::uint8_t DEEP9 = 0;         // many men on the board: narrow window steps
inline std::uint8_t IIDS = 1;          // iteration over depths is allowed
inline std::uint8_t pempatee = 1;      // repetition is looked for
inline std::uint8_t deeppromo = 0;     // 1 while a pass of ply 1 runs
inline int emp = 0;                    // draw score of this search, score units
inline int emppp = 0;                  // emp before any adjustment
inline std::array<int, 2> roque{};     // roque_b, roque_p: castling value of the current line, 0 for none
inline int ddep = 0;                   // deepest ply reached by the process; written by the leaf evaluation
inline int dddep = 0;                  // deepest ply reported in this search

// --- The clock, all in milliseconds from the start of the process ---
inline int tempo = 300000;  // time budget base
inline int inicio = 0;      // when the position line came
inline int fim = 0;         // last reading

// Men on the board over Time usage: what both time limits are divided by.
inline int q_do_tempo() { return homens() / Tu; }
inline int limite_suave() { return tempo / (2 * (5 * q_do_tempo() + 25)); }
inline int limite_duro() { return tempo / (q_do_tempo() + 5); }
inline int tempo_usado() { return fim - inicio; }

// --- The game-long memory's part of the root ---
inline std::array<char, 1000> inn{};  // the line as key, filled up with '9'
inline std::uint8_t HASH_MEM = 0;     // inn can serve as a key
inline std::uint8_t mem_TEST = 0;     // the memory has answered

}  // namespace ondrel
