#include "eval/tables.h"

namespace ondrel {
namespace {

constexpr int peak_height = 10;        // twice the value on the peak itself
constexpr int king_peak_height = 500;  // a bare king seeks the centre

// A peak on (f, r as the colour sees it), falling off with the squared distance.
void fill_peak(std::array<IntTable, 2>& table, Colour c, int height, int f, int r) {
    for (int i = 0; i < squares; ++i) {
        table[c][i] = height / proximidade(i, square(f, relative_rank(c, r)));
    }
}

}  // namespace

void fill_tables_of_new_game(Colour c) {
    fill_peak(tables.posix_peao_inici, c, peak_height, 4, 3);
    fill_peak(tables.posix_cavalo, c, peak_height, 4, 4);
}

void fill_tables(Colour c) {
    fill_tables_of_new_game(c);
    fill_peak(tables.posix_bispo, c, peak_height, 3, 4);  // the bishop alone peaks on file d
    fill_peak(tables.posix_dama, c, peak_height, 4, 5);
    fill_peak(tables.posix_reifinal, c, king_peak_height, 4, 3);
    tables.posix_torre[c] = {};
    constexpr std::array<int, 8> pawn_by_rank{0, 0, 0, 1, 2, 5, 12, 25};
    for (int i = 0; i < squares; ++i) {
        tables.posix_peao_medio[c][i] = pawn_by_rank[relative_rank(c, rank_of(i))];
    }
}

}  // namespace ondrel
