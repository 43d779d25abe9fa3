# Sourced by the scripts: configures and builds one tree. kel_build <dir> [cmake args...]
kel_build() {
    local dir="$1"; shift
    cmake -S "$root" -B "$dir" "$@" >"$dir.configure.log" 2>&1 || { cat "$dir.configure.log"; return 1; }
    cmake --build "$dir" --parallel "$(nproc)"
}
