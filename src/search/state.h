// The state of the search, one struct for each lifetime. What ends with a lifetime is reset by assigning a fresh value:
// the front end begins a search, the schedule a pass, ply 1 a root move; nodes write the rest as told here.
//
// Scores are in score units (one pawn = 10), from the view of the side to move at the root. In the name of a family the
// number of a ply is the index.
#pragma once

#include "base/options.h"
#include "base/ply_stack.h"
#include "board/game.h"
#include "memory/game_memory.h"

namespace ondrel {

// --- The score scale ---

constexpr float start_of_alfa = -16500.0F;  // start value of alfa<N>: no move finished yet
constexpr float start_of_beta = 16500.0F;   // start value of beta<N>
constexpr float least_mate = 3300.0F;       // a value of this size or more is a forced mate
constexpr float no_score = -10000000.0F;    // start value of E: no root move has a score

// Size of the mate of ply N: the side to reply there has no legal move and is in check.
constexpr float mate_of_ply(int n) { return 16500.0F - 1100.0F * static_cast<float>((n + 1) / 2); }

// Default of MAXcut<N>: the nearest mate that can still follow from ply N; the root's own is that of ply 1.
constexpr float nearest_mate(int n) { return n == 0 ? mate_of_ply(1) : mate_of_ply(n + 1); }

constexpr std::array<float, last_ply> nearest_mates() {
    std::array<float, last_ply> t{};
    for (int n = 0; n < last_ply; ++n) {
        t[n] = nearest_mate(n);
    }
    return t;
}

// What every ply starts with.
template <std::size_t plies, class T>
constexpr std::array<T, plies> filled(T v) {
    std::array<T, plies> t{};
    t.fill(v);
    return t;
}

// --- Process ---

struct Process {
    int ddep = 0;  // deepest ply reached by any search; raised by leaves, set by the report without extra evaluation
};
inline Process process;

// --- Search: from the position line, or the new game, to the reply ---

// Begun afresh by the front end, which also takes the clock of the go line; then the root's and the nodes' as told.
struct Search {
    // Working copies of settings, which a search changes for a time.
    int deep = options.deepp;  // last ply that generates replies; clock rules, schedule and nodes change it
    std::uint8_t SEARCH_E = options.SEARCH_EE;
    std::uint8_t EXTRA_EVAL = options.EXTRA_EVALL;
    std::uint8_t HASHf = options.HASHf;  // nodes take the shallow tables out of use and back
    std::uint8_t IIDS = 1;               // iteration over depths is allowed; the clock rules clear it
    std::uint8_t DEEP9 = 0;              // many men on the board: narrow window steps

    // Time, all in milliseconds from the start of the process.
    int tempo = 300000;  // budget base
    int inicio = 0;      // when the position line came
    int fim = 0;         // last reading

    // The root.
    float E = no_score;                  // best root score, with the move in game.abcd; root routines, ply 1, schedule
    float EP = 0;                        // score for the report; the score last given to a drawn root move
    int emp = options.empp - 10;         // draw score
    int emppp = emp;                     // emp before any adjustment
    int curr = 0;                        // root moves searched at this depth; counted by ply 1
    std::uint32_t nodes = 0;             // entries into a node; 32 bits, shown signed
    int dddep = 0;                       // deepest ply reported
    std::array<std::uint8_t, 6> FULL{};  // FULL3 .. 5: the ring of that ply's shallow table has wrapped

    // The game-long memory.
    LineKey inn{};              // the position line as key
    std::uint8_t HASH_MEM = 0;  // inn can serve as a key
    std::uint8_t mem_TEST = 0;  // the memory has answered
};
inline Search search;

// Bounds, cut-off flags and limits.
struct Bounds {
    // Values of the nodes: alfa<N> at even N, beta<N> at odd N. alfa[0] is the root's bound, written by the root routines,
    // ply 1 and the schedule; the rest by its own node, and by a null-move pass below it for its time.
    std::array<float, last_ply + 1> alfa = filled<last_ply + 1>(start_of_alfa);
    std::array<float, last_ply + 1> beta = filled<last_ply + 1>(start_of_beta);
    float ALFA0 = start_of_alfa;  // alfa0 as the previous depth left it

