#!/usr/bin/env bash
# Installs the Debian 12 packages the build, the tests and the benchmarks need.
# Idempotent and non-interactive: installs only what is missing.
set -euo pipefail

packages=(
    build-essential cmake pkg-config
    clang libclang-rt-14-dev          # libFuzzer and the sanitizer runtimes
    libgtkmm-3.0-dev libsigc++-2.0-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    xvfb xauth                        # GUI tests and `make run` without a display
    libxtst-dev                       # the end-to-end suite's input, through the X server
    fonts-dejavu-core                 # legible text in screenshots and help documents
    imagemagick                       # screenshots of the running window
    zlib1g-dev                        # gzip-compressed captures
    libfftw3-dev                      # the measurements' spectra
    libpcap-dev                       # live capture from a network interface
    tcpreplay iproute2                # the live-capture tests send frames over a veth pair
    libpugixml-dev                    # substation configuration (SCL) files
    dpkg-dev desktop-file-utils       # `make package`: library dependencies, the desktop entry's check
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "Installing: ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then
    sudo="sudo"
fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
