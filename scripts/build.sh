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

# kel_fuzz_run <seconds> [<runs> [<target>...]]: builds the libFuzzer targets (native clang,
# build/fuzz) and runs each (or the named ones) for <seconds> or until <runs> executions, on a
# working corpus grown from its seeds in fuzz/corpus; prints executions and coverage per target.
# Fails when a target finds a crash, a leak or a timeout.
kel_fuzz_run() {
    local seconds="$1" runs_limit="${2:--1}" dir="$root/build/fuzz" status=0 name max_len
    shift; shift || true
    local only=" $* "
    kel_build "$dir" kel_fuzzers -DKEL_FUZZ=ON -DCMAKE_C_COMPILER=clang \
        -DCMAKE_CXX_COMPILER=clang++ || return 1
    mkdir -p "$dir/logs" "$dir/artifacts"
    printf '%-20s %12s %7s %7s  %s\n' target executions cov ft result
    while read -r name max_len; do
        [ "$only" = "  " ] || [[ "$only" == *" $name "* ]] || continue
        local work="$dir/corpus/$name" log="$dir/logs/$name.log" seeds=() result=ok
        mkdir -p "$work"
        [ -d "$root/fuzz/corpus/$name" ] && seeds=("$root/fuzz/corpus/$name")
        "$dir/bin/$name" -max_total_time="$seconds" -runs="$runs_limit" ${max_len:+-max_len=$max_len} \
            -timeout=10 -rss_limit_mb=2048 \
            -print_final_stats=1 -artifact_prefix="$dir/artifacts/$name-" "$work" "${seeds[@]}" \
            >"$log" 2>&1 || { result="FAILED, see $log"; status=1; }
        local runs coverage
        runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
        coverage=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -n 1 | awk '{print $2, $4}')
        printf '%-20s %12s %7s %7s  %s\n' "$name" "${runs:--}" ${coverage:-- -} "$result"
        [ "$result" = ok ] || grep -A 30 -m 1 '^==[0-9]*==\|check failed' "$log" || true
    done <"$dir/fuzz/targets.txt"
    return $status
}

kel_build_windows() {
    kel_build "$win" "$1" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake"
}

# Installs the Windows build into $win/sdk, builds tests/consumer against that prefix alone
# and runs it under Wine (the prefix's wineserver must be running).
kel_consumer_check() {
    local sdk="$win/sdk" consumer="$win/consumer"
    rm -rf "$sdk" "$consumer"
    cmake --install "$win" --prefix "$sdk" >"$win/install.log" || { cat "$win/install.log"; return 1; }
    cmake -S "$root/tests/consumer" -B "$consumer" -DCMAKE_PREFIX_PATH="$sdk" \
        -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" >"$consumer.configure.log" 2>&1 ||
        { cat "$consumer.configure.log"; return 1; }
    cmake --build "$consumer" || return 1
    # The same program built without CMake: the installed include/ and lib/ and nothing else.
    local libs=()
    for lib in "$sdk"/lib/*.dll.a; do libs+=("-l:$(basename "$lib")"); done
    x86_64-w64-mingw32-g++-posix -std=c++17 -municode -DUNICODE -D_UNICODE -I"$sdk/include" \
        "$root/tests/consumer/consumer.cpp" -L"$sdk/lib" "${libs[@]}" -o "$consumer/plain.exe" ||
        return 1
    # The programs run beside the SDK's DLLs, as an application ships them.
    cp "$consumer/consumer.exe" "$consumer/plain.exe" "$sdk/bin/" &&
        wine "$sdk/bin/consumer.exe" && wine "$sdk/bin/plain.exe"
}
