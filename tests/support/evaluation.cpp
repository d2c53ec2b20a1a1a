#include "support/evaluation.h"

#include "eval/extra_eval.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace teste {

using namespace ondrel;

Cor poe_folha(std::string_view fen) {
    const Cor minha = coloca_fen(fen);
    tab2 = tab;
    return minha;
}

void muda_folha(std::string_view campo) {
    tab2 = {};
    int f = 0;
    int r = 7;
    for (const char x : campo) {
        if (x == '/') {
            f = 0;
            --r;
        } else if (x >= '1' && x <= '8') {
            f += x - '0';
        } else {
            constexpr std::string_view letras = "pnbrqk";
            constexpr std::array<Peca, 6> pecas{peao, cavalo, bispo, torre, dama, rei};
            const bool preta = x >= 'a';
            const std::size_t qual = letras.find(static_cast<char>(preta ? x : x - 'A' + 'a'));
            tab2[casa(f++, r)] = static_cast<std::int8_t>(codigo(preta ? pretas : brancas, pecas.at(qual)));
        }
    }
}

void poe_fase(int homens, float maior) {
    npecas = {homens / 2, homens - homens / 2};
    materialmaior = {maior, maior};
}

float julga(Cor own, Cor stm) {
    if (own == stm) {
        own == brancas ? extra_eval<brancas>() : extra_eval<pretas>();
    } else {
        own == brancas ? extra_evall<brancas>() : extra_evall<pretas>();
    }
    return extraeval;
}

float valor_da_base(Cor own) {
    own == brancas ? valor_base<brancas>() : valor_base<pretas>();
    return extraevalll;
}

const Contagem& brancas_contadas() { return contagem[brancas]; }
const Contagem& pretas_contadas() { return contagem[pretas]; }

plain::Board casas(const Tabuleiro& t) {
    plain::Board b{};
    for (std::size_t i = 0; i < 64; ++i) {
        b[i] = t[i];
    }
    return b;
}

plain::Board casas(const plain::Position& p) {
    plain::Board b{};
    constexpr std::string_view letras = "PNBRQKpnbrqk";
    constexpr std::array<int, 12> codigos{10, 32, 33, 50, 90, 110, -10, -32, -33, -50, -90, -110};
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            if (p.at(f, r) != plain::empty_square) {
                b[f * 8 + r] = codigos.at(letras.find(p.at(f, r)));
            }
        }
    }
    return b;
}

plain::EvalInput entrada() {
    plain::EvalInput in;
    in.board = casas(tab2);
    in.king_file = p_x_R;
    in.king_rank = p_y_R;
    in.men = npecas;
    in.piece_material = materialmaior;
    in.regimen = regimen;
    in.base = extraevalll;
    in.castle = roque;
    in.agres = agres;
    in.agresprxrei = agresprxrei;
    in.MOB = MOB;
    in.PM = PM;
    in.roque_v = roque_v;
    return in;
}

float soma_dos_inversos(std::initializer_list<int> distancias) {
    float total = 0;
    for (const int d : distancias) {
        total = static_cast<float>(static_cast<double>(total) + 1.0 / d);
    }
    return total;
}

float soma_dos_termos(std::initializer_list<double> termos) {
    float total = 0;
    for (const double t : termos) {
        total = static_cast<float>(static_cast<double>(total) + t);
    }
    return total;
}

float soma_do_centroo(std::initializer_list<std::string_view> nomes) {
    float total = 0;
    for (const std::string_view nome : nomes) {
        const double f = nome[0] - 'a' - 3.5;
        const double r = nome[1] - '1' - 3.5;
        const auto peso = static_cast<float>(50.0 / (f * f + r * r + 2.0));
        total = static_cast<float>(static_cast<double>(total) + static_cast<double>(peso));
    }
    return total;
}

int casa_de(std::string_view nome) { return casa(nome[0] - 'a', nome[1] - '1'); }

bool mesmos_bits(float a, float b) {
    if (std::isnan(a) || std::isnan(b)) {
        return std::isnan(a) && std::isnan(b);
    }
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

::testing::AssertionResult conta_como(const plain::SideCounts& certo, const Contagem& contado) {
    ::testing::AssertionResult diferencas = ::testing::AssertionFailure();
    bool iguais = true;
    const auto compara = [&](const char* nome, auto a, auto b, bool bate) {
        if (!bate) {
            iguais = false;
            diferencas << nome << ": " << ::testing::PrintToString(b) << " for " << ::testing::PrintToString(a) << "; ";
        }
    };
    const auto real = [&](const char* nome, float a, float b) { compara(nome, a, b, mesmos_bits(a, b)); };
    const auto inteiro = [&](const char* nome, int a, int b) { compara(nome, a, b, a == b); };
    real("posicao", certo.posicao, contado.posicao);
    real("centro", certo.centro, contado.centro);
    real("atack_ksf", certo.atack_ksf, contado.atack_ksf);
    real("defesa_ksf", certo.defesa_ksf, contado.defesa_ksf);
    inteiro("mobilidade", certo.mobilidade, contado.mobilidade);
    inteiro("alvos", certo.alvos, contado.alvos);
    inteiro("apoios", certo.apoios, contado.apoios);
    inteiro("pecas", certo.pecas, contado.pecas);
    inteiro("peoes", certo.peoes, contado.peoes);
    inteiro("pontos", certo.pontos, contado.pontos);
    inteiro("avanco", certo.avanco, contado.avanco);
    inteiro("abrigo", certo.abrigo, contado.abrigo);
    if (certo.highest_file >= 0) {
        inteiro("menor_file", certo.lowest_file, contado.menor_file);
        inteiro("maior_file", certo.highest_file, contado.maior_file);
        inteiro("menor_rank", certo.lowest_rank, contado.menor_rank);
        inteiro("maior_rank", certo.highest_rank, contado.maior_rank);
        inteiro("caixa", certo.caixa, contado.caixa());
    }
    if (iguais) {
        return ::testing::AssertionSuccess();
    }
    return diferencas;
}

}  // namespace teste
