// Standard input and output of the front, whatever they are: pipes, terminals, sockets or files.
#pragma once

#include "standard_uci/line_splitter.h"

#include <uv.h>
#include <array>
#include <functional>
#include <string>

namespace ondrel::standard_uci {

union AnyStream {
    uv_handle_t handle;
    uv_stream_t stream;
    uv_pipe_t pipe;
    uv_tty_t tty;
    uv_tcp_t tcp;
};

// Opens the descriptor as a stream; false if it is none, a file for example.
bool open_stream(uv_loop_t* loop, AnyStream& stream, int descriptor, bool is_read);

class ClientInput {
public:
    struct Events {
        std::function<void(std::string_view)> line;
        std::function<void()> too_long;
        std::function<void()> end;
    };

    explicit ClientInput(Events events);
    void open(uv_loop_t* loop);
    void close();

private:
    static void give_buffer(uv_handle_t* handle, std::size_t wanted, uv_buf_t* buffer);
    static void stream_was_read(uv_stream_t* stream, ssize_t count, const uv_buf_t* buffer);
    static void file_was_read(uv_fs_t* request);
    void read_file_on();
    void take(ssize_t count);

    Events events_;
    LineSplitter lines_;
    AnyStream stream_{};
    uv_fs_t request_{};
    uv_loop_t* loop_ = nullptr;
    bool is_stream_ = false;
    bool is_closed_ = false;
    std::array<char, 65536> buffer_{};
};

class ClientOutput {
public:
    void open(uv_loop_t* loop);
    void write(const std::string& line);
    // Closes it when all is written, and then calls `done`.
    void close(std::function<void()> done);
    void close_at_once();

private:
    static void was_written(uv_write_t* request, int status);
    static void was_shut(uv_shutdown_t* request, int status);

    AnyStream stream_{};
    uv_loop_t* loop_ = nullptr;
    uv_shutdown_t shutdown_{};
    std::function<void()> done_;
    bool is_stream_ = false;
};

}  // namespace ondrel::standard_uci
