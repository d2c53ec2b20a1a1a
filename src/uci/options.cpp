#include "uci/options.h"

#include "base/options.h"
#include "memory/game_memory.h"
#include "memory/shallow_tables.h"
#include "uci/command_line.h"
#include "uci/output.h"

#include <algorithm>

namespace ondrel {
namespace {

// --- What the first character of a value means. A character that means nothing changes nothing. ---

// "t" and "f" of a check option.
template <auto Options::*option>
void check(char x) {
    if (x == 't' || x == 'f') {
        options.*option = x == 't' ? 1 : 0;
    }
}

bool is_digit(char x) { return x >= '0' && x <= '9'; }

template <auto Options::*option>
void digit(char x) {
    if (is_digit(x)) {
        options.*option = static_cast<float>(x - '0');
    }
}

// The highest step of the scale is ten.
template <auto Options::*option>
void digit_or_ten(char x) {
    if (is_digit(x)) {
        options.*option = x == '9' ? 10 : x - '0';
    }
}

// The value at the character's place in `letters`.
template <class T, std::size_t n>
void choose(T& option, char x, std::string_view letters, const std::array<T, n>& values) {
    if (const auto k = letters.find(x); k < n) {
        option = values[k];
    }
}

void power(char x) { choose(options.CPU, x, "ehml", std::array{5, 1, 2, 3}); }
void depth(char x) { choose(options.deepp, x, "0123456789", std::array{0, 1, 3, 5, 7, 9, 11, 13, 15, no_depth_limit}); }
void null_move(char x) { choose(options.NULL_MOVE, x, "onp", std::array{0, 1, 2}); }
void temperament(char x) { choose(options.Temperamento, x, "pcd", std::array{1, 2, 3}); }
void confidence(char x) { choose(options.empp, x, "123456789", std::array{10, 7, 5, 3, 0, -3, -5, -7, -10}); }

void time_usage(char x) {
    if (x != '0') {
        digit_or_ten<&Options::Tu>(x);
    }
}

template <auto Options::*option>
void filter_mode(char x) {
    choose(options.*option, x, "omaf", std::array{0, 1, 2, 3});
}

// The scale runs by the values of the pieces, the bishop below the knight.
template <auto Options::*option>
void filter_level(char x) {
    choose(options.*option, x, "0123456", std::array{0.0F, 10.0F, 33.0F, 32.0F, 50.0F, 90.0F, 110.0F});
}

template <void (*action)()>
void button(char) {
    action();
}

// --- The options, in the order in which they are announced and tried ---

// A character of the line that tells this option from the others.
struct Mark {
    std::size_t position;
    char letter;
};

struct Option {
    std::string_view announcement;  // name, type and range, behind "option name "
    std::array<Mark, 4> marks;
    std::size_t value_at;  // position of the value's first character
    void (*apply)(char);
};

// clang-format off
using O = Options;
constexpr std::array<Option, 33> option_table{{
    {"CPU power level type combo default medium var extreme var high var medium var low", {{{15, 'C'}, {17, 'U'}, {20, 'o'}}}, 37, power},
    {"Deep type spin default 9 min 0 max 9", {{{15, 'D'}, {17, 'e'}, {20, 'v'}}}, 26, depth},
    {"Time control type check default true", {{{15, 'T'}, {17, 'm'}, {20, 'c'}}}, 34, check<&O::TC>},
    {"Time usage type spin default 3 min 1 max 9", {{{15, 'T'}, {17, 'm'}, {20, 'u'}}}, 32, time_usage},
    {"Search extension type check default true", {{{15, 'S'}, {16, 'e'}, {17, 'a'}}}, 38, check<&O::SEARCH_EE>},
    {"PVS type check default true", {{{15, 'P'}, {16, 'V'}, {17, 'S'}}}, 25, check<&O::PVS>},
    {"Turbo search type check default true", {{{15, 'T'}, {17, 'r'}, {21, 's'}}}, 34, check<&O::TURBO>},
    {"Positive float filter type combo default auto var off var full var auto var manual", {{{15, 'P'}, {17, 's'}, {20, 'i'}, {37, 'v'}}}, 43, filter_mode<&O::Positive_filterp>},
    {"Positive float filter level type spin default 5 min 0 max 6", {{{15, 'P'}, {17, 's'}, {20, 'i'}, {37, 'l'}}}, 49, filter_level<&O::positfilter>},
    {"Negative float filter type combo default auto var off var full var auto var manual", {{{15, 'N'}, {17, 'g'}, {20, 'i'}, {37, 'v'}}}, 43, filter_mode<&O::Negative_filterp>},
    {"Negative float filter level type spin default 5 min 0 max 6", {{{15, 'N'}, {17, 'g'}, {20, 'i'}, {37, 'l'}}}, 49, filter_level<&O::negatfilter>},
    {"Vertical filter type check default true", {{{15, 'V'}, {17, 'r'}, {20, 'c'}}}, 37, check<&O::VERTICAL_filt>},
    {"Lmr type check default true", {{{15, 'L'}, {17, 'r'}}}, 25, check<&O::LMR>},
    {"Null move filter type combo default plus var off var normal var plus", {{{15, 'N'}, {17, 'l'}, {20, 'm'}}}, 38, null_move},
    {"Temperament type combo default dynamic var dynamic var consistent var positional", {{{15, 'T'}, {17, 'm'}, {20, 'r'}}}, 33, temperament},
    {"Aggressiveness type spin default 1 min 0 max 9", {{{15, 'A'}, {17, 'g'}, {20, 's'}}}, 36, digit<&O::agres>},
    {"Attack to King proximity type spin default 1 min 0 max 9", {{{15, 'A'}, {17, 't'}, {22, 't'}}}, 46, digit<&O::agresprxrei>},
    {"Attack by check to King type spin default 1 min 0 max 9", {{{15, 'A'}, {17, 't'}, {22, 'b'}}}, 45, digit_or_ten<&O::agreschrei>},
    {"Confidence type spin default 7 min 1 max 9", {{{15, 'C'}, {17, 'n'}, {20, 'd'}}}, 32, confidence},
    {"Positional matrices type check default true", {{{15, 'P'}, {17, 's'}, {20, 'i'}}}, 41, check<&O::matrix>},
    {"Extra evaluation type check default true", {{{15, 'E'}, {17, 't'}, {21, 'e'}}}, 38, check<&O::EXTRA_EVALL>},
    {"Positional relevance type spin default 5 min 0 max 9", {{{15, 'P'}, {17, 's'}, {20, 'i'}, {26, 'r'}}}, 42, digit_or_ten<&O::PM>},
    {"Mobility type spin default 5 min 0 max 9", {{{15, 'M'}, {17, 'b'}, {20, 'i'}}}, 30, digit_or_ten<&O::MOB>},
    {"Castle value type spin default 3 min 0 max 9", {{{15, 'C'}, {17, 's'}, {20, 'e'}}}, 34, digit_or_ten<&O::roque_v>},
    {"Extra definition type check default true", {{{15, 'E'}, {17, 't'}, {21, 'd'}}}, 38, check<&O::extradef>},
    {"Material quociente type spin default 5 min 0 max 9", {{{15, 'M'}, {17, 't'}, {20, 'i'}, {26, 'o'}}}, 40, digit_or_ten<&O::MQ>},
    {"Own book type check default true", {{{15, 'O'}, {17, 'n'}, {21, 'o'}}}, 30, check<&O::OwnBook>},
    {"Memory type check default true", {{{15, 'M'}, {17, 'm'}, {20, 'y'}}}, 28, check<&O::HASH1>},
    {"Clear memory type button", {{{15, 'C'}, {17, 'e'}, {21, 'm'}}}, 0, button<clear_game_memory>},
    {"Deep memory type check default true", {{{15, 'D'}, {17, 'e'}, {20, 'm'}}}, 33, check<&O::HASHf>},
    {"Clear deep memory type button", {{{15, 'C'}, {17, 'e'}, {21, 'd'}}}, 0, button<clear_shallow_tables>},
    {"Full info type check default true", {{{15, 'F'}, {17, 'l'}, {20, 'i'}}}, 31, check<&O::FULL_inf>},
    {"UCI_Chess960 type check default false", {{{15, 'U'}, {17, 'I'}, {20, 'h'}}}, 34, check<&O::CHESS_960>},
}};
// clang-format on

bool matches(const Option& x) {
    return std::ranges::all_of(x.marks, [](Mark m) { return m.letter == '\0' || in_at(m.position) == m.letter; });
}

}  // namespace

void announce_options() {
    for (const Option& x : option_table) {
        write_line("option name " + std::string(x.announcement));
    }
}

void read_option() {
    if (in_at(0) != 's' || in_at(8) != 'n' || in_at(10) != 'n') {
        return;
    }
    for (const Option& x : option_table) {
        if (matches(x)) {
            x.apply(in_at(x.value_at));
        }
    }
}

}  // namespace ondrel
