// The options: what is announced, how a line is matched by its characters, and what every value writes.
#include "uci/options.h"

#include "memory/game_memory.h"
#include "memory/shallow_tables.h"
#include "support/dialogue.h"
#include "support/engine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

using namespace tests;
using namespace ondrel;

// Every setting by name.
using Settings = std::map<std::string, double>;

// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): the name as text
#define SETTING(name) Settings::value_type(#name, options.name)

Settings settings() {
    return {SETTING(CPU),
            SETTING(deepp),
            SETTING(TC),
            SETTING(Tu),
            SETTING(SEARCH_EE),
            SETTING(PVS),
            SETTING(TURBO),
            SETTING(positfilter),
            SETTING(Positive_filterp),
            SETTING(negatfilter),
            SETTING(Negative_filterp),
            SETTING(LMR),
            SETTING(NULL_MOVE),
            SETTING(agres),
            SETTING(VERTICAL_filt),
            SETTING(Temperamento),
            SETTING(agresprxrei),
            SETTING(agreschrei),
            SETTING(empp),
            SETTING(matrix),
            SETTING(EXTRA_EVALL),
            SETTING(PM),
            SETTING(MOB),
            SETTING(roque_v),
            SETTING(extradef),
            SETTING(MQ),
            SETTING(OwnBook),
            SETTING(HASH1),
            SETTING(HASHf),
            SETTING(FULL_inf),
            SETTING(CHESS_960)};
}

// As the process starts, before any test has run.
const Settings at_start = settings();

struct Value {
    std::string text;
    double value;
};

struct Option {
    std::string name;
    std::string announcement;  // behind the name
    std::string setting;       // empty for a button
    std::vector<Value> values;
    double initial = 0;
};

using Values = std::vector<Value>;

const Values yes_or_no{{"true", 1}, {"false", 0}};
const Values filter_modes{{"off", 0}, {"manual", 1}, {"auto", 2}, {"full", 3}};
// The step from 33 down to 32 is how the scale runs.
const Values filter_levels{{"0", 0}, {"1", 10}, {"2", 33}, {"3", 32}, {"4", 50}, {"5", 90}, {"6", 110}};
const Values digits{{"0", 0}, {"1", 1}, {"2", 2}, {"3", 3}, {"4", 4}, {"5", 5}, {"6", 6}, {"7", 7}, {"8", 8}, {"9", 9}};
const Values digits_and_ten{{"0", 0}, {"1", 1}, {"2", 2}, {"3", 3}, {"4", 4},
                            {"5", 5}, {"6", 6}, {"7", 7}, {"8", 8}, {"9", 10}};

const std::string check = " type check default true";
const std::string from_0_to_9 = " min 0 max 9";
const std::string from_1_to_9 = " min 1 max 9";
const std::string filter_combo = " type combo default auto var off var full var auto var manual";

