#include "support/plain_eval.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <utility>
#include <vector>

namespace plain {
namespace {

constexpr int pawn = 10;
constexpr int knight = 32;
constexpr int bishop = 33;
constexpr int rook = 50;
constexpr int queen = 90;
constexpr int king = 110;

constexpr float few_pieces = 90.0F;  // piece material up to which the other side plays an end game
constexpr float bound = 50.0F;       // of the judgement of a leaf

struct Step {
    int file, rank;
};

// In the order of summation: the rounding of the sums depends on it.
constexpr std::array<Step, 8> knight_steps{{{2, 1}, {2, -1}, {-2, -1}, {-2, 1}, {-1, 2}, {1, 2}, {1, -2}, {-1, -2}}};
constexpr std::array<Step, 8> king_steps{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {-1, -1}, {1, 1}, {-1, 1}, {1, -1}}};
constexpr std::array<Step, 4> rook_steps{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};
constexpr std::array<Step, 4> bishop_steps{{{1, 1}, {1, -1}, {-1, -1}, {-1, 1}}};
constexpr std::array<Step, 8> queen_steps{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, -1}, {-1, 1}}};

bool on_board(int f, int r) { return f >= 0 && f < 8 && r >= 0 && r < 8; }
int index(int f, int r) { return f * 8 + r; }
int file_of(int square) { return square / 8; }
int rank_of(int square) { return square % 8; }

int colour_of(int x) { return x > 0 ? 0 : 1; }
int code(int colour, int kind) { return colour == 0 ? kind : -kind; }
bool belongs(int x, int colour) { return x != 0 && colour_of(x) == colour; }
int forward(int colour) { return colour == 0 ? 1 : -1; }
// A rank as the colour counts it: its own first rank is 0.
int rank_seen_by(int colour, int r) { return colour == 0 ? r : 7 - r; }

int squared(int n) { return n * n; }

// A square or nothing: 0 stands for an empty square and for one off the board.
int man_on(const Board& b, int f, int r) { return on_board(f, r) ? b[index(f, r)] : 0; }

void add(float& sum, double term) { sum = static_cast<float>(static_cast<double>(sum) + term); }

std::span<const Step> steps_of(int kind) {
    switch (kind) {
        case knight: return knight_steps;
        case bishop: return bishop_steps;
        case rook: return rook_steps;
        case queen: return queen_steps;
        default: return king_steps;
    }
}

bool slides(int kind) { return kind == bishop || kind == rook || kind == queen; }

struct Target {
    int square;
    Step step;
};

// The squares that a piece or king attacks, in the order of its directions, nearest first; the first man on a ray
// is attacked, whoever's it is.
std::vector<Target> attacked_squares(const Board& b, int square, int kind) {
    std::vector<Target> found;
    for (const Step& step : steps_of(kind)) {
        int f = file_of(square) + step.file;
        int r = rank_of(square) + step.rank;
        while (on_board(f, r)) {
            found.push_back({index(f, r), step});
            if (!slides(kind) || b[index(f, r)] != 0) {
                break;
            }
            f += step.file;
            r += step.rank;
        }
    }
    return found;
}

// The forward diagonals of a pawn that exist, the higher file first.
std::vector<int> pawn_diagonals(int square, int colour) {
    std::vector<int> found;
    for (int side : {1, -1}) {
        const int f = file_of(square) + side;
        const int r = rank_of(square) + forward(colour);
        if (on_board(f, r)) {
            found.push_back(index(f, r));
        }
    }
    return found;
}

int by_distance(int numerator, int square, int f, int r) {
    return numerator / (squared(file_of(square) - f) + squared(rank_of(square) - r) + 2);
}

double distance_to_middle(int square) {
    const double f = file_of(square) - 3.5;
    const double r = rank_of(square) - 3.5;
    return f * f + r * r + 2.0;
}

// The plain transfer, with the queen of a pawn that arrives; no en passant, no castling.
Board transferred(Board b, int from, int to) {
    const int x = b[from];
    b[from] = 0;
    b[to] = x;
    if (std::abs(x) == pawn && rank_seen_by(colour_of(x), rank_of(to)) == 7) {
        b[to] = code(colour_of(x), queen);
    }
    return b;
}

