#include "plain/eval.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>

#include "plain/board.h"

namespace plain {

// --- Arithmetic ---

int to_int(long double x) {
    if (x > -2147483649.0L && x < 2147483648.0L) {
        return static_cast<int>(x);
    }
    return INT_MIN;
}

long double ratio(long double above, long double below) {
    constexpr long double infinity = std::numeric_limits<long double>::infinity();
    if (below != 0) {
        return above / below;
    }
    return above > 0 ? infinity : above < 0 ? -infinity : std::numeric_limits<long double>::quiet_NaN();
}

long double log_ratio(long double above, long double below) { return std::log(ratio(above, below)); }

int wrap(unsigned x) { return static_cast<int>(x); }

// Constants are doubles, also where the sum is a long double.
constexpr long double tenth = 0.1;
constexpr long double ten_and_tenth = 10.1;

// Every sum is kept as a float: the term is formed in double and added in double, and the sum is rounded.
static void add(float& sum, double term) { sum = static_cast<float>(static_cast<double>(sum) + term); }

static int square_of(int x) { return x * x; }

// --- Tables ---

struct Tables {
    // By colour and square.
    std::array<std::array<int, 64>, 2> posix_peao_inici{}, posix_peao_medio{}, posix_cavalo{}, posix_bispo{},
        posix_torre{}, posix_dama{}, posix_reifinal{};
    std::array<float, 64> centro{}, centroo{};
    std::array<std::array<float, 64>, 2> promo{};
};
static Tables tables;

// Plain data: ranks for white, on the outer files and on the others.
constexpr std::array<int, 8> end_game_pawn_outer = {0, 0, 20, 20, 20, 25, 30, 100};
constexpr std::array<int, 8> end_game_pawn_inner = {0, 0, 25, 25, 25, 30, 35, 100};
constexpr std::array<int, 8> middle_game_pawn = {0, 0, 0, 1, 2, 5, 12, 25};

static int posix_peao_final(Colour c, int sq) {
    const int rank = rank_of(c, sq % 8);
    return sq / 8 == 0 || sq / 8 == 7 ? end_game_pawn_outer[rank] : end_game_pawn_inner[rank];
}

// The tables peak on a square given for white.
static void fill_peak(std::array<std::array<int, 64>, 2>& table, Colour c, int numerator, int file, int rank) {
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            table[c][at(f, r)] = numerator / (square_of(f - file) + square_of(r - rank_of(c, rank)) + 2);
        }
    }
}

void fill_new_game_tables(Colour c) {
    fill_peak(tables.posix_peao_inici, c, 10, 4, 3);
    fill_peak(tables.posix_cavalo, c, 10, 4, 4);
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            const int sq = at(f, r);
            const double from_centre = (f - 3.5) * (f - 3.5) + (r - 3.5) * (r - 3.5) + 2.0;
            tables.centro[sq] = static_cast<float>(1.0 / from_centre);
            tables.centroo[sq] = static_cast<float>(50.0 / from_centre);
            tables.promo[white][sq] = static_cast<float>(1.0 / (2 * square_of(r - 7) + 2));
            tables.promo[black][sq] = static_cast<float>(1.0 / (2 * square_of(r) + 2));
        }
    }
}

void fill_tables(Colour c) {
    fill_new_game_tables(c);
    fill_peak(tables.posix_bispo, c, 10, 3, 4);
    fill_peak(tables.posix_dama, c, 10, 4, 5);
    fill_peak(tables.posix_reifinal, c, 500, 4, 3);
    tables.posix_torre[c] = {};
    for (int sq = 0; sq < 64; ++sq) {
        tables.posix_peao_medio[c][sq] = middle_game_pawn[rank_of(c, sq % 8)];
    }
}

// --- What a walk of the board counts for one colour ---

struct Counters {
    float posicao = 0, centro = 0, atack_ksf = 0, defesa_ksf = 0;
    int mobilidade = 0, alvos = 0, apoios = 0, pecas = 0, peoes = 0, pontos = 0, avanco = 0, abrigo = 0;
    int knights = 0, bishops = 0, rooks = 0, queens = 0;
    // The box of pawns and king; of a colour that has neither it counts 36.
    int lowest_file = 7, highest_file = 0, lowest_rank = 7, highest_rank = 0;
};

