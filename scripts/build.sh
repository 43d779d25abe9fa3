# Sourced by the two top-level scripts: installs what is missing and gives the build steps.
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
win="$root/build/windows"
native="$root/build/native"
source "$root/scripts/wine-env.sh"
"$root/scripts/install-deps.sh"

# kel_build <dir> <target> [cmake args...]: configures one tree and builds a target of it
# ("all": the libraries, tests, benchmarks and tools).
kel_build() {
    local dir="$1" target="$2"; shift 2
    mkdir -p "$dir"
    cmake -S "$root" -B "$dir" "$@" >"$dir.configure.log" 2>&1 || { cat "$dir.configure.log"; return 1; }
    cmake --build "$dir" --target "$target" --parallel "$(nproc)"
}

kel_build_windows() {
    kel_build "$win" "$1" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake"
}