bool legal(const Board& b, int from, int to) { return !king_attacked(transferred(b, from, to), colour_of(b[from])); }

bool square_attacked(const Board& b, int square, int by) {
    for (int from = 0; from < 64; ++from) {
        if (!belongs(b[from], by)) {
            continue;
        }
        const int kind = std::abs(b[from]);
        if (kind == pawn) {
            const std::vector<int> diagonals = pawn_diagonals(from, by);
            if (std::find(diagonals.begin(), diagonals.end(), square) != diagonals.end()) {
                return true;
            }
            continue;
        }
        for (const Target& target : attacked_squares(b, from, kind)) {
            if (target.square == square) {
                return true;
            }
        }
    }
    return false;
}

int points_of(int kind) {
    switch (kind) {
        case knight:
        case bishop: return 3;
        case rook: return 5;
        default: return 9;
    }
}

int men_of(const Board& b, int x) { return static_cast<int>(std::count(b.begin(), b.end(), x)); }

// Neither side can win with what it has.
bool dead_draw(const Board& b) {
    for (int c : {0, 1}) {
        if (men_of(b, code(c, pawn)) + men_of(b, code(c, rook)) + men_of(b, code(c, queen)) > 0) {
            return false;
        }
        const int knights = men_of(b, code(c, knight));
        const int bishops = men_of(b, code(c, bishop));
        const bool only_knights = bishops == 0 && knights <= 2;
        const bool only_a_bishop = knights == 0 && bishops <= 1;
        if (!only_knights && !only_a_bishop) {
            return false;
        }
    }
    return true;
}

// --- The walk ---

struct Walker {
    const EvalInput& in;
    int own;
    int stm;
    bool legal_mobility;
    Walk out{};

    [[nodiscard]] SideCounts& side(int c) { return out.side[c]; }
    [[nodiscard]] int at(int square) const { return in.board[square]; }
    // From the remembered square of the colour's king.
    [[nodiscard]] double proximidade(int square, int c) const {
        return squared(file_of(square) - in.king_file[c]) + squared(rank_of(square) - in.king_rank[c]) + 2;
    }
    [[nodiscard]] int all_men() const { return in.men[0] + in.men[1]; }
    [[nodiscard]] bool enemy_has_pieces(int c) const { return in.piece_material[1 - c] > few_pieces; }
    [[nodiscard]] double proximity_scale(int c) const { return c == own ? in.agresprxrei : 1.0; }

    void mark(int square, int c) {
        add(side(c).centro, plain::centroo(square));
        add(side(c).atack_ksf, 1.0 / proximidade(square, 1 - c));
        add(side(c).defesa_ksf, 1.0 / proximidade(square, c));
    }

    void count_move(int from, int to) {
        if (!legal_mobility || legal(in.board, from, to)) {
            ++side(colour_of(at(from))).mobilidade;
        }
    }

    void count_advance(int square, int c) { side(c).avanco += rank_seen_by(c, rank_of(square)) + 1; }

    void widen_box(int square, int c) {
        SideCounts& s = side(c);
        s.lowest_file = std::min(s.lowest_file, file_of(square));
        s.highest_file = std::max(s.highest_file, file_of(square));
        s.lowest_rank = std::min(s.lowest_rank, rank_of(square));
        s.highest_rank = std::max(s.highest_rank, rank_of(square));
    }

    void count_piece(int square, int c, int kind) {
        ++side(c).pecas;
        side(c).pontos += points_of(kind);
        count_advance(square, c);
    }

    void shelter(int square, int c) {
        const int beside = file_of(square) - in.king_file[c];
        const int ahead = (rank_of(square) - in.king_rank[c]) * forward(c);
        if (beside >= -1 && beside <= 1 && ahead >= 0 && ahead <= 2) {
            ++side(c).abrigo;
        }
    }

