// The windows that ply 1 opens around the root score for one pass: Turbo search, and the scout pass's own limits on top.
// All work on the limits MAXcut<k> of the even plies and are undone from MAXcutt<k>. Called by ply_one.cpp alone.
#pragma once

#include "search/filters.h"

#include <algorithm>

namespace ondrel {

constexpr int last_even_limit = 22;

template <class Limit>
inline void set_even_limits(Limit limit) {
    for (int k = 2; k <= last_even_limit; k += 2) {
        bounds.MAXcut[k] = limit(k);
    }
}

inline void restore_even_limits() {
    set_even_limits([](int k) { return bounds.MAXcutt[k]; });
}

// The opponent's last capture counts on top of the balance: it is about to be taken back.
inline float lead_at_root() { return root.materialflot0 + static_cast<float>(value_of(game_line.peca)); }

// --- Turbo windows ---

// Each rule starts from the saved limits again, so that the last one that applies wins.
inline void open_window(float width) {
    set_even_limits([width](int k) { return std::min(bounds.MAXcutt[k], search.E + width); });
}

// The root score has reached that of the depth before, and x.
inline bool score_reaches(float x) {
    return bounds.alfa[0] >= held_score || (bounds.alfa[0] >= bounds.ALFA0 && bounds.alfa[0] >= x);
}

// Rule 1, the only one of the IID pass: E may lie this far below the lead.
struct WindowRule {
    float below_lead, width;
};
constexpr WindowRule widest{33.0F, 33.0F};
constexpr WindowRule while_held{10.0F, 10.0F};
// At depth 9, each with the score that the root must have reached.
constexpr int critical_depth = 9;
struct CriticalRule {
    WindowRule window;
    float least_score;
};
constexpr std::array<CriticalRule, 3> at_critical_depth{
    {{{15.0F, 9.0F}, -15.0F}, {{5.0F, 5.0F}, -5.0F}, {{0.0F, 3.0F}, 0.0F}}};
constexpr float width_with_many_men = 1.0F;

inline void open_if_led(WindowRule rule) {
    if (search.E >= lead_at_root() - rule.below_lead) {
        open_window(rule.width);
    }
}

inline void open_widest_window() { open_if_led(widest); }

inline void open_all_windows() {
    open_widest_window();
    if (score_held() && search.deep > 8) {
        open_if_led(while_held);
    }
    if (search.deep != critical_depth) {
        return;
    }
    for (const CriticalRule& rule : at_critical_depth) {
        if (score_reaches(rule.least_score)) {
            open_if_led(rule.window);
        }
    }
    if (search.DEEP9 && bounds.alfa[0] >= least_held_score) {
        open_window(width_with_many_men);
    }
}

// Narrows further around E by what the IID pass found.
inline void narrow_by_BETA1() {
    constexpr float width_when_better = 1.0F, width_when_equal = 3.0F, width_when_worse = 7.0F;
    if (search.E < lead_at_root() - while_held.below_lead || !score_held()) {
        return;
    }
    const float BETA1 = root_move.BETA1;
    const float width =
        search.E > BETA1 ? width_when_better : (search.E == BETA1 ? width_when_equal : width_when_worse);
    set_even_limits([width](int k) { return std::min(bounds.MAXcut[k], search.E + width); });
}

// The windows of a scout or full pass.
inline void open_turbo_windows(bool iid_ran) {
    if (!options.TURBO) {
        return;
    }
    open_all_windows();
    if (iid_ran) {
        narrow_by_BETA1();
    }
}

// --- The scout pass ---

constexpr float scout_width = 5.0F;   // over the depth before
constexpr double scout_step = 0.001;  // over the root bound, in double

inline void open_scout_windows() {
    if (pass.SCAN1) {
        set_even_limits([](int k) { return std::min(bounds.MAXcutt[k], bounds.ALFA0 + scout_width); });
    }
    if (pass.SCANT && bounds.ALFA0 != start_of_alfa && score_held()) {
        const double limit = static_cast<double>(bounds.alfa[0]) + scout_step;
        set_even_limits([limit](int k) {
            return static_cast<double>(bounds.MAXcut[k]) > limit ? static_cast<float>(limit) : bounds.MAXcut[k];
        });
    }
}

}  // namespace ondrel
