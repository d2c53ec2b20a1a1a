#include "standard_uci/search_plan.h"

#include "standard_uci/score.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ondrel::standard_uci {
namespace {

// Each of these is a search of its own, quick enough to come before a deeper one. The last is also the first pass of
// the search that goes on from depth to depth.
constexpr std::array single_depths{1, 2, 4, 6, 8};
constexpr int depth_of_first_pass = 8;
constexpr int step_of_depths = 2;
constexpr int depth_of_full_width = 6;  // up to here nothing is left out that could refute a mate

}  // namespace

int engine_depth_up_to(int depth) {
    if (depth < step_of_depths) {
        return 1;
    }
    return std::min(depth, deepest_depth) / step_of_depths * step_of_depths;
}

SearchPlan::SearchPlan(SearchEngine& engine, PlanSink& sink, SearchTask task)
    : engine_(engine), sink_(sink), task_(std::move(task)) {}

void SearchPlan::run() {
    if (task_.engine_clock > 0) {
        run_by_engine_clock();
    } else if (task_.lines > 1) {
        run_several_lines();
    } else {
        run_one_line();
    }
    sink_.tell(SearchFinished{});
}

void SearchPlan::run_one_line() {
    const int last = engine_depth_up_to(task_.depth_limit);
    const bool goes_on = last >= first_iterated_depth;
    for (const int depth : single_depths) {
        if (depth > last || (goes_on && depth == depth_of_first_pass) || has_proven_mate()) {
            break;
        }
        search(depth);
    }
    if (goes_on && !has_proven_mate()) {
        search(last);
    }
    // With a mate the engine goes no deeper by itself, nor without its extra evaluation.
    if (task_.to_the_limit && depth_under_way_ < last) {
        search_at_once(last);
    }
}

// The first search secures a move, should the engine's own rules take too long for the clock.
void SearchPlan::run_by_engine_clock() {
    search(1);
    search(deepest_depth, task_.engine_clock);
}

// A mate that was found with nothing left out stands at every depth.
bool SearchPlan::has_proven_mate() const {
    return best_.depth != 0 && best_.depth <= depth_of_full_width && is_mate(best_.score);
}

// --- Several lines: each depth is searched again without the moves already found ---

void SearchPlan::run_several_lines() {
    is_silent_ = true;
    const int last = engine_depth_up_to(task_.depth_limit);
    std::vector<FoundLine> lines;
    for (int depth = 1; depth <= last; depth = depth == 1 ? step_of_depths : depth + step_of_depths) {
        lines = best_lines_at(depth, lines);
        std::ranges::stable_sort(lines, std::greater{}, &FoundLine::score);
        for (std::size_t k = 0; k < lines.size(); ++k) {
            lines[k].rank = static_cast<int>(k) + 1;
            lines[k].serial = ++told_;
            sink_.tell(lines[k]);
        }
        sink_.tell(DepthFinished{depth});
    }
}

std::vector<FoundLine> SearchPlan::best_lines_at(int depth, const std::vector<FoundLine>& known) {
    const std::vector<EngineMove> allowed = task_.allowed;
    std::vector<FoundLine> lines;
    while (static_cast<int>(lines.size()) < task_.lines && !task_.allowed.empty()) {
        best_ = {};
        search_at_once(depth);
        if (best_.moves.empty()) {
            best_ = best_allowed_of(known);
        }
        if (best_.moves.empty()) {
            break;
        }
        lines.push_back(best_);
        std::erase(task_.allowed, best_.moves.front());
    }
    task_.allowed = allowed;
    for (FoundLine& line : lines) {
        line.depth = depth;
        line.nodes = nodes_before_;
    }
    return lines;
}

// Of lines in falling order.
FoundLine SearchPlan::best_allowed_of(const std::vector<FoundLine>& lines) const {
    const auto is_allowed = [this](const FoundLine& line) {
        return std::ranges::find(task_.allowed, line.moves.front()) != task_.allowed.end();
    };
    const auto found = std::ranges::find_if(lines, is_allowed);
    return found == lines.end() ? FoundLine{} : *found;
}

// --- One search ---

// From the least iterated depth on, where there is more than one.
void SearchPlan::search(int depth, std::int64_t engine_clock) {
    least_depth_ = 0;
    make({task_.position_line, task_.allowed, depth, false, engine_clock});
}

