#!/usr/bin/env bash
# Checks the systemd units with `systemd-analyze verify` (any message fails), their ExecStart
# pointing at the built program. Exit 77 (skipped) where systemd-analyze is missing.
#   packaging/verify-units.sh BUILD_DIR
set -euo pipefail
build=$(cd "${1:?usage: verify-units.sh BUILD_DIR}" && pwd)
cd "$(dirname "$0")"
command -v systemd-analyze >/dev/null || { echo "verify-units: no systemd-analyze" >&2; exit 77; }
[ -x "$build/bin/tallybot" ] || { echo "verify-units: no $build/bin/tallybot" >&2; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/system" "$work/user" "$work/runtime"
chmod 700 "$work/runtime"
for unit in tallybot.service tallybot@.service user/tallybot@.service; do
    kind=system
    [[ $unit == user/* ]] && kind=user
    sed "s|/usr/bin/tallybot|$build/bin/tallybot|" "$unit" >"$work/$kind/$(basename "$unit")"
done
status=0
check() { # KIND UNIT...
    local kind=$1 out
    shift
    if [ "$kind" = user ]; then
        out=$(cd "$work" && XDG_RUNTIME_DIR="$work/runtime" systemd-analyze --user verify "$@" 2>&1) || status=1
    else
        out=$(cd "$work" && systemd-analyze verify "$@" 2>&1) || status=1
    fi
    # A manager that cannot start here (no user session) is not the unit's fault.
    if grep -q "Failed to initialize manager" <<<"$out"; then
        echo "verify-units: $kind manager unavailable, skipped" >&2
        return
    fi
    [ -z "$out" ] || { printf '%s\n' "$out" >&2; status=1; }
}
check system "$work/system/tallybot.service" "$work/system/tallybot@league-ctf.service"
check user "$work/user/tallybot@league-ctf.service"
[ "$status" -eq 0 ] && echo "verify-units: OK"
exit "$status"