const std::vector<Option> all_options{
    {"CPU power level",
     " type combo default medium var extreme var high var medium var low",
     "CPU",
     {{"extreme", 5}, {"high", 1}, {"medium", 2}, {"low", 3}},
     2},
    {"Deep",
     " type spin default 9" + from_0_to_9,
     "deepp",
     {{"0", 0}, {"1", 1}, {"2", 3}, {"3", 5}, {"4", 7}, {"5", 9}, {"6", 11}, {"7", 13}, {"8", 15}, {"9", 17}},
     17},
    {"Time control", check, "TC", yes_or_no, 1},
    {"Time usage",
     " type spin default 3" + from_1_to_9,
     "Tu",
     {{"1", 1}, {"2", 2}, {"3", 3}, {"4", 4}, {"5", 5}, {"6", 6}, {"7", 7}, {"8", 8}, {"9", 10}},
     3},
    {"Search extension", check, "SEARCH_EE", yes_or_no, 1},
    {"PVS", check, "PVS", yes_or_no, 1},
    {"Turbo search", check, "TURBO", yes_or_no, 1},
    {"Positive float filter", filter_combo, "Positive_filterp", filter_modes, 2},
    {"Positive float filter level", " type spin default 5 min 0 max 6", "positfilter", filter_levels, 100},
    {"Negative float filter", filter_combo, "Negative_filterp", filter_modes, 2},
    {"Negative float filter level", " type spin default 5 min 0 max 6", "negatfilter", filter_levels, 100},
    {"Vertical filter", check, "VERTICAL_filt", yes_or_no, 1},
    {"Lmr", check, "LMR", yes_or_no, 1},
    {"Null move filter",
     " type combo default plus var off var normal var plus",
     "NULL_MOVE",
     {{"off", 0}, {"normal", 1}, {"plus", 2}},
     2},
    {"Temperament",
     " type combo default dynamic var dynamic var consistent var positional",
     "Temperamento",
     {{"positional", 1}, {"consistent", 2}, {"dynamic", 3}},
     3},
    {"Aggressiveness", " type spin default 1" + from_0_to_9, "agres", digits, 1},
    {"Attack to King proximity", " type spin default 1" + from_0_to_9, "agresprxrei", digits, 1},
    {"Attack by check to King", " type spin default 1" + from_0_to_9, "agreschrei", digits_and_ten, 1},
    {"Confidence",
     " type spin default 7" + from_1_to_9,
     "empp",
     {{"1", 10}, {"2", 7}, {"3", 5}, {"4", 3}, {"5", 0}, {"6", -3}, {"7", -5}, {"8", -7}, {"9", -10}},
     -5},
    {"Positional matrices", check, "matrix", yes_or_no, 1},
    {"Extra evaluation", check, "EXTRA_EVALL", yes_or_no, 1},
    {"Positional relevance", " type spin default 5" + from_0_to_9, "PM", digits_and_ten, 5},
    {"Mobility", " type spin default 5" + from_0_to_9, "MOB", digits_and_ten, 5},
    {"Castle value", " type spin default 3" + from_0_to_9, "roque_v", digits_and_ten, 3},
    {"Extra definition", check, "extradef", yes_or_no, 1},
    {"Material quociente", " type spin default 5" + from_0_to_9, "MQ", digits_and_ten, 5},
    {"Own book", check, "OwnBook", yes_or_no, 1},
    {"Memory", check, "HASH1", yes_or_no, 1},
    {"Clear memory", " type button", "", {}},
    {"Deep memory", check, "HASHf", yes_or_no, 1},
    {"Clear deep memory", " type button", "", {}},
    {"Full info", check, "FULL_inf", yes_or_no, 1},
    {"UCI_Chess960", " type check default false", "CHESS_960", yes_or_no, 0},
};

std::string line_of(const Option& x, const std::string& value) {
    return "setoption name " + x.name + " value " + value;
}

Settings with(Settings before, const Option& x, double value) {
    before[x.setting] = value;
    return before;
}

// --- The announcement ---

class Announcement : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

TEST_F(Announcement, NamesTheEngineAndAllOptionsInOrder) {
    Lines expected{"id name Ondrel 29.1 64bit", "id author Ilvar Tessmo Quernal"};
    for (const Option& x : all_options) {
        expected.push_back("option name " + x.name + x.announcement);
    }
    expected.push_back("uciok");
    EXPECT_EQ(converse({"uci"}), expected);
    EXPECT_EQ(all_options.size(), 33U);
}

TEST_F(Announcement, IsMadeEachTime) { EXPECT_EQ(converse({"uci", "uci"}).size(), 72U); }

TEST_F(Announcement, ProcessStartsWithTheInitialValues) {
    for (const Option& x : all_options) {
        if (!x.setting.empty()) {
            EXPECT_EQ(at_start.at(x.setting), x.initial) << x.name;
        }
    }
}

TEST_F(Announcement, WritesNoDefaultBack) {
    converse({"uci"});
    EXPECT_EQ(settings(), at_start);
    EXPECT_EQ(options.positfilter, 100.0F);  // announced as step 5, which would be 90
    EXPECT_EQ(options.negatfilter, 100.0F);
}

// --- Every value of every option, in both loops ---

