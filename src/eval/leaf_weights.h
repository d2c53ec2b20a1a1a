// What the terms of a leaf weigh during one search.
#pragma once

#include "base/masks.h"
#include "eval/tables.h"

namespace ondrel {

constexpr int maior_proximidade = 100;
using PorProximidade = std::array<double, maior_proximidade + 1>;
using PorCasa = std::array<double, 64>;

struct Pesos {
    // What the rest depends on.
    Cor own = brancas;
    std::array<int, 2> npecas{-1, -1};
    std::array<float, 2> materialmaior{};
    float agresprxrei = 0;

    bool menos_de_15 = false;
    bool menos_de_11 = false;
    std::array<bool, 2> final_para{};  // the enemy of this colour is down to a queen or less
    std::array<bool, 2> inimigo_sem_homens{};
    // Terms by the nearness of the enemy king, by Cor, and by the square.
    std::array<PorProximidade, 2> cavalo{}, torre{}, dama{}, rei{};
    PorCasa centro_do_cavalo{}, centro_da_dama{}, centro_do_rei{};
    int bispo_na_diagonal = 0;
};

// Written by prepara_julgamento alone.
inline Pesos pesos;

// Nearness of two squares by index, and the terms that depend on nothing else.
constexpr std::array<std::array<std::uint8_t, 64>, 64> perto = [] {
    std::array<std::array<std::uint8_t, 64>, 64> t{};
    for (int i = 0; i < 64; ++i) {
        for (int j = 0; j < 64; ++j) {
            t[i][j] = static_cast<std::uint8_t>(proximidade(i / 8, i % 8, j / 8, j % 8));
        }
    }
    return t;
}();
constexpr PorProximidade vinte_e_cinco_avos = [] {
    PorProximidade t{};
    for (int n = 2; n <= maior_proximidade; ++n) {
        t[n] = 25.0 / n;
    }
    return t;
}();

// A pawn draws both kings toward it where the enemy is down to a queen or less: the term of its own colour.
inline double peao_do_final(Cor c, int i, int proprio_rei) {
    return 100.0 * static_cast<double>(promo[c][i]) + vinte_e_cinco_avos[perto[i][proprio_rei]];
}

// Terms that are the same in every position.
constexpr int homem_desenvolvido = 15;    // knight, bishop, queen off the first rank; rook off the edge files
constexpr int torre_adiantada = 11;       // rook on its last two ranks, with few men left
constexpr int torre_apoia_de_lado = 3;    // rook behind an own rook or queen, along the rank
constexpr int torre_apoia_de_frente = 5;  // and along the file
constexpr int dama_apoia = 1;             // queen behind one
constexpr int peao_na_setima = 100;
constexpr int peao_vizinho = 13;  // for each own pawn beside
constexpr int peao_protege = 11;  // for each own pawn diagonally ahead
constexpr int peao_rompe = 25;    // breakthrough
constexpr int peao_ao_lado = 10;  // own pawn beside the way to promotion
constexpr int peao_livre = 33;    // a way without a stop

constexpr Mascara diagonais_longas = 0x8142241818244281U;

}  // namespace ondrel
