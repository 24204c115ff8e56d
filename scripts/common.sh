# Shared by scripts/test.sh and scripts/demo.sh: packages, build, Wine servers.

# Debian packages the build and the tests need.
OSTREL_PACKAGES=(g++-mingw-w64-x86-64-posix mingw-w64-tools wine wine64 libwine-dev cmake
                 googletest libbenchmark-dev g++ make)

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

# Keeps the Wine server of one of the build tree's prefixes up until stop_wine_servers, so each
# program started under Wine does not pay for starting it again.
start_wine_server() {
    local build=$1 prefix=$2
    OSTREL_WINE_PREFIX=$prefix "$build/wine-run" cmd /c exit >/dev/null 2>&1 || true
    WINEPREFIX="$build/wine/$prefix" wineserver -p </dev/null >/dev/null 2>&1 &
    OSTREL_WINE_SERVERS+=("$build/wine/$prefix")
}

# Ends every process of the prefixes started above, the simulator included.
stop_wine_servers() {
    for prefix in "${OSTREL_WINE_SERVERS[@]}"; do
        WINEPREFIX="$prefix" wineserver -k >/dev/null 2>&1 || true
    done
}

OSTREL_WINE_SERVERS=()
