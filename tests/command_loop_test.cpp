// The command loop: which line is understood where, what is answered at once, and what a new game puts back.
#include "uci/command_loop.h"

#include "eval/tables.h"
#include "memory/game_memory.h"
#include "memory/shallow_tables.h"
#include "support/dialogue.h"
#include "support/engine.h"
#include "support/plain_chess.h"
#include "support/plain_eval.h"
#include "support/process.h"
#include "uci/position.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

namespace {

using namespace teste;
using namespace ondrel;

const Linhas nada;
const std::string raso = "setoption name Deep value 1";
const std::string sem_livro = "setoption name Own book value false";
const std::string fora_do_livro = "position startpos moves e2e4 a7a6";

class CommandLoop : public testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

// --- What each of the three places understands ---

TEST_F(CommandLoop, UciIsAnsweredBeforeAnythingElse) {
    const Linhas linhas = conversa({"uci"});
    ASSERT_EQ(linhas.size(), 36U);  // two of identity, 33 options, uciok
    EXPECT_EQ(linhas.front(), "id name Ondrel 29.1 64bit");
    EXPECT_EQ(linhas.back(), "uciok");
}

TEST_F(CommandLoop, UciIsNotAnsweredAfterTheFirstPosition) {
    EXPECT_EQ(dialogo({"position startpos", "uci", "isready"}),
              (std::vector<Linhas>{{"bestmove e2e4"}, nada, {"readyok"}}));
}

TEST_F(CommandLoop, StartPositionIsAnsweredBeforeAnyGo) {
    EXPECT_EQ(dialogo({"position startpos", "go wtime 300000 btime 300000"}),
              (std::vector<Linhas>{{"bestmove e2e4"}, nada}));
}

TEST_F(CommandLoop, IsreadyIsAnsweredIdleAndBetweenMovesButNotWhileWaitingForGo) {
    const auto respostas =
        dialogo({raso, "isready", "position startpos", "isready", fora_do_livro, "isready", "go", "isready"});
    ASSERT_EQ(respostas.size(), 8U);
    EXPECT_EQ(respostas[1], Linhas{"readyok"});
    EXPECT_EQ(respostas[3], Linhas{"readyok"});
    EXPECT_EQ(respostas[5], nada);
    EXPECT_EQ(quantas_comecam(respostas[6], "readyok"), 0);
    EXPECT_EQ(respostas[7], Linhas{"readyok"});
}

TEST_F(CommandLoop, FirstMoveOutsideTheSixHasNoReplyAndItsGoNeither) {
    EXPECT_EQ(dialogo({"position startpos moves c2c4", "go wtime 300000 btime 300000", "isready"}),
              (std::vector<Linhas>{nada, nada, {"readyok"}}));
}

TEST_F(CommandLoop, ReplyToTheFirstMoveNeedsNoGo) {
    EXPECT_EQ(dialogo({"position startpos moves e2e4", "go"}), (std::vector<Linhas>{{"bestmove d7d5"}, nada}));
}

TEST_F(CommandLoop, StopDoesNotEndASearchAndIsDroppedAfterIt) {
    Linhas sem = conversa({raso, fora_do_livro, "go"});
    processo_novo();
    const auto respostas = dialogo({raso, fora_do_livro, "go", "stop", "isready"});
    ASSERT_EQ(respostas.size(), 5U);
    // The final report and the reply; the lines before them tell the time.
    ASSERT_GE(respostas[2].size(), 2U);
    ASSERT_EQ(quantas_comecam(respostas[2], "info score"), quantas_comecam(sem, "info score"));
    EXPECT_EQ(respostas[2].back(), sem.back());
    EXPECT_EQ(*(respostas[2].end() - 2), *(sem.end() - 2));
    EXPECT_EQ(respostas[3], nada);
    EXPECT_EQ(respostas[4], Linhas{"readyok"});
}

TEST_F(CommandLoop, NothingIsReadWhileItSearches) {
    const auto respostas = dialogo({raso, fora_do_livro, "go", "isready"});
    EXPECT_EQ(quantas_comecam(respostas[2], "bestmove "), 1);
}

TEST_F(CommandLoop, WordsAreComparedWholeAndUntrimmed) {
    for (const char* linha : {"uci ", " uci", "UCI", "ucinewgame", "uc", "isready ", " isready", "Isready", "quit ",
                              " quit", "QUIT", "position startpos ", " position startpos", "positionstartpos", ""}) {
        processo_novo();
        EXPECT_EQ(dialogo({linha, "isready"}), (std::vector<Linhas>{nada, {"readyok"}})) << '"' << linha << '"';
    }
}

TEST_F(CommandLoop, WordsAreComparedWholeBetweenMovesToo) {
    for (const char* linha : {"isready ", " isready", "quit ", " quit", "position startpos ", "uci", ""}) {
        processo_novo();
        EXPECT_EQ(dialogo({"position startpos", linha, "isready"}),
                  (std::vector<Linhas>{{"bestmove e2e4"}, nada, {"readyok"}}))
            << '"' << linha << '"';
    }
}

TEST_F(CommandLoop, UnknownWordsAreDroppedInBothLoops) {
    for (const char* linha : {"ucinewgame", "stop", "ponderhit", "debug on", "register later", "go", "go infinite",
                              "setoption name Nothing value 1", "help", "position", "d"}) {
        processo_novo();
        EXPECT_EQ(dialogo({linha, "position startpos", linha, "isready"}),
                  (std::vector<Linhas>{nada, {"bestmove e2e4"}, nada, {"readyok"}}))
            << linha;
    }
}

TEST_F(CommandLoop, GoWaitLosesEveryOtherCommand) {
    const auto respostas = dialogo({raso, sem_livro, fora_do_livro, "position startpos", "isready", "uci", "quit",
                                    "setoption name Castle value value 9", "stop", " go", "Go", "g", "go", "isready"});
    ASSERT_EQ(respostas.size(), 14U);
    for (std::size_t k = 2; k < 12; ++k) {
        EXPECT_EQ(respostas[k], nada) << k;
    }
    EXPECT_EQ(quantas_comecam(respostas[12], "bestmove "), 1);
    EXPECT_EQ(respostas[13], Linhas{"readyok"});
    EXPECT_EQ(roque_v, 3);
    EXPECT_EQ(tab[casa(0, 5)], -peao);  // a7a6 stands: the position line in the wait was lost
}

TEST_F(CommandLoop, AnyLineThatBeginsWithGoStartsTheSearch) {
    for (const char* linha : {"go", "gone", "go infinite", "go movetime 1000", "go depth 10", "goal"}) {
        processo_novo();
        const auto respostas = dialogo({raso, fora_do_livro, linha});
        EXPECT_EQ(quantas_comecam(respostas[2], "bestmove "), 1) << linha;
    }
}

// --- The four forms of position are known by single characters, in both loops alike ---

struct Forma {
    std::string linha;
    int b, p, ob, fen;
};

const std::vector<Forma> formas{
    {"position startpos", 1, 0, 0, 0},
    {"position startpos moves e2e4", 0, 1, 0, 0},
    {"position startpos moves e2e4 ", 0, 0, 1, 0},
    {"position startpos moves e2e4 e7e5", 0, 0, 1, 0},
    {"position fen 8/8/8/8/8/8/8/K1k5 w - - 0 1", 0, 0, 0, 1},
    // Nothing but the characters at 0, 9, 18 and 28, or 0, 5 and 9, is looked at.
    {"p--------s--------m---------", 0, 1, 0, 0},
    {"p--------s--------m---------x", 0, 0, 1, 0},
    {"p--------s--------m", 0, 1, 0, 0},
    {"p----i---f", 0, 0, 0, 1},
    // With the characters of both, the game from the start position comes first: 9 cannot be "s" and "f".
    {"p----i---s--------m---------x", 0, 0, 1, 0},
};

TEST_F(CommandLoop, ReaderBetweenMovesTellsTheFormsApart) {
    for (const Forma& forma : formas) {
        joga_c_b = joga_c_p = joga_c_ob = joga_c_fen = 1;
        com_entrada("stop\n" + forma.linha + "\nisready\n", convert_a1a2_to_0000);
        EXPECT_EQ(joga_c_b, forma.b) << forma.linha;
        EXPECT_EQ(joga_c_p, forma.p) << forma.linha;
        EXPECT_EQ(joga_c_ob, forma.ob) << forma.linha;
        EXPECT_EQ(joga_c_fen, forma.fen) << forma.linha;
        EXPECT_EQ(SAIR_PROGRAMA, 0) << forma.linha;
        EXPECT_EQ(in, forma.linha);
    }
}

TEST_F(CommandLoop, ReaderBetweenMovesStopsAtQuit) {
    EXPECT_EQ(com_entrada("isready\nquit\nisready\n", convert_a1a2_to_0000), "readyok\n");
    EXPECT_EQ(SAIR_PROGRAMA, 1);
    EXPECT_EQ(joga_c_b + joga_c_p + joga_c_ob + joga_c_fen, 0);
}

TEST_F(CommandLoop, ReaderBetweenMovesComesBackWithoutAFlagAtTheEndOfInput) {
    joga_c_b = joga_c_p = joga_c_ob = joga_c_fen = 1;
    EXPECT_EQ(com_entrada("isready\n", convert_a1a2_to_0000), "readyok\n");
    EXPECT_EQ(joga_c_b + joga_c_p + joga_c_ob + joga_c_fen + SAIR_PROGRAMA, 0);
}

TEST_F(CommandLoop, ReaderBetweenMovesRestoresTheDepth) {
    deepp = 11;
    deep = 3;  // as a clock in low time leaves it
    com_entrada("quit\n", convert_a1a2_to_0000);
    EXPECT_EQ(deep, 11);
}

TEST_F(CommandLoop, IdleLoopTellsTheFormsApart) {
    for (const Forma& forma : formas) {
        processo_novo();
        OwnBook = 0;
        deep = deepp = 0;
        bool perguntou_depois = false;
        const auto respostas = dialogo({{forma.linha}, {"go", [&] { perguntou_depois = true; }}});
        ASSERT_TRUE(perguntou_depois);
        // A first move is searched on the spot, everything else waits for go.
        const std::size_t busca_em = forma.b || forma.p ? 0 : 1;
        EXPECT_EQ(quantas_comecam(respostas[busca_em], "bestmove "), 1) << forma.linha;
        EXPECT_EQ(quantas_comecam(respostas[1 - busca_em], ""), 0) << forma.linha;
    }
}

TEST_F(CommandLoop, CharactersInTheWrongPlaceMakeNoPosition) {
    for (const char* linha : {"Position startpos", "xosition startpos moves e2e4 e7e5", "position xtartpos moves e2e4",
                              "position startpos xoves e2e4", "position  startpos moves e2e4 e7e5",
                              "position  fen 8/8/8/8/8/8/8/K1k5 w - - 0 1", "posit-on fen 8/8/8/8/8/8/8/K1k5 w - - 0 1",
                              "position Fen 8/8/8/8/8/8/8/K1k5 w - - 0 1"}) {
        processo_novo();
        EXPECT_EQ(dialogo({linha, "isready"}), (std::vector<Linhas>{nada, {"readyok"}})) << linha;
        EXPECT_EQ(dialogo({"position startpos", linha, "isready"}),
                  (std::vector<Linhas>{{"bestmove e2e4"}, nada, {"readyok"}}))
            << linha;
    }
}

// --- The text of the reply ---

TEST_F(CommandLoop, ReplyNamesTheMoveInFourCharacters) {
    abcd = {0, 0, 7, 7};
    PR = '0';
    PRs = 'q';
    convert_0000_to_a1a2();
    EXPECT_EQ(out, "bestmove a1h8");
    EXPECT_EQ(std::string(ABCD.data(), 4), "a1h8");
    EXPECT_EQ(PRs, '0');
    EXPECT_EQ(PR, '0');
}

TEST_F(CommandLoop, ReplyNamesAQueenOnce) {
    abcd = {6, 6, 6, 7};
    PR = 'q';
    PRs = 'q';
    convert_0000_to_a1a2();
    EXPECT_EQ(out, "bestmove g7g8q");
    EXPECT_EQ(PR, '0');
    EXPECT_EQ(PRs, '0');
    convert_0000_to_a1a2();
    EXPECT_EQ(out, "bestmove g7g8");
}

TEST_F(CommandLoop, ReplyKeepsItsOldTextForAnyOtherPromotionLetter) {
    abcd = {4, 1, 4, 3};
    convert_0000_to_a1a2();
    abcd = {6, 6, 6, 7};
    for (const char letra : {'n', 'r', 'b', 'Q', 'x', '\0'}) {
        PR = letra;
        PRs = 'q';
        convert_0000_to_a1a2();
        EXPECT_EQ(out, "bestmove e2e4");
        EXPECT_EQ(std::string(ABCD.data(), 4), "e2e4");
        EXPECT_EQ(PR, letra);
        EXPECT_EQ(PRs, 'q');
    }
}

TEST_F(CommandLoop, ReplyNamesEverySquare) {
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            abcd = {f, r, 7 - f, 7 - r};
            convert_0000_to_a1a2();
            const std::string de{static_cast<char>('a' + f), static_cast<char>('1' + r)};
            const std::string para{static_cast<char>('h' - f), static_cast<char>('8' - r)};
            EXPECT_EQ(out, "bestmove " + de + para);
        }
    }
}

