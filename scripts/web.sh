#!/usr/bin/env bash
# Builds the page and the programs that check it: build/web/bin.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/bootstrap.sh
scripts/bootstrap.sh web
scripts/web-libraries.sh
cmake --preset web --log-level=NOTICE > /dev/null
cmake --build --preset web --target hearing_web_page web_contracts web_samples