static void widen_box(Counters& side, int f, int r) {
    side.lowest_file = std::min(side.lowest_file, f);
    side.highest_file = std::max(side.highest_file, f);
    side.lowest_rank = std::min(side.lowest_rank, r);
    side.highest_rank = std::max(side.highest_rank, r);
}

static int caixa(const Counters& side) {
    return (side.highest_rank - side.lowest_rank + 1) * (side.highest_file - side.lowest_file + 1);
}

static int proximidade(int f, int r, Colour king) {
    return square_of(f - root.p_x_R[king]) + square_of(r - root.p_y_R[king]) + 2;
}

// King_safety_<c>: the colour attacks the square.
static void mark(Counters& side, Colour c, int f, int r) {
    add(side.centro, tables.centroo[at(f, r)]);
    add(side.atack_ksf, 1.0 / proximidade(f, r, other(c)));
    add(side.defesa_ksf, 1.0 / proximidade(f, r, c));
}

// In front of its own king, by 0 to 2 ranks.
static bool shelters_king(Colour c, int f, int r) {
    const int files = f - root.p_x_R[c];
    const int ranks = (r - root.p_y_R[c]) * ahead(c);
    return files >= -1 && files <= 1 && ranks >= 0 && ranks <= 2;
}

static int points_of(int piece) { return piece == dama ? 9 : piece == torre ? 5 : 3; }

static void count_man(Counters& side, Colour c, int piece, int f, int r) {
    side.avanco += c == white ? r + 1 : 8 - r;
    if (piece == peao) {
        ++side.peoes;
    } else if (piece != rei) {
        ++side.pecas;
        side.pontos += points_of(piece);
    }
    if (piece == peao || piece == rei) {
        widen_box(side, f, r);
    }
    side.knights += piece == cavalo;
    side.bishops += piece == bispo;
    side.rooks += piece == torre;
    side.queens += piece == dama;
}

// (avanco + 0.1)/(pecas + peoes + 1) and (peoes + 1)/caixa.
static long double advancement(const Counters& side) { return ratio(side.avanco + tenth, side.pecas + side.peoes + 1); }
static long double compactness(const Counters& side) { return ratio(side.peoes + 1, caixa(side)); }

// --- The preparation of the root position ---

static void find_king(Colour c) {
    const Board& tab = tree.ply[0].tabd;
    for (int sq = 0; sq < 64; ++sq) {
        if (tab[sq] == code(c, rei)) {
            root.p_x_R[c] = sq / 8;
            root.p_y_R[c] = sq % 8;
        }
    }
}

static void fill_Xr(Colour c) {
    if (root.material_a[c] < 110.0F) {
        return;
    }
    const int numerator = root.material_a[c] == 110.0F ? 375 : 15;
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            root.Xr[c][at(f, r)] = numerator / (square_of(f - root.p_x_R[c]) + 1 + square_of(r - root.p_y_R[c]) + 1);
        }
    }
}

// Around the most advanced pawn; of several on its rank, the one on the highest file.
static void fill_XP(Colour c) {
    root.XP[c] = {};
    int file = -1, rank = -1;
    for (int advance = 0; advance < 8; ++advance) {
        for (int f = 0; f < 8; ++f) {
            if (man_on(tree.ply[0].tabd, f, rank_of(c, advance)) == code(c, peao)) {
                file = f;
                rank = rank_of(c, advance);
            }
        }
    }
    if (file < 0) {
        return;
    }
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            root.XP[c][at(f, r)] = 75 / (square_of(f - file) + 1 + square_of(r - rank) + 1);
        }
    }
}

