// Which searches the engine makes for one go, and what of them counts as found. The worker runs it; it leaves nothing
// behind but what it has told its sink.
#pragma once

#include "standard_uci/worker_protocol.h"

namespace ondrel::standard_uci {

// The engine, as the plan uses it.
class SearchEngine {
public:
    virtual ~SearchEngine() = default;
    virtual void search(const SearchOrder& order, SearchListener& listener) = 0;
    [[nodiscard]] virtual Standing standing() const = 0;
    // The cheap parts of it, asked at every shallow node.
    [[nodiscard]] virtual std::uint64_t nodes() const = 0;
    [[nodiscard]] virtual int depth() const = 0;
    [[nodiscard]] virtual bool root_move_has_changed(const EngineMove& from) const = 0;
};

class PlanSink {
public:
    virtual ~PlanSink() = default;
    virtual void tell(const WorkerMessage& message) = 0;
    virtual void nodes_so_far(std::uint64_t nodes) = 0;
};

// The deepest depth that the engine has up to this one; 1 at the least.
int engine_depth_up_to(int depth);

class SearchPlan : private SearchListener {
public:
    SearchPlan(SearchEngine& engine, PlanSink& sink, SearchTask task);
    void run();

private:
    void run_one_line();
    void run_several_lines();
    void run_by_engine_clock();

    void search(int depth, std::int64_t engine_clock = 0);
    void search_at_once(int depth);
    void make(const SearchOrder& order);
    [[nodiscard]] bool has_proven_mate() const;
    std::vector<FoundLine> best_lines_at(int depth, const std::vector<FoundLine>& known);
    [[nodiscard]] FoundLine best_allowed_of(const std::vector<FoundLine>& lines) const;

    void root_move_searched(const SearchedMove& searched, const Standing& standing) override;
    void shallow_node_entered() override;

    void consider_in_sweep(const SearchedMove& searched, const Standing& standing);
    void notice_depth(const Standing& standing);
    void finish_depth(const EngineMove& best_move, float score, const Standing& standing);
    void take(FoundLine line);
    [[nodiscard]] FoundLine line_from(const SearchedMove& searched, const Standing& standing) const;

    SearchEngine& engine_;
    PlanSink& sink_;
    SearchTask task_;

    bool is_silent_ = false;          // lines are gathered, not told
    int least_depth_ = 0;             // what is found at a lesser one counts for nothing
    std::uint64_t nodes_before_ = 0;  // of the searches that are over
    std::uint32_t told_ = 0;
    FoundLine best_;  // depth 0: there is none yet
    FoundLine best_of_depth_before_;
    FoundLine pending_;  // the best of a sweep that has not met the best move known
    int depth_under_way_ = 0;
    bool has_met_best_ = false;
    EngineMove move_under_way_;
};

}  // namespace ondrel::standard_uci
