#!/usr/bin/env bash
# The lab runner leaves nothing behind: after a command that fails, and
# after the runner itself is stopped by a signal mid-run, no process of the
# lab is left in any of its namespaces, and the machine's links, addresses,
# routes, named namespaces and resolver file are as they were.
# Usage: tst_netlabrunner.sh PATH-TO-run-in-netlab
set -uo pipefail

runner=$1
if [ "$(id -u)" -ne 0 ]; then
    [ "${CI:-}" = true ] && { echo "the lab needs root; CI must run it" >&2; exit 1; }
    echo "skipped: needs root, like the lab"
    exit 77
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passes=0
failures=0
check() {   # description, then a command that must succeed
    local what=$1
    shift
    if "$@"; then
        echo "PASS   : $what"
        passes=$((passes + 1))
    else
        echo "FAIL!  : $what"
        failures=$((failures + 1))
    fi
}

machine_state() {
    ip -o link show | sed 's/ qlen [0-9]*//'
    ip -o address show
    ip route show table all
    ls -A /run/netns 2>/dev/null
    sha256sum /etc/resolv.conf
}

# The command inside: leaves a DHCP client, a ping and a sleeper running,
# notes its namespaces, then fails or waits to be stopped.
cat > "$work/inside.sh" <<'INSIDE'
#!/bin/sh
out=$1; mode=$2
udhcpc -i eth0 -t 100 -T 1 -A 1 -p "$TMPDIR/udhcpc0.pid" >/dev/null 2>&1 &
ping -c 600 -i 0.2 127.0.0.1 >/dev/null 2>&1 &
sleep 120 &
for ns in net mnt pid; do stat -L -c %i "/proc/self/ns/$ns"; done > "$out.tmp"
mv "$out.tmp" "$out"
[ "$mode" = fail ] && exit 3
wait
INSIDE
chmod +x "$work/inside.sh"

# Pids (as the machine sees them) of processes in any of the given
# namespaces.
in_namespaces() {
    local p ns
    for p in /proc/[0-9]*; do
        for ns in net mnt pid; do
            if grep -qx "$(stat -L -c %i "$p/ns/$ns" 2>/dev/null)" "$1" 2>/dev/null; then
                echo "${p#/proc/} $(cat "$p/comm" 2>/dev/null)"
                break
            fi
        done
    done
}

before=$(machine_state)

"$runner" "$work/inside.sh" "$work/ns-fail" fail >/dev/null 2>&1
status=$?
check "the command's failure is the runner's exit status (3, got $status)" test "$status" -eq 3
check "the failing command noted its namespaces" test -s "$work/ns-fail"
left=$(in_namespaces "$work/ns-fail")
check "nothing is left in the lab's namespaces after a failure${left:+: $left}" test -z "$left"

"$runner" "$work/inside.sh" "$work/ns-term" wait >/dev/null 2>&1 &
runner_pid=$!
for _ in $(seq 100); do [ -s "$work/ns-term" ] && break; sleep 0.1; done
check "the waiting command noted its namespaces" test -s "$work/ns-term"
for _ in $(seq 30); do
    running=$(in_namespaces "$work/ns-term")
    [ "$(echo "$running" | grep -cE ' (udhcpc|ping|sleep|dnsmasq)$')" -ge 4 ] && break
    sleep 0.1
done
check "while it runs, its processes are seen in the lab's namespaces ($(echo $running))" \
    test "$(echo "$running" | grep -cE ' (udhcpc|ping|sleep|dnsmasq)$')" -ge 4
kill -TERM "$runner_pid"
wait "$runner_pid"
status=$?
check "SIGTERM ends the runner (143, got $status)" test "$status" -eq 143
left=$(in_namespaces "$work/ns-term")
check "nothing is left in the lab's namespaces after SIGTERM${left:+: $left}" test -z "$left"

# Where no lab can be made (here: an ordinary user), one line says why and
# CTest is told to skip; CI is told to fail instead.
# (A copy the user can reach, wherever the checkout lies.)
cp "$runner" "$work/run-as-user"
chmod 0755 "$work" "$work/run-as-user"
as_user() { (cd / && setpriv --reuid=65534 --regid=65534 --clear-groups "$@"); }
skip_text=$(as_user env -u CI "$work/run-as-user" true 2>&1)
status=$?
check "without root the runner skips (77, got $status) saying why: $skip_text" \
    test "$status" -eq 77 -a "$skip_text" = "run-in-netlab: skipped, the network lab cannot be built here: it needs root (CAP_SYS_ADMIN and CAP_NET_ADMIN)"
as_user env CI=true "$work/run-as-user" true >/dev/null 2>&1
status=$?
check "without root on CI the runner fails (1, got $status)" test "$status" -eq 1

after=$(machine_state)
check "the machine's links, addresses, routes, namespaces and resolver file are unchanged" \
    test "$before" = "$after"
[ "$before" = "$after" ] || diff <(echo "$before") <(echo "$after")

echo "$passes passed, $failures failed"
[ "$failures" -eq 0 ]
