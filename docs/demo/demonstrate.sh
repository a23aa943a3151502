#!/usr/bin/env bash
# Shows an installation on a loopback address of its own; see the README beside it.
# usage: demonstrate.sh BUILD_FOLDER
set -euo pipefail

here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
build=$(readlink -e "${1:?the build folder, such as build/dev}")
readonly here build
readonly reconnectLimitMs=5000
readonly patienceMs=30000 # for everything that has no limit of its own

folder=$(mktemp -d -t korve-demo.XXXXXX)
declare -A process=() # by name: a role, or the device of a recorder
shownLines=0          # of what the client has printed
part=0

if [[ -t 1 && -z ${NO_COLOR:-} ]]; then
    readonly bold=$'\e[1m' plain=$'\e[0m'
else
    readonly bold='' plain=''
fi

# The title of the next part, and lines that say more.
headline() {
    printf '\n%s%d. %s%s\n' "$bold" $((++part)) "$1" "$plain"
    if (($# > 1)); then
        printf '   %s\n' "${@:2}"
    fi
    echo
}

die() {
    printf '\nkorve demo: %s\n' "$*" >&2
    exit 1
}

# stop NAME [SIGNAL]
stop() {
    local id=${process[$1]}
    unset "process[$1]"
    kill -"${2:-TERM}" "$id" 2>/dev/null || true
    wait "$id" 2>/dev/null || true # it is gone then, and the shell has no word for it
}

# The client first: it would tell of the loss of the others.
stop_everything() {
    local name
    for name in client manager west east cco lease; do
        [[ -z ${process[$name]:-} ]] || stop "$name"
    done
    rm -rf "$folder"
}

now_ms() { echo $((${EPOCHREALTIME/[.,]/} / 1000)); }

# wait_until NAME SENTENCE COMMAND...: until the command succeeds; with the sentence it dies when it does not for long,
# or when the process has ended.
wait_until() {
    local name=$1 sentence=$2
    local -i end=$(($(now_ms) + patienceMs))
    until "${@:3}"; do
        kill -0 "${process[$name]}" 2>/dev/null || die "$sentence: it has ended. $(<"$folder/$name.errors")"
        (($(now_ms) < end)) || die "$sentence within $((patienceMs / 1000)) s. $(<"$folder/$name.errors")"
        sleep 0.02
    done
}

# run NAME PROGRAM [ARGUMENT...]: in the background; it does not outlive us, whatever kills us.
run() {
    setpriv --pdeathsig KILL -- "${@:2}" >"$folder/$1.output" 2>"$folder/$1.errors" &
    process[$1]=$!
}

# start NAME ROLE: a service, until it answers. A recorder's name is that of its device.
start() {
    local name=$1 role=$2
    printf '[recorder]\ndevice=%s\n' "$name" >"$folder/$name.ini"
    run "$name" "$build/installation/program/korve-installation" \
        --role "$role" --state "$folder/$name" --config "$folder/$name.ini"
    wait_until "$name" "the $role $name did not become ready" grep -q '^ready' "$folder/$name.output"
    local address
    read -r _ _ address <"$folder/$name.output"
    printf '%-8s %-22s process %d\n' "$name" "$address" "${process[$name]}"
}

import() { "$build/installation/program/korve-installation" import "$@"; }

# client_has COUNT PATTERN: whether the client has printed so many such lines.
client_has() { (($(grep -cE "$2" "$folder/client.output") >= $1)); }

# Shows what the client has printed since it was last shown.
show_client() {
    tail -n "+$((shownLines + 1))" "$folder/client.output"
    shownLines=$(wc -l <"$folder/client.output")
}

show_record() {
    headline "A record is a value: as XML, and read back (docs/examples/recordforms.cpp)"
    "$build/docs/examples/recordforms" | fold -w 118
}

show_services() {
    headline "An installation on $KORVE_ADDRESS" \
        "A central object service, two recorders and their manager, each a process of its own."
    start cco cco
    start east recorder
    start west recorder
    start manager manager
}

show_import() {
    headline "The recorders take in recordings" \
        "East: the sounds of the Debian package alsa-utils. West: one second of 20 MHz with two signals, made for this."
    import east "${sounds[@]}"
    cd "$folder"
    "$build/installation/samplesignal/korve-samplesignal" wideband
    import west wideband.sigmf-meta
}

show_client_listing() {
    headline "A client lists devices and records, and stays (korvectl records --follow)" \
        "It finds the manager through the central object service, and mirrors a part of its value tree."
    run client "$build/apps/korvectl/korvectl" records --follow --timeout 20
    wait_until client "the client did not list $listed" client_has 1 "^$listed\$"
    show_client
}

show_first_program() {
    headline "So does the first program of the README (docs/examples/listrecords.cpp)"
    KORVE_TRACE=0 timeout $((patienceMs / 1000)) "$build/docs/examples/listrecords" || die "it has failed"
}

show_loss_and_return() {
    headline "The manager is killed (SIGKILL), and started again" \
        "The client, which runs on, tells of the loss, reconnects by itself, and lists again."
    stop manager KILL
    wait_until client "the client did not tell of the loss" client_has 1 ' is lost'
    show_client
    start manager manager
    local -i readyMs tookMs
    readyMs=$(now_ms)
    wait_until client "the client did not list again" client_has 2 "^$listed\$"
    tookMs=$(($(now_ms) - readyMs))
    show_client
    printf '\nThe client had listed again %d ms after the manager was ready (limit: %d ms).\n' $tookMs $reconnectLimitMs
    ((tookMs <= reconnectLimitMs)) || die "the client took $tookMs ms to reconnect; $reconnectLimitMs ms is the limit"
}

trap stop_everything EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM
shopt -s nullglob
readonly sounds=(/usr/share/sounds/alsa/*.wav)
((${#sounds[@]})) || die "there is no sound in /usr/share/sounds/alsa; the package alsa-utils brings them: ./korve setup"
readonly listed="2 devices, $((${#sounds[@]} + 1)) records"

coproc lease { exec setpriv --pdeathsig KILL -- python3 -B "$here/lease.py"; }
# shellcheck disable=SC2154 # coproc sets it
process[lease]=$lease_PID
read -r KORVE_ADDRESS <&"${lease[0]}" || die "there is no free loopback address"
export KORVE_ADDRESS KORVE_CCO=$KORVE_ADDRESS:8003

show_record
show_services
show_import
show_client_listing
show_first_program
show_loss_and_return
stop_everything
headline "That was all, and all of it is stopped"
