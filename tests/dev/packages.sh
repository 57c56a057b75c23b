#!/usr/bin/env bash
# While ./dev installs packages it tells how far that is, line by line and before it is over.
source "$(dirname "$0")/common.sh"

program dpkg-query <<'END'
#!/usr/bin/env bash
[[ "${*: -1}" == libzip-dev || "${*: -1}" == rapidjson-dev ]] || echo installed
END
program id <<'END'
#!/usr/bin/env bash
echo 0
END
# Goes on when what it said can be read in the log.
program apt-get <<END
#!/usr/bin/env bash
wait_for() { # TEXT [TIMES]
    for ((i = 0; i < 200; ++i)); do
        if ((\$(grep -c "^ *[0-9]* s  \$1" "$tree/log") >= \${2:-1})); then return; fi
        sleep 0.1
    done
    echo "E: nothing was told of \$1" >&2
    exit 100
}
if [[ "\$1" == update ]]; then
    echo "Hit:1 http://deb.example.org/debian stable InRelease"
    wait_for "Hit:1 http://deb.example.org/debian stable InRelease"
    exit 0
fi
[[ "\$*" == *" libzip-dev rapidjson-dev" ]] || exit 100
echo "Reading package lists..."
for ((i = 1; i <= 40; ++i)); do
    echo "Get:\$i http://deb.example.org/debian stable/main amd64 package\$i amd64 1.0 [10 kB]"
done
wait_for "Get:1 "
echo "Selecting previously unselected package rapidjson-dev."
echo "Unpacking rapidjson-dev (1.1.0) ..."
wait_for "Unpacking rapidjson-dev"
echo "Setting up libzip-dev:amd64 (1.7.3) ..."
wait_for "Setting up libzip-dev"
wait_for "Setting up libzip-dev" 2 # while nothing new is said
[[ ! -e "$tree/failing" ]] || { echo "E: no space left" >&2; exit 100; }
END
mkdir -p "$tree/build/dev/tools/host"

# Behind the packages the demo has nothing to run.
! dev demo || fail "this cannot have been built"
! grep -q '^E:' "$tree/log" || fail "apt-get was not heard"
expect_lines "== Building build/dev"
(($(grep -c 'Get:' "$tree/log") <= 5)) || fail "each package is told, which nobody reads"

touch "$tree/failing"
! dev demo || fail "this cannot have been installed"
expect_lines "dev: apt-get install failed, see above. Once it works by hand, run this again:
     apt-get install --no-install-recommends libzip-dev rapidjson-dev"
! grep -q 'Building' "$tree/log" || fail "it went on without the packages"
