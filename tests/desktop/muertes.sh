#!/usr/bin/env bash
# Kills the window's program so many times on each engine, and proves the base after each.
#   tests/desktop/muertes.sh [TIMES] [BUILD FOLDER]      50 times in build/release if none is said
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
export TARVIK_MUERTES=${1:-50} QT_QPA_PLATFORM=offscreen
tests=${2:-$here/../../build/release}/tests/tarvik_desktop_tests
"$tests" --gtest_filter='Muertes.*'
"$here/../con_servidor.sh" "$tests" --gtest_filter='Muertes.*'
