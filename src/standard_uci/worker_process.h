// A worker as the front sees it: a child process, two pipes and a page. The front owns the present one; one that was
// let go frees itself when the system has done with it.
#pragma once

#include "standard_uci/line_splitter.h"
#include "standard_uci/platform.h"

#include <uv.h>
#include <array>
#include <functional>

namespace ondrel::standard_uci {

class WorkerProcess {
public:
    struct Events {
        std::function<void(std::string_view)> line;
        std::function<void()> end;
    };

    // Null if the process cannot be started.
    static WorkerProcess* start(uv_loop_t* loop, const std::string& executable, Events events);

    void write(const std::string& line);
    [[nodiscard]] const SharedPage* page() const { return page_ ? &page_->page() : nullptr; }

    // Ends the process. Nothing of it is heard any more, and the object is not to be used again.
    void let_go();

private:
    WorkerProcess(uv_loop_t* loop, Events events);
    int spawn(const std::string& executable);
    void close_handles();

    static void give_buffer(uv_handle_t* handle, std::size_t wanted, uv_buf_t* buffer);
    static void was_read(uv_stream_t* stream, ssize_t count, const uv_buf_t* buffer);
    static void was_written(uv_write_t* request, int status);
    static void has_ended(uv_process_t* process, std::int64_t status, int signal);
    static void handle_was_closed(uv_handle_t* handle);

    uv_loop_t* loop_;
    Events events_;
    LineSplitter lines_;
    std::unique_ptr<PageForWorker> page_;
    uv_process_t process_{};
    uv_pipe_t orders_{};
    uv_pipe_t messages_{};
    int open_handles_ = 0;
    bool is_let_go_ = false;
    bool has_ended_ = false;
    std::array<char, 65536> buffer_{};
};

}  // namespace ondrel::standard_uci
