#include "standard_uci/worker.h"

#include "standard_uci/platform.h"
#include "standard_uci/search_plan.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>

namespace ondrel::standard_uci {
namespace {

class CoreEngine : public SearchEngine {
public:
    void search(const SearchOrder& order, SearchListener& listener) override { standard_uci::search(order, listener); }
    [[nodiscard]] Standing standing() const override { return standard_uci::standing(); }
    [[nodiscard]] std::uint64_t nodes() const override { return nodes_searched(); }
    [[nodiscard]] int depth() const override { return depth_searched(); }
    [[nodiscard]] bool root_move_has_changed(const EngineMove& from) const override {
        return standard_uci::root_move_has_changed(from);
    }
};

PublishedLine published(const FoundLine& line) {
    PublishedLine result{.serial = line.serial,
                         .depth = line.depth,
                         .deepest_ply = line.deepest_ply,
                         .hashfull = line.hashfull,
                         .score = line.score,
                         .is_upper_bound = line.is_upper_bound ? 1U : 0U,
                         .is_hidden = line.is_hidden ? 1U : 0U,
                         .nodes = line.nodes};
    result.length = static_cast<std::uint32_t>(std::min(line.moves.size(), result.moves.size()));
    for (std::uint32_t k = 0; k < result.length; ++k) {
        std::copy_n(line.moves[k].begin(), result.moves[k].size(), result.moves[k].begin());
    }
    return result;
}

// Writes to the front: lines to the pipe, the best of them to the page.
class FrontSink : public PlanSink {
public:
    FrontSink(SharedPage& page, const std::string& parent, bool publishes_lines)
        : page_(page), parent_(parent), publishes_lines_(publishes_lines) {}

    void tell(const WorkerMessage& message) override {
        if (std::holds_alternative<MoveBegun>(message) && !is_late()) {
            return;
        }
        if (const auto* const found = std::get_if<FoundLine>(&message); found != nullptr && publishes_lines_) {
            page_.publish(published(*found));
        }
        std::cout << line_of(message) + '\n' << std::flush;
    }

    void nodes_so_far(std::uint64_t nodes) override {
        page_.publish_nodes(nodes);
        constexpr int now_and_then = 1024;
        if (++looks_ % now_and_then == 0 && parent_has_ended(parent_)) {
            std::_Exit(0);
        }
    }

private:
    // Moves begun are told when a search has lasted; before that they follow one another too quickly.
    [[nodiscard]] bool is_late() const {
        constexpr auto quick = std::chrono::seconds(1);
        return std::chrono::steady_clock::now() - began_ >= quick;
    }

    SharedPage& page_;
    const std::string& parent_;
    bool publishes_lines_;
    std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
    unsigned looks_ = 0;
};

}  // namespace

int run_worker(const std::string& number_of_parent, const std::string& page_name) {
    end_with_parent(number_of_parent);
    begin_engine();
    std::ios::sync_with_stdio(false);
    SharedPage unseen;
    SharedPage* const shared = open_page(page_name);
    SharedPage& page = shared != nullptr ? *shared : unseen;
    CoreEngine engine;
    OrderReader orders;
    for (std::string line; std::getline(std::cin, line);) {
        const auto order = orders.read(line);
        if (!order) {
            continue;
        }
        if (const auto* const setting = std::get_if<EngineSetting>(&*order)) {
            set_engine_option(setting->name, setting->value);
            continue;
        }
        const auto& task = std::get<SearchTask>(*order);
        page.publish({});
        page.publish_nodes(0);
        FrontSink sink(page, number_of_parent, task.lines == 1);
        SearchPlan(engine, sink, task).run();
    }
    return 0;
}

}  // namespace ondrel::standard_uci