// The depth alone: what the engine tries before it at a lesser one is known, or of no use.
void SearchPlan::search_at_once(int depth) {
    least_depth_ = depth;
    make({task_.position_line, task_.allowed, depth, true, 0});
}

void SearchPlan::make(const SearchOrder& order) {
    pending_ = {};
    has_met_best_ = false;
    best_of_depth_before_ = best_;
    depth_under_way_ = 0;
    move_under_way_.clear();
    engine_.search(order, *this);
    const Standing end = engine_.standing();
    depth_under_way_ = end.depth;
    finish_depth(end.best_move, end.best_score, end);
    nodes_before_ += end.nodes;
}

void SearchPlan::root_move_searched(const SearchedMove& searched, const Standing& standing) {
    notice_depth(standing);
    if (standing.depth < least_depth_) {
        return;
    }
    const bool improves = standing.best_move.empty() || searched.score > standing.best_score;
    if (standing.pass == Pass::all_moves) {
        if (improves) {
            pending_ = line_from(searched, standing);
        }
        consider_in_sweep(searched, standing);
    } else if (improves || standing.pass == Pass::best_alone) {
        FoundLine line = line_from(searched, standing);
        line.is_upper_bound = !improves;
        take(std::move(line));
    }
}

// A sweep begins with whatever move the schedule has first. Its best counts once it has met the best move known, or is
// worth at this depth what that one was at the depth before.
void SearchPlan::consider_in_sweep(const SearchedMove& searched, const Standing& standing) {
    const bool has_none = best_of_depth_before_.depth == 0;
    has_met_best_ = has_met_best_ || has_none || searched.move == best_of_depth_before_.moves.front();
    const bool is_new = best_.depth != standing.depth || best_.score < pending_.score;
    if (!pending_.moves.empty() && is_new && (has_met_best_ || pending_.score > best_of_depth_before_.score)) {
        take(pending_);
    }
}

void SearchPlan::shallow_node_entered() {
    sink_.nodes_so_far(nodes_before_ + engine_.nodes());
    if (engine_.depth() != depth_under_way_ || engine_.root_move_has_changed(move_under_way_)) {
        const Standing now = engine_.standing();
        notice_depth(now);
        move_under_way_ = now.current_move;
        if (!is_silent_ && now.depth >= least_depth_) {
            sink_.tell(MoveBegun{now.depth, now.current_number, now.current_move});
        }
    }
}

// A depth is over when the search is found at the next one.
void SearchPlan::notice_depth(const Standing& standing) {
    if (depth_under_way_ != 0 && standing.depth > depth_under_way_) {
        finish_depth(standing.best_move, standing.score_before, standing);
    }
    depth_under_way_ = standing.depth;
}

// What was best may have come without a word: a draw by repetition, a mate seen at once.
void SearchPlan::finish_depth(const EngineMove& best_move, float score, const Standing& standing) {
    if (best_move.empty() || depth_under_way_ < least_depth_) {
        return;
    }
    if (best_.depth != depth_under_way_ || best_.moves.front() != best_move) {
        const bool is_pending = !pending_.moves.empty() && pending_.moves.front() == best_move;
        FoundLine line = is_pending ? pending_ : line_from({best_move, score, {best_move}, false}, standing);
        if (!is_score(line.score)) {
            line = best_;  // what was known stands
        }
        line.depth = depth_under_way_;
        take(std::move(line));
    }
    if (!is_silent_) {
        sink_.tell(DepthFinished{depth_under_way_});
    }
}

FoundLine SearchPlan::line_from(const SearchedMove& searched, const Standing& standing) const {
    return {.depth = standing.depth,
            .deepest_ply = std::max(standing.deepest_ply, standing.depth),
            .hashfull = standing.hashfull,
            .score = searched.score,
            .is_hidden = searched.far_below,
            .nodes = nodes_before_ + standing.nodes,
            .moves = searched.line.empty() ? std::vector{searched.move} : searched.line};
}

// The engine comes back from some mates with a value that none has written: that tells nothing.
void SearchPlan::take(FoundLine line) {
    if (line.moves.empty() || !is_score(line.score)) {
        return;
    }
    line.serial = is_silent_ ? 0 : ++told_;
    best_ = std::move(line);
    if (!is_silent_) {
        sink_.tell(best_);
    }
}

}  // namespace ondrel::standard_uci