static void count_material() {
    for (const Colour c : {white, black}) {
        int all = 0, pawns = 0, men = 0, pieces = 0;
        for (const int man : tree.ply[0].tabd) {
            if (!is_of(c, man)) {
                continue;
            }
            const int piece = size_of(man);
            all += piece;
            men += piece != rei;
            pieces += piece != rei && piece != peao;
            pawns += piece == peao;
        }
        root.material_a[c] = static_cast<float>(all);
        root.npecas[c] = men;
        root.npecasdp[c] = pieces;
        root.materialmaior[c] = static_cast<float>(all - 10 * pawns - 110);
    }
    const Colour own = root.joga_com_b;
    root.materialflot0 = root.material_a[own] - root.material_a[other(own)];
}

// Accounts a square; a move there that is legal counts as mobility.
static void account_root_square(Counters& side, Colour c, int f, int r, int to_f, int to_r) {
    const Board& tab = tree.ply[0].tabd;
    mark(side, c, to_f, to_r);
    if (!is_of(c, man_on(tab, to_f, to_r)) && !leaves_king_attacked(tab, c, {f, r, to_f, to_r})) {
        ++side.mobilidade;
    }
}

static void walk_root_pawn(Counters& side, Colour c, int f, int r) {
    const Board& tab = tree.ply[0].tabd;
    const int next = r + ahead(c);
    const bool many_pieces = root.materialmaior[other(c)] > 90.0F;
    if (many_pieces && shelters_king(c, f, r)) {
        ++side.abrigo;
    }
    for (const int file : {f + 1, f - 1}) {
        if (!on_board(file, next)) {
            continue;
        }
        if (many_pieces) {
            mark(side, c, file, next);
        }
        if (is_of(other(c), man_on(tab, file, next)) && !leaves_king_attacked(tab, c, {f, r, file, next})) {
            ++side.mobilidade;
        }
    }
    if (!on_board(f, next) || man_on(tab, f, next) != 0) {
        return;
    }
    side.mobilidade += !leaves_king_attacked(tab, c, {f, r, f, next});
    if (r == rank_of(c, 1) && man_on(tab, f, next + ahead(c)) == 0) {
        side.mobilidade += !leaves_king_attacked(tab, c, {f, r, f, next + ahead(c)});
    }
}

template <typename Steps>
static void walk_root_steps(Counters& side, Colour c, int f, int r, const Steps& steps, bool rays) {
    for (const Step s : steps) {
        for (int to_f = f + s.file, to_r = r + s.rank; on_board(to_f, to_r); to_f += s.file, to_r += s.rank) {
            account_root_square(side, c, f, r, to_f, to_r);
            if (!rays || man_on(tree.ply[0].tabd, to_f, to_r) != 0) {
                break;
            }
        }
    }
}

static void balance_root() {
    std::array<Counters, 2> sides;
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            const int man = man_on(tree.ply[0].tabd, f, r);
            if (man == 0) {
                continue;
            }
            const Colour c = man > 0 ? white : black;
            Counters& side = sides[c];
            count_man(side, c, size_of(man), f, r);
            switch (size_of(man)) {
                case peao: walk_root_pawn(side, c, f, r); break;
                case cavalo: walk_root_steps(side, c, f, r, knight_jumps, false); break;
                case bispo: walk_root_steps(side, c, f, r, bishop_rays, true); break;
                case torre: walk_root_steps(side, c, f, r, rook_rays, true); break;
                case dama: walk_root_steps(side, c, f, r, queen_rays, true); break;
                default:
                    if (root.materialmaior[other(c)] <= 90.0F) {
                        walk_root_steps(side, c, f, r, king_steps, false);
                    }
            }
        }
    }
    const Counters& own = sides[root.joga_com_b];
    const Counters& opp = sides[other(root.joga_com_b)];
    const long double m_own = root.material_a[root.joga_com_b];
    const long double m_opp = root.material_a[other(root.joga_com_b)];
    root.regimen =
        static_cast<float>(tenth * log_ratio(m_opp + tenth, m_own + tenth) +
                           2 * log_ratio(own.pontos + ten_and_tenth, opp.pontos + ten_and_tenth) +
                           5 * log_ratio(static_cast<long double>(own.defesa_ksf) + 3 + own.abrigo,
                                         static_cast<long double>(opp.atack_ksf) + 3) +
                           5 * log_ratio(static_cast<long double>(own.atack_ksf) + 3,
                                         static_cast<long double>(opp.defesa_ksf) + 3 + opp.abrigo) +
                           static_cast<long double>(settings.MOB) * log_ratio(own.mobilidade + 3, opp.mobilidade + 3) +
                           advancement(opp) - advancement(own) + compactness(own) - compactness(opp));
}

