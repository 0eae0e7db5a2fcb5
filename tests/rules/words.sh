#!/usr/bin/env bash
# Every message to the user is said in one place of src/, and told of in README.md; see words.py.
set -euo pipefail
exec python3 "$(dirname "$0")/words.py"
