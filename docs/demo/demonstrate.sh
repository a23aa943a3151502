#!/usr/bin/env bash
# Shows an installation on a loopback address of its own; see the README beside it.
# usage: demonstrate.sh BUILD_FOLDER
set -eEuo pipefail

here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
build=$(readlink -e "${1:?the build folder, such as build/dev}")
readonly here build

# shellcheck source=docs/demo/stage.sh
source "$here/stage.sh"
trap stop_everything EXIT
trap 'printf "\nkorve demo: this failed: %s\n" "$BASH_COMMAND" >&2' ERR
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM
folder=$(mktemp -d -t korve-demo.XXXXXX)
# shellcheck source=docs/demo/installation.sh
source "$here/installation.sh"
# shellcheck source=docs/demo/commands.sh
source "$here/commands.sh"
# shellcheck source=docs/demo/trouble.sh
source "$here/trouble.sh"

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
show_commands
show_trouble
stop_everything
headline "That was all, and all of it is stopped"
