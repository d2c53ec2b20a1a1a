#include "standard_uci/engine_port.h"

#include "base/options.h"
#include "board/attacks.h"
#include "board/game.h"
#include "memory/shallow_tables.h"
#include "search/observers.h"
#include "search/schedule.h"
#include "search/state.h"
#include "uci/book.h"
#include "uci/command_line.h"
#include "uci/go.h"
#include "uci/options.h"
#include "uci/position.h"
#include "uci/process.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <sstream>

namespace ondrel::standard_uci {
namespace {

// --- Text ---

EngineMove text_of(ondrel::Move m) {
    return {static_cast<char>('a' + m.from_file), static_cast<char>('1' + m.from_rank),
            static_cast<char>('a' + m.to_file), static_cast<char>('1' + m.to_rank)};
}

EngineMove text_of(const std::array<char, 4>& characters) { return {characters.data(), characters.size()}; }

bool is_move(const std::array<char, 4>& characters) { return characters[0] != ' ' && characters[0] != '\0'; }

// What the routine writes to the standard output.
template <class Routine>
std::string spoken_by(Routine routine) {
    std::ostringstream spoken;
    auto* const before = std::cout.rdbuf(spoken.rdbuf());
    routine();
    std::cout.rdbuf(before);
    return spoken.str();
}

// --- Squares ---

int core_square(int square) { return ondrel::square(file_of(square), rank_of(square)); }

std::int8_t core_man(char man) {
    constexpr std::string_view letters = "pnbrqk";
    const bool is_white = man < 'a';
    const auto k = letters.find(is_white ? static_cast<char>(man + ('a' - 'A')) : man);
    if (man == empty_square || k == std::string_view::npos) {
        return no_piece;
    }
    return ondrel::man(is_white ? white : black, piece_order[k]);
}

// --- The search ---

constexpr std::string_view from_start = "position startpos moves ";

SearchListener* listening = nullptr;

// The core counts nodes in 32 bits, which a search of half an hour fills.
struct NodeCount {
    std::uint64_t total = 0;
    std::uint32_t last_seen = 0;

