// The harness itself: the start position through every seam.
#include "support/engine.h"
#include "support/process.h"

#include <gtest/gtest.h>

namespace {

using namespace teste;

TEST(Engine, TriesTwentyRootMovesAtTheStart) {
    processo_novo();
    coloca("position fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    EXPECT_EQ(lances_da_raiz().size(), 20U);
}

TEST(Engine, TriesTwentyRepliesAtEveryPly) {
    for (int n = 1; n <= 23; ++n) {
        processo_novo();
        monta_ply(n, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1");
        EXPECT_EQ(lances_tentados(n).size(), 20U) << "ply " << n;
    }
}

TEST(Engine, AnswersAsAProcess) {
    const Resultado r = roda("isready\nquit\n");
    EXPECT_EQ(r.saida, "readyok\n");
    EXPECT_EQ(r.codigo, 0);
}

}  // namespace
