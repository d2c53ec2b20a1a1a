// The searches of ondrel-bench. Fixed for good: a change here changes the signature.
#pragma once

#include <array>
#include <string_view>

namespace ondrel {

// A conversation in short, its steps parted by "; ". A step is
//   <option>=<value>       an option line
//   <button>               an option line without a value
//   fen ... , startpos ... a position line and, unless it is answered at once, a go with the clock in force
//   clock <clock>          what the go lines to come hand over; without it the clock plays no part
// Each conversation begins with the settings and the state of a fresh process, so that what a search leaves to the next
// one shows only where a conversation has several.
struct BenchCase {
    std::string_view steps;
    bool quick = false;  // of the quick subset
};

constexpr bool quick = true;

// clang-format off
constexpr std::array bench_cases{
    // Openings
    BenchCase{"Deep=4; startpos moves d2d4 d7d5 c2c4 e7e6 b1c3 g8f6 c1g5 f8e7"},
    BenchCase{"Deep=4; startpos moves e2e4 e7e6 d2d4 d7d5 b1c3 f8b4 e4e5 c7c5 a2a3 b4c3 b2c3 g8e7"},
    BenchCase{"Deep=3; startpos moves e2e4 c7c5 g1f3 d7d6 d2d4 c5d4 f3d4 g8f6 b1c3 a7a6 f1e2"},
    BenchCase{"Deep=3; startpos moves c2c4 e7e5 b1c3 g8f6 g1f3 b8c6 g2g3 d7d5 c4d5 f6d5 f1g2 d5b6 e1g1 f8e7"},
    BenchCase{"Deep=3; startpos moves g1f3 g8f6 g2g3 g7g6 f1g2 f8g7 e1g1 e8g8 d2d3 d7d6 e2e4 e7e5 b1c3 b8c6 f3d2", quick},
    BenchCase{"Deep=4; startpos moves e2e4 e7e5 g1f3 b8c6 f1b5 a7a6 b5c6 d7c6 e1g1 f7f6 d2d4 e5d4 f3d4 c6c5 d4b3 d8d1 f1d1 c8g4"},
    BenchCase{"Deep=5; fen rnbqkb1r/ppp2ppp/5n2/3pp2Q/8/2N1P3/PPPP1PPP/R1B1KBNR w KQkq - 2 4"},
    BenchCase{"Deep=5; fen r3kb1r/ppp1pppp/2n2n2/8/2PPq3/5N2/PP2QPPP/RNB1K2R w KQkq - 0 1"},
    BenchCase{"Deep=4; fen r1b1kb1r/pp1npp1p/3p2pn/q7/1P5P/2P1PN2/1B1PBPP1/RN1QK2R w KQkq - 3 10"},
    // Middlegames
    BenchCase{"Deep=6; fen 5rk1/1b3p1p/pp3p2/3n1N2/1P6/P1qB1PP1/3Q3P/4R1K1 w - - 0 1"},
    BenchCase{"Deep=4; fen 2b2rk1/p1p4p/2p1p1p1/br2N1Q1/1p2q3/8/PB3PPP/3R1RK1 w - - 0 1"},
    BenchCase{"Deep=4; fen k2r4/2q3p1/p1Pr1p2/P1R1p2P/5pP1/8/1PQp1P2/1K1R4 b - - 0 1"},
    BenchCase{"Deep=5; fen r1b1rnk1/pp3pq1/2p3p1/6P1/2B2P1R/2P5/PP1Q2P1/2K4R w - - 0 1"},
    BenchCase{"Deep=5; fen 6kb/B1p2p2/5r2/1r1p2pR/6q1/3P2P1/P1P2PP1/2KR3Q b - - 0 1"},
    BenchCase{"Deep=5; fen 4r1k1/p1qr1p2/2pb1Bp1/1p5p/3P1n1R/1B3P2/PP3PK1/2Q4R w - - 0 1"},
    BenchCase{"Deep=6; fen 3rk1nR/4b3/1Qr2pP1/3p4/3P1NP1/p7/1BP1B1K1/N7 b - - 0 62"},
    BenchCase{"Deep=5; fen 5k2/4rpp1/pp6/4b2p/4N1q1/2NRB1P1/BP3P1P/6K1 b - - 0 1"},
    BenchCase{"Deep=4; fen 3nr1k1/p6p/2n1pRpB/3pP3/2pP2P1/q1P4P/6BK/5Q2 w - - 0 1"},
    // Promotions, mates
    BenchCase{"Deep=5; fen 1k1r4/1p1bP3/2p2p1Q/Ppb5/4Rp1P/2q2N1P/5PB1/6K1 w - - 1 2", quick},
    BenchCase{"Deep=5; fen 3r3k/3r1P1p/pp1Nn3/2pp4/7Q/6R1/Pq4PP/5RK1 w - - 0 1"},
    BenchCase{"Deep=5; fen 6k1/pp4p1/2p5/2bp4/8/P5Pb/1P3rrP/2BRRN1K b - - 0 1"},
    BenchCase{"Deep=5; fen kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1", quick},
    BenchCase{"Deep=7; fen 8/8/8/8/8/8/4p3/1k5K b - - 0 1"},
    // Endgames
    BenchCase{"Deep=6; fen 8/3r1k2/2p3p1/1pPb1p2/p7/P1B2P2/4BK2/3R4 w - - 0 1"},
    BenchCase{"Deep=6; fen 8/5p2/3pp2p/p5p1/4Pk2/2p2P1P/P1Kb2P1/1R6 w - - 0 1"},
    BenchCase{"Deep=6; fen 2k1r3/5R2/3KP3/8/1pP3p1/1P5p/8/8 w - - 0 1"},
    BenchCase{"Deep=6; fen 8/k7/p7/3Qp2P/n1P5/3KP3/1q6/8 b - - 0 1"},
    BenchCase{"Deep=6; fen 8/2pN1k2/p4p1p/Pn1R4/3b4/6Pp/1P3K1P/8 w - - 0 1"},
    BenchCase{"Deep=6; fen 4K1k1/8/1p5p/1Pp3b1/8/1P3P2/P1B2P2/8 w - - 0 1"},
    BenchCase{"Deep=7; fen 8/8/2Kp4/3P1B2/2P2k2/5p2/8/8 w - - 0 1"},
    BenchCase{"Deep=6; fen B7/7R/8/K7/8/k7/B7/8 w - - 0 1"},
    // Pawn endings, bare kings
    BenchCase{"Deep=6; fen 8/pp5p/3k2p1/8/4Kp2/2P1P2P/P7/8 w - - 0 1"},
    BenchCase{"Deep=5; fen 8/8/8/3K2p1/6P1/p7/1k6/8 w - - 10 151", quick},
    BenchCase{"Deep=6; fen 8/6P1/5p2/p7/8/2K2P2/8/4k3 b - - 0 1"},
    BenchCase{"Deep=6; fen 4K3/7P/8/4k3/8/8/8/8 b - - 0 1"},
    BenchCase{"Deep=8; fen 4K3/8/8/8/3k4/8/8/8 w - - 0 137", quick},
    // Many queens
    BenchCase{"Deep=5; fen 8/5pQ1/6q1/4bn1q/qK6/8/4k2P/8 w - - 0 1"},
    BenchCase{"Deep=5; fen 8/2q4q/2K5/8/8/5R2/1b1Q4/k2N1r2 w - - 0 1"},
    BenchCase{"Deep=6; fen n1QBq1k1/5p1p/5KP1/p7/8/8/8/8 w - - 0 1"},
    BenchCase{"Deep=4; fen 1nbqk1Qr/1ppp1p2/3b2p1/r3p3/6Q1/p2PP3/PPP2P1P/RNB1KBNR b KQk - 0 10"},

    // Castling, in several passes and in several searches: judged by what the visit before it left
    BenchCase{"Deep=5; fen r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", quick},
    BenchCase{"Deep=5; fen 4k2r/7p/8/8/8/8/P7/R3K3 w Qk - 0 1"},
    BenchCase{"Deep=6; fen 4k3/7p/8/8/8/8/P7/R3K3 w Q - 0 1", quick},
    BenchCase{"Deep=5; fen r3k3/8/8/8/8/8/8/4K2R b Kq - 0 1", quick},
    BenchCase{"Deep=5; fen r3k2r/p6p/8/8/8/8/P6P/R3K2R b KQkq - 0 1"},
    BenchCase{"Deep=5; fen r3k2r/pp4pp/8/8/8/8/PP4PP/R3K2R w KQkq - 0 1"},
    BenchCase{"Deep=2; fen r3k2r/3p1p1p/8/1pb3p1/1P4P1/2P2P2/N4B1P/R3K2R w KQkq - 0 1; Deep=1; fen r3k2r/pp3pp1/8/7p/8/1P6/P1PP3P/R3K2R w KQkq - 0 1", quick},
    BenchCase{"Deep=3; fen r3kn1r/3P4/p2b2Q1/3P4/8/6P1/8/R3K2R b KQkq - 0 1; Deep=2; fen r3k2r/3P1b2/8/n5p1/8/2B5/1P2P1P1/R3K2R b KQkq - 0 1; Deep=1; fen r3k2r/8/1N3N2/8/4P3/1p2P3/P5P1/4K2R b Kkq - 0 1", quick},
    BenchCase{"Castle value=9; Deep=4; fen 4k2r/1ppp4/8/8/4P3/8/1PPP1PPP/4K2R w Kk - 0 1"},
    // A game in one process: moves of both colours, late moves, repetition, the memory
    BenchCase{"Own book=false; Deep=2; startpos; startpos moves b1c3 g8f6; startpos moves e2e4; startpos moves e2e4 e7e5 g1f3", quick},
    BenchCase{"Own book=false; Deep=2; startpos moves g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1; startpos moves g1f3 g8f6 f3g1 f6g8 g1f3 g8f6", quick},
    BenchCase{"Own book=false; Deep=5; fen 6k1/5ppp/8/8/8/8/q4PPP/3R2K1 w - - 0 1 moves d1d8; fen 7k/8/8/8/8/5q2/8/K7 w - - 0 1 moves a1b1 f3e3 b1a1 e3f3 a1b1 f3e3 b1a1", quick},
    BenchCase{"Deep=5; fen 8/2n2k2/4p1p1/3pP2p/3P1P1P/6P1/3B1K2/8 b - - 0 1; clock 9000000; fen 8/2n2k2/4p1p1/3pP2p/3P1P1P/6P1/3B1K2/8 b - - 0 1; Memory=false; fen 8/2n2k2/4p1p1/3pP2p/3P1P1P/6P1/3B1K2/8 b - - 0 1", quick},
    BenchCase{"Deep=4; fen 4k3/p7/8/8/8/8/P7/4K3 w - - 0 1 moves e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 a2a4 e7e8", quick},
    BenchCase{"Deep=4; fen 4k3/p7/8/4p3/4P3/8/P7/4K2R w K - 0 1 moves e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8 e1e2 e8e7", quick},
    // The temperaments
    BenchCase{"Temperament=positional; Deep=3; fen r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/2N2N2/PPPP1PPP/R1BQK2R w KQkq - 0 1", quick},
    BenchCase{"Memory=false; Temperament=consistent; Deep=2; fen r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/2N2N2/PPPP1PPP/R1BQK2R w KQkq - 0 1; Temperament=dynamic; fen r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/2N2N2/PPPP1PPP/R1BQK2R w KQkq - 0 1", quick},
    // Each selective rule alone, and all of them but one
    BenchCase{"Memory=false; Deep=5; fen 8/2n2k2/4p1p1/3pP2p/3P1P1P/6P1/3B1K2/8 b - - 0 1; Lmr=false; fen 8/2n2k2/4p1p1/3pP2p/3P1P1P/6P1/3B1K2/8 b - - 0 1; Lmr=true; Null move filter=off; fen 8/2n2k2/4p1p1/3pP2p/3P1P1P/6P1/3B1K2/8 b - - 0 1"},
    BenchCase{"Memory=false; Deep=4; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 w - - 0 1; Null move filter=normal; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 w - - 0 1; Null move filter=off; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 w - - 0 1", quick},
    BenchCase{"Memory=false; Deep=5; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 w - - 0 1; PVS=false; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 w - - 0 1"},
    BenchCase{"Memory=false; Deep=5; PVS=false; Turbo search=false; fen 4k3/8/8/8/8/8/PPPPPPPP/4K3 w - - 0 1; PVS=true; fen 4k3/8/8/8/8/8/PPPPPPPP/4K3 w - - 0 1", quick},
    BenchCase{"Memory=false; Deep=5; Vertical filter=false; fen 8/P5k1/8/8/8/8/p5K1/8 w - - 0 1; Vertical filter=true; Search extension=false; fen 8/P5k1/8/8/8/8/p5K1/8 w - - 0 1", quick},
    BenchCase{"Memory=false; Deep=5; Deep memory=false; fen 8/1P4k1/8/8/2p5/8/3K4/8 b - - 0 1; Extra definition=false; fen 8/1P4k1/8/8/2p5/8/3K4/8 b - - 0 1; Extra evaluation=false; fen 8/1P4k1/8/8/2p5/8/3K4/8 b - - 0 1", quick},
    BenchCase{"Memory=false; Deep=4; Positive float filter=full; Negative float filter=full; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 w - - 0 1; Positive float filter=manual; Positive float filter level=1; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 w - - 0 1; Negative float filter=manual; Negative float filter level=2; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 w - - 0 1", quick},
    BenchCase{"Deep=3; Full info=false; fen r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/2N2N2/PPPP1PPP/R1BQK2R b KQkq - 0 1"},
    // The weights of the judgement
    BenchCase{"Deep=2; Aggressiveness=0; Attack to King proximity=9; Attack by check to King=9; Positional relevance=9; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 b - - 0 1; Aggressiveness=9; Attack to King proximity=0; Mobility=9; Castle value=0; Material quociente=0; fen r3k2r/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/R3K2R w KQkq - 0 1; Confidence=1; Positional matrices=false; Positional relevance=0; fen r3k2r/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/R3K2R b KQkq - 0 1", quick},
    // Mates and stalemates, given and taken, found and found on the board
    BenchCase{"Deep=5; fen 6k1/5ppp/8/8/8/8/5PPP/3RR1K1 w - - 0 1; fen k7/8/1K6/8/8/8/8/7R w - - 0 1; fen 8/8/8/8/8/5k2/8/5K1r w - - 0 1; fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1; fen 6k1/6P1/5K2/8/8/8/8/8 b - - 0 1", quick},
    BenchCase{"Deep=5; fen 7k/8/4K3/8/8/8/8/6Q1 w - - 0 1; Deep=4; fen 7k/8/4K3/8/8/8/8/6Q1 b - - 0 1; fen 8/8/8/8/8/5K2/6Q1/7k b - - 0 1; fen k7/2Q5/8/8/8/8/8/1K6 b - - 0 1"},
    // Clocks that allow no depth
    BenchCase{"Time control=true; clock 5; fen r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/2N2N2/PPPP1PPP/R1BQK2R w KQkq - 0 1; clock 50; fen 8/8/8/4k3/8/8/4P3/4K3 w - - 0 1; clock 500; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 w - - 0 1; clock 5000; fen 3r2k1/pp3ppp/2n1b3/8/4P3/2N1B3/PP3PPP/3R2K1 b - - 0 1", quick},
    // Boards that no game leads to
    BenchCase{"Deep=3; fen qqqqk3/8/8/8/8/8/8/3KQQQQ w - - 0 1; Deep=2; fen 4k3/8/8/8/8/8/8/4KK2 w - - 0 1; fen 8/8/8/3q4/8/8/4P3/8 w - - 0 1; fen r6r/8/8/8/8/8/8/R6R w KQkq - 0 1", quick},
};
// clang-format on

}  // namespace ondrel
