# The first parts of the demonstration: services, records, a client that stays, and a loss survived.
# shellcheck shell=bash
# shellcheck disable=SC2154 # demonstrate.sh and stage.sh set what is not set here

readonly reconnectLimitMs=5000
shopt -s nullglob
readonly sounds=(/usr/share/sounds/alsa/*.wav)
((${#sounds[@]})) || die "there is no sound in /usr/share/sounds/alsa; the package alsa-utils brings them: ./korve setup"
readonly listed="2 devices, $((${#sounds[@]} + 1)) records"
shownLines=0 # of what the client has printed

# import DEVICE FILE...: prints a line for each, and keeps these lines for record_of.
import() {
    "$build/installation/program/korve-installation" import "$@" | sed 's|^.*/||' | tee "$folder/$1.records"
}

# record_of DEVICE FILE: the id of the record that came of that file.
record_of() {
    local id
    id=$(sed -n "s/^$2: //p" "$folder/$1.records")
    [[ -n $id ]] || die "$1 has not taken in $2"
    echo "$id"
}

# client_has COUNT PATTERN: whether the client has printed so many such lines.
client_has() { (($(grep -cE "$2" "$folder/client.output" || true) >= $1)); }

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
    "$build/installation/samplesignal/korve-samplesignal" "$folder/wideband"
    import west "$folder/wideband.sigmf-meta"
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
    stop client
}
