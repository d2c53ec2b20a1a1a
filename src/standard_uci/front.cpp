#include "standard_uci/front.h"

#include "standard_uci/client_streams.h"
#include "standard_uci/session.h"
#include "standard_uci/worker_process.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <limits>
#include <utility>

namespace ondrel::standard_uci {
namespace {

constexpr std::int64_t nanoseconds_of_a_millisecond = 1000000;
constexpr std::uint64_t longest_farewell = 300;  // milliseconds for a client to read the last lines

std::string own_executable() {
    std::array<char, 4096> path{};
    std::size_t length = path.size();
    return uv_exepath(path.data(), &length) == 0 ? std::string(path.data(), length) : "";
}

class Front : public Surroundings {
public:
    Front() : session_(*this), input_(input_events()) {
        uv_loop_init(&loop_);
        uv_timer_init(&loop_, &timer_);
        uv_timer_init(&loop_, &failure_);
        timer_.data = failure_.data = this;
        survive_broken_pipes();
        output_.open(&loop_);
        input_.open(&loop_);
    }
    Front(const Front&) = delete;
    Front& operator=(const Front&) = delete;
    ~Front() override = default;

    void run() { uv_run(&loop_, UV_RUN_DEFAULT); }

    void write_to_client(const std::string& line) override { output_.write(line); }

    void write_to_worker(const std::string& line) override {
        if (worker_ != nullptr) {
            worker_->write(line);
        }
    }

    void renew_worker() override {
        let_worker_go();
        if (is_leaving_) {
            return;
        }
        worker_ = WorkerProcess::start(
            &loop_, executable_,
            {.line = [this](std::string_view line) { session_.worker_said(line); }, .end = [this] { lose_worker(); }});
        if (worker_ == nullptr) {
            constexpr std::uint64_t a_moment = 10;
            uv_timer_start(
                &failure_, [](uv_timer_t* timer) { of(timer).session_.worker_ended(); }, a_moment, 0);
        }
    }

    std::optional<PublishedLine> published_line() override { return page() != nullptr ? page()->line() : std::nullopt; }
    std::uint64_t published_nodes() override { return page() != nullptr ? page()->nodes() : 0; }

    std::int64_t now() override { return static_cast<std::int64_t>(uv_hrtime()) / nanoseconds_of_a_millisecond; }

    void wake_at(std::int64_t time) override {
        if (time == std::numeric_limits<std::int64_t>::max()) {
            uv_timer_stop(&timer_);
            return;
        }
        uv_update_time(&loop_);
        const auto delay = static_cast<std::uint64_t>(std::max<std::int64_t>(0, time - now()));
        uv_timer_start(
            &timer_, [](uv_timer_t* timer) { of(timer).session_.time_came(); }, delay, 0);
    }

    void leave() override {
        is_leaving_ = true;
        input_.close();
        let_worker_go();
        uv_timer_stop(&failure_);
        uv_timer_start(
            &timer_, [](uv_timer_t* timer) { of(timer).close_all(); }, longest_farewell, 0);
        output_.close([this] { close_all(); });
    }

private:
    static Front& of(uv_timer_t* timer) { return *static_cast<Front*>(timer->data); }

    ClientInput::Events input_events() {
        return {.line = [this](std::string_view line) { session_.client_said(line); },
                .too_long = [this] { session_.client_said_too_much(); },
                .end = [this] { session_.client_left(); }};
    }

    // A worker may be gone before it has read its order, a client before it has read its answer.
    void survive_broken_pipes() {
#ifdef SIGPIPE
        uv_signal_init(&loop_, &broken_pipe_);
        uv_signal_start(
            &broken_pipe_, [](uv_signal_t*, int) {}, SIGPIPE);
        uv_unref(reinterpret_cast<uv_handle_t*>(&broken_pipe_));
#endif
    }

    [[nodiscard]] const SharedPage* page() const { return worker_ != nullptr ? worker_->page() : nullptr; }

    void let_worker_go() {
        if (worker_ != nullptr) {
            std::exchange(worker_, nullptr)->let_go();
        }
    }

    void lose_worker() {
        let_worker_go();
        session_.worker_ended();
    }

    // The loop ends by itself when the last worker has ended too.
    void close_all() {
        for (uv_timer_t* const timer : {&timer_, &failure_}) {
            if (uv_is_closing(reinterpret_cast<uv_handle_t*>(timer)) == 0) {
                uv_close(reinterpret_cast<uv_handle_t*>(timer), nullptr);
            }
        }
        output_.close_at_once();
    }

    uv_loop_t loop_{};
    uv_timer_t timer_{};
    uv_timer_t failure_{};
    uv_signal_t broken_pipe_{};
    std::string executable_ = own_executable();
    Session session_;
    ClientInput input_;
    ClientOutput output_;
    WorkerProcess* worker_ = nullptr;
    bool is_leaving_ = false;
};

}  // namespace

int run_front() {
    // The loop is left as it stands: the system takes back what the process had.
    static Front front;
    front.run();
    return 0;
}

}  // namespace ondrel::standard_uci
