// The settings: one global per UCI option, written by the option lines alone unless said otherwise. Flags are 0 or 1.
#pragma once

#include <cstdint>

namespace ondrel {

inline int CPU = 2;                     // CPU power level: 5 extreme, 1 high, 2 medium, 3 low
inline int deepp = 17;                  // Deep: depth limit in plies; 17 means none
inline std::uint8_t TC = 1;             // Time control: the two time limits apply
inline int Tu = 3;                      // Time usage: divisor of the men on the board, 1..8 or 10
inline std::uint8_t SEARCH_EE = 1;      // Search extension
inline std::uint8_t PVS = 1;            // PVS: scout passes of plies 1 and 2
inline std::uint8_t TURBO = 1;          // Turbo search: windows around E at ply 1
inline int Positive_filterp = 2;        // Positive float filter: 0 off, 1 manual, 2 auto, 3 full
inline float positfilter = 100.0F;      // its level in the manual mode, score units
inline int Negative_filterp = 2;        // Negative float filter: the same
inline float negatfilter = 100.0F;      // its level in the manual mode, score units
inline std::uint8_t VERTICAL_filt = 1;  // Vertical filter
inline std::uint8_t LMR = 1;            // Lmr: late-move reduction and Amr
inline int NULL_MOVE = 2;               // Null move filter: 0 off, 1 plies 1 and 2, 2 plies 1 to 5
inline int Temperamento = 3;            // Temperament: 1 positional, 2 consistent, 3 dynamic
inline float agres = 1.0F;              // Aggressiveness: scale of a man attacked by a pawn, 0..9
inline float agresprxrei = 1.0F;        // Attack to King proximity: scale of the own king-proximity terms, 0..9
inline int agreschrei = 1;              // Attack by check to King: weight in the class of a root move, 0..8 or 10
inline int empp = -5;                   // Confidence: contempt, score units, 10 .. -10
inline int matrix = 1;                  // Positional matrices: factor of MATRIZ, 0 or 1
inline std::uint8_t EXTRA_EVALL = 1;    // Extra evaluation
inline float PM = 5.0F;                 // Positional relevance: weight of the positional logarithm, 0..8 or 10
inline float MOB = 5.0F;                // Mobility: weight of the mobility logarithm, 0..8 or 10
inline int roque_v = 3;                 // Castle value: weight of the castling logarithm, 0..8 or 10
inline std::uint8_t extradef = 1;       // Extra definition: the material logarithm at leaves
inline float MQ = 5.0F;                 // Material quociente: weight of the material logarithm, 0..8 or 10
inline std::uint8_t OwnBook = 1;        // Own book
inline std::uint8_t HASH1 = 1;          // Memory: the game-long memory
inline std::uint8_t HASHf = 1;      // Deep memory: the shallow tables; the search clears it for a time and restores it
inline std::uint8_t FULL_inf = 1;   // Full info: report every root move
inline std::uint8_t CHESS_960 = 0;  // UCI_Chess960

// Working copies: an option line writes both, the preparation of a search restores the copy, the clock rules clear it.
inline int deep = 17;                // last ply that generates replies; nodes change it for a subtree and restore it
inline std::uint8_t SEARCH_E = 1;    // of SEARCH_EE
inline int Positive_filter = 2;      // of Positive_filterp
inline int Negative_filter = 2;      // of Negative_filterp
inline std::uint8_t EXTRA_EVAL = 1;  // of EXTRA_EVALL

constexpr int piecesac = 50;  // bound of the extra evaluation and margin of the lazy test, score units; no option

}  // namespace ondrel