static void find_kings_and_fill_proximity() {
    find_king(black);
    fill_Xr(black);
    find_king(white);
    fill_Xr(white);
    fill_XP(black);
    fill_XP(white);
}

static void finish_preparation() {
    root.X = true;
    if (!tree.deeppromo) {
        root.PRe = '0';
    }
    root.pp = false;
}

void init_tabuleiro() {
    play_on_root({root.a, root.b, root.c, root.d});
    find_kings_and_fill_proximity();
    count_material();
    balance_root();
    finish_preparation();
}

void prepare_fen_board() {
    count_material();
    find_kings_and_fill_proximity();
    balance_root();
    finish_preparation();
}

// --- The positional value of a root move ---

static int king_destination_value(Colour c, int to) {
    const Colour opp = other(c);
    const float m = root.material_a[opp];
    const float w = root.material_a[c];
    const int n = root.npecas[opp];
    const auto is_one_of = [m](std::initializer_list<float> sums) {
        return std::find(sums.begin(), sums.end(), m) != sums.end();
    };
    struct Ending {
        float m;
        int n;
    };
    const auto is_ending = [m, n](std::initializer_list<Ending> endings) {
        return std::any_of(endings.begin(), endings.end(), [&](Ending e) { return e.m == m && e.n == n; });
    };
    int value = 0;
    if (m == 110.0F) {
        value = root.Xr[opp][to] + root.XP[c][to];
    }
    if (w == 110.0F) {
        value = tables.posix_reifinal[c][to] + root.XP[opp][to];
    }
    if (is_one_of({120, 130, 150}) || (m == 140.0F && n != 1)) {
        value = root.XP[opp][to];
    }
    if (is_one_of({153, 163, 186, 152, 162, 184, 185})) {
        value = root.XP[opp][to];
    }
    if (is_ending({{173, 4},
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
        value = root.XP[opp][to];
    }
    if (w != 110.0F && is_ending({{142, 1}, {143, 1}, {160, 1}, {174, 2}, {175, 2}, {176, 2}})) {
        value = root.XP[c][to] / 5;
    }
    return value;
}

void set_destination_value(Move m) {
    const Colour c = root.joga_com_b;
    const int to = at(m.c, m.d);
    const int near_king = root.Xr[other(c)][to];
    const int man = man_on(tree.ply[0].tabd, m.a, m.b);
    root.MATRIZ = 0;
    root.incentiva_promo = false;
    if (!is_of(c, man)) {
        return;
    }
    switch (size_of(man)) {
        case peao:
            if (root.nb < 30) {
                root.MATRIZ = tables.posix_peao_inici[c][to];
            } else if (root.nb < 70) {
                root.MATRIZ = tables.posix_peao_medio[c][to];
            } else {
                root.MATRIZ = posix_peao_final(c, to);
                root.incentiva_promo = true;
            }
            break;
        case cavalo: root.MATRIZ = tables.posix_cavalo[c][to] + near_king; break;
        case bispo: root.MATRIZ = tables.posix_bispo[c][to] + near_king; break;
        case torre: root.MATRIZ = tables.posix_torre[c][to] + near_king; break;
        case dama: root.MATRIZ = tables.posix_dama[c][to] + near_king; break;
        default: root.MATRIZ = king_destination_value(c, to);
    }
}

// --- The walk of tab2, for leaves and for root moves ---

struct Walk {
    Colour own;           // whose view the score is: its men get the scale of king proximity
    Colour stm;           // who moves next: its men get the terms of what they attack
    bool legal_mobility;  // root moves: only legal moves count as mobility
    std::array<Counters, 2> sides;
};

static void count_mobility(Walk& w, Colour c, Move m) {
    if (!w.legal_mobility || !leaves_king_attacked(tree.tab2, c, m)) {
        ++w.sides[c].mobilidade;
    }
}

// The square attacked by a piece or a king; `step` is the direction of the attack.
static void judge_attack(Walk& w, Colour c, int piece, Move m, Step step) {
    Counters& side = w.sides[c];
    mark(side, c, m.c, m.d);
    const int x = man_on(tree.tab2, m.c, m.d);
    const int v = size_of(x);
    if (x == 0) {
        count_mobility(w, c, m);
    } else if (is_of(other(c), x)) {
        count_mobility(w, c, m);
        ++side.alvos;
        if (c == w.stm && (piece == cavalo || piece == bispo || piece == torre) && v > piece) {
            add(side.posicao, v - piece);
        }
    } else {
        ++side.apoios;
        if (v == torre || v == dama) {
            if (piece == torre) {
                add(side.posicao, step.rank == 0 ? 3.0 : 5.0);
            } else if (piece == dama) {
                add(side.posicao, 1.0);
            }
        }
    }
}

template <typename Steps>
static void judge_attacks(Walk& w, Colour c, int piece, int f, int r, const Steps& steps, bool rays) {
    for (const Step s : steps) {
        for (int to_f = f + s.file, to_r = r + s.rank; on_board(to_f, to_r); to_f += s.file, to_r += s.rank) {
            judge_attack(w, c, piece, {f, r, to_f, to_r}, s);
            if (!rays || man_on(tree.tab2, to_f, to_r) != 0) {
                break;
            }
        }
    }
}

static void walk_piece(Walk& w, Colour c, int piece, int f, int r) {
    float& posicao = w.sides[c].posicao;
    const double scale = c == w.own ? settings.agresprxrei : 1.0F;
    const double near = proximidade(f, r, other(c));
    const double centro = tables.centro[at(f, r)];
    const int T = root.npecas[white] + root.npecas[black];

    if (piece != torre && r != rank_of(c, 0)) {
        add(posicao, 15.0);
    }
    if (piece == torre && f != 0 && f != 7) {
        add(posicao, 15.0);
    }
    if (piece == cavalo) {
        add(posicao, T < 15 ? 15 * scale / near + 10 * centro : 5 * scale / near + 25 * centro);
        judge_attacks(w, c, piece, f, r, knight_jumps, false);
    }
    if (piece == bispo) {
        if (f == r || f + r == 7) {
            add(posicao, T < 15 ? 5.0 : 11.0);
        }
        judge_attacks(w, c, piece, f, r, bishop_rays, true);
    }
    if (piece == torre) {
        if (T < 15) {
            add(posicao, 10 * scale / near);
        }
        if (T < 11 && (r == rank_of(c, 6) || r == rank_of(c, 7))) {
            add(posicao, 11.0);
        }
        judge_attacks(w, c, piece, f, r, rook_rays, true);
    }
    if (piece == dama) {
        add(posicao, T < 15 ? 25 * scale / near + 15 * centro : 5 * scale / near + 10 * centro);
        judge_attacks(w, c, piece, f, r, queen_rays, true);
    }
}

static void walk_king(Walk& w, Colour c, int f, int r) {
    float& posicao = w.sides[c].posicao;
    const double scale = c == w.own ? settings.agresprxrei : 1.0F;
    const bool few_pieces = root.materialmaior[other(c)] <= 90.0F;
    if (few_pieces) {
        add(posicao, 50 * static_cast<double>(tables.centro[at(f, r)]));
    }
    if (root.npecas[other(c)] == 0) {
        add(posicao, 75 * scale / proximidade(f, r, other(c)));
    }
    if (few_pieces) {
        judge_attacks(w, c, rei, f, r, king_steps, false);
    }
}

static bool holds(int f, int r, int man) { return on_board(f, r) && man_on(tree.tab2, f, r) == man; }

// Item 9: no enemy pawn on the pawn's file and on the file two beyond, from two ranks ahead to the seventh rank.
static bool breaks_through(Colour c, int f, int r, int side) {
    const int steps_to_seventh = (rank_of(c, 6) - r) * ahead(c);
    for (int step = 2; step <= steps_to_seventh; ++step) {
        const int rank = r + step * ahead(c);
        if (holds(f, rank, code(other(c), peao)) || holds(f + 2 * side, rank, code(other(c), peao))) {
            return false;
        }
    }
    return steps_to_seventh >= 2;
}

// Item 10.
static void walk_passed_pawn(Walk& w, Colour c, int f, int r) {
    float& posicao = w.sides[c].posicao;
    const int own_pawn = code(c, peao);
    const int enemy_pawn = code(other(c), peao);
    const int steps_to_seventh = (rank_of(c, 6) - r) * ahead(c);
    for (int step = 1; step <= steps_to_seventh; ++step) {
        const int rank = r + step * ahead(c);
        if (holds(f, rank, enemy_pawn) || holds(f, rank, own_pawn)) {
            return;
        }
        if (holds(f + 1, rank, enemy_pawn) || holds(f - 1, rank, enemy_pawn)) {
            return;
        }
        if (holds(f + 1, rank, own_pawn)) {
            add(posicao, 10.0);
        }
        if (holds(f - 1, rank, own_pawn)) {
            add(posicao, 10.0);
        }
        if (step == steps_to_seventh) {
            add(posicao, 33.0);
        }
    }
}

static void walk_pawn(Walk& w, Colour c, int f, int r) {
    Counters& side = w.sides[c];
    const Colour opp = other(c);
    const int own_pawn = code(c, peao);
    const int next = r + ahead(c);
    const std::array diagonal_files = {f + 1, f - 1};

    // 1, 2. The shelter of the king, or the race of the kings.
    if (root.materialmaior[opp] > 90.0F) {
        if (shelters_king(c, f, r)) {
            ++side.abrigo;
        }
        for (const int file : diagonal_files) {
            if (on_board(file, next)) {
                mark(side, c, file, next);
            }
        }
    } else {
        add(side.posicao, 100 * static_cast<double>(tables.promo[c][at(f, r)]) + 25.0 / proximidade(f, r, c));
        add(w.sides[opp].posicao, 25.0 / proximidade(f, r, opp));
    }
    // 3. What it attacks.
    for (const int file : diagonal_files) {
        if (!on_board(file, next) || !is_of(opp, man_on(tree.tab2, file, next))) {
            continue;
        }
        const int v = size_of(man_on(tree.tab2, file, next));
        count_mobility(w, c, {f, r, file, next});
        ++side.alvos;
        if (c == w.stm) {
            add(side.posicao, v * static_cast<double>(settings.agres) - 10.0);
        } else if (v > 10 && (holds(f + 1, r - ahead(c), own_pawn) || holds(f - 1, r - ahead(c), own_pawn))) {
            add(side.posicao, v / 2);
        }
    }
    // 4. Its steps.
    if (holds(f, next, 0)) {
        count_mobility(w, c, {f, r, f, next});
        if (r == rank_of(c, 1) && holds(f, next + ahead(c), 0)) {
            count_mobility(w, c, {f, r, f, next + ahead(c)});
        }
    }
    // 5. What it defends.
    for (const int file : diagonal_files) {
        if (on_board(file, next) && is_of(c, man_on(tree.tab2, file, next))) {
            ++side.apoios;
        }
    }
    // 6, 7, 8. The seventh rank, neighbours, and pawns that it defends.
    if (r == rank_of(c, 6)) {
        add(side.posicao, 100.0);
    }
    for (const int file : diagonal_files) {
        if (holds(file, r, own_pawn)) {
            add(side.posicao, 13.0);
        }
    }
    for (const int file : diagonal_files) {
        if (holds(file, next, own_pawn)) {
            add(side.posicao, 11.0);
        }
    }
    // 9, 10. Breakthrough and passed pawn.
    for (const int beside : {1, -1}) {
        if (!on_board(f + beside, next) || size_of(man_on(tree.tab2, f + beside, next)) == peao) {
            continue;
        }
        if (breaks_through(c, f, r, beside)) {
            add(side.posicao, 25.0);
        }
    }
    walk_passed_pawn(w, c, f, r);
}

static void walk_tab2(Walk& w) {
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            const int man = man_on(tree.tab2, f, r);
            if (man == 0) {
                continue;
            }
            const Colour c = man > 0 ? white : black;
            count_man(w.sides[c], c, size_of(man), f, r);
            switch (size_of(man)) {
                case peao: walk_pawn(w, c, f, r); break;
                case rei: walk_king(w, c, f, r); break;
                default: walk_piece(w, c, size_of(man), f, r);
            }
        }
    }
}

