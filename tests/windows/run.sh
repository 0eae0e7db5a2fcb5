#!/usr/bin/env bash
# The test programs of the win32 build, one after the other, and the window's layout once more at other
# resolutions; run it through scripts/wine-run.sh.
set -u
cd "$(dirname "$0")/../.." || exit 1
status=0
for program in unit-tests windows-tests; do
    [ -f "build/win32/$program.exe" ] || continue
    wine "build/win32/$program.exe" --gtest_brief=1 </dev/null || { echo "$program failed: $?"; status=1; }
done
for dpi in 144 192; do
    [ -f build/win32/windows-tests.exe ] || continue
    # The screen of 1280x1024 has a task bar.
    scripts/wine-run.sh -r "$dpi" -s 1280x944 -t 120 -- wine build/win32/windows-tests.exe --gtest_brief=1 \
        --gtest_filter='WindowLayoutTest.*' </dev/null || { echo "windows-tests at $dpi dpi failed: $?"; status=1; }
done
exit "$status"
