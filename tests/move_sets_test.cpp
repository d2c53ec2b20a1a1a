// Whole move sets of the engine, held against an independent generator: on every position the legal moves, each once.
// A legal move stands for all its promotions, as the search promotes to the queen alone.
#include "support/engine.h"
#include "support/moves.h"
#include "support/plain_chess.h"

#include "base/bounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

namespace {

using namespace teste;
using plain::Move;
using plain::Position;

// --- The positions ---

const std::vector<Position>& posicoes() {
    static const std::vector<Position> todas = [] {
        std::vector<Position> lidas = plain::data_positions("positions.fen");
        const std::vector<Position> jogadas = plain::positions_from_random_games(20260711, 4, 160);
        lidas.insert(lidas.end(), jogadas.begin(), jogadas.end());
        return lidas;
    }();
    return todas;
}

// Every `passo`-th position from `primeira` on.
std::vector<Position> amostra(std::size_t primeira, std::size_t passo) {
    std::vector<Position> escolhidas;
    for (std::size_t i = primeira; i < posicoes().size(); i += passo) {
        escolhidas.push_back(posicoes()[i]);
    }
    return escolhidas;
}

// --- What is expected ---

std::string nome(const Move& m) { return plain::to_uci(m).substr(0, 4); }

bool promove_a_outra(const Move& m) { return m.promotion != 0 && m.promotion != 'q'; }

// The legal moves, sorted; under-promotions left out, en passant as often as told.
Textos lances_legais(const Position& p, int vezes_en_passant) {
    Textos legais;
    for (const Move& m : plain::legal_moves(p)) {
        if (!promove_a_outra(m)) {
            legais.insert(legais.end(), plain::is_en_passant(p, m) ? vezes_en_passant : 1, nome(m));
        }
    }
    return em_ordem(legais);
}

// Of ply 1, en passant is tried with the captures of pawns and again with the quiet pawn moves.
int vezes_en_passant(int n) { return n == 1 ? 2 : 1; }

// --- The replies ---

class Replies : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override { processo_novo(); }

    // The moves tried at the ply, with what `guarda` puts into its slots.
    template <class F>
    static Textos tentados(const Position& p, F guarda) {
        monta_ply(GetParam(), plain::to_fen(p));
        guarda();
        return em_ordem(textos(lances_tentados(GetParam())));
    }
    static Textos tentados(const Position& p) {
        return tentados(p, [] {});
    }
};

TEST_P(Replies, AreTheLegalMovesEachOnce) {
    const int n = GetParam();
    ASSERT_GE(posicoes().size(), 1200U);
    for (const Position& p : posicoes()) {
        EXPECT_EQ(tentados(p), lances_legais(p, vezes_en_passant(n))) << "ply " << n << ' ' << plain::to_fen(p);
    }
}

TEST_P(Replies, AreTheSameWithStoredMoves) {
    const int n = GetParam();
    std::size_t escolha = 0;
    for (const Position& p : posicoes()) {
        std::vector<Move> capturas;
        std::vector<Move> livres;
        for (const Move& m : plain::legal_moves(p)) {
            if (promove_a_outra(m)) {
                continue;
            }
            // At ply 1 castling and en passant stand with the captures, elsewhere with the quiet moves.
            const bool especial = plain::is_castling(p, m) || plain::is_en_passant(p, m);
            (especial ? n == 1 : plain::is_capture(p, m) ? true : false) ? capturas.push_back(m) : livres.push_back(m);
        }
        ++escolha;
        Textos esperados = lances_legais(p, vezes_en_passant(n));
        const Move* captura = capturas.empty() ? nullptr : &capturas[escolha % capturas.size()];
        const Move* livre = livres.empty() ? nullptr : &livres[escolha % livres.size()];
        if (n == 1 && captura != nullptr && plain::is_en_passant(p, *captura)) {
            // A stored en passant is passed by among the captures, and the test form finds no victim on its square:
            // the quiet walk alone tries it.
            esperados.erase(std::find(esperados.begin(), esperados.end(), nome(*captura)));
        }
        const auto guarda = [&] {
            if (captura != nullptr) {
                const Lance m = lance(nome(*captura));
                ondrel::aag_ddg[n] = n == 1 ? m : Lance{m.c, m.d, m.a, m.b};
            }
            if (livre != nullptr) {
                ondrel::aa_dd[n] = lance(nome(*livre));
            }
        };
        EXPECT_EQ(tentados(p, guarda), esperados)
            << "ply " << n << ' ' << plain::to_fen(p) << ' ' << (captura ? nome(*captura) : "-") << ' '
            << (livre ? nome(*livre) : "-");
    }
}

