#include "compare/conversations.h"

#include <algorithm>
#include <cmath>

#include "compare/positions.h"

namespace compare {

namespace {

struct Option {
    const char* name;
    std::vector<const char*> usual;  // the default and its neighbours
    std::vector<const char*> all;
};

// All but Deep, Time control, Search extension and Own book, which depend on the search that is planned.
const std::vector<Option>& options() {
    static const std::vector<const char*> check = {"true", "false"};
    static const std::vector<const char*> digits = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
    static const std::vector<const char*> from_one = {"1", "2", "3", "4", "5", "6", "7", "8", "9"};
    static const std::vector<const char*> levels = {"0", "1", "2", "3", "4", "5", "6"};
    static const std::vector<const char*> filter = {"off", "full", "auto", "manual"};
    static const std::vector<Option> list = {
        {"CPU power level", {"medium", "high", "low"}, {"extreme", "high", "medium", "low"}},
        {"Time usage", {"2", "3", "4"}, from_one},
        {"PVS", {"true"}, check},
        {"Turbo search", check, check},
        {"Positive float filter", filter, filter},
        {"Positive float filter level", {"4", "5", "6"}, levels},
        {"Negative float filter", filter, filter},
        {"Negative float filter level", {"4", "5", "6"}, levels},
        {"Vertical filter", check, check},
        {"Lmr", {"true"}, check},
        {"Null move filter", {"normal", "plus"}, {"off", "normal", "plus"}},
        {"Temperament", {"dynamic", "consistent", "positional"}, {"dynamic", "consistent", "positional"}},
        {"Aggressiveness", {"0", "1", "2"}, digits},
        {"Attack to King proximity", {"0", "1", "2"}, digits},
        {"Attack by check to King", {"0", "1", "2", "9"}, digits},
        {"Confidence", {"6", "7", "8"}, from_one},
        {"Positional matrices", check, check},
        {"Extra evaluation", {"true"}, check},
        {"Positional relevance", {"4", "5", "6"}, digits},
        {"Mobility", {"4", "5", "6"}, digits},
        {"Castle value", {"2", "3", "4", "9"}, digits},
        {"Extra definition", check, check},
        {"Material quociente", {"4", "5", "6"}, digits},
        {"Memory", check, check},
        {"Deep memory", check, check},
        {"Full info", check, check},
        {"UCI_Chess960", {"false"}, check},
    };
    return list;
}

class Maker {
public:
    Maker(std::uint64_t seed, Clock clock) : random_(seed), clock_(clock) {}

    Conversation make() {
        if (random_.chance(10)) {
            say("uci");
        }
        set("Own book", random_.chance(85) ? "false" : "true");
        time_control_ = random_.chance(counts() ? 92 : 30);
        set("Time control", time_control_ ? "true" : "false");
        extension_ = random_.chance(counts() ? 85 : 30);
        set("Search extension", extension_ ? "true" : "false");
        set_options(random_.pick_weighted({25, 65, 10}));
        patient_ = counts() && random_.chance(40);
        if (patient_) {
            conversation_.clock_step = 1;
        }

        const int exchanges = random_.between(2, 4);
        for (int i = 0; i < exchanges; ++i) {
            if (random_.chance(12)) {
                say_something_else();
            }
            if (random_.chance(10)) {
                set_options(random_.pick_weighted({0, 90, 10}));
            }
            if (random_.chance(9)) {
                begin_new_game();
            } else {
                exchange();
            }
        }
        if (random_.chance(70)) {
            say("quit");
        }
        return conversation_;
    }

private:
    Random random_;
    Clock clock_;
    Conversation conversation_;
    std::vector<Place> places_;
    bool time_control_ = true;
    bool extension_ = true;
    // With the counting clock: time enough to extend lines, which is done while the engine stands worse.
    bool patient_ = false;
    double effort_ = 1;  // how much more the options make the engine search

