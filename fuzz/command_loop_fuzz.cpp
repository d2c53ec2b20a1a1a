// Whole conversations. The input is what the engine reads; what it writes must be lines of its protocol.
//
// A search of a nonsense position takes long, and nothing ends it from outside: even without depth the root is swept
// some thousand times. So the conversation is made cheap before it is given to the engine: few positions, FEN boards
// with few men, and no depth but for the smallest.
#include "fresh_process.h"

#include <streambuf>

namespace {

using namespace ondrel;

// Looks at each line written and forgets it.
class Saida : public std::streambuf {
public:
    void confere_resto() const { fuzz::exige(linha_.empty(), "an unfinished line"); }

private:
    int_type overflow(int_type x) override {
        if (x == '\n') {
            confere();
            linha_.clear();
        } else {
            linha_ += static_cast<char>(x);
        }
        return x;
    }
    std::streamsize xsputn(const char* texto, std::streamsize n) override {
        for (std::streamsize k = 0; k < n; ++k) {
            overflow(static_cast<unsigned char>(texto[k]));
        }
        return n;
    }
    void confere() const {
        for (const std::string_view comeco :
             {"info score ", "info nps ", "bestmove ", "readyok", "option name ", "id ", "uciok"}) {
            if (linha_.starts_with(comeco)) {
                return;
            }
        }
        fuzz::falha("a line of no kind: " + linha_);
    }

    std::string linha_;
};

char em(const std::string& linha, std::size_t k) { return k < linha.size() ? linha[k] : '\0'; }

bool e_opcao_de_profundidade(const std::string& linha) {
    return em(linha, 0) == 's' && em(linha, 15) == 'D' && em(linha, 17) == 'e' && em(linha, 20) == 'v';
}

constexpr int posicoes_no_maximo = 2;
constexpr std::ptrdiff_t homens_no_maximo = 6;
constexpr std::ptrdiff_t homens_em_geral = 3;

bool e_homem(char x) { return std::string_view("pnbrqkPNBRQK").find(x) != std::string_view::npos; }

bool e_de_fen(const std::string& linha) { return em(linha, 9) == 'f'; }

bool e_partida_em_curso(const std::string& linha) { return em(linha, 9) == 's' && em(linha, 28) != '\0'; }

// Leaves out the men of the board field of a FEN line that are too many.
std::string com_poucos_homens(const std::string& linha, std::ptrdiff_t no_maximo) {
    constexpr std::ptrdiff_t tabuleiro_em = 13;
    if (!e_de_fen(linha) || std::ssize(linha) <= tabuleiro_em) {
        return linha;
    }
    std::string rala = linha;
    std::ptrdiff_t homens = 0;
    for (auto x = rala.begin() + tabuleiro_em; x != rala.end() && *x != ' '; ++x) {
        if (e_homem(*x) && ++homens > no_maximo) {
            *x = '1';
        }
    }
    return rala;
}

char profundidade(const std::string& linha) {
    if (!e_de_fen(linha)) {
        return '0';
    }
    const auto homens = std::ranges::count_if(linha, e_homem) - std::ranges::count_if("position fen", e_homem);
    return homens <= 3 ? '2' : homens <= 5 ? '1' : '0';
}

// A go line whose clock leaves the depth at no more than that of few men.
std::string_view go_raso(const std::string& linha) {
    constexpr std::array<std::string_view, 6> relogios{"go",
                                                       "go infinite",
                                                       "go wtime 5 btime 5",
                                                       "go wtime 50 btime 1",
                                                       "go movestogo 9 wtime 50 btime 1",
                                                       "go wtime 99999999"};
    return relogios[linha.size() % relogios.size()];
}

// One input in eight may have a game in progress and a board of some size.
std::string barata(const std::vector<std::string>& linhas, bool cara) {
    std::string entrada;
    int posicoes = 0;
    for (const std::string& linha : linhas) {
        if (e_opcao_de_profundidade(linha) || (!cara && e_partida_em_curso(linha)) ||
            (em(linha, 0) == 'p' && ++posicoes > posicoes_no_maximo)) {
            continue;
        }
        if (em(linha, 0) == 'g' && em(linha, 1) == 'o') {
            entrada += go_raso(linha);
        } else if (em(linha, 0) == 'p') {
            const std::string rala = com_poucos_homens(linha, cara ? homens_no_maximo : homens_em_geral);
            entrada += "setoption name Deep value ";
            entrada += profundidade(rala);
            entrada += '\n';
            entrada += rala;
        } else {
            entrada += linha;
        }
        entrada += '\n';
    }
    return entrada;
}

// Reads from the text as the standard input would.
class Entrada : public std::streambuf {
public:
    explicit Entrada(std::string& texto) { setg(texto.data(), texto.data(), texto.data() + texto.size()); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    fuzz::estado_novo();
    std::string texto = barata(fuzz::linhas(dados, tamanho), tamanho % 8 == 0);
    Entrada de(texto);
    Saida para;
    auto* const cin_antes = std::cin.rdbuf(&de);
    auto* const cout_antes = std::cout.rdbuf(&para);
    std::cin.clear();
    laco_de_comandos();
    std::cin.rdbuf(cin_antes);
    std::cout.rdbuf(cout_antes);
    para.confere_resto();
    fuzz::confere_opcoes();
    return 0;
}
