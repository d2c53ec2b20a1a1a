// What differs from ply to ply, in one table, read by every step of a node.
#pragma once

#include "base/ply_stack.h"

namespace ondrel {

// What a leaf is worth.
enum class LeafValue : std::uint8_t {
    none,
    material,     // the root's lead after the move
    plain_ratio,  // lead less the plain ratio of the mover's material to the other's
    extra_eval,   // material, logarithm and extra_eval_<o>
    extra_evall   // the same with extra_evall_<c>
};

// The moves of a node besides the common order.
enum class MoveOrder : std::uint8_t { common, by_stages, promotions_first, none };

// What may answer for a node before it is searched.
enum class Answer : std::uint8_t { none, repetition, shallow_table };

// The rules of the vertical filter.
enum class Vertical : std::uint8_t { none, ply_7, plies_9_to_21, ply_23 };

constexpr int never = -1;
constexpr int always = 1000;  // no deep comes near

// A range of values that DEEP may have; empty by default.
struct DepthRange {
    int from = never, to = never;
    [[nodiscard]] constexpr bool holds(int DEEP) const { return from != never && DEEP >= from && DEEP <= to; }
};

// The null-move pass: the least NULL_MOVE and the least deep; none by default.
struct NullMove {
    int option = never, deep = 0;
};

// One ply. A member that a row leaves out has the value here: the rule does not stand at that ply.
struct PlyRow {
    int ply = 0;
    LeafValue leaf = LeafValue::none;
    int leaf_deep = never;  // a leaf when deep equals this
    DepthRange gate = {};   // beyond the nominal depth quiet moves of pieces without check are leaves
    MoveOrder order = MoveOrder::common;
    Answer answer = Answer::none;
    int scan_deep = 0;   // least deep at which the shallow table is scanned
    int least_deep = 0;  // below this deep the node returns at once
    NullMove null_move = {};
    bool iid = false;                // the IID pass
    int lmr = always, amr = always;  // least deep of late-move reduction and of Amr
    Vertical vertical = Vertical::none;
    DepthRange extension = {};        // the search extension stands while DEEP lies here
    int time_deep = always;           // the time check stands while deep is above this
    bool drops_capture_slot = false;  // when deep is N + 1
    bool last_ply_cut = false;        // deep equal to N ends the generators of captures and pieces
    bool flag_cuts = false;           // a flag set by the child's filter counts as a cut
    bool seventh_rank_moves = true;   // pawns of the seventh rank take part in the generators
    int castling = 0;                 // castling value
};

// clang-format off
constexpr std::array<PlyRow, last_ply + 1> ply_table{{
    {.ply =  0, .castling = 10},
    {.ply =  1, .leaf = LeafValue::material, .leaf_deep = 0, .order = MoveOrder::by_stages, .null_move = {1, 7}, .iid = true, .castling = 10},
    {.ply =  2, .leaf = LeafValue::plain_ratio, .leaf_deep = 1, .answer = Answer::repetition, .least_deep = 1, .null_move = {1, 7}, .iid = true, .lmr = 9, .amr = 9, .castling = 9},
    {.ply =  3, .answer = Answer::shallow_table, .scan_deep = 3, .least_deep = 3, .null_move = {2, 7}, .iid = true, .lmr = 9, .amr = 9, .castling = 9},
    {.ply =  4, .leaf = LeafValue::extra_eval, .leaf_deep = 3, .answer = Answer::shallow_table, .scan_deep = 8, .least_deep = 3, .null_move = {2, 9}, .lmr = 9, .amr = 9, .castling = 8},
    {.ply =  5, .answer = Answer::shallow_table, .scan_deep = 8, .least_deep = 4, .null_move = {2, 9}, .lmr = 9, .amr = 9, .castling = 8},
    {.ply =  6, .leaf = LeafValue::extra_eval, .leaf_deep =  5, .lmr = 9, .amr = 11, .drops_capture_slot = true, .flag_cuts = true, .castling = 7},
    {.ply =  7, .order = MoveOrder::promotions_first, .lmr = 9, .amr = 11, .vertical = Vertical::ply_7, .time_deep = 8, .last_ply_cut = true, .seventh_rank_moves = false, .castling = 7},
    {.ply =  8, .leaf = LeafValue::extra_eval, .leaf_deep =  7, .lmr = 11, .amr = 13, .drops_capture_slot = true, .castling = 6},
    {.ply =  9, .order = MoveOrder::promotions_first, .lmr = 11, .amr = 13, .vertical = Vertical::plies_9_to_21, .extension = {9, 9}, .time_deep = 10, .last_ply_cut = true, .seventh_rank_moves = false, .castling = 6},
    {.ply = 10, .leaf = LeafValue::extra_eval, .leaf_deep =  9, .gate = {9, 9}, .drops_capture_slot = true, .castling = 5},
    {.ply = 11, .leaf = LeafValue::extra_evall, .gate = {9, 9}, .order = MoveOrder::promotions_first, .vertical = Vertical::plies_9_to_21, .extension = {9, 11}, .time_deep = 12, .last_ply_cut = true, .seventh_rank_moves = false, .castling = 5},
    {.ply = 12, .leaf = LeafValue::extra_eval, .leaf_deep = 11, .gate = {0, 11}, .drops_capture_slot = true, .castling = 4},
    {.ply = 13, .leaf = LeafValue::extra_evall, .gate = {0, 11}, .order = MoveOrder::promotions_first, .vertical = Vertical::plies_9_to_21, .extension = {11, 13}, .time_deep = 14, .last_ply_cut = true, .seventh_rank_moves = false, .castling = 4},
    {.ply = 14, .leaf = LeafValue::extra_eval, .leaf_deep = 13, .gate = {0, 13}, .drops_capture_slot = true, .castling = 3},
    {.ply = 15, .leaf = LeafValue::extra_evall, .gate = {0, 13}, .order = MoveOrder::promotions_first, .vertical = Vertical::plies_9_to_21, .extension = {13, 15}, .time_deep = 16, .last_ply_cut = true, .seventh_rank_moves = false, .castling = 3},
    {.ply = 16, .leaf = LeafValue::extra_eval, .leaf_deep = 15, .gate = {0, 15}, .drops_capture_slot = true, .castling = 2},
    {.ply = 17, .leaf = LeafValue::extra_evall, .gate = {0, 15}, .order = MoveOrder::promotions_first, .vertical = Vertical::plies_9_to_21, .extension = {15, 17}, .time_deep = 18, .last_ply_cut = true, .seventh_rank_moves = false, .castling = 2},
    {.ply = 18, .leaf = LeafValue::extra_eval, .leaf_deep = 17, .gate = {0, 17}, .drops_capture_slot = true, .castling = 2},
    {.ply = 19, .leaf = LeafValue::extra_evall, .gate = {0, 17}, .order = MoveOrder::promotions_first, .vertical = Vertical::plies_9_to_21, .extension = {17, 19}, .time_deep = 20, .last_ply_cut = true, .seventh_rank_moves = false, .castling = 2},
    {.ply = 20, .leaf = LeafValue::extra_eval, .leaf_deep = 19, .gate = {0, 19}, .drops_capture_slot = true, .castling = 2},
    {.ply = 21, .leaf = LeafValue::extra_evall, .gate = {0, 19}, .order = MoveOrder::promotions_first, .vertical = Vertical::plies_9_to_21, .extension = {19, 21}, .time_deep = 22, .last_ply_cut = true, .seventh_rank_moves = false, .castling = 2},
    {.ply = 22, .leaf = LeafValue::extra_eval, .leaf_deep = 21, .gate = {0, 21}, .drops_capture_slot = true, .castling = 2},
    {.ply = 23, .leaf = LeafValue::extra_evall, .gate = {0, 21}, .order = MoveOrder::promotions_first, .vertical = Vertical::ply_23, .last_ply_cut = true, .seventh_rank_moves = false, .castling = 2},
    {.ply = 24, .leaf = LeafValue::extra_eval, .leaf_deep = 23, .order = MoveOrder::none},
}};
// clang-format on

static_assert([] {
    for (int n = 0; n <= last_ply; ++n) {
        if (ply_table[n].ply != n) {
            return false;
        }
    }
    return true;
}());

// The ply of a routine. All members of a family are one template; the ply travels as an argument that knows its parity
// at compile time and its number at run time, so that each routine exists four times (two colours, two parities).
template <bool is_even>
struct PlyNumber {
    static constexpr bool even = is_even;  // the root side replies and the node maximises
    int number;

    constexpr operator int() const { return number; }  // NOLINT(google-explicit-constructor): a ply is its number
    [[nodiscard]] constexpr PlyNumber<!even> child() const { return {number + 1}; }
};

}  // namespace ondrel
