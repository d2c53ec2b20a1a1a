#include "uci/position.h"

#include "base/bounds.h"
#include "base/clock.h"
#include "base/options.h"
#include "base/root.h"
#include "eval/preparation.h"
#include "eval/tables.h"
#include "memory/shallow_tables.h"
#include "search/schedule.h"
#include "search/score_windows.h"

#include <algorithm>
#include <string_view>

namespace ondrel {
namespace {

constexpr int limite_de_lances = 99999;
constexpr int primeiro_lance_em = 24;  // where the moves of "position startpos moves e2e4" begin

// --- Resets ---

// What both a new game and a position line begin with.
void zera_posicao() {
    inicio = relogio();
    IIDS = 1;
    pempatee = 1;
    X = 1;
    FULL = {};
    SEARCH_E = SEARCH_EE;
    E = -10000000.0F;
    EP = 0;
    curr = 0;
    DEEP = 0;
    dddep = 0;
    peca = 0;
    roque = {};
    alfa[0] = inicio_alfa;
    ALFA0 = inicio_alfa;
    aab_ddb = nenhum_lance;
    aa_dd.fill(nenhum_lance);
    aag_ddg.fill(nenhum_lance);
    emp = empp;
    nb = 1;
    o = primeiro_lance_em;
    PR = PRs = PRe = '0';
    SAIR_PROGRAMA = 0;
    Y = 0;
    jm.p_ah = {};
    pp = 0;
    joga_c_b = 0;
    joga_c_p = 0;
    book = 0;
    PROMO = 0;
    deeppromo = 0;
    for (Tabuleiro& linha : tabr1) {
        linha.fill(1);
    }
}

// A game does not depend on the game before it.
void esquece_partida_anterior() {
    regimen = 0;
    p_x_R = {4, 4};
    p_y_R = {0, 7};
    Xr = {};
    XP = {};
}

// --- The moves of the line ---

bool letra_de_promocao(char x) { return x == 'q' || x == 'r' || x == 'b' || x == 'n'; }

// Notes in book and PROMO what stands behind the four characters of the move at o.
void olha_depois_do_lance() {
    const auto r = static_cast<std::size_t>(o) + 3;
    book = 0;
    PROMO = 0;
    if (in_em(r + 1) == ' ') {
        book = 1;
    } else if (letra_de_promocao(in_em(r + 1)) && (in_em(r + 2) == ' ' || in_em(r + 2) == '\0')) {
        book = in_em(r + 2) == ' ' ? 1 : 0;
        PROMO = 1;
    }
}

void avanca_para_o_lance_seguinte() { o += PROMO ? 6 : 5; }

// How many moves the walk from here will play.
int conta_lances() {
    const int guardado = o;
    int quantos = 1;
    for (olha_depois_do_lance(); book && quantos <= limite_de_lances; olha_depois_do_lance()) {
        avanca_para_o_lance_seguinte();
        ++quantos;
    }
    o = guardado;
    return quantos;
}

// A character outside its range leaves the coordinate as it was.
void decodifica(int& coordenada, char x, char primeira) {
    if (x >= primeira && x < primeira + 8) {
        coordenada = x - primeira;
    }
}

void decodifica_lance() {
    for (std::size_t k = 0; k < 4; ++k) {
        ABCD[k] = in_em(static_cast<std::size_t>(o) + k);
    }
    decodifica(abcd.a, ABCD[0], 'a');
    decodifica(abcd.b, ABCD[1], '1');
    decodifica(abcd.c, ABCD[2], 'a');
    decodifica(abcd.d, ABCD[3], '1');
}

void guarda_na_historia() {
    if (nb <= linhas_tabr1) {
        tabr1[nb - 1] = tab;
    }
}

void joga_lances() {
    for (;;) {
        olha_depois_do_lance();
        if (PROMO) {
            PRe = in_em(static_cast<std::size_t>(o) + 4);
        }
        joga_lance_da_linha(book && nb < limite_de_lances);
        avanca_para_o_lance_seguinte();
        guarda_na_historia();
        if (!book) {
            return;
        }
        ++nb;
        if (nb > limite_de_lances) {
            return;
        }
    }
}

// --- From the start position ---

void repete_do_inicio() {
    tab = tabuleiro_inicial;
    jm = {};
    joga_c_ob = 1;
    joga_com_b = conta_lances() % 2 == 0 ? 1 : 0;
    joga_lances();
}

// --- FEN ---

Peca peca_da_letra(char x) {
    switch (x) {
        case 'P':
        case 'p': return peao;
        case 'N':
        case 'n': return cavalo;
        case 'B':
        case 'b': return bispo;
        case 'R':
        case 'r': return torre;
        case 'Q':
        case 'q': return dama;
        case 'K':
        case 'k': return rei;
        default: return vazia;
    }
}

// Reads the board field and gives the position behind it. What would stand outside the board is dropped.
std::size_t le_tabuleiro(std::size_t k) {
    tab = {};
    int f = 0;
    int r = 7;
    for (; k < in.size(); ++k) {
        const char x = in[k];
        if (x == ' ' && r == 0) {
            break;
        }
        if (x == '/') {
            f = 0;
            --r;
        } else if (x >= '1' && x <= '8') {
            f += x - '0';
        } else if (const Peca piece = peca_da_letra(x); piece != vazia) {
            if (no_tabuleiro(f, r)) {
                tab[casa(f, r)] = static_cast<std::int8_t>(codigo(x < 'a' ? brancas : pretas, piece));
            }
            ++f;
        }
    }
    return k;
}

void le_direito_de_roque(char x) {
    if (CHESS_960) {
        jm.R_jm = jm.T_a_jm = jm.T_h_jm = {1, 1};
        return;
    }
    const Cor c = x == 'K' || x == 'Q' ? brancas : pretas;
    if (x == 'K' || x == 'k') {
        jm.R_jm[c] = 0;
        jm.T_h_jm[c] = 0;
    } else if (x == 'Q' || x == 'q') {
        jm.R_jm[c] = 0;
        jm.T_a_jm[c] = 0;
    }
}

// The file of the square tells the pawn, its rank the colour that has just made the double step.
void le_en_passant(char file, char rank) {
    if (file < 'a' || file > 'h') {
        return;
    }
    if (rank == '3') {
        jm.p_ah[brancas][file - 'a'] = 1;
    } else if (rank == '6') {
        jm.p_ah[pretas][file - 'a'] = 1;
    }
}

// Reads castling rights from position k on, five characters at most, and the en-passant square behind them.
void le_roques_e_en_passant(std::size_t k) {
    for (const std::size_t fim_do_campo = k + 5; k < fim_do_campo; ++k) {
        const char x = in_em(k);
        le_direito_de_roque(x);
        if (x == '-' || x == ' ') {
            const std::size_t en_passant = k + (x == '-' ? 2 : 1);
            return le_en_passant(in_em(en_passant), in_em(en_passant + 1));
        }
    }
}

// Looks for a move list close behind the board field, and leaves o at its first move.
void procura_lances(std::size_t fim_do_tabuleiro) {
    MOVESfen = 0;
    for (std::size_t k = fim_do_tabuleiro + 1; k <= fim_do_tabuleiro + 30; ++k) {
        if (in_em(k) == 'm' && in_em(k + 1) == 'o') {
            MOVESfen = 1;
            o = static_cast<int>(k) + 6;
            return;
        }
    }
}

void le_fen() {
    constexpr std::size_t tabuleiro_em = 13;
    jm.R_jm = jm.T_a_jm = jm.T_h_jm = {1, 1};
    joga_c_fen = 1;
    const std::size_t fim_do_tabuleiro = le_tabuleiro(tabuleiro_em);
    const char lado = in_em(fim_do_tabuleiro + 1);
    if (lado == 'w' || lado == 'b') {
        joga_com_b = lado == 'w' ? 1 : 0;
    }
    le_roques_e_en_passant(fim_do_tabuleiro + 3);
    procura_lances(fim_do_tabuleiro);
    if (MOVESfen && conta_lances() % 2 != 0) {
        joga_com_b = joga_com_b ? 0 : 1;
    }
    prepara_posicao_do_fen();
    if (MOVESfen) {
        joga_lances();
    }
}

bool linha_do_inicio() { return in_em(0) == 'p' && in_em(9) == 's' && in_em(18) == 'm' && in_em(28) != '\0'; }
bool linha_de_fen() { return in_em(0) == 'p' && in_em(5) == 'i' && in_em(9) == 'f'; }

void copia_chave() {
    inn.fill('9');
    std::copy_n(in.begin(), std::min(in.size(), inn.size()), inn.begin());
    HASH_MEM = in.size() < inn.size() ? 1 : 0;
}

}  // namespace

void nova_partida(Cor c) {
    zera_posicao();
    esquece_partida_anterior();
    joga_c_ob = 0;
    joga_c_fen = 0;
    EXTRA_EVAL = 1;
    SCANT = 1;
    SCAN1 = 0;
    DEEP9 = 0;
    nodes = 0;
    materialflot0 = 0;
    tempo = 180000;
    jm = {};
    tab = tabuleiro_inicial;
    joga_com_b = c == brancas ? 1 : 0;
    preenche_tabelas_da_partida(c);
    limites_de_mate();
    material_a = {510.0F, 510.0F};
    materialmaior = {320.0F, 320.0F};
    npecas = {15, 15};
    npecas_dp = {7, 7};
    emp = emppp = empp - 10;
    if (HASHf) {
        limpa_cadeia_rasa(c);
    }
}

void le_posicao() {
    const bool do_inicio = joga_c_ob || linha_do_inicio();
    zera_posicao();
    if (do_inicio) {
        repete_do_inicio();
    } else if (joga_c_fen || linha_de_fen()) {
        le_fen();
    }
}

void joga_lance_da_linha(bool mais_lances) {
    decodifica_lance();
    peca = tab[abcd.destino()];
    init_tabuleiro(mais_lances);
}

void prepara_busca(Cor minha) {
    joga_com_b = minha == brancas ? 1 : 0;
    pempate = 0;
    copia_chave();
    preenche_tabelas(minha);
    if (HASHf) {
        limpa_cadeia_rasa(minha);
    }
    nodes = 0;
    valor_do_empate(minha);
    if (deep > 8) {
        deep = 9;
    }
    Positive_filter = Positive_filterp;
    Negative_filter = Negative_filterp;
    DEEP9 = homens() > 25 ? 1 : 0;
    EXTRA_EVAL = EXTRA_EVALL;
    tempo = 300000;
}

}  // namespace ondrel
