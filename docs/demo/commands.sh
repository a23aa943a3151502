# Commands for one record: what was asked, what came back, and whether the files say the same.
# shellcheck shell=bash
# shellcheck disable=SC2154 # demonstrate.sh, stage.sh and installation.sh set what is not set here

readonly bytesPerSample=2 samplesPerSecond=48000 # of the sounds, which the first answer is held to
readonly comment='Harbour, channel 12'

# data_of DEVICE RECORD: the file where the recorder keeps its samples.
data_of() {
    local path
    path=$(find "$folder/$1" -name "$2.sigmf-data")
    [[ -f $path ]] || die "the recorder $1 has no samples of $2"
    echo "$path"
}

show_notes() {
    headline "A comment and a bookmark" "The recorder has them on its disk before it answers."
    ask 0 record comment east "$voice" "$comment"
    ask 0 record bookmarks add east "$voice" +0.5s "second word"
    ask 0 record show east "$voice"
    must_say "$comment" "+0:00:00.500  second word" "$samplesPerSecond Hz" "$(size_of "$voiceData") bytes"
    grep -q "$comment" "${voiceData%-data}-meta" || die "the comment is not in ${voiceData%-data}-meta"
}

show_copy() {
    headline "A copy of half a second of it"
    ask 0 record copy east "$voice" 0.25s:0.75s --name "half a second"
    must_say "$voice: R"
    local -i first=$((samplesPerSecond / 4 * bytesPerSample)) size=$((samplesPerSecond / 2 * bytesPerSample))
    head --bytes=$((first + size)) "$voiceData" | tail --bytes=$size >"$folder/section"
    must_be_equal "$folder/section" "$(data_of east "${answer#*: }")"
    tell "its $((size / bytesPerSample)) samples are those of the section, byte for byte"
}

samples_in() { echo $(($(size_of "$1") / bytesPerSample)); }

# has_received BYTES: whether so many have come, at least.
has_received() { (($(size_of "$folder/received") >= $1)); }

# Dies when anything comes within a second. What was under way at the pause comes before that.
expect_silence() {
    local -i count=-1
    until (($(size_of "$folder/received") == count)); do
        count=$(size_of "$folder/received")
        sleep 0.2
    done
    sleep 1
    (($(size_of "$folder/received") == count)) || die "samples came during the pause"
    ((count < $(size_of "$voiceData"))) || die "all samples had come before the pause"
    tell "for a second nothing came: the receiver has $((count / bytesPerSample)) samples"
}

show_replay() {
    headline "A replay with a pause" \
        "The recorder sends the samples to a receiver (docs/demo/receiver.py), at a quarter of the speed."
    run receiver python3 -B "$here/receiver.py" "$KORVE_ADDRESS" "$folder/received"
    wait_until receiver "the receiver did not start" grep -q . "$folder/receiver.output"
    ask 0 replay start east "$voice" --speed 0.25 --to "$KORVE_ADDRESS:$(<"$folder/receiver.output")"
    wait_until receiver "no samples came" has_received $((samplesPerSecond / 10 * bytesPerSample))
    ask 0 replay pause east "$voice"
    expect_silence
    ask 0 replay status east "$voice"
    must_say paused
    ask 0 replay continue east "$voice"
    end_of receiver || die "the receiver has failed: $(<"$folder/receiver.errors")"
    must_be_equal "$folder/received" "$voiceData"
    tell "the receiver has $(samples_in "$folder/received") samples, the file $(samples_in "$voiceData"); they are equal"
}

show_spectrum() {
    headline "What is in 20 MHz" \
        "The recorder transforms the samples; the picture is kept (one is in docs/demo/spectrum.png)."
    local picture=$build/demo-spectrum.png
    rm -f "$picture"
    ask 0 spectrum west "$wideband" --lines 200 --fft 256 --png "$picture"
    must_say "256 x 200 points" "88.000000 MHz to 107."
    [[ $(head --bytes=4 "$picture" | tail --bytes=3) == PNG ]] || die "$picture is no picture"
}

show_export() {
    headline "An export, interrupted on purpose, and resumed" \
        "The client may write files of 20 MB at most, and fails; the second time it goes on from there."
    under=(env --ignore-signal=XFSZ prlimit --fsize=20000000)
    ask 4 export west "$wideband" --to "$folder/exported"
    under=()
    must_say "to go on from there"
    local data
    data=$(data_of west "$wideband")
    local -i there size
    there=$(size_of "$folder/exported/$wideband.sigmf-data.part")
    size=$(size_of "$data")
    ((there > 0 && there < size)) || die "$there of $size bytes are there after the interruption"
    tell "there are $there of $size bytes"
    ask 0 export west "$wideband" --to "$folder/exported" --json
    must_say "\"fetchedBytes\": $((size - there)),"
    must_be_equal "$folder/exported/$wideband.sigmf-data" "$data"
    must_be_equal "$folder/exported/$wideband.sigmf-meta" "${data%-data}-meta"
    tell "both files are those of the recorder, byte for byte"
}

show_commands() {
    voice=$(record_of east "$(basename "${sounds[0]}")")
    wideband=$(record_of west wideband.sigmf-meta)
    voiceData=$(data_of east "$voice")
    show_notes
    show_copy
    show_replay
    show_spectrum
    show_export
}