TEST_F(CommandLoop, PromotionOfTheSearchReachesTheReply) {
    const auto linhas = conversa({raso, "position fen 8/6P1/8/8/8/k7/8/7K w - - 0 1", "go"});
    EXPECT_EQ(linhas.back(), "bestmove g7g8q");
    // The report names the move without its letter.
    EXPECT_TRUE((linhas.end() - 2)->ends_with(" pv g7g8")) << *(linhas.end() - 2);
}

// --- The order on the wire ---

TEST_F(CommandLoop, FinalReportStandsRightBeforeTheReply) {
    const Linhas linhas = conversa({raso, fora_do_livro, "go"});
    ASSERT_GE(linhas.size(), 2U);
    const std::string& relato = *(linhas.end() - 2);
    EXPECT_TRUE(relato.starts_with("info score ")) << relato;
    EXPECT_EQ(relato.find("currmove"), std::string::npos) << relato;
    EXPECT_TRUE(linhas.back().starts_with("bestmove ")) << linhas.back();
    EXPECT_EQ(relato.substr(relato.size() - 4), linhas.back().substr(9, 4));
}

TEST_F(CommandLoop, RememberedSearchWritesItsFinalReportAndReplyAlone) {
    const auto respostas = dialogo({raso, fora_do_livro, "go", fora_do_livro, "go"});
    ASSERT_EQ(respostas[4].size(), 2U);
    EXPECT_TRUE(respostas[4][0].starts_with("info score ")) << respostas[4][0];
    EXPECT_EQ(respostas[4][1], respostas[2].back());
}

