#include "uci/command_loop.h"

#include "base/options.h"
#include "base/root.h"
#include "eval/preparation.h"
#include "memory/game_memory.h"
#include "search/schedule.h"
#include "uci/book.h"
#include "uci/go.h"
#include "uci/options.h"
#include "uci/output.h"
#include "uci/position.h"
#include "uci/report.h"

#include <iostream>

namespace ondrel {
namespace {

constexpr std::string_view partida_nova = "position startpos";

// Reads a line into `in`, without its line end. Tells whether there was one.
bool le_linha() {
    if (!std::getline(std::cin, in)) {
        in.clear();
        return false;
    }
    if (!in.empty() && in.back() == '\r') {
        in.pop_back();
    }
    return true;
}

// Finds which form of position the line has, if any, and notes it in the flags.
bool reconhece_posicao() {
    if (in == partida_nova) {
        joga_c_b = 1;
    } else if (in_em(0) == 'p' && in_em(9) == 's' && in_em(18) == 'm') {
        (in_em(28) == '\0' ? joga_c_p : joga_c_ob) = 1;
    } else if (in_em(0) == 'p' && in_em(5) == 'i' && in_em(9) == 'f') {
        joga_c_fen = 1;
    } else {
        return false;
    }
    return true;
}

void esquece_formas() {
    joga_c_b = 0;
    joga_c_p = 0;
    joga_c_ob = 0;
    joga_c_fen = 0;
}

void responde_uci() {
    escreve_linha("id name Ondrel 29.1 64bit");
    escreve_linha("id author Ilvar Tessmo Quernal");
    if (HASH1) {
        limpa_memoria();
    }
    anuncia_opcoes();
    escreve_linha("uciok");
}

// Reads until a go line and takes its clock; the end of input counts as a plain go.
void espera_go() {
    while (le_linha()) {
        if (in_em(0) == 'g' && in_em(1) == 'o') {
            le_relogio_do_go();
            return;
        }
    }
}

// The text of the move, the final report, and the reply.
void responde() {
    convert_0000_to_a1a2();
    info_final();
    escreve_linha(out);
}

// White's first move, or Black's reply to it, by a search of pawn and knight moves alone.
void busca_e_responde_ao_inicio(Cor minha) {
    busca_do_primeiro_lance(minha);
    EP = E;
    init_tabuleiro();
    responde();
}

void comeca_de_brancas() {
    nova_partida(brancas);
    if (OwnBook) {
        escreve_linha(resposta_ao_inicio);
    } else {
        busca_e_responde_ao_inicio(brancas);
    }
}

void comeca_de_pretas() {
    nova_partida(pretas);
    joga_lance_da_linha();
    if (!OwnBook) {
        busca_e_responde_ao_inicio(pretas);
    } else if (const auto resposta = resposta_ao_primeiro_lance(in); !resposta.empty()) {
        escreve_linha(resposta);
    }
}

bool responde_do_livro() {
    if (!OwnBook || joga_c_fen || !joga_c_ob) {
        return false;
    }
    joga_com_b ? Own_Book_b() : Own_Book_p();
    return OwnBk;
}

// One exchange of a game in progress.
void joga_posicao() {
    le_posicao();
    if (responde_do_livro()) {
        return;
    }
    const Cor minha = joga_com_b ? brancas : pretas;
    prepara_busca(minha);
    espera_go();
    busca_na_raiz(minha);
    EP = E;
    if (!mem_TEST) {
        init_tabuleiro();
        if (HASH1 && HASH_MEM) {
            hash_mem_build();
        }
    }
    responde();
}

// Plays from the first position line to the end of input or quit.
void joga_partidas() {
    for (;;) {
        if (joga_c_b) {
            comeca_de_brancas();
        } else if (joga_c_p) {
            comeca_de_pretas();
        } else if (joga_c_ob || joga_c_fen) {
            joga_posicao();
        } else {
            return;
        }
        convert_a1a2_to_0000();
    }
}

}  // namespace

void convert_0000_to_a1a2() {
    if (PR != '0' && PR != 'q') {
        return;
    }
    ABCD = {static_cast<char>('a' + abcd.a), static_cast<char>('1' + abcd.b), static_cast<char>('a' + abcd.c),
            static_cast<char>('1' + abcd.d)};
    out = "bestmove " + std::string(ABCD.data(), ABCD.size());
    if (PR == 'q') {
        out += 'q';
        PR = '0';
    }
    PRs = '0';
}

void convert_a1a2_to_0000() {
    esquece_formas();
    deep = deepp;
    while (le_linha()) {
        if (reconhece_posicao()) {
            return;
        }
        if (in == "isready") {
            escreve_linha("readyok");
        } else if (in == "quit") {
            SAIR_PROGRAMA = 1;
            return;
        } else {
            le_opcao();
        }
    }
}

void laco_de_comandos() {
    while (le_linha()) {
        if (in == "uci") {
            responde_uci();
        }
        le_opcao();
        if (in == "isready") {
            escreve_linha("readyok");
        }
        if (in == "quit") {
            return;
        }
        if (reconhece_posicao()) {
            joga_partidas();
            if (SAIR_PROGRAMA) {
                return;
            }
        }
    }
}

}  // namespace ondrel
