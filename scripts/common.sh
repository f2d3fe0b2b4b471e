# shellcheck shell=bash
# Shared by quickstart.sh, test.sh and .ci/run, which read it after setting source_dir: what has to be installed, where
# things are built, and how a preset is configured and built.

build_root=${QUILL_BUILD_ROOT:-$(dirname "$source_dir")/quillutils70-build}
case $build_root in
/*) ;;
*) build_root=$PWD/$build_root ;;
esac

# Two clones in different places compile the same files: ccache is to see them as the same.
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$(dirname "$source_dir")}
export CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-1}
# Headers are known from the compiler's own list of them.
export CCACHE_DEPEND=${CCACHE_DEPEND:-1}

say() { printf '%s\n' "$*"; }

die() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# group | what shows that it is there | Debian package | what it is for
# The second column is a command, the full name of a file (with wildcards), or a header below the include folders.
package_table='
build  | g++                        | g++                        | compiles the code
build  | cmake                      | cmake                      | configures the build
build  | ninja                      | ninja-build                | runs the build
build  | ccache                     | ccache                     | makes repeated builds quick
build  | boost/version.hpp          | libboost-dev               | smart pointers of the library
tools  | nlohmann/json.hpp          | nlohmann-json3-dev         | JSON designs
tools  | fmt/format.h               | libfmt-dev                 | output of the program
tools  | CLI/CLI.hpp                | libcli11-dev               | command line of the program
sqlite | sqlite3.h                  | libsqlite3-dev             | designs kept in SQLite files
test   | /usr/src/googletest/CMakeLists.txt | googletest         | test framework, built from its source
bench  | benchmark/benchmark.h      | libbenchmark-dev           | benchmarks
counts | valgrind                   | valgrind                   | counts instructions
clang  | clang++                    | clang                      | second compiler
deliver | pkg-config                | pkgconf                    | tries the installed library
format | clang-format-14            | clang-format-14            | checks the formatting
tidy   | run-clang-tidy-14          | clang-tidy-14              | static analysis
m32    | /usr/lib/gcc/*/*/32/libstdc++.a | g++-multilib          | compiles for 32 bits
fuzz   | /usr/lib/llvm-14/lib/clang/*/lib/linux/libclang_rt.fuzzer-*.a | libclang-rt-14-dev | fuzzers and sanitizers of clang
mingw  | x86_64-w64-mingw32-g++-posix | g++-mingw-w64-x86-64-posix | compiles for Windows
mingw  | wine64                     | wine64                     | runs the Windows tests
mingw32 | i686-w64-mingw32-g++-posix | g++-mingw-w64-i686-posix   | compiles for 32-bit Windows
wine32 | mmdebstrap                | mmdebstrap                 | makes a 32-bit Debian to run wine in
wine32 | arch-test                 | arch-test                  | tells whether that can run here
abi    | abidw                      | abigail-tools              | describes the types of the libraries
abi    | python3                    | python3                    | prints that description
reference | doxygen                 | doxygen                    | writes the API reference
reference | python3                 | python3                    | prepares the headers for it
package | dpkg-shlibdeps            | dpkg-dev                   | finds what packages depend on
package | lintian                   | lintian                    | judges packages
package | debootstrap               | debootstrap                | makes a clean Debian to install them on
cppcheck | cppcheck                 | cppcheck                   | static analysis
'

trim() {
    local text=$1
    text=${text#"${text%%[![:space:]]*}"}
    printf '%s' "${text%"${text##*[![:space:]]}"}"
}

is_installed() {
    local probe=$1 folder
    case $probe in
    /*) compgen -G "$probe" >/dev/null ;;
    *.h | *.hpp)
        local IFS=:
        for folder in ${CPATH:-} ${CPLUS_INCLUDE_PATH:-} /usr/local/include /usr/include; do
            [ -e "$folder/$probe" ] && return 0
        done
        return 1
        ;;
    *) command -v "$probe" >/dev/null 2>&1 || [ -x "/usr/lib/wine/$probe" ] ;;
    esac
}

# require_packages GROUP...: installs what these groups lack and says what and why. Silent when nothing is missing.
require_packages() {
    local wanted=" $* " group probe package reason missing=() list=
    while IFS='|' read -r group probe package reason; do
        group=$(trim "$group") probe=$(trim "$probe") package=$(trim "$package") reason=$(trim "$reason")
        if [ -z "$group" ] || [[ $wanted != *" $group "* ]] || is_installed "$probe"; then
            continue
        fi
        missing+=("$package")
        list+=$(printf '\n    %-28s %s' "$package" "$reason")
    done <<<"$package_table"
    if [ ${#missing[@]} -gt 0 ]; then
        install_packages "$list" "${missing[@]}"
    fi
    local version
    version=$(cmake --version | sed -n '1s/[^0-9]*\([0-9]*\.[0-9]*\).*/\1/p')
    if [ "$(printf '%s\n3.25\n' "$version" | sort -V | head -n 1)" != 3.25 ]; then
        die "CMake 3.25 or newer is needed; $(command -v cmake) is $version."
    fi
}

