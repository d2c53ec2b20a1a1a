#include "uci/position.h"

#include "base/clock.h"
#include "eval/preparation.h"
#include "eval/tables.h"
#include "memory/shallow_tables.h"
#include "search/schedule.h"
#include "search/state.h"
#include "uci/command_line.h"

#include <algorithm>

namespace ondrel {
namespace {

constexpr int most_moves = 99999;
constexpr int first_move_at = 24;         // where the moves of "position startpos moves e2e4" begin
constexpr std::size_t board_at = 13;      // where the board of "position fen ..." begins
constexpr int castling_field = 5;         // characters of it that are looked at
constexpr std::size_t moves_within = 30;  // how far behind the board field "moves" may begin

// --- What a line begins with ---

void begin_line() {
    game_line = GameLine{};
    search = Search{};
    search.inicio = clock_ms();
    bounds = Bounds{};
    slots = Slots{};
    jm.p_ah = {};
    command.o = first_move_at;
    command.SAIR_PROGRAMA = 0;
    command.joga_c_b = 0;
    command.joga_c_p = 0;
}

// --- The moves of the line ---

bool is_promotion_letter(char x) { return x == 'q' || x == 'r' || x == 'b' || x == 'n'; }

// Notes in book and PROMO what stands behind the four characters of the move at o.
void look_behind_move() {
    const auto behind = static_cast<std::size_t>(command.o) + 4;
    command.book = 0;
    command.PROMO = 0;
    if (in_at(behind) == ' ') {
        command.book = 1;
    } else if (is_promotion_letter(in_at(behind)) && (in_at(behind + 1) == ' ' || in_at(behind + 1) == '\0')) {
        command.book = in_at(behind + 1) == ' ' ? 1 : 0;
        command.PROMO = 1;
    }
}

void go_to_next_move() { command.o += command.PROMO ? 6 : 5; }

// How many moves the walk from here will play.
int count_moves() {
    const int here = command.o;
    int count = 1;
    for (look_behind_move(); command.book && count <= most_moves; look_behind_move()) {
        go_to_next_move();
        ++count;
    }
    command.o = here;
    return count;
}

// A character outside its range leaves the coordinate as it was.
void decode(std::int8_t& coordinate, char x, char first) {
    if (x >= first && x < first + 8) {
        coordinate = static_cast<std::int8_t>(x - first);
    }
}

void decode_move() {
    for (std::size_t k = 0; k < command.ABCD.size(); ++k) {
        command.ABCD[k] = in_at(static_cast<std::size_t>(command.o) + k);
    }
    decode(game.abcd.from_file, command.ABCD[0], 'a');
    decode(game.abcd.from_rank, command.ABCD[1], '1');
    decode(game.abcd.to_file, command.ABCD[2], 'a');
    decode(game.abcd.to_rank, command.ABCD[3], '1');
}

void note_in_history() {
    if (game_line.nb <= tabr1_rows) {
        game_line.tabr1[game_line.nb - 1] = tab;
    }
}

// After the last move nb is not counted up again.
void play_moves() {
    for (;;) {
        look_behind_move();
        if (command.PROMO) {
            game_line.PRe = in_at(static_cast<std::size_t>(command.o) + 4);
        }
        play_move_of_line(command.book && game_line.nb < most_moves);
        go_to_next_move();
        note_in_history();
        if (!command.book) {
            return;
        }
        ++game_line.nb;
        if (game_line.nb > most_moves) {
            return;
        }
    }
}

void replay_from_start() {
    tab = start_board;
    jm = {};
    command.joga_c_ob = 1;
    game.joga_com_b = count_moves() % 2 == 0 ? 1 : 0;
    play_moves();
}

// --- FEN ---

Piece piece_of_letter(char x) {
    switch (x) {
        case 'P':
        case 'p': return peao;
        case 'N':
        case 'n': return cavalo;
        case 'B':
        case 'b': return bispo;
        case 'R':
        case 'r': return torre;
        case 'Q':
        case 'q': return dama;
        case 'K':
        case 'k': return rei;
        default: return no_piece;
    }
}

// Reads the board field and gives the position behind it. What would stand outside the board is dropped.
std::size_t read_board(std::size_t k) {
    tab = {};
    int f = 0;
    int r = last_rank;
    for (; k < command.in.size(); ++k) {
        const char x = command.in[k];
        if (x == ' ' && r == 0) {
            break;
        }
        if (x == '/') {
            f = 0;
            --r;
        } else if (x >= '1' && x <= '8') {
            f += x - '0';
        } else if (const Piece piece = piece_of_letter(x); piece != no_piece) {
            if (on_board(f, r)) {
                tab[square(f, r)] = man(x < 'a' ? white : black, piece);
            }
            ++f;
        }
    }
    return k;
}

void read_castling_right(char x) {
    if (options.CHESS_960) {
        jm.R_jm = jm.T_a_jm = jm.T_h_jm = {1, 1};
        return;
    }
    const Colour c = x == 'K' || x == 'Q' ? white : black;
    if (x == 'K' || x == 'k') {
        jm.R_jm[c] = 0;
        jm.T_h_jm[c] = 0;
    } else if (x == 'Q' || x == 'q') {
        jm.R_jm[c] = 0;
        jm.T_a_jm[c] = 0;
    }
}

// The file of the square tells the pawn, its rank the colour that has just made the double step.
void read_en_passant(char file, char rank) {
    if (file < 'a' || file > 'h') {
        return;
    }
    if (rank == '3') {
        jm.p_ah[white][file - 'a'] = 1;
    } else if (rank == '6') {
        jm.p_ah[black][file - 'a'] = 1;
    }
}

// Reads castling rights from position k on, and the en-passant square behind them.
void read_castling_and_en_passant(std::size_t k) {
    for (const std::size_t end = k + castling_field; k < end; ++k) {
        const char x = in_at(k);
        read_castling_right(x);
        if (x == '-' || x == ' ') {
            const std::size_t en_passant = k + (x == '-' ? 2 : 1);
            return read_en_passant(in_at(en_passant), in_at(en_passant + 1));
        }
    }
}

// Looks for a move list close behind the board field, and leaves o at its first move.
void find_moves(std::size_t end_of_board) {
    command.MOVESfen = 0;
    for (std::size_t k = end_of_board + 1; k <= end_of_board + moves_within; ++k) {
        if (in_at(k) == 'm' && in_at(k + 1) == 'o') {
            command.MOVESfen = 1;
            command.o = static_cast<int>(k) + 6;
            return;
        }
    }
}

void read_fen() {
    jm.R_jm = jm.T_a_jm = jm.T_h_jm = {1, 1};
    command.joga_c_fen = 1;
    const std::size_t end_of_board = read_board(board_at);
    const char side = in_at(end_of_board + 1);
    if (side == 'w' || side == 'b') {
        game.joga_com_b = side == 'w' ? 1 : 0;
    }
    read_castling_and_en_passant(end_of_board + 3);
    find_moves(end_of_board);
    if (command.MOVESfen && count_moves() % 2 != 0) {
        game.joga_com_b = game.joga_com_b ? 0 : 1;
    }
    prepare_position_of_fen();
    if (command.MOVESfen) {
        play_moves();
    }
}

// --- Search ---

// The line as key, filled up with '9'; one that is too long is none.
void make_key() {
    search.inn.fill('9');
    std::copy_n(command.in.begin(), std::min(command.in.size(), search.inn.size()), search.inn.begin());
    search.HASH_MEM = command.in.size() < search.inn.size() ? 1 : 0;
}

}  // namespace

bool is_line_from_start() { return in_at(0) == 'p' && in_at(9) == 's' && in_at(18) == 'm' && in_at(28) != '\0'; }
bool is_fen_line() { return in_at(0) == 'p' && in_at(5) == 'i' && in_at(9) == 'f'; }

void begin_game(Colour c) {
    constexpr int tempo_of_first_move = 180000;
    begin_line();
    trial = Trial{};
    root = RootPosition{};
    search.tempo = tempo_of_first_move;
    search.EXTRA_EVAL = 1;
    command.joga_c_ob = 0;
    command.joga_c_fen = 0;
    tab = start_board;
    jm = {};
    game.joga_com_b = c == white ? 1 : 0;
    fill_tables_of_new_game(c);
    if (options.HASHf) {
        clear_shallow_chain(c);
    }
}

void read_position() {
    const bool from_start = command.joga_c_ob || is_line_from_start();
    begin_line();
    if (from_start) {
        replay_from_start();
    } else if (command.joga_c_fen || is_fen_line()) {
        read_fen();
    }
}

void play_move_of_line(bool more_moves) {
    decode_move();
    game_line.peca = tab[game.abcd.to()];
    init_tabuleiro(more_moves);
}

void prepare_search(Colour own) {
    constexpr int many_men = 25;
    game.joga_com_b = own == white ? 1 : 0;
    make_key();
    fill_tables(own);
    if (options.HASHf) {
        clear_shallow_chain(own);
    }
    set_draw_score(own);
    search.deep = std::min(search.deep, 9);
    search.DEEP9 = men_at_root() > many_men ? 1 : 0;
}

}  // namespace ondrel
