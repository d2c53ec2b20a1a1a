#include "uci/command_loop.h"

#include "eval/preparation.h"
#include "memory/game_memory.h"
#include "search/observers.h"
#include "search/schedule.h"
#include "search/state.h"
#include "uci/book.h"
#include "uci/command_line.h"
#include "uci/go.h"
#include "uci/options.h"
#include "uci/output.h"
#include "uci/position.h"
#include "uci/report.h"

#include <iostream>

namespace ondrel {
namespace {

constexpr std::string_view new_game_line = "position startpos";

// Reads a line into `in`, without its line end. Tells whether there was one.
bool read_line() {
    std::string& in = command.in;
    if (!std::getline(std::cin, in)) {
        in.clear();
        return false;
    }
    if (!in.empty() && in.back() == '\r') {
        in.pop_back();
    }
    return true;
}

// Finds which form of position the line has, if any, and notes it in the flags.
bool recognise_position() {
    if (command.in == new_game_line) {
        command.joga_c_b = 1;
    } else if (is_line_from_start()) {
        command.joga_c_ob = 1;
    } else if (in_at(0) == 'p' && in_at(9) == 's' && in_at(18) == 'm') {
        command.joga_c_p = 1;  // one move of four characters
    } else if (is_fen_line()) {
        command.joga_c_fen = 1;
    } else {
        return false;
    }
    return true;
}

void forget_forms() {
    command.joga_c_b = 0;
    command.joga_c_p = 0;
    command.joga_c_ob = 0;
    command.joga_c_fen = 0;
}

void answer_uci() {
    write_line("id name Ondrel 29.1 64bit");
    write_line("id author Ilvar Tessmo Quernal");
    if (options.HASH1) {
        clear_game_memory();
    }
    announce_options();
    write_line("uciok");
}

// Reads until a go line and takes its clock; the end of input counts as a plain go.
void wait_for_go() {
    while (read_line()) {
        if (in_at(0) == 'g' && in_at(1) == 'o') {
            read_clock();
            return;
        }
    }
}

// The text of the move, the final report, and the reply.
void reply() {
    convert_0000_to_a1a2();
    info_final();
    write_line(command.out);
}

// --- The first move of a game is answered on the position line ---

// White's first move, or Black's reply to it, by a search of pawn and knight moves alone.
void search_and_reply_to_new_game(Colour own) {
    search_first_move(own);
    search.EP = search.E;
    init_tabuleiro();
    reply();
}

void begin_as_white() {
    begin_game(white);
    if (options.OwnBook) {
        write_line(reply_to_new_game);
    } else {
        search_and_reply_to_new_game(white);
    }
}

void begin_as_black() {
    begin_game(black);
    play_move_of_line();
    if (!options.OwnBook) {
        search_and_reply_to_new_game(black);
    } else if (const auto text = reply_to_first_move(command.in); !text.empty()) {
        write_line(text);
    }
}

// --- A game in progress ---

// Tells whether the book has answered.
bool reply_from_book() {
    if (!options.OwnBook || command.joga_c_fen || !command.joga_c_ob) {
        return false;
    }
    side_to_search() == white ? Own_Book_b() : Own_Book_p();
    return own_book.OwnBk;
}

// A searched move is played, and remembered.
void play_searched_move() {
    init_tabuleiro();
    if (options.HASH1 && search.HASH_MEM) {
        hash_mem_build(search.inn, demand_of_search(), {search.E, game.abcd, game_line.PR});
    }
}

// One exchange.
void play_position() {
    read_position();
    if (reply_from_book()) {
        return;
    }
    const Colour own = side_to_search();
    prepare_search(own);
    wait_for_go();
    search_root(own);
    search.EP = search.E;
    if (!search.mem_TEST) {
        play_searched_move();
    }
    reply();
}

// Plays from the first position line to the end of input or quit.
void play_games() {
    for (;;) {
        if (command.joga_c_b) {
            begin_as_white();
        } else if (command.joga_c_p) {
            begin_as_black();
        } else if (command.joga_c_ob || command.joga_c_fen) {
            play_position();
        } else {
            return;
        }
        convert_a1a2_to_0000();
    }
}

}  // namespace

void convert_0000_to_a1a2() {
    if (game_line.PR != '0' && game_line.PR != 'q') {
        return;
    }
    const Move m = game.abcd;
    command.ABCD = {static_cast<char>('a' + m.from_file), static_cast<char>('1' + m.from_rank),
                    static_cast<char>('a' + m.to_file), static_cast<char>('1' + m.to_rank)};
    command.out = "bestmove " + std::string(command.ABCD.data(), command.ABCD.size());
    if (game_line.PR == 'q') {
        command.out += 'q';
        game_line.PR = '0';
    }
    game_line.PRs = '0';
}

void convert_a1a2_to_0000() {
    forget_forms();
    while (read_line()) {
        if (recognise_position()) {
            return;
        }
        if (command.in == "isready") {
            write_line("readyok");
        } else if (command.in == "quit") {
            command.SAIR_PROGRAMA = 1;
            return;
        } else {
            read_option();
        }
    }
}

void run_command_loop() {
    observers.root_move_searched = report_root_move;
    while (read_line()) {
        if (command.in == "uci") {
            answer_uci();
        }
        read_option();
        if (command.in == "isready") {
            write_line("readyok");
        }
        if (command.in == "quit") {
            return;
        }
        if (recognise_position()) {
            play_games();
            if (command.SAIR_PROGRAMA) {
                return;
            }
        }
    }
}

}  // namespace ondrel
