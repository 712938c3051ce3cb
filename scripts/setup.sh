#!/usr/bin/env bash
# Installs the Debian packages Tallybot needs to build, run and test, skipping those present.
set -euo pipefail
packages=(build-essential cmake ninja-build pkg-config qt6-base-dev qt6-base-dev-tools libgl1-mesa-dev
          libgtest-dev libgmock-dev libbenchmark-dev clang libclang-rt-14-dev clang-format
          ngircd inspircd qstat xvfb xauth procps openssl perl)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    echo "Installing: ${missing[*]}"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