class EveryOption : public testing::TestWithParam<Option> {
protected:
    void SetUp() override { fresh_process(); }
};

// Each value is set over each other one, so that none can be what stood there before. Nothing else may change.
TEST_P(EveryOption, ValuesAreReadInTheIdleLoop) {
    const Option& x = GetParam();
    for (const Value& before : x.values) {
        for (const Value& after : x.values) {
            EXPECT_TRUE(converse({line_of(x, before.text), line_of(x, after.text)}).empty());
            EXPECT_EQ(settings(), with(at_start, x, after.value)) << before.text << " then " << after.text;
        }
    }
}

TEST_P(EveryOption, ValuesAreReadBetweenMoves) {
    const Option& x = GetParam();
    for (const Value& v : x.values) {
        fresh_process();
        const auto answers = dialogue({"position startpos", line_of(x, v.text)});
        EXPECT_EQ(answers[1], Lines{});
        EXPECT_EQ(settings(), with(at_start, x, v.value)) << v.text;
    }
}

// Only the first character of a value counts, and what is not in the table changes nothing.
TEST_P(EveryOption, OtherValuesChangeNothing) {
    const Option& x = GetParam();
    for (const Value& given : x.values) {
        for (int byte = 0; byte < 256; ++byte) {
            const char letter = static_cast<char>(byte);
            const bool known = std::ranges::any_of(x.values, [letter](const Value& v) { return v.text[0] == letter; });
            if (known || letter == '\n' || letter == '\r') {
                continue;
            }
            converse({line_of(x, given.text), line_of(x, std::string(1, letter))});
            EXPECT_EQ(settings(), with(at_start, x, given.value)) << given.text << " then byte " << byte;
        }
    }
}

TEST_P(EveryOption, FirstCharacterOfTheValueDecides) {
    const Option& x = GetParam();
    for (const Value& v : x.values) {
        converse({line_of(x, v.text.substr(0, 1) + "0zz 17")});
        EXPECT_EQ(settings(), with(at_start, x, v.value)) << v.text;
    }
}

TEST_P(EveryOption, LineWithoutAValueChangesNothing) {
    const Option& x = GetParam();
    for (const char* rest : {"", " value", " value "}) {
        converse({"setoption name " + x.name + rest});
        EXPECT_EQ(settings(), at_start) << rest;
    }
}

// The value stands at a fixed place: a line that is shifted by a blank misses it.
TEST_P(EveryOption, ShiftedLinesChangeNothing) {
    const Option& x = GetParam();
    for (const Value& v : x.values) {
        for (const std::string& line :
             {std::string(1, ' ').append(line_of(x, v.text)), "setoption  name " + x.name + " value " + v.text,
              "setoption name  " + x.name + " value " + v.text, "setoption name " + x.name + "  value " + v.text,
              "setoption name " + x.name + " value  " + v.text, "Setoption name " + x.name + " value " + v.text}) {
            converse({line});
            EXPECT_EQ(settings(), at_start) << line;
        }
    }
}

std::string name_of_option(const testing::TestParamInfo<Option>& info) {
    std::string name = info.param.name;
    std::erase_if(name, [](char x) { return x == ' ' || x == '_'; });
    return name;
}

void PrintTo(const Option& x, std::ostream* os) { *os << x.name; }

std::vector<Option> options_with_a_value() {
    std::vector<Option> without_buttons = all_options;
    std::erase_if(without_buttons, [](const Option& x) { return x.values.empty(); });
    return without_buttons;
}

INSTANTIATE_TEST_SUITE_P(Option, EveryOption, testing::ValuesIn(options_with_a_value()), name_of_option);

// --- Matching ---

class OptionLine : public testing::Test {
protected:
    void SetUp() override { fresh_process(); }
};