    void catch_up() {
        total += ondrel::search.nodes - last_seen;
        last_seen = ondrel::search.nodes;
    }
};
NodeCount node_count;

int deep_of(int depth) { return depth - 1; }

// The setting under which the search ends with this depth.
int limit_setting(int depth) { return depth >= deepest_depth || depth < first_iterated_depth ? no_depth_limit : depth; }

void set_root_filter(const std::vector<EngineMove>& allowed) {
    observers.root_filter = {.on = true};
    for (const EngineMove& m : allowed) {
        const int from = ondrel::square(m[0] - 'a', m[1] - '1');
        const int to = ondrel::square(m[2] - 'a', m[3] - '1');
        observers.root_filter.allowed[from][to] = true;
    }
}

// What the core reads of the settings is for this search alone: the options of the client are others.
void set_up(const SearchOrder& order) {
    options.HASH1 = 0;  // a search asked for again is searched again
    options.deepp = limit_setting(order.depth);
    options.TC = order.engine_clock > 0 ? 1 : 0;
    command.in = order.position_line;
    command.joga_c_ob = command.in.starts_with(from_start) ? 1 : 0;
    command.joga_c_fen = command.joga_c_ob ? 0 : 1;
    ondrel::read_position();
    ondrel::search.deep = std::min(deep_of(order.depth), no_depth_limit);
    prepare_search(side_to_search());
    if (order.at_once) {
        ondrel::search.deep = deep_of(order.depth);
    }
    process.ddep = 0;
    node_count = {};
}

void set_clock(std::int64_t engine_clock) {
    if (engine_clock > 0) {
        command.in = "go wtime " + std::to_string(engine_clock) + " btime 0";
        read_clock();
    } else {
        ondrel::search.tempo = std::numeric_limits<int>::max();
    }
}

int records_in_use(int n, ondrel::Colour c) {
    return ondrel::search.FULL[n] ? shallow_records : next_shallow_record(n, c);
}

// In thousandths of the records that searches of the root's colour use.
int tables_used() {
    if (!options.HASHf) {
        return 0;
    }
    const ondrel::Colour c = side_to_search();
    return (records_in_use(3, c) + records_in_use(4, other(c)) + records_in_use(5, c)) * 1000 / (3 * shallow_records);
}

// As the running report decides it.
bool is_far_below(float score) {
    const int offset = ondrel::search.emp == ondrel::search.emppp ? 10 : 0;
    const int shown_offset = ondrel::search.deep % 2 == 0 ? -offset : offset;
    return !options.FULL_inf && score + static_cast<float>(shown_offset) < root.materialflot0 - 15.0F;
}

Pass present_pass() {
    if (pass.SCAN1) {
        return Pass::best_alone;
    }
    // At depths below the iterated ones the only pass is one of this kind too, and no depth has gone before.
    return pass.SCANT && bounds.ALFA0 != start_of_alfa ? Pass::the_others : Pass::all_moves;
}

void tell_root_move() {
    const auto& line = root_move.A0_D7;
    const float score = bounds.beta[1];
    SearchedMove searched{text_of(line[0]), score, {}, is_far_below(score)};
    for (const auto& characters : line) {
        if (!is_move(characters)) {
            break;
        }
        searched.line.push_back(text_of(characters));
    }
    listening->root_move_searched(searched, standing());
}

void tell_shallow_node() { listening->shallow_node_entered(); }

}  // namespace

bool square_attacked(const Men& men, int square, Colour by) {
    Board board{};
    for (int k = 0; k < squares; ++k) {
        board[core_square(k)] = core_man(men[k]);
    }
    return by == Colour::white ? is_attacked<black>(board, file_of(square), rank_of(square))
                               : is_attacked<white>(board, file_of(square), rank_of(square));
}

std::string book_reply(const std::vector<std::string>& moves) {
    constexpr std::string_view reply = "bestmove ";
    std::string line = "position startpos moves";
    for (const std::string& m : moves) {
        line += ' ' + m;
    }
    std::string said;
    if (moves.empty()) {
        said = reply_to_new_game;
    } else if (moves.size() == 1) {
        said = reply_to_first_move(line);
    } else {
        command.in = line;
        said = spoken_by(moves.size() % 2 == 0 ? Own_Book_b : Own_Book_p);
    }
    return said.starts_with(reply) ? said.substr(reply.size(), 4) : "";
}

std::vector<EngineOption> engine_options() {
    constexpr std::string_view option = "option name ";
    std::istringstream spoken(spoken_by(announce_options));
    std::vector<EngineOption> announced;
    for (std::string line; std::getline(spoken, line);) {
        announced.push_back({line.substr(option.size())});
    }
    return announced;
}

void set_engine_option(std::string_view name, std::string_view value) {
    command.in = "setoption name " + std::string(name);
    if (!value.empty()) {
        command.in += " value " + std::string(value);
    }
    read_option();
}

void begin_engine() { begin_process(); }

void search(const SearchOrder& order, SearchListener& listener) {
    listening = &listener;
    set_up(order);
    set_clock(order.engine_clock);
    set_root_filter(order.allowed);
    observers.root_move_searched = tell_root_move;
    observers.shallow_node_entered = tell_shallow_node;
    search_root(side_to_search());
    observers = Observers{};
}

Standing standing() {
    const auto& current = root_move.A0_D7[0];
    return {.depth = depth_searched(),
            .pass = present_pass(),
            .best_move = ondrel::is_move(slots.aab_ddb) ? text_of(slots.aab_ddb) : "",
            .best_score = ondrel::search.E,
            .score_before = bounds.ALFA0,
            .nodes = nodes_searched(),
            .deepest_ply = std::max(process.ddep, pass.DEEP) + 1,
            .hashfull = tables_used(),
            .current_move = is_move(current) ? text_of(current) : "",
            .current_number = ondrel::search.curr};
}

std::uint64_t nodes_searched() {
    node_count.catch_up();
    return node_count.total;
}

int depth_searched() { return pass.DEEP + 1; }

bool root_move_has_changed(const EngineMove& from) {
    return !std::equal(root_move.A0_D7[0].begin(), root_move.A0_D7[0].end(), from.begin(), from.end());
}

}  // namespace ondrel::standard_uci