# install_packages LIST PACKAGE...: LIST is what the reader is shown.
install_packages() {
    local list=$1 as_root=() log
    shift
    if ! command -v apt-get >/dev/null 2>&1; then
        die "These are missing, under the names that Debian gives them, and there is no apt-get to install them:$list"
    fi
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null 2>&1; then
            die "These packages are missing, and installing them needs root or sudo:$list
As root: apt-get install $*"
        fi
        as_root=(sudo)
        [ -t 0 ] || as_root=(sudo -n)
        if ! "${as_root[@]}" true; then
            die "These packages are missing, and sudo was refused:$list
As root: apt-get install $*"
        fi
    fi
    say "Installing what is missing:$list"
    log=$(mktemp)
    if ! "${as_root[@]}" apt-get update -q >"$log" 2>&1; then
        say "The package lists could not all be renewed; going on with those that are there."
    fi
    if ! "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
        -o DPkg::Lock::Timeout=300 "$@" >>"$log" 2>&1 </dev/null; then
        tail -n 30 "$log" >&2
        rm -f "$log"
        die "The packages could not be installed:$list"
    fi
    rm -f "$log"
}

# preset_groups PRESET: the groups of packages that building it needs.
preset_groups() {
    case $1 in
    dev | tsan) echo build tools sqlite test ;;
    release) echo build tools sqlite ;;
    bench) echo build tools sqlite bench ;;
    asan) echo build tools sqlite test clang fuzz ;;
    m32) echo build tools sqlite test m32 ;;
    mingw) echo build test mingw ;;
    mingw32) echo build test mingw32 ;;
    package) echo build tools sqlite package ;;
    *) return 1 ;;
    esac
}

# configure PRESET: leaves its build folder in build_dir. Quiet unless it fails.
configure() {
    local preset=$1 options=() log owner
    build_dir=$build_root/$preset
    mkdir -p "$build_dir" 2>/dev/null ||
        die "Cannot make $build_dir. Set QUILL_BUILD_ROOT to a folder that can be written."
    owner=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$build_dir/CMakeCache.txt" 2>/dev/null || true)
    if [ -n "$owner" ] && [ "$owner" != "$source_dir" ]; then
        say "$build_dir was made for $owner; configuring it anew for $source_dir."
        options=(--fresh)
    fi
    log=$build_dir/configure.log
    if ! (cd "$source_dir" && cmake --preset "$preset" -B "$build_dir" "${options[@]}") >"$log" 2>&1; then
        cat "$log" >&2
        die "Configuring preset $preset failed."
    fi
}

# build [TARGET...]: builds in build_dir. Shows only the progress line on a terminal, and only errors elsewhere.
build() {
    local targets=()
    [ $# -eq 0 ] || targets=(--target "$@")
    if [ -t 1 ]; then
        cmake --build "$build_dir" "${targets[@]}"
    else
        cmake --build "$build_dir" "${targets[@]}" -- --quiet
    fi || die "Building in $build_dir failed."
}
