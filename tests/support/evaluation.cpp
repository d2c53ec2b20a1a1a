#include "support/evaluation.h"

#include "eval/estimate.h"
#include "eval/leaf.h"
#include "eval/leaf_sums.h"
#include "eval/root_trial.h"
#include "eval/root_walk.h"
#include "eval/strategy.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace tests {

using namespace ondrel;

// --- Leaves and root moves ---

Colour place_leaf(std::string_view fen) {
    const Colour own = place_fen(fen);
    trial.tab2 = tab;
    return own;
}

void change_leaf(std::string_view field) {
    trial.tab2 = {};
    int f = 0;
    int r = 7;
    for (const char x : field) {
        if (x == '/') {
            f = 0;
            --r;
        } else if (x >= '1' && x <= '8') {
            f += x - '0';
        } else {
            constexpr std::string_view letters = "pnbrqk";
            const bool is_black = x >= 'a';
            const std::size_t which = letters.find(static_cast<char>(is_black ? x : x - 'A' + 'a'));
            trial.tab2[square(f++, r)] = man(is_black ? black : white, piece_order.at(which));
        }
    }
}

std::string field_of(const rules::Position& p) {
    const std::string fen = rules::to_fen(p);
    return fen.substr(0, fen.find(' '));
}

void remember_kings() {
    trial.p_xy_R = {square_of("e1"), square_of("e8")};
    for (const Colour c : colours) {
        for (int i = 0; i < squares; ++i) {
            if (trial.tab2[i] == code(c, rei)) {
                trial.p_xy_R[c] = i;
            }
        }
    }
}

void set_phase(int men, float major) {
    root.npecas = {men / 2, men - men / 2};
    root.materialmaior = {major, major};
}

float judge(Colour own, Colour stm) {
    count_in_sets(own, stm, counted);
    sum_in_order(own, stm, counted);
    with_colours(own, stm, [](auto us, auto stm) {
        us() == stm() ? extra_eval<us()>(pass.roque) : extra_evall<us()>(pass.roque);
    });
    return judgement.extraeval;
}

float judge_root_move(Colour own) {
    counted = with_colours(own, other(own), [](auto, auto stm) {
        return count_all<stm(), AllCounters<LegalMove>>(trial.tab2, trial.p_xy_R);
    });
    classify_trial(own);
    return judgement.extraevalll;
}

void try_root_move(Colour c, Move m) { c == white ? init_tabuleiro2<white>(m) : init_tabuleiro2<black>(m); }

void classify_trial(Colour c) {
    c == white ? verifica_estrategia<white>(pass.roque) : verifica_estrategia<black>(pass.roque);
}

bool estimate(Colour own, Colour stm) {
    return with_colours(own, stm, [](auto us, auto stm) {
        return estimate_leaf<us(), stm()>({piece_sets(trial.tab2), trial.p_xy_R, pass.roque}) != Known::not_at_all;
    });
}

void judge_estimated(Colour own, Colour stm) {
    with_colours(own, stm, [](auto us, auto stm) {
        judge_estimated_leaf<us(), stm()>({piece_sets(trial.tab2), trial.p_xy_R, pass.roque});
    });
}

void count_in_sets(Colour own, Colour stm, Counters& counters) {
    with_colours(own, stm,
                 [&](auto, auto stm) { ondrel::count_in_sets<stm()>(piece_sets(trial.tab2), trial.p_xy_R, counters); });
}

void sum_in_order(Colour own, Colour stm, Counters& counters) {
    with_colours(own, stm, [&](auto, auto stm) {
        const PieceSets sets = piece_sets(trial.tab2);
        ondrel::sum_in_order<stm()>(view_of(trial.tab2, sets, trial.p_xy_R), counters);
    });
}

Counters count_all_of_leaf(Colour own, Colour stm) {
    return with_colours(
        own, stm, [](auto, auto stm) { return count_all<stm(), AllCounters<EveryMove>>(trial.tab2, trial.p_xy_R); });
}

Counters count_root() {
    prepare_weights(side_to_search());
    return count_all<white, AllCounters<LegalMove, false>>(tab, trial.p_xy_R);
}

// --- Sums worked out by hand ---

float sum_of_inverses(std::initializer_list<int> distances) {
    float total = 0;
    for (const int d : distances) {
        total = static_cast<float>(static_cast<double>(total) + 1.0 / d);
    }
    return total;
}

float sum_of_terms(std::initializer_list<double> terms) {
    float total = 0;
    for (const double t : terms) {
        total = static_cast<float>(static_cast<double>(total) + t);
    }
    return total;
}

namespace {

// The squared distance to the middle of the board, plus 2.
double distance_to_middle(std::string_view name) {
    const double f = name[0] - 'a' - 3.5;
    const double r = name[1] - '1' - 3.5;
    return f * f + r * r + 2.0;
}

}  // namespace

double centro_on(std::string_view name) {
    return static_cast<double>(static_cast<float>(1.0 / distance_to_middle(name)));
}

float sum_of_centroo(std::initializer_list<std::string_view> names) {
    float total = 0;
    for (const std::string_view name : names) {
        const auto weight = static_cast<float>(50.0 / distance_to_middle(name));
        total = static_cast<float>(static_cast<double>(total) + static_cast<double>(weight));
    }
    return total;
}

