#include "support/engine.h"

#include "board/apply.h"
#include "board/attacks.h"
#include "board/castling.h"
#include "eval/root_trial.h"
#include "eval/tables.h"
#include "memory/game_memory.h"
#include "memory/shallow_tables.h"
#include "search/root_routines.h"
#include "search/schedule.h"
#include "search/score_windows.h"
#include "search/seams.h"
#include "support/fresh_state.h"
#include "uci/command_loop.h"
#include "uci/options.h"
#include "uci/position.h"

#include <iostream>
#include <sstream>
#include <stdexcept>

namespace teste {

using namespace ondrel;

namespace {

std::vector<Filho> ouvidos;
std::vector<std::size_t> abertos;

Cor lado_a_jogar() { return joga_com_b ? brancas : pretas; }

// Collects the moves of the children of ply n that `gerador` would enter, entering none.
int ply_observada = 0;
std::vector<Lance> observados;

bool anota_e_recusa(int n, Lance m) {
    if (n == ply_observada + 1) {
        observados.push_back(m);
    }
    return false;
}

template <class Gerador>
std::vector<Lance> observa(int n, Gerador gerador) {
    ply_observada = n;
    observados.clear();
    auto* const antes = entra_no_filho;
    entra_no_filho = anota_e_recusa;
    // A child that is not entered leaves its bound as it stands: at the value that improves nothing.
    if (n + 1 <= ultima_ply) {
        (n % 2 == 0 ? beta[n + 1] : alfa[n + 1]) = n % 2 == 0 ? inicio_alfa : inicio_beta;
    }
    gerador();
    entra_no_filho = antes;
    return observados;
}

int casa_de(std::string_view nome) { return casa(nome[0] - 'a', nome[1] - '1'); }

}  // namespace

void processo_novo() {
    entra_no_filho = nullptr;
    volta_do_filho = nullptr;
    zera_contadores();
    estado_novo();
}

std::string conversa_crua(std::string_view entrada) {
    std::istringstream de{std::string(entrada)};
    std::ostringstream para;
    auto* const cin_antes = std::cin.rdbuf(de.rdbuf());
    auto* const cout_antes = std::cout.rdbuf(para.rdbuf());
    std::cin.clear();
    laco_de_comandos();
    std::cin.rdbuf(cin_antes);
    std::cout.rdbuf(cout_antes);
    return para.str();
}

std::vector<std::string> conversa(const std::vector<std::string>& linhas) {
    std::string entrada;
    for (const std::string& linha : linhas) {
        entrada += linha + '\n';
    }
    std::istringstream saida(conversa_crua(entrada));
    std::vector<std::string> escritas;
    for (std::string linha; std::getline(saida, linha);) {
        escritas.push_back(linha);
    }
    return escritas;
}

void opcao(std::string_view nome, std::string_view valor) {
    in = "setoption name " + std::string(nome) + " value " + std::string(valor);
    le_opcao();
}

Cor coloca(std::string_view linha) {
    in = linha;
    joga_c_ob = 0;
    joga_c_fen = 0;
    deep = deepp;
    le_posicao();
    const Cor minha = lado_a_jogar();
    prepara_busca(minha);
    ply[0].mascaras = mascaras_de(tab);
    esquece_classes();
    return minha;
}

Cor coloca_fen(std::string_view fen) { return coloca("position fen " + std::string(fen)); }

Lance lance(std::string_view t) {
    if (t.size() < 4) {
        throw std::invalid_argument("a move needs four characters: " + std::string(t));
    }
    return {t[0] - 'a', t[1] - '1', t[2] - 'a', t[3] - '1'};
}

std::string texto(Lance m) {
    return {static_cast<char>('a' + m.a), static_cast<char>('1' + m.b), static_cast<char>('a' + m.c),
            static_cast<char>('1' + m.d)};
}

Tabuleiro tabuleiro(std::string_view campo) {
    const Tabuleiro guardado = tab;
    const Bandeiras bandeiras = jm;
    coloca_fen(std::string(campo) + " w - - 0 1");
    const Tabuleiro t = tab;
    tab = guardado;
    jm = bandeiras;
    return t;
}

Cor monta_ply(int n, std::string_view fen) {
    const Cor c = coloca_fen(fen);
    ply[0].mascaras = mascaras_de(tab);
    const Ply raiz = ply[0];
    for (int k = 0; k <= ultima_ply; ++k) {
        alfa[k] = inicio_alfa;
        beta[k] = inicio_beta;
    }
    limites_de_mate();
    corte_alfa.fill(0);
    corte_beta.fill(0);
    for (int k = 1; k <= n; ++k) {
        ply[k] = raiz;
        ply[k].material = material_a;
        ply[k].X_D = 1;
        ply[k].XEQUE_MATE = 1;
        ply[k].joga_com_b_deep = c == brancas ? 1 : 0;
    }
    nd = n;
    deep = n % 2 == 0 ? n + 3 : n + 2;
    DEEP = deep;
    aa_dd.fill(nenhum_lance);
    aag_ddg.fill(nenhum_lance);
    return c;
}

std::vector<Lance> lances_tentados(int n) {
    const Cor c = ply[n].joga_com_b_deep ? brancas : pretas;
    return observa(n, [n, c] { ordem_dos_lances_da_ply(n, c); });
}

std::vector<Lance> gera_capturas(int n, std::string_view vitima, bool forma_de_teste) {
    const Cor c = ply[n].joga_com_b_deep ? brancas : pretas;
    return observa(n, [&] { gerador_da_ply(n, c, casa_de(vitima), forma_de_teste); });
}

std::vector<Lance> gera_livres(int n, std::string_view nome, bool forma_de_teste) {
    const Cor c = ply[n].joga_com_b_deep ? brancas : pretas;
    return observa(n, [&] { analiselivre_da_ply(n, c, casa_de(nome), forma_de_teste); });
}

std::vector<Lance> gera_promocoes(int n, std::string_view nome) {
    const Cor c = ply[n].joga_com_b_deep ? brancas : pretas;
    return observa(n, [&] { analisepositive_peao_da_ply(n, c, casa_de(nome)); });
}

std::vector<Lance> gera_etapa_da_ply_1(int K, std::string_view nome) {
    const Cor c = ply[1].joga_com_b_deep ? brancas : pretas;
    return observa(1, [&] { analisepositive_da_ply_1(c, K, casa_de(nome)); });
}

std::vector<Lance> lances_da_raiz() {
    limites_de_mate();
    SCAN1 = 0;
    SCANT = 0;
    alfa[0] = inicio_alfa;
    E = -10000000.0F;
    return observa(0, [] { programa_da_raiz(lado_a_jogar()); });
}

float busca_no(int n, Lance m) {
    const Cor c = n == 1 ? lado_a_jogar() : (ply[n - 1].joga_com_b_deep ? brancas : pretas);
    if (n == 1) {
        init_tabuleiro2(m);
    } else if (c == brancas) {
        init_tabuleiro2_deep<brancas>(n - 1, m);
    } else {
        init_tabuleiro2_deep<pretas>(n - 1, m);
    }
    c == brancas ? verifica_rei<brancas>() : verifica_rei<pretas>();
    ++nodes;
    deep_da_ply(n, c, m);
    return n % 2 == 0 ? alfa[n] : beta[n];
}

std::uint64_t quantas_vezes(Regra r) { return vezes[static_cast<std::size_t>(r)]; }
void zera_contadores() { vezes = {}; }

Escuta::Escuta() {
    ouvidos.clear();
    abertos.clear();
    entra_no_filho = [](int n, Lance m) {
        abertos.push_back(ouvidos.size());
        ouvidos.push_back({n, m, deep, nodes, 0});
        return true;
    };
    volta_do_filho = [](std::uint32_t, int, float v) {
        ouvidos[abertos.back()].valor = v;
        abertos.pop_back();
    };
}

Escuta::~Escuta() {
    entra_no_filho = nullptr;
    volta_do_filho = nullptr;
}

const std::vector<Filho>& Escuta::filhos() const { return ouvidos; }

}  // namespace teste