// Nothing between the characters that are looked at matters.
TEST_F(OptionLine, IsMatchedByItsCharactersAlone) {
    converse({"s.......n.n....D.e..v.....4"});
    EXPECT_EQ(options.deepp, 7);
    converse({"s.......n.n....C.U..o................l"});
    EXPECT_EQ(options.CPU, 3);
    converse({"s.......n.n....P.s..i................l...........1"});
    EXPECT_EQ(options.positfilter, 10.0F);
    converse({"s.......n.n....A.t....b......................9"});
    EXPECT_EQ(options.agreschrei, 10);
    converse({"s.......n.n....M.t..i.....o.............9"});
    EXPECT_EQ(options.MQ, 10.0F);
}

// One wrong character of those that are looked at, and the line is another's or nobody's.
TEST_F(OptionLine, EveryCharacterLookedAtIsNeeded) {
    const std::string line = "setoption name Castle value value 9";
    for (const std::size_t k : {0U, 8U, 10U, 15U, 17U, 20U}) {
        std::string other_line = line;
        other_line[k] = '#';
        converse({other_line});
        EXPECT_EQ(settings(), at_start) << k;
    }
    converse({line});
    EXPECT_EQ(options.roque_v, 10);
}

// The line of one option may pass the test of another, which then finds a blank where its value would be.
TEST_F(OptionLine, PositionalRelevanceLeavesTheMatrices) {
    for (const char* digit : {"0", "1", "9"}) {
        converse({std::string("setoption name Positional relevance value ") + digit});
        EXPECT_EQ(options.matrix, 1);
    }
    EXPECT_EQ(options.PM, 10.0F);
}

// A line goes through all rows: one made for it sets two options at once.
TEST_F(OptionLine, MaySetTwoOptions) {
    converse({"setoption name Positional relevance valu f8"});
    EXPECT_EQ(options.matrix, 0);
    EXPECT_EQ(options.PM, 8.0F);
}

TEST_F(OptionLine, UnknownNamesHaveNoAnswer) {
    for (const char* line : {"setoption", "setoption name", "setoption name ", "setoption name Hash value 64",
                             "setoption name deep value 5", "setoption value 5", "setoption name value",
                             "setoption name Ponder value true", "setoption name UCI_AnalyseMode value true"}) {
        EXPECT_EQ(dialogue({line, "position startpos", line}), (std::vector<Lines>{{}, {"bestmove e2e4"}, {}})) << line;
        EXPECT_EQ(settings(), at_start) << line;
    }
}

TEST_F(OptionLine, SpinOfTwoDigitsIsReadByItsFirst) {
    set_option("Deep", "17");
    EXPECT_EQ(options.deepp, 1);
    set_option("Mobility", "42");
    EXPECT_EQ(options.MOB, 4.0F);
}

TEST_F(OptionLine, DeepFiveIsNinePlies) {
    set_option("Deep", "5");
    EXPECT_EQ(options.deepp, 9);
}

TEST_F(OptionLine, DeepNineIsNoLimit) {
    set_option("Deep", "5");
    set_option("Deep", "9");
    EXPECT_EQ(options.deepp, no_depth_limit);
}

TEST_F(OptionLine, TimeUsageNineIsTen) {
    set_option("Time usage", "9");
    EXPECT_EQ(options.Tu, 10);
}

// A divisor of the men on the board must not become nothing.
TEST_F(OptionLine, TimeUsageZeroIsNoValue) {
    set_option("Time usage", "0");
    EXPECT_EQ(options.Tu, 3);
}

TEST_F(OptionLine, ConfidenceFiveIsIndifferent) {
    set_option("Confidence", "5");
    EXPECT_EQ(options.empp, 0);
}

TEST_F(OptionLine, TemperamentPositionalAndDynamic) {
    set_option("Temperament", "positional");
    EXPECT_EQ(options.Temperamento, 1);
    set_option("Temperament", "dynamic");
    EXPECT_EQ(options.Temperamento, 3);
}

TEST_F(OptionLine, OwnBookOffMakesTheFirstMoveSearched) {
    const Lines lines =
        converse({"setoption name Own book value false", "setoption name Deep value 0", "position startpos"});
    EXPECT_GT(count_starting(lines, "info score"), 0);
    EXPECT_EQ(count_starting(lines, "bestmove "), 1);
}

