#!/usr/bin/env bash
# Builds Tallybot and starts it; extra arguments go to the program (for example --headless).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DTALLYBOT_TESTS=OFF >/dev/null
cmake --build build/release
exec build/release/bin/tallybot "$@"
