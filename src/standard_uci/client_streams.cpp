#include "standard_uci/client_streams.h"

#include <memory>
#include <utility>

namespace ondrel::standard_uci {
namespace {

constexpr int standard_input = 0;
constexpr int standard_output = 1;
constexpr std::size_t longest_line = std::size_t{1} << 20U;
// Of what a client does not read, lines that only inform are let go.
constexpr std::size_t most_unread = std::size_t{1} << 20U;

struct Writing {
    uv_write_t request{};
    std::string text;
};

}  // namespace

bool open_stream(uv_loop_t* loop, AnyStream& stream, int descriptor, bool is_read) {
    switch (uv_guess_handle(descriptor)) {
        case UV_NAMED_PIPE:
            return uv_pipe_init(loop, &stream.pipe, 0) == 0 && uv_pipe_open(&stream.pipe, descriptor) == 0;
        case UV_TTY: return uv_tty_init(loop, &stream.tty, descriptor, is_read ? 1 : 0) == 0;
        case UV_TCP: return uv_tcp_init(loop, &stream.tcp) == 0 && uv_tcp_open(&stream.tcp, descriptor) == 0;
        default: return false;
    }
}

// --- Input ---

ClientInput::ClientInput(Events events) : events_(std::move(events)), lines_(longest_line) {}

void ClientInput::open(uv_loop_t* loop) {
    loop_ = loop;
    is_stream_ = open_stream(loop, stream_, standard_input, true);
    if (is_stream_) {
        stream_.handle.data = this;
        uv_read_start(&stream_.stream, give_buffer, stream_was_read);
    } else {
        request_.data = this;
        read_file_on();
    }
}

void ClientInput::close() {
    if (std::exchange(is_closed_, true)) {
        return;
    }
    if (is_stream_) {
        uv_close(&stream_.handle, nullptr);
    }
}

void ClientInput::give_buffer(uv_handle_t* handle, std::size_t, uv_buf_t* buffer) {
    auto& input = *static_cast<ClientInput*>(handle->data);
    *buffer = uv_buf_init(input.buffer_.data(), static_cast<unsigned>(input.buffer_.size()));
}

void ClientInput::stream_was_read(uv_stream_t* stream, ssize_t count, const uv_buf_t*) {
    if (count != 0) {
        static_cast<ClientInput*>(stream->data)->take(count);
    }
}

void ClientInput::read_file_on() {
    uv_buf_t buffer = uv_buf_init(buffer_.data(), static_cast<unsigned>(buffer_.size()));
    constexpr std::int64_t from_where_it_stands = -1;
    uv_fs_read(loop_, &request_, standard_input, &buffer, 1, from_where_it_stands, file_was_read);
}

void ClientInput::file_was_read(uv_fs_t* request) {
    auto& input = *static_cast<ClientInput*>(request->data);
    const ssize_t count = request->result;
    uv_fs_req_cleanup(request);
    input.take(count);
    if (count > 0 && !input.is_closed_) {
        input.read_file_on();
    }
}

// Takes what has come into the buffer; no more than nothing is the end.
void ClientInput::take(ssize_t count) {
    const auto line = [this](std::string_view text) {
        if (!is_closed_) {
            events_.line(text);
        }
    };
    const auto too_long = [this] { events_.too_long(); };
    if (count > 0) {
        return lines_.feed({buffer_.data(), static_cast<std::size_t>(count)}, line, too_long);
    }
    lines_.end(line, too_long);
    if (!is_closed_) {
        events_.end();
    }
}

// --- Output ---

void ClientOutput::open(uv_loop_t* loop) {
    loop_ = loop;
    is_stream_ = open_stream(loop, stream_, standard_output, false);
}

void ClientOutput::write(const std::string& line) {
    if (!is_stream_) {
        std::string text = line + '\n';
        uv_buf_t buffer = uv_buf_init(text.data(), static_cast<unsigned>(text.size()));
        uv_fs_t request;
        uv_fs_write(loop_, &request, standard_output, &buffer, 1, -1, nullptr);
        return uv_fs_req_cleanup(&request);
    }
    if (line.starts_with("info") && uv_stream_get_write_queue_size(&stream_.stream) > most_unread) {
        return;
    }
    auto writing = std::make_unique<Writing>();
    writing->text = line + '\n';
    uv_buf_t buffer = uv_buf_init(writing->text.data(), static_cast<unsigned>(writing->text.size()));
    writing->request.data = writing.get();
    if (uv_write(&writing->request, &stream_.stream, &buffer, 1, was_written) == 0) {
        static_cast<void>(writing.release());  // was_written takes it back
    }
}

void ClientOutput::was_written(uv_write_t* request, int) {
    std::unique_ptr<Writing>(static_cast<Writing*>(request->data)).reset();
}

void ClientOutput::close(std::function<void()> done) {
    done_ = std::move(done);
    shutdown_.data = this;
    if (!is_stream_ || uv_shutdown(&shutdown_, &stream_.stream, was_shut) != 0) {
        done_();
    }
}

void ClientOutput::was_shut(uv_shutdown_t* request, int) { static_cast<ClientOutput*>(request->data)->done_(); }

void ClientOutput::close_at_once() {
    if (is_stream_ && uv_is_closing(&stream_.handle) == 0) {
        uv_close(&stream_.handle, nullptr);
    }
}

}  // namespace ondrel::standard_uci
