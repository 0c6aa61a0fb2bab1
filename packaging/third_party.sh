#!/usr/bin/env bash
# Prints what the project uses of others, from packaging/third-party.list: "page" is docs/third-party.md, "copyright" the
# copyright file of a package.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

rows() { grep -v '^#' third-party.list; }

page() {
  cat <<'TEXT'
# Software of others

What the project uses, and by which licence. `packaging/third_party.sh page` writes this page from
`packaging/third-party.list`. "Compiled in" is part of the installed programs; "linked" is a library of the system, with
its own package and copyright file; "test" is used by tests and benchmarks only.

| name | use | how it comes | licence | copyright |
|---|---|---|---|---|
TEXT
  rows | while IFS='|' read -r name _ use how licence holder; do
    echo "| $name | $use | $how | $licence | $holder |"
  done
}

# The text of a licence, as paragraphs of a copyright file.
licence_text() {
  case $1 in
    Expat)
      cat <<'TEXT'
 Permission is hereby granted, free of charge, to any person obtaining a copy of this software and associated
 documentation files (the "Software"), to deal in the Software without restriction, including without limitation the
 rights to use, copy, modify, merge, publish, distribute, sublicense, and/or sell copies of the Software, and to permit
 persons to whom the Software is furnished to do so, subject to the following conditions:
 .
 The above copyright notice and this permission notice shall be included in all copies or substantial portions of the
 Software.
 .
 THE SOFTWARE IS PROVIDED "AS IS", WITHOUT WARRANTY OF ANY KIND, EXPRESS OR IMPLIED, INCLUDING BUT NOT LIMITED TO THE
 WARRANTIES OF MERCHANTABILITY, FITNESS FOR A PARTICULAR PURPOSE AND NONINFRINGEMENT. IN NO EVENT SHALL THE AUTHORS OR
 COPYRIGHT HOLDERS BE LIABLE FOR ANY CLAIM, DAMAGES OR OTHER LIABILITY, WHETHER IN AN ACTION OF CONTRACT, TORT OR
 OTHERWISE, ARISING FROM, OUT OF OR IN CONNECTION WITH THE SOFTWARE OR THE USE OR OTHER DEALINGS IN THE SOFTWARE.
TEXT
      ;;
    BSD-3-clause)
      cat <<'TEXT'
 Redistribution and use in source and binary forms, with or without modification, are permitted provided that the
 following conditions are met:
 1. Redistributions of source code must retain the above copyright notice, this list of conditions and the following
    disclaimer.
 2. Redistributions in binary form must reproduce the above copyright notice, this list of conditions and the following
    disclaimer in the documentation and/or other materials provided with the distribution.
 3. Neither the name of the copyright holder nor the names of its contributors may be used to endorse or promote
    products derived from this software without specific prior written permission.
 .
 THIS SOFTWARE IS PROVIDED BY THE COPYRIGHT HOLDERS AND CONTRIBUTORS "AS IS" AND ANY EXPRESS OR IMPLIED WARRANTIES,
 INCLUDING, BUT NOT LIMITED TO, THE IMPLIED WARRANTIES OF MERCHANTABILITY AND FITNESS FOR A PARTICULAR PURPOSE ARE
 DISCLAIMED. IN NO EVENT SHALL THE COPYRIGHT HOLDER OR CONTRIBUTORS BE LIABLE FOR ANY DIRECT, INDIRECT, INCIDENTAL,
 SPECIAL, EXEMPLARY, OR CONSEQUENTIAL DAMAGES (INCLUDING, BUT NOT LIMITED TO, PROCUREMENT OF SUBSTITUTE GOODS OR
 SERVICES; LOSS OF USE, DATA, OR PROFITS; OR BUSINESS INTERRUPTION) HOWEVER CAUSED AND ON ANY THEORY OF LIABILITY,
 WHETHER IN CONTRACT, STRICT LIABILITY, OR TORT (INCLUDING NEGLIGENCE OR OTHERWISE) ARISING IN ANY WAY OUT OF THE USE OF
 THIS SOFTWARE, EVEN IF ADVISED OF THE POSSIBILITY OF SUCH DAMAGE.
TEXT
      ;;
    *)
      echo "third_party.sh: there is no text of the licence $1 of compiled-in software" >&2
      exit 1
      ;;
  esac
}

copyright() {
  cat <<'TEXT'
Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: ZanBrenvolt
Comment:
 Libraries of the system that the programs are linked with have packages and copyright files of their own:
TEXT
  rows | while IFS='|' read -r name package _ how licence _; do
    [ "$how" != linked ] || echo " $name ($package): $licence."
  done
  cat <<'TEXT'

Files: *
Copyright: the authors of ZanBrenvolt
License: not-chosen
 The owner of ZanBrenvolt has not chosen a licence yet. Until then all rights are reserved.
TEXT
  rows | while IFS='|' read -r name _ _ how licence holder; do
    [ "$how" = 'compiled in' ] || continue
    printf '\nFiles: usr/bin/* usr/lib/brenvolt/*\nCopyright: %s\nComment: %s, compiled into the programs.\nLicense: %s\n' \
      "$holder" "$name" "$licence"
    licence_text "$licence"
  done
}

case ${1:-} in
  page) page ;;
  copyright) copyright ;;
  *)
    echo "Usage: third_party.sh page|copyright" >&2
    exit 1
    ;;
esac
