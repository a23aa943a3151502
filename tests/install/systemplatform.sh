#!/usr/bin/env bash
# systemplatform.sh SOURCE BUILD PREFIX OPTION...: builds KorveBase on the siblings that are installed in PREFIX, and sees
# that a program of it loads those.
set -euo pipefail

source=$1 build=$2 prefix=$3
cmake -S "$source" -B "$build" -DKORVE_PLATFORM=system -DBUILD_TESTING=OFF -DCMAKE_PREFIX_PATH="$prefix" "${@:4}"
cmake --build "$build" --target korvectl
korvectl=$build/apps/korvectl/korvectl
"$korvectl" --help
ldd "$korvectl" | grep -F "$prefix/" | grep KorvePlatform-orbconnection
