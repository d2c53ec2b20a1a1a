#include "plain/frontend.h"

#include <iostream>

#include "plain/board.h"
#include "plain/eval.h"
#include "plain/memory.h"
#include "plain/options.h"
#include "plain/root.h"

namespace plain {

// --- The line ---

// False at the end of input. A line ends with LF or CR LF.
static bool read_line() {
    if (!std::getline(std::cin, talk.in)) {
        talk.in.clear();
        return false;
    }
    if (!std::cin.eof() && !talk.in.empty() && talk.in.back() == '\r') {
        talk.in.pop_back();
    }
    return true;
}

// Past the end: 0.
static char in(int k) {
    return k >= 0 && static_cast<std::size_t>(k) < talk.in.size() ? talk.in[static_cast<std::size_t>(k)] : '\0';
}

static void write_line(const std::string& text) { std::cout << text << std::endl; }

static bool is_moves_line() { return in(0) == 'p' && in(9) == 's' && in(18) == 'm'; }
static bool is_fen_line() { return in(0) == 'p' && in(5) == 'i' && in(9) == 'f'; }

// --- The reply ---

static void convert_0000_to_a1a2() {
    if (root.PR != '0' && root.PR != 'q') {
        return;
    }
    talk.A = static_cast<char>('a' + root.a);
    talk.B = static_cast<char>('1' + root.b);
    talk.C = static_cast<char>('a' + root.c);
    talk.D = static_cast<char>('1' + root.d);
    talk.out = std::string("bestmove ") + talk.A + talk.B + talk.C + talk.D;
    if (root.PR == 'q') {
        talk.out += 'q';
    }
    const int length = root.PR == 'q' ? 6 : 5;
    for (int* position : {&talk.o, &talk.p, &talk.q, &talk.r}) {
        *position += length;
    }
    root.PR = '0';
    root.PRs = '0';
}

// --- Reports ---

// The ladder of mates: 15400, 14300 .. 3300. Empty when the score is none of them.
static std::string mate_text(float score) {
    for (int k = 0; k < 12; ++k) {
        const auto size = static_cast<float>(15400 - 1100 * k);
        if (score == size) {
            return "info score mate " + std::to_string(k == 0 ? 1 : k) + " ";
        }
        if (score == -size) {
            return "info score mate -" + std::to_string(k + 1) + " ";
        }
    }
    return "";
}

// What is added to a score in centipawns: a pawn that goes with the parity of the depth.
static int draw_offset() {
    const int O = root.emp == root.emppp ? 100 : 0;
    return tree.deep % 2 == 0 ? -O : O;
}

static std::string score_text(float score) {
    std::string mate = mate_text(score);
    if (!mate.empty()) {
        return mate;
    }
    const int centipawns = to_int(static_cast<double>(score) * 10.0);
    return "info score cp " +
           std::to_string(wrap(static_cast<unsigned>(centipawns) + static_cast<unsigned>(draw_offset())));
}

static void info() {
    if (!tree.EXTRA_EVAL) {
        tree.dddep = tree.deep;
    }
    std::cout << score_text(root.EP) << " depth " << tree.dddep + 1 << " nodes " << tree.nodes << " pv " << talk.A
              << talk.B << talk.C << talk.D << std::endl;
}

static std::string line_text(int k) { return {tree.line[k].begin(), tree.line[k].end()}; }

void report_root_move() {
    const float beta1 = tree.beta[1];
    const double S = static_cast<double>(beta1) * 10.0;
    if (!tree.EXTRA_EVAL) {
        tree.ddep = tree.deep;
    }
    const int now = clock_reading();
    const bool is_shown = settings.FULL_inf || !mate_text(beta1).empty() ||
                          S + draw_offset() >= static_cast<double>(root.materialflot0) * 10.0 - 150.0;
    if (is_shown) {
        std::cout << score_text(beta1) << " depth " << tree.deep + 1 << " seldepth " << tree.ddep + 1 << " currmove "
                  << line_text(0) << " currmovenumber " << tree.curr << " nodes " << tree.nodes << " time "
                  << now - tree.inicio;
        if (shallow.HASHf) {
            std::cout << " hashfull " << hash_figure();
        }
        std::cout << " pv";
        for (int k = 0; k < 8; ++k) {
            std::cout << ' ' << line_text(k);
        }
        std::cout << std::endl;
    }
    if (now != tree.inicio) {
        const auto nodes_per_tick = static_cast<unsigned>(tree.nodes / (now - tree.inicio));
        std::cout << "info nps " << wrap(nodes_per_tick * 1000U) << std::endl;
    }
    if (tree.ddep > tree.dddep) {
        tree.dddep = tree.ddep;
    }
}

// --- The book ---

struct BookLine {
    const char* moves;
    const char* reply;
};

constexpr std::array<BookLine, 22> book_of_white{{
    {"e2e4 e7e5", "g1f3"},
    {"e2e4 e7e5 g1f3 b8c6", "f1c4"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 f8c5", "c2c3"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 c2c3 g8f6", "d2d4"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6", "f3g5"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5", "e4d5"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5", "g5f7"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5 g5f7 e8f7", "d1f3"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5 g5f7 e8f7 d1f3 f7e6", "b1c3"},
    {"e2e4 e7e5 g1f3 g8f6", "b1c3"},
    {"e2e4 d7d5", "e4d5"},
    {"e2e4 g8f6", "b1c3"},
    {"e2e4 b8c6", "d2d4"},
    {"e2e4 c7c5", "g1f3"},
    {"e2e4 c7c5 g1f3 b8c6", "f1c4"},
    {"e2e4 c7c6", "d2d4"},
    {"e2e4 c7c6 d2d4 d7d5", "e4d5"},
    {"e2e4 d7d6", "d2d4"},
    {"e2e4 e7e6", "d2d4"},
    {"e2e4 e7e6 d2d4 d7d5", "e4d5"},
    {"e2e4 b7b6", "d2d4"},
    {"e2e4 g7g6", "d2d4"},
}};

constexpr std::array<BookLine, 14> book_of_black{{
    {"e2e4 d7d5 e4e5", "c8f5"},
    {"e2e4 d7d5 e4d5", "g8f6"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4", "f6d5"},
    {"e2e4 d7d5 e4d5 g8f6 c2c4", "e7e6"},
    {"e2e4 d7d5 e4d5 g8f6 f1b5", "c8d7"},
    {"e2e4 d7d5 e4d5 g8f6 f1b5 c8d7 b5c4", "b7b5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4", "d5b4"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4", "b8c6"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5", "b7b5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5 b7b5 c4b5", "c8f5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5 b7b5 c4b5 c8f5 b1a3", "d8d5"},
    {"d2d4 c7c5 d4c5", "e7e6"},
    {"d2d4 c7c5 d4c5 e7e6 b2b4", "a7a5"},
    {"d2d4 c7c5 d4d5", "d7d6"},
}};

constexpr std::array<BookLine, 6> first_replies_of_black{{
    {"e2e4", "d7d5"},
    {"d2d4", "c7c5"},
    {"g1f3", "g8f6"},
    {"b1c3", "e7e5"},
    {"b2b3", "e7e5"},
    {"g2g3", "d7d5"},
}};

template <typename Book>
static bool answer_from(const Book& lines) {
    bool answered = false;
    for (const BookLine& line : lines) {
        if (talk.in == std::string("position startpos moves ") + line.moves) {
            write_line(std::string("bestmove ") + line.reply);
            answered = true;
        }
    }
    return answered;
}

// --- Resets ---

static void reset_position_or_game() {
    tree.inicio = clock_reading();
    root.IIDS = true;
    root.pempatee = true;
    root.X = true;
    shallow.FULL = {};
    tree.SEARCH_E = settings.SEARCH_EE;
    root.E = -10000000.0F;
    root.EP = 0;
    tree.curr = 0;
    tree.DEEP = 0;
    tree.dddep = 0;
    root.peca = 0;
    root.roque = {};
    tree.alfa[0] = -16500.0F;
    root.ALFA0 = -16500.0F;
    root.aab = {};
    tree.quiet_slot.fill({});
    tree.capture_slot.fill({});
    root.nb = 1;
    talk.o = 24;
    talk.p = 25;
    talk.q = 26;
    talk.r = 27;
    root.PR = root.PRs = root.PRe = '0';
    talk.SAIR_PROGRAMA = false;
    tree.Y = false;
    tree.ply[0].flags.double_step = {};
    root.pp = false;
    talk.joga_c_b = talk.joga_c_p = false;
    talk.book = false;
    tree.deeppromo = false;
    for (Board& row : root.tabr1) {
        row.fill(1);
    }
}

static void reset_position() {
    reset_position_or_game();
    root.emp = settings.empp;
    talk.PROMO = false;
}

static void set_start_position() {
    Ply& ply = tree.ply[0];
    ply.tabd = start_position();
    ply.flags.R_jm = ply.flags.T_a_jm = ply.flags.T_h_jm = {};
}

static void reset_game(Colour c) {
    reset_position_or_game();
    root.joga_com_b = c;
    tree.EXTRA_EVAL = true;
    root.SCANT = true;
    root.DEEP9 = root.SCAN1 = root.BUIL1D = false;
    tree.nodes = 0;
    root.materialflot0 = 0;
    tree.tempo = 180000;
    set_start_position();
    talk.joga_c_ob = talk.joga_c_fen = false;
    fill_new_game_tables(c);
    set_mate_limits();
    root.material_a = {510.0F, 510.0F};
    root.materialmaior = {320.0F, 320.0F};
    root.npecas = {15, 15};
    root.npecasdp = {7, 7};
    root.emp = root.emppp = settings.empp - 10;
    if (shallow.HASHf) {
        clear_shallow_tables_of_search(c);
    }
    root.regimen = 0;
    root.p_x_R = {4, 4};
    root.p_y_R = {0, 7};
    root.Xr = {};
    root.XP = {};
}

// --- New games: the position line itself is answered ---

static void read_move() {
    talk.A = in(talk.o);
    talk.B = in(talk.p);
    talk.C = in(talk.q);
    talk.D = in(talk.r);
    const auto read_file = [](char text, int& file) { file = text >= 'a' && text <= 'h' ? text - 'a' : file; };
    const auto read_rank = [](char text, int& rank) { rank = text >= '1' && text <= '8' ? text - '1' : rank; };
    read_file(talk.A, root.a);
    read_rank(talk.B, root.b);
    read_file(talk.C, root.c);
    read_rank(talk.D, root.d);
}

static void answer_without_book(Colour c) {
    search_first_move(c);
    init_tabuleiro();
    convert_0000_to_a1a2();
    info();
    write_line(talk.out);
}

static void new_game_as_white() {
    reset_game(white);
    if (settings.OwnBook) {
        write_line("bestmove e2e4");
    } else {
        answer_without_book(white);
    }
}

static void new_game_as_black() {
    reset_game(black);
    read_move();
    init_tabuleiro();
    if (settings.OwnBook) {
        answer_from(first_replies_of_black);
    } else {
        answer_without_book(black);
    }
}

// --- The position line ---

struct Behind {
    bool book, PROMO;
};

// What follows the four characters that end at r.
static Behind look_behind(int r) {
    const auto is_letter = [](char text) { return text == 'q' || text == 'b' || text == 'r' || text == 'n'; };
    if (in(r + 1) == ' ') {
        return {true, false};
    }
    if (in(r + 1) == '\0' || !is_letter(in(r + 1))) {
        return {false, false};
    }
    return {in(r + 2) == ' ', in(r + 2) == ' ' || in(r + 2) == '\0'};
}

// The moves of the line, before any is played: the side that will search depends on their number.
static int count_moves(int r) {
    int moves = 1;
    for (;;) {
        const Behind behind = look_behind(r);
        if (!behind.book || ++moves > 99999) {
            return moves;
        }
        r += behind.PROMO ? 6 : 5;
    }
}

static void walk_moves() {
    for (;;) {
        const Behind behind = look_behind(talk.r);
        talk.book = behind.book;
        talk.PROMO = behind.PROMO;
        if (talk.PROMO) {
            root.PRe = in(talk.r + 1);
        }
        read_move();
        for (int* position : {&talk.o, &talk.p, &talk.q, &talk.r}) {
            *position += talk.PROMO ? 6 : 5;
        }
        root.peca = man_on(tree.ply[0].tabd, root.c, root.d);
        init_tabuleiro();
        if (root.nb <= 1000) {
            root.tabr1[root.nb - 1] = tree.ply[0].tabd;
        }
        if (!talk.book || ++root.nb > 99999) {
            return;
        }
    }
}

static void replay_from_start() {
    talk.joga_c_ob = true;
    set_start_position();
    root.nb = 1;
    root.joga_com_b = count_moves(talk.r) % 2 == 0 ? white : black;
    walk_moves();
}

// Returns the position behind the board: of the blank, or the end of the line.
static int read_fen_board() {
    Board& tab = tree.ply[0].tabd;
    tab = {};
    int k = 13;
    int file = 0, rank = 7;
    const auto put_man = [&](int man) {
        if (file < 8) {
            put(tab, file, rank, man);
        }
        ++file;
    };
    const auto end = static_cast<int>(talk.in.size());
    for (; k < end && !(rank == 0 && in(k) == ' '); ++k) {
        const char text = in(k);
        const std::string white_men = "PNBRQK", black_men = "pnbrqk";
        if (text >= '1' && text <= '8') {
            for (int empty = 0; empty < text - '0'; ++empty) {
                put_man(0);
            }
        } else if (const auto kind = white_men.find(text); kind != std::string::npos) {
            put_man(pieces_by_name[kind]);
        } else if (const auto black_kind = black_men.find(text); black_kind != std::string::npos) {
            put_man(-pieces_by_name[black_kind]);
        } else if (text == '/' && rank > 0) {
            --rank;
            file = 0;
        }
    }
    return k;
}

// Returns where the en-passant letter stands, -1 when the field has not ended after five characters.
static int read_castling_field(int k) {
    Flags& flags = tree.ply[0].flags;
    for (int i = k; i < k + 5; ++i) {
        const char text = in(i);
        if (settings.CHESS_960) {
            flags.R_jm = flags.T_a_jm = flags.T_h_jm = {true, true};
        } else if (text == 'K' || text == 'Q' || text == 'k' || text == 'q') {
            const Colour c = text == 'K' || text == 'Q' ? white : black;
            flags.R_jm[c] = false;
            (text == 'K' || text == 'k' ? flags.T_h_jm : flags.T_a_jm)[c] = false;
        }
        if (text == '-') {
            return i + 2;
        }
        if (text == ' ') {
            return i + 1;
        }
    }
    return -1;
}

static void read_fen() {
    Flags& flags = tree.ply[0].flags;
    talk.joga_c_fen = true;
    flags.R_jm = flags.T_a_jm = flags.T_h_jm = {true, true};
    const int end_of_board = read_fen_board();
    const int side = end_of_board + 1;
    if (in(side) == 'w') {
        root.joga_com_b = white;
    } else if (in(side) == 'b') {
        root.joga_com_b = black;
    }
    const int passant = read_castling_field(side + 2);
    if (passant >= 0 && in(passant) >= 'a' && in(passant) <= 'h') {
        if (in(passant + 1) == '3') {
            flags.double_step[white][in(passant) - 'a'] = true;
        } else if (in(passant + 1) == '6') {
            flags.double_step[black][in(passant) - 'a'] = true;
        }
    }
    talk.MOVESfen = false;
    for (int k = side; k <= end_of_board + 30; ++k) {
        if (in(k) == 'm' && in(k + 1) == 'o') {
            talk.MOVESfen = true;
            root.nb = 1;
            talk.o = k + 6;
            talk.p = k + 7;
            talk.q = k + 8;
            talk.r = k + 9;
            break;
        }
    }
    if (talk.MOVESfen && count_moves(talk.r) % 2 == 1) {
        root.joga_com_b = other(root.joga_com_b);
    }
    prepare_fen_board();
    if (talk.MOVESfen) {
        walk_moves();
    }
}

// The side to search.
static Colour replay() {
    reset_position();
    if ((is_moves_line() && in(28) != '\0') || talk.joga_c_ob) {
        replay_from_start();
    } else if (is_fen_line() || talk.joga_c_fen) {
        read_fen();
    }
    return root.joga_com_b;
}

Colour replay_position(const std::string& line) {
    talk.in = line;
    talk.joga_c_ob = talk.joga_c_fen = false;
    return replay();
}

void prepare_search(Colour c) {
    root.joga_com_b = c;
    root.pempate = false;
    set_inn(talk.in);
    fill_tables(c);
    if (shallow.HASHf) {
        clear_shallow_tables_of_search(c);
    }
    tree.nodes = 0;
    const long double L = log_ratio(root.material_a[c], root.material_a[other(c)]) * settings.MQ;
    root.emp = root.emppp = to_int(settings.empp - 10 + L);
    if (tree.deep > 8) {
        tree.deep = 9;
    }
    tree.Positive_filter = settings.Positive_filterp;
    tree.Negative_filter = settings.Negative_filterp;
    root.DEEP9 = root.npecas[white] + root.npecas[black] > 25;
    tree.EXTRA_EVAL = settings.EXTRA_EVALL;
    tree.tempo = 300000;
}

// --- The clock of the go line ---

static void use_low_time_mode() {
    tree.SEARCH_E = false;
    root.IIDS = false;
    tree.EXTRA_EVAL = false;
}

// For five digits; n is the number of men without the kings. A later rule overrides an earlier one.
static void limit_depth_by_power(int n) {
    struct Power {
        int T, A, B, C, D, E;
    };
    Power power{};
    switch (settings.CPU) {
        case 5: power = {10000, 15, 11, 17, 7, 9}; break;
        case 1: power = {20000, 13, 9, 15, 5, 7}; break;
        case 2: power = {30000, 11, 7, 13, 3, 5}; break;
        case 3: power = {50000, 9, 5, 11, 1, 3}; break;
        default: return;
    }
    if (tree.tempo <= power.T) {
        use_low_time_mode();
    }
    if (tree.tempo <= 90000) {
        tree.deep = n <= power.A ? 9 : 7;
    }
    if (tree.tempo <= 60000) {
        tree.deep = n <= power.B ? 9 : 7;
    }
    if (tree.tempo <= 30000) {
        tree.deep = n <= power.D ? 9 : n <= power.C ? 7 : 5;
    }
    if (tree.tempo <= 10000) {
        tree.deep = n <= power.E ? 7 : 5;
    }
}

static void read_clock() {
    int first = 0;
    if (in(3) == 'm' && in(16) == 't') {
        first = 21;
    } else if (in(3) == 'm' && in(17) == 't') {
        first = 22;
    } else if (in(3) == 'm' && in(18) == 't') {
        first = 23;
    } else if (in(4) == 't') {
        first = 9;
    } else {
        return;
    }
    int digits = 1;
    while (digits < 8 && in(first + digits) != ' ') {
        ++digits;
    }
    const int n = root.npecas[white] + root.npecas[black];
    const char F = in(first);
    const auto set_tempo = [&](int unit) {
        if (F >= '1' && F <= '9') {
            tree.tempo = (F - '0') * unit;
        }
    };
    if (digits <= 4) {
        use_low_time_mode();
    }
    switch (digits) {
        case 1: tree.deep = 0; break;
        case 2: tree.deep = n <= 1 ? 1 : 0; break;
        case 3: tree.deep = n <= 3 ? 3 : 1; break;
        case 4: tree.deep = n <= 5 ? 5 : 3; break;
        case 5:
            set_tempo(10000);
            limit_depth_by_power(n);
            break;
        case 6: set_tempo(100000); break;
        case 7: set_tempo(1000000); break;
        default: tree.tempo = 10000000;
    }
}

static void wait_for_go() {
    while (read_line()) {
        if (in(0) == 'g' && in(1) == 'o') {
            read_clock();
            return;
        }
    }
}

// --- An exchange of a game in progress ---

static void position_command() {
    const Colour c = replay();
    if (settings.OwnBook && talk.joga_c_ob) {
        talk.OwnBk = c == white ? answer_from(book_of_white) : answer_from(book_of_black);
        if (talk.OwnBk) {
            return;
        }
    }
    prepare_search(c);
    wait_for_go();
    search(c);
    root.EP = root.E;
    if (!game_memory.mem_TEST) {
        init_tabuleiro();
        if (settings.HASH1 && game_memory.HASH_MEM) {
            hash_mem_build();
        }
    }
    convert_0000_to_a1a2();
    info();
    write_line(talk.out);
}

// --- The loops that read commands ---

static void answer_uci() {
    write_line("id name Ondrel 29.1 64bit");
    write_line("id author Ilvar Tessmo Quernal");
    if (settings.HASH1) {
        clear_game_memory();
    }
    for (const char* line : option_lines) {
        write_line(line);
    }
    write_line("uciok");
}

// The command reader between two replies: its result is in the flags.
static void convert_a1a2_to_0000() {
    talk.joga_c_b = talk.joga_c_p = talk.joga_c_ob = talk.joga_c_fen = false;
    tree.deep = settings.deepp;
    while (read_line()) {
        if (talk.in == "position startpos") {
            talk.joga_c_b = true;
            return;
        }
        if (is_moves_line()) {
            (in(28) == '\0' ? talk.joga_c_p : talk.joga_c_ob) = true;
            return;
        }
        if (is_fen_line()) {
            talk.joga_c_fen = true;
            return;
        }
        if (talk.in == "isready") {
            write_line("readyok");
        } else if (talk.in == "quit") {
            talk.SAIR_PROGRAMA = true;
            return;
        } else {
            set_option(talk.in);
        }
    }
}

// Follows the flags until quit (true) or the end of input (false).
static bool play_until_left() {
    for (;;) {
        if (talk.joga_c_b) {
            new_game_as_white();
        } else if (talk.joga_c_p) {
            new_game_as_black();
        } else if (talk.joga_c_ob || talk.joga_c_fen) {
            position_command();
        } else {
            return talk.SAIR_PROGRAMA;
        }
        convert_a1a2_to_0000();
    }
}

void run_engine() {
    while (read_line()) {
        if (talk.in == "uci") {
            answer_uci();
        }
        set_option(talk.in);
        if (talk.in == "isready") {
            write_line("readyok");
        }
        if (talk.in == "quit") {
            return;
        }
        talk.joga_c_b = talk.in == "position startpos";
        talk.joga_c_p = !talk.joga_c_b && is_moves_line() && in(28) == '\0';
        talk.joga_c_ob = !talk.joga_c_b && is_moves_line() && in(28) != '\0';
        talk.joga_c_fen = is_fen_line();
        if (play_until_left()) {
            return;
        }
    }
}

}  // namespace plain