// Slots outlive the node that filled them: most of what they hold fits no later position.
TEST_P(Replies, AreTheSameWithStaleSlots) {
    const int n = GetParam();
    Move de_antes = plain::legal_moves(plain::start_position()).front();
    for (const Position& p : posicoes()) {
        const Lance m = lance(nome(de_antes));
        const bool en_passant_guardado = n == 1 && plain::is_legal(p, de_antes) && plain::is_en_passant(p, de_antes);
        if (!en_passant_guardado) {
            const auto guarda = [&] {
                ondrel::aag_ddg[n] = n == 1 ? m : Lance{m.c, m.d, m.a, m.b};
                ondrel::aa_dd[n] = m;
            };
            EXPECT_EQ(tentados(p, guarda), lances_legais(p, vezes_en_passant(n)))
                << "ply " << n << ' ' << plain::to_fen(p) << ' ' << nome(de_antes);
        }
        if (const std::vector<Move> legais = plain::legal_moves(p); !legais.empty()) {
            de_antes = legais[legais.size() / 2];
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OfPly, Replies, ::testing::Range(1, 24));

// --- The root ---

// White's long castling with check is judged by the short side: its squares, its check.
bool curto_da_xeque(const Position& p) {
    if (plain::is_attacked(p, 5, 0, false)) {
        return false;
    }
    Position rocada = p;
    rocada.put(4, 0, plain::empty_square);
    rocada.put(7, 0, plain::empty_square);
    rocada.put(5, 0, 'R');
    rocada.put(6, 0, 'K');
    return !plain::is_attacked(rocada, 6, 0, false) && plain::in_check(rocada, false);
}

// Rights, empty squares between and no check: all that is known of a castling before its squares are tested.
bool pode_tentar_o_longo_das_brancas(const Position& p) {
    return p.white_to_move && p.white_castles_long && !plain::in_check(p, true) && p.at(1, 0) == plain::empty_square &&
           p.at(2, 0) == plain::empty_square && p.at(3, 0) == plain::empty_square;
}

bool roque_longo_das_brancas(const Position& p, const Move& m) {
    return p.white_to_move && nome(m) == "e1c1" && plain::is_castling(p, m);
}

Textos lances_da_raiz_esperados(const Position& p) {
    Textos esperados;
    for (const Move& m : plain::legal_moves(p)) {
        if (!promove_a_outra(m) && !(roque_longo_das_brancas(p, m) && plain::gives_check(p, m))) {
            esperados.push_back(nome(m));
        }
    }
    if (pode_tentar_o_longo_das_brancas(p) && curto_da_xeque(p)) {
        esperados.emplace_back("e1c1");
    }
    return em_ordem(esperados);
}

void tira_roques(const Position& p, Textos& lances) {
    const char torre_longa = p.white_to_move ? 'K' : 'k';
    const int base = p.white_to_move ? 0 : 7;
    if (p.at(4, base) == torre_longa) {
        std::erase_if(lances, [&](const std::string& m) {
            return m == (p.white_to_move ? "e1g1" : "e8g8") || m == (p.white_to_move ? "e1c1" : "e8c8");
        });
    }
}

// Each temperament takes a third of all positions, in shares.
constexpr std::size_t partes = 3;

std::vector<Position> amostra_da_raiz(int temperamento, std::size_t parte) {
    return amostra(static_cast<std::size_t>(temperamento) - 1 + 3 * parte, 3 * partes);
}

// A temperament and a share of the positions.
class RootMoves : public ::testing::TestWithParam<std::tuple<int, std::size_t>> {
protected:
    void SetUp() override {
        processo_novo();
        ondrel::Temperamento = std::get<0>(GetParam());
    }
};

TEST_P(RootMoves, AreTheLegalMovesEachOnce) {
    const auto [temperamento, parte] = GetParam();
    for (const Position& p : amostra_da_raiz(temperamento, parte)) {
        coloca_fen(plain::to_fen(p));
        Textos esperados = lances_da_raiz_esperados(p);
        if (!esperados.empty()) {
            ondrel::aab_ddb = lance(esperados[esperados.size() / 2]);  // a pass over all moves asks for no best move
        }
        Textos tentados = em_ordem(textos(lances_da_raiz()));
        if (temperamento == 1) {
            // Castling has no trial of its own: its class is made of what the last trial left. In the "positional"
            // schedule pawns share its sweep, so that its class may change from visit to visit.
            for (const std::string& m : tentados) {
                EXPECT_GT(quantos(esperados, m), 0) << m << ' ' << plain::to_fen(p);
            }
            tira_roques(p, tentados);
            tira_roques(p, esperados);
        }
        EXPECT_EQ(tentados, esperados) << plain::to_fen(p);
    }
}

TEST(RootMovesSample, HoldsEveryKindOfMove) {
    std::size_t quantas = 0;
    int roques = 0;
    int en_passant = 0;
    int promocoes = 0;
    int fins = 0;
    int rei_so = 0;
    for (const int temperamento : {1, 2, 3}) {
        for (std::size_t parte = 0; parte < partes; ++parte) {
            for (const Position& p : amostra_da_raiz(temperamento, parte)) {
                ++quantas;
                const std::vector<Move> legais = plain::legal_moves(p);
                const auto ha = [&](auto pergunta) {
                    return std::any_of(legais.begin(), legais.end(), pergunta) ? 1 : 0;
                };
                roques += ha([&](const Move& m) { return plain::is_castling(p, m); });
                en_passant += ha([&](const Move& m) { return plain::is_en_passant(p, m); });
                promocoes += ha([](const Move& m) { return m.promotion != 0; });
                fins += legais.empty() ? 1 : 0;
                rei_so += std::none_of(p.squares.begin(), p.squares.end(), [&](signed char x) {
                    return x != 'k' && x != 'K' && x != plain::empty_square && (x >= 'a') == p.white_to_move;
                });
            }
        }
    }
    EXPECT_GE(quantas, 1200U);
    EXPECT_GE(roques, 10);
    EXPECT_GE(en_passant, 10);
    EXPECT_GE(promocoes, 10);
    EXPECT_GE(fins, 3);
    EXPECT_GE(rei_so, 3);  // the bare-king schedule
}

INSTANTIATE_TEST_SUITE_P(OfTemperament, RootMoves,
                         ::testing::Combine(::testing::Values(1, 2, 3), ::testing::Range<std::size_t>(0, partes)));

}  // namespace