TEST_F(CommandLoop, EachPositionLineBuildsTheGameAnew) {
    conversa({raso, "position startpos moves d2d4 a7a6", "go", "position startpos moves e2e4 h7h6", "go"});
    const auto lances =
        plain::legal_moves(*plain::from_fen("rnbqkbnr/ppppppp1/7p/8/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2"));
    const std::string jogado = out.substr(9);
    EXPECT_TRUE(std::ranges::any_of(lances, [&](const auto& m) { return plain::to_uci(m) == jogado; })) << jogado;
    EXPECT_EQ(tabr1[1][casa(3, 1)], peao);  // d2d4 is of the game before
    EXPECT_EQ(tabr1[1][casa(7, 5)], -peao);
}

TEST_F(CommandLoop, ReplyIsPlayedOnTheBoardOfTheGame) {
    conversa({raso, fora_do_livro, "go"});
    EXPECT_EQ(tab[abcd.origem()], vazia);
    EXPECT_GT(tab[abcd.destino()], 0);
}

// --- Ends ---

TEST(CommandLoopProcess, SaysNothingUntilAsked) {
    Processo engine;
    std::string linha;
    EXPECT_FALSE(engine.le(linha, std::chrono::milliseconds(100)));
    engine.escreve("isready");
    ASSERT_TRUE(engine.le(linha));
    EXPECT_EQ(linha, "readyok");
}

