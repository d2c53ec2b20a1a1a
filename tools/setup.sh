# Shared by run, test and .ci/run, which set `root`: what must be installed, and how a preset is built.
# Nothing here writes to standard output or reads standard input. ONDREL_NO_INSTALL=1 forbids installing.

any_of() {
    local command
    for command in "$@"; do
        command -v "$command" >/dev/null && return
    done
    return 1
}

has_header() {
    printf '#if !__has_include(<%s>)\n#error\n#endif\n' "$1" | c++ -E -x c++ -o /dev/null - 2>/dev/null
}

# Whether what the Debian package offers is there, wherever it came from.
has() {
    case $1 in
        ninja-build) any_of ninja ;;
        g++) any_of c++ ;;
        clang) any_of clang++ ;;
        xvfb) any_of Xvfb ;;
        man-db) any_of man mandoc groff ;;
        wamerican) [[ -e /usr/share/dict/american-english || -e /usr/share/dict/words ]] ;;
        dpkg-dev) any_of dpkg-shlibdeps ;;
        g++-aarch64-linux-gnu) any_of aarch64-linux-gnu-g++ ;;
        g++-mingw-w64-x86-64-posix) any_of x86_64-w64-mingw32-g++-posix ;;
        qemu-user) any_of qemu-aarch64 ;;
        wine64) [[ -x /usr/lib/wine/wine64 ]] || any_of wine64 ;;
        libuv1-dev) has_header uv.h ;;
        lld) any_of ld.lld ;;
        clang-tidy) any_of clang-tidy && any_of run-clang-tidy ;;
        libgtest-dev) has_header gtest/gtest.h ;;
        libuv1-dev) has_header uv.h ;;
        libbenchmark-dev) has_header benchmark/benchmark.h ;;
        libclang-rt-14-dev)
            echo 'int main() {}' | clang++ -fsanitize=address -x c++ -o /dev/null - 2>/dev/null ;;
        *) PATH=$PATH:/usr/games any_of "$1" ;;  # Debian keeps some chess programs out of root's path
    esac
}

# missing PACKAGE...: puts those that are not there into `absent`; false if there are none.
missing() {
    local package
    absent=()
    for package in "$@"; do
        has "$package" || absent+=("$package")
    done
    [[ ${#absent[@]} -gt 0 ]]
}

# apt_get ARGUMENT...: as root, or with a sudo that asks nothing; false where neither is to be had.
apt_get() {
    local as_root=(env)
    [[ -z ${ONDREL_NO_INSTALL:-} ]] && any_of apt-get || return
    if [[ $EUID -ne 0 ]]; then
        sudo -n true 2>/dev/null || return
        as_root=(sudo -n env)
    fi
    "${as_root[@]}" DEBIAN_FRONTEND=noninteractive apt-get -y -o DPkg::Lock::Timeout=120 -o Acquire::Retries=1 \
        -o Acquire::http::Timeout=15 "$@" </dev/null >/dev/null 2>&1
}

install_packages() {
    apt_get install --no-install-recommends "$@" ||
        { apt_get update && apt_get install --no-install-recommends "$@"; }
}

# need PACKAGE...: installs what is missing, or says in one line what to install and ends the script.
need() {
    missing "$@" || return 0
    install_packages "${absent[@]}" || true
    if missing "$@"; then
        echo "${0##*/}: please install (Debian package names): ${absent[*]}" >&2
        exit 1
    fi
}

# want PACKAGE...: installs what can be installed and lets the rest be.
want() {
    local package
    missing "$@" || return 0
    for package in "${absent[@]}"; do
        install_packages "$package" || true
    done
}

jobs=${ONDREL_JOBS:-$(nproc 2>/dev/null || echo 2)}

# configured PRESET: its build directory exists, is of this source tree and is not older than the presets.
configured() {
    [[ build/$1/build.ninja -nt CMakePresets.json ]] &&
        grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$(pwd -P)" "build/$1/CMakeCache.txt"
}

# "1" if release was configured without libuv, and libuv is there now: without it there is no ondrel-uci.
lacks_libuv() {
    if has libuv1-dev && ! grep -q '^ONDREL_LIBUV:FILEPATH=/' "$root/build/release/CMakeCache.txt" 2>/dev/null; then
        echo 1
    fi
}

configure() {
    # A cache that came along with a copied tree would build the tree it came from.
    if [[ -f build/$1/CMakeCache.txt ]] &&
        ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$(pwd -P)" "build/$1/CMakeCache.txt"; then
        rm -rf "build/$1"
    fi
    cmake --preset "$1" -DONDREL_LONG_TESTS="${long_tests:-OFF}"
}

# progress: passes on of what ninja says how far it is, a line every few seconds.
progress() {
    local line last=$SECONDS
    while IFS= read -r line; do
        if [[ $line =~ ^\[[0-9]+/[0-9]+\] && $((SECONDS - last)) -ge 5 ]]; then
            echo "   ${line:0:100}" >&2
            last=$SECONDS
        fi
    done
}

# build PRESET [ARGUMENT...]: tells on standard error how far it is if it takes more than some seconds, and shows the log
# if it fails. Waits for a build of the same preset that another process began. With `reconfigure` set it looks anew for
# what was not installed the last time.
build() (
    cd "$root"
    mkdir -p build
    if any_of flock; then
        exec 9>"build/$1.lock"
        flock 9
    fi
    set -o pipefail
    {
        { { [[ -z ${reconfigure:-} ]] && configured "$1"; } || configure "$1"; } &&
            cmake --build --preset "$1" -j "$jobs" "${@:2}"
    } </dev/null 2>&1 | tee "build/$1.log" | progress || { cat "build/$1.log" >&2; return 1; }
)

# run_target PRESET PROGRAM [ARGUMENT...]: runs a program built for the preset's system, under an emulator if it is not
# ours.
run_target() {
    case $1 in
        linux-aarch64*) qemu-aarch64 "${@:2}" ;;
        windows-x86_64*)
            mkdir -p build
            WINEPREFIX=${WINEPREFIX:-$root/build/wine} WINEDEBUG=${WINEDEBUG:--all} wine "$2.exe" "${@:3}" ;;
        *) "${@:2}" ;;
    esac
}
