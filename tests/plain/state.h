// Everything the plain engine remembers, in plain structs. Each is one global object; the routines of the other files
// read and write them by name and hand results to each other through them.
//
// The plain engine is written to be read and believed: one board of 64 squares, every move tried on a scratch board,
// every king found by scanning. It is the judge of the fast engine and shares no code with it.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace plain {

enum Colour { white, black };
constexpr Colour other(Colour c) { return c == white ? black : white; }

constexpr int peao = 10, cavalo = 32, bispo = 33, torre = 50, dama = 90, rei = 110;
inline constexpr std::array pieces_by_name = {peao, cavalo, bispo, torre, dama, rei};

// A man on a board is its code, negative for black.
using Board = std::array<signed char, 64>;
constexpr int code(Colour c, int piece) { return c == white ? piece : -piece; }
constexpr int size_of(int man) { return man < 0 ? -man : man; }
constexpr bool is_of(Colour c, int man) { return c == white ? man > 0 : man < 0; }

constexpr int at(int file, int rank) { return file * 8 + rank; }
constexpr bool on_board(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }
constexpr int man_on(const Board& board, int file, int rank) { return board[at(file, rank)]; }
inline void put(Board& board, int file, int rank, int man) { board[at(file, rank)] = static_cast<signed char>(man); }

// Rules are told for white; black has them with the ranks mirrored.
constexpr int rank_of(Colour c, int rank_for_white) { return c == white ? rank_for_white : 7 - rank_for_white; }
constexpr int ahead(Colour c) { return c == white ? 1 : -1; }

// From file, from rank, to file, to rank. In the capture slots the victim's square stands first. -1: empty.
struct Move {
    int a = -1, b = -1, c = -1, d = -1;
    bool operator==(const Move&) const = default;
};

struct Step {
    int file, rank;
};

// --- The settings, with their values at the start of the process ---
struct Settings {
    int CPU = 2;
    int deepp = 17;
    bool TC = true;
    int Tu = 3;
    bool SEARCH_EE = true;
    bool PVS = true;
    bool TURBO = true;
    int Positive_filterp = 2;
    float positfilter = 100.0F;
    int Negative_filterp = 2;
    float negatfilter = 100.0F;
    bool VERTICAL_filt = true;
    bool LMR = true;
    int NULL_MOVE = 2;
    int Temperamento = 3;
    float agres = 1.0F;
    float agresprxrei = 1.0F;
    int agreschrei = 1;
    int empp = -5;
    int matrix = 1;
    bool EXTRA_EVALL = true;
    float PM = 5.0F;
    float MOB = 5.0F;
    int roque_v = 3;
    bool extradef = true;
    float MQ = 5.0F;
    bool OwnBook = true;
    bool HASH1 = true;
    bool FULL_inf = true;
    bool CHESS_960 = false;
};
inline Settings settings;

constexpr int piecesac = 50;

// --- What may be castled and what may be taken en passant: 22 flags, one set for the root and one for each ply ---
struct Flags {
    std::array<bool, 2> R_jm{};    // by colour: the king has moved
    std::array<bool, 2> T_a_jm{};  // a rook has left the a-file
    std::array<bool, 2> T_h_jm{};  // a rook has left the h-file
    // pba .. pbh and ppa .. pph: a pawn of the colour has just made its double step on that file.
    std::array<std::array<bool, 8>, 2> double_step{};
};

// --- One ply: the position after its move. Ply 0 is the root, whose board is `tab` ---
struct Ply {
    Board tabd{};
    Flags flags;
    bool pp_D = false;                // the move has been placed already
    Colour joga_com_b_deep = black;   // the side that moves: the mover before the application, the replier after it
    std::array<float, 2> material{};  // running sums, less 100 each from ply 1 on
    bool X_D = false;                 // no reply has improved the bound so far
    bool XEQUE_MATE = false;          // a node without replies is mate
};

// --- The root: the game, its preparation, and what the root routines hand each other ---
struct Root {
    Colour joga_com_b = black;
    int nb = 0;    // half-moves replayed
    int peca = 0;  // what the last of them took
    std::vector<Board> tabr1 = std::vector<Board>(1000);

