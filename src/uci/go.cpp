#include "uci/go.h"

#include "search/state.h"
#include "uci/command_line.h"

#include <array>

namespace ondrel {
namespace {

constexpr std::size_t no_clock = 0;
constexpr std::size_t clock_at = 9;  // "go wtime 300000"

// Where the digits of the first clock begin; no_clock if the line has none of the known shapes.
std::size_t start_of_clock() {
    // "go movestogo 40 wtime 300000", with up to three digits
    if (in_at(3) == 'm') {
        for (std::size_t digits = 1; digits <= 3; ++digits) {
            if (in_at(15 + digits) == 't') {
                return 20 + digits;
            }
        }
    }
    return in_at(4) == 't' ? clock_at : no_clock;
}

constexpr int most_digits = 8;

// The distance to the first blank, looked for at the seven positions behind the first digit; most_digits if it is
// farther off.
int count_digits(std::size_t start) {
    int digits = 1;
    while (digits < most_digits && in_at(start + static_cast<std::size_t>(digits)) != ' ') {
        ++digits;
    }
    return digits;
}

void enter_low_time_mode() {
    search.SEARCH_E = 0;
    search.IIDS = 0;
    search.EXTRA_EVAL = 0;
}

// With few men left, one step deeper.
void set_deep(int with_many, int with_few, int few) { search.deep = men_at_root() <= few ? with_few : with_many; }

// The row of a CPU power: the budget up to which time is low, and the men up to which depths rise.
struct Power {
    int CPU;
    int low_time;       // T
    int men_under_90;   // A, by the budget in seconds
    int men_under_60;   // B
    int men_under_30;   // C
    int men_to_deep_9;  // D, also under 30
    int men_under_10;   // E
};
constexpr std::array<Power, 4> powers{{{5, 10000, 15, 11, 17, 7, 9},
                                       {1, 20000, 13, 9, 15, 5, 7},
                                       {2, 30000, 11, 7, 13, 3, 5},
                                       {3, 50000, 9, 5, 11, 1, 3}}};

// Under 100 seconds: a later rule overrides an earlier one.
void apply_power(const Power& x) {
    const int tempo = search.tempo;
    if (tempo <= x.low_time) {
        enter_low_time_mode();
    }
    if (tempo <= 90000) {
        set_deep(7, 9, x.men_under_90);
    }
    if (tempo <= 60000) {
        set_deep(7, 9, x.men_under_60);
    }
    if (tempo <= 30000) {
        set_deep(5, 7, x.men_under_30);
        if (men_at_root() <= x.men_to_deep_9) {
            search.deep = 9;
        }
    }
    if (tempo <= 10000) {
        set_deep(5, 7, x.men_under_10);
    }
}

// A first digit of 1 to 9 times the unit; anything else sets nothing. Tells whether it did.
bool take_budget(char first_digit, int unit) {
    if (first_digit < '1' || first_digit > '9') {
        return false;
    }
    search.tempo = (first_digit - '0') * unit;
    return true;
}

void take_five_digits(char first_digit) {
    if (!take_budget(first_digit, 10000)) {
        return;
    }
    for (const Power& x : powers) {
        if (x.CPU == options.CPU) {
            apply_power(x);
        }
    }
}

// Up to four digits the depth alone bounds the search.
void take_low_time(int deep_with_many, int deep_with_few, int few) {
    enter_low_time_mode();
    set_deep(deep_with_many, deep_with_few, few);
}

}  // namespace

void read_clock() {
    const std::size_t start = start_of_clock();
    if (start == no_clock) {
        return;
    }
    const char first_digit = in_at(start);
    switch (count_digits(start)) {
        case 1: return take_low_time(0, 0, 0);
        case 2: return take_low_time(0, 1, 1);
        case 3: return take_low_time(1, 3, 3);
        case 4: return take_low_time(3, 5, 5);
        case 5: return take_five_digits(first_digit);
        case 6: take_budget(first_digit, 100000); return;
        case 7: take_budget(first_digit, 1000000); return;
        default: search.tempo = 10000000; return;
    }
}

}  // namespace ondrel
