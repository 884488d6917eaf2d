#!/usr/bin/env bash
# Installs everything the build and the tests need on a Debian bookworm machine (run as root).
# Quiet and quick when everything is already there.
set -euo pipefail

packages=(
  cmake ninja-build
  g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix
  binutils-mingw-w64-i686 binutils-mingw-w64-x86-64 mingw-w64-tools
  googletest
  wine wine32:i386 wine64 libwine:i386 libwine-dev
  xvfb xauth
  python3
)

missing() {
  local p
  for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || echo "$p"
  done
}

[ -z "$(missing)" ] && exit 0

if [ "$(id -u)" != 0 ]; then
  echo "setup: missing packages: $(missing | tr '\n' ' '); run this script as root" >&2
  exit 1
fi

export DEBIAN_FRONTEND=noninteractive
dpkg --print-foreign-architectures | grep -qx i386 || dpkg --add-architecture i386

# A failed index download (a mirror in mid-sync) still leaves usable lists: let the install decide.
install() {
  apt-get update -qq || true
  apt-get install -y -qq --no-install-recommends $(missing) >/dev/null
}

# The i386 security index can lag behind the amd64 one on some mirrors, which leaves
# wine32 uninstallable; then prefer the main suite's packages and try once more.
if ! install; then
  echo "setup: install failed; retrying with the security suite pinned low" >&2
  cat > /etc/apt/preferences.d/orbex-security-low <<'PIN'
Package: *
Pin: release l=Debian-Security
Pin-Priority: 100
PIN
  install
fi

if [ -n "$(missing)" ]; then
  echo "setup: still missing: $(missing | tr '\n' ' ')" >&2
  exit 1
fi