    void close_boxes() {
        for (SideCounts& s : out.side) {
            s.caixa = (s.highest_rank - s.lowest_rank + 1) * (s.highest_file - s.lowest_file + 1);
        }
    }

    // Leaf and root move only, from here on.
    void attack(int from, const Target& target, int kind) {
        const int c = colour_of(at(from));
        const int x = at(target.square);
        SideCounts& s = side(c);
        mark(target.square, c);
        if (x == 0) {
            count_move(from, target.square);
        } else if (!belongs(x, c)) {
            count_move(from, target.square);
            ++s.alvos;
            const bool worth = kind == knight || kind == bishop || kind == rook;
            if (worth && c == stm && std::abs(x) > kind) {
                add(s.posicao, std::abs(x) - kind);
            }
        } else {
            ++s.apoios;
            add_battery(s, kind, std::abs(x), target.step);
        }
    }

    static void add_battery(SideCounts& s, int kind, int defended, const Step& step) {
        if (defended != rook && defended != queen) {
            return;
        }
        if (kind == rook) {
            add(s.posicao, step.rank == 0 ? 3.0 : 5.0);
        } else if (kind == queen) {
            add(s.posicao, 1.0);
        }
    }

    void attacks(int square, int kind) {
        for (const Target& target : attacked_squares(in.board, square, kind)) {
            attack(square, target, kind);
        }
    }

    void place_piece(int square, int c, int kind) {
        float& posicao = side(c).posicao;
        const int f = file_of(square);
        const int r = rank_of(square);
        const bool late = all_men() < 15;
        const double ap = proximity_scale(c);
        const double d = proximidade(square, 1 - c);
        const double middle = plain::centro(square);
        if (kind != rook && rank_seen_by(c, r) != 0) {
            add(posicao, 15.0);
        }
        if (kind == rook && f != 0 && f != 7) {
            add(posicao, 15.0);
        }
        if (kind == knight) {
            add(posicao, late ? 15.0 * ap / d + 10.0 * middle : 5.0 * ap / d + 25.0 * middle);
        }
        if (kind == bishop && (f == r || f + r == 7)) {
            add(posicao, late ? 5.0 : 11.0);
        }
        if (kind == rook && late) {
            add(posicao, 10.0 * ap / d);
        }
        if (kind == rook && all_men() < 11 && rank_seen_by(c, r) >= 6) {
            add(posicao, 11.0);
        }
        if (kind == queen) {
            add(posicao, late ? 25.0 * ap / d + 15.0 * middle : 5.0 * ap / d + 10.0 * middle);
        }
    }

    void piece(int square, int c, int kind) {
        count_piece(square, c, kind);
        place_piece(square, c, kind);
        attacks(square, kind);
    }

    void king_man(int square, int c) {
        float& posicao = side(c).posicao;
        count_advance(square, c);
        widen_box(square, c);
        if (!enemy_has_pieces(c)) {
            add(posicao, 50.0 * static_cast<double>(plain::centro(square)));
        }
        if (in.men[1 - c] == 0) {
            add(posicao, 75.0 * proximity_scale(c) / proximidade(square, 1 - c));
        }
        if (!enemy_has_pieces(c)) {
            attacks(square, king);
        }
    }

    void pawn_man(int square, int c) {
        ++side(c).peoes;
        count_advance(square, c);
        widen_box(square, c);
        if (enemy_has_pieces(c)) {
            shelter(square, c);
            for (int q : pawn_diagonals(square, c)) {
                mark(q, c);
            }
        } else {
            const double promotion = plain::promo(c, square);
            add(side(c).posicao, 100.0 * promotion + 25.0 / proximidade(square, c));
            add(side(1 - c).posicao, 25.0 / proximidade(square, 1 - c));
        }
        pawn_captures(square, c);
        pawn_pushes(square, c);
        pawn_company(square, c);
        breakthrough(square, c);
        passed(square, c);
    }

    [[nodiscard]] bool pawn_behind(int square, int c) const {
        const int f = file_of(square);
        const int r = rank_of(square) - forward(c);
        return man_on(in.board, f + 1, r) == code(c, pawn) || man_on(in.board, f - 1, r) == code(c, pawn);
    }