TEST_F(OptionLine, IsNotReadWhileWaitingForGo) {
    converse({"setoption name Deep value 1", "position startpos moves e2e4 a7a6", "setoption name Castle value value 9",
              "setoption name Full info value false", "go"});
    EXPECT_EQ(options.roque_v, 3);
    EXPECT_EQ(options.FULL_inf, 1);
}

TEST_F(OptionLine, WaitsBehindARunningSearch) {
    int before = 0;
    const auto answers = dialogue({"setoption name Deep value 1",
                                   "position startpos moves e2e4 a7a6",
                                   "go",
                                   {"setoption name Castle value value 9", [&before] { before = options.roque_v; }},
                                   "isready"});
    EXPECT_EQ(count_starting(answers[2], "bestmove "), 1);
    EXPECT_EQ(before, 3);
    EXPECT_EQ(options.roque_v, 10);
}

// --- The buttons ---

constexpr SearchDemand some_demand{300000, 9};

LineKey some_key() {
    LineKey key{};
    key.fill('x');
    return key;
}

bool remembers() { return hash_mem_scan(some_key(), some_demand).has_value(); }

void memorise() {
    hash_mem_build(some_key(), some_demand, {12.0F, move_from("e2e4"), '0'});
    ASSERT_TRUE(remembers());
    ASSERT_EQ(next_mem_record(), 1);
}

TEST_F(OptionLine, ClearMemoryForgetsEverySearchInBothLoops) {
    memorise();
    converse({"setoption name Clear memory"});
    EXPECT_FALSE(remembers());
    EXPECT_EQ(next_mem_record(), 0);
    memorise();
    converse({"position startpos", "setoption name Clear memory value"});
    EXPECT_FALSE(remembers());
    EXPECT_EQ(next_mem_record(), 0);
}

TEST_F(OptionLine, UciForgetsEverySearchWithMemoryOn) {
    memorise();
    converse({"uci"});
    EXPECT_FALSE(remembers());
    EXPECT_EQ(next_mem_record(), 0);
}

TEST_F(OptionLine, UciForgetsNothingWithMemoryOff) {
    memorise();
    converse({"setoption name Memory value false", "uci"});
    EXPECT_TRUE(remembers());
    EXPECT_EQ(next_mem_record(), 1);
}

constexpr int first_table = 3;
constexpr int last_table = 5;

void store_in_all_tables() {
    for (int n = first_table; n <= last_table; ++n) {
        for (const Colour c : {white, black}) {
            hash_table_build(n, c, NodeKey{});
            hash_table_store(n, c, 12.0F);
        }
    }
}

int count_tables_that_remember() {
    int count = 0;
    for (int n = first_table; n <= last_table; ++n) {
        for (const Colour c : {white, black}) {
            count += hash_table_scan(n, c, NodeKey{}).has_value() ? 1 : 0;
        }
    }
    return count;
}

TEST_F(OptionLine, ClearMemoryLeavesSettingsAndShallowTables) {
    store_in_all_tables();
    converse({"setoption name Clear memory"});
    EXPECT_EQ(settings(), at_start);
    EXPECT_EQ(count_tables_that_remember(), 6);
}

TEST_F(OptionLine, ClearDeepMemoryEmptiesAllSixTablesInBothLoops) {
    for (const char* line_before : {"isready", "position startpos"}) {
        dialogue({line_before, {"setoption name Clear deep memory", [] {
                                    store_in_all_tables();
                                    ASSERT_EQ(count_tables_that_remember(), 6);
                                }}});
        EXPECT_EQ(count_tables_that_remember(), 0) << line_before;
        for (int n = first_table; n <= last_table; ++n) {
            EXPECT_EQ(next_shallow_record(n, white) + next_shallow_record(n, black), 0) << n;
        }
    }
}

TEST_F(OptionLine, ClearDeepMemoryLeavesTheGameLongMemory) {
    memorise();
    converse({"setoption name Clear deep memory"});
    EXPECT_TRUE(remembers());
    EXPECT_EQ(settings(), at_start);
}

}  // namespace
