#include "eval/judgement.h"

#include "base/numeric.h"
#include "base/options.h"
#include "board/game.h"
#include "eval/weights.h"

#include <algorithm>
#include <cmath>

namespace ondrel {
namespace {

// --- Ways to take logarithms ---

// In extended precision, each of a quotient.
struct ExactLogs {
    using Real = long double;
    static Real of_counts(int x, int y) { return log_of_ratio(x + count_offset, y + count_offset); }
    static Real of_points(int x, int y) {
        return log_of_ratio(static_cast<Real>(x) + points_offset, static_cast<Real>(y) + points_offset);
    }
    static Real of_ratio(Real x, Real y) { return log_of_ratio(x, y); }
    // Two terms of one weight, added one after the other.
    static void add_both(Real& sum, double weight, Real a, Real b, Real c, Real d) {
        sum += weight * of_ratio(a, b);
        sum += weight * of_ratio(c, d);
    }
};

// Logarithms of a count and an offset.
constexpr int tabled_counts = 512;
using LogTable = std::array<double, tabled_counts>;

LogTable log_table(double offset) {
    LogTable t{};
    for (int n = 0; n < tabled_counts; ++n) {
        t[n] = std::log(n + offset);
    }
    return t;
}
const LogTable log_of_count = log_table(count_offset);
const LogTable log_of_points = log_table(points_offset);

bool fits_tables(const SideCounters& x) {
    return x.mobilidade < tabled_counts && x.alvos < tabled_counts && x.apoios < tabled_counts &&
           x.pontos < tabled_counts;
}

// In double and by tables; the logarithms of real numbers in `Log`. With double the sum is within a few units of 1e-13.
template <class Log>
struct QuickLogs {
    using Real = double;
    static Real of_counts(int x, int y) { return log_of_count[x] - log_of_count[y]; }
    static Real of_points(int x, int y) { return log_of_points[x] - log_of_points[y]; }
    static Real of_ratio(Real x, Real y) { return static_cast<Real>(std::log(static_cast<Log>(x / y))); }
    static void add_both(Real& sum, double weight, Real a, Real b, Real c, Real d) {
        sum += weight * of_ratio(a * c, b * d);
    }
};

// --- The terms ---

// Castling in the line; no term at all if neither side has castled. Rounded when stored.
float castling_term(const SumInput& in) {
    if (in.roque[white] == 0 && in.roque[black] == 0) {
        return 0;
    }
    return static_cast<float>(options.roque_v *
                              log_of_ratio(in.roque[in.own] + count_offset, in.roque[other(in.own)] + count_offset));
}

// Hits against support of one colour, weighed by the balance of the root.
template <class Logs>
typename Logs::Real hits_term(double weight, const SideCounters& x) {
    return weight * static_cast<typename Logs::Real>(root.regimen) * Logs::of_counts(x.alvos, x.apoios);
}

template <class Real>
Real king_defence(const SideCounters& x) {
    return x.abrigo + static_cast<Real>(x.defesa_ksf) + count_offset;
}
template <class Real>
Real king_attack(const SideCounters& x) {
    return static_cast<Real>(x.atack_ksf) + count_offset;
}

// Without aggressiveness the pawns' targets can bring a sum below zero.
template <class Real>
Real positional_sum(const SideCounters& x) {
    return std::max<Real>(static_cast<Real>(x.posicao) + static_cast<Real>(x.centro) + points_offset,
                          least_positional_sum);
}

template <class Logs>
typename Logs::Real final_sum(const SumInput& in, const Counters& counters, bool with_hits) {
    using Real = typename Logs::Real;
    const SideCounters& own = counters[in.own];
    const SideCounters& opp = counters[other(in.own)];
    Real s = in.start;
    s += advance_per_man<Real>(own);
    s += pawns_per_square<Real>(own);
    s -= advance_per_man<Real>(opp);
    s -= pawns_per_square<Real>(opp);
    s += weight_of_points * Logs::of_points(own.pontos, opp.pontos);
    s += static_cast<Real>(castling_term(in));
    if (with_hits) {
        s += hits_term<Logs>(weight_of_own_hits, own);
        s += hits_term<Logs>(weight_of_enemy_hits, opp);
    }
    Logs::add_both(s, weight_of_king_safety, king_defence<Real>(own), king_attack<Real>(opp), king_attack<Real>(own),
                   king_defence<Real>(opp));
    s += static_cast<Real>(options.MOB) * Logs::of_counts(own.mobilidade, opp.mobilidade);
    s += static_cast<Real>(options.PM) * Logs::of_ratio(positional_sum<Real>(own), positional_sum<Real>(opp));
    return s;
}

}  // namespace

float sum_exactly(const SumInput& in, const Counters& counters) {
    return static_cast<float>(final_sum<ExactLogs>(in, counters, true));
}

std::optional<double> position_sum(Colour own, const Counters& counters) {
    if (!fits_tables(counters[white]) || !fits_tables(counters[black])) {
        return std::nullopt;
    }
    return final_sum<QuickLogs<double>>({own, {}, 0}, counters, true);
}

std::optional<double> estimated_position_sum(Colour own, const Counters& counters) {
    const auto firm = [](const SideCounters& x) { return fits_tables(x) && x.posicao + x.centro >= 0; };
    if (!firm(counters[white]) || !firm(counters[black])) {
        return std::nullopt;
    }
    return final_sum<QuickLogs<float>>({own, {}, 0}, counters, true);
}

double with_line(const SumInput& in, double position_sum) {
    return static_cast<double>(in.start) + static_cast<double>(castling_term(in)) + position_sum;
}

std::optional<float> rounded_as_exactly(double sum) {
    // The sum in double is off by far less than this; where no float lies so near, both round alike.
    constexpr double slack = 1e-10;
    const auto r = static_cast<float>(sum - slack);
    return r == static_cast<float>(sum + slack) ? std::optional(r) : std::nullopt;
}

float base_value(const SumInput& in, const Counters& counters) {
    const auto judgement = static_cast<float>(final_sum<ExactLogs>(in, counters, false));
    long double base = weight_of_base_value * static_cast<long double>(judgement);
    base += hits_term<ExactLogs>(weight_of_own_hits, counters[in.own]);
    base += hits_term<ExactLogs>(weight_of_enemy_hits, counters[other(in.own)]);
    return static_cast<float>(base);
}

float within_piecesac(float r) { return r > piecesac ? piecesac : (r < -piecesac ? -piecesac : r); }

}  // namespace ondrel
