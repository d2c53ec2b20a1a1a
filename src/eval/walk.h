// The walk of the board that all judgements share.
#pragma once

#include "base/options.h"
#include "base/root.h"
#include "eval/mobility.h"

namespace ondrel {

// What a walk is for. The balance of the root position takes neither positional terms nor sides; the base value of a
// root move counts legal moves only, as the balance does.
enum class Passeio { folha, base, balanco };

// Walks the board t for the judgement of `own` with `stm` to move and leaves the counters in `lado`, cleared by the
// caller. Reads the king squares, npecas, materialmaior and the options agres and agresprxrei.
template <Passeio tipo, Cor own, Cor stm>
class Caminhada {
public:
    Caminhada(const Tabuleiro& t, std::array<Contagem, 2>& lado) : t_(t), lado_(lado) {}

    void percorre() {
        for (int f = 0; f < 8; ++f) {
            for (int r = 0; r < 8; ++r) {
                const int x = t_[casa(f, r)];
                if (x > 0) {
                    homem<brancas>(f, r, x);
                } else if (x < 0) {
                    homem<pretas>(f, r, -x);
                }
            }
        }
    }

private:
    static constexpr bool posicional = tipo != Passeio::balanco;
    static constexpr bool so_legais = tipo != Passeio::folha;

    const Tabuleiro& t_;
    std::array<Contagem, 2>& lado_;

    template <Cor c>
    void posicao(double termo) {
        if constexpr (posicional) {
            soma(lado_[c].posicao, termo);
        }
    }

    // The enemy is down to a queen or less: kings count, pawns are weighed by their way to promotion.
    template <Cor c>
    static bool final_para() {
        return materialmaior[outra(c)] <= 90.0F;
    }

    // Scale of the king-proximity terms of c.
    template <Cor c>
    static double ap() {
        return c == own ? static_cast<double>(agresprxrei) : 1.0;
    }

    template <Cor c>
    static int perto_do_rei_inimigo(int f, int r) {
        return proximidade(f, r, p_x_R[outra(c)], p_y_R[outra(c)]);
    }

    template <Cor c>
    static int perto_do_proprio_rei(int f, int r) {
        return proximidade(f, r, p_x_R[c], p_y_R[c]);
    }

    template <Cor c>
    [[nodiscard]] bool peao_em(int f, int r) const {
        return no_tabuleiro(f, r) && t_[casa(f, r)] == codigo(c, peao);
    }

    // One more move for c, if it counts.
    template <Cor c>
    void move(int f, int r, int para_f, int para_r) {
        if constexpr (so_legais) {
            verifica_liberdade(c, t_, {f, r, para_f, para_r});
            if (YY) {
                return;
            }
        }
        ++lado_[c].mobilidade;
    }

    template <Cor c>
    void homem(int f, int r, int x) {
        lado_[c].avanco += fila(c, r) + 1;
        switch (x) {
            case peao: return homem_peao<c>(f, r);
            case cavalo: return homem_cavalo<c>(f, r);
            case bispo: return homem_bispo<c>(f, r);
            case torre: return homem_torre<c>(f, r);
            case dama: return homem_dama<c>(f, r);
            default: return homem_rei<c>(f, r);
        }
    }

    // --- Attacks ---

    // Judges one attacked square: the mark first, then what it holds.
    template <Cor c, Peca quem>
    void ataca(int f, int r, Passo passo, int para_f, int para_r) {
        Contagem& eu = lado_[c];
        King_safety(c, eu, para_f, para_r);
        const int x = t_[casa(para_f, para_r)];
        if (x == vazia) {
            move<c>(f, r, para_f, para_r);
        } else if (da_cor(c, x)) {
            ++eu.apoios;
            apoia<c, quem>(valor_da_peca(x), passo);
        } else {
            move<c>(f, r, para_f, para_r);
            ++eu.alvos;
            if constexpr (c == stm && (quem == cavalo || quem == bispo || quem == torre)) {
                if (valor_da_peca(x) > quem) {
                    posicao<c>(valor_da_peca(x) - quem);
                }
            }
        }
    }

    // A rook or queen behind an own rook or queen.
    template <Cor c, Peca quem>
    void apoia(int v, Passo passo) {
        if (v != torre && v != dama) {
            return;
        }
        if constexpr (quem == torre) {
            posicao<c>(passo.rank == 0 ? 3.0 : 5.0);
        } else if constexpr (quem == dama) {
            posicao<c>(1.0);
        }
    }

