# Shared by the scripts beside it: where the checkout is, and installing what is missing.
# Sourced, not run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=$(getconf _NPROCESSORS_ONLN)

say() { printf '%s\n' "$*" >&2; }
die() { say "$*"; exit 1; }

# What building and running the library and the host takes, and what the tests take beyond it.
# One line each: package, and how to see that it is there already (a command, or a file).
run_needs() {
  cat <<'LIST'
g++ g++
cmake cmake
ninja-build ninja
zlib1g-dev zlib.h
liburiparser-dev uriparser/Uri.h
libutf8proc-dev utf8proc.h
libcli11-dev CLI/CLI.hpp
nlohmann-json3-dev nlohmann/json.hpp
libfmt-dev fmt/format.h
libpng-dev png.h
libsqlite3-dev sqlite3.h
libturbojpeg0-dev turbojpeg.h
libdeflate-dev libdeflate.h
libstb-dev stb/stb_image_resize.h
LIST
}
test_needs() {
  run_needs
  cat <<'LIST'
clang clang++
lld ld.lld
clang-format clang-format
libgtest-dev gtest/gtest.h
libjpeg-dev jpeglib.h
libgmock-dev gmock/gmock.h
libjansson-dev jansson.h
unicode-data /usr/share/unicode/CaseFolding.txt
locales /usr/share/i18n/locales/tr_TR
libc-bin localedef
bzip2 bzip2
sqlite3 sqlite3
libxml2-utils xmllint
zsh zsh
fish fish
man-db man
groff-base groff
python3 python3
nodejs node
python3-pip /usr/lib/python3/dist-packages/pip
python3-setuptools /usr/lib/python3/dist-packages/setuptools
python3-wheel /usr/lib/python3/dist-packages/wheel
mypy mypy
npm npm
binutils nm
abigail-tools abidiff
doxygen doxygen
pkg-config pkg-config
LIST
}

# The programs that the benchmarks measure beside ours.
bench_needs() {
  run_needs
  cat <<'LIST'
libjansson-dev jansson.h
libpugixml-dev pugixml.hpp
librapidxml-dev rapidxml/rapidxml.hpp
libexpat1-dev expat.h
libxml2-dev libxml2/libxml/parser.h
libplist-dev plist/plist.h
pkg-config pkg-config
libicu-dev unicode/stsearch.h
libssl-dev openssl/evp.h
python3 python3
jq jq
LIST
}

# Clang's sanitizers stand in a package of their own, named after its version. Asked once Clang is there.
sanitizer_needs() {
  local version
  version=$(clang++ --version | sed -n 's/.*clang version \([0-9]*\).*/\1/p')
  echo "libclang-rt-$version-dev sanitizer"
}

# A sign is a header file, another file by its whole path, a command, or "sanitizer".
has() {
  case $1 in
    /*) [ -e "$1" ] ;;
    sanitizer) echo 'int main() {}' | clang++ -x c++ - -fsanitize=address,undefined -o /dev/null 2>/dev/null ;;
    *.h|*.hpp) [ -e "/usr/include/$1" ] || [ -e "/usr/local/include/$1" ] || [ -e "/opt/homebrew/include/$1" ] ;;
    *) command -v "$1" >/dev/null 2>&1 ;;
  esac
}

missing_packages() {
  local package sign
  while read -r package sign; do
    has "$sign" || printf '%s ' "$package"
  done
}

# Installs the packages that are missing of the list on standard input; says what to do where it cannot.
install_missing() {
  local packages as_root=()
  packages=$(missing_packages)
  [ -n "$packages" ] || return 0
  command -v apt-get >/dev/null 2>&1 ||
    die "Missing: ${packages% }. This script installs them on Debian and its relatives only; install them (these are Debian's names) and run it again."
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null 2>&1 ||
      die "Missing: ${packages% }. Run this script as root, or run: apt-get install ${packages% }"
    as_root=(sudo)
  fi
  say "Installing: ${packages% }"
  # Word splitting is wanted: one argument a package.
  # shellcheck disable=SC2086
  apt_get install $packages || { apt_get update && apt_get install $packages; } ||
    die "Could not install: ${packages% }. Install them by hand and run this script again."
}
apt_get() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -qq -y -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=120 --no-install-recommends "$@" >&2
}

# Building a preset in build/PRESET; the build's own output is shown only when it fails.
logged() {
  local preset=$1 log="$root/build/$1.log"
  shift
  mkdir -p "$root/build"
  (cd "$root" && "$@") >"$log" 2>&1 || {
    tail -n 60 "$log" >&2
    die "The build failed; all of its output is in build/$preset.log"
  }
}
configure_preset() { logged "$1" cmake --preset "$@"; }
# As many compilers as processors: each wants the cache for itself, and one more, as Ninja would have it, slows all.
build_targets() { logged "$1" cmake --build --preset "$1" --parallel "$jobs" --target "${@:2}"; }
build() {
  configure_preset "$@"
  logged "$1" cmake --build --preset "$1" --parallel "$jobs"
}
