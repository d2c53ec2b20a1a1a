// The options: what is announced, how a line is matched by its characters, and what every value writes.
#include "uci/options.h"

#include "base/bounds.h"
#include "memory/game_memory.h"
#include "memory/shallow_tables.h"
#include "support/dialogue.h"
#include "support/engine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

using namespace teste;
using namespace ondrel;

// Every setting and working copy by name.
using Ajustes = std::map<std::string, double>;

#define AJUSTE(variavel) \
    { #variavel, static_cast < double>(variavel) }

Ajustes ajustes() {
    return {AJUSTE(CPU),
            AJUSTE(deep),
            AJUSTE(deepp),
            AJUSTE(TC),
            AJUSTE(Tu),
            AJUSTE(SEARCH_E),
            AJUSTE(SEARCH_EE),
            AJUSTE(PVS),
            AJUSTE(TURBO),
            AJUSTE(positfilter),
            AJUSTE(Positive_filter),
            AJUSTE(Positive_filterp),
            AJUSTE(negatfilter),
            AJUSTE(LMR),
            AJUSTE(Negative_filter),
            AJUSTE(Negative_filterp),
            AJUSTE(NULL_MOVE),
            AJUSTE(agres),
            AJUSTE(VERTICAL_filt),
            AJUSTE(Temperamento),
            AJUSTE(agresprxrei),
            AJUSTE(agreschrei),
            AJUSTE(empp),
            AJUSTE(matrix),
            AJUSTE(EXTRA_EVAL),
            AJUSTE(EXTRA_EVALL),
            AJUSTE(PM),
            AJUSTE(MOB),
            AJUSTE(roque_v),
            AJUSTE(extradef),
            AJUSTE(MQ),
            AJUSTE(OwnBook),
            AJUSTE(HASH1),
            AJUSTE(HASHf),
            AJUSTE(FULL_inf),
            AJUSTE(CHESS_960)};
}

// As the process starts, before any test has run.
const Ajustes ao_comecar = ajustes();

struct Valor {
    std::string texto;
    double valor;
};

struct Opcao {
    std::string nome;
    std::string anuncio;  // behind the name
    std::vector<std::string> variaveis;
    std::vector<Valor> valores;
    double inicial = 0;
};

using Valores = std::vector<Valor>;

const Valores sim_ou_nao{{"true", 1}, {"false", 0}};
const Valores filtro{{"off", 0}, {"manual", 1}, {"auto", 2}, {"full", 3}};
// The step from 33 down to 32 is how the scale runs.
const Valores niveis{{"0", 0}, {"1", 10}, {"2", 33}, {"3", 32}, {"4", 50}, {"5", 90}, {"6", 110}};
const Valores digitos{{"0", 0}, {"1", 1}, {"2", 2}, {"3", 3}, {"4", 4},
                      {"5", 5}, {"6", 6}, {"7", 7}, {"8", 8}, {"9", 9}};
const Valores digitos_e_dez{{"0", 0}, {"1", 1}, {"2", 2}, {"3", 3}, {"4", 4},
                            {"5", 5}, {"6", 6}, {"7", 7}, {"8", 8}, {"9", 10}};

const std::string check = " type check default true";
const std::string de_0_a_9 = " min 0 max 9";
const std::string de_1_a_9 = " min 1 max 9";
const std::string combo_do_filtro = " type combo default auto var off var full var auto var manual";

const std::vector<Opcao> opcoes{
    {"CPU power level",
     " type combo default medium var extreme var high var medium var low",
     {"CPU"},
     {{"extreme", 5}, {"high", 1}, {"medium", 2}, {"low", 3}},
     2},
    {"Deep",
     " type spin default 9" + de_0_a_9,
     {"deep", "deepp"},
     {{"0", 0}, {"1", 1}, {"2", 3}, {"3", 5}, {"4", 7}, {"5", 9}, {"6", 11}, {"7", 13}, {"8", 15}, {"9", 17}},
     17},
    {"Time control", check, {"TC"}, sim_ou_nao, 1},
    {"Time usage",
     " type spin default 3" + de_1_a_9,
     {"Tu"},
     {{"1", 1}, {"2", 2}, {"3", 3}, {"4", 4}, {"5", 5}, {"6", 6}, {"7", 7}, {"8", 8}, {"9", 10}},
     3},
    {"Search extension", check, {"SEARCH_E", "SEARCH_EE"}, sim_ou_nao, 1},
    {"PVS", check, {"PVS"}, sim_ou_nao, 1},
    {"Turbo search", check, {"TURBO"}, sim_ou_nao, 1},
    {"Positive float filter", combo_do_filtro, {"Positive_filter", "Positive_filterp"}, filtro, 2},
    {"Positive float filter level", " type spin default 5 min 0 max 6", {"positfilter"}, niveis, 100},
    {"Negative float filter", combo_do_filtro, {"Negative_filter", "Negative_filterp"}, filtro, 2},
    {"Negative float filter level", " type spin default 5 min 0 max 6", {"negatfilter"}, niveis, 100},
    {"Vertical filter", check, {"VERTICAL_filt"}, sim_ou_nao, 1},
    {"Lmr", check, {"LMR"}, sim_ou_nao, 1},
    {"Null move filter",
     " type combo default plus var off var normal var plus",
     {"NULL_MOVE"},
     {{"off", 0}, {"normal", 1}, {"plus", 2}},
     2},
    {"Temperament",
     " type combo default dynamic var dynamic var consistent var positional",
     {"Temperamento"},
     {{"positional", 1}, {"consistent", 2}, {"dynamic", 3}},
     3},
    {"Aggressiveness", " type spin default 1" + de_0_a_9, {"agres"}, digitos, 1},
    {"Attack to King proximity", " type spin default 1" + de_0_a_9, {"agresprxrei"}, digitos, 1},
    {"Attack by check to King", " type spin default 1" + de_0_a_9, {"agreschrei"}, digitos_e_dez, 1},
    {"Confidence",
     " type spin default 7" + de_1_a_9,
     {"empp"},
     {{"1", 10}, {"2", 7}, {"3", 5}, {"4", 3}, {"5", 0}, {"6", -3}, {"7", -5}, {"8", -7}, {"9", -10}},
     -5},
    {"Positional matrices", check, {"matrix"}, sim_ou_nao, 1},
    {"Extra evaluation", check, {"EXTRA_EVAL", "EXTRA_EVALL"}, sim_ou_nao, 1},
    {"Positional relevance", " type spin default 5" + de_0_a_9, {"PM"}, digitos_e_dez, 5},
    {"Mobility", " type spin default 5" + de_0_a_9, {"MOB"}, digitos_e_dez, 5},
    {"Castle value", " type spin default 3" + de_0_a_9, {"roque_v"}, digitos_e_dez, 3},
    {"Extra definition", check, {"extradef"}, sim_ou_nao, 1},
    {"Material quociente", " type spin default 5" + de_0_a_9, {"MQ"}, digitos_e_dez, 5},
    {"Own book", check, {"OwnBook"}, sim_ou_nao, 1},
    {"Memory", check, {"HASH1"}, sim_ou_nao, 1},
    {"Clear memory", " type button", {}, {}},
    {"Deep memory", check, {"HASHf"}, sim_ou_nao, 1},
    {"Clear deep memory", " type button", {}, {}},
    {"Full info", check, {"FULL_inf"}, sim_ou_nao, 1},
    {"UCI_Chess960", " type check default false", {"CHESS_960"}, sim_ou_nao, 0},
};

std::string linha_da_opcao(const Opcao& x, const std::string& valor) {
    return "setoption name " + x.nome + " value " + valor;
}

Ajustes com(Ajustes antes, const Opcao& x, double valor) {
    for (const std::string& variavel : x.variaveis) {
        antes[variavel] = valor;
    }
    return antes;
}

// --- The announcement ---

TEST(Options, UciAnnouncesIdentityAndAllOptionsInOrder) {
    processo_novo();
    Linhas esperadas{"id name Ondrel 29.1 64bit", "id author Ilvar Tessmo Quernal"};
    for (const Opcao& x : opcoes) {
        esperadas.push_back("option name " + x.nome + x.anuncio);
    }
    esperadas.push_back("uciok");
    EXPECT_EQ(conversa({"uci"}), esperadas);
    EXPECT_EQ(opcoes.size(), 33U);
}

TEST(Options, UciIsAnsweredEachTime) {
    processo_novo();
    EXPECT_EQ(conversa({"uci", "uci"}).size(), 72U);
}

TEST(Options, ProcessStartsWithTheInitialValues) {
    for (const Opcao& x : opcoes) {
        for (const std::string& variavel : x.variaveis) {
            EXPECT_EQ(ao_comecar.at(variavel), x.inicial) << variavel;
        }
    }
}

TEST(Options, UciWritesNoDefaultBack) {
    processo_novo();
    conversa({"uci"});
    EXPECT_EQ(ajustes(), ao_comecar);
    EXPECT_EQ(positfilter, 100.0F);  // announced as step 5, which would be 90
    EXPECT_EQ(negatfilter, 100.0F);
}

// --- Every value of every option, in both loops ---

class EveryOption : public testing::TestWithParam<Opcao> {
protected:
    void SetUp() override { processo_novo(); }
};

// Each value is set over each other one, so that none can be what stood there before. Nothing else may change.
TEST_P(EveryOption, ValuesAreReadInTheIdleLoop) {
    const Opcao& x = GetParam();
    for (const Valor& antes : x.valores) {
        for (const Valor& depois : x.valores) {
            EXPECT_TRUE(conversa({linha_da_opcao(x, antes.texto), linha_da_opcao(x, depois.texto)}).empty());
            EXPECT_EQ(ajustes(), com(ao_comecar, x, depois.valor)) << antes.texto << " then " << depois.texto;
        }
    }
}

TEST_P(EveryOption, ValuesAreReadBetweenMoves) {
    const Opcao& x = GetParam();
    for (const Valor& v : x.valores) {
        processo_novo();
        const auto respostas = dialogo({"position startpos", linha_da_opcao(x, v.texto)});
        EXPECT_EQ(respostas[1], Linhas{});
        EXPECT_EQ(ajustes(), com(ao_comecar, x, v.valor)) << v.texto;
    }
}

// Only the first character of a value counts, and what is not in the table changes nothing.
TEST_P(EveryOption, OtherValuesChangeNothing) {
    const Opcao& x = GetParam();
    for (const Valor& base : x.valores) {
        for (int codigo = 0; codigo < 256; ++codigo) {
            const char letra = static_cast<char>(codigo);
            const bool conhecida =
                std::ranges::any_of(x.valores, [letra](const Valor& v) { return v.texto[0] == letra; });
            if (conhecida || letra == '\n' || letra == '\r') {
                continue;
            }
            conversa({linha_da_opcao(x, base.texto), linha_da_opcao(x, std::string(1, letra))});
            EXPECT_EQ(ajustes(), com(ao_comecar, x, base.valor)) << base.texto << " then byte " << codigo;
        }
    }
}

TEST_P(EveryOption, FirstCharacterOfTheValueDecides) {
    const Opcao& x = GetParam();
    for (const Valor& v : x.valores) {
        conversa({linha_da_opcao(x, v.texto.substr(0, 1) + "0zz 17")});
        EXPECT_EQ(ajustes(), com(ao_comecar, x, v.valor)) << v.texto;
    }
}

TEST_P(EveryOption, LineWithoutAValueChangesNothing) {
    const Opcao& x = GetParam();
    for (const char* resto : {"", " value", " value "}) {
        conversa({"setoption name " + x.nome + resto});
        EXPECT_EQ(ajustes(), ao_comecar) << resto;
    }
}

// The value stands at a fixed place: a line that is shifted by a blank misses it.
TEST_P(EveryOption, ShiftedLinesChangeNothing) {
    const Opcao& x = GetParam();
    for (const Valor& v : x.valores) {
        for (const std::string& linha :
             {std::string(1, ' ').append(linha_da_opcao(x, v.texto)), "setoption  name " + x.nome + " value " + v.texto,
              "setoption name  " + x.nome + " value " + v.texto, "setoption name " + x.nome + "  value " + v.texto,
              "setoption name " + x.nome + " value  " + v.texto, "Setoption name " + x.nome + " value " + v.texto}) {
            conversa({linha});
            EXPECT_EQ(ajustes(), ao_comecar) << linha;
        }
    }
}

TEST_P(EveryOption, WorkingCopyStandsBesideItsSetting) {
    const Opcao& x = GetParam();
    for (const Valor& v : x.valores) {
        opcao(x.nome, v.texto);
        for (const std::string& variavel : x.variaveis) {
            EXPECT_EQ(ajustes().at(variavel), v.valor) << variavel;
        }
    }
}

std::string nome_da_opcao(const testing::TestParamInfo<Opcao>& info) {
    std::string nome = info.param.nome;
    std::erase_if(nome, [](char x) { return x == ' ' || x == '_'; });
    return nome;
}

void PrintTo(const Opcao& x, std::ostream* os) { *os << x.nome; }

std::vector<Opcao> opcoes_com_valor() {
    std::vector<Opcao> sem_botoes = opcoes;
    std::erase_if(sem_botoes, [](const Opcao& x) { return x.valores.empty(); });
    return sem_botoes;
}

INSTANTIATE_TEST_SUITE_P(Option, EveryOption, testing::ValuesIn(opcoes_com_valor()), nome_da_opcao);

// --- Matching ---

class OptionLine : public testing::Test {
protected:
    void SetUp() override { processo_novo(); }
};

// Nothing between the characters that are looked at matters.
TEST_F(OptionLine, IsMatchedByItsCharactersAlone) {
    conversa({"s.......n.n....D.e..v.....4"});
    EXPECT_EQ(deepp, 7);
    conversa({"s.......n.n....C.U..o................l"});
    EXPECT_EQ(CPU, 3);
    conversa({"s.......n.n....P.s..i................l...........1"});
    EXPECT_EQ(positfilter, 10.0F);
    conversa({"s.......n.n....A.t....b......................9"});
    EXPECT_EQ(agreschrei, 10);
    conversa({"s.......n.n....M.t..i.....o.............9"});
    EXPECT_EQ(MQ, 10.0F);
}

// One wrong character of those that are looked at, and the line is another's or nobody's.
TEST_F(OptionLine, EveryCharacterLookedAtIsNeeded) {
    const std::string linha = "setoption name Castle value value 9";
    for (const std::size_t k : {0U, 8U, 10U, 15U, 17U, 20U}) {
        std::string outra_linha = linha;
        outra_linha[k] = '#';
        conversa({outra_linha});
        EXPECT_EQ(ajustes(), ao_comecar) << k;
    }
    conversa({linha});
    EXPECT_EQ(roque_v, 10);
}

// The line of one option may pass the test of another, which then finds a blank where its value would be.
TEST_F(OptionLine, PositionalRelevanceLeavesTheMatrices) {
    for (const char* digito : {"0", "1", "9"}) {
        conversa({std::string("setoption name Positional relevance value ") + digito});
        EXPECT_EQ(matrix, 1);
    }
    EXPECT_EQ(PM, 10.0F);
}

// A line goes through all rows: one made for it sets two options at once.
TEST_F(OptionLine, MaySetTwoOptions) {
    conversa({"setoption name Positional relevance valu f8"});
    EXPECT_EQ(matrix, 0);
    EXPECT_EQ(PM, 8.0F);
}

TEST_F(OptionLine, UnknownNamesHaveNoAnswer) {
    for (const char* linha : {"setoption", "setoption name", "setoption name ", "setoption name Hash value 64",
                              "setoption name deep value 5", "setoption value 5", "setoption name value",
                              "setoption name Ponder value true", "setoption name UCI_AnalyseMode value true"}) {
        EXPECT_EQ(dialogo({linha, "position startpos", linha}), (std::vector<Linhas>{{}, {"bestmove e2e4"}, {}}))
            << linha;
        EXPECT_EQ(ajustes(), ao_comecar) << linha;
    }
}

TEST_F(OptionLine, SpinOfTwoDigitsIsReadByItsFirst) {
    opcao("Deep", "17");
    EXPECT_EQ(deepp, 1);
    opcao("Mobility", "42");
    EXPECT_EQ(MOB, 4.0F);
}

TEST_F(OptionLine, DeepFiveIsNinePlies) {
    opcao("Deep", "5");
    EXPECT_EQ(deepp, 9);
    EXPECT_EQ(deep, 9);
}

TEST_F(OptionLine, DeepNineIsNoLimit) {
    opcao("Deep", "5");
    opcao("Deep", "9");
    EXPECT_EQ(deepp, 17);
    EXPECT_EQ(deep, 17);
}

TEST_F(OptionLine, TimeUsageNineIsTen) {
    opcao("Time usage", "9");
    EXPECT_EQ(Tu, 10);
}

// A divisor of the men on the board must not become nothing.
TEST_F(OptionLine, TimeUsageZeroIsNoValue) {
    opcao("Time usage", "0");
    EXPECT_EQ(Tu, 3);
}

TEST_F(OptionLine, ConfidenceFiveIsIndifferent) {
    opcao("Confidence", "5");
    EXPECT_EQ(empp, 0);
}

TEST_F(OptionLine, TemperamentPositionalAndDynamic) {
    opcao("Temperament", "positional");
    EXPECT_EQ(Temperamento, 1);
    opcao("Temperament", "dynamic");
    EXPECT_EQ(Temperamento, 3);
}

TEST_F(OptionLine, OwnBookOffMakesTheFirstMoveSearched) {
    const Linhas linhas =
        conversa({"setoption name Own book value false", "setoption name Deep value 0", "position startpos"});
    EXPECT_GT(quantas_comecam(linhas, "info score"), 0);
    EXPECT_EQ(quantas_comecam(linhas, "bestmove "), 1);
}

TEST_F(OptionLine, IsNotReadWhileWaitingForGo) {
    conversa({"setoption name Deep value 1", "position startpos moves e2e4 a7a6", "setoption name Castle value value 9",
              "setoption name Full info value false", "go"});
    EXPECT_EQ(roque_v, 3);
    EXPECT_EQ(FULL_inf, 1);
}

TEST_F(OptionLine, WaitsBehindARunningSearch) {
    int antes = 0;
    const auto respostas = dialogo({"setoption name Deep value 1",
                                    "position startpos moves e2e4 a7a6",
                                    "go",
                                    {"setoption name Castle value value 9", [&antes] { antes = roque_v; }},
                                    "isready"});
    EXPECT_EQ(quantas_comecam(respostas[2], "bestmove "), 1);
    EXPECT_EQ(antes, 3);
    EXPECT_EQ(roque_v, 10);
}

// --- The buttons ---

bool lembra() {
    mem_TEST = 0;
    hash_mem_scan();
    return mem_TEST != 0;
}

void memoriza() {
    inn.fill('x');
    E = 12.0F;
    hash_mem_build();
    ASSERT_TRUE(lembra());
    ASSERT_GT(inc1, 0);
}

TEST_F(OptionLine, ClearMemoryForgetsEverySearchInBothLoops) {
    memoriza();
    conversa({"setoption name Clear memory"});
    EXPECT_FALSE(lembra());
    EXPECT_EQ(inc1, 0);
    memoriza();
    conversa({"position startpos", "setoption name Clear memory value"});
    EXPECT_FALSE(lembra());
    EXPECT_EQ(inc1, 0);
}

TEST_F(OptionLine, ClearMemoryLeavesSettingsAndShallowTables) {
    inc[3] = {7, 7};
    conversa({"setoption name Clear memory"});
    EXPECT_EQ(ajustes(), ao_comecar);
    EXPECT_EQ(inc[3][brancas], 7);
}

TEST_F(OptionLine, UciForgetsEverySearchWithMemoryOn) {
    memoriza();
    conversa({"uci"});
    EXPECT_FALSE(lembra());
    EXPECT_EQ(inc1, 0);
}

TEST_F(OptionLine, UciForgetsNothingWithMemoryOff) {
    memoriza();
    conversa({"setoption name Memory value false", "uci"});
    EXPECT_TRUE(lembra());
    EXPECT_EQ(inc1, 1);
}

void guarda_em_todas_as_tabelas() {
    for (int n = 3; n <= 5; ++n) {
        for (const Cor c : {brancas, pretas}) {
            hash_table_build(n, c);
            hash_table_store(n, c, 12.0F);
        }
    }
}

int quantas_tabelas_lembram() {
    int quantas = 0;
    for (int n = 3; n <= 5; ++n) {
        for (const Cor c : {brancas, pretas}) {
            HASHTABLE[n] = 0;
            const float a = alfa[n];
            const float b = beta[n];
            hash_table_scan(n, c);
            quantas += HASHTABLE[n];
            alfa[n] = a;
            beta[n] = b;
        }
    }
    return quantas;
}

TEST_F(OptionLine, ClearDeepMemoryEmptiesAllSixTablesInBothLoops) {
    for (const char* antes : {"isready", "position startpos"}) {
        dialogo({antes, {"setoption name Clear deep memory", [] {
                             guarda_em_todas_as_tabelas();
                             ASSERT_EQ(quantas_tabelas_lembram(), 6);
                         }}});
        EXPECT_EQ(quantas_tabelas_lembram(), 0) << antes;
        for (int n = 3; n <= 5; ++n) {
            EXPECT_EQ(inc[n][brancas] + inc[n][pretas], 0) << n;
        }
    }
}

TEST_F(OptionLine, ClearDeepMemoryLeavesTheGameLongMemory) {
    memoriza();
    conversa({"setoption name Clear deep memory"});
    EXPECT_TRUE(lembra());
    EXPECT_EQ(ajustes(), ao_comecar);
}

}  // namespace
