# What the scripts share; each sources this file and then stands in the project's root.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build_packages=(clang-19 libc++-19-dev libc++abi-19-dev cmake ninja-build
                nlohmann-json3-dev libargs-dev googletest python3)
fuzz_packages=(libclang-rt-19-dev llvm-19)
test_packages=(libclang-rt-19-dev python3-jsonschema fish jq patch strace zsh)
check_packages=(clang-format-19 clang-tidy-19 mandoc shellcheck)
package_packages=(lintian dpkg-dev git)
arm64_packages=(binutils-aarch64-linux-gnu qemu-user)
arm64_sysroot_packages=(libc6 libc6-dev linux-libc-dev libgcc-s1 libgcc-12-dev
                        libc++-19-dev libc++abi-19-dev libunwind-19-dev
                        nlohmann-json3-dev libargs-dev googletest)

say() { printf '==> %s\n' "$*"; }

die() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# Installs those of the named Debian packages that are missing; needs no network when none is.
install_missing() {
  command -v dpkg-query >/dev/null || die "this is no Debian system; please install: $*"
  local missing=() package
  for package in "$@"; do
    # shellcheck disable=SC2016  # The dollar sign is for dpkg-query.
    [[ $(dpkg-query -W -f '${Status}' "$package" 2>/dev/null) == "install ok installed" ]] ||
      missing+=("$package")
  done
  ((${#missing[@]})) || return 0

  say "Installing ${missing[*]}"
  local as_root=()
  if ((EUID != 0)); then
    command -v sudo >/dev/null ||
      die "run this as root, or first: apt-get install ${missing[*]}"
    as_root=(sudo)
  fi
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update &&
         "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
           apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 5 "$log" >&2
    rm -f "$log"
    die "could not install ${missing[*]}"
  fi
  rm -f "$log"
}

# Unpacks the ARM packages to build against into build/arm64-sysroot. As files only, by an apt with
# lists of its own: the system's packages and its architectures stay as they are.
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
  for package in "$apt"/packages/*.deb; do
    dpkg -x "$package" "$sysroot"
  done
  rm -rf "$apt"
  touch "$sysroot/unpacked"
}

# build PRESET [CMAKE-ARGUMENT...]: configures and builds quietly; says what failed.
build() {
  local preset=$1 log
  shift
  say "Building the preset $preset in build/$preset"
  log=$(mktemp)
  if ! { cmake --preset "$preset" "$@" && cmake --build --preset "$preset"; } >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    rm -f "$log"
    die "the build of preset $preset failed"
  fi
  rm -f "$log"
}
