#include "support/process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sstream>
#include <system_error>

namespace teste {

using relogio = std::chrono::steady_clock;
using std::chrono::milliseconds;

namespace {

struct Cano {
    int le = -1;
    int escreve = -1;
};

Cano cano() {
    int fd[2];
    if (pipe2(fd, O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe2");
    }
    return {fd[0], fd[1]};
}

// Starts the engine with the three streams given.
int inicia(int entrada, int saida, int erro) {
    std::signal(SIGPIPE, SIG_IGN);
    const int pid = fork();
    if (pid == 0) {
        dup2(entrada, 0);
        dup2(saida, 1);
        if (erro >= 0) {
            dup2(erro, 2);
        }
        execl(ONDREL_ENGINE, ONDREL_ENGINE, nullptr);
        _exit(127);
    }
    if (pid < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    return pid;
}

int falta(relogio::time_point ate) {
    const auto ms = std::chrono::duration_cast<milliseconds>(ate - relogio::now()).count();
    return ms < 0 ? 0 : static_cast<int>(ms);
}

// Takes what is there to read; false at the end of the stream.
bool junta(int fd, std::string& texto) {
    char pedaco[65536];
    const ssize_t n = read(fd, pedaco, sizeof pedaco);
    if (n > 0) {
        texto.append(pedaco, static_cast<std::size_t>(n));
    }
    return n > 0 || (n < 0 && errno == EAGAIN);
}

void fecha(int& fd) {
    if (fd >= 0) {
        close(fd);
        fd = -1;
    }
}

}  // namespace

std::vector<std::string> Resultado::linhas() const {
    std::vector<std::string> todas;
    std::istringstream de(saida);
    for (std::string linha; std::getline(de, linha);) {
        todas.push_back(linha);
    }
    return todas;
}

int Resultado::quantas(std::string_view comeco) const {
    int n = 0;
    for (const std::string& linha : linhas()) {
        n += linha.starts_with(comeco) ? 1 : 0;
    }
    return n;
}

Resultado roda(std::string_view entrada, milliseconds limite) {
    const auto inicio = relogio::now();
    Cano para = cano();
    Cano de = cano();
    Cano erro = cano();
    const int pid = inicia(para.le, de.escreve, erro.escreve);
    fecha(para.le);
    fecha(de.escreve);
    fecha(erro.escreve);
    fcntl(para.escreve, F_SETFL, O_NONBLOCK);

    Resultado r;
    std::size_t escritos = 0;
    if (entrada.empty()) {
        fecha(para.escreve);
    }
    while (de.le >= 0 || erro.le >= 0) {
        pollfd canos[] = {{de.le, POLLIN, 0}, {erro.le, POLLIN, 0}, {para.escreve, POLLOUT, 0}};
        if (poll(canos, 3, falta(inicio + limite)) == 0) {
            r.esgotou = true;
            kill(pid, SIGKILL);
            break;
        }
        if (canos[0].revents != 0 && !junta(de.le, r.saida)) {
            fecha(de.le);
        }
        if (canos[1].revents != 0 && !junta(erro.le, r.erro)) {
            fecha(erro.le);
        }
        if (canos[2].revents != 0) {
            const ssize_t n = write(para.escreve, entrada.data() + escritos, entrada.size() - escritos);
            escritos += n > 0 ? static_cast<std::size_t>(n) : 0;
            if ((n < 0 && errno != EAGAIN) || escritos == entrada.size()) {
                fecha(para.escreve);
            }
        }
    }
    fecha(para.escreve);
    fecha(de.le);
    fecha(erro.le);
    int estado = 0;
    waitpid(pid, &estado, 0);
    r.codigo = WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
    r.sinal = WIFSIGNALED(estado) ? WTERMSIG(estado) : 0;
    r.duracao = std::chrono::duration_cast<milliseconds>(relogio::now() - inicio);
    return r;
}

Processo::Processo() {
    Cano para = cano();
    Cano de = cano();
    pid_ = inicia(para.le, de.escreve, -1);
    fecha(para.le);
    fecha(de.escreve);
    para_ = para.escreve;
    de_ = de.le;
}

Processo::~Processo() {
    fecha(para_);
    fecha(de_);
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
}

void Processo::escreve(std::string_view linha) {
    const std::string texto = std::string(linha) + '\n';
    for (std::size_t feito = 0; feito < texto.size();) {
        const ssize_t n = write(para_, texto.data() + feito, texto.size() - feito);
        if (n < 0) {
            return;  // the engine has gone: the next read tells
        }
        feito += static_cast<std::size_t>(n);
    }
}

void Processo::fecha_entrada() { fecha(para_); }

bool Processo::le(std::string& linha, milliseconds limite) {
    const auto ate = relogio::now() + limite;
    for (;;) {
        if (const auto fim = resto_.find('\n'); fim != std::string::npos) {
            linha = resto_.substr(0, fim);
            resto_.erase(0, fim + 1);
            return true;
        }
        pollfd p{de_, POLLIN, 0};
        if (poll(&p, 1, falta(ate)) == 0 || !junta(de_, resto_)) {
            return false;
        }
    }
}

int Processo::espera_fim(milliseconds limite) {
    const auto ate = relogio::now() + limite;
    int estado = 0;
    while (waitpid(pid_, &estado, WNOHANG) == 0) {
        if (falta(ate) == 0) {
            return -1;
        }
        usleep(2000);
    }
    pid_ = -1;
    return WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
}

}  // namespace teste
