// Searches whose children a test plays itself: what a node does with values, seen apart from the search below it.
#pragma once

#include "support/engine.h"

#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace tests {

// What a child of a node finds when it is about to be searched.
struct Call {
    int n;  // ply of the child
    Move m;
    int deep, DEEP;
    std::uint8_t HASHf, PVSm, PVSm2, LMRtest, SCAN1, SCANT, pempatee;
    int ataque, ESTRATEGIA;
    float E, alfa0, ALFA0;
    std::array<float, ondrel::last_ply> MAXcut;
};

// Takes the children over while it lives. The script is asked about every child as it is entered: a number is the value
// that the child is to come back with, at once (it finds a depth too small for it, and the value in its bound); nothing
// lets the search go on. All calls are kept.
class Script {
public:
    using Line = std::function<std::optional<float>(const Call&)>;

    explicit Script(Line line);
    ~Script();
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    [[nodiscard]] const std::vector<Call>& calls() const;
    // The moves of the children of ply n, in order.
    [[nodiscard]] std::vector<std::string> moves(int n) const;
    [[nodiscard]] std::size_t count(int n) const;
};

// A script that gives every child of ply n the same value and searches all others.
Script::Line every_child(int n, float value);

// What is written to standard output while it lives, kept from the terminal.
class Written {
public:
    Written();
    ~Written();
    Written(const Written&) = delete;
    Written& operator=(const Written&) = delete;
    [[nodiscard]] std::string text() const { return to_.str(); }

private:
    std::ostringstream to_;
    std::streambuf* before_;
};

// Switches off what shortens or repeats a node's run: reductions, null moves, scout passes, filters, windows, clock,
// tables and repetition. What is left is the bare alpha-beta. (Below a depth of 7 there is no shallow pass either.)
void bare_search();

// The value of mate at ply n from the view of the root side: the side to reply at node n is mated.
float mate_value(int n);

// The position and the move seen from the other side: colours and ranks exchanged, files kept.
std::string mirrored(std::string_view fen);
Move mirrored(Move m);

// A whole search of the root, its lines thrown away.
void search_whole(Colour own);

}  // namespace tests