TEST(CommandLoopProcess, QuitQueuedBehindASearchEndsItAfterTheReply) {
    const Resultado r = roda(raso + "\n" + fora_do_livro + "\ngo\nquit\nisready\n");
    EXPECT_EQ(r.codigo, 0);
    EXPECT_TRUE(r.linhas().back().starts_with("bestmove ")) << r.saida;
    EXPECT_EQ(r.quantas("bestmove "), 1);
    EXPECT_EQ(r.erro, "");
}

// The book would answer this line: without it the search is waited for, and the end of input is its go.
TEST(CommandLoopProcess, EndOfInputAfterAPositionStartsTheSearch) {
    const Resultado r = roda(raso + "\n" + sem_livro + "\nposition startpos moves e2e4 e7e5\n");
    EXPECT_EQ(r.codigo, 0);
    EXPECT_EQ(r.quantas("bestmove "), 1);
    EXPECT_TRUE(r.linhas().back().starts_with("bestmove ")) << r.saida;
}

TEST(CommandLoopProcess, EndOfInputAndQuitExitWithZeroEverywhere) {
    for (const char* entrada : {"", "\n", "uci\n", "quit\n", "position startpos\n", "position startpos\nquit\n",
                                "position startpos moves e2e4 e7e5\n", "position startpos moves e2e4 e7e5\nquit\n"}) {
        const Resultado r = roda(entrada);
        EXPECT_EQ(r.codigo, 0) << entrada;
        EXPECT_EQ(r.erro, "") << entrada;
    }
}

TEST(CommandLoopProcess, LastLineCountsWithoutItsLineEnd) {
    EXPECT_EQ(roda("isready").saida, "readyok\n");
    EXPECT_EQ(roda("position startpos").saida, "bestmove e2e4\n");
}

// --- The first move without the book ---