    bool counts() const { return clock_ == Clock::counting; }
    void say(const std::string& line) { conversation_.lines.push_back(line); }
    void set(const std::string& name, const std::string& value) { say("setoption name " + name + " value " + value); }

    // How much: 0 none, 1 a few near the defaults, 2 all of them anyhow.
    void set_options(int how_much) {
        const int percent = how_much == 0 ? 0 : how_much == 1 ? 10 : 70;
        for (const Option& option : options()) {
            if (!random_.chance(percent)) {
                continue;
            }
            const bool anyhow = how_much == 2 || random_.chance(25);
            const std::string value = random_.pick(anyhow ? option.all : option.usual);
            set(option.name, value);
            weigh(option.name, value);
        }
    }

    void weigh(const std::string& name, const std::string& value) {
        const bool switched_off = value == "false" || value == "off";
        if (switched_off && (name == "PVS" || name == "Lmr" || name == "Null move filter")) {
            effort_ *= 3;
        }
        if (switched_off && (name == "Vertical filter" || name == "Turbo search" || name == "Positive float filter" ||
                             name == "Negative float filter" || name == "Extra evaluation")) {
            effort_ *= 2;
        }
    }

    void say_something_else() {
        switch (random_.below(5)) {
            case 0: say("setoption name Clear memory"); break;
            case 1: say("setoption name Clear deep memory"); break;
            case 2: say("isready"); break;
            case 3:
                say(random_.pick({"ucinewgame", "stop", "uci", "", "position", "go wtime 1", "debug on",
                                  "setoption name Deep value x", "setoption name Nothing value 3", "ponderhit"}));
                break;
            default: set("UCI_Chess960", random_.pick({"true", "false"}));
        }
    }

    // The plain engine's time for a search, in seconds, by the Deep option: measured, and only right within a factor
    // of four.
    [[nodiscard]] double cost(const plain::Situation& situation, int deep) const {
        static constexpr std::array<double, 7> with_thirty_moves = {0.05, 0.05, 0.15, 0.6, 2.5, 6.0, 15.0};
        const double plies = 2.0 * deep;
        return with_thirty_moves[deep] * std::pow(branching(situation) / 30.0, 2.2) *
               std::sqrt(std::pow(effort_, plies / 6.0));
    }

    int deepest(const plain::Situation& situation) {
        const double budget = random_.chance(80) ? 0.7 : 3.0;
        int deep = 1;
        while (deep < 6 && cost(situation, deep + 1) <= budget) {
            ++deep;
        }
        return deep;
    }

    std::string digits(int count) {
        std::string text(1, static_cast<char>('0' + random_.between(random_.chance(5) ? 0 : 1, 9)));
        if (counts() && random_.chance(70)) {
            text[0] = static_cast<char>('1' + random_.below(3));
        }
        while (static_cast<int>(text.size()) < count) {
            text += static_cast<char>('0' + random_.below(10));
        }
        return text;
    }

    std::string go_line(int count_of_digits) {
        const std::string clock = digits(count_of_digits);
        const std::string first = random_.chance(90) ? "wtime " : "btime ";
        const std::string second = first == "wtime " ? " btime " : " wtime ";
        const std::string rest =
            second + digits(random_.between(1, 8)) + (random_.chance(30) ? " winc 1000 binc 2000" : "");
        if (random_.chance(15)) {
            return "go movestogo " + digits(random_.between(1, 3)) + " " + first + clock + rest;
        }
        return "go " + first + clock + rest;
    }

    // A go line whose limits real time cannot reach: from depth 9 on the nodes read the clock.
    std::string go_line_on_real_time(int deep) {
        const bool no_limits = !time_control_ && !extension_;
        switch (random_.pick_weighted({70, 10, 10, 10})) {
            case 0: return "go wtime 99999999 btime 99999999";
            case 1: return go_line(random_.between(1, 4));
            case 2: return no_limits ? go_line(random_.between(5, 7)) : go_line(random_.between(8, 10));
            default:
                if (no_limits || deep <= 4) {
                    return random_.pick({"go infinite", "go", "go movetime 1000", "go depth 3", "go ponder", "gogo"});
                }
                return "go wtime 300000";
        }
    }

