#include "eval/leaf_sums.h"

#include <cstring>

namespace ondrel {
namespace {

// What an attacked square adds to the sum of a king, by the king's square.
constexpr std::array<BySquare, squares> king_shares = [] {
    std::array<BySquare, squares> t{};
    for (int i = 0; i < squares; ++i) {
        for (int j = 0; j < squares; ++j) {
            t[i][j] = 1.0 / nearness[i][j];
        }
    }
    return t;
}();

// Squares attacked by each colour, in the order of summation: room for a board full of queens, and to copy past the end.
constexpr int most_marks = 64 * 27 + 16;
std::array<std::array<std::uint8_t, most_marks>, 2> marks;

// Two sums side by side, in double but rounded to float at every step, as the rule demands.
using TwoDoubles = double __attribute__((vector_size(16)));
using TwoFloats = float __attribute__((vector_size(8)));

// The sums of one colour over the squares that it attacks. Each addition waits for the one before it, so that the walk
// goes on in their shadow, and the sums of both colours run side by side.
struct Chain {
    const std::uint8_t* next = nullptr;
    const double* to_enemy_king = nullptr;  // shares by square
    const double* to_own_king = nullptr;
    TwoDoubles king{0, 0};  // atack_ksf, defesa_ksf
    float centro = 0;

    void add_one() {
        const int i = *next++;
        const TwoDoubles shares{to_enemy_king[i], to_own_king[i]};
        king = __builtin_convertvector(__builtin_convertvector(king + shares, TwoFloats), TwoDoubles);
        centro += centroo[i];
    }
    // Takes up what the walk has found so far, if it is enough.
    void take_up(const std::uint8_t* end) {
        if (end - next >= 4) {
            add_one();
            add_one();
            add_one();
            add_one();
        }
    }
};

// The sink of the walk.
struct LeafSums {
    static constexpr bool counts = false;

    struct Cursor {
        std::uint8_t* end;
        void mark(const std::uint8_t* in_order, int n) {
            std::memcpy(end, in_order, sizeof(RaySquares));
            end += n;
        }
    };

    std::array<std::uint8_t*, 2> end{marks[white].data(), marks[black].data()};
    std::array<float, 2> posicao{};
    std::array<Chain, 2> chain;

    explicit LeafSums(const std::array<int, 2>& king) {
        for (const Colour c : {white, black}) {
            chain[c] = {marks[c].data(), king_shares[king[other(c)]].data(), king_shares[king[c]].data()};
        }
    }

    [[nodiscard]] Cursor cursor(Colour c) const { return {end[c]}; }
    void commit(Colour c, Cursor cursor) { end[c] = cursor.end; }
    // A float and an integer of this size: one rounding, in float as in double.
    void whole(Colour c, int term) { posicao[c] += static_cast<float>(term); }
    void real(Colour c, double term) { add_term(posicao[c], term); }
    void man_done() {
        chain[white].take_up(end[white]);
        chain[black].take_up(end[black]);
    }
};

// What the walk has left of the chains.
void add_rest(LeafSums& s) {
    Chain w = s.chain[white];
    Chain b = s.chain[black];
    while (w.next != s.end[white] && b.next != s.end[black]) {
        w.add_one();
        b.add_one();
    }
    while (w.next != s.end[white]) {
        w.add_one();
    }
    while (b.next != s.end[black]) {
        b.add_one();
    }
    s.chain = {w, b};
}

}  // namespace

template <Colour stm>
void sum_in_order(const View& v, Counters& counters) {
    LeafSums s(v.king);
    walk<stm>(v, s);
    add_rest(s);
    for (const Colour c : {white, black}) {
        counters[c].posicao = s.posicao[c];
        counters[c].atack_ksf = static_cast<float>(s.chain[c].king[0]);
        counters[c].defesa_ksf = static_cast<float>(s.chain[c].king[1]);
        counters[c].centro = s.chain[c].centro;
    }
}

template void sum_in_order<white>(const View& v, Counters& counters);
template void sum_in_order<black>(const View& v, Counters& counters);

}  // namespace ondrel
