# shellcheck shell=bash
# Sourced by ./run, ./test and the scripts beside this file; the caller stands in the source tree.

say() { printf '%s\n' "$*"; }

die() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Used by the scripts that source this one.
# shellcheck disable=SC2034
packages_build=(clang lld cmake ninja-build ccache hidl-gen android-libutils-dev
    android-libcutils-dev android-liblog-dev android-libbase-dev libsqlite3-dev libcli11-dev
    nlohmann-json3-dev libgtest-dev libgmock-dev libbenchmark-dev dtv-scan-tables
    pkg-config libhowardhinnant-date-dev libsodium-dev libbitstream-dev libzvbi-dev python3
    python3-pytest
    libcpp-httplib-dev libfreetype-dev libpng-dev libturbojpeg0-dev fonts-dejavu-core)
# The browser of the tests of qeltvscreen.
# shellcheck disable=SC2034
packages_browser=(chromium-headless-shell)
# Needed by a build with -DQELTV_DECODER=ON.
# shellcheck disable=SC2034
packages_decoder=(libavcodec-dev libavformat-dev libswscale-dev)
# shellcheck disable=SC2034
packages_armhf=(g++-arm-linux-gnueabihf qemu-user googletest)
# shellcheck disable=SC2034
packages_checks=(g++ clang-format binutils blueprint-tools doxygen mscgen pkg-config abigail-tools
    shellcheck)

# sanitizer_package: the sanitizers' runtime has clang's version in its name.
sanitizer_package() {
    local version
    version=$(clang -dumpversion 2>/dev/null) || version=14
    say "libclang-rt-${version%%.*}-dev"
}

missing_packages() {
    local name
    for name in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null)" = installed ] ||
            printf '%s ' "$name"
    done
}

# need NAME...: installs the packages that are not there. Touches the network only when one is not.
need() {
    local missing sudo=() quiet=() log
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    command -v apt-get >/dev/null || die "missing packages, and no apt-get to install them: $missing"
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null || { ! sudo -n true 2>/dev/null && [ ! -t 0 ]; }; then
            die "missing packages, and no right to install them: $missing"
        fi
        sudo=(sudo)
    fi
    say "installing: $missing"
    [ -t 1 ] || quiet=(-q)
    log=$(mktemp)
    # The package lists are fetched only when the ones at hand do not do.
    # shellcheck disable=SC2086
    if ! logged "$log" apt_get install --no-install-recommends $missing &&
        ! { logged "$log" apt_get update &&
            logged "$log" apt_get install --no-install-recommends $missing; }; then
        # Empty where apt has shown its errors itself.
        grep '^E:' "$log" >&2 || true
        rm -f "$log"
        die "cannot install the missing packages: $(missing_packages "$@")"
    fi
    rm -f "$log"
}

# apt_get COMMAND...: with sudo and quiet as need() sets them.
apt_get() {
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get "${quiet[@]}" -y \
        -o DPkg::Lock::Timeout=300 "$@"
}

# logged LOG COMMAND...: the command's output goes to a terminal if there is one, otherwise to LOG.
logged() {
    local log=$1
    shift
    if [ -t 1 ]; then "$@"; else "$@" >"$log" 2>&1; fi
}

# configure PRESET [-DNAME=VALUE...]: quiet unless it fails.
configure() {
    local log
    mkdir -p build
    log=build/configure-$1.log
    cmake --preset "$@" >"$log" 2>&1 || {
        cat "$log" >&2
        die "cannot configure build/$1"
    }
}

# compile PRESET [TARGET...]: shows its progress on a terminal; elsewhere quiet unless it fails.
compile() {
    local preset=$1 log=build/build-$1.log
    shift
    logged "$log" cmake --build --preset "$preset" ${1:+--target "$@"} && return
    # The steps before the one that failed are of no use.
    [ -t 1 ] || sed -n '/^FAILED: \|^ninja: error\|^Error: /,$p' "$log" >&2
    return 1
}

# build PRESET [TARGET...]: as compile(), and ends the script if it fails.
build() {
    compile "$@" || die "cannot build build/$1"
}