    // corte_alfa<N-1> stops the move loop of an odd node N, corte_beta<N-1> that of an even one.
    std::array<std::uint8_t, last_ply> corte_alfa{};
    std::array<std::uint8_t, last_ply> corte_beta{};

    // MAXcut[0] is MAXcut, the root's own; at even N an upper, at odd N (negated) a lower limit of the node's value.
    // Plies 1 and 2 and the schedule change it for a pass; MAXcutt holds the values of the search.
    std::array<float, last_ply> MAXcut = nearest_mates();
    std::array<float, last_ply> MAXcutt = nearest_mates();
};
inline Bounds bounds;

// Stored moves, kept from node to node and from depth to depth; written by their own ply.
struct Slots {
    Move aab_ddb = no_move;  // aab, bbb, ccb, ddb: the best root move, for the gate of the coming pass
    // aa<N>, bb<N>, cc<N>, dd<N>: the quiet slot; of ply 1 aa1v .. dd1v.
    std::array<Move, last_ply> aa_dd = filled<last_ply>(no_move);
    // aa<N>g .. dd<N>g: the capture slot, victim's square first, attacker's behind it; of ply 1 aa1 .. dd1, the
    // attacker first.
    std::array<Move, last_ply> aag_ddg = filled<last_ply>(no_move);
};
inline Slots slots;

// --- Pass: one run of the root schedule; begun by the schedule ---

struct Pass {
    std::uint8_t SCAN1 = 0;         // the remembered best move alone
    std::uint8_t SCANT = 0;         // all moves but the remembered one
    std::uint8_t pempatee = 1;      // repetition is looked for
    int DEEP = 0;                   // nominal depth
    int ataque = 0;                 // class being swept, 100 .. -100
    std::uint8_t corte_MAXcut = 0;  // stops the schedule: root routines and the time check of the nodes set it
    std::uint8_t TEST1IID = 0;      // the root move under test passes the gate of the pass
    std::array<int, 2> roque{};     // roque_b, roque_p: castling value of the line, 0 for none; set around a castling
};
inline Pass pass;

// --- Root move: one call of deep_<c>1; begun by it ---

struct RootMove {
    float BETA1 = start_of_beta;                 // beta1 as the IID pass found it
    std::uint8_t PVSm = 0;                       // the scout pass of ply 1 runs
    std::uint8_t PVSm2 = 0;                      // the scout pass of ply 2 runs
    std::uint8_t LMRtest = 0;                    // the full pass of a move that came through its scout pass
    std::array<std::array<char, 4>, 8> A0_D7{};  // A0..D0 to A7..D7: the line shown, as text
};
inline RootMove root_move;

// --- Node ---

constexpr int selective_plies = 10;  // indices 2 to 9 are in use

// Written on entry of a node and by its parent.
struct Tree {
    int nd = 0;        // the node entered last
    int promocao = 0;  // worth of the incoming move: 80 for a promotion; worked out on entry, not stacked
    int ppassado = 0;  // 10 for an en-passant capture
    std::array<int, selective_plies> curr_N{};         // curr2 .. curr9: children entered from the present parent
    std::array<std::uint8_t, selective_plies> LmrT{};  // Lmr<N>T: no more reductions below this parent
    std::array<std::uint8_t, selective_plies> AmrT{};  // Amr<N>T: no more Amr below this parent
};
inline Tree tree;

// --- Time limits ---

// Men on the board over Time usage: what both limits are divided by.
inline int q_of_time() { return men_at_root() / options.Tu; }
inline int soft_limit() { return search.tempo / (2 * (5 * q_of_time() + 25)); }
inline int hard_limit() { return search.tempo / (q_of_time() + 5); }
inline int time_used() { return search.fim - search.inicio; }

// --- Values by parity ---

// The bound that the node of ply n writes, the flag of its move loop, and the value that the bound starts from.
template <bool even>
inline float& value(int n) {
    return even ? bounds.alfa[n] : bounds.beta[n];
}
template <bool even>
inline std::uint8_t& cut_flag(int n) {
    return even ? bounds.corte_beta[n - 1] : bounds.corte_alfa[n - 1];
}
template <bool even>
constexpr float start_value = even ? start_of_alfa : start_of_beta;

}  // namespace ondrel
