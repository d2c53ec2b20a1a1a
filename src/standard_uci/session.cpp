#include "standard_uci/session.h"

#include "standard_uci/limits.h"
#include "standard_uci/score.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace ondrel::standard_uci {
namespace {

constexpr int most_workers_lost = 3;
constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t between_counts = 1000;   // milliseconds between two lines that only count
constexpr std::int64_t between_node_looks = 2;  // and between two looks at a limit of nodes
constexpr std::size_t most_remembered = 100000;
constexpr std::size_t longest_quotation = 200;  // of what a client sent, in a complaint

// One line, whatever the client has sent.
std::string quotable(const std::string& text) {
    std::string result = text.substr(0, longest_quotation);
    std::ranges::replace_if(
        result, [](unsigned char x) { return x < ' '; }, ' ');
    return result;
}

FoundLine line_from(const PublishedLine& published) {
    FoundLine line{.depth = published.depth,
                   .deepest_ply = published.deepest_ply,
                   .hashfull = published.hashfull,
                   .score = published.score,
                   .is_upper_bound = published.is_upper_bound != 0,
                   .is_hidden = published.is_hidden != 0,
                   .nodes = published.nodes,
                   .serial = published.serial,
                   .moves = {}};
    for (std::uint32_t k = 0; k < published.length && k < published.moves.size(); ++k) {
        line.moves.emplace_back(published.moves[k].data(), published.moves[k].size());
    }
    return line;
}

std::string count_text(std::uint64_t nodes, std::int64_t time) {
    const std::uint64_t per_second = nodes * 1000 / static_cast<std::uint64_t>(std::max<std::int64_t>(time, 1));
    return " nodes " + std::to_string(nodes) + " nps " + std::to_string(per_second);
}

}  // namespace

Session::Session(Surroundings& surroundings) : around_(surroundings) {}

// --- Commands ---

void Session::client_said(std::string_view line) {
    const auto command = read_command(line);
    if (!command || has_left_) {
        return;
    }
    switch (command->verb) {
        case Verb::uci: return identify();
        case Verb::debug: return set_debug(command->words);
        case Verb::isready: make_worker_ready(); return say("readyok");
        case Verb::setoption: return set_option(command->words);
        case Verb::registration: return;
        case Verb::ucinewgame: return begin_new_game();
        case Verb::position: return set_position(command->words);
        case Verb::go: return go(command->words);
        case Verb::stop: return stop();
        case Verb::ponderhit: return ponder_hit();
        case Verb::quit: return leave();
    }
}

void Session::client_said_too_much() { complain("a line too long for anything was passed over"); }

void Session::client_left() { leave(); }

void Session::identify() {
    say("id name Ondrel 29.1 64bit");
    say("id author Ilvar Tessmo Quernal");
    for (const Option& option : options_.all()) {
        say("option name " + option.announcement);
    }
    say("uciok");
}

void Session::set_debug(const Words& words) {
    if (!words.empty()) {
        is_debugging_ = words[0] == "on";
    }
}

void Session::set_option(const Words& words) {
    std::string fault;
    const Option* const option = options_.set(read_setoption(words), fault);
    if (option == nullptr) {
        return complain(quotable(fault));
    }
    if (option->kind == OptionKind::button) {
        remembered_.clear();
    }
    if (option->of_engine && worker_is_ready_) {
        const bool is_button = option->kind == OptionKind::button;
        around_.write_to_worker(line_of(EngineSetting{option->name, is_button ? "" : option->value}));
    }
}

void Session::begin_new_game() {
    remembered_.clear();
    if (!worker_is_fresh_) {
        wants_fresh_worker_ = true;
    }
    if (!search_) {
        make_worker_ready();
    }
}

void Session::set_position(const Words& words) {
    std::string fault;
    Words remarks;
    auto game = Game::read(read_position(words), options_.is_on("UCI_Chess960"), fault, remarks);
    if (!game) {
        return complain("position refused: " + quotable(fault));
    }
    for (const std::string& remark : remarks) {
        complain(quotable(remark));
    }
    game_ = std::move(*game);
    make_worker_ready();
}

