// The engine inside the test: its state set up, its routines called, its conversation held in memory. What is called is
// the code that ships; the tests watch it through its probes and through its state.
#pragma once

#include "base/options.h"
#include "base/ply_stack.h"
#include "board/game.h"
#include "search/ply_table.h"
#include "search/probe.h"
#include "search/state.h"
#include "uci/command_line.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tests {

using ondrel::Board;
using ondrel::Colour;
using ondrel::Move;
using ondrel::Piece;

// Puts every setting, table, memory and stored value back to what it is at the start of the process, and the probes to
// nothing. Called by the fixture before each test.
void fresh_process();

// --- Conversations ---

// Gives the lines to the command loop, then the end of input, and returns the lines it wrote.
std::vector<std::string> converse(const std::vector<std::string>& lines);
// The same with the input as it stands, line ends included, and the output as one text.
std::string converse_raw(std::string_view input);

// Sets the value of a UCI option through an option line.
void set_option(std::string_view name, std::string_view value);

// --- Positions ---

// Replays a position line ("position startpos moves ..." or "position fen ...") and prepares the search of the side to
// move, as before the go wait. Returns that side.
Colour place(std::string_view line);
// The same for a bare FEN.
Colour place_fen(std::string_view fen);

// "e4" as a board index.
int square_of(std::string_view name);

// The move in its four coordinates; "e2e4", a promotion letter is passed over. And back.
Move move_from(std::string_view text);
std::string text_of(Move m);

// Makes ply n the position of the FEN as a node of ply n leaves it before its move order: board, flags, material (kings
// included), the side to move being the FEN's; bounds of all plies at their start values, limits at the mate ladder,
// slots empty. deep and DEEP are a little deeper than n. Returns the side to move.
Colour set_up_ply(int n, std::string_view fen);

// The side to move on the ply that set_up_ply has made.
Colour side_on_ply();

// --- What the search tries ---

// While it lives, the children of ply n (n = 0: the root moves) are seen as they are entered, and come back at once
// without a search: each finds a depth too small for it, so that it returns leaving its value as it stands. `on_entry`
// sees the move and may write the value that the child is to have; otherwise that improves nothing.
class ChildrenOf {
public:
    using OnEntry = std::function<void(Move)>;
    explicit ChildrenOf(int n, OnEntry on_entry = {});
    ~ChildrenOf();
    ChildrenOf(const ChildrenOf&) = delete;
    ChildrenOf& operator=(const ChildrenOf&) = delete;

    [[nodiscard]] std::vector<Move> moves() const;
};

// The replies that the generators of ply n try, in order: the whole move order of ply n, the staged one for n = 1, on the
// position that set_up_ply has made. Stored moves are used as they stand.
std::vector<Move> replies_tried(int n);

// One generator of ply n alone, in its full or its test form.
std::vector<Move> captures_tried(int n, std::string_view victim, bool test_form = false);
std::vector<Move> quiet_moves_tried(int n, std::string_view from, bool test_form = false);
std::vector<Move> promotions_tried(int n, std::string_view from);
std::vector<Move> stage_tried(int K, std::string_view from);  // of ply 1; K = 0: the test form

// The root moves that one whole pass of the schedule searches, in order, on the position that `place` has prepared.
std::vector<Move> root_moves_tried();

// The routines themselves, on the position of set_up_ply.
void run_replies(int n);
void run_captures(int n, std::string_view victim, bool test_form = false);
void run_quiet(int n, std::string_view from, bool test_form = false);
void run_promotions(int n, std::string_view from);
void run_stage(int K, std::string_view from);

// Searches the move m at ply n (1..24) as a generator of ply n-1 would, with the trial made on tab2, from the position
// that set_up_ply(n-1, ...) (or, for n = 1, place) has made. Returns the value of the node.
float search_node(int n, Move m);

// The bound of ply n, that of its child, and the flag that stops the move loop of ply n.
float& value_of_ply(int n);
float& value_of_child(int n);
std::uint8_t& cut_flag_of(int n);

// --- What the probes have seen ---

// How often a rule has acted since fresh_process or clear_counts.
std::uint64_t times(ondrel::Rule r);
void clear_counts();

}  // namespace tests