// The root moves of the first search of a game in the order in which they are tried, with their class.
struct Primeiro {
    int classe;
    Lance m;
};
std::vector<Primeiro> primeiros;

Linhas primeira_busca(const std::string& linha) {
    primeiros.clear();
    entra_no_filho = [](int n, Lance m) {
        if (n == 1) {
            primeiros.push_back({ataque, m});
        }
        return true;
    };
    return conversa({sem_livro, raso, linha});
}

// Classes fall; within one all pawns come before all knights, each kind by files and then ranks.
void espera_ordem_do_primeiro_lance(const Tabuleiro& t) {
    const auto antes = [&t](const Primeiro& x, const Primeiro& y) {
        const auto chave = [&t](const Primeiro& p) {
            const int piece = valor_da_peca(t[p.m.origem()]);
            return std::tuple(-p.classe, piece == peao ? 0 : 1, p.m.origem());
        };
        return chave(x) < chave(y);
    };
    EXPECT_TRUE(std::ranges::is_sorted(primeiros, antes));
    for (const Primeiro& p : primeiros) {
        const int piece = valor_da_peca(t[p.m.origem()]);
        EXPECT_TRUE(piece == peao || piece == cavalo) << texto(p.m);
    }
}

TEST_F(CommandLoop, FirstMoveAsWhiteIsSearchedWithoutTheBook) {
    const Linhas linhas = primeira_busca("position startpos");
    EXPECT_EQ(primeiros.size(), 20U);
    espera_ordem_do_primeiro_lance(tabuleiro_inicial);
    EXPECT_EQ(quantas_comecam(linhas, "bestmove "), 1);
    EXPECT_EQ(tab[abcd.origem()], vazia);  // played
    EXPECT_EQ(EP, E);
    EXPECT_EQ(tempo, 180000);
    EXPECT_EQ(joga_com_b, 1);
    EXPECT_TRUE((linhas.end() - 2)->starts_with("info score cp ")) << *(linhas.end() - 2);
}

TEST_F(CommandLoop, FirstMoveAsBlackIsSearchedWithoutTheBook) {
    const Linhas linhas = primeira_busca("position startpos moves b1c3");
    Tabuleiro t = tabuleiro_inicial;
    t[casa(2, 2)] = t[casa(1, 0)];
    t[casa(1, 0)] = 0;
    EXPECT_EQ(primeiros.size(), 20U);
    espera_ordem_do_primeiro_lance(t);
    EXPECT_EQ(quantas_comecam(linhas, "bestmove "), 1);
    EXPECT_LT(tab[abcd.destino()], 0);
    EXPECT_EQ(tab[casa(2, 2)], cavalo);
    EXPECT_EQ(joga_com_b, 0);
}

TEST_F(CommandLoop, FirstMoveAfterAnUnknownMoveIsSearchedWithoutTheBook) {
    EXPECT_EQ(quantas_comecam(conversa({sem_livro, raso, "position startpos moves c2c4"}), "bestmove "), 1);
}

TEST_F(CommandLoop, FirstSearchHasOnePassAtTheDepthOfTheOption) {
    for (const auto& [valor, depth] : {std::pair("0", " depth 1 "), {"1", " depth 2 "}, {"2", " depth 4 "}}) {
        processo_novo();
        const Linhas linhas =
            conversa({sem_livro, std::string("setoption name Deep value ") + valor, "position startpos"});
        int relatos = 0;
        for (const std::string& linha : linhas) {
            relatos += linha.find(" currmove ") != std::string::npos ? 1 : 0;
            EXPECT_TRUE(linha.find(" currmove ") == std::string::npos || linha.find(depth) != std::string::npos)
                << linha;
        }
        EXPECT_EQ(relatos, 20) << valor;
    }
}

// The first search runs at whatever depth stands, and the reader behind it sets it back to the option.
TEST_F(CommandLoop, FirstSearchOfASecondGameRunsAtTheOption) {
    const auto respostas = dialogo({sem_livro, raso, fora_do_livro, "go wtime 50 btime 50", "position startpos"});
    EXPECT_TRUE(std::ranges::any_of(respostas[4], [](const auto& x) { return x.find(" depth 2 ") != x.npos; }));
}

std::string sem_relogio(const Linhas& linhas) {
    std::string texto;
    for (const std::string& linha : linhas) {
        if (!linha.starts_with("info nps")) {
            const auto tempo_em = linha.find(" time ");
            texto += linha.substr(0, tempo_em) + '\n';
        }
    }
    return texto;
}

