# The second half of the demonstration: what goes wrong as docs/demo/trouble.faults says, and what is told of it.
# shellcheck shell=bash
# shellcheck disable=SC2154 # demonstrate.sh, stage.sh and commands.sh set what is not set here

# Not doctor: it tells at once that a disk is full here.
both_recorders_answer() {
    "$build/apps/korvectl/korvectl" records >"$folder/listed" 2>&1 &&
        grep -q '^east ' "$folder/listed" && grep -q '^west ' "$folder/listed"
}

await_services() { wait_until manager "the services did not answer" both_recorders_answer; }

show_script() {
    headline "From here on things go wrong on purpose" \
        "Recorders and manager start again with a script of faults (docs/demo/trouble.faults, see docs/faults.md)."
    grep -v '^#' "$here/trouble.faults"
    echo
    stop manager
    stop east
    stop west
    faults=(--faults "$here/trouble.faults")
    start east recorder
    start west recorder
    start manager manager
    await_services
}

show_delay() {
    headline "The manager takes its time"
    ask 2 record show east "$voice" --timeout 1
    must_say "Id: 210 : " "temporarily not reachable"
    ask 0 errors 210 --flow Admin
    must_say "Id: 210 : "
}

show_refusals() {
    headline "A recorder refuses, and nobody receives"
    ask 3 record deletable east "$voice" on
    must_say "Id: 10033 : The mass storage is classified as defect."
    ask 3 replay start east "$voice" --to "$KORVE_ADDRESS:9"
    must_say "Id: 902 : Connection could not be established"
    ask 0 record show east "$voice"
    must_say "deletable    no" "status       IDLE"
}

show_full_disk() {
    headline "A disk is full"
    ask 3 record copy west "$wideband" --name "a second one"
    must_say "Id: 10003 : "
    ask 0 records west
    [[ $(grep -c '^west ' <<<"$answer") == 1 ]] || die "there is a second record all the same"
    [[ $(find "$folder/west" -size +1M) == "$(data_of west "$wideband")" ]] || die "a part of the copy is left"
}

# The full disk is not among them: it strikes no call.
show_strikes() {
    local strikes
    strikes=$(sed -n "s|^.*Fault strikes: $here/||p" "$folder"/{manager,east,west}.errors)
    printf 'The services have traced:\n%s\n\n' "$strikes"
    [[ $(cut -d: -f3 <<<"$strikes" | sort) == "$(sed -n 's/^on / on /p' "$here/trouble.faults" | sort)" ]] ||
        die "not all faults have struck"
}

show_unknown_outcome() {
    headline "The manager dies when it has done what it was asked, and before it says so" \
        "Nobody can know, so the client does not say \"failed\", and does not ask a second time: it says how to check."
    ask 6 record comment east "$voice" "Harbour, evening"
    must_say "is unknown" "Id: 21" "Check it with: korvectl record show east $voice"
    local check
    read -ra check <<<"${answer##*Check it with: korvectl }"
    local -i code=0
    end_of manager || code=$?
    ((code == 128 + 9)) || die "the manager ended with $code, and not as it was to"
    show_strikes
    faults=()
    start manager manager
    await_services
    ask 0 "${check[@]}"
    must_say "comment      Harbour, evening"
    tell "so it had been done"
}

show_trouble() {
    show_script
    show_delay
    show_refusals
    show_full_disk
    show_unknown_outcome
    headline "After all that"
    ask 0 records
    (($(grep -c ' IDLE ' <<<"$answer") == ${#sounds[@]} + 2)) || die "not all records are there, and idle"
}