// --- The terms of the judgement, own over opp ---

static long double castling_term(Colour own) {
    if (root.roque[white] == 0 && root.roque[black] == 0) {
        return 0;
    }
    return static_cast<float>(settings.roque_v * log_ratio(root.roque[own] + 3, root.roque[other(own)] + 3));
}

static long double hits_term(const Counters& side, double weight) {
    return weight * static_cast<long double>(root.regimen) * log_ratio(side.alvos + 3, side.apoios + 3);
}

// abrigo + defesa_ksf + 3.
static long double shelter_of(const Counters& side) {
    return side.abrigo + static_cast<long double>(side.defesa_ksf) + 3;
}

// A sum below 0.1 counts as 0.1.
static long double position_sum(const Counters& side) {
    const long double sum = static_cast<long double>(side.posicao) + side.centro + ten_and_tenth;
    return sum < tenth ? tenth : sum;
}

static long double structure_terms(const Counters& own, const Counters& opp, long double start) {
    return start + advancement(own) + compactness(own) - advancement(opp) - compactness(opp) +
           2 * log_ratio(own.pontos + ten_and_tenth, opp.pontos + ten_and_tenth);
}

static long double activity_terms(const Counters& own, const Counters& opp, long double start) {
    return start + 5 * log_ratio(shelter_of(own), static_cast<long double>(opp.atack_ksf) + 3) +
           5 * log_ratio(static_cast<long double>(own.atack_ksf) + 3, shelter_of(opp)) +
           static_cast<long double>(settings.MOB) * log_ratio(own.mobilidade + 3, opp.mobilidade + 3) +
           static_cast<long double>(settings.PM) * log_ratio(position_sum(own), position_sum(opp));
}

