// The settings: one member per UCI option that is no button. Lifetime: the process. Written by option lines
// (uci/options.cpp) and by the worker of the second front (standard_uci/engine_port.cpp), read by everybody. Flags are 0
// or 1. What a search changes of a setting for a time, it changes in a copy of its own (search/state.h).
#pragma once

#include <cstdint>

namespace ondrel {

struct Options {
    int CPU = 2;                     // CPU power level: 5 extreme, 1 high, 2 medium, 3 low
    int deepp = 17;                  // Deep: depth limit in plies; 17 means none
    std::uint8_t TC = 1;             // Time control: the two time limits apply
    int Tu = 3;                      // Time usage: divisor of the men on the board, 1..8 or 10
    std::uint8_t SEARCH_EE = 1;      // Search extension
    std::uint8_t PVS = 1;            // PVS: scout passes of plies 1 and 2
    std::uint8_t TURBO = 1;          // Turbo search: windows around E at ply 1
    int Positive_filterp = 2;        // Positive float filter: 0 off, 1 manual, 2 auto, 3 full
    float positfilter = 100.0F;      // its level in the manual mode, score units
    int Negative_filterp = 2;        // Negative float filter: the same
    float negatfilter = 100.0F;      // its level in the manual mode, score units
    std::uint8_t VERTICAL_filt = 1;  // Vertical filter
    std::uint8_t LMR = 1;            // Lmr: late-move reduction and Amr
    int NULL_MOVE = 2;               // Null move filter: 0 off, 1 plies 1 and 2, 2 plies 1 to 5
    int Temperamento = 3;            // Temperament: 1 positional, 2 consistent, 3 dynamic
    float agres = 1.0F;              // Aggressiveness: scale of a man attacked by a pawn, 0..9
    float agresprxrei = 1.0F;        // Attack to King proximity: scale of the own king-proximity terms, 0..9
    int agreschrei = 1;              // Attack by check to King: weight in the class of a root move, 0..8 or 10
    int empp = -5;                   // Confidence: contempt, score units, 10 .. -10
    int matrix = 1;                  // Positional matrices: factor of MATRIZ, 0 or 1
    std::uint8_t EXTRA_EVALL = 1;    // Extra evaluation
    float PM = 5.0F;                 // Positional relevance: weight of the positional logarithm, 0..8 or 10
    float MOB = 5.0F;                // Mobility: weight of the mobility logarithm, 0..8 or 10
    int roque_v = 3;                 // Castle value: weight of the castling logarithm, 0..8 or 10
    std::uint8_t extradef = 1;       // Extra definition: the material logarithm at leaves
    float MQ = 5.0F;                 // Material quociente: weight of the material logarithm, 0..8 or 10
    std::uint8_t OwnBook = 1;        // Own book
    std::uint8_t HASH1 = 1;          // Memory: the game-long memory
    std::uint8_t HASHf = 1;          // Deep memory: the shallow tables
    std::uint8_t FULL_inf = 1;       // Full info: report every root move
    std::uint8_t CHESS_960 = 0;      // UCI_Chess960
};

inline Options options;

// The depth limit that is none.
constexpr int no_depth_limit = 17;

// Bound of the extra evaluation and margin of the lazy test, score units; no option.
constexpr int piecesac = 50;

}  // namespace ondrel
