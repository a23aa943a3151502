#!/usr/bin/env bash
# Shows an installation; see the README beside it.
# usage: alone.py demonstrate.sh BUILD_FOLDER
set -eEuo pipefail

here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
build=$(readlink -e "${1:?the build folder, such as build/dev}")
readonly here build folder=${KORVE_FOLDER:?run this by alone.py}
export KORVE_CCO=$KORVE_ADDRESS:8003

# shellcheck source=docs/demo/stage.sh
source "$here/stage.sh"
trap 'printf "\nkorve demo: this failed: %s\n" "$BASH_COMMAND" >&2' ERR
# shellcheck source=docs/demo/installation.sh
source "$here/installation.sh"
# shellcheck source=docs/demo/commands.sh
source "$here/commands.sh"
# shellcheck source=docs/demo/trouble.sh
source "$here/trouble.sh"

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
