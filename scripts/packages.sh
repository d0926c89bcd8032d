# SPDX-License-Identifier: MIT
# Sourced by the other scripts: which packages the project needs, and how to get them.

# Debian package names. The run set builds and runs Brevant; the test set comes on top of it.
RUN_PACKAGES="g++ cmake make pkg-config libfmt-dev libcli11-dev nlohmann-json3-dev libedit-dev qt6-base-dev qt6-serialport-dev"
TEST_PACKAGES="libgtest-dev libgmock-dev libbenchmark-dev clang-format clang-tidy sdcc-ucsim ser2net"
# The programs and the library that the benchmarks measure beside ours, on top of the run set.
BENCH_PACKAGES="libbenchmark-dev libcapstone-dev sdcc-ucsim srecord"
# Builds, checks and tries the Debian packages, on top of the run set.
PACKAGING_PACKAGES="dpkg-dev file lintian desktop-file-utils appstream man-db groff zsh fish mmdebstrap xvfb xdotool"

# install_packages PACKAGE...: installs what is missing, and says so.
install_packages() {
  if ! command -v dpkg-query >/dev/null 2>&1 || ! command -v apt-get >/dev/null 2>&1; then
    if [ -z "${BREVANT_PACKAGES_READY:-}" ]; then
      echo "This system has no apt. Install what corresponds to these Debian packages:" >&2
      echo "  $*" >&2
      echo "Then run this again with BREVANT_PACKAGES_READY=1 in the environment." >&2
      exit 1
    fi
    return
  fi
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local sudo=""
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
      echo "These packages are missing, and there is no sudo to install them with:" >&2
      echo "  ${missing[*]}" >&2
      echo "As root: apt-get install ${missing[*]}" >&2
      exit 1
    fi
    sudo="sudo"
  fi
  echo "Installing from the system's packages: ${missing[*]}" >&2
  $sudo apt-get update -qq >&2
  $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}