    template <Cor c, Peca quem, std::size_t quantos>
    void salta(int f, int r, const std::array<Passo, quantos>& passos) {
        for (const Passo s : passos) {
            if (no_tabuleiro(f + s.file, r + s.rank)) {
                ataca<c, quem>(f, r, s, f + s.file, r + s.rank);
            }
        }
    }

    template <Cor c, Peca quem, std::size_t quantos>
    void desliza(int f, int r, const std::array<Passo, quantos>& passos) {
        for (const Passo s : passos) {
            for (int cf = f + s.file, cr = r + s.rank; no_tabuleiro(cf, cr); cf += s.file, cr += s.rank) {
                ataca<c, quem>(f, r, s, cf, cr);
                if (t_[casa(cf, cr)] != vazia) {
                    break;
                }
            }
        }
    }

    // --- Pieces, by the rows of their terms ---

    template <Cor c>
    void conta_peca(int pontos) {
        ++lado_[c].pecas;
        lado_[c].pontos += pontos;
    }

    template <Cor c>
    void desenvolvida(int r) {
        if (fila(c, r) != 0) {
            posicao<c>(15.0);
        }
    }

    template <Cor c>
    void homem_cavalo(int f, int r) {
        conta_peca<c>(3);
        desenvolvida<c>(r);
        const double centro_aqui = centro[casa(f, r)];
        if (homens() < 15) {
            posicao<c>(15.0 * ap<c>() / perto_do_rei_inimigo<c>(f, r) + 10.0 * centro_aqui);
        } else {
            posicao<c>(5.0 * ap<c>() / perto_do_rei_inimigo<c>(f, r) + 25.0 * centro_aqui);
        }
        salta<c, cavalo>(f, r, saltos_do_cavalo);
    }

    template <Cor c>
    void homem_bispo(int f, int r) {
        conta_peca<c>(3);
        desenvolvida<c>(r);
        if (f == r || f + r == 7) {
            posicao<c>(homens() >= 15 ? 11.0 : 5.0);
        }
        desliza<c, bispo>(f, r, passos_do_bispo);
    }

    template <Cor c>
    void homem_torre(int f, int r) {
        conta_peca<c>(5);
        if (f != 0 && f != 7) {
            posicao<c>(15.0);
        }
        if (homens() < 15) {
            posicao<c>(10.0 * ap<c>() / perto_do_rei_inimigo<c>(f, r));
        }
        if (homens() < 11 && fila(c, r) >= 6) {
            posicao<c>(11.0);
        }
        desliza<c, torre>(f, r, passos_da_torre);
    }

    template <Cor c>
    void homem_dama(int f, int r) {
        conta_peca<c>(9);
        desenvolvida<c>(r);
        const double centro_aqui = centro[casa(f, r)];
        if (homens() < 15) {
            posicao<c>(25.0 * ap<c>() / perto_do_rei_inimigo<c>(f, r) + 15.0 * centro_aqui);
        } else {
            posicao<c>(5.0 * ap<c>() / perto_do_rei_inimigo<c>(f, r) + 10.0 * centro_aqui);
        }
        desliza<c, dama>(f, r, passos_da_dama);
    }

    template <Cor c>
    void alarga_caixa(int f, int r) {
        Contagem& eu = lado_[c];
        eu.menor_file = f < eu.menor_file ? f : eu.menor_file;
        eu.maior_file = f > eu.maior_file ? f : eu.maior_file;
        eu.menor_rank = r < eu.menor_rank ? r : eu.menor_rank;
        eu.maior_rank = r > eu.maior_rank ? r : eu.maior_rank;
    }

    template <Cor c>
    void homem_rei(int f, int r) {
        alarga_caixa<c>(f, r);
        if (final_para<c>()) {
            posicao<c>(50.0 * static_cast<double>(centro[casa(f, r)]));
        }
        if (npecas[outra(c)] == 0) {
            posicao<c>(75.0 * ap<c>() / perto_do_rei_inimigo<c>(f, r));
        }
        if (final_para<c>()) {
            salta<c, rei>(f, r, passos_do_rei);
        }
    }

    // --- Pawns, by the items of their terms ---

    template <Cor c>
    void homem_peao(int f, int r) {
        ++lado_[c].peoes;
        alarga_caixa<c>(f, r);
        if (final_para<c>()) {
            peao_no_final<c>(f, r);
        } else {
            peao_abriga_e_marca<c>(f, r);
        }
        for (const int lado_file : {1, -1}) {
            peao_captura<c>(f, r, lado_file);
        }
        peao_avanca<c>(f, r);
        if constexpr (posicional) {
            peao_estrutura<c>(f, r);
            for (const int lado_file : {1, -1}) {
                peao_rompe<c>(f, r, lado_file);
            }
            peao_passado<c>(f, r);
        }
    }