    void pawn_captures(int square, int c) {
        for (int q : pawn_diagonals(square, c)) {
            const int x = at(q);
            if (!belongs(x, 1 - c)) {
                continue;
            }
            const int value = std::abs(x);
            count_move(square, q);
            ++side(c).alvos;
            if (c == stm) {
                add(side(c).posicao, value * static_cast<double>(in.agres) - 10.0);
            } else if (value > pawn && pawn_behind(square, c)) {
                add(side(c).posicao, value / 2);
            }
        }
    }

    void pawn_pushes(int square, int c) {
        const int f = file_of(square);
        const int r = rank_of(square);
        const int step = forward(c);
        if (!on_board(f, r + step) || at(index(f, r + step)) != 0) {
            return;
        }
        count_move(square, index(f, r + step));
        if (rank_seen_by(c, r) == 1 && at(index(f, r + 2 * step)) == 0) {
            count_move(square, index(f, r + 2 * step));
        }
    }

    void pawn_company(int square, int c) {
        const int f = file_of(square);
        const int r = rank_of(square);
        for (int q : pawn_diagonals(square, c)) {
            if (belongs(at(q), c)) {
                ++side(c).apoios;
            }
        }
        if (rank_seen_by(c, r) == 6) {
            add(side(c).posicao, 100.0);
        }
        for (int beside : {1, -1}) {
            if (man_on(in.board, f + beside, r) == code(c, pawn)) {
                add(side(c).posicao, 13.0);
            }
        }
        for (int q : pawn_diagonals(square, c)) {
            if (at(q) == code(c, pawn)) {
                add(side(c).posicao, 11.0);
            }
        }
    }

    // Can the pawn get through by taking on q?
    void breakthrough(int square, int c) {
        const int f = file_of(square);
        for (int q : pawn_diagonals(square, c)) {
            if (std::abs(at(q)) == pawn) {
                continue;
            }
            const int beyond = f + 2 * (file_of(q) - f);
            const int first = rank_seen_by(c, rank_of(square)) + 2;
            bool clean = first <= 6;
            for (int n = first; n <= 6; ++n) {
                const int r = rank_seen_by(c, n);
                clean = clean && man_on(in.board, f, r) != code(1 - c, pawn) &&
                        man_on(in.board, beyond, r) != code(1 - c, pawn);
            }
            if (clean) {
                add(side(c).posicao, 25.0);
            }
        }
    }

    void passed(int square, int c) {
        const int f = file_of(square);
        const int own_pawn = code(c, pawn);
        const int enemy_pawn = code(1 - c, pawn);
        for (int n = rank_seen_by(c, rank_of(square)) + 1; n <= 6; ++n) {
            const int r = rank_seen_by(c, n);
            const int ahead = man_on(in.board, f, r);
            const int right = man_on(in.board, f + 1, r);
            const int left = man_on(in.board, f - 1, r);
            if (ahead == enemy_pawn || ahead == own_pawn || right == enemy_pawn || left == enemy_pawn) {
                return;
            }
            if (right == own_pawn) {
                add(side(c).posicao, 10.0);
            }
            if (left == own_pawn) {
                add(side(c).posicao, 10.0);
            }
            if (n == 6) {
                add(side(c).posicao, 33.0);
            }
        }
    }

    void man(int square) {
        const int c = colour_of(at(square));
        const int kind = std::abs(at(square));
        if (kind == pawn) {
            pawn_man(square, c);
        } else if (kind == king) {
            king_man(square, c);
        } else {
            piece(square, c, kind);
        }
    }

    // The man of the balance walk: counters and attacks, no positional terms.
    void balance_man(int square) {
        const int c = colour_of(at(square));
        const int kind = std::abs(at(square));
        count_advance(square, c);
        if (kind == pawn) {
            balance_pawn(square, c);
            return;
        }
        if (kind == king) {
            widen_box(square, c);
            if (enemy_has_pieces(c)) {
                return;
            }
        } else {
            ++side(c).pecas;
            side(c).pontos += points_of(kind);
        }
        for (const Target& target : attacked_squares(in.board, square, kind)) {
            mark(target.square, c);
            if (!belongs(at(target.square), c)) {
                count_move(square, target.square);
            }
        }
    }