TEST_F(CommandLoop, GameDoesNotDependOnTheGameBefore) {
    const auto sozinho = dialogo({sem_livro, raso, "position startpos"});
    processo_novo();
    const auto depois = dialogo({sem_livro, raso, "position fen 4k3/PP6/8/8/8/8/6pp/K7 b - - 0 1", "go",
                                 "position startpos moves g1f3", "position startpos"});
    EXPECT_EQ(sem_relogio(depois[5]), sem_relogio(sozinho[2]));
}

TEST_F(CommandLoop, OneMoveFormPlaysTheMoveOnTheBoardEvenWithoutAReply) {
    conversa({"position startpos moves h2h4"});
    EXPECT_EQ(tab[casa(7, 3)], peao);
    EXPECT_EQ(tab[casa(7, 1)], vazia);
    EXPECT_EQ(jm.p_ah[brancas][7], 1);
    EXPECT_EQ(joga_com_b, 0);
}

// --- What a new game and a position line put back: every item is spoilt first ---

struct Item {
    const char* nome;
    std::function<void()> suja;
    std::function<void()> confere;
};

void PrintTo(const Item& item, std::ostream* os) { *os << item.nome; }

// An item that is one variable.
#define ITEM(nome, variavel, sujo, limpo)                                 \
    Item {                                                                \
        nome, [] { variavel = sujo; }, [] { EXPECT_EQ(variavel, limpo); } \
    }

void suja_lances() {
    aab_ddb = {1, 2, 3, 4};
    aa_dd.fill({1, 2, 3, 4});
    aag_ddg.fill({1, 2, 3, 4});
}

void confere_lances() {
    EXPECT_EQ(aab_ddb, nenhum_lance);
    for (const Lance& m : aa_dd) {
        EXPECT_EQ(m, nenhum_lance);
    }
    for (const Lance& m : aag_ddg) {
        EXPECT_EQ(m, nenhum_lance);
    }
}

void confere_en_passant() {
    for (const Cor c : {brancas, pretas}) {
        for (const auto x : jm.p_ah[c]) {
            EXPECT_EQ(x, 0);
        }
    }
}

void confere_historia_vazia() {
    for (const Tabuleiro& linha : tabr1) {
        EXPECT_TRUE(std::ranges::all_of(linha, [](int x) { return x == 1; }));
    }
}

// What the reset of a position line does; that of a new game does it too.
const std::vector<Item> itens_da_posicao{
    {"inicio", [] { inicio = -1000000; }, [] { EXPECT_GE(inicio, 0); }},
    ITEM("IIDS", IIDS, 0, 1),
    ITEM("pempatee", pempatee, 0, 1),
    ITEM("X", X, 0, 1),
    {"FULL", [] { FULL.fill(1); }, [] { EXPECT_EQ(FULL[3] + FULL[4] + FULL[5], 0); }},
    {"SEARCH_E", [] { SEARCH_EE = 1, SEARCH_E = 0; }, [] { EXPECT_EQ(SEARCH_E, 1); }},
    {"SEARCH_E_off", [] { SEARCH_EE = 0, SEARCH_E = 1; }, [] { EXPECT_EQ(SEARCH_E, 0); }},
    ITEM("E", E, 77.0F, -10000000.0F),
    ITEM("EP", EP, 77.0F, 0.0F),
    ITEM("curr", curr, 7, 0),
    ITEM("DEEP", DEEP, 7, 0),
    ITEM("dddep", dddep, 7, 0),
    ITEM("peca", peca, 50, 0),
    {"roque",
     [] {
         roque = {10, 10};
     },
     [] { EXPECT_EQ(roque[0] + roque[1], 0); }},
    ITEM("alfa0", alfa[0], 77.0F, -16500.0F),
    ITEM("ALFA0", ALFA0, 77.0F, -16500.0F),
    {"moves", suja_lances, confere_lances},
    ITEM("nb", nb, 77, 1),
    ITEM("o", o, 77, 24),
    ITEM("PR", PR, 'q', '0'),
    ITEM("PRs", PRs, 'q', '0'),
    ITEM("PRe", PRe, 'n', '0'),
    ITEM("SAIR_PROGRAMA", SAIR_PROGRAMA, 1, 0),
    ITEM("Y", Y, 1, 0),
    {"en_passant", [] { jm.p_ah[brancas].fill(1), jm.p_ah[pretas].fill(1); }, confere_en_passant},
    ITEM("pp", pp, 1, 0),
    ITEM("joga_c_b", joga_c_b, 1, 0),
    ITEM("joga_c_p", joga_c_p, 1, 0),
    ITEM("book", book, 1, 0),
    ITEM("PROMO", PROMO, 1, 0),
    ITEM("deeppromo", deeppromo, 1, 0),
    {"history", [] { tabr1[0].fill(7), tabr1[999].fill(7); }, confere_historia_vazia},
};

