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

namespace {

// What differs, told one after the other.
class Comparacao {
public:
    void real(const char* nome, float a, float b) { compara(nome, a, b, mesmos_bits(a, b)); }
    void inteiro(const char* nome, int a, int b) { compara(nome, a, b, a == b); }
    void inteiros(const plain::SideCounts& certo, const Contagem& contado) {
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
    }
    [[nodiscard]] ::testing::AssertionResult resultado() const {
        return iguais_ ? ::testing::AssertionSuccess() : diferencas_;
    }

private:
    bool iguais_ = true;
    ::testing::AssertionResult diferencas_ = ::testing::AssertionFailure();

    template <class T>
    void compara(const char* nome, T a, T b, bool bate) {
        if (!bate) {
            iguais_ = false;
            diferencas_ << nome << ": " << ::testing::PrintToString(b) << " for " << ::testing::PrintToString(a)
                        << "; ";
        }
    }
};

}  // namespace

::testing::AssertionResult conta_como(const plain::SideCounts& certo, const Contagem& contado) {
    Comparacao x;
    x.real("posicao", certo.posicao, contado.posicao);
    x.real("centro", certo.centro, contado.centro);
    x.real("atack_ksf", certo.atack_ksf, contado.atack_ksf);
    x.real("defesa_ksf", certo.defesa_ksf, contado.defesa_ksf);
    x.inteiros(certo, contado);
    return x.resultado();
}

::testing::AssertionResult conta_inteiros_como(const plain::SideCounts& certo, const Contagem& contado) {
    Comparacao x;
    x.inteiros(certo, contado);
    return x.resultado();
}

float degrau(Sorte& sorte, float ultimo) {
    const int d = sorte.ate(10);
    return d == 9 ? ultimo : static_cast<float>(d);
}

void varia_opcoes(Sorte& sorte) {
    agres = degrau(sorte, 9);
    agresprxrei = degrau(sorte, 9);
    MOB = degrau(sorte, 10);
    PM = degrau(sorte, 10);
    roque_v = static_cast<int>(degrau(sorte, 10));
    agreschrei = static_cast<int>(degrau(sorte, 10));
    matrix = sorte.ate(2);
}

void varia_linha(Sorte& sorte) {
    roque = {sorte.sim() ? sorte.ate(4) : 0, sorte.sim() ? sorte.ate(4) : 0};
    extraevalll = static_cast<float>(sorte.ate(2000) - 1000) / 700.0F;
    regimen = static_cast<float>(sorte.ate(4000) - 2000) / 130.0F;
}

void desloca_reis(Sorte& sorte) {
    for (const Cor c : {brancas, pretas}) {
        p_x_R[c] = sorte.ate(8);
        p_y_R[c] = sorte.ate(8);
    }
}

void enche(Sorte& sorte) {
    constexpr std::array<Peca, 6> tipos{peao, cavalo, bispo, torre, dama, rei};
    const int densidade = sorte.ate(9);
    const int so_de = sorte.ate(12);  // some boards hold one kind alone
    tab2 = {};
    for (auto& x : tab2) {
        if (sorte.ate(8) < densidade) {
            const Peca tipo = tipos.at(static_cast<std::size_t>(so_de < 6 ? so_de : sorte.ate(6)));
            x = static_cast<std::int8_t>(codigo(sorte.sim() ? brancas : pretas, tipo));
        }
    }
    // The box of a colour is that of its pawns and kings: one king each there is.
    tab2.at(static_cast<std::size_t>(sorte.ate(32))) = rei;
    tab2.at(static_cast<std::size_t>(32 + sorte.ate(32))) = -rei;
}

}  // namespace teste