    void balance_pawn(int square, int c) {
        ++side(c).peoes;
        widen_box(square, c);
        if (enemy_has_pieces(c)) {
            shelter(square, c);
        }
        for (int q : pawn_diagonals(square, c)) {
            if (enemy_has_pieces(c)) {
                mark(q, c);
            }
            if (belongs(at(q), 1 - c)) {
                count_move(square, q);
            }
        }
        pawn_pushes(square, c);
    }
};

// --- The final expressions: all in extended precision, the constants doubles ---

long double ln(long double x, long double y) { return std::log(x / y); }

long double advance_ratio(const SideCounts& s) {
    return (s.avanco + static_cast<long double>(0.1)) / (s.pecas + s.peoes + 1);
}

long double pawn_density(const SideCounts& s) { return static_cast<long double>(s.peoes + 1) / s.caixa; }

long double points_term(const SideCounts& a, const SideCounts& b) {
    return 2 * ln(a.pontos + static_cast<long double>(10.1), b.pontos + static_cast<long double>(10.1));
}

long double shelter_term(const SideCounts& a, const SideCounts& b) {
    return 5 * ln(static_cast<long double>(a.abrigo) + a.defesa_ksf + 3, static_cast<long double>(b.atack_ksf) + 3);
}

long double storm_term(const SideCounts& a, const SideCounts& b) {
    return 5 * ln(static_cast<long double>(a.atack_ksf) + 3, static_cast<long double>(b.abrigo) + b.defesa_ksf + 3);
}

long double mobility_term(float weight, const SideCounts& a, const SideCounts& b) {
    return weight * ln(a.mobilidade + 3, b.mobilidade + 3);
}

long double positional_term(float weight, const SideCounts& a, const SideCounts& b) {
    return weight * ln(static_cast<long double>(a.posicao) + a.centro + static_cast<long double>(10.1),
                       static_cast<long double>(b.posicao) + b.centro + static_cast<long double>(10.1));
}

long double hits_term(double weight, float regimen, const SideCounts& s) {
    return static_cast<long double>(weight) * regimen * ln(s.alvos + 3, s.apoios + 3);
}

bool castled(const EvalInput& in) { return in.castle[0] != 0 || in.castle[1] != 0; }

float castling_term(const EvalInput& in, int own) {
    return static_cast<float>(in.roque_v * ln(in.castle[own] + 3, in.castle[1 - own] + 3));
}

// --- Class ---

enum Kind { P, N, B, R, Q, K };

constexpr std::array<int, 6> kinds{pawn, knight, bishop, rook, queen, king};

int attackers(const std::array<Board, 6>& maps, const std::vector<Kind>& which, int square) {
    int n = 0;
    for (Kind k : which) {
        n += maps[k][square];
    }
    return n;
}

// What the mover threatens on an enemy man's square.
int threat(int kind, int square, const AttackMaps& maps, int mover, bool enemy_has_men, int agreschrei) {
    const auto& mine = maps.by_kind[mover];
    const auto& theirs = maps.by_kind[1 - mover];
    const bool loose = maps.total[1 - mover][square] == 0;
    switch (kind) {
        case king: return enemy_has_men && maps.total[mover][square] != 0 ? 11 * agreschrei : 0;
        case queen: return attackers(mine, {P, B, N, R}, square) != 0 ? 100 : 0;
        case rook:
            if (attackers(mine, {P, B, N}, square) != 0) {
                return 50;
            }
            return attackers(mine, {Q, K}, square) != 0 && loose ? 25 : 0;
        case knight:
            if (attackers(mine, {P}, square) != 0) {
                return 35;
            }
            return attackers(mine, {B, R, Q, K}, square) != 0 && loose ? 17 : 0;
        case bishop:
            if (attackers(mine, {P}, square) != 0) {
                return 30;
            }
            return attackers(mine, {N, R, K}, square) != 0 && loose ? 15 : 0;
        default: {
            const bool no_pawns = attackers(mine, {P}, square) + attackers(theirs, {P}, square) == 0;
            return no_pawns && attackers(mine, {B, N, R, Q, K}, square) != 0 && loose ? 10 : 0;
        }
    }
}

