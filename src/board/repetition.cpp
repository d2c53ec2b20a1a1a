#include "board/repetition.h"

#include "base/root.h"

namespace ondrel {

void verifica_empate() {
    pempate = 0;
    if (!pempatee || nb > linhas_tabr1) {
        return;
    }
    // Rows of even index are positions after moves of White in a game from the start position.
    const bool linhas_pares = (joga_com_b == 1) == (deeppromo == 0);
    const int primeira = linhas_pares ? 0 : 1;
    if (nb < primeira + 1) {
        return;
    }
    const int ultima = primeira + 2 * ((nb - 1 - primeira) / 2);
    int faltam = deeppromo ? 2 : 1;
    for (int linha = primeira; linha <= ultima; linha += 2) {
        if (tabr1[linha] == tab2 && --faltam == 0) {
            pempate = 1;
            return;
        }
    }
}

}  // namespace ondrel
