#include "uci/output.h"

#include <iostream>
#include <string>

namespace ondrel {

void abre_saida() {
    std::ios::sync_with_stdio(false);
    std::cin.tie(nullptr);
    std::cout.setf(std::ios::unitbuf);
}

void escreve_linha(std::string_view texto) {
    std::string linha(texto);
    linha += '\n';
    std::cout << linha;
}

}  // namespace ondrel
