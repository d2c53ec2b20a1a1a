#include "uci/command_loop.h"
#include "uci/output.h"

int main() {
    ondrel::abre_saida();
    ondrel::laco_de_comandos();
    return 0;
}
