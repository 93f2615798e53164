# Sourced by ./test and ./demo: finds out what is missing on this machine and installs it with the package manager.

say() { printf '\n== %s\n' "$*"; }

cores() { nproc 2>/dev/null || echo 2; }

have_command() { command -v "$1" >/dev/null 2>&1; }
have_library() { have_command pkg-config && pkg-config --exists "$1"; }

# The run-time libraries of clang's sanitizers come in a package of their own.
have_sanitizers() {
  have_command clang++ || return 1
  local builtins
  builtins=$(clang++ --rtlib=compiler-rt -print-libgcc-file-name 2>/dev/null) || return 1
  compgen -G "$(dirname "$builtins")/libclang_rt.asan*" >/dev/null
}

have() {
  case $1 in
    g++) have_command g++ ;;
    clang) have_command clang++ ;;
    ninja-build) have_command ninja ;;
    libclang-rt-dev) have_sanitizers ;;
    libgtest-dev) have_library gtest ;;
    libgmock-dev) have_library gmock ;;
    libpng-dev) have_library libpng ;;
    libcairo2-dev) have_library cairo-svg && have_library cairo-pdf ;;
    libbenchmark-dev) have_library benchmark || compgen -G '/usr/include/benchmark/benchmark.h' >/dev/null ;;
    *) have_command "$1" ;;
  esac
}

# need PACKAGE...: returns when each of the Debian packages, or what it stands for, is there; exits 2 otherwise.
need() {
  local missing=() package
  for package in "$@"; do
    have "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0

  local install="apt-get install -y --no-install-recommends ${missing[*]}"
  local root=(env)
  if [ "$(id -u)" -ne 0 ]; then
    root=(sudo)
    if ! have_command sudo || { [ ! -t 0 ] && ! sudo -n true 2>/dev/null; }; then
      root=()
    fi
  fi
  if [ ${#root[@]} -eq 0 ] || ! have_command apt-get; then
    echo "Missing: ${missing[*]}. With the rights to install, type (or the like for your system):" >&2
    echo "  sudo apt-get update && sudo $install" >&2
    exit 2
  fi

  say "Installing ${missing[*]}"
  if ! { "${root[@]}" apt-get update -q && "${root[@]}" env DEBIAN_FRONTEND=noninteractive $install; } </dev/null; then
    echo "Could not install them. Try: sudo apt-get update && sudo $install" >&2
    exit 2
  fi
}

# want PACKAGE WHAT: the same for what can be done without; WHAT tells what is left out then.
want() {
  (need "$1") || say "$1 is not there, and cannot be installed: $2"
}
