// What of the engine's searches counts as found: with an engine that finds what the test tells it, and with the real one.
#include "standard_uci/search_plan.h"
#include "standard_uci/engine_port.h"
#include "standard_uci/score.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <functional>

namespace {

using namespace ondrel::standard_uci;

class GatheringSink : public PlanSink {
public:
    void tell(const WorkerMessage& message) override {
        if (const auto* const line = std::get_if<FoundLine>(&message)) {
            found.push_back(*line);
            said.push_back(std::to_string(line->depth) + ' ' + line->moves.front() + ' ' + score_text(line->score) +
                           (line->is_upper_bound ? " at most" : ""));
        } else if (!std::holds_alternative<MoveBegun>(message)) {
            said.push_back(line_of(message));
        }
    }
    void nodes_so_far(std::uint64_t count) override { nodes = count; }

    std::vector<FoundLine> found;
    Words said;
    std::uint64_t nodes = 0;
};

// An engine whose searches are played by the test.
class ScriptedEngine : public SearchEngine {
public:
    using Script = std::function<void(ScriptedEngine&)>;
    explicit ScriptedEngine(Script script) : script_(std::move(script)) {}

    void search(const SearchOrder& order, SearchListener& listener) override {
        this->order = order;
        orders.push_back(order);
        listener_ = &listener;
        now_ = {};
        now_.depth = order.depth;
        script_(*this);
    }
    // A root move comes back from its search, and becomes the best if it is better.
    void root_move(const EngineMove& move, float score) {
        ++now_.nodes;
        listener_->shallow_node_entered();
        listener_->root_move_searched({move, score, {move}, false}, now_);
        if (now_.best_move.empty() || score > now_.best_score) {
            now_.best_move = move;
            now_.best_score = score;
        }
    }
    void begin_pass(int depth, Pass pass, float window) {
        now_.depth = depth;
        now_.pass = pass;
        now_.score_before = now_.best_score;
        now_.best_score -= window;
    }
    void draw_unheard(const EngineMove& move) {
        now_.best_move = move;
        now_.best_score = 0;
    }

    [[nodiscard]] Standing standing() const override { return now_; }
    [[nodiscard]] std::uint64_t nodes() const override { return now_.nodes; }
    [[nodiscard]] int depth() const override { return now_.depth; }
    [[nodiscard]] bool root_move_has_changed(const EngineMove&) const override { return true; }