// --- Leaves ---

static bool cannot_win(const Counters& side) {
    return side.peoes == 0 && side.rooks == 0 && side.queens == 0 &&
           ((side.bishops == 0 && side.knights <= 2) || (side.knights == 0 && side.bishops <= 1));
}

static void judge_leaf(Colour own, Colour stm) {
    Walk w{own, stm, false, {}};
    walk_tab2(w);
    const Counters& mine = w.sides[own];
    const Counters& theirs = w.sides[other(own)];
    long double R = structure_terms(mine, theirs, root.extraevalll);
    R += castling_term(own);
    R += hits_term(mine, 0.01);
    R += hits_term(theirs, 0.001);
    R = activity_terms(mine, theirs, R);
    tree.extraeval = static_cast<float>(R);
    if (tree.extraeval > static_cast<float>(piecesac)) {
        tree.extraeval = piecesac;
    }
    if (tree.extraeval < static_cast<float>(-piecesac)) {
        tree.extraeval = -piecesac;
    }
    tree.EMPAT = cannot_win(mine) && cannot_win(theirs);
}

void extra_eval(Colour own) {
    judge_leaf(own, own);
    tree.ddep = std::max(tree.ddep, tree.deep);
}

void extra_evall(Colour own) { judge_leaf(own, other(own)); }

