#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the pictures from brevant.svg. Needs rsvg-convert (Debian: librsvg2-bin).
set -euo pipefail
cd "$(dirname "$0")"
for size in 48 256; do
  rsvg-convert --width $size --height $size --output brevant-$size.png brevant.svg
done
