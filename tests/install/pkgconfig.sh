#!/usr/bin/env bash
# pkgconfig.sh LIBDIR PROGRAM.cpp OUTPUT: builds and runs a program with what pkg-config says about KorveBase in LIBDIR.
set -euo pipefail

export PKG_CONFIG_PATH=$1/pkgconfig
read -ra flags < <(pkg-config --cflags --libs KorveBase)
"${CXX:-c++}" -std=c++20 -fPIC "$2" -o "$3" "${flags[@]}" "-Wl,-rpath,$1"
"$3"
