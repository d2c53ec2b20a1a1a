#include "standard_uci/game.h"

#include <algorithm>
#include <cctype>

namespace ondrel::standard_uci {
namespace {

constexpr std::size_t moves_kept_by_engine = 998;  // a few fewer than it has rows for

// Without Chess960 there is no castling but from the usual squares.
void drop_unusual_rights(Position& position, Words& remarks) {
    for (const Colour c : {Colour::white, Colour::black}) {
        for (const Wing w : {Wing::long_side, Wing::short_side}) {
            int& rook = position.castling_rook(c, w);
            if (rook != no_square && !usual_castling({king_square(position, c), rook, 0, true})) {
                remarks.push_back("castling with the rook on " + square_name(rook) +
                                  " left out: it needs UCI_Chess960");
                rook = no_square;
            }
        }
    }
}

bool is_known_to_engine(const Move& move) { return !move.castling || usual_castling(move); }

std::optional<Move> move_of_engine(const Position& position, const EngineMove& text) {
    for (const char* const promotion : {"", "q"}) {
        const auto move = read_move(position, text + promotion, false);
        if (move && is_known_to_engine(*move)) {
            return move;
        }
    }
    return std::nullopt;
}

}  // namespace

Game::Game() : Game(start_position()) {}

std::optional<Words> Game::moves_from_start() const {
    if (!from_start_) {
        return std::nullopt;
    }
    Words words;
    for (const Move& move : moves_) {
        words.push_back(text_of(move, false));
    }
    return words;
}

std::optional<Game> Game::read(const PositionWords& words, bool chess960, std::string& fault, Words& remarks) {
    ReadFen start{start_position(), "", {}};
    if (!words.fault.empty() || !words.from_start) {
        start = words.fault.empty() ? read_fen(words.fen) : ReadFen{{}, words.fault, {}};
    }
    if (!start.position) {
        fault = start.fault;
        return std::nullopt;
    }
    remarks = start.left_out;
    if (!chess960) {
        drop_unusual_rights(*start.position, remarks);
    }
    Game game(*start.position);
    game.from_start_ = words.from_start;
    for (std::size_t k = 0; k < words.moves.size(); ++k) {
        const auto move = read_move(game.position(), words.moves[k], chess960);
        if (!move) {
            fault = "move " + std::to_string(k + 1) + ", '" + words.moves[k] + "', is not legal";
            return std::nullopt;
        }
        game.positions_.push_back(after(game.position(), *move));
        game.moves_.push_back(*move);
    }
    return game;
}

// The engine looks for repetitions as if the first move of its line were White's.
std::size_t Game::first_for_engine() const {
    const auto unknown = std::find_if_not(moves_.rbegin(), moves_.rend(), is_known_to_engine);
    auto first = static_cast<std::size_t>(moves_.rend() - unknown);
    if (moves_.size() - first > moves_kept_by_engine) {
        first = moves_.size() - moves_kept_by_engine;
    }
    const bool by_black = first < moves_.size() && positions_[first].to_move == Colour::black;
    return by_black ? first + 1 : first;
}

std::string Game::line_for_engine() const {
    const std::size_t first = first_for_engine();
    const bool is_whole = from_start_ && first == 0 && !moves_.empty();
    std::string line = is_whole ? "position startpos" : "position fen " + usual_fen(positions_[first]);
    for (std::size_t k = first; k < moves_.size(); ++k) {
        line += (k == first ? " moves " : " ") + text_of(moves_[k], false);
    }
    return line;
}

EngineMove engine_text(const Move& move) {
    return is_known_to_engine(move) ? text_of({move.from, move.to, 0, move.castling}, false) : "";
}

std::vector<Move> legal_beginning(const Position& position, const std::vector<EngineMove>& line) {
    std::vector<Move> moves;
    Position now = position;
    for (const EngineMove& text : line) {
        const auto move = move_of_engine(now, text);
        if (!move) {
            break;
        }
        now = after(now, *move);
        moves.push_back(*move);
    }
    return moves;
}

}  // namespace ondrel::standard_uci
