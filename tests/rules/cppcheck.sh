#!/usr/bin/env bash
# cppcheck finds nothing but what cppcheck.txt says why it is right. What has not changed is not read again.
# usage: cppcheck.sh
set -euo pipefail
cd "$(dirname "$0")/../.."
mkdir -p build/cppcheck
cppcheck -j 2 --quiet --language=c++ --std=c++20 --enable=warning,performance,portability -I src -I . \
    --suppressions-list=tests/rules/cppcheck.txt --cppcheck-build-dir=build/cppcheck --error-exitcode=1 \
    --template='{file}:{line}: {message} [{id}]' --template-location= src demo tools
