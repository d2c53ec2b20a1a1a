// The positions that ondrel-bench searches.
#pragma once

#include <array>
#include <string_view>

namespace ondrel {

struct PosicaoDoBanco {
    std::string_view posicao;  // what stands behind "position " on its line
    char deep;                 // the value of the Deep option
    bool rapida = false;       // of the quick subset
};

// Fixed for good: a change here changes the signature. Depths are chosen so that no position weighs more than a tenth.
constexpr std::array<PosicaoDoBanco, 40> posicoes_do_banco{{
    // Openings
    {"startpos moves d2d4 d7d5 c2c4 e7e6 b1c3 g8f6 c1g5 f8e7", '4'},
    {"startpos moves e2e4 e7e6 d2d4 d7d5 b1c3 f8b4 e4e5 c7c5 a2a3 b4c3 b2c3 g8e7", '4'},
    {"startpos moves e2e4 c7c5 g1f3 d7d6 d2d4 c5d4 f3d4 g8f6 b1c3 a7a6 f1e2", '3'},
    {"startpos moves c2c4 e7e5 b1c3 g8f6 g1f3 b8c6 g2g3 d7d5 c4d5 f6d5 f1g2 d5b6 e1g1 f8e7", '3'},
    {"startpos moves g1f3 g8f6 g2g3 g7g6 f1g2 f8g7 e1g1 e8g8 d2d3 d7d6 e2e4 e7e5 b1c3 b8c6 f3d2", '3', true},
    {"startpos moves e2e4 e7e5 g1f3 b8c6 f1b5 a7a6 b5c6 d7c6 e1g1 f7f6 d2d4 e5d4 f3d4 c6c5 d4b3 d8d1 f1d1 c8g4", '4'},
    {"fen rnbqkb1r/ppp2ppp/5n2/3pp2Q/8/2N1P3/PPPP1PPP/R1B1KBNR w KQkq - 2 4", '5'},
    {"fen r3kb1r/ppp1pppp/2n2n2/8/2PPq3/5N2/PP2QPPP/RNB1K2R w KQkq - 0 1", '5'},
    {"fen r1b1kb1r/pp1npp1p/3p2pn/q7/1P5P/2P1PN2/1B1PBPP1/RN1QK2R w KQkq - 3 10", '4'},
    // Middlegames
    {"fen 5rk1/1b3p1p/pp3p2/3n1N2/1P6/P1qB1PP1/3Q3P/4R1K1 w - - 0 1", '6'},
    {"fen 2b2rk1/p1p4p/2p1p1p1/br2N1Q1/1p2q3/8/PB3PPP/3R1RK1 w - - 0 1", '4'},
    {"fen k2r4/2q3p1/p1Pr1p2/P1R1p2P/5pP1/8/1PQp1P2/1K1R4 b - - 0 1", '4'},
    {"fen r1b1rnk1/pp3pq1/2p3p1/6P1/2B2P1R/2P5/PP1Q2P1/2K4R w - - 0 1", '5'},
    {"fen 6kb/B1p2p2/5r2/1r1p2pR/6q1/3P2P1/P1P2PP1/2KR3Q b - - 0 1", '5'},
    {"fen 4r1k1/p1qr1p2/2pb1Bp1/1p5p/3P1n1R/1B3P2/PP3PK1/2Q4R w - - 0 1", '5'},
    {"fen 3rk1nR/4b3/1Qr2pP1/3p4/3P1NP1/p7/1BP1B1K1/N7 b - - 0 62", '6'},
    {"fen 5k2/4rpp1/pp6/4b2p/4N1q1/2NRB1P1/BP3P1P/6K1 b - - 0 1", '5'},
    {"fen 3nr1k1/p6p/2n1pRpB/3pP3/2pP2P1/q1P4P/6BK/5Q2 w - - 0 1", '4'},
    // Promotions, mates
    {"fen 1k1r4/1p1bP3/2p2p1Q/Ppb5/4Rp1P/2q2N1P/5PB1/6K1 w - - 1 2", '5', true},
    {"fen 3r3k/3r1P1p/pp1Nn3/2pp4/7Q/6R1/Pq4PP/5RK1 w - - 0 1", '5'},
    {"fen 6k1/pp4p1/2p5/2bp4/8/P5Pb/1P3rrP/2BRRN1K b - - 0 1", '5'},
    {"fen kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1", '5', true},
    {"fen 8/8/8/8/8/8/4p3/1k5K b - - 0 1", '7'},
    // Endgames
    {"fen 8/3r1k2/2p3p1/1pPb1p2/p7/P1B2P2/4BK2/3R4 w - - 0 1", '6'},
    {"fen 8/5p2/3pp2p/p5p1/4Pk2/2p2P1P/P1Kb2P1/1R6 w - - 0 1", '6'},
    {"fen 2k1r3/5R2/3KP3/8/1pP3p1/1P5p/8/8 w - - 0 1", '6'},
    {"fen 8/k7/p7/3Qp2P/n1P5/3KP3/1q6/8 b - - 0 1", '6'},
    {"fen 8/2pN1k2/p4p1p/Pn1R4/3b4/6Pp/1P3K1P/8 w - - 0 1", '6'},
    {"fen 4K1k1/8/1p5p/1Pp3b1/8/1P3P2/P1B2P2/8 w - - 0 1", '6'},
    {"fen 8/8/2Kp4/3P1B2/2P2k2/5p2/8/8 w - - 0 1", '7'},
    {"fen B7/7R/8/K7/8/k7/B7/8 w - - 0 1", '6'},
    // Pawn endings, bare kings
    {"fen 8/pp5p/3k2p1/8/4Kp2/2P1P2P/P7/8 w - - 0 1", '6'},
    {"fen 8/8/8/3K2p1/6P1/p7/1k6/8 w - - 10 151", '5', true},
    {"fen 8/6P1/5p2/p7/8/2K2P2/8/4k3 b - - 0 1", '6'},
    {"fen 4K3/7P/8/4k3/8/8/8/8 b - - 0 1", '6'},
    {"fen 4K3/8/8/8/3k4/8/8/8 w - - 0 137", '8', true},
    // Many queens
    {"fen 8/5pQ1/6q1/4bn1q/qK6/8/4k2P/8 w - - 0 1", '5'},
    {"fen 8/2q4q/2K5/8/8/5R2/1b1Q4/k2N1r2 w - - 0 1", '5'},
    {"fen n1QBq1k1/5p1p/5KP1/p7/8/8/8/8 w - - 0 1", '6'},
    {"fen 1nbqk1Qr/1ppp1p2/3b2p1/r3p3/6Q1/p2PP3/PPP2P1P/RNB1KBNR b KQk - 0 10", '4'},
}};

}  // namespace ondrel
