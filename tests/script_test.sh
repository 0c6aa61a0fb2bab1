#!/usr/bin/env bash
# shellcheck disable=SC2016 # the bodies of stubs expand where they run
# What ./brenvolt reports on a machine that cannot give it what it needs: one sentence with the reason and the remedy.
# The machine is made of stubs, in a folder with blanks and umlauts in its path. Argument: the C++ compiler.
set -uo pipefail
compiler=${1:-g++}
repository=$PWD
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
checkout="$scratch/für den Schaltschrank"
machine=$scratch/machine
failures=0
export CMAKE_GENERATOR=Ninja # the build needs no other program

stub() { # name, body
  rm -f "$machine/$1" # it may be a link to the real one
  printf '#!/bin/bash\n%s\n' "$2" >"$machine/$1"
  chmod +x "$machine/$1"
}

# A root's machine with all packages and a build that works.
fresh_machine() {
  rm -rf "$machine" "$checkout"
  mkdir -p "$machine" "$checkout/src" "$checkout/site"
  cp "$repository/brenvolt" "$checkout/"
  for tool in bash cat dirname env find grep mkdir rm sed sleep tail tee xargs; do
    ln -s "$(command -v "$tool")" "$machine/$tool"
  done
  stub id 'echo 0'
  stub dpkg-query 'echo "install ok installed"'
  stub apt-get 'exit 0'
  stub cmake 'if [ "$1" = --build ]; then echo "[1/1] done"; fi'
}

# Runs the script; its end and what it reports must be as expected.
expect() { # name, exit code, text that must be there, words of the command
  local name=$1 code=$2 text=$3 actual
  shift 3
  (cd / && PATH=$machine "$machine/bash" "$checkout/brenvolt" "$@") >"$scratch/output" 2>&1
  actual=$?
  if [ "$actual" -eq "$code" ] && { [ -z "$text" ] || grep -qF -- "$text" "$scratch/output"; }; then return; fi
  failures=$((failures + 1))
  printf '%s: ended with %d instead of %d, or does not say "%s":\n' "$name" "$actual" "$code" "$text"
  sed 's/^/    /' "$scratch/output"
}

fresh_machine
expect "a machine with everything" 0 "" make

fresh_machine
stub dpkg-query '[ "${!#}" != libedit-dev ] && echo "install ok installed"'
stub id 'echo 1000'
expect "no right to install" 1 'run "apt-get install libedit-dev" as root' make

fresh_machine
stub dpkg-query '[ "${!#}" != libedit-dev ] && echo "install ok installed"'
stub apt-get 'echo "Temporary failure resolving" >&2; exit 100'
expect "no network" 1 "cannot install libedit-dev: check the network" make

fresh_machine
stub cmake 'echo "Could NOT find Qt6"; exit 1'
expect "a configuration that fails" 1 "the first error above names what is missing" make

fresh_machine
stub cmake 'if [ "$1" = --build ]; then echo "cannot write x.o: No space left on device"; exit 1; fi'
expect "a full disk" 1 "the disk is full: free some space" make

fresh_machine
stub cmake 'if [ "$1" = --build ]; then kill -INT $PPID; sleep 1; exit 130; fi'
expect "an interrupted build" 130 "continues from here" make

# The tool needs no windows and no tests; a later verb adds them.
fresh_machine
stub cmake 'echo "$*" >>calls'
mkdir -p "$checkout/out/bin"
printf '#!/bin/bash\necho "tool: $*"\n' >"$checkout/site/demo.sh"
stub dpkg-query 'case "${!#}" in qt6-*|doctest-dev) exit 1 ;; esac; echo "install ok installed"'
stub apt-get 'echo "$*" >>calls'
expect "the demonstration" 0 "tool:" demo
if grep -qE 'qt6|doctest' "$checkout/calls" || ! grep -q -- '-DBRENVOLT_WINDOWS=OFF -DBRENVOLT_TESTS=OFF' "$checkout/calls" ||
  ! grep -q -- '--target brenvolt$' "$checkout/calls"; then
  failures=$((failures + 1))
  echo "the demonstration needs more than the tool:" && cat "$checkout/calls"
fi
expect "everything" 0 "installing: qt6" make
grep -q -- '-DBRENVOLT_WINDOWS=ON -DBRENVOLT_TESTS=ON' "$checkout/calls" || {
  failures=$((failures + 1))
  echo "everything leaves windows or tests out:" && cat "$checkout/calls"
}

# Without a history the files are those that are there.
fresh_machine
stub clang-format 'echo "$*" >formatted'
stub git 'exit 1'
stub codespell ''
mkdir -p "$checkout"/{platform,simhost,tests,bench,docs,resources,out/bin}
touch "$checkout/src/a.cpp" "$checkout/README.md"
printf '#!/bin/bash\n' >"$checkout/out/bin/house_test"
chmod +x "$checkout/out/bin/house_test"
expect "a checkout without a history" 0 "house rules" check cheap
grep -q "src/a.cpp" "$checkout/formatted" || {
  failures=$((failures + 1))
  echo "a checkout without a history: no source is checked"
}

# A compiler that calls itself an old one.
fresh_machine
printf '#!/bin/bash\nexec "%s" -U__GNUC__ -D__GNUC__=10 -U__clang_major__ -D__clang_major__=10 "$@"\n' "$compiler" >"$scratch/old_compiler"
chmod +x "$scratch/old_compiler"
cmake -S "$repository" -B "$scratch/old" -DCMAKE_CXX_COMPILER="$scratch/old_compiler" >"$scratch/output" 2>&1
if ! tr -s ' \n' ' ' <"$scratch/output" | grep -q "GCC 12 or Clang 14 or later is needed"; then
  failures=$((failures + 1))
  echo "an old compiler is not reported:" && tail -n 20 "$scratch/output"
fi

# The page on software of others is what its list says.
if ! diff <(bash "$repository/packaging/third_party.sh" page) "$repository/docs/third-party.md"; then
  failures=$((failures + 1))
  echo "docs/third-party.md differs from packaging/third-party.list: packaging/third_party.sh page >docs/third-party.md"
fi

if [ $failures -ne 0 ]; then exit 1; fi
echo "all as expected"
