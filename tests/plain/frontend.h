// The conversation: commands, options, the position line, the clock of a go line, the book, the reports.
#pragma once

#include "plain/state.h"

namespace plain {

// What the front end keeps besides the position: the line and the flags of the command loops.
struct Conversation {
    std::string in;
    std::string out;                             // the text of the reply
    bool joga_c_b = false, joga_c_p = false;     // a new game, the engine playing white, black
    bool joga_c_ob = false, joga_c_fen = false;  // a game in progress, a FEN
    bool SAIR_PROGRAMA = false;
    int o = 0, p = 0, q = 0, r = 0;   // where in the line the move stands
    char A = 0, B = 0, C = 0, D = 0;  // its characters
    bool book = false;                // another move follows
    bool PROMO = false;               // a promotion letter follows
    bool MOVESfen = false;
    bool OwnBk = false;
};
inline Conversation talk;

// The whole engine: talks on the standard streams until quit or the end of input.
void run_engine();

// The position part of a position line, as if read: replay and preparation of the root, and the side to search.
Colour replay_position(const std::string& line);
// The part of the preparation that comes before the go line.
void prepare_search(Colour c);

}  // namespace plain