void Session::go(const Words& words) {
    if (search_) {
        give_answer();
    }
    Search next;
    Words remarks;
    next.start = next.clock_start = around_.now();
    next.next_count = next.start + between_counts;
    next.limits = read_go(words);
    next.root = game_.position();
    next.allowed = allowed_moves(next.root, next.limits, options_.is_on("UCI_Chess960"), remarks);
    next.task = task_of(next.limits, game_, next.allowed, options_);
    next.budget = budget_of(next.limits, next.root.to_move, options_);
    next.has_fixed_time = next.limits.movetime.has_value();
    next.is_pondering = next.limits.ponder;
    next.is_endless = is_endless(next.limits) && !next.limits.ponder;
    for (const std::string& fault : next.limits.faults) {
        complain(quotable(fault));
    }
    for (const std::string& remark : remarks) {
        complain(quotable(remark));
    }
    search_ = std::move(next);
    begin_search();
}

void Session::begin_search() {
    if (search_->allowed.empty()) {
        say(std::string("info depth 0 score ") + (in_check(search_->root) ? "mate 0" : "cp 0"));
        search_->is_finished = true;
        return finish_if_due();
    }
    if (const auto move = book_move()) {
        say("bestmove " + text_of(*move, options_.is_on("UCI_Chess960")));
        search_.reset();
        return;
    }
    if (is_debugging_ && search_->budget) {
        complain("no new depth after " + std::to_string(search_->budget->last_new_depth) + " ms, out by " +
                 std::to_string(search_->budget->end) + " ms");
    }
    order_search();
}

// While nothing has been found a few milliseconds are worth more than an answer at once.
void Session::stop() {
    if (!search_) {
        return;
    }
    take_published_line();
    if (search_->best || search_->is_finished) {
        return give_answer();
    }
    search_->is_endless = search_->is_pondering = false;
    search_->budget = budget_of_stop(time_used());
    plan_waking();
}

void Session::ponder_hit() {
    if (!search_ || !search_->is_pondering) {
        return;
    }
    search_->is_pondering = false;
    search_->is_endless = is_endless(search_->limits);
    search_->clock_start = around_.now();
    if (search_->may_stop_at_hit && !search_->has_fixed_time) {
        return give_answer();
    }
    finish_if_due();
}

// A search that is under way is answered first: each go has its bestmove.
void Session::leave() {
    if (has_left_) {
        return;
    }
    has_left_ = true;
    if (search_) {
        give_answer();
    }
    around_.leave();
}

// --- The course of a search ---

// A worker that searches is left alone, whatever is wished for the next game.
void Session::make_worker_ready() {
    if (worker_is_ready_ && (search_ || !wants_fresh_worker_)) {
        return;
    }
    wants_fresh_worker_ = false;
    worker_is_ready_ = worker_is_fresh_ = true;
    around_.renew_worker();
    for (const Option& option : options_.all()) {
        if (option.of_engine && option.was_set) {
            around_.write_to_worker(line_of(EngineSetting{option.name, option.value}));
        }
    }
}

void Session::order_search() {
    make_worker_ready();
    worker_is_fresh_ = false;
    for (const std::string& line : lines_of(search_->task)) {
        around_.write_to_worker(line);
    }
    plan_waking();
}

void Session::plan_waking() {
    const Search& s = *search_;
    std::int64_t next = s.next_count;
    if (s.budget && !waits_for_client()) {
        next = std::min(next, s.clock_start + end_of_time());
    }
    if (s.limits.nodes && !waits_for_client()) {
        next = std::min(next, around_.now() + between_node_looks);
    }
    around_.wake_at(next);
}

void Session::time_came() {
    if (!search_) {
        return;
    }
    finish_if_due();
    if (!search_) {
        return;
    }
    if (around_.now() >= search_->next_count) {
        show_count();
        search_->next_count = around_.now() + between_counts;
    }
    plan_waking();
}

