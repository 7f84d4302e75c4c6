# Sourced by ./run, ./test and bench/compare: installs the Debian packages a task needs, only
# those that are missing, with at most one `apt-get update` per run.

# The packages of each part of the work.
ZEL_PACKAGES_BUILD=(cmake ninja-build g++ ccache pkgconf)
ZEL_PACKAGES_TESTS=(googletest)
ZEL_PACKAGES_LINUX_X86=(g++-multilib)
ZEL_PACKAGES_WINDOWS_X64=(g++-mingw-w64-x86-64-posix wine64)
ZEL_PACKAGES_WINDOWS_X86=(g++-mingw-w64-i686-posix)
ZEL_PACKAGES_CLANG=(clang libclang-rt-14-dev)
ZEL_PACKAGES_BENCH=(libbenchmark-dev libspdlog-dev libfmt-dev rapidjson-dev zlib1g-dev libabsl-dev
  libboost-dev libuv1-dev)
ZEL_PACKAGES_BENCH_PEERS=(python3 libmimalloc2.0 libjemalloc2)

zel_apt_updated=no

# zel_require_packages PACKAGE...: installs whichever of them is not installed yet.
zel_require_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local sudo=()
  [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  echo "installing: ${missing[*]}"
  if [ "$zel_apt_updated" = no ]; then
    "${sudo[@]}" apt-get update -qq || return 1
    zel_apt_updated=yes
  fi
  DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null || return 1
}

# zel_use_ccache: builds go through ccache when it is there.
zel_use_ccache() {
  command -v ccache >/dev/null || return 0
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
  export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
  export CCACHE_MAXSIZE=${CCACHE_MAXSIZE:-5G}
}
