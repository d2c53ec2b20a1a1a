#include "compare/engine_run.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace compare {

namespace {

using Clock = std::chrono::steady_clock;
using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

[[noreturn]] void fail(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

struct Pipe {
    int read_end = -1, write_end = -1;
};

Pipe open_pipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        fail("pipe");
    }
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    return {ends[0], ends[1]};
}

// The whole input as a file, so that neither side ever waits for the other.
File file_with(const std::vector<std::string>& lines) {
    File file(std::tmpfile(), &std::fclose);
    if (file == nullptr) {
        fail("tmpfile");
    }
    for (const std::string& line : lines) {
        std::fwrite(line.data(), 1, line.size(), file.get());
        std::fputc('\n', file.get());
    }
    std::fflush(file.get());
    std::rewind(file.get());
    return file;
}

// The processor time is limited by the system, so that a busy machine makes no difference.
void limit_processor_time(double seconds) {
    const auto whole = static_cast<rlim_t>(seconds) + 1;
    const rlimit limit{whole, whole + 1};
    setrlimit(RLIMIT_CPU, &limit);
}

pid_t start(const std::string& program, const Conversation& conversation, double limit_in_seconds, int input,
            const Pipe& output, const Pipe& errors) {
    const pid_t child = fork();
    if (child < 0) {
        fail("fork");
    }
    if (child == 0) {
        dup2(input, STDIN_FILENO);
        dup2(output.write_end, STDOUT_FILENO);
        dup2(errors.write_end, STDERR_FILENO);
        close(output.write_end);
        close(errors.write_end);
        setenv("ONDREL_CLOCK_STEP", std::to_string(conversation.clock_step).c_str(), 1);
        limit_processor_time(limit_in_seconds);
        execl(program.c_str(), program.c_str(), nullptr);
        _exit(127);
    }
    return child;
}

// False at the end of the stream.
bool take_what_is_there(int descriptor, std::string& text) {
    std::array<char, 65536> piece{};
    const ssize_t size = read(descriptor, piece.data(), piece.size());
    if (size > 0) {
        text.append(piece.data(), static_cast<std::size_t>(size));
    }
    return size > 0 || (size < 0 && errno == EINTR);
}

std::vector<std::string> split_lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string tell_end(int status) {
    if (WIFSIGNALED(status)) {
        return "signal " + std::to_string(WTERMSIG(status));
    }
    return "exit " + std::to_string(WEXITSTATUS(status));
}

}  // namespace

Run run_engine(const std::string& program, const Conversation& conversation, double limit_in_seconds) {
    const auto begin = Clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(Clock::now() - begin).count(); };
    File input = file_with(conversation.lines);
    const Pipe output = open_pipe();
    const Pipe errors = open_pipe();
    const pid_t child = start(program, conversation, limit_in_seconds, fileno(input.get()), output, errors);
    input.reset();
    close(output.write_end);
    close(errors.write_end);

    // An engine that neither computes nor ends.
    const double waiting_limit = 60 + 20 * limit_in_seconds;
    Run run;
    std::string written, complained;
    std::array<pollfd, 2> streams{{{output.read_end, POLLIN, 0}, {errors.read_end, POLLIN, 0}}};
    std::array<std::string*, 2> texts{&written, &complained};
    int open = 2;
    while (open > 0 && !run.out_of_time) {
        const double left = waiting_limit - elapsed();
        run.out_of_time = left <= 0;
        if (run.out_of_time || poll(streams.data(), streams.size(), static_cast<int>(left * 1000) + 1) <= 0) {
            continue;
        }
        for (std::size_t i = 0; i < streams.size(); ++i) {
            if (streams[i].fd >= 0 && streams[i].revents != 0 && !take_what_is_there(streams[i].fd, *texts[i])) {
                streams[i].fd = -1;
                --open;
            }
        }
    }
    if (run.out_of_time) {
        kill(child, SIGKILL);
    }
    int status = 0;
    rusage usage{};
    while (wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    close(output.read_end);
    close(errors.read_end);
    run.output = split_lines(written);
    run.errors = split_lines(complained);
    run.out_of_time = run.out_of_time || (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU);
    run.end = run.out_of_time ? "no end" : tell_end(status);
    run.seconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                  static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
    return run;
}

}  // namespace compare
