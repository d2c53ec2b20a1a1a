#include "search/schedule.h"

#include "base/bounds.h"
#include "base/clock.h"
#include "base/numeric.h"
#include "base/options.h"
#include "base/probe.h"
#include "base/root.h"
#include "memory/game_memory.h"
#include "memory/shallow_tables.h"
#include "search/root_routines.h"
#include "search/score_windows.h"
#include "search/seams.h"

#include <span>
#include <string_view>

namespace ondrel {
namespace {

// --- Schedules ---

// One or more root routines: a stage, with or without check, and its pieces in order.
struct Trecho {
    Etapa etapa;
    bool ch;
    std::string_view pecas;
};

constexpr bool ch = true;
constexpr bool sh = false;

// Each table is one sweep of ataque. In the "consistent" temperament the routines of tables 1 to 5 have a sweep of
// their own each.
constexpr std::array capturas_de_dama{Trecho{positive5, ch, "PNBRQK"}, Trecho{positive5, sh, "PNBRQK"}};
constexpr std::array capturas_de_torre{Trecho{positive4, ch, "PNBRK"}, Trecho{positive4, sh, "PNBRK"}};
constexpr std::array capturas_de_cavalo{Trecho{positive3, ch, "PNBK"}, Trecho{positive3, sh, "PNBK"}};
constexpr std::array capturas_de_bispo{Trecho{positive2, ch, "PNBK"}, Trecho{positive2, sh, "PNBK"}};
constexpr std::array capturas_de_peao{Trecho{positive1, ch, "PK"}, Trecho{positive1, sh, "PK"}};
constexpr std::array capturas_fracas_e_livres{
    Trecho{positive3, ch, "R"}, Trecho{positive2, ch, "R"}, Trecho{positive4, ch, "Q"}, Trecho{positive1, ch, "BNR"},
    Trecho{positive3, ch, "Q"}, Trecho{positive2, ch, "Q"}, Trecho{positive1, ch, "Q"}, Trecho{livre, ch, "PNBRQK"},
    Trecho{positive3, sh, "R"}, Trecho{positive2, sh, "R"}, Trecho{positive4, sh, "Q"}, Trecho{positive1, sh, "BNR"},
    Trecho{positive3, sh, "Q"}, Trecho{positive2, sh, "Q"}, Trecho{positive1, sh, "Q"}, Trecho{livre, sh, "PNBRQK"}};
constexpr std::array<std::span<const Trecho>, 5> capturas_fortes{
    capturas_de_dama, capturas_de_torre, capturas_de_cavalo, capturas_de_bispo, capturas_de_peao};

// The "dynamic" temperament: every capture routine has its sweep, the quiet moves share one.
constexpr std::array capturas_por_vitima{Trecho{positive5, ch, "PNBRQK"}, Trecho{positive5, sh, "PNBRQK"},
                                         Trecho{positive4, ch, "PNBRQK"}, Trecho{positive4, sh, "PNBRQK"},
                                         Trecho{positive3, ch, "PNBRQK"}, Trecho{positive3, sh, "PNBRQK"},
                                         Trecho{positive2, ch, "PNBRQK"}, Trecho{positive2, sh, "PNBRQK"},
                                         Trecho{positive1, ch, "PNBRQK"}, Trecho{positive1, sh, "PNBRQK"}};
constexpr std::array todas_as_livres{Trecho{livre, ch, "PNBRQK"}, Trecho{livre, sh, "PNBRQK"}};

// Against a bare king: pawns first, captures by the king last.
constexpr std::array rei_so_peoes{Trecho{livre, ch, "P"}, Trecho{livre, sh, "P"}};
constexpr std::array rei_so_pecas{Trecho{livre, ch, "NBRQ"}, Trecho{livre, sh, "NBRQK"}, Trecho{livre, ch, "K"}};
constexpr std::array rei_so_capturas{Trecho{positive1, ch, "K"}, Trecho{positive1, sh, "K"}};

// --- Sweeps ---

void comeca_passe() {
    ply[0].mascaras = mascaras_de(tab);
    esquece_classes();
}

Peca peca_da_letra(char letra) {
    switch (letra) {
        case 'P': return peao;
        case 'N': return cavalo;
        case 'B': return bispo;
        case 'R': return torre;
        case 'Q': return dama;
        default: return rei;
    }
}

template <Cor c>
void chama_por_casa(const Trecho& x, Peca piece) {
    for (Mascara resto = ply[0].mascaras.de(c, piece); resto != 0 && !corte_MAXcut; resto &= resto - 1) {
        const int i = primeira_casa(resto);
        analise100<c>(x.etapa, x.ch, piece, i / 8, i % 8);
    }
}

// One sweep of ataque over the routines given.
template <Cor c>
void varre(std::span<const Trecho> trechos) {
    for (ataque = 100; ataque >= -100; --ataque) {
        for (const Trecho& x : trechos) {
            for (const char letra : x.pecas) {
                chama_por_casa<c>(x, peca_da_letra(letra));
            }
        }
    }
}

// A sweep of its own for every routine.
template <Cor c>
void varre_cada_uma(std::span<const Trecho> trechos) {
    for (const Trecho& x : trechos) {
        for (std::size_t k = 0; k < x.pecas.size(); ++k) {
            const std::array uma{Trecho{x.etapa, x.ch, x.pecas.substr(k, 1)}};
            varre<c>(uma);
        }
    }
}

template <Cor c>
void programa_da_partida() {
    switch (Temperamento) {
        case 1:
            for (const auto trechos : capturas_fortes) {
                varre<c>(trechos);
            }
            return varre<c>(capturas_fracas_e_livres);
        case 2:
            for (const auto trechos : capturas_fortes) {
                varre_cada_uma<c>(trechos);
            }
            return varre<c>(capturas_fracas_e_livres);
        default: varre_cada_uma<c>(capturas_por_vitima); return varre<c>(todas_as_livres);
    }
}

// The schedule of one pass.
template <Cor c>
void programa() {
    comeca_passe();
    DEEP = deep;
    corte_MAXcut = 0;
    const float dela = material_a[outra(c)];
    if (dela > 110.0F) {
        programa_da_partida<c>();
    } else if (dela == 110.0F) {
        varre<c>(rei_so_peoes);
        varre<c>(rei_so_pecas);
        varre<c>(rei_so_capturas);
    }
}

// --- Passes ---

long double L_da_raiz(Cor minha) { return ln_da_razao(material_a[minha], material_a[outra(minha)]) * MQ; }

void tipo_de_passe(std::uint8_t scan1, std::uint8_t scant) {
    SCAN1 = scan1;
    SCANT = scant;
    roque = {};
}

// A draw is worth more once the score is known to hold, and nothing is hanging.
void ajusta_empate(Cor minha) {
    if (alfa[0] >= materialflot0 - 5.0L + L_da_raiz(minha) && peca == 0) {
        emp += 10;
    }
}

// Opens the root window a step below the depth before.
void passo_da_janela() {
    EP = 0;
    ALFA0 = alfa[0];
    const float passo = DEEP9 ? 1.0F : 10.0F;
    alfa[0] -= passo;
    E -= passo;
}

// A mate of the build pass is searched again in full.
void reabre_depois_de_mate() {
    if (alfa[0] >= mate_minimo) {
        ALFA0 = alfa[0];
        EP = 0;
        alfa[0] = inicio_alfa;
        E = -10000000.0F;
    }
}

template <Cor c>
void passe_de_construcao() {
    const int deepIID1 = deep;
    deep = 7;
    tipo_de_passe(0, 0);
    pempatee = 0;
    programa<c>();
    deep = deepIID1;
}

template <Cor c>
void prepara_primeira_profundidade() {
    if (HASHf) {
        limpa_cadeia_rasa(c);
    }
    curr = 0;
    pempatee = 1;
    tipo_de_passe(1, 0);
    ajusta_empate(c);
    passo_da_janela();
    reabre_depois_de_mate();
}

bool ha_tempo() {
    fim = relogio();
    return tempo_usado() <= limite_suave() || !TC;
}

// The score is no mate, and neither clock nor options bind the search to one depth.
bool pode_seguir() { return !corte_MAXcut && IIDS && EXTRA_EVAL && alfa[0] < mate_minimo && deep >= 9; }

bool ha_proxima_profundidade() {
    const bool no_tempo = ha_tempo();
    return pode_seguir() && deep <= 21 && (deep + 1 < deepp || deepp == 17) && no_tempo;
}

void prepara_proxima_profundidade() {
    tipo_de_passe(1, 0);
    curr = 0;
    passo_da_janela();
    deep += 2;
}

void guarda_limites() {
    for (int n = 18; n < ultima_ply; ++n) {
        MAXcut[n] = MAXcut[n % 2 == 0 ? 16 : 17];
    }
    MAXcutt = MAXcut;
}

// Each depth in two passes: the remembered best move alone, then all the others against its score.
template <Cor c>
void aprofunda() {
    constexpr int ultimo_passe = 49;
    for (int passe = 3; passe <= ultimo_passe; passe += 2) {
        if (!ha_proxima_profundidade()) {
            return;
        }
        MAXcut = MAXcutt;
        prepara_proxima_profundidade();
        programa<c>();
        if (passe < ultimo_passe && pode_seguir() && deep <= 23) {
            MAXcut = MAXcutt;
            tipo_de_passe(0, 1);
            programa<c>();
        }
    }
}

template <Cor c>
void itera() {
    tipo_de_passe(0, 0);
    corte_MAXcut = 0;
    if (deep > 8) {
        passe_de_construcao<c>();
        if (curr == 1) {
            return;  // the only legal move
        }
        MAXcut = MAXcutt;
        prepara_primeira_profundidade<c>();
        programa<c>();
    }
    if (!corte_MAXcut) {
        MAXcut = MAXcutt;
        tipo_de_passe(0, 1);
        programa<c>();
    }
    aprofunda<c>();
}

template <Cor c>
void varre_primeiro_lance() {
    comeca_passe();
    corte_MAXcut = 0;
    for (ataque = 100; ataque >= -100; --ataque) {
        for (const Peca piece : {peao, cavalo}) {
            chama_por_casa<c>({livre, sh, {}}, piece);
        }
    }
    conclui_visitas<c>();
}

}  // namespace

void valor_do_empate(Cor minha) {
    emp = inteiro(static_cast<long double>(empp - 10) + L_da_raiz(minha));
    emppp = emp;
}

void busca_na_raiz(Cor minha) {
    mem_TEST = 0;
    if (HASH1 && HASH_MEM) {
        hash_mem_scan();
        if (mem_TEST) {
            return;
        }
    }
    janelas_de_placar(minha);
    guarda_limites();
    if (minha == brancas) {
        itera<brancas>();
        conclui_visitas<brancas>();
    } else {
        itera<pretas>();
        conclui_visitas<pretas>();
    }
}

#if ONDREL_TRACE
void programa_da_raiz(Cor c) { c == brancas ? programa<brancas>() : programa<pretas>(); }
#endif

void busca_do_primeiro_lance(Cor minha) {
    if (minha == brancas) {
        varre_primeiro_lance<brancas>();
    } else {
        varre_primeiro_lance<pretas>();
    }
}

}  // namespace ondrel
