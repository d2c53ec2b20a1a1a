// The opening book: whole lines of text with a fixed reply.
#include "uci/book.h"

#include "base/root.h"
#include "support/dialogue.h"
#include "support/engine.h"
#include "support/plain_chess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace {

using namespace teste;
using namespace ondrel;

struct LinhaDoLivro {
    std::string lances, resposta;
};

void PrintTo(const LinhaDoLivro& x, std::ostream* os) { *os << '"' << x.lances << "\": " << x.resposta; }

const std::vector<LinhaDoLivro> primeiros{
    {"", "e2e4"},     {"e2e4", "d7d5"}, {"d2d4", "c7c5"}, {"g1f3", "g8f6"},
    {"b1c3", "e7e5"}, {"b2b3", "e7e5"}, {"g2g3", "d7d5"},
};

const std::vector<LinhaDoLivro> livro{
    // As White
    {"e2e4 e7e5", "g1f3"},
    {"e2e4 e7e5 g1f3 b8c6", "f1c4"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 f8c5", "c2c3"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 c2c3 g8f6", "d2d4"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6", "f3g5"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5", "e4d5"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5", "g5f7"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5 g5f7 e8f7", "d1f3"},
    {"e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5 g5f7 e8f7 d1f3 f7e6", "b1c3"},
    {"e2e4 e7e5 g1f3 g8f6", "b1c3"},
    {"e2e4 d7d5", "e4d5"},
    {"e2e4 g8f6", "b1c3"},
    {"e2e4 b8c6", "d2d4"},
    {"e2e4 c7c5", "g1f3"},
    {"e2e4 c7c5 g1f3 b8c6", "f1c4"},
    {"e2e4 c7c6", "d2d4"},
    {"e2e4 c7c6 d2d4 d7d5", "e4d5"},
    {"e2e4 d7d6", "d2d4"},
    {"e2e4 e7e6", "d2d4"},
    {"e2e4 e7e6 d2d4 d7d5", "e4d5"},
    {"e2e4 b7b6", "d2d4"},
    {"e2e4 g7g6", "d2d4"},
    // As Black
    {"e2e4 d7d5 e4e5", "c8f5"},
    {"e2e4 d7d5 e4d5", "g8f6"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4", "f6d5"},
    {"e2e4 d7d5 e4d5 g8f6 c2c4", "e7e6"},
    {"e2e4 d7d5 e4d5 g8f6 f1b5", "c8d7"},
    {"e2e4 d7d5 e4d5 g8f6 f1b5 c8d7 b5c4", "b7b5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4", "d5b4"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4", "b8c6"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5", "b7b5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5 b7b5 c4b5", "c8f5"},
    {"e2e4 d7d5 e4d5 g8f6 d2d4 f6d5 c2c4 d5b4 d1a4 b8c6 d4d5 b7b5 c4b5 c8f5 b1a3", "d8d5"},
    {"d2d4 c7c5 d4c5", "e7e6"},
    {"d2d4 c7c5 d4c5 e7e6 b2b4", "a7a5"},
    {"d2d4 c7c5 d4d5", "d7d6"},
};

std::string linha_de(const LinhaDoLivro& x) {
    return x.lances.empty() ? "position startpos" : "position startpos moves " + x.lances;
}

plain::Position posicao_de(const LinhaDoLivro& x) {
    plain::Position p = plain::start_position();
    std::istringstream lances(x.lances);
    for (std::string m; lances >> m;) {
        const auto lido = plain::from_uci(m);
        EXPECT_TRUE(lido && plain::is_legal(p, *lido)) << m;
        p = plain::play(p, *lido);
    }
    return p;
}

class BookLine : public testing::TestWithParam<LinhaDoLivro> {
protected:
    void SetUp() override { processo_novo(); }

    [[nodiscard]] static Linhas resposta() { return {"bestmove " + GetParam().resposta}; }
};

TEST_P(BookLine, IsAnsweredAtOnceAndItsGoIsDropped) {
    EXPECT_EQ(dialogo({linha_de(GetParam()), "go wtime 300000 btime 300000", "isready"}),
              (std::vector<Linhas>{resposta(), {}, {"readyok"}}));
}

TEST_P(BookLine, IsAnsweredBetweenMoves) {
    EXPECT_EQ(dialogo({"position startpos", linha_de(GetParam()), "go"}),
              (std::vector<Linhas>{{"bestmove e2e4"}, resposta(), {}}));
}

TEST_P(BookLine, IsALegalMove) {
    const auto m = plain::from_uci(GetParam().resposta);
    ASSERT_TRUE(m);
    EXPECT_TRUE(plain::is_legal(posicao_de(GetParam()), *m));
}

TEST_P(BookLine, IsOfTextNotOfPositions) {
    const std::string fen = "position fen " + plain::to_fen(posicao_de(GetParam()));
    const auto respostas = dialogo({"setoption name Deep value 0", fen, "go"});
    EXPECT_EQ(respostas[1], Linhas{});
    EXPECT_EQ(quantas_comecam(respostas[2], "bestmove "), 1);
    EXPECT_GT(quantas_comecam(respostas[2], "info score "), 1);
}

TEST_P(BookLine, IsSearchedWithoutOwnBook) {
    const auto respostas =
        dialogo({"setoption name Own book value false", "setoption name Deep value 0", linha_de(GetParam()), "go"});
    // The first move of a game is searched at once, a later one waits for go.
    const bool primeiro = GetParam().lances.size() <= 4;
    EXPECT_GT(quantas_comecam(respostas[primeiro ? 2 : 3], "info score "), 1);
    EXPECT_EQ(quantas_comecam(respostas[primeiro ? 2 : 3], "bestmove "), 1);
    EXPECT_EQ(respostas[primeiro ? 3 : 2], Linhas{});
}

TEST_P(BookLine, IsComparedWhole) {
    if (GetParam().lances.size() <= 4) {
        return;  // a first move has no search to fall back on
    }
    const auto respostas = dialogo({"setoption name Deep value 0", linha_de(GetParam()) + " ", "go"});
    EXPECT_EQ(respostas[1], Linhas{});
    EXPECT_EQ(quantas_comecam(respostas[2], "bestmove "), 1);
}

std::string nome_da_linha(const testing::TestParamInfo<LinhaDoLivro>& info) {
    std::string nome = "start_" + info.param.lances;
    for (char& x : nome) {
        x = x == ' ' ? '_' : x;
    }
    return nome;
}

INSTANTIATE_TEST_SUITE_P(First, BookLine, testing::ValuesIn(primeiros), nome_da_linha);
INSTANTIATE_TEST_SUITE_P(Later, BookLine, testing::ValuesIn(livro), nome_da_linha);

class Book : public testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

TEST_F(Book, HasThirtySixLines) { EXPECT_EQ(livro.size(), 36U); }

TEST_F(Book, OpenGameNeedsNoGoAndNoInfo) {
    EXPECT_EQ(conversa({"position startpos moves e2e4 e7e5"}), Linhas{"bestmove g1f3"});
}

TEST_F(Book, QueensPawnPushedOn) {
    EXPECT_EQ(conversa({"position startpos moves d2d4 c7c5 d4d5"}), Linhas{"bestmove d7d6"});
}

TEST_F(Book, LineOutsideWaitsForGo) {
    const auto respostas = dialogo({"setoption name Deep value 0", "position startpos moves e2e4 a7a6", "go"});
    EXPECT_EQ(respostas[1], Linhas{});
    EXPECT_EQ(quantas_comecam(respostas[2], "bestmove "), 1);
    EXPECT_GT(quantas_comecam(respostas[2], "info score "), 1);
}

TEST_F(Book, DifferentSpacingIsOutside) {
    for (const char* linha : {"position startpos moves e2e4  e7e5", "position startpos moves e2e4 e7e5x",
                              "position startpos  moves e2e4 e7e5", "position startpos moves  e2e4 e7e5"}) {
        processo_novo();
        EXPECT_EQ(dialogo({"setoption name Deep value 0", linha, "isready"})[1], Linhas{}) << linha;
    }
}

TEST_F(Book, TranspositionIsOutside) {
    const auto respostas =
        dialogo({"setoption name Deep value 0", "position startpos moves e2e4 b8c6 g1f3 e7e5", "go"});
    EXPECT_EQ(respostas[1], Linhas{});
}

TEST_F(Book, FirstMovesAreComparedWhole) {
    EXPECT_EQ(conversa({"position startpos moves E2e4"}), Linhas{});
    // The one-move form is known by characters, the reply by the whole line.
    EXPECT_EQ(conversa({"position startpos xoves e2e4"}), Linhas{});
    EXPECT_EQ(conversa({"position startpos mOves e2e4"}), Linhas{});
    EXPECT_EQ(conversa({"position startpos moves e2e"}), Linhas{});
}

TEST_F(Book, OtherFirstMovesHaveNoReply) {
    for (const plain::Move& m : plain::legal_moves(plain::start_position())) {
        const std::string lance = plain::to_uci(m);
        if (std::ranges::any_of(primeiros, [&](const auto& x) { return x.lances == lance; })) {
            continue;
        }
        EXPECT_EQ(conversa({"position startpos moves " + lance, "go"}), Linhas{}) << lance;
    }
}

TEST_F(Book, IsEnteredAgainAfterALineOutside) {
    const auto respostas = dialogo({"setoption name Deep value 0", "position startpos moves e2e4 a7a6", "go",
                                    "position startpos moves e2e4 e7e5", "position startpos moves e2e4 e7e5"});
    EXPECT_EQ(respostas[3], Linhas{"bestmove g1f3"});
    EXPECT_EQ(respostas[4], Linhas{"bestmove g1f3"});
}

// White's table is not asked for Black and the other way round.
TEST_F(Book, EachColourHasItsOwnTable) {
    for (const LinhaDoLivro& x : livro) {
        const bool brancas_jogam = std::ranges::count(x.lances, ' ') % 2 == 1;
        in = linha_de(x);
        EXPECT_EQ(com_entrada("", Own_Book_b), brancas_jogam ? "bestmove " + x.resposta + "\n" : "");
        EXPECT_EQ(OwnBk, brancas_jogam ? 1 : 0);
        EXPECT_EQ(com_entrada("", Own_Book_p), brancas_jogam ? "" : "bestmove " + x.resposta + "\n");
        EXPECT_EQ(OwnBk, brancas_jogam ? 0 : 1);
    }
}

TEST_F(Book, FirstMovesAreInNeitherTable) {
    for (const LinhaDoLivro& x : primeiros) {
        in = linha_de(x);
        EXPECT_EQ(com_entrada("", Own_Book_b) + com_entrada("", Own_Book_p), "") << in;
    }
}

TEST_F(Book, ResultIsLeftWhereTheBookIsNotAsked) {
    conversa({"setoption name Deep value 0", "position startpos moves e2e4 e7e5"});
    EXPECT_EQ(OwnBk, 1);
    conversa({"position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", "go"});
    EXPECT_EQ(OwnBk, 1);
    conversa({"position startpos moves e2e4 a7a6", "go"});
    EXPECT_EQ(OwnBk, 0);
}

}  // namespace
