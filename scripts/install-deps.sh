#!/usr/bin/env bash
# Install the Debian packages that CITRANS is built, tested or measured with.
#
#   scripts/install-deps.sh [SET]...      (default: build)
#
# build     cmake, ninja and g++: enough for the program
# tools     build and the libraries of the companion programs
# python    tools and what the Python module is built, packed and tested with
# test      python, clang with its tools and sanitizers, GoogleTest, mandoc, packaging, Chromium and
#           what the batch examples run with
# coverage  test and gcovr
# portable  test, libc++, and emscripten (800 MB) with node
# bench     build, Google Benchmark, and what the program is compared with and counted by
# web       test, emscripten (800 MB installed), npm and Firefox: the page, and its tests
#
# Installs only what is missing, and says nothing and needs no network when nothing is. Works as
# root or through sudo. Away from Debian it names what is missing and ends with status 1.
set -euo pipefail

build_needs="cmake ninja-build g++"
tools_needs="libcli11-dev nlohmann-json3-dev libkainjow-mustache-dev gemmi-dev tao-pegtl-dev zlib1g-dev libnlopt-dev"
python_needs="python3-dev pybind11-dev python3-setuptools python3-wheel python3-pip python3-pytest"
test_needs="$build_needs $tools_needs $python_needs clang libclang-rt-dev clang-tidy clang-format libgtest-dev mandoc cppcheck"
test_needs="$test_needs file dpkg-dev lintian" # for the packages
test_needs="$test_needs chromium librsvg2-bin parallel snakemake" # for the report and the batch examples
test_needs="$test_needs g++-multilib googletest" # for 32-bit code
test_needs="$test_needs locales" # for one with a decimal comma
coverage_needs="$test_needs gcovr"
portable_needs="$test_needs libc++-dev libc++abi-dev emscripten nodejs"
web_needs="$test_needs emscripten nodejs npm firefox-esr"
bench_needs="$build_needs libbenchmark-dev gemmi-dev mawk valgrind"

wanted=""
for name in "${@:-build}"; do
  case "$name" in
    build) wanted="$wanted $build_needs" ;;
    tools) wanted="$wanted $build_needs $tools_needs" ;;
    python) wanted="$wanted $build_needs $tools_needs $python_needs" ;;
    test) wanted="$wanted $test_needs" ;;
    coverage) wanted="$wanted $coverage_needs" ;;
    portable) wanted="$wanted $portable_needs" ;;
    bench) wanted="$wanted $bench_needs" ;;
    web) wanted="$wanted $web_needs" ;;
    *)
      echo "install-deps.sh: no set named '$name' (see the head of this script)" >&2
      exit 2
      ;;
  esac
done

# A tool counts as there when it can be called, whoever installed it; a library when its package
# is installed or its files are in place.
is_there() {
  case "$1" in
    ninja-build) command -v ninja ;;
    dpkg-dev) command -v dpkg-shlibdeps ;;
    clang) command -v clang++ ;;
    libclang-rt-dev) compgen -G '/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.asan-*.a' ;;
    g++-multilib) test -e /usr/lib/gcc/x86_64-linux-gnu/12/32/libstdc++.a ;;
    locales) test -e /usr/share/i18n/locales/de_DE ;;
    googletest) test -e /usr/src/googletest/CMakeLists.txt ;;
    libc++-dev) compgen -G '/usr/lib/llvm-*/include/c++/v1/version' ;;
    libc++abi-dev) compgen -G '/usr/lib/llvm-*/lib/libc++abi.a' ;;
    emscripten) command -v em++ ;;
    nodejs) command -v node ;;
    libgtest-dev) test -e /usr/include/gtest/gtest.h -o -e /usr/local/include/gtest/gtest.h ;;
    libbenchmark-dev) test -e /usr/include/benchmark/benchmark.h ;;
    gemmi-dev) test -e /usr/include/gemmi/pdb.hpp ;;
    libcli11-dev) test -e /usr/include/CLI/CLI.hpp ;;
    nlohmann-json3-dev) test -e /usr/include/nlohmann/json.hpp ;;
    libkainjow-mustache-dev) test -e /usr/include/kainjow/mustache.hpp ;;
    librsvg2-bin) command -v rsvg-convert ;;
    tao-pegtl-dev) test -e /usr/include/tao/pegtl.hpp ;;
    zlib1g-dev) test -e /usr/include/zlib.h ;;
    libnlopt-dev) test -e /usr/include/nlopt.h ;;
    emscripten) command -v emcc ;;
    nodejs) command -v node ;;
    # Those of Debian's Python: another one may come first on PATH.
    python3-dev) compgen -G '/usr/include/python3*/Python.h' ;;
    pybind11-dev) test -e /usr/include/pybind11/pybind11.h ;;
    python3-setuptools | python3-wheel | python3-pip | python3-pytest)
      /usr/bin/python3 -c "import ${1#python3-}"
      ;;
    *) command -v "$1" ;;
  esac >/dev/null 2>&1
}

missing=()
for package in $wanted; do
  if ! is_there "$package" && [[ " ${missing[*]-} " != *" $package "* ]]; then
    missing+=("$package")
  fi
done
if [[ ${#missing[@]} -eq 0 ]]; then
  exit 0
fi

if ! command -v apt-get >/dev/null 2>&1; then
  echo "install-deps.sh: please install ${missing[*]} (no apt-get here)" >&2
  exit 1
fi
as_root=()
if [[ "$(id -u)" -ne 0 ]]; then
  if ! command -v sudo >/dev/null 2>&1; then
    echo "install-deps.sh: please install as root: apt-get install ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi

echo "Installing ${missing[*]} ..."
log="$(mktemp)"
trap 'rm -f "$log"' EXIT
apt() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q "$@" </dev/null >>"$log" 2>&1
}
if ! { apt update; apt install -y --no-install-recommends "${missing[@]}"; }; then
  cat "$log" >&2
  echo "install-deps.sh: could not install ${missing[*]}" >&2
  exit 1
fi
