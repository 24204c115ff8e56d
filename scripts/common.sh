# Shared by scripts/test.sh and scripts/demo.sh: packages, and the Wine prefixes of a build.

# Debian packages the build and the tests need.
OSTREL_PACKAGES=(g++-mingw-w64-x86-64-posix mingw-w64-tools wine wine64 libwine-dev cmake
                 googletest libbenchmark-dev libstb-dev libcli11-dev g++ make clang lld-14
                 libclang-rt-14-dev llvm-14 golang-go
                 osslsigncode openssl)

ensure_packages() {
    local missing=()
    for package in "${OSTREL_PACKAGES[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    if [ "$(id -u)" -ne 0 ]; then
        echo "error: missing Debian packages (install them as root): ${missing[*]}" >&2
        exit 1
    fi
    echo "Installing ${missing[*]}"
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# Creates one of the build tree's Wine prefixes if it is missing (which takes a while, better
# not inside a test's time limit), and remembers it for stop_wine_servers. Wine takes only an
# absolute prefix path.
prepare_wine_prefix() {
    local build=$1 prefix=$2
    OSTREL_WINE_PREFIX=$prefix "$build/wine-run" cmd /c exit </dev/null >/dev/null 2>&1 || true
    OSTREL_WINE_PREFIXES+=("$(realpath "$build")/wine/$prefix")
}

# Ends every process of the prefixes prepared above, the simulator included, and waits for them.
stop_wine_servers() {
    for prefix in "${OSTREL_WINE_PREFIXES[@]}"; do
        WINEPREFIX="$prefix" wineserver -k >/dev/null 2>&1 || true
        WINEPREFIX="$prefix" wineserver -w >/dev/null 2>&1 || true
    done
}

# Fails, naming them, if processes of the prefixes prepared above are still running (every Wine
# process carries its prefix in its environment).
check_no_wine_processes() {
    local left=() environ pid
    for environ in /proc/[0-9]*/environ; do
        pid=${environ#/proc/}
        pid=${pid%/environ}
        for prefix in "${OSTREL_WINE_PREFIXES[@]}"; do
            if tr '\0' '\n' 2>/dev/null <"$environ" | grep -qxF "WINEPREFIX=$prefix"; then
                left+=("$pid $(tr '\0' ' ' 2>/dev/null </proc/"$pid"/cmdline)")
            fi
        done
    done
    if [ ${#left[@]} -gt 0 ]; then
        printf 'error: Wine processes left running:\n' >&2
        printf '  %s\n' "${left[@]}" >&2
        return 1
    fi
}

# Builds camsim and the given targets in a build folder, and has the simulator serve in one of its
# prefixes until the script ends.
serve_simulator() {
    local build=$1 prefix=$2
    shift 2
    cmake --preset mingw -B "$build" >/dev/null
    cmake --build "$build" -j2 --target camsim "$@" >/dev/null
    trap stop_wine_servers EXIT
    prepare_wine_prefix "$build" "$prefix"
    scripts/start_simulator.sh "$build/wine-run" "$build/bin" "$prefix" serve
}

OSTREL_WINE_PREFIXES=()