// What the mover leaves in danger on one of its own squares.
int danger(int kind, int square, const AttackMaps& maps, int mover) {
    const auto& mine = maps.by_kind[mover];
    const auto& theirs = maps.by_kind[1 - mover];
    const bool outnumbered = maps.total[1 - mover][square] > maps.total[mover][square];
    const bool no_pawn = attackers(mine, {P}, square) == 0;
    switch (kind) {
        case king: return 0;
        case queen:
            if (attackers(theirs, {P, B, N, R}, square) != 0) {
                return 100;
            }
            return outnumbered && no_pawn && attackers(mine, {B, N, R}, square) <= 1 ? 100 : 0;
        case rook:
            if (attackers(theirs, {P, B, N}, square) != 0) {
                return 50;
            }
            return outnumbered && no_pawn && attackers(mine, {B, N}, square) <= 1 ? 50 : 0;
        case knight:
        case bishop:
            if (attackers(theirs, {P}, square) != 0) {
                return 30;
            }
            return outnumbered && no_pawn ? 30 : 0;
        default: return outnumbered ? 10 : 0;
    }
}

int wrapped_product(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

int scaled(int matriz, int tally, float own_material, float enemy_material) {
    const float q = own_material / enemy_material;
    if (tally < 0) {
        return matriz / (q > 1 ? 3 : q == 1 ? 4 : 5);
    }
    return wrapped_product(matriz, q > 1 ? 5 : q == 1 ? 4 : 3);
}

using Ending = std::pair<float, int>;

bool one_of(const Ending& ending, const std::vector<Ending>& list) {
    return std::find(list.begin(), list.end(), ending) != list.end();
}

bool one_of(float m, const std::vector<float>& list) { return std::find(list.begin(), list.end(), m) != list.end(); }

// A king's move: by the small ending on the board, each sum of codes naming one.
int king_value(const RootMove& move, int mover) {
    const float m = move.material[1 - mover];
    const float w = move.material[mover];
    const int n = move.men[1 - mover];
    const int enemy_king = xr(move.numerator[1 - mover], move.king_file[1 - mover], move.king_rank[1 - mover], move.to);
    const int own_pawn = xp(move.root, mover, move.to);
    const int enemy_pawn = xp(move.root, 1 - mover, move.to);
    int value = 0;
    if (m == 110) {
        value = enemy_king + own_pawn;
    }
    if (w == 110) {
        value = posix_king_final(mover, move.to) + enemy_pawn;
    }
    if (one_of(m, {120, 130, 150}) || (m == 140 && n != 1)) {
        value = enemy_pawn;
    }
    if (one_of(m, {153, 163, 186, 152, 162, 184, 185})) {
        value = enemy_pawn;
    }
    if (one_of(Ending{m, n}, {{173, 4},
                              {183, 5},
                              {196, 4},
                              {206, 5},
                              {216, 6},
                              {172, 4},
                              {182, 5},
                              {194, 4},
                              {204, 5},
                              {214, 6},
                              {195, 4},
                              {205, 5},
                              {215, 6},
                              {170, 2},
                              {180, 3}})) {
        value = enemy_pawn;
    }
    if (w != 110 && one_of(Ending{m, n}, {{142, 1}, {143, 1}, {160, 1}, {174, 2}, {175, 2}, {176, 2}})) {
        value = own_pawn / 5;
    }
    return value;
}

int clamped(int class_value) { return std::clamp(class_value, -100, 100); }

}  // namespace

// --- Positional tables ---