    template <Cor c>
    void peao_abriga_e_marca(int f, int r) {
        const int a_frente = sinal(c) * (r - p_y_R[c]);
        if (f - p_x_R[c] >= -1 && f - p_x_R[c] <= 1 && a_frente >= 0 && a_frente <= 2) {
            ++lado_[c].abrigo;
        }
        for (const int lado_file : {1, -1}) {
            if (no_tabuleiro(f + lado_file, r + sinal(c))) {
                King_safety(c, lado_[c], f + lado_file, r + sinal(c));
            }
        }
    }

    // A pawn draws both kings toward it.
    template <Cor c>
    void peao_no_final(int f, int r) {
        posicao<c>(100.0 * static_cast<double>(promo[c][casa(f, r)]) + 25.0 / perto_do_proprio_rei<c>(f, r));
        posicao<outra(c)>(25.0 / perto_do_rei_inimigo<c>(f, r));
    }

    template <Cor c>
    void peao_captura(int f, int r, int lado_file) {
        const int para_f = f + lado_file;
        const int para_r = r + sinal(c);
        if (!no_tabuleiro(para_f, para_r) || !da_cor(outra(c), t_[casa(para_f, para_r)])) {
            return;
        }
        const int v = valor_da_peca(t_[casa(para_f, para_r)]);
        move<c>(f, r, para_f, para_r);
        ++lado_[c].alvos;
        if constexpr (c == stm) {
            posicao<c>(v * static_cast<double>(agres) - 10.0);
        } else if (v > peao && (peao_em<c>(f + 1, r - sinal(c)) || peao_em<c>(f - 1, r - sinal(c)))) {
            posicao<c>(v / 2);
        }
    }

    template <Cor c>
    void peao_avanca(int f, int r) {
        const int um = r + sinal(c);
        if (!no_tabuleiro(f, um) || t_[casa(f, um)] != vazia) {
            return;
        }
        move<c>(f, r, f, um);
        if (fila(c, r) == 1 && t_[casa(f, um + sinal(c))] == vazia) {
            move<c>(f, r, f, um + sinal(c));
        }
    }

    template <Cor c>
    void peao_estrutura(int f, int r) {
        for (const int lado_file : {1, -1}) {
            const int para_f = f + lado_file;
            const int para_r = r + sinal(c);
            if (no_tabuleiro(para_f, para_r) && da_cor(c, t_[casa(para_f, para_r)])) {
                ++lado_[c].apoios;
            }
        }
        if (fila(c, r) == 6) {
            posicao<c>(100.0);
        }
        for (const int lado_file : {1, -1}) {
            if (peao_em<c>(f + lado_file, r)) {
                posicao<c>(13.0);
            }
        }
        for (const int lado_file : {1, -1}) {
            if (peao_em<c>(f + lado_file, r + sinal(c))) {
                posicao<c>(11.0);
            }
        }
    }

    // Breakthrough: nobody to stop this pawn once it has captured toward lado_file.
    template <Cor c>
    void peao_rompe(int f, int r, int lado_file) {
        const int para_f = f + lado_file;
        const int para_r = r + sinal(c);
        if (!no_tabuleiro(para_f, para_r) || peao_em<brancas>(para_f, para_r) || peao_em<pretas>(para_f, para_r)) {
            return;
        }
        if (fila(c, r) + 2 > 6) {
            return;
        }
        for (int i = fila(c, r) + 2; i <= 6; ++i) {
            if (peao_em<outra(c)>(f, fila(c, i)) || peao_em<outra(c)>(f + 2 * lado_file, fila(c, i))) {
                return;
            }
        }
        posicao<c>(25.0);
    }

    template <Cor c>
    void peao_passado(int f, int r) {
        for (int i = fila(c, r) + 1; i <= 6; ++i) {
            const int cr = fila(c, i);
            if (peao_em<c>(f, cr) || peao_em<outra(c)>(f, cr) || peao_em<outra(c)>(f + 1, cr) ||
                peao_em<outra(c)>(f - 1, cr)) {
                return;
            }
            for (const int lado_file : {1, -1}) {
                if (peao_em<c>(f + lado_file, cr)) {
                    posicao<c>(10.0);
                }
            }
            if (i == 6) {
                posicao<c>(33.0);
            }
        }
    }
};

}  // namespace ondrel
