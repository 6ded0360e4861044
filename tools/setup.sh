#!/usr/bin/env bash
# Installs, with apt-get, whatever the build and the tests need and is missing.
set -euo pipefail
need=(cmake ninja-build g++ gcc libgtest-dev libbenchmark-dev binutils)
missing=()
for p in "${need[@]}" "$@"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  echo "installing: ${missing[*]}"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
fi
