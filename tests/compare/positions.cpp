#include "compare/positions.h"

#include <algorithm>
#include <cmath>

#include "plain/board.h"

namespace compare {

using plain::Colour;
using plain::Situation;

namespace {

// --- Games ---

enum class Style { random, sensible };

int man_at(const Situation& situation, const std::string& move, int from) {
    return plain::size_of(plain::man_on(situation.board, move[from] - 'a', move[from + 1] - '1'));
}

// What the move takes, less what it may lose on its new square.
int quick_gain(const Situation& situation, const std::string& move) {
    const Situation after = plain::play(situation, move);
    int gain = man_at(situation, move, 2);
    if (move.size() == 5 && move[4] == 'q') {
        gain += 80;
    }
    if (plain::is_attacked(after.board, move[2] - 'a', move[3] - '1', after.to_move)) {
        gain -= man_at(situation, move, 0);
    }
    return gain;
}

std::string choose_move(Random& random, const Situation& situation, const std::vector<std::string>& moves,
                        Style style) {
    if (style == Style::random || random.chance(25)) {
        return random.pick(moves);
    }
    // The best of a few by the quick look.
    std::string best = random.pick(moves);
    for (int tries = 0; tries < 6; ++tries) {
        const std::string other = random.pick(moves);
        if (quick_gain(situation, other) > quick_gain(situation, best)) {
            best = other;
        }
    }
    return best;
}

void play_half_moves(Random& random, Place& place, int half_moves, Style style) {
    for (int i = 0; i < half_moves; ++i) {
        const auto moves = plain::legal_moves(place.now);
        if (moves.empty()) {
            return;
        }
        const std::string move = choose_move(random, place.now, moves, style);
        place.moves.push_back(move);
        place.now = plain::play(place.now, move);
    }
}

Style random_style(Random& random) { return random.chance(60) ? Style::sensible : Style::random; }

Place game(Random& random, int half_moves) {
    Place place;
    play_half_moves(random, place, half_moves, random_style(random));
    return place;
}

// Quiet moves of pieces there and back, so that a position comes back.
void shuffle(Random& random, Place& place, int times) {
    for (int tries = 0; tries < 20; ++tries) {
        Place moved = place;
        std::vector<std::string> there;
        for (int side = 0; side < 2; ++side) {
            std::vector<std::string> quiet;
            for (const std::string& move : plain::legal_moves(moved.now)) {
                if (man_at(moved.now, move, 0) != plain::peao && man_at(moved.now, move, 2) == 0) {
                    quiet.push_back(move);
                }
            }
            if (quiet.empty()) {
                return;
            }
            there.push_back(random.pick(quiet));
            moved.now = plain::play(moved.now, there.back());
        }
        std::vector<std::string> cycle = there;
        for (const std::string& move : there) {
            cycle.push_back(move.substr(2, 2) + move.substr(0, 2));
        }
        moved = place;
        bool is_legal = true;
        for (int i = 0; i < times * 4 && is_legal; ++i) {
            const auto moves = plain::legal_moves(moved.now);
            const std::string& move = cycle[i % 4];
            is_legal = std::find(moves.begin(), moves.end(), move) != moves.end();
            if (is_legal) {
                moved.moves.push_back(move);
                moved.now = plain::play(moved.now, move);
            }
        }
        if (is_legal) {
            // Perhaps not the whole way back: the move that repeats is then the engine's own.
            const int less = random.below(4);
            for (int i = 0; i < less; ++i) {
                moved.moves.pop_back();
            }
            place = moved;
            return;
        }
    }
}

// --- Boards put up man by man ---

void put_at_random(Random& random, plain::Board& board, int man) {
    const bool is_pawn = plain::size_of(man) == plain::peao;
    const bool anywhere = random.chance(3);
    for (int tries = 0; tries < 100; ++tries) {
        const int sq = random.below(64);
        const bool is_last_rank = sq % 8 == 0 || sq % 8 == 7;
        if (board[sq] == 0 && (!is_pawn || anywhere || !is_last_rank)) {
            board[sq] = static_cast<signed char>(man);
            return;
        }
    }
}

int random_piece(Random& random) {
    const int kind = random.pick_weighted({50, 15, 14, 13, 8});
    return plain::pieces_by_name[kind];
}

void put_men(Random& random, plain::Board& board, Colour c, int men) {
    for (int i = 0; i < men; ++i) {
        put_at_random(random, board, plain::code(c, random_piece(random)));
    }
}

void put_kings(Random& random, plain::Board& board) {
    for (const Colour c : {plain::white, plain::black}) {
        const int kings = random.chance(93) ? 1 : random.chance(50) ? 0 : random.between(2, 3);
        for (int i = 0; i < kings; ++i) {
            put_at_random(random, board, plain::code(c, plain::rei));
        }
    }
}

plain::Board few_men(Random& random) {
    plain::Board board{};
    put_kings(random, board);
    put_men(random, board, plain::white, random.between(0, 4));
    put_men(random, board, plain::black, random.between(0, 4));
    return board;
}

// The small endings that the tables of the evaluation and of the windows name, and their neighbours.
plain::Board named_ending(Random& random) {
    static const std::vector<std::vector<int>> armies = {
        {},
        {plain::cavalo},
        {plain::bispo},
        {plain::cavalo, plain::cavalo},
        {plain::torre},
        {plain::dama},
        {plain::bispo, plain::cavalo},
        {plain::bispo, plain::bispo},
        {plain::peao},
        {plain::peao, plain::peao},
        {plain::peao, plain::peao, plain::peao, plain::peao},
        {plain::bispo, plain::peao},
        {plain::cavalo, plain::peao, plain::peao},
        {plain::torre, plain::peao},
        {plain::torre, plain::peao, plain::peao},
        {plain::cavalo, plain::bispo, plain::peao},
        {plain::cavalo, plain::cavalo, plain::peao, plain::peao},
        {plain::cavalo, plain::cavalo, plain::cavalo},
    };
    plain::Board board{};
    for (const Colour c : {plain::white, plain::black}) {
        put_at_random(random, board, plain::code(c, plain::rei));
        for (const int piece : random.pick(armies)) {
            put_at_random(random, board, plain::code(c, piece));
        }
    }
    return board;
}

plain::Board many_men(Random& random) {
    plain::Board board{};
    put_kings(random, board);
    put_men(random, board, plain::white, random.between(5, 15));
    put_men(random, board, plain::black, random.between(5, 15));
    return board;
}

plain::Board many_queens(Random& random) {
    plain::Board board{};
    put_kings(random, board);
    for (const Colour c : {plain::white, plain::black}) {
        put_men(random, board, c, random.between(0, 5));
        for (int i = random.between(0, 5); i > 0; --i) {
            put_at_random(random, board, plain::code(c, plain::dama));
        }
    }
    return board;
}

plain::Board near_promotion(Random& random) {
    plain::Board board{};
    put_kings(random, board);
    put_men(random, board, plain::white, random.between(0, 5));
    put_men(random, board, plain::black, random.between(0, 5));
    for (const Colour c : {plain::white, plain::black}) {
        for (int i = random.between(0, 4); i > 0; --i) {
            const int sq = plain::at(random.below(8), plain::rank_of(c, random.between(4, 6)));
            if (board[sq] == 0) {
                board[sq] = static_cast<signed char>(plain::code(c, plain::peao));
            }
        }
    }
    return board;
}

// Kings and rooks at home, most of them.
plain::Board castling_board(Random& random) {
    plain::Board board{};
    for (const Colour c : {plain::white, plain::black}) {
        const int home = plain::rank_of(c, 0);
        if (random.chance(95)) {
            plain::put(board, 4, home, plain::code(c, plain::rei));
        }
        for (const int corner : {0, 7}) {
            if (random.chance(85)) {
                plain::put(board, corner, home, plain::code(c, plain::torre));
            }
        }
    }
    put_men(random, board, plain::white, random.between(0, 10));
    put_men(random, board, plain::black, random.between(0, 10));
    return board;
}

bool fits_rights(const plain::Board& board, Colour c, int corner) {
    const int home = plain::rank_of(c, 0);
    return plain::man_on(board, 4, home) == plain::code(c, plain::rei) &&
           plain::man_on(board, corner, home) == plain::code(c, plain::torre);
}

Situation situation_of(Random& random, const plain::Board& board) {
    Situation situation{board, {}, random.chance(50) ? plain::white : plain::black};
    plain::Flags& flags = situation.flags;
    const int odd_rights = random.chance(15) ? 50 : 2;
    for (const Colour c : {plain::white, plain::black}) {
        flags.T_a_jm[c] = !(fits_rights(board, c, 0) ? random.chance(90) : random.chance(odd_rights));
        flags.T_h_jm[c] = !(fits_rights(board, c, 7) ? random.chance(90) : random.chance(odd_rights));
        flags.R_jm[c] = flags.T_a_jm[c] && flags.T_h_jm[c];
        for (int f = 0; f < 8; ++f) {
            const bool fits =
                plain::man_on(board, f, plain::rank_of(c, 3)) == plain::code(c, plain::peao) && c != situation.to_move;
            if (random.chance(fits ? 40 : 1)) {
                flags.double_step = {};
                flags.double_step[c][f] = true;
            }
        }
    }
    return situation;
}

Place put_up(Random& random) {
    plain::Board board{};
    switch (random.pick_weighted({20, 12, 22, 8, 14, 24})) {
        case 0: board = few_men(random); break;
        case 1: board = named_ending(random); break;
        case 2: board = many_men(random); break;
        case 3: board = many_queens(random); break;
        case 4: board = near_promotion(random); break;
        default: board = castling_board(random);
    }
    Place place;
    place.now = situation_of(random, board);
    place.start = "fen " + plain::fen_of(place.now);
    return place;
}

// --- Lines that no client would send ---

std::string any_square(Random& random) {
    return {static_cast<char>('a' + random.below(8)), static_cast<char>('1' + random.below(8))};
}

void add_odd_move(Random& random, Place& place) {
    switch (random.below(6)) {
        case 0: {  // onto its own square
            const std::string square = any_square(random);
            place.moves.push_back(square + square);
            break;
        }
        case 1: place.moves.push_back(any_square(random) + any_square(random)); break;
        case 2:
            place.moves.push_back(any_square(random) + any_square(random) + random.pick({"q", "r", "b", "n"}));
            break;
        case 3:
            place.moves.push_back(any_square(random) + any_square(random) + random.pick({"Q", "k", "x", "qq"}));
            break;
        case 4: place.moves.push_back(random.pick({"", "0000", "e2", "i9z0", "e2-e4"})); break;
        default:
            if (!place.moves.empty()) {
                place.moves.pop_back();
            }
    }
}

}  // namespace

std::string position_line(const Place& place) {
    std::string line = "position " + place.start;
    if (!place.moves.empty()) {
        line += " moves";
        for (const std::string& move : place.moves) {
            line += " " + move;
        }
    }
    return line;
}

int men_without_kings(const Situation& situation) {
    return static_cast<int>(std::count_if(situation.board.begin(), situation.board.end(),
                                          [](int man) { return man != 0 && plain::size_of(man) != plain::rei; }));
}

int lead(const Situation& situation) {
    int sum = 0;
    for (const int man : situation.board) {
        sum += man;
    }
    return situation.to_move == plain::white ? sum : -sum;
}

double branching(const Situation& situation) {
    Situation turned = situation;
    turned.to_move = plain::other(situation.to_move);
    const auto mine = static_cast<double>(plain::legal_moves(situation).size());
    const auto theirs = static_cast<double>(plain::legal_moves(turned).size());
    return std::sqrt((mine + 1) * (theirs + 1));
}

bool play_on(Random& random, Place& place, int half_moves) {
    const std::size_t before = place.moves.size();
    play_half_moves(random, place, half_moves, random_style(random));
    return place.moves.size() > before;
}

Place random_place(Random& random) {
    Place place;
    switch (random.pick_weighted({18, 22, 14, 36, 10})) {
        case 0: place = game(random, random.between(2, 14)); break;
        case 1: place = game(random, random.between(15, 90)); break;
        case 2:
            // A game's position as a FEN.
            place.now = game(random, random.between(4, 120)).now;
            place.start = "fen " + plain::fen_of(place.now);
            break;
        case 3: place = put_up(random); break;
        default:
            // A late game: the pawn tables of the classes change after 30 and after 70 half-moves.
            place = random.chance(50) ? put_up(random) : Place{};
            play_half_moves(random, place, random.between(60, 160), random_style(random));
            if (random.chance(4)) {
                shuffle(random, place, 250);
            }
    }
    if (random.chance(25)) {
        play_half_moves(random, place, random.between(1, 6), random_style(random));
    }
    if (random.chance(20)) {
        shuffle(random, place, random.between(1, 3));
    }
    if (random.chance(5)) {
        for (int i = random.between(1, 3); i > 0; --i) {
            add_odd_move(random, place);
        }
    }
    return place;
}

}  // namespace compare