int posix_pawn(int colour, int nb, int square) {
    const int n = rank_seen_by(colour, rank_of(square));
    if (nb < 30) {
        return by_distance(10, index(file_of(square), n), 4, 3);
    }
    if (nb < 70) {
        constexpr std::array<int, 8> middle_game{0, 0, 0, 1, 2, 5, 12, 25};
        return middle_game[n];
    }
    constexpr std::array<int, 8> edge_file{0, 0, 20, 20, 20, 25, 30, 100};
    constexpr std::array<int, 8> inner_file{0, 0, 25, 25, 25, 30, 35, 100};
    return file_of(square) == 0 || file_of(square) == 7 ? edge_file[n] : inner_file[n];
}

int posix_piece(int colour, int kind, int square) {
    const int seen = index(file_of(square), rank_seen_by(colour, rank_of(square)));
    switch (kind) {
        case knight: return by_distance(10, seen, 4, 4);
        case bishop: return by_distance(10, seen, 3, 4);
        case queen: return by_distance(10, seen, 4, 5);
        default: return 0;
    }
}

int posix_king_final(int colour, int square) {
    return by_distance(500, index(file_of(square), rank_seen_by(colour, rank_of(square))), 4, 3);
}

float centro(int square) { return static_cast<float>(1.0 / distance_to_middle(square)); }

float centroo(int square) { return static_cast<float>(50.0 / distance_to_middle(square)); }

float promo(int colour, int square) {
    const int missing = 7 - rank_seen_by(colour, rank_of(square));
    return static_cast<float>(1.0 / (2 * missing * missing + 2));
}

int xr_numerator(float material_before_the_move) { return material_before_the_move == 110.0F ? 375 : 15; }

int xr(int numerator, int king_file, int king_rank, int square) {
    return by_distance(numerator, square, king_file, king_rank);
}

int xp(const Board& root, int colour, int square) {
    int found = -1;
    for (int n = 0; n < 8; ++n) {
        for (int f = 0; f < 8; ++f) {
            const int q = index(f, rank_seen_by(colour, n));
            if (root[q] == code(colour, pawn)) {
                found = q;
            }
        }
    }
    return found < 0 ? 0 : by_distance(75, square, file_of(found), rank_of(found));
}

// --- Leaf evaluation ---

Walk walk(const EvalInput& in, int own, int side_to_move, bool legal_mobility) {
    Walker walker{in, own, side_to_move, legal_mobility};
    for (int square = 0; square < 64; ++square) {
        if (in.board[square] != 0) {
            walker.man(square);
        }
    }
    walker.close_boxes();
    walker.out.dead_draw = dead_draw(in.board);
    return walker.out;
}

float extra_eval(const EvalInput& in, int own, const Walk& counts) {
    const SideCounts& a = counts.side[own];
    const SideCounts& b = counts.side[1 - own];
    long double sum = in.base;
    sum += advance_ratio(a);
    sum += pawn_density(a);
    sum -= advance_ratio(b);
    sum -= pawn_density(b);
    sum += points_term(a, b);
    if (castled(in)) {
        sum += castling_term(in, own);
    }
    sum += hits_term(0.01, in.regimen, a);
    sum += hits_term(0.001, in.regimen, b);
    sum += shelter_term(a, b);
    sum += storm_term(a, b);
    sum += mobility_term(in.MOB, a, b);
    sum += positional_term(in.PM, a, b);
    const auto result = static_cast<float>(sum);
    return result > bound ? bound : result < -bound ? -bound : result;
}

float base_value(const EvalInput& in, int own, const Walk& counts) {
    const SideCounts& a = counts.side[own];
    const SideCounts& b = counts.side[1 - own];
    long double sum = advance_ratio(a);
    sum += pawn_density(a);
    sum -= advance_ratio(b);
    sum -= pawn_density(b);
    sum += points_term(a, b);
    if (castled(in)) {
        sum += castling_term(in, own);
    }
    sum += shelter_term(a, b);
    sum += storm_term(a, b);
    sum += mobility_term(in.MOB, a, b);
    sum += positional_term(in.PM, a, b);
    const auto stored = static_cast<float>(sum);
    long double base = static_cast<long double>(0.01) * stored;
    base += hits_term(0.01, in.regimen, a);
    base += hits_term(0.001, in.regimen, b);
    return static_cast<float>(base);
}