// What a new game does besides.
const std::vector<Item> itens_da_partida{
    ITEM("EXTRA_EVAL", EXTRA_EVAL, 0, 1),
    ITEM("SCANT", SCANT, 0, 1),
    ITEM("SCAN1", SCAN1, 1, 0),
    ITEM("DEEP9", DEEP9, 1, 0),
    ITEM("nodes", nodes, 77U, 0U),
    ITEM("materialflot0", materialflot0, 77.0F, 0.0F),
    ITEM("tempo", tempo, 7, 180000),
    {"castling",
     [] {
         jm.R_jm = jm.T_a_jm = jm.T_h_jm = {1, 1};
     },
     [] { EXPECT_EQ(jm.R_jm[0] + jm.R_jm[1] + jm.T_a_jm[0] + jm.T_a_jm[1] + jm.T_h_jm[0] + jm.T_h_jm[1], 0); }},
    ITEM("joga_c_ob", joga_c_ob, 1, 0),
    ITEM("joga_c_fen", joga_c_fen, 1, 0),
    {"tab", [] { tab.fill(10); }, [] { EXPECT_EQ(tab, tabuleiro_inicial); }},
    {"material",
     [] {
         material_a = {1, 2};
     },
     [] {
         EXPECT_EQ(material_a, (std::array{510.0F, 510.0F}));
     }},
    {"materialmaior",
     [] {
         materialmaior = {1, 2};
     },
     [] {
         EXPECT_EQ(materialmaior, (std::array{320.0F, 320.0F}));
     }},
    {"npecas",
     [] {
         npecas = {1, 2};
     },
     [] {
         EXPECT_EQ(npecas, (std::array{15, 15}));
     }},
    {"npecas_dp",
     [] {
         npecas_dp = {1, 2};
     },
     [] {
         EXPECT_EQ(npecas_dp, (std::array{7, 7}));
     }},
    {"emp", [] { empp = -7, emp = 77; }, [] { EXPECT_EQ(emp, -17); }},
    {"emppp", [] { empp = 10, emppp = 77; }, [] { EXPECT_EQ(emppp, 0); }},
    {"MAXcut", [] { MAXcut.fill(7); },
     [] {
         EXPECT_EQ(MAXcut[0], 15400.0F);
         for (int n = 1; n < ultima_ply; ++n) {
             EXPECT_EQ(MAXcut[n], 15400.0F - 1100.0F * static_cast<float>(n / 2)) << n;
         }
     }},
    {"MAXcutt", [] { MAXcutt.fill(7); },
     [] {
         for (int n = 1; n < ultima_ply; ++n) {
             EXPECT_EQ(MAXcutt[n], 15400.0F - 1100.0F * static_cast<float>(n / 2)) << n;
         }
     }},
    // A game begins as the process does.
    ITEM("regimen", regimen, 77.0F, 0.0F),
    {"king_squares",
     [] {
         p_x_R = {1, 2}, p_y_R = {3, 4};
     },
     [] {
         EXPECT_EQ(p_x_R, (std::array{4, 4}));
         EXPECT_EQ(p_y_R, (std::array{0, 7}));
     }},
    {"Xr", [] { Xr[0].fill(7), Xr[1].fill(7); }, [] { EXPECT_EQ(Xr, (std::array<TabelaInteira, 2>{})); }},
    {"XP", [] { XP[0].fill(7), XP[1].fill(7); }, [] { EXPECT_EQ(XP, (std::array<TabelaInteira, 2>{})); }},
};

std::string nome_do_item(const testing::TestParamInfo<Item>& info) { return info.param.nome; }

class NewGameReset : public testing::TestWithParam<Item> {
protected:
    void SetUp() override { processo_novo(); }
};

TEST_P(NewGameReset, AsWhite) {
    GetParam().suja();
    conversa({"position startpos"});
    GetParam().confere();
}

TEST_P(NewGameReset, AsBlack) {
    GetParam().suja();
    nova_partida(pretas);
    GetParam().confere();
}

INSTANTIATE_TEST_SUITE_P(Common, NewGameReset, testing::ValuesIn(itens_da_posicao), nome_do_item);
INSTANTIATE_TEST_SUITE_P(Own, NewGameReset, testing::ValuesIn(itens_da_partida), nome_do_item);

class PositionReset : public testing::TestWithParam<Item> {
protected:
    void SetUp() override { processo_novo(); }
};

// A line of neither form resets and sets nothing up.
TEST_P(PositionReset, IsDoneByEveryPositionLine) {
    GetParam().suja();
    in = "position";
    joga_c_ob = 0;
    joga_c_fen = 0;
    le_posicao();
    GetParam().confere();
}