// --- Base value and class of a root move ---

static void set_base_value(Colour own) {
    Walk w{own, other(own), true, {}};
    walk_tab2(w);
    const Counters& mine = w.sides[own];
    const Counters& theirs = w.sides[other(own)];
    long double sum = structure_terms(mine, theirs, 0);
    sum += castling_term(own);
    const auto S = static_cast<float>(activity_terms(mine, theirs, sum));
    root.extraevalll =
        static_cast<float>(0.01 * static_cast<long double>(S) + hits_term(mine, 0.01) + hits_term(theirs, 0.001));
}

// Attacks of a colour on one square: its pawns, knights, bishops, rooks, queens, kings, and all of them.
struct Attacks {
    int p, n, b, r, q, k, all;
};
static Attacks attacks_of(Colour c, int sq) {
    const auto& maps = root.ataca[c];
    return {maps[0][sq], maps[1][sq], maps[2][sq], maps[3][sq], maps[4][sq], maps[5][sq], root.N_A[c][sq]};
}

static int threat_to(Colour own, int piece, int sq) {
    const Attacks a = attacks_of(own, sq);
    const Attacks d = attacks_of(other(own), sq);
    switch (piece) {
        case rei: return root.npecas[other(own)] != 0 && a.all != 0 ? 11 * settings.agreschrei : 0;
        case dama: return a.p + a.b + a.n + a.r != 0 ? 100 : 0;
        case torre:
            if (a.p + a.b + a.n != 0) {
                return 50;
            }
            return a.q + a.k != 0 && d.all == 0 ? 25 : 0;
        case cavalo:
            if (a.p != 0) {
                return 35;
            }
            return a.b + a.r + a.q + a.k != 0 && d.all == 0 ? 17 : 0;
        case bispo:
            if (a.p != 0) {
                return 30;
            }
            return a.n + a.r + a.k != 0 && d.all == 0 ? 15 : 0;
        default: return a.p + d.p == 0 && a.b + a.n + a.r + a.q + a.k != 0 && d.all == 0 ? 10 : 0;
    }
}

