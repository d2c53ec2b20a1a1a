// The one door to the engine's core: every use of its names is in engine_port.cpp. The worker searches through it, the
// front asks it for attacks and for the book.
#pragma once

#include "standard_uci/rules.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ondrel::standard_uci {

// --- What the floors below know of chess ---

// Whether a man of `by` attacks the square.
bool square_attacked(const Men& men, int square, Colour by);

// The reply of the built-in book to a game from the start position, empty if it has none.
std::string book_reply(const std::vector<std::string>& moves);

// --- Options ---

struct EngineOption {
    std::string announcement;  // as behind "option name "
};

// Those of the engine, in its order.
std::vector<EngineOption> engine_options();

// Sets an option of the engine. Button options take no value.
void set_engine_option(std::string_view name, std::string_view value);

// --- Searching ---

// Moves are from-square and to-square alone: a pawn that arrives becomes a queen.
using EngineMove = std::string;

// The depths that a client sees: one ply more than those that generate replies.
constexpr int deepest_depth = 24;
constexpr int first_iterated_depth = 10;  // from here on one search goes from depth to depth by itself

enum class Pass : unsigned char {
    all_moves,   // a sweep of all moves from nothing
    best_alone,  // the best move of the depth before
    the_others,  // all but that one, against its score
};

// How the search stands.
struct Standing {
    int depth = 0;
    Pass pass = Pass::all_moves;
    EngineMove best_move;    // empty while there is none
    float best_score = 0;    // in tenths of a pawn, or a mate (score.h); meaningless while there is no best move
    float score_before = 0;  // the score with which the depth before ended
    std::uint64_t nodes = 0;
    int deepest_ply = 0;
    int hashfull = 0;
    EngineMove current_move;  // the root move being searched, or the last one
    int current_number = 0;
};

// A root move as its search has left it. The best move stands as it was before this one.
struct SearchedMove {
    EngineMove move;
    float score = 0;
    std::vector<EngineMove> line;
    bool far_below = false;  // the option "Full info" keeps it from being shown
};

class SearchListener {
public:
    virtual ~SearchListener() = default;
    virtual void root_move_searched(const SearchedMove& searched, const Standing& standing) = 0;
    // On entry of every shallow node: what it does must be next to nothing.
    virtual void shallow_node_entered() = 0;
};

struct SearchOrder {
    std::string position_line;        // in the form that the engine reads
    std::vector<EngineMove> allowed;  // root moves
    int depth = deepest_depth;
    bool at_once = false;           // this depth comes first, not the least iterated one
    std::int64_t engine_clock = 0;  // milliseconds left, to be spent by the engine's own rules; 0: no clock
};

// Puts the engine into the state of a process that begins. Called once, before the first search.
void begin_engine();

// Searches once and tells the listener. How it stands at the end is told by standing().
void search(const SearchOrder& order, SearchListener& listener);

// How the present search stands, or the last one.
Standing standing();

// The cheap parts of it.
std::uint64_t nodes_searched();
int depth_searched();
bool root_move_has_changed(const EngineMove& from);

}  // namespace ondrel::standard_uci
