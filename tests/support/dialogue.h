// The conversation line by line: what the engine writes to each line, and how its state stands when it asks for the
// next one.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace teste {

// A line for the engine; `antes` runs when the engine asks for it, with all before it done.
struct Fala {
    // cppcheck-suppress noExplicitConstructor; a text is a line
    Fala(const char* texto) : linha(texto) {}
    // cppcheck-suppress noExplicitConstructor; a text is a line
    Fala(std::string texto) : linha(std::move(texto)) {}
    Fala(std::string texto, std::function<void()> olha) : linha(std::move(texto)), antes(std::move(olha)) {}

    std::string linha;
    std::function<void()> antes = [] {};
};

using Linhas = std::vector<std::string>;

// Holds the conversation and gives for each line that the engine read what it wrote before it asked for the next one.
// The last item also holds what it wrote after the end of input. Lines behind a quit have no item.
std::vector<Linhas> dialogo(const std::vector<Fala>& falas);

// Runs `rotina` with the text as standard input; what it writes comes back.
std::string com_entrada(std::string_view entrada, const std::function<void()>& rotina);

// How many lines begin so.
int quantas_comecam(const Linhas& linhas, std::string_view comeco);

}  // namespace teste
