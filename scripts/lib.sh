# What the scripts share; each sources this file and then stands in the project's root.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

clang_packages=(clang-19 libc++-19-dev libc++abi-19-dev)
library_packages=(cmake ninja-build nlohmann-json3-dev libargs-dev googletest python3)
build_packages=("${clang_packages[@]}" "${library_packages[@]}")
sanitizer_packages=(libclang-rt-19-dev)
fuzz_packages=("${sanitizer_packages[@]}" llvm-19)
test_packages=(python3-jsonschema python3-yaml fish git patch strace zsh)
check_packages=(clang-format-19 clang-tidy-19 mandoc shellcheck)
package_packages=(lintian dpkg-dev)
arm64_packages=(binutils-aarch64-linux-gnu qemu-user-static)
arm64_sysroot_packages=(libc6 libc6-dev linux-libc-dev libgcc-s1 libgcc-12-dev gcc-12-base
                        libc++-19-dev libc++abi-19-dev libunwind-19-dev
                        libc++1-19 libc++abi1-19 libunwind-19
                        nlohmann-json3-dev libargs-dev)

# What the packages are for, said where they cannot be installed.
declare -A purposes=(
  [clang-19]="the compiler; GCC 13 or later does, too"
  [libc++-19-dev]="clang's C++ library" [libc++abi-19-dev]="a part of it"
  [cmake]="3.25 or later, configures the build" [ninja-build]="runs the build"
  [nlohmann-json3-dev]="JSON for Modern C++ 3.11 or later, reads the reports"
  [libargs-dev]="the header args.hxx, reads the command line"
  [googletest]="the sources of GoogleTest, for the unit tests"
  [python3]="runs the end-to-end tests" [python3-jsonschema]="holds reports against their schemas"
  [python3-yaml]="reads the recipes for hosted services" [git]="is used in recipes"
  [patch]="applies what a preview prints"
  [strace]="makes system calls fail" [fish]="its completions are tried"
  [zsh]="its completions are tried" [libclang-rt-19-dev]="the sanitizers"
  [qemu-user-static]="runs programs for ARM" [binutils-aarch64-linux-gnu]="links them"
  [lintian]="looks at Debian packages" [dpkg-dev]="is needed by it"
)

say() { printf '==> %s\n' "$*"; }

die() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# Shows the latest of the lines read, in one line of a terminal; elsewhere one in twenty seconds.
show_latest() {
  local line width next=$((SECONDS + 20))
  [[ -t 1 && ${TERM:-dumb} != dumb ]] && width=$(tput cols 2>/dev/null || echo 80)
  while IFS= read -r line; do
    if [[ -n ${width:-} ]]; then
      printf '\r\e[K%.*s' "$((width - 1))" "$line"
    elif ((SECONDS >= next)); then
      printf '    %s\n' "$line"
      next=$((SECONDS + 20))
    fi
  done
  [[ -z ${width:-} ]] || printf '\r\e[K'
}

# quietly FAILURE COMMAND...: shows only how far the command is, in its own words. If it fails, shows
# the end of what it printed, and dies of FAILURE.
quietly() {
  local failure=$1 log
  shift
  log=$(mktemp)
  if ! "$@" 2>&1 | tee "$log" | show_latest; then
    tail -n 60 "$log" >&2
    rm -f "$log"
    die "$failure"
  fi
  rm -f "$log"
}

# as_root COMMAND...
as_root() {
  if ((EUID == 0)); then
    "$@"
  else
    command -v sudo >/dev/null || die "run this as root, because there is no sudo: $*"
    sudo "$@"
  fi
}

is_installed() {
  # shellcheck disable=SC2016  # The dollar sign is for dpkg-query.
  [[ $(dpkg-query -W -f '${Status}' "$1" 2>/dev/null) == "install ok installed" ]]
}

# On another system than Debian and its kin: says what to install, and what for.
name_what_to_install() {
  local package
  say "There is no apt-get here to install what is needed. Please install what these packages bring:"
  for package in "$@"; do
    printf '  %-20s %s\n' "$package" "${purposes[$package]:-}"
  done
  say "Then: cmake --preset release && cmake --build --preset release && ctest --preset release"
  say "or, with GCC, the preset gcc in its place"
} >&2