INSTANTIATE_TEST_SUITE_P(Item, PositionReset, testing::ValuesIn(itens_da_posicao), nome_do_item);

TEST_F(CommandLoop, PositionResetSetsTheDrawScoreToTheOption) {
    empp = 3;
    emp = 77;
    in = "position";
    le_posicao();
    EXPECT_EQ(emp, 3);  // ten more than in a new game
}

TEST_F(CommandLoop, PositionResetLeavesWhatTheReplayLooksAt) {
    in = "position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1";
    joga_c_ob = 0;
    joga_c_fen = 1;
    le_posicao();
    EXPECT_EQ(joga_c_fen, 1);
    EXPECT_EQ(joga_c_ob, 0);
    joga_c_fen = 0;
    joga_c_ob = 1;
    in = "position startpos moves e2e4 e7e5";
    le_posicao();
    EXPECT_EQ(joga_c_ob, 1);
    EXPECT_EQ(joga_c_fen, 0);
}

TEST_F(CommandLoop, PositionResetLeavesClockBudgetAndNodes) {
    tempo = 7;
    nodes = 77;
    in = "position";
    le_posicao();
    EXPECT_EQ(tempo, 7);
    EXPECT_EQ(nodes, 77U);
}

TEST_F(CommandLoop, NewGameTakesTheTimeOfItsLine) {
    inicio = -1;
    conversa({"position startpos"});
    const int primeiro = inicio;
    EXPECT_GE(primeiro, 0);
    inicio = -1;
    conversa({"position startpos"});
    EXPECT_GE(inicio, primeiro);
}

TEST_F(CommandLoop, NewGameNamesTheSideOfTheEngine) {
    conversa({"position startpos"});
    EXPECT_EQ(joga_com_b, 1);
    conversa({"position startpos moves c2c4"});
    EXPECT_EQ(joga_com_b, 0);
}

TEST_F(CommandLoop, NewGameFillsTheTablesOfItsColour) {
    for (const Cor c : {brancas, pretas}) {
        posix_peao_inici = {};
        posix_cavalo = {};
        conversa({c == brancas ? "position startpos" : "position startpos moves c2c4"});
        for (int i = 0; i < 64; ++i) {
            EXPECT_EQ(posix_peao_inici[c][i], plain::posix_pawn(c, 1, i));
            EXPECT_EQ(posix_cavalo[c][i], plain::posix_piece(c, 32, i));
            EXPECT_EQ(centro[i], plain::centro(i));
            EXPECT_EQ(centroo[i], plain::centroo(i));
            EXPECT_EQ(promo[brancas][i], plain::promo(brancas, i));
            EXPECT_EQ(promo[pretas][i], plain::promo(pretas, i));
        }
    }
}

void enche_tabelas_rasas() {
    for (int n = 3; n <= 5; ++n) {
        inc[n] = {7, 7};
    }
}

void confere_cadeia(Cor c, int esperado) {
    EXPECT_EQ(inc[3][c], esperado);
    EXPECT_EQ(inc[4][outra(c)], esperado);
    EXPECT_EQ(inc[5][c], esperado);
}

TEST_F(CommandLoop, NewGameClearsTheShallowTablesOfItsColourAlone) {
    for (const Cor c : {brancas, pretas}) {
        enche_tabelas_rasas();
        conversa({c == brancas ? "position startpos" : "position startpos moves c2c4"});
        confere_cadeia(c, 0);
        confere_cadeia(outra(c), 7);
    }
}

TEST_F(CommandLoop, NewGameLeavesTheShallowTablesWithoutDeepMemory) {
    enche_tabelas_rasas();
    HASHf = 0;
    conversa({"position startpos", "position startpos moves c2c4"});
    confere_cadeia(brancas, 7);
    confere_cadeia(pretas, 7);
}

TEST_F(CommandLoop, SettingsAndGameLongMemorySurviveANewGame) {
    conversa({"setoption name Castle value value 9", "setoption name Confidence value 1", "position startpos",
              "position startpos moves c2c4"});
    EXPECT_EQ(roque_v, 10);
    EXPECT_EQ(empp, 10);
    inc1 = 5;
    conversa({"position startpos"});
    EXPECT_EQ(inc1, 5);
}

TEST_F(CommandLoop, NewGameDoesNotTouchTheDepth) {
    deep = 5;
    deepp = 11;
    nova_partida(brancas);
    EXPECT_EQ(deep, 5);
    EXPECT_EQ(deepp, 11);
}

}  // namespace
