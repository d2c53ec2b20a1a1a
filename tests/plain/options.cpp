#include "plain/options.h"

#include <utility>
#include <vector>

#include "plain/memory.h"
#include "plain/state.h"

namespace plain {

const std::array<const char*, 33> option_lines = {
    "option name CPU power level type combo default medium var extreme var high var medium var low",
    "option name Deep type spin default 9 min 0 max 9",
    "option name Time control type check default true",
    "option name Time usage type spin default 3 min 1 max 9",
    "option name Search extension type check default true",
    "option name PVS type check default true",
    "option name Turbo search type check default true",
    "option name Positive float filter type combo default auto var off var full var auto var manual",
    "option name Positive float filter level type spin default 5 min 0 max 6",
    "option name Negative float filter type combo default auto var off var full var auto var manual",
    "option name Negative float filter level type spin default 5 min 0 max 6",
    "option name Vertical filter type check default true",
    "option name Lmr type check default true",
    "option name Null move filter type combo default plus var off var normal var plus",
    "option name Temperament type combo default dynamic var dynamic var consistent var positional",
    "option name Aggressiveness type spin default 1 min 0 max 9",
    "option name Attack to King proximity type spin default 1 min 0 max 9",
    "option name Attack by check to King type spin default 1 min 0 max 9",
    "option name Confidence type spin default 7 min 1 max 9",
    "option name Positional matrices type check default true",
    "option name Extra evaluation type check default true",
    "option name Positional relevance type spin default 5 min 0 max 9",
    "option name Mobility type spin default 5 min 0 max 9",
    "option name Castle value type spin default 3 min 0 max 9",
    "option name Extra definition type check default true",
    "option name Material quociente type spin default 5 min 0 max 9",
    "option name Own book type check default true",
    "option name Memory type check default true",
    "option name Clear memory type button",
    "option name Deep memory type check default true",
    "option name Clear deep memory type button",
    "option name Full info type check default true",
    "option name UCI_Chess960 type check default false",
};

// --- Values, by their first character ---

// Each pair is a character and what it stands for; any other character changes nothing.
template <typename Value>
using Meanings = std::vector<std::pair<char, Value>>;

template <typename Value>
static void decode(char text, const Meanings<Value>& meanings, Value& value) {
    for (const auto& [character, meaning] : meanings) {
        if (character == text) {
            value = meaning;
        }
    }
}

static void decode_check(char text, bool& value) { decode(text, Meanings<bool>{{'t', true}, {'f', false}}, value); }

// Digits as themselves from `lowest` to 8; what 9 stands for differs.
template <typename Value>
static void decode_digit(char text, char lowest, Value of_nine, Value& value) {
    if (text >= lowest && text <= '8') {
        value = static_cast<Value>(text - '0');
    } else if (text == '9') {
        value = of_nine;
    }
}

static void decode_filter(char text, int& value) {
    decode(text, Meanings<int>{{'o', 0}, {'m', 1}, {'a', 2}, {'f', 3}}, value);
}

static void decode_level(char text, float& value) {
    decode(text,
           Meanings<float>{
               {'0', 0.0F}, {'1', 10.0F}, {'2', 33.0F}, {'3', 32.0F}, {'4', 50.0F}, {'5', 90.0F}, {'6', 110.0F}},
           value);
}

// --- The table ---

struct Row {
    std::vector<std::pair<int, char>> tests;  // position and character
    int value_at;
    void (*apply)(char);
};

static void set_power(char text) { decode(text, Meanings<int>{{'e', 5}, {'h', 1}, {'m', 2}, {'l', 3}}, settings.CPU); }
static void set_deep(char text) {
    if (text >= '0' && text <= '9') {
        settings.deepp = text == '0' ? 0 : 2 * (text - '0') - 1;
        tree.deep = settings.deepp;
    }
}
static void set_time_control(char text) { decode_check(text, settings.TC); }
static void set_time_usage(char text) { decode_digit(text, '1', 10, settings.Tu); }
static void set_search_extension(char text) {
    decode_check(text, settings.SEARCH_EE);
    decode_check(text, tree.SEARCH_E);
}
static void set_pvs(char text) { decode_check(text, settings.PVS); }
static void set_turbo(char text) { decode_check(text, settings.TURBO); }
static void set_positive_filter(char text) {
    decode_filter(text, settings.Positive_filterp);
    decode_filter(text, tree.Positive_filter);
}
static void set_positive_level(char text) { decode_level(text, settings.positfilter); }
static void set_negative_filter(char text) {
    decode_filter(text, settings.Negative_filterp);
    decode_filter(text, tree.Negative_filter);
}
static void set_negative_level(char text) { decode_level(text, settings.negatfilter); }
static void set_vertical_filter(char text) { decode_check(text, settings.VERTICAL_filt); }
static void set_lmr(char text) { decode_check(text, settings.LMR); }
static void set_null_move(char text) { decode(text, Meanings<int>{{'o', 0}, {'n', 1}, {'p', 2}}, settings.NULL_MOVE); }
static void set_temperament(char text) {
    decode(text, Meanings<int>{{'p', 1}, {'c', 2}, {'d', 3}}, settings.Temperamento);
}
static void set_aggressiveness(char text) { decode_digit(text, '0', 9.0F, settings.agres); }
static void set_king_proximity(char text) { decode_digit(text, '0', 9.0F, settings.agresprxrei); }
static void set_attack_by_check(char text) { decode_digit(text, '0', 10, settings.agreschrei); }
static void set_confidence(char text) {
    decode(
        text,
        Meanings<int>{{'1', 10}, {'2', 7}, {'3', 5}, {'4', 3}, {'5', 0}, {'6', -3}, {'7', -5}, {'8', -7}, {'9', -10}},
        settings.empp);
}
static void set_matrices(char text) { decode(text, Meanings<int>{{'t', 1}, {'f', 0}}, settings.matrix); }
static void set_extra_evaluation(char text) {
    decode_check(text, settings.EXTRA_EVALL);
    decode_check(text, tree.EXTRA_EVAL);
}
static void set_positional_relevance(char text) { decode_digit(text, '0', 10.0F, settings.PM); }
static void set_mobility(char text) { decode_digit(text, '0', 10.0F, settings.MOB); }
static void set_castle_value(char text) { decode_digit(text, '0', 10, settings.roque_v); }
static void set_extra_definition(char text) { decode_check(text, settings.extradef); }
static void set_material_quotient(char text) { decode_digit(text, '0', 10.0F, settings.MQ); }
static void set_own_book(char text) { decode_check(text, settings.OwnBook); }
static void set_memory(char text) { decode_check(text, settings.HASH1); }
static void press_clear_memory(char) { clear_game_memory(); }
static void set_deep_memory(char text) { decode_check(text, shallow.HASHf); }
static void press_clear_deep_memory(char) { clear_all_shallow_tables(); }
static void set_full_info(char text) { decode_check(text, settings.FULL_inf); }
static void set_chess960(char text) { decode_check(text, settings.CHESS_960); }

static const std::array<Row, 33>& rows() {
    static const std::array<Row, 33> table{{
        {{{15, 'C'}, {17, 'U'}, {20, 'o'}}, 37, set_power},
        {{{15, 'D'}, {17, 'e'}, {20, 'v'}}, 26, set_deep},
        {{{15, 'T'}, {17, 'm'}, {20, 'c'}}, 34, set_time_control},
        {{{15, 'T'}, {17, 'm'}, {20, 'u'}}, 32, set_time_usage},
        {{{15, 'S'}, {16, 'e'}, {17, 'a'}}, 38, set_search_extension},
        {{{15, 'P'}, {16, 'V'}, {17, 'S'}}, 25, set_pvs},
        {{{15, 'T'}, {17, 'r'}, {21, 's'}}, 34, set_turbo},
        {{{15, 'P'}, {17, 's'}, {20, 'i'}, {37, 'v'}}, 43, set_positive_filter},
        {{{15, 'P'}, {17, 's'}, {20, 'i'}, {37, 'l'}}, 49, set_positive_level},
        {{{15, 'N'}, {17, 'g'}, {20, 'i'}, {37, 'v'}}, 43, set_negative_filter},
        {{{15, 'N'}, {17, 'g'}, {20, 'i'}, {37, 'l'}}, 49, set_negative_level},
        {{{15, 'V'}, {17, 'r'}, {20, 'c'}}, 37, set_vertical_filter},
        {{{15, 'L'}, {17, 'r'}}, 25, set_lmr},
        {{{15, 'N'}, {17, 'l'}, {20, 'm'}}, 38, set_null_move},
        {{{15, 'T'}, {17, 'm'}, {20, 'r'}}, 33, set_temperament},
        {{{15, 'A'}, {17, 'g'}, {20, 's'}}, 36, set_aggressiveness},
        {{{15, 'A'}, {17, 't'}, {22, 't'}}, 46, set_king_proximity},
        {{{15, 'A'}, {17, 't'}, {22, 'b'}}, 45, set_attack_by_check},
        {{{15, 'C'}, {17, 'n'}, {20, 'd'}}, 32, set_confidence},
        {{{15, 'P'}, {17, 's'}, {20, 'i'}}, 41, set_matrices},
        {{{15, 'E'}, {17, 't'}, {21, 'e'}}, 38, set_extra_evaluation},
        {{{15, 'P'}, {17, 's'}, {20, 'i'}, {26, 'r'}}, 42, set_positional_relevance},
        {{{15, 'M'}, {17, 'b'}, {20, 'i'}}, 30, set_mobility},
        {{{15, 'C'}, {17, 's'}, {20, 'e'}}, 34, set_castle_value},
        {{{15, 'E'}, {17, 't'}, {21, 'd'}}, 38, set_extra_definition},
        {{{15, 'M'}, {17, 't'}, {20, 'i'}, {26, 'o'}}, 40, set_material_quotient},
        {{{15, 'O'}, {17, 'n'}, {21, 'o'}}, 30, set_own_book},
        {{{15, 'M'}, {17, 'm'}, {20, 'y'}}, 28, set_memory},
        {{{15, 'C'}, {17, 'e'}, {21, 'm'}}, 0, press_clear_memory},
        {{{15, 'D'}, {17, 'e'}, {20, 'm'}}, 33, set_deep_memory},
        {{{15, 'C'}, {17, 'e'}, {21, 'd'}}, 0, press_clear_deep_memory},
        {{{15, 'F'}, {17, 'l'}, {20, 'i'}}, 31, set_full_info},
        {{{15, 'U'}, {17, 'I'}, {20, 'h'}}, 34, set_chess960},
    }};
    return table;
}

void set_option(const std::string& line) {
    const auto in = [&](int k) {
        return static_cast<std::size_t>(k) < line.size() ? line[static_cast<std::size_t>(k)] : '\0';
    };
    if (in(0) != 's' || in(8) != 'n' || in(10) != 'n') {
        return;
    }
    for (const Row& row : rows()) {
        bool matches = true;
        for (const auto& [position, character] : row.tests) {
            matches = matches && in(position) == character;
        }
        if (matches) {
            row.apply(in(row.value_at));
        }
    }
}

}  // namespace plain