# Ends the script where the system's package sources lack one of the packages.
need_sources_of() {
  local package absent=() hint=
  for package in "$@"; do
    apt-cache show "$package" >/dev/null 2>&1 || absent+=("$package")
  done
  ((${#absent[@]})) || return 0
  if [[ " ${absent[*]} " == *-19* ]]; then
    hint=" Ubuntu 24.04 has clang 19 among its updates (noble-updates, with the component universe):"
    hint+=" enable them, or build and test with GCC 13 or later instead: ./scripts/test gcc"
  fi
  # shellcheck source=/dev/null
  die "the package sources of $(. /etc/os-release && echo "$PRETTY_NAME") have no ${absent[*]}.$hint"
}

# Installs those of the named Debian packages that are missing; needs no network when none is.
install_missing() {
  local missing=() package
  if ! command -v apt-get >/dev/null; then
    name_what_to_install "$@"
    exit 1
  fi
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  ((${#missing[@]})) || return 0

  say "Installing ${missing[*]}"
  quietly "could not read the package sources" as_root apt-get update
  need_sources_of "${missing[@]}"
  quietly "could not install ${missing[*]}" as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends "${missing[@]}"
}

# The newest g++ among the system's packages; ends the script where that is too old.
newest_gcc() {
  local newest
  newest=$(apt-cache search --names-only '^g[+][+]-[0-9]+$' | sed 's/ .*//' | sort -V | tail -n 1)
  if ((${newest##*-} + 0 < 13)); then
    die "GCC 13 or later is needed, and the newest of this system's packages is ${newest:-none}"
  fi
  echo "$newest"
}

# Ends the script where git does not read the checkout: it is none, or belongs to somebody else.
need_git() {
  command -v git >/dev/null || install_missing git
  git status --porcelain >/dev/null || die "git does not read this checkout, for the reason above"
}

# note_as_installed FILE.deb DATABASE: so that dpkg-query answers about it.
note_as_installed() {
  dpkg-deb --fsys-tarfile "$1" | tar -t | sed 's|^\.||; s|/$||; s|^$|/.|' \
    >"$2/info/$(dpkg-deb --field "$1" Package).list"
  {
    dpkg-deb --field "$1"
    echo "Status: install ok installed"
    echo
  } >>"$2/status"
}

# Unpacks the ARM packages to build against into build/arm64-sysroot. As files only, by an apt with
# lists of its own: the system's packages and its architectures stay as they are. What dpkg would know
# of them is written down there, too.
unpack_arm64_sysroot() {
  local sysroot=$PWD/build/arm64-sysroot apt=$PWD/build/arm64-apt package
  [[ -e $sysroot/unpacked && ! $sysroot/unpacked -ot scripts/lib.sh ]] && return
  say "Unpacking the ARM packages into build/arm64-sysroot"
  rm -rf "$sysroot" "$apt"
  mkdir -p "$sysroot" "$apt"/{state/lists/partial,cache/archives/partial,packages}
  : >"$apt/status"
  local options=(-o APT::Architecture=arm64 -o APT::Architectures=arm64
                 -o "Dir::State=$apt/state" -o "Dir::State::status=$apt/status"
                 -o "Dir::Cache=$apt/cache")
  if ! { apt-get "${options[@]}" update &&
         (cd "$apt/packages" && apt-get "${options[@]}" download "${arm64_sysroot_packages[@]}")
       } >"$apt/log" 2>&1; then
    tail -n 5 "$apt/log" >&2
    die "could not download the ARM packages"
  fi
  mkdir -p "$sysroot/var/lib/dpkg/info"
  printf '%s\n' amd64 arm64 >"$sysroot/var/lib/dpkg/arch"
  for package in "$apt"/packages/*.deb; do
    dpkg -x "$package" "$sysroot"
    note_as_installed "$package" "$sysroot/var/lib/dpkg"
  done
  rm -rf "$apt"
  touch "$sysroot/unpacked"
}

# build PRESET [CMAKE-ARGUMENT...] [-- BUILD-ARGUMENT...]: configures and builds.
build() {
  local preset=$1 arguments=()
  shift
  while (($#)) && [[ $1 != -- ]]; do
    arguments+=("$1")
    shift
  done
  say "Building the preset $preset in build/$preset"
  # Said each time, so that the scripts do not build each other's work again.
  quietly "the preset $preset could not be configured" \
    cmake --preset "$preset" -DQLN_WARNINGS_AS_ERRORS="${QLN_WARNINGS_AS_ERRORS:-OFF}" \
    "${arguments[@]}"
  quietly "the build of preset $preset failed" cmake --build --preset "$preset" "${@:2}"
}