int distance(std::string_view a, std::string_view b) {
    const int files = a[0] - b[0];
    const int ranks = a[1] - b[1];
    return files * files + ranks * ranks + 2;
}

// --- Comparison ---

bool same_bits(float a, float b) {
    if (std::isnan(a) || std::isnan(b)) {
        return std::isnan(a) && std::isnan(b);
    }
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

namespace {

// What differs, told one after the other.
class Comparison {
public:
    void whole_numbers(const SideCounters& expected, const SideCounters& found) {
        whole("mobilidade", expected.mobilidade, found.mobilidade);
        whole("alvos", expected.alvos, found.alvos);
        whole("apoios", expected.apoios, found.apoios);
        whole("pecas", expected.pecas, found.pecas);
        whole("peoes", expected.peoes, found.peoes);
        whole("pontos", expected.pontos, found.pontos);
        whole("avanco", expected.avanco, found.avanco);
        whole("abrigo", expected.abrigo, found.abrigo);
        whole("lowest_file", expected.lowest_file, found.lowest_file);
        whole("highest_file", expected.highest_file, found.highest_file);
        whole("lowest_rank", expected.lowest_rank, found.lowest_rank);
        whole("highest_rank", expected.highest_rank, found.highest_rank);
        whole("caixa", expected.caixa(), found.caixa());
    }
    void sums(const SideCounters& expected, const SideCounters& found) {
        real("posicao", expected.posicao, found.posicao);
        real("centro", expected.centro, found.centro);
        real("atack_ksf", expected.atack_ksf, found.atack_ksf);
        real("defesa_ksf", expected.defesa_ksf, found.defesa_ksf);
    }
    [[nodiscard]] ::testing::AssertionResult result() const {
        return equal_ ? ::testing::AssertionSuccess() : differences_;
    }

private:
    bool equal_ = true;
    ::testing::AssertionResult differences_ = ::testing::AssertionFailure();

    void whole(const char* name, int a, int b) { compare(name, a, b, a == b); }
    void real(const char* name, float a, float b) { compare(name, a, b, same_bits(a, b)); }
    template <class T>
    void compare(const char* name, T a, T b, bool same) {
        if (!same) {
            equal_ = false;
            differences_ << name << ": " << ::testing::PrintToString(b) << " for " << ::testing::PrintToString(a)
                         << "; ";
        }
    }
};

}  // namespace

::testing::AssertionResult counts_like(const SideCounters& expected, const SideCounters& found) {
    Comparison x;
    x.sums(expected, found);
    x.whole_numbers(expected, found);
    return x.result();
}

::testing::AssertionResult counts_like(const Counters& expected, const Counters& found) {
    for (const Colour c : colours) {
        if (::testing::AssertionResult result = counts_like(expected[c], found[c]); !result) {
            return result << (c == white ? "of White" : "of Black");
        }
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult counts_whole_numbers_like(const SideCounters& expected, const SideCounters& found) {
    Comparison x;
    x.whole_numbers(expected, found);
    return x.result();
}

// --- By chance ---

float option_step(Chance& chance, float last) {
    const int d = chance.below(10);
    return d == 9 ? last : static_cast<float>(d);
}

void vary_options(Chance& chance) {
    options.agres = option_step(chance, 9);
    options.agresprxrei = option_step(chance, 9);
    options.MOB = option_step(chance, 10);
    options.PM = option_step(chance, 10);
    options.roque_v = static_cast<int>(option_step(chance, 10));
    options.agreschrei = static_cast<int>(option_step(chance, 10));
    options.matrix = chance.below(2);
}

void vary_line(Chance& chance) {
    pass.roque = {chance.coin() ? chance.below(4) : 0, chance.coin() ? chance.below(4) : 0};
    judgement.extraevalll = static_cast<float>(chance.below(2000) - 1000) / 700.0F;
    root.regimen = static_cast<float>(chance.below(4000) - 2000) / 130.0F;
}

void vary_phase(Chance& chance) {
    const int men = chance.one_of(std::array{0, 1, 10, 11, 14, 15, 30});
    root.npecas[white] = chance.below(men + 1);
    root.npecas[black] = men - root.npecas[white];
    for (const Colour c : colours) {
        root.materialmaior[c] = chance.one_of(std::array{0.0F, 82.0F, 90.0F, 90.5F, 96.0F, 320.0F});
    }
}

void vary_kings(Chance& chance) { trial.p_xy_R = {chance.below(squares), chance.below(squares)}; }

void fill_board(Chance& chance) {
    const int density = chance.below(9);
    const int only_kind = chance.below(12);  // some boards hold one kind alone
    trial.tab2 = {};
    for (auto& x : trial.tab2) {
        if (chance.below(8) < density) {
            const Piece kind = piece_order.at(static_cast<std::size_t>(only_kind < 6 ? only_kind : chance.below(6)));
            x = man(chance.coin() ? white : black, kind);
        }
    }
    // One king each there is, so that each colour has a box.
    trial.tab2.at(static_cast<std::size_t>(chance.below(32))) = man(white, rei);
    trial.tab2.at(32 + static_cast<std::size_t>(chance.below(32))) = man(black, rei);
}

}  // namespace tests
