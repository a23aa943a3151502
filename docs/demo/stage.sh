# What all parts of the demonstration use: its processes, its words, and ways to wait; sourced by demonstrate.sh.
# shellcheck shell=bash
# shellcheck disable=SC2154 # demonstrate.sh sets build, here and folder

readonly patienceMs=30000     # for everything that has no limit of its own
readonly stopPatienceMs=10000 # then it is killed
declare -A process=() # by name: a role, or the device of a recorder
faults=()             # the option that names a fault script, for services that are started from now on
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

now_ms() { echo $((${EPOCHREALTIME/[.,]/} / 1000)); }

# has_gone ID MS: waits so long at most for the end of that process. The shell has no word for a killed one.
has_gone() {
    local -i end=$(($(now_ms) + $2))
    while kill -0 "$1"; do
        (($(now_ms) < end)) || return 1
        sleep 0.02
    done
} 2>/dev/null

# stop NAME [SIGNAL]
stop() {
    local -i id=${process[$1]}
    unset "process[$1]"
    kill -"${2:-TERM}" $id 2>/dev/null || true
    has_gone $id $stopPatienceMs || kill -KILL $id 2>/dev/null || true
    wait $id 2>/dev/null || true
}

# The services; whoever talks to another ends before it.
stop_everything() {
    local name
    for name in manager west east cco; do
        stop "$name"
    done
}

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

# end_of NAME: waits until it ends by itself; answers with its exit code.
end_of() {
    local -i id=${process[$1]}
    has_gone $id $patienceMs || die "$1 did not end within $((patienceMs / 1000)) s"
    unset "process[$1]"
    wait $id 2>/dev/null
}

# run NAME PROGRAM [ARGUMENT...]: in the background; it does not outlive us, whatever kills us.
run() {
    : >"$folder/$1.output" # or for a moment it would be that of the one before
    : >"$folder/$1.errors"
    setpriv --pdeathsig KILL -- "${@:2}" >"$folder/$1.output" 2>"$folder/$1.errors" &
    process[$1]=$!
}

# start NAME ROLE: a service, until it answers. A recorder's name is that of its device.
start() {
    local name=$1 role=$2
    printf '[recorder]\ndevice=%s\n' "$name" >"$folder/$name.ini"
    run "$name" "$build/installation/program/korve-installation" \
        --role "$role" --state "$folder/$name" --config "$folder/$name.ini" "${faults[@]}"
    wait_until "$name" "the $role $name did not become ready" grep -q '^ready' "$folder/$name.output"
    local address
    read -r _ _ address <"$folder/$name.output"
    printf '%-8s %-22s process %d\n' "$name" "$address" "${process[$name]}"
}

# The words as one would type them.
typed() {
    local word
    for word; do
        [[ $word =~ ^[[:alnum:]_./:@+-]+$ ]] || word="\"$word\""
        printf ' %s' "$word"
    done
}

# ask CODE WORD...: has korvectl do that, shows what was asked and what came back, which is then in $answer, and dies
# unless it ends with the code. What stands in the array "under" (a program that runs others) comes before it.
under=()
ask() {
    local -i expected=$1 code=0
    shift
    printf '%s$ korvectl%s%s\n' "$bold" "$(typed "$@")" "$plain"
    run korvectl "${under[@]}" "$build/apps/korvectl/korvectl" "$@"
    end_of korvectl || code=$?
    answer=$(cat "$folder/korvectl.output" "$folder/korvectl.errors")
    printf '%s\n' "$answer"
    ((code == expected)) || die "that ended with $code, not with $expected"
    ((code == 0)) || printf '(exit code %d)\n' "$code"
}

# What the demonstration itself has found out.
tell() { printf '=> %s\n' "$*"; }

# must_say TEXT...: dies unless each is in the last answer.
must_say() {
    local text
    for text; do
        [[ $answer == *"$text"* ]] || die "\"$text\" is not in that answer"
    done
}

# must_be_equal FILE FILE: byte for byte.
must_be_equal() { cmp "$1" "$2" || die "these files differ: $1 and $2"; }

size_of() { stat --format=%s "$1" 2>/dev/null || echo 0; }
