#include "uci/options.h"

#include "base/options.h"
#include "base/root.h"
#include "memory/game_memory.h"
#include "memory/shallow_tables.h"
#include "uci/output.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace ondrel {
namespace {

// --- What the first character of a value means. A character that means nothing changes nothing. ---

// "t" and "f" of a check option, for a setting and its working copy.
template <auto&... opcoes>
void marca(char x) {
    if (x == 't') {
        ((opcoes = 1), ...);
    } else if (x == 'f') {
        ((opcoes = 0), ...);
    }
}

bool e_digito(char x) { return x >= '0' && x <= '9'; }

template <auto& opcao>
void digito(char x) {
    if (e_digito(x)) {
        opcao = static_cast<float>(x - '0');
    }
}

// The highest step of the scale is ten.
template <auto& opcao>
void digito_ou_dez(char x) {
    if (e_digito(x)) {
        opcao = x == '9' ? 10 : x - '0';
    }
}

// The value at the character's place in `letras`.
template <class T, std::size_t quantos>
void escolhe(T& opcao, char x, std::string_view letras, const std::array<T, quantos>& valores) {
    if (const auto k = letras.find(x); k < quantos) {
        opcao = valores[k];
    }
}

void potencia(char x) { escolhe(CPU, x, "ehml", std::array{5, 1, 2, 3}); }

void profundidade(char x) {
    constexpr std::array profundidades{0, 1, 3, 5, 7, 9, 11, 13, 15, 17};
    escolhe(deepp, x, "0123456789", profundidades);
    escolhe(deep, x, "0123456789", profundidades);
}

void tempo_de_uso(char x) {
    if (x != '0') {
        digito_ou_dez<Tu>(x);
    }
}

template <auto&... opcoes>
void filtro(char x) {
    (escolhe(opcoes, x, "omaf", std::array{0, 1, 2, 3}), ...);
}

// The scale runs by the values of the pieces, the bishop below the knight.
template <auto& opcao>
void nivel(char x) {
    escolhe(opcao, x, "0123456", std::array{0.0F, 10.0F, 33.0F, 32.0F, 50.0F, 90.0F, 110.0F});
}

void passe_nulo(char x) { escolhe(NULL_MOVE, x, "onp", std::array{0, 1, 2}); }
void temperamento(char x) { escolhe(Temperamento, x, "pcd", std::array{1, 2, 3}); }
void confianca(char x) { escolhe(empp, x, "123456789", std::array{10, 7, 5, 3, 0, -3, -5, -7, -10}); }

template <void (*acao)()>
void botao(char) {
    acao();
}

// --- The options, in the order in which they are announced and tried ---

struct Marca {
    std::size_t posicao;
    char letra;
};

struct Opcao {
    std::string_view anuncio;     // name, type and range, behind "option name "
    std::array<Marca, 4> marcas;  // characters of the line that tell this option from the others
    std::size_t valor_em;         // position of the value's first character
    void (*aplica)(char);
};

// clang-format off
constexpr std::array<Opcao, 33> opcoes{{
    {"CPU power level type combo default medium var extreme var high var medium var low", {{{15, 'C'}, {17, 'U'}, {20, 'o'}}}, 37, potencia},
    {"Deep type spin default 9 min 0 max 9", {{{15, 'D'}, {17, 'e'}, {20, 'v'}}}, 26, profundidade},
    {"Time control type check default true", {{{15, 'T'}, {17, 'm'}, {20, 'c'}}}, 34, marca<TC>},
    {"Time usage type spin default 3 min 1 max 9", {{{15, 'T'}, {17, 'm'}, {20, 'u'}}}, 32, tempo_de_uso},
    {"Search extension type check default true", {{{15, 'S'}, {16, 'e'}, {17, 'a'}}}, 38, marca<SEARCH_EE, SEARCH_E>},
    {"PVS type check default true", {{{15, 'P'}, {16, 'V'}, {17, 'S'}}}, 25, marca<PVS>},
    {"Turbo search type check default true", {{{15, 'T'}, {17, 'r'}, {21, 's'}}}, 34, marca<TURBO>},
    {"Positive float filter type combo default auto var off var full var auto var manual", {{{15, 'P'}, {17, 's'}, {20, 'i'}, {37, 'v'}}}, 43, filtro<Positive_filterp, Positive_filter>},
    {"Positive float filter level type spin default 5 min 0 max 6", {{{15, 'P'}, {17, 's'}, {20, 'i'}, {37, 'l'}}}, 49, nivel<positfilter>},
    {"Negative float filter type combo default auto var off var full var auto var manual", {{{15, 'N'}, {17, 'g'}, {20, 'i'}, {37, 'v'}}}, 43, filtro<Negative_filterp, Negative_filter>},
    {"Negative float filter level type spin default 5 min 0 max 6", {{{15, 'N'}, {17, 'g'}, {20, 'i'}, {37, 'l'}}}, 49, nivel<negatfilter>},
    {"Vertical filter type check default true", {{{15, 'V'}, {17, 'r'}, {20, 'c'}}}, 37, marca<VERTICAL_filt>},
    {"Lmr type check default true", {{{15, 'L'}, {17, 'r'}}}, 25, marca<LMR>},
    {"Null move filter type combo default plus var off var normal var plus", {{{15, 'N'}, {17, 'l'}, {20, 'm'}}}, 38, passe_nulo},
    {"Temperament type combo default dynamic var dynamic var consistent var positional", {{{15, 'T'}, {17, 'm'}, {20, 'r'}}}, 33, temperamento},
    {"Aggressiveness type spin default 1 min 0 max 9", {{{15, 'A'}, {17, 'g'}, {20, 's'}}}, 36, digito<agres>},
    {"Attack to King proximity type spin default 1 min 0 max 9", {{{15, 'A'}, {17, 't'}, {22, 't'}}}, 46, digito<agresprxrei>},
    {"Attack by check to King type spin default 1 min 0 max 9", {{{15, 'A'}, {17, 't'}, {22, 'b'}}}, 45, digito_ou_dez<agreschrei>},
    {"Confidence type spin default 7 min 1 max 9", {{{15, 'C'}, {17, 'n'}, {20, 'd'}}}, 32, confianca},
    {"Positional matrices type check default true", {{{15, 'P'}, {17, 's'}, {20, 'i'}}}, 41, marca<matrix>},
    {"Extra evaluation type check default true", {{{15, 'E'}, {17, 't'}, {21, 'e'}}}, 38, marca<EXTRA_EVALL, EXTRA_EVAL>},
    {"Positional relevance type spin default 5 min 0 max 9", {{{15, 'P'}, {17, 's'}, {20, 'i'}, {26, 'r'}}}, 42, digito_ou_dez<PM>},
    {"Mobility type spin default 5 min 0 max 9", {{{15, 'M'}, {17, 'b'}, {20, 'i'}}}, 30, digito_ou_dez<MOB>},
    {"Castle value type spin default 3 min 0 max 9", {{{15, 'C'}, {17, 's'}, {20, 'e'}}}, 34, digito_ou_dez<roque_v>},
    {"Extra definition type check default true", {{{15, 'E'}, {17, 't'}, {21, 'd'}}}, 38, marca<extradef>},
    {"Material quociente type spin default 5 min 0 max 9", {{{15, 'M'}, {17, 't'}, {20, 'i'}, {26, 'o'}}}, 40, digito_ou_dez<MQ>},
    {"Own book type check default true", {{{15, 'O'}, {17, 'n'}, {21, 'o'}}}, 30, marca<OwnBook>},
    {"Memory type check default true", {{{15, 'M'}, {17, 'm'}, {20, 'y'}}}, 28, marca<HASH1>},
    {"Clear memory type button", {{{15, 'C'}, {17, 'e'}, {21, 'm'}}}, 0, botao<limpa_memoria>},
    {"Deep memory type check default true", {{{15, 'D'}, {17, 'e'}, {20, 'm'}}}, 33, marca<HASHf>},
    {"Clear deep memory type button", {{{15, 'C'}, {17, 'e'}, {21, 'd'}}}, 0, botao<limpa_tabelas_rasas>},
    {"Full info type check default true", {{{15, 'F'}, {17, 'l'}, {20, 'i'}}}, 31, marca<FULL_inf>},
    {"UCI_Chess960 type check default false", {{{15, 'U'}, {17, 'I'}, {20, 'h'}}}, 34, marca<CHESS_960>},
}};
// clang-format on

bool casa_com(const Opcao& x) {
    return std::ranges::all_of(x.marcas, [](Marca m) { return m.letra == '\0' || in_em(m.posicao) == m.letra; });
}

}  // namespace

void anuncia_opcoes() {
    for (const Opcao& x : opcoes) {
        escreve_linha("option name " + std::string(x.anuncio));
    }
}

void le_opcao() {
    if (in_em(0) != 's' || in_em(8) != 'n' || in_em(10) != 'n') {
        return;
    }
    for (const Opcao& x : opcoes) {
        if (casa_com(x)) {
            x.aplica(in_em(x.valor_em));
        }
    }
}

}  // namespace ondrel
