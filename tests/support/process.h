// The engine as a process of its own, the way an interface meets it.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace teste {

struct Resultado {
    std::string saida;     // all of standard output
    std::string erro;      // all of standard error
    int codigo = -1;       // exit code; -1 if killed by a signal or by the time limit
    int sinal = 0;         // the signal that ended it, 0 for none
    bool esgotou = false;  // did not end within the limit and was killed
    std::chrono::milliseconds duracao{};

    [[nodiscard]] std::vector<std::string> linhas() const;
    [[nodiscard]] int quantas(std::string_view comeco) const;  // output lines that begin so
};

// Starts the built engine, writes the input, closes it and waits for the end.
Resultado roda(std::string_view entrada, std::chrono::milliseconds limite = std::chrono::seconds(60));

// A live engine: lines are written and read one at a time.
class Processo {
public:
    Processo();
    ~Processo();
    Processo(const Processo&) = delete;
    Processo& operator=(const Processo&) = delete;

    void escreve(std::string_view linha);  // with a line end
    void fecha_entrada();
    // The next output line without its end; false when none comes within the limit or the output has ended.
    bool le(std::string& linha, std::chrono::milliseconds limite = std::chrono::seconds(30));
    // Waits for the end of the process and returns its exit code, -1 for a signal or when the limit is over.
    int espera_fim(std::chrono::milliseconds limite = std::chrono::seconds(30));
    [[nodiscard]] int pid() const { return pid_; }

private:
    int pid_ = -1;
    int para_ = -1;
    int de_ = -1;
    std::string resto_;
};

}  // namespace teste
