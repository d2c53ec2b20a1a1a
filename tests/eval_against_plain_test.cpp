// The evaluation against the plain one, to the last bit: thousands of positions, every setting varied, kings remembered
// where they stand and elsewhere.
#include "support/evaluation.h"

#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "uci/position.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace ondrel;
using namespace teste;

constexpr std::array<Cor, 2> cores{brancas, pretas};

std::vector<plain::Position> posicoes() {
    std::vector<plain::Position> todas = plain::data_positions("positions.fen");
    const std::vector<plain::Position> jogadas = plain::positions_from_random_games(20240711, 12, 160);
    todas.insert(todas.end(), jogadas.begin(), jogadas.end());
    return todas;
}

class EvalAgainstPlain : public ::testing::Test {
protected:
    void SetUp() override { processo_novo(); }

    // Calls f with every position until one differs.
    template <class F>
    static void em_cada_posicao(F f) {
        for (const plain::Position& p : posicoes()) {
            f(p);
            if (HasFailure()) {
                return;
            }
        }
    }

    // The position as a leaf under settings, line and kings at random.
    static void poe_folha_variada(const std::string& fen, Sorte& sorte) {
        varia_opcoes(sorte);
        poe_folha(fen);
        varia_linha(sorte);
        if (sorte.sim()) {
            desloca_reis(sorte);
        }
    }

    static void compara_contagem(const plain::Walk& certo, const std::string& onde) {
        for (const Cor c : cores) {
            EXPECT_TRUE(conta_como(certo.side[c], contagem[c])) << onde << (c == brancas ? " White" : " Black");
        }
    }
    static void compara(float certo, float achado, const std::string& onde) {
        EXPECT_TRUE(mesmos_bits(certo, achado)) << onde << ": " << achado << " for " << certo;
    }

    static void compara_folhas(const std::string& onde) {
        for (const Cor own : cores) {
            for (const Cor stm : cores) {
                const plain::EvalInput in = entrada();
                const plain::Walk certo = plain::walk(in, own, stm, false);
                const float v = julga(own, stm);
                compara(plain::extra_eval(in, own, certo), v, onde);
                compara_contagem(certo, onde);
                EXPECT_EQ(EMPAT != 0, certo.dead_draw) << onde;
            }
        }
    }

    static void compara_bases(const std::string& onde) {
        for (const Cor own : cores) {
            const plain::EvalInput in = entrada();
            const plain::Walk certo = plain::walk(in, own, 1 - own, true);
            const float v = valor_da_base(own);
            compara(plain::base_value(in, own, certo), v, onde);
            compara_contagem(certo, onde);
        }
    }
};

TEST_F(EvalAgainstPlain, SetsOutFromAThousandPositionsAndMore) { EXPECT_GE(posicoes().size(), 1500U); }

TEST_F(EvalAgainstPlain, LeavesWithTheSettingsOfTheStart) {
    em_cada_posicao([](const plain::Position& p) {
        const std::string fen = plain::to_fen(p);
        poe_folha(fen);
        compara_folhas(fen);
    });
}

TEST_F(EvalAgainstPlain, LeavesWithAllSettingsVaried) {
    Sorte sorte(1);
    em_cada_posicao([&sorte](const plain::Position& p) {
        const std::string fen = plain::to_fen(p);
        poe_folha_variada(fen, sorte);
        compara_folhas(fen);
    });
}