bool Session::waits_for_client() const { return search_->is_endless || search_->is_pondering; }

bool Session::is_on_clock() const { return search_->budget && !search_->has_fixed_time; }

std::int64_t Session::time_used() const { return around_.now() - search_->clock_start; }

bool Session::is_past_limits() {
    const Search& s = *search_;
    if (s.budget && time_used() >= end_of_time()) {
        return true;
    }
    if (!s.limits.nodes || !s.best) {
        return false;
    }
    const auto limit = static_cast<std::uint64_t>(std::max<std::int64_t>(*s.limits.nodes, 0));
    return around_.published_nodes() >= limit || s.best->nodes >= limit;
}

std::int64_t Session::end_of_time() const {
    return search_->best ? search_->budget->end : search_->budget->end_without_move;
}

// Asked when something has been found: what is wanted is there, or more would not change the move.
bool Session::has_searched_enough() const {
    const Search& s = *search_;
    if (!s.best) {
        return false;
    }
    const bool is_sure_mate = is_mate(s.best->score) && !s.best->is_upper_bound;
    if (s.limits.mate && is_sure_mate && s.best->score > 0 && moves_to_mate(s.best->score) <= *s.limits.mate) {
        return true;
    }
    return is_on_clock() && s.allowed.size() == 1;
}

void Session::finish_if_due() {
    if (search_ && !waits_for_client() && (search_->is_finished || has_searched_enough() || is_past_limits())) {
        give_answer();
    }
}

// The line to be played, the move at least, from what has been found, remembered, or is legal.
std::vector<Move> Session::best_line() {
    take_published_line();
    if (!search_->best) {
        complain("nothing was searched in the time given");
        return {move_at_hand()};
    }
    if (!search_->has_shown) {
        show(*search_->best);
    }
    std::vector<Move> line = legal_beginning(search_->root, search_->best->moves);
    const auto is_first = [&](const Move& m) { return !line.empty() && m.from == line[0].from && m.to == line[0].to; };
    const auto chosen = std::ranges::find_if(search_->allowed, is_first);
    if (chosen == search_->allowed.end()) {
        return {move_at_hand()};
    }
    // The engine makes a queen of every pawn: where searchmoves wants another piece the line ends with it.
    return *chosen == line[0] || std::ranges::find(search_->allowed, line[0]) != search_->allowed.end()
               ? line
               : std::vector{*chosen};
}

Move Session::move_at_hand() const {
    if (const auto found = remembered_.find(search_->task.position_line); found != remembered_.end()) {
        const auto line = legal_beginning(search_->root, {found->second});
        if (!line.empty() && std::ranges::find(search_->allowed, line[0]) != search_->allowed.end()) {
            return line[0];
        }
    }
    return search_->allowed.front();
}

void Session::give_answer() {
    const bool chess960 = options_.is_on("UCI_Chess960");
    if (search_->allowed.empty()) {
        say("bestmove 0000");
    } else {
        const std::vector<Move> line = best_line();
        const std::string ponder = line.size() > 1 ? " ponder " + text_of(line[1], chess960) : "";
        say("bestmove " + text_of(line[0], chess960) + ponder);
        remember(engine_text(line[0]));
    }
    if (!search_->is_finished) {
        worker_is_ready_ = false;
    }
    search_.reset();
    around_.wake_at(never);
    if (!has_left_) {
        make_worker_ready();
    }
}

void Session::remember(const EngineMove& move) {
    if (!options_.is_on("Memory") || move.empty() || !search_->best) {
        return;
    }
    if (remembered_.size() >= most_remembered) {
        remembered_.clear();
    }
    remembered_[search_->task.position_line] = move;
}