    // The clock decides where the search ends: after some hundreds or thousands of readings.
    std::string go_line_with_counting_clock(const plain::Situation& situation) {
        if (patient_ && random_.chance(80)) {
            return go_line(random_.between(7, 9));
        }
        const int count_of_digits = random_.pick_weighted({0, 1, 1, 1, 2, 12, 70, 10, 3});
        std::string line = go_line(std::max(count_of_digits, 1));
        if (conversation_.clock_step == 0) {
            const double tempo = count_of_digits == 5 ? 40000 : count_of_digits == 7 ? 2e6 : 2e5;
            const double hard_limit = tempo / (men_without_kings(situation) / 3.0 + 5);
            // Lines are extended only within a tenth of the hard limit: cheap positions get the time for it.
            const double most = cost(situation, 4) < 0.4 ? 200000 : 4000;
            const double readings = 20 * std::pow(most / 20, random_.below(1000) / 1000.0);
            conversation_.clock_step = std::max(1, static_cast<int>(hard_limit / readings));
        }
        return line;
    }

    int choose_deep(const plain::Situation& situation) {
        const int highest = deepest(situation);
        if (patient_) {
            return highest;
        }
        if (counts() && time_control_ && cost(situation, 4) < 1.5) {
            return random_.chance(80) ? random_.between(5, 9) : random_.between(0, highest);
        }
        const bool limits_are_real = !counts() && (time_control_ || extension_);
        const int allowed = limits_are_real ? std::min(highest, 4) : highest;
        return random_.chance(60) ? allowed : random_.between(0, allowed);
    }

    // A first move without book searches at once, at whatever depth stands.
    void begin_new_game() {
        set("Deep", std::to_string(random_.between(0, counts() && time_control_ && random_.chance(30) ? 6 : 3)));
        say(random_.chance(50)
                ? std::string("position startpos")
                : "position startpos moves " + random_.pick({"e2e4", "d2d4", "g1f3", "b1c3", "b2b3", "g2g3", "c2c4",
                                                             "f2f4", "a2a3", "h2h4", "e2e3", "e1e3", "a4a5"}));
        if (random_.chance(50)) {
            say("go wtime 300000 btime 300000");
        }
        if (counts() && conversation_.clock_step == 0) {
            conversation_.clock_step = random_.between(5, 100);
        }
    }

    Place choose_place() {
        if (!places_.empty() && random_.chance(45)) {
            Place place = random_.pick(places_);
            if (random_.chance(60)) {
                // The game goes on; otherwise the same line again, which the memory may know.
                play_on(random_, place, random_.between(1, 3));
            }
            return place;
        }
        Place place = random_place(random_);
        for (int tries = 0; patient_ && tries < 60 && !is_worse_and_cheap(place.now); ++tries) {
            place = random_place(random_);
        }
        return place;
    }

    bool is_worse_and_cheap(const plain::Situation& situation) {
        return lead(situation) <= -10 && lead(situation) >= -90 && cost(situation, 5) < 1.5;
    }

    void exchange() {
        const Place place = choose_place();
        places_.push_back(place);
        const int deep = choose_deep(place.now);
        set("Deep", std::to_string(deep));
        say(position_line(place));
        if (random_.chance(4)) {
            say(random_.pick({"isready", "setoption name Deep value 1", "position startpos", "quit", "stop"}));
        }
        say(counts() ? go_line_with_counting_clock(place.now) : go_line_on_real_time(deep));
    }
};

}  // namespace

Conversation random_conversation(std::uint64_t seed, Clock clock) {
    Conversation conversation = Maker(seed, clock).make();
    if (clock == Clock::counting && conversation.clock_step == 0) {
        conversation.clock_step = 1;
    }
    return conversation;
}

}  // namespace compare
