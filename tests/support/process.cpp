#include "support/process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <sstream>
#include <system_error>

namespace tests {

using std::chrono::milliseconds;

namespace {

using SteadyClock = std::chrono::steady_clock;

struct Pipe {
    int read_end = -1;
    int write_end = -1;
};

Pipe open_pipe() {
    std::array<int, 2> fd{};
    if (pipe2(fd.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe2");
    }
    return {fd[0], fd[1]};
}

// Starts the engine with the three streams given.
int start_engine(int input, int output, int error) {
    std::signal(SIGPIPE, SIG_IGN);
    const int pid = fork();
    if (pid == 0) {
        dup2(input, 0);
        dup2(output, 1);
        if (error >= 0) {
            dup2(error, 2);
        }
        execl(ONDREL_ENGINE, ONDREL_ENGINE, nullptr);
        _exit(127);
    }
    if (pid < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    return pid;
}

int time_until(SteadyClock::time_point deadline) {
    const auto ms = std::chrono::duration_cast<milliseconds>(deadline - SteadyClock::now()).count();
    return ms < 0 ? 0 : static_cast<int>(ms);
}

// Takes what is there to read; false at the end of the stream.
bool append_available(int fd, std::string& text) {
    std::array<char, 65536> chunk{};
    const ssize_t n = read(fd, chunk.data(), chunk.size());
    if (n > 0) {
        text.append(chunk.data(), static_cast<std::size_t>(n));
    }
    return n > 0 || (n < 0 && errno == EAGAIN);
}

void close_once(int& fd) {
    if (fd >= 0) {
        close(fd);
        fd = -1;
    }
}

// Feeds the process and reads both its outputs until it has closed them. False when the time is over before.
bool exchange(std::string_view input, Pipe& to, Pipe& from, Pipe& error, milliseconds limit, Outcome& outcome) {
    const auto deadline = SteadyClock::now() + limit;
    std::size_t written = 0;
    if (input.empty()) {
        close_once(to.write_end);
    }
    while (from.read_end >= 0 || error.read_end >= 0) {
        std::array fds{pollfd{from.read_end, POLLIN, 0}, pollfd{error.read_end, POLLIN, 0},
                       pollfd{to.write_end, POLLOUT, 0}};
        if (poll(fds.data(), fds.size(), time_until(deadline)) == 0) {
            return false;
        }
        if (fds[0].revents != 0 && !append_available(from.read_end, outcome.output)) {
            close_once(from.read_end);
        }
        if (fds[1].revents != 0 && !append_available(error.read_end, outcome.error)) {
            close_once(error.read_end);
        }
        if (fds[2].revents != 0) {
            const ssize_t n = write(to.write_end, input.data() + written, input.size() - written);
            written += n > 0 ? static_cast<std::size_t>(n) : 0;
            if ((n < 0 && errno != EAGAIN) || written == input.size()) {
                close_once(to.write_end);
            }
        }
    }
    return true;
}

}  // namespace

std::vector<std::string> Outcome::lines() const {
    std::vector<std::string> all;
    std::istringstream from(output);
    for (std::string line; std::getline(from, line);) {
        all.push_back(line);
    }
    return all;
}

int Outcome::count_starting(std::string_view start) const {
    int n = 0;
    for (const std::string& line : lines()) {
        n += line.starts_with(start) ? 1 : 0;
    }
    return n;
}

Outcome run_engine(std::string_view input, milliseconds limit) {
    Pipe to = open_pipe();
    Pipe from = open_pipe();
    Pipe error = open_pipe();
    const int pid = start_engine(to.read_end, from.write_end, error.write_end);
    close_once(to.read_end);
    close_once(from.write_end);
    close_once(error.write_end);
    fcntl(to.write_end, F_SETFL, O_NONBLOCK);

    Outcome outcome;
    if (!exchange(input, to, from, error, limit, outcome)) {
        outcome.timed_out = true;
        kill(pid, SIGKILL);
    }
    close_once(to.write_end);
    close_once(from.read_end);
    close_once(error.read_end);
    int status = 0;
    waitpid(pid, &status, 0);
    outcome.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return outcome;
}

EngineProcess::EngineProcess() {
    Pipe to = open_pipe();
    Pipe from = open_pipe();
    pid_ = start_engine(to.read_end, from.write_end, -1);
    close_once(to.read_end);
    close_once(from.write_end);
    input_ = to.write_end;
    output_ = from.read_end;
}

EngineProcess::~EngineProcess() {
    close_once(input_);
    close_once(output_);
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
}

void EngineProcess::write(std::string_view line) const {
    const std::string text = std::string(line) + '\n';
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t n = ::write(input_, text.data() + done, text.size() - done);
        if (n < 0) {
            return;  // the engine has gone: the next read tells
        }
        done += static_cast<std::size_t>(n);
    }
}

void EngineProcess::close_input() { close_once(input_); }

bool EngineProcess::read(std::string& line, milliseconds limit) {
    const auto deadline = SteadyClock::now() + limit;
    for (;;) {
        if (const auto end = unread_.find('\n'); end != std::string::npos) {
            line = unread_.substr(0, end);
            unread_.erase(0, end + 1);
            return true;
        }
        pollfd p{output_, POLLIN, 0};
        if (poll(&p, 1, time_until(deadline)) == 0 || !append_available(output_, unread_)) {
            return false;
        }
    }
}

int EngineProcess::wait_for_exit(milliseconds limit) {
    const auto deadline = SteadyClock::now() + limit;
    int status = 0;
    while (waitpid(pid_, &status, WNOHANG) == 0) {
        if (time_until(deadline) == 0) {
            return -1;
        }
        usleep(2000);
    }
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int EngineProcess::kilobytes_in_use() const {
    std::ifstream status("/proc/" + std::to_string(pid_) + "/status");
    int kilobytes = -1;
    for (std::string field; status >> field;) {
        if (field == "VmRSS:") {
            status >> kilobytes;
        }
    }
    return kilobytes;
}

}  // namespace tests