std::optional<Move> Session::book_move() const {
    const auto moves = game_.moves_from_start();
    if (!options_.is_on("Own book") || options_.is_on("UCI_AnalyseMode") || waits_for_client() || !moves) {
        return std::nullopt;
    }
    const std::string reply = book_reply(*moves);
    const auto move = reply.empty() ? std::nullopt : read_move(search_->root, reply, false);
    const bool is_allowed = move && std::ranges::find(search_->allowed, *move) != search_->allowed.end();
    return is_allowed ? move : std::nullopt;
}

// --- What the worker tells ---

void Session::worker_said(std::string_view line) {
    const auto message = read_worker_message(line);
    if (!message || !search_ || search_->is_finished) {
        return;
    }
    std::visit([this](const auto& x) { hear(x); }, *message);
    finish_if_due();
}

// A worker that was killed or has failed: another takes the search up from its beginning.
void Session::worker_ended() {
    worker_is_ready_ = false;
    if (!search_ || search_->is_finished) {
        return;
    }
    if (++search_->workers_lost > most_workers_lost) {
        search_->is_finished = true;
        return finish_if_due();
    }
    search_->several.clear();
    if (search_->best) {
        search_->best->serial = 0;
    }
    order_search();
}

void Session::hear(const FoundLine& line) {
    if (search_->task.lines > 1) {
        search_->several.push_back(line);
    } else {
        take(line);
    }
}

void Session::hear(const MoveBegun& begun) {
    const auto move = legal_beginning(search_->root, {begun.move});
    if (around_.now() - search_->start >= between_counts && !move.empty()) {
        say("info depth " + std::to_string(begun.depth) + " currmove " +
            text_of(move[0], options_.is_on("UCI_Chess960")) + " currmovenumber " + std::to_string(begun.number));
    }
}

void Session::hear(const DepthFinished&) {
    Search& s = *search_;
    for (const FoundLine& line : std::exchange(s.several, {})) {
        if (line.rank == 1) {
            s.best = line;
        }
        show(line);
    }
    const bool is_settled = s.best && is_mate(s.best->score) && !s.best->is_upper_bound;
    if (!is_on_clock() || !(is_settled || time_used() >= s.budget->last_new_depth)) {
        return;
    }
    s.may_stop_at_hit = true;
    if (!waits_for_client()) {
        give_answer();
    }
}

void Session::hear(const SearchFinished&) {
    search_->is_finished = true;
    search_->may_stop_at_hit = true;
}

// After the loss of a worker the next one begins with depths that are known already.
void Session::take(const FoundLine& line) {
    Search& s = *search_;
    const bool is_known =
        s.best && (line.serial <= s.best->serial || (s.workers_lost > 0 && line.depth < s.best->depth));
    if (is_known || legal_beginning(s.root, line.moves).empty()) {
        return;
    }
    s.best = line;
    if (!line.is_hidden) {
        show(line);
    }
}

void Session::take_published_line() {
    const auto published = around_.published_line();
    if (published && published->serial > 0 && search_->task.lines == 1 && !search_->is_finished) {
        take(line_from(*published));
    }
}

void Session::show(const FoundLine& line) {
    const bool chess960 = options_.is_on("UCI_Chess960");
    const std::int64_t time = around_.now() - search_->start;
    std::string text = "info depth " + std::to_string(line.depth) + " seldepth " + std::to_string(line.deepest_ply);
    if (search_->task.lines > 1) {
        text += " multipv " + std::to_string(line.rank);
    }
    text += " score " + score_text(line.score) + (line.is_upper_bound ? " upperbound" : "");
    text += count_text(line.nodes, time) + " hashfull " + std::to_string(line.hashfull) + " time " +
            std::to_string(time) + " pv";
    for (const Move& move : legal_beginning(search_->root, line.moves)) {
        text += ' ' + text_of(move, chess960);
    }
    say(text);
    search_->has_shown = true;
}

void Session::show_count() {
    const std::int64_t time = around_.now() - search_->start;
    say("info" + count_text(around_.published_nodes(), time) + " time " + std::to_string(time));
}

}  // namespace ondrel::standard_uci