    std::array<float, 2> material_a{510.0F, 510.0F};     // with the king
    std::array<float, 2> materialmaior{320.0F, 320.0F};  // without pawns and king
    std::array<int, 2> npecas{15, 15};                   // men without the king
    std::array<int, 2> npecasdp{7, 7};                   // men without pawns and king
    float materialflot0 = 0;
    float regimen = 0;
    std::array<int, 2> p_x_R{4, 4}, p_y_R{0, 7};  // where the king of each colour was last seen, at any ply
    std::array<std::array<int, 64>, 2> Xr{}, XP{};

    int a = 0, b = 0, c = 0, d = 0;  // the move read last, then the best move
    Move aab;                        // aab, bbb, ccb, ddb: the best move, for the gate TEST1IID
    char PR = '0', PRs = '0', PRe = '0';
    bool X = false;
    bool pp = false;

    float E = 0, EP = 0, ALFA0 = 0;
    int ataque = 0;
    bool corte_MAXcut = false;
    bool SCAN1 = false, SCANT = false, BUIL1D = false;
    bool DEEP9 = false;
    bool IIDS = false;
    bool TEST1IID = false;
    bool XEQUE = false;
    bool pempatee = false, pempate = false;
    int emp = 0, emppp = 0;
    std::array<int, 2> roque{};  // the castling value of the line

    // After init_tabuleiro2: attacks by colour and kind (in the order of pieces_by_name) and all together.
    std::array<std::array<std::array<int, 64>, 6>, 2> ataca{};
    std::array<std::array<int, 64>, 2> N_A{};
    int MATRIZ = 0;
    bool incentiva_promo = false;
    int ATAQUE = 0, ESTRATEGIA = 0;
    float extraevalll = 0;
};
inline Root root;

// --- The tree below the root ---
struct Tree {
    std::array<Ply, 24> ply;
    Board tab2{};  // the scratch board
    std::array<float, 25> alfa{}, beta{};
    std::array<bool, 25> corte_alfa{}, corte_beta{};
    std::array<float, 24> MAXcut{}, MAXcutt{};  // index 0: the limit of the root
    float BETA1 = 0;

    int deep = 17, DEEP = 0;
    int nodes = 0, nd = 0;
    int curr = 0;                             // root moves searched in this pass
    std::array<int, 10> curr_N{};             // curr2 .. curr9
    std::array<bool, 10> LmrT{}, AmrT{};      // Lmr2T .. Lmr9T, Amr2T .. Amr9T
    std::array<Move, 24> quiet_slot;          // aa<N> ..; at ply 1 aa1v ..
    std::array<Move, 24> capture_slot;        // aa<N>g ..: victim, then attacker; at ply 1 aa1 ..: attacker first
    bool Y = false, XM = false, R = false;    // results of the tests
    int promocao = 0, ppassado = 0;           // worth of the move being entered
    bool PVSm = false, PVSm2 = false;         // in the scout pass of ply 1, of ply 2
    bool LMRtest = false;                     // in the full pass after a scout pass
    bool SEARCH_E = true, EXTRA_EVAL = true;  // working copies of the settings
    int Positive_filter = 2, Negative_filter = 2;
    bool deeppromo = false;   // below a root move
    float extraeval = 0;      // result of the leaf evaluators
    bool EMPAT = false;       // their verdict of a dead draw
    int ddep = 0, dddep = 0;  // deepest ply, of the last leaf and of the search
    int tempo = 0, inicio = 0, fim = 0;
    std::array<std::array<char, 4>, 8> line{};  // A0 .. D0 to A7 .. D7
};
inline Tree tree;

// In how many searches the clock has changed the course.
struct ClockCounts {
    int searches = 0;
    int hard_stops = 0;          // a node's time check has ended the search
    int soft_stops = 0;          // no further depth was begun because of the time
    int extensions = 0;          // a line was extended
    int refused_extensions = 0;  // a line was not extended because of the time

    void begin_search() {
        ++searches;
        seen_ = {};
    }
    void note_hard_stop() { count_once(0, hard_stops); }
    void note_soft_stop() { count_once(1, soft_stops); }
    void note_extension() { count_once(2, extensions); }
    void note_refused_extension() { count_once(3, refused_extensions); }

private:
    std::array<bool, 4> seen_{};
    void count_once(int kind, int& counter) {
        counter += !seen_[kind];
        seen_[kind] = true;
    }
};
inline ClockCounts clock_counts;

// Milliseconds since the start of the process: the one definition is that of the program.
int clock_reading();

}  // namespace plain