    SearchOrder order;
    std::vector<SearchOrder> orders;

private:
    Script script_;
    SearchListener* listener_ = nullptr;
    Standing now_;
};

Words said_for(const SearchTask& task, const ScriptedEngine::Script& script) {
    ScriptedEngine engine(script);
    GatheringSink sink;
    SearchPlan(engine, sink, task).run();
    return sink.said;
}

const SearchTask two_moves{"position x", {"a2a3", "b2b3"}, 2, false, 1, 0};

TEST(SearchPlan, GoesThroughTheDepthsUpToTheLimit) {
    ScriptedEngine engine([](ScriptedEngine& e) { e.root_move("a2a3", 1); });
    GatheringSink sink;
    SearchTask task = two_moves;
    task.depth_limit = 13;
    SearchPlan(engine, sink, task).run();
    std::vector<int> depths;
    for (const SearchOrder& order : engine.orders) {
        depths.push_back(order.depth);
    }
    EXPECT_EQ(depths, (std::vector{1, 2, 4, 6, 12}))
        << "the depth of the first pass of the last is not searched before";
}

TEST(SearchPlan, DoesNotLetTheFirstMovesOfASweepPassForTheBest) {
    const Words said = said_for(two_moves, [](ScriptedEngine& e) {
        if (e.order.depth == 1) {
            e.root_move("b2b3", 5);
        } else {
            e.root_move("a2a3", -7);
            e.root_move("b2b3", 4);
        }
    });
    EXPECT_EQ(said, (Words{"1 b2b3 cp 50", "depth 1", "2 b2b3 cp 40", "depth 2", "finished"}));
}

TEST(SearchPlan, TakesAMoveThatIsWorthWhatTheBestWas) {
    const Words said = said_for(two_moves, [](ScriptedEngine& e) {
        if (e.order.depth == 1) {
            e.root_move("b2b3", 5);
        } else {
            e.root_move("a2a3", 6);
            e.root_move("b2b3", 4);
        }
    });
    EXPECT_EQ(said, (Words{"1 b2b3 cp 50", "depth 1", "2 a2a3 cp 60", "depth 2", "finished"}));
}

TEST(SearchPlan, TakesABestMoveThatCameWithoutAWord) {
    const Words said = said_for(two_moves, [](ScriptedEngine& e) {
        e.root_move("a2a3", -9);
        e.draw_unheard("b2b3");
    });
    EXPECT_EQ(said, (Words{"1 a2a3 cp -90", "1 b2b3 cp 0", "depth 1", "2 b2b3 cp 0", "depth 2", "finished"}));
}

TEST(SearchPlan, FollowsTheSearchFromDepthToDepth) {
    SearchTask task = two_moves;
    task.depth_limit = 12;
    const Words said = said_for(task, [](ScriptedEngine& e) {
        if (e.order.depth < 12) {
            return e.root_move("a2a3", 1);
        }
        e.begin_pass(8, Pass::all_moves, 0);
        e.root_move("a2a3", 2);
        e.begin_pass(10, Pass::best_alone, 1);
        e.root_move("a2a3", 0.5F);
        e.begin_pass(10, Pass::the_others, 0);
        e.root_move("b2b3", 3);
        e.begin_pass(12, Pass::best_alone, 1);
        e.root_move("b2b3", 4);
    });
    const Words last(said.end() - 8, said.end());
    EXPECT_EQ(last, (Words{"8 a2a3 cp 20", "depth 8", "10 a2a3 cp 5 at most", "10 b2b3 cp 30", "depth 10",
                           "12 b2b3 cp 40", "depth 12", "finished"}));
}

TEST(SearchPlan, EndsWithAProvenMate) {
    SearchTask task = two_moves;
    task.depth_limit = 20;
    const Words said = said_for(task, [](ScriptedEngine& e) { e.root_move("a2a3", e.order.depth < 4 ? 1 : 14300); });
    EXPECT_EQ(said,
              (Words{"1 a2a3 cp 10", "depth 1", "2 a2a3 cp 10", "depth 2", "4 a2a3 mate 2", "depth 4", "finished"}));
}

TEST(SearchPlan, SearchesTheDepthAskedForBehindAProvenMate) {
    SearchTask task = two_moves;
    task.depth_limit = 20;
    task.to_the_limit = true;
    const Words said = said_for(task, [](ScriptedEngine& e) {
        if (e.order.depth < 20) {
            return e.root_move("a2a3", e.order.depth < 4 ? 1 : 14300);
        }
        EXPECT_TRUE(e.order.at_once);
        e.begin_pass(8, Pass::all_moves, 0);
        e.root_move("b2b3", 14300);
        e.begin_pass(20, Pass::best_alone, 1);
        e.root_move("b2b3", 15400);
    });
    const Words last(said.end() - 5, said.end());
    EXPECT_EQ(last, (Words{"4 a2a3 mate 2", "depth 4", "20 b2b3 mate 1", "depth 20", "finished"}));
}

TEST(SearchPlan, SearchesTheDepthAskedForWhereTheEngineEndsBeforeIt) {
    SearchTask task = two_moves;
    task.depth_limit = 14;
    task.to_the_limit = true;
    const Words said = said_for(task, [](ScriptedEngine& e) {
        if (e.order.depth == 14) {
            e.begin_pass(e.order.at_once ? 14 : 10, Pass::the_others, 0);
        }
        e.root_move("a2a3", 1);
    });
    const Words last(said.end() - 5, said.end());
    EXPECT_EQ(last, (Words{"10 a2a3 cp 10", "depth 10", "14 a2a3 cp 10", "depth 14", "finished"}));
}

TEST(SearchPlan, KeepsWhatItKnowsWhereTheEngineComesBackWithoutAScore) {
    SearchTask task = two_moves;
    task.depth_limit = 10;
    task.to_the_limit = true;
    constexpr float unwritten = 16500.0F;
    const auto script = [](ScriptedEngine& e) {
        e.root_move("a2a3", e.order.depth < 4 ? 1.0F : (e.order.depth < 10 ? 14300.0F : unwritten));
    };
    const Words said = said_for(task, script);
    const Words last(said.end() - 5, said.end());
    EXPECT_EQ(last, (Words{"4 a2a3 mate 2", "depth 4", "10 a2a3 mate 2", "depth 10", "finished"}));
    task.lines = 2;
    const Words several = said_for(task, [&script](ScriptedEngine& e) {
        e.order.allowed.front() == "a2a3" ? script(e) : e.root_move("b2b3", 0.0F);
    });
    const Words last_of_several(several.end() - 4, several.end());
    EXPECT_EQ(last_of_several, (Words{"10 a2a3 mate 2", "10 b2b3 cp 0", "depth 10", "finished"}));
}

TEST(SearchPlan, FindsSeveralLinesWithoutTheMovesAlreadyFound) {
    SearchTask task = two_moves;
    task.depth_limit = 1;
    task.lines = 5;
    const Words said = said_for(task, [](ScriptedEngine& e) {
        for (const EngineMove& move : e.order.allowed) {
            e.root_move(move, move == "a2a3" ? 1.0F : 2.0F);
        }
    });
    EXPECT_EQ(said, (Words{"1 b2b3 cp 20", "1 a2a3 cp 10", "depth 1", "finished"}));
}

// --- The real engine ---

class CoreEngine : public SearchEngine {
public:
    CoreEngine() { begin_engine(); }
    void search(const SearchOrder& order, SearchListener& listener) override {
        ondrel::standard_uci::search(order, listener);
    }
    [[nodiscard]] Standing standing() const override { return ondrel::standard_uci::standing(); }
    [[nodiscard]] std::uint64_t nodes() const override { return nodes_searched(); }
    [[nodiscard]] int depth() const override { return depth_searched(); }
    [[nodiscard]] bool root_move_has_changed(const EngineMove& from) const override {
        return ondrel::standard_uci::root_move_has_changed(from);
    }
};

std::vector<EngineMove> texts_of(const std::vector<Move>& moves) {
    std::vector<EngineMove> texts;
    texts.reserve(moves.size());
    for (const Move& move : moves) {
        texts.push_back(text_of({move.from, move.to, 0, move.castling}, false));
    }
    return texts;
}

GatheringSink search_with_engine(const std::string& fen, int depth, int lines = 1,
                                 std::vector<EngineMove> allowed = {}) {
    CoreEngine engine;
    GatheringSink sink;
    if (allowed.empty()) {
        allowed = texts_of(legal_moves(*read_fen(words_of(fen)).position));
    }
    SearchPlan(engine, sink, {"position fen " + fen, allowed, depth, true, lines, 0}).run();
    return sink;
}

constexpr const char* middlegame = "r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 0 1";

TEST(Engine, ReachesEveryDepthItIsAskedFor) {
    for (const int depth : {1, 2, 4, 6, 10}) {
        const GatheringSink sink = search_with_engine("4k3/pp3p2/8/8/8/8/PP3P2/4K3 w - - 0 1", depth);
        EXPECT_EQ(sink.found.back().depth, depth);
        EXPECT_EQ(sink.said.at(sink.said.size() - 2), "depth " + std::to_string(depth));
        EXPECT_GT(sink.found.back().nodes, 0U);
    }
}

TEST(Engine, ReachesTheDepthItIsAskedForBehindAMate) {
    for (const char* fen :
         {"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "7k/8/4K3/8/8/8/8/6Q1 w - - 0 1", "7k/5Q2/8/6K1/8/8/8/8 w - - 0 1"}) {
        for (const int depth : {8, 10, 12, 14}) {
            const GatheringSink sink = search_with_engine(fen, depth);
            EXPECT_EQ(sink.found.back().depth, depth);
            EXPECT_EQ(score_text(sink.found.back().score).substr(0, 5), "mate ");
            EXPECT_TRUE(std::ranges::is_sorted(sink.found, {}, &FoundLine::depth));
        }
    }
}

TEST(Engine, SearchesTheAllowedMovesAlone) {
    const GatheringSink sink = search_with_engine(middlegame, 4, 1, {"a2a3", "h2h4"});
    for (const FoundLine& line : sink.found) {
        EXPECT_TRUE(line.moves.front() == "a2a3" || line.moves.front() == "h2h4");
    }
    const GatheringSink lone = search_with_engine("4k3/pp3p2/8/8/8/8/PP3P2/4K3 w - - 0 1", 10, 1, {"a2a3"});
    EXPECT_EQ(lone.found.back().depth, 10) << "a lone move is searched on";
}

TEST(Engine, NeverCastlesThroughAnAttack) {
    // Long castling with check is judged by the short one: d1 is attacked here, f1 is not.
    const std::string fen = "3k3b/8/8/8/3r4/8/8/R3K2R w KQ - 0 1";
    for (const int depth : {2, 4, 6}) {
        for (const FoundLine& line : search_with_engine(fen, depth).found) {
            EXPECT_NE(line.moves.front(), "e1c1");
        }
    }
}

TEST(Engine, FindsTheSameTwice) {
    const GatheringSink one = search_with_engine(middlegame, 6);
    const GatheringSink other = search_with_engine(middlegame, 6);
    EXPECT_EQ(one.said, other.said);
    EXPECT_EQ(one.found.back().nodes, other.found.back().nodes);
}

TEST(Engine, GivesSeveralLinesInFallingOrder) {
    const GatheringSink sink = search_with_engine(middlegame, 4, 3);
    ASSERT_EQ(sink.found.size(), 9U);
    for (std::size_t k = 6; k < 8; ++k) {
        EXPECT_GE(sink.found[k].score, sink.found[k + 1].score);
        EXPECT_NE(sink.found[k].moves.front(), sink.found[k + 1].moves.front());
    }
}

TEST(Engine, TellsMatesOfBothSides) {
    EXPECT_EQ(score_text(search_with_engine("6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", 2).found.back().score), "mate 1");
    EXPECT_EQ(score_text(search_with_engine("7k/8/4K3/8/8/8/8/6Q1 w - - 0 1", 4).found.back().score), "mate 2");
    EXPECT_EQ(score_text(search_with_engine("7k/8/5K2/6Q1/8/8/8/8 b - - 0 1", 4).found.back().score), "mate -1");
}

TEST(Engine, KnowsItsBook) {
    EXPECT_EQ(book_reply({}), "e2e4");
    EXPECT_EQ(book_reply({"d2d4"}), "c7c5");
    EXPECT_EQ(book_reply({"a2a3"}), "");
    EXPECT_EQ(book_reply({"e2e4", "c7c5"}), "g1f3");
    EXPECT_EQ(book_reply({"e2e4", "d7d5", "e4d5"}), "g8f6");
}

}  // namespace