static int danger_of(Colour own, int piece, int sq) {
    const Attacks d = attacks_of(own, sq);
    const Attacks a = attacks_of(other(own), sq);
    const bool outnumbered = a.all > d.all;
    switch (piece) {
        case rei: return 0;
        case dama:
            if (a.p + a.b + a.n + a.r != 0) {
                return 100;
            }
            return outnumbered && d.p == 0 && d.b + d.n + d.r <= 1 ? 100 : 0;
        case torre:
            if (a.p + a.b + a.n != 0) {
                return 50;
            }
            return outnumbered && d.p == 0 && d.b + d.n <= 1 ? 50 : 0;
        case cavalo:
        case bispo:
            if (a.p != 0) {
                return 30;
            }
            return outnumbered && d.p == 0 ? 30 : 0;
        default: return outnumbered ? 10 : 0;
    }
}

static void scale_destination_value(Colour own, int T) {
    const float q_own = root.material_a[own];
    const float q_opp = root.material_a[other(own)];
    const long double q = ratio(q_own, q_opp);
    if (T < 0) {
        root.MATRIZ /= q > 1 ? 3 : q == 1 ? 4 : 5;
    } else {
        root.MATRIZ = wrap(static_cast<unsigned>(root.MATRIZ) * (q > 1 ? 5U : q == 1 ? 4U : 3U));
    }
}

void verifica_estrategia(Colour own) {
    set_base_value(own);
    int T = 0;
    for (int sq = 0; sq < 64; ++sq) {
        if (is_of(other(own), tree.tab2[sq])) {
            T += threat_to(own, size_of(tree.tab2[sq]), sq);
        }
    }
    for (int sq = 0; sq < 64; ++sq) {
        if (is_of(own, tree.tab2[sq])) {
            T -= danger_of(own, size_of(tree.tab2[sq]), sq);
        }
    }
    if (root.incentiva_promo) {
        scale_destination_value(own, T);
    }
    root.ATAQUE =
        wrap(static_cast<unsigned>(T) + static_cast<unsigned>(root.MATRIZ) * static_cast<unsigned>(settings.matrix));
    root.ESTRATEGIA = std::clamp(root.ATAQUE, -100, 100);
}

}  // namespace plain
