#include "standard_uci/worker_process.h"

#include "standard_uci/front.h"

#include <csignal>
#include <memory>
#include <string>
#include <utility>

namespace ondrel::standard_uci {
namespace {

constexpr std::size_t longest_line = 4096;
constexpr int standard_error = 2;

struct Writing {
    uv_write_t request{};
    std::string text;
};

uv_stdio_container_t pipe_end(uv_pipe_t& pipe, unsigned direction) {
    uv_stdio_container_t end{};
    end.flags = static_cast<uv_stdio_flags>(static_cast<unsigned>(UV_CREATE_PIPE) | direction);
    end.data.stream = reinterpret_cast<uv_stream_t*>(&pipe);
    return end;
}

uv_stdio_container_t inherited(int descriptor) {
    uv_stdio_container_t end{};
    end.flags = descriptor >= 0 ? UV_INHERIT_FD : UV_IGNORE;
    end.data.fd = descriptor;
    return end;
}

template <class Handle>
uv_handle_t* as_handle(Handle& handle) {
    return reinterpret_cast<uv_handle_t*>(&handle);
}

}  // namespace

WorkerProcess::WorkerProcess(uv_loop_t* loop, Events events)
    : loop_(loop), events_(std::move(events)), lines_(longest_line), page_(make_page()) {}

WorkerProcess* WorkerProcess::start(uv_loop_t* loop, const std::string& executable, Events events) {
    auto* const worker = new WorkerProcess(loop, std::move(events));  // NOLINT: freed when its handles are closed
    if (worker->spawn(executable) == 0) {
        uv_read_start(reinterpret_cast<uv_stream_t*>(&worker->messages_), give_buffer, was_read);
        return worker;
    }
    worker->is_let_go_ = worker->has_ended_ = true;
    worker->close_handles();
    return nullptr;
}

int WorkerProcess::spawn(const std::string& executable) {
    std::array<std::string, 4> words{executable, worker_argument, process_number(), page_ ? page_->name() : "none"};
    std::array<char*, 5> arguments{words[0].data(), words[1].data(), words[2].data(), words[3].data(), nullptr};
    uv_pipe_init(loop_, &orders_, 0);
    uv_pipe_init(loop_, &messages_, 0);
    const bool has_error_output = uv_guess_handle(standard_error) != UV_UNKNOWN_HANDLE;
    std::array<uv_stdio_container_t, 4> ends{pipe_end(orders_, UV_READABLE_PIPE), pipe_end(messages_, UV_WRITABLE_PIPE),
                                             inherited(has_error_output ? standard_error : -1),
                                             inherited(page_ ? page_->descriptor() : -1)};
    uv_process_options_t options{};
    options.file = executable.c_str();
    options.args = arguments.data();
    options.stdio = ends.data();
    options.stdio_count = static_cast<int>(ends.size());
    options.exit_cb = has_ended;
    options.flags = UV_PROCESS_WINDOWS_HIDE;
    process_.data = orders_.data = messages_.data = this;
    open_handles_ = 3;
    return uv_spawn(loop_, &process_, &options);
}

void WorkerProcess::write(const std::string& line) {
    auto writing = std::make_unique<Writing>();
    writing->text = line + '\n';
    uv_buf_t buffer = uv_buf_init(writing->text.data(), static_cast<unsigned>(writing->text.size()));
    writing->request.data = writing.get();
    if (uv_write(&writing->request, reinterpret_cast<uv_stream_t*>(&orders_), &buffer, 1, was_written) == 0) {
        static_cast<void>(writing.release());  // was_written takes it back
    }
}

void WorkerProcess::was_written(uv_write_t* request, int) {
    std::unique_ptr<Writing>(static_cast<Writing*>(request->data)).reset();
}

void WorkerProcess::let_go() {
    is_let_go_ = true;
    if (has_ended_) {
        return close_handles();
    }
    uv_process_kill(&process_, SIGKILL);
    uv_read_stop(reinterpret_cast<uv_stream_t*>(&messages_));
}

void WorkerProcess::give_buffer(uv_handle_t* handle, std::size_t, uv_buf_t* buffer) {
    auto& worker = *static_cast<WorkerProcess*>(handle->data);
    *buffer = uv_buf_init(worker.buffer_.data(), static_cast<unsigned>(worker.buffer_.size()));
}

void WorkerProcess::was_read(uv_stream_t* stream, ssize_t count, const uv_buf_t*) {
    auto& worker = *static_cast<WorkerProcess*>(stream->data);
    if (count < 0) {
        uv_read_stop(stream);
        return;
    }
    const auto line = [&worker](std::string_view text) {
        if (!worker.is_let_go_) {
            worker.events_.line(text);
        }
    };
    worker.lines_.feed({worker.buffer_.data(), static_cast<std::size_t>(count)}, line, [] {});
}

void WorkerProcess::has_ended(uv_process_t* process, std::int64_t, int) {
    auto& worker = *static_cast<WorkerProcess*>(process->data);
    worker.has_ended_ = true;
    if (worker.is_let_go_) {
        worker.close_handles();
    } else {
        worker.events_.end();
    }
}

void WorkerProcess::close_handles() {
    for (uv_handle_t* const handle : {as_handle(process_), as_handle(orders_), as_handle(messages_)}) {
        uv_close(handle, handle_was_closed);
    }
}

void WorkerProcess::handle_was_closed(uv_handle_t* handle) {
    auto* const worker = static_cast<WorkerProcess*>(handle->data);
    if (--worker->open_handles_ == 0) {
        delete worker;  // NOLINT: made by start
    }
}

}  // namespace ondrel::standard_uci
