// Whole conversations. The input is what the engine reads; what it writes must be lines of its protocol.
//
// A search of a nonsense position takes long, and nothing ends it from outside: even without depth the root is swept
// some thousand times. So the conversation is made cheap before it is given to the engine: few positions, FEN boards
// with few men, and no depth but for the smallest.
#include "fuzzing.h"

#include "uci/command_loop.h"

#include <iostream>
#include <streambuf>

namespace {

// Looks at each line written and forgets it.
class CheckedOutput : public std::streambuf {
public:
    void check_rest() const { fuzz::require(line_.empty(), "an unfinished line"); }

private:
    int_type overflow(int_type x) override {
        if (x == '\n') {
            check();
            line_.clear();
        } else {
            line_ += static_cast<char>(x);
        }
        return x;
    }
    std::streamsize xsputn(const char* text, std::streamsize n) override {
        for (std::streamsize k = 0; k < n; ++k) {
            overflow(static_cast<unsigned char>(text[k]));
        }
        return n;
    }
    void check() const {
        for (const std::string_view start :
             {"info score ", "info nps ", "bestmove ", "readyok", "option name ", "id ", "uciok"}) {
            if (line_.starts_with(start)) {
                return;
            }
        }
        fuzz::fail("a line of no kind: " + line_);
    }

    std::string line_;
};

char at(const std::string& line, std::size_t k) { return k < line.size() ? line[k] : '\0'; }

bool is_depth_option(const std::string& line) {
    return at(line, 0) == 's' && at(line, 15) == 'D' && at(line, 17) == 'e' && at(line, 20) == 'v';
}
bool is_position(const std::string& line) { return at(line, 0) == 'p'; }
bool is_fen_line(const std::string& line) { return at(line, 9) == 'f'; }
bool is_game_in_progress(const std::string& line) { return at(line, 9) == 's' && at(line, 28) != '\0'; }
bool is_go(const std::string& line) { return at(line, 0) == 'g' && at(line, 1) == 'o'; }

constexpr int most_positions = 2;
constexpr std::ptrdiff_t most_men = 6;
constexpr std::ptrdiff_t usual_men = 3;

bool is_man(char x) { return std::string_view("pnbrqkPNBRQK").find(x) != std::string_view::npos; }

// Leaves out the men of the board field of a FEN line that are too many.
std::string with_few_men(const std::string& line, std::ptrdiff_t allowed) {
    constexpr std::ptrdiff_t board_at = 13;
    if (!is_fen_line(line) || std::ssize(line) <= board_at) {
        return line;
    }
    std::string thinned = line;
    std::ptrdiff_t men = 0;
    for (auto x = thinned.begin() + board_at; x != thinned.end() && *x != ' '; ++x) {
        if (is_man(*x) && ++men > allowed) {
            *x = '1';
        }
    }
    return thinned;
}

// The value of Deep that the position can bear.
char depth_for(const std::string& line) {
    if (!is_fen_line(line)) {
        return '0';
    }
    const auto men = std::ranges::count_if(line, is_man) - std::ranges::count_if("position fen", is_man);
    return men <= 3 ? '2' : men <= 5 ? '1' : '0';
}

// A go line whose clock leaves the depth at no more than that of few men.
std::string_view shallow_go(const std::string& line) {
    constexpr std::array<std::string_view, 6> clocks{"go",
                                                     "go infinite",
                                                     "go wtime 5 btime 5",
                                                     "go wtime 50 btime 1",
                                                     "go movestogo 9 wtime 50 btime 1",
                                                     "go wtime 99999999"};
    return clocks[line.size() % clocks.size()];
}

// One input in eight may have a game in progress and a board of some size.
std::string made_cheap(const std::vector<std::string>& lines, bool may_cost_more) {
    std::string input;
    int positions = 0;
    for (const std::string& line : lines) {
        if (is_depth_option(line) || (!may_cost_more && is_game_in_progress(line)) ||
            (is_position(line) && ++positions > most_positions)) {
            continue;
        }
        if (is_go(line)) {
            input += shallow_go(line);
        } else if (is_position(line)) {
            const std::string thinned = with_few_men(line, may_cost_more ? most_men : usual_men);
            input += "setoption name Deep value ";
            input += depth_for(thinned);
            input += '\n';
            input += thinned;
        } else {
            input += line;
        }
        input += '\n';
    }
    return input;
}

// Reads from the text as the standard input would.
class TextInput : public std::streambuf {
public:
    explicit TextInput(std::string& text) { setg(text.data(), text.data(), text.data() + text.size()); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ondrel::begin_process();
    std::string text = made_cheap(fuzz::lines_of(data, size), size % 8 == 0);
    TextInput from(text);
    CheckedOutput to;
    auto* const cin_before = std::cin.rdbuf(&from);
    auto* const cout_before = std::cout.rdbuf(&to);
    std::cin.clear();
    ondrel::run_command_loop();
    std::cin.rdbuf(cin_before);
    std::cout.rdbuf(cout_before);
    to.check_rest();
    fuzz::check_settings();
    return 0;
}