// --- Root position ---

Walk balance_walk(const EvalInput& in) {
    Walker walker{in, 0, 0, true};
    for (int square = 0; square < 64; ++square) {
        if (in.board[square] != 0) {
            walker.balance_man(square);
        }
    }
    walker.close_boxes();
    walker.out.dead_draw = dead_draw(in.board);
    return walker.out;
}

float balance(const EvalInput& in, int own, const std::array<float, 2>& material) {
    const Walk counts = balance_walk(in);
    const SideCounts& a = counts.side[own];
    const SideCounts& b = counts.side[1 - own];
    const auto tenth = static_cast<long double>(0.1);
    long double sum = tenth * ln(material[1 - own] + tenth, material[own] + tenth);
    sum += points_term(a, b);
    sum += shelter_term(a, b);
    sum += storm_term(a, b);
    sum += mobility_term(in.MOB, a, b);
    sum += advance_ratio(b);
    sum -= advance_ratio(a);
    sum += pawn_density(a);
    sum -= pawn_density(b);
    return static_cast<float>(sum);
}

bool king_attacked(const Board& board, int colour) {
    for (int square = 0; square < 64; ++square) {
        if (board[square] == code(colour, king) && square_attacked(board, square, 1 - colour)) {
            return true;
        }
    }
    return false;
}

// --- Class of a root move ---

RootValue root_value(const RootMove& move) {
    const int mover = colour_of(move.piece);
    const int kind = std::abs(move.piece);
    RootValue value;
    if (kind == pawn) {
        value.matriz = posix_pawn(mover, move.nb, move.to);
        value.incentiva_promo = move.nb >= 70;
    } else if (kind == king) {
        value.matriz = king_value(move, mover);
    } else {
        const int enemy = 1 - mover;
        value.matriz = posix_piece(mover, kind, move.to) +
                       xr(move.numerator[enemy], move.king_file[enemy], move.king_rank[enemy], move.to);
    }
    return value;
}

AttackMaps attack_maps(const Board& board) {
    AttackMaps maps;
    for (int square = 0; square < 64; ++square) {
        if (board[square] == 0) {
            continue;
        }
        const int c = colour_of(board[square]);
        const int kind = std::abs(board[square]);
        const auto row = std::find(kinds.begin(), kinds.end(), kind) - kinds.begin();
        std::vector<int> attacked;
        if (kind == pawn) {
            attacked = pawn_diagonals(square, c);
        } else {
            for (const Target& target : attacked_squares(board, square, kind)) {
                attacked.push_back(target.square);
            }
        }
        for (int q : attacked) {
            ++maps.by_kind[c][row][q];
            ++maps.total[c][q];
        }
    }
    return maps;
}

Class classify(const Board& after, const AttackMaps& maps, int mover, const RootValue& value,
               const std::array<float, 2>& material, const std::array<int, 2>& men, int agreschrei, int matrix) {
    int tally = 0;
    for (int square = 0; square < 64; ++square) {
        if (belongs(after[square], 1 - mover)) {
            tally += threat(std::abs(after[square]), square, maps, mover, men[1 - mover] != 0, agreschrei);
        }
        if (belongs(after[square], mover)) {
            tally -= danger(std::abs(after[square]), square, maps, mover);
        }
    }
    Class result;
    result.matriz = value.matriz;
    if (value.incentiva_promo) {
        result.matriz = scaled(value.matriz, tally, material[mover], material[1 - mover]);
    }
    result.ataque = tally + wrapped_product(result.matriz, matrix);
    result.estrategia = clamped(result.ataque);
    return result;
}

Class classify(const Board& after, int mover, const RootValue& value, const std::array<float, 2>& material,
               const std::array<int, 2>& men, int agreschrei, int matrix) {
    return classify(after, attack_maps(after), mover, value, material, men, agreschrei, matrix);
}

}  // namespace plain