// A leaf is not its root: men, piece material and balance are another position's.
TEST_F(EvalAgainstPlain, LeavesUnderAnotherRoot) {
    Sorte sorte(2);
    const std::vector<plain::Position> todas = posicoes();
    for (const plain::Position& p : todas) {
        const std::string raiz =
            plain::to_fen(todas[static_cast<std::size_t>(sorte.ate(static_cast<int>(todas.size())))]);
        const std::string folha = plain::to_fen(p);
        poe_folha(raiz);
        muda_folha(folha.substr(0, folha.find(' ')));
        varia_linha(sorte);
        compara_folhas(folha + " under " + raiz);
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(EvalAgainstPlain, EveryPhase) {
    Sorte sorte(3);
    em_cada_posicao([&sorte](const plain::Position& p) {
        poe_folha(plain::to_fen(p));
        npecas = {sorte.ate(9), sorte.ate(9)};
        for (const Cor c : cores) {
            constexpr std::array<float, 5> fronteiras{0.0F, 82.0F, 90.0F, 90.5F, 96.0F};
            materialmaior[c] = fronteiras.at(static_cast<std::size_t>(sorte.ate(5)));
        }
        compara_folhas(plain::to_fen(p));
    });
}

TEST_F(EvalAgainstPlain, BoardsThatNoGameLeadsTo) {
    Sorte sorte(8);
    coloca_fen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    for (int vez = 0; vez < 1000; ++vez) {
        enche(sorte);
        varia_opcoes(sorte);
        varia_linha(sorte);
        desloca_reis(sorte);
        npecas = {sorte.ate(65), sorte.ate(65)};
        materialmaior = {static_cast<float>(sorte.ate(200)), static_cast<float>(sorte.ate(200))};
        compara_folhas("board " + std::to_string(vez));
        compara_bases("board " + std::to_string(vez));
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(EvalAgainstPlain, BaseValues) {
    Sorte sorte(4);
    em_cada_posicao([&sorte](const plain::Position& p) {
        const std::string fen = plain::to_fen(p);
        poe_folha_variada(fen, sorte);
        compara_bases(fen);
    });
}

TEST_F(EvalAgainstPlain, BalanceOfEitherSide) {
    Sorte sorte(5);
    for (plain::Position p : posicoes()) {
        for (const bool brancas_jogam : {true, false}) {
            p.white_to_move = brancas_jogam;
            const std::string fen = plain::to_fen(p);
            MOB = degrau(sorte, 10);
            const Cor minha = poe_folha(fen);
            ASSERT_EQ(minha, brancas_jogam ? brancas : pretas);
            const plain::EvalInput in = entrada();
            compara(plain::balance(in, minha, material_a), regimen, fen);
            // The preparation's walk is the last one. Hits, supports and positions are no part of it.
            const plain::Walk certo = plain::balance_walk(in);
            for (const Cor c : cores) {
                Contagem contado = contagem[c];
                contado.alvos = contado.apoios = 0;
                contado.posicao = 0;
                EXPECT_TRUE(conta_como(certo.side[c], contado)) << fen;
            }
        }
        if (HasFailure()) {
            return;
        }
    }
}

// --- Root moves ---

plain::RootMove raiz_do_lance(Lance m) {
    plain::RootMove x;
    x.root = casas(tab);
    x.piece = tab[m.origem()];
    x.to = m.destino();
    x.nb = nb;
    x.material = material_a;
    x.men = npecas;
    x.king_file = p_x_R;
    x.king_rank = p_y_R;
    for (const Cor c : cores) {
        x.numerator[c] = plain::xr_numerator(material_a[c]);
    }
    return x;
}

// The search tests the mover's king between the trial and the class, and so finds it.
void acha_rei_em_tab2(Cor c) {
    for (int i = 0; i < 64; ++i) {
        if (tab2[i] == codigo(c, rei)) {
            p_x_R[c] = i / 8;
            p_y_R[c] = i % 8;
        }
    }
}

TEST_F(EvalAgainstPlain, ClassesOfRootMoves) {
    Sorte sorte(6);
    int quantos = 0;
    for (const plain::Position& p : posicoes()) {
        std::vector<plain::Move> lances = plain::legal_moves(p);
        std::erase_if(lances, [](const plain::Move& m) { return m.promotion != 0 && m.promotion != 'q'; });
        const std::string fen = plain::to_fen(p);
        for (int vez = 0; vez < 4 && !lances.empty(); ++vez) {
            const plain::Move x = lances[static_cast<std::size_t>(sorte.ate(static_cast<int>(lances.size())))];
            const Lance m{x.from_file, x.from_rank, x.to_file, x.to_rank};
            varia_opcoes(sorte);
            const Cor c = coloca_fen(fen);
            nb = std::array{1, 29, 30, 69, 70, 120}.at(static_cast<std::size_t>(sorte.ate(6)));
            varia_linha(sorte);
            const plain::RootMove raiz = raiz_do_lance(m);
            const plain::RootValue valor = plain::root_value(raiz);
            init_tabuleiro2(m);
            EXPECT_EQ(MATRIZ, valor.matriz) << fen << ' ' << plain::to_uci(x);
            EXPECT_EQ(incentiva_promo != 0, valor.incentiva_promo) << fen << ' ' << plain::to_uci(x);
            acha_rei_em_tab2(c);
            const plain::EvalInput in = entrada();
            ASSERT_EQ(in.board, casas(plain::play(p, x))) << fen << ' ' << plain::to_uci(x);
            c == brancas ? verifica_estrategia<brancas>() : verifica_estrategia<pretas>();
            const plain::Class certa = plain::classify(in.board, c, valor, material_a, npecas, agreschrei, matrix);
            EXPECT_EQ(ATAQUE, certa.ataque) << fen << ' ' << plain::to_uci(x);
            EXPECT_EQ(ESTRATEGIA, certa.estrategia) << fen << ' ' << plain::to_uci(x);
            EXPECT_EQ(MATRIZ, certa.matriz) << fen << ' ' << plain::to_uci(x);
            const plain::Walk passeio = plain::walk(in, c, 1 - c, true);
            compara(plain::base_value(in, c, passeio), extraevalll, fen);
            compara_contagem(passeio, fen);
            ++quantos;
        }
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_GT(quantos, 5000);
}

TEST_F(EvalAgainstPlain, AttackMapsOfRootMoves) {
    Sorte sorte(7);
    for (const plain::Position& p : posicoes()) {
        const std::vector<plain::Move> lances = plain::legal_moves(p);
        if (lances.empty()) {
            continue;
        }
        const plain::Move x = lances[static_cast<std::size_t>(sorte.ate(static_cast<int>(lances.size())))];
        const std::string fen = plain::to_fen(p);
        coloca_fen(fen);
        init_tabuleiro2({x.from_file, x.from_rank, x.to_file, x.to_rank});
        const plain::AttackMaps certos = plain::attack_maps(casas(tab2));
        for (const Cor c : cores) {
            const std::array<const TabelaInteira*, 6> mapas{&ataca[c].peao,  &ataca[c].cavalo, &ataca[c].bispo,
                                                            &ataca[c].torre, &ataca[c].dama,   &ataca[c].rei};
            for (std::size_t k = 0; k < mapas.size(); ++k) {
                EXPECT_EQ(*mapas[k], certos.by_kind[c][k]) << fen << ' ' << plain::to_uci(x) << " kind " << k;
            }
            EXPECT_EQ(ataca[c].N_A, certos.total[c]) << fen << ' ' << plain::to_uci(x);
        }
        if (HasFailure()) {
            return;
        }
    }
}

// The tables that a move of the game prepares, by way of what they make of every destination.
TEST_F(EvalAgainstPlain, NearnessTablesOfThePreparation) {
    for (const plain::Position& p : posicoes()) {
        const std::string fen = plain::to_fen(p);
        coloca_fen(fen);
        for (const Cor c : cores) {
            const int numerador = plain::xr_numerator(material_a[c]);
            for (int i = 0; i < 64; ++i) {
                ASSERT_EQ(Xr[c][i], plain::xr(numerador, p_x_R[c], p_y_R[c], i)) << fen << ' ' << i;
                ASSERT_EQ(XP[c][i], plain::xp(casas(tab), c, i)) << fen << ' ' << i;
            }
        }
    }
}

}  // namespace
