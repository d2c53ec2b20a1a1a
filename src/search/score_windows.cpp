#include "search/score_windows.h"

#include "base/numeric.h"
#include "search/state.h"

namespace ondrel {
namespace {

// Positive_filterp, Negative_filterp.
enum Mode : int { off = 0, manual = 1, automatic = 2, full = 3 };

constexpr int last_limit = 17;
constexpr int first_positive = 6;  // below these plies most modes keep the limits of mates
constexpr int first_negative = 5;
constexpr float wide_open = 1100.0F;

// Margins by the range of the material balance: the ranges end at these leads.
constexpr float lost = -33.0F;      // this or less
constexpr float ahead = 50.0F;      // from here on
constexpr float far_ahead = 90.0F;  // from here on, in the full mode
struct Margins {
    float when_lost, when_level, when_ahead, when_far_ahead;
};
constexpr Margins auto_margins{wide_open, 100.0F, 90.0F, 90.0F};  // when lost the window itself is wide open
constexpr Margins full_positive_margins{50.0F, 32.0F, 33.0F, 10.0F};
constexpr Margins full_negative_margins{90.0F, 50.0F, 32.0F, 33.0F};

// Endings of a few men.
constexpr float king_alone = 110.0F;
constexpr float king_and_knight = 142.0F;
constexpr float king_and_bishop = 143.0F;
constexpr float king_and_two_knights = 174.0F;
constexpr float king_and_rook = 160.0F;
constexpr float auto_margin_when_almost_bare = 90.0F;
constexpr float full_margin_when_almost_bare = 50.0F;
constexpr float negative_margin_against_almost_bare = 33.0F;

constexpr int many_men = 20;  // above this the full mode bounds the root itself
constexpr float full_margin_of_root = 33.0F;

// Sets the limits of one parity from `first` on.
template <class Limit>
void set_limits(int first, Limit limit) {
    for (int n = first; n <= last_limit; n += 2) {
        bounds.MAXcut[n] = limit(n);
    }
}
void set_limits_to(int first, float limit) {
    set_limits(first, [limit](int) { return limit; });
}

// A root position in the terms of the windows; each sum in extended precision.
struct Lead {
    long double m;  // material balance
    long double p;  // size of the man that the opponent's last move took
    long double L;  // weighed logarithm of the material ratio

    // The positive and the negative bound a margin away.
    [[nodiscard]] float above(float margin) const { return static_cast<float>(m + margin + p + L); }
    [[nodiscard]] float below(float margin) const { return static_cast<float>(margin - m - L); }
};

float margin_for(const Margins& margins, long double m) {
    if (m <= lost) {
        return margins.when_lost;
    }
    return m < ahead ? margins.when_level : (m < far_ahead ? margins.when_ahead : margins.when_far_ahead);
}

bool is_almost_bare(Colour c) {
    const float w = root.material_a[c];
    return w == king_alone || ((w == king_and_knight || w == king_and_bishop) && root.npecas[c] == 1) ||
           (w == king_and_two_knights && root.npecas[c] == 2);
}

void set_manual_positive(const Lead& lead) {
    const auto level = static_cast<float>(options.positfilter + lead.m + lead.p + lead.L);
    set_limits(0, [level](int n) { return n < first_positive ? nearest_mate(n) : level; });
}

void set_manual_negative(const Lead& lead) {
    const float level = lead.below(options.negatfilter);
    set_limits(1, [level](int n) { return n < first_negative ? nearest_mate(n) : level; });
}

void set_auto_positive(const Lead& lead, Colour own) {
    set_limits_to(first_positive, lead.m <= lost ? wide_open : lead.above(margin_for(auto_margins, lead.m)));
    if (is_almost_bare(other(own))) {
        set_limits(0, nearest_mate);
        if (root.material_a[other(own)] == king_alone && root.material_a[own] >= king_and_rook) {
            set_limits_to(first_positive, wide_open);
        }
    }
    if (is_almost_bare(own)) {
        set_limits_to(2, lead.above(auto_margin_when_almost_bare));
    }
}

void set_full_positive(const Lead& lead, Colour own) {
    if (men_at_root() > many_men) {
        bounds.MAXcut[0] = lead.above(full_margin_of_root);
    }
    set_limits_to(first_positive, lead.above(margin_for(full_positive_margins, lead.m)));
    if (is_almost_bare(own)) {
        set_limits_to(0, lead.above(full_margin_when_almost_bare));
    }
}

void set_auto_or_full_negative(const Lead& lead, Colour own) {
    const bool is_auto = options.Negative_filterp == automatic;
    const Margins& margins = is_auto ? auto_margins : full_negative_margins;
    set_limits_to(first_negative, is_auto && lead.m <= lost ? wide_open : lead.below(margin_for(margins, lead.m)));
    if (is_almost_bare(other(own))) {
        set_limits_to(1, lead.below(negative_margin_against_almost_bare));
    }
    if (is_almost_bare(own)) {
        set_limits(1, nearest_mate);
    }
}

}  // namespace

void set_score_windows(Colour own) {
    const Lead lead{root.materialflot0, static_cast<long double>(own == white ? game_line.peca : -game_line.peca),
                    log_of_ratio(root.material_a[own], root.material_a[other(own)]) * options.MQ};
    set_limits(0, nearest_mate);
    set_limits(1, nearest_mate);
    switch (options.Positive_filterp) {
        case manual: set_manual_positive(lead); break;
        case automatic: set_auto_positive(lead, own); break;
        case full: set_full_positive(lead, own); break;
        default: break;
    }
    switch (options.Negative_filterp) {
        case manual: set_manual_negative(lead); break;
        case automatic:
        case full: set_auto_or_full_negative(lead, own); break;
        default: break;
    }
}

}  // namespace ondrel
