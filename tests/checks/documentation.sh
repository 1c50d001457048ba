#!/usr/bin/env bash
# The pages name what there is: links lead somewhere, and every option, operation, command and
# environment variable that the sources have is on its page.
set -euo pipefail
cd "$1"

status=0
complain() {
  echo "$1"
  status=1
}

# need PAGE WHAT NAMES: every name of a list, one a line, stands on the page as a whole word.
need() {
  local page=$1 what=$2 name count=0
  while read -r name; do
    count=$((count + 1))
    grep -qE -- "(^|[^[:alnum:]_-])$name([^[:alnum:]_-]|\$)" "$page" || complain "$page lacks $what $name"
  done <<<"$3"
  [ "$count" -ge "${4:-2}" ] || complain "found only $count times $what in the sources"
}

# All of a list of directories as one line, for what is broken over several.
joined() { find "$@" -name '*.cpp' -print0 | sort -z | xargs -0 cat | tr '\n' ' '; }

for page in ./*.md docs/*.md; do
  while read -r target; do
    [ -e "$(dirname "$page")/$target" ] || complain "$page links to $target, which is not there"
  done < <(sed '/^```/,/^```$/d' "$page" | grep -oE '\]\([^)#:]+(#[^)]*)?\)' |
    sed -E 's/^\]\(([^)#]*).*/\1/')
done
for page in CHANGELOG.md CONTRIBUTING.md THIRD-PARTY.md docs/*.md; do
  grep -qF "($page)" README.md || complain "README.md does not name $page"
done

need docs/command-line.md option \
  "$(joined apps/common apps/mivora apps/pyxen-tool | grep -oE '\.Add(Option|Flag)\( *"[^"]*"' |
    grep -oE -- '--[a-z-]+' | sort -u)" 20
need docs/command-line.md operation \
  "$(joined apps/common apps/pyxen-tool |
    grep -oE '(\.Add\( *|AddDialog\(operations, grabber, )"[A-Za-z0-9]+"' |
    sed 's/.*"\(.*\)"/\1/' | sort -u)" 100
need docs/command-line.md command \
  "$(joined apps/common apps/mivora apps/pyxen-tool | grep -oE '\.AddCommand\( *"[a-z-]+"' |
    sed 's/.*"\(.*\)"/\1/' | sort -u)" 15
need docs/configuration.md 'environment variable' \
  "$(grep -rhoE '"PYXEN_[A-Z_]+"' apps module pxnc | tr -d '"' | sort -u)"
need docs/simulator.md 'control command' \
  "$(sed -n 's/^    {"\([a-z-]*\)", [0-9].*/\1/p' pxnc/simulator/commands.cpp)" 20
need docs/simulator.md attribute \
  "$(tr '\n' ' ' <pxnc/simulator/configuration_reader.cpp | grep -oE 'xml\.Allow\([a-z]+, *\{[^}]*\}' |
    grep -oE '"[A-Za-z]+"' | tr -d '"' | sort -u)" 25

# And the other way round, for features whose names are the libraries' own.
for name in $(grep -ohE '`(GVSP|Simulator|Discover|EventCamera|EventInterface)[A-Za-z]+' docs/genicam.md docs/simulator.md |
  tr -d '`' | sort -u); do
  grep -rqF "\"$name\"" pxnc || complain "docs tell of $name, which there is not"
done

# Log lines are quoted as the sources have them; `…` and what a format puts in both stand for anything.
lines=$(joined module host/src | sed 's/\\"/\x01/g; s/" *"//g; s/\x01/"/g')
quoted=0
# shellcheck disable=SC2016
while read -r line; do
  quoted=$((quoted + 1))
  while read -r part; do
    [[ $lines == *"$part"* ]] || complain "docs/log-lines.md quotes \"$part\", which no source has"
  done < <(echo "${line//…/$'\n'}" | sed 's/^[: ]*//; s/[: ]*$//' | grep .)
done < <(grep -oE '`(C[A-Za-z]+|FeatureSyncher|FeatureCache|PyxenApi|MivoraKVNPyxen has|Todo|Mivora|GrabberDialogs|  ERROR)[: ][^`]*`' docs/log-lines.md |
  tr -d '`' | sort -u)
[ "$quoted" -ge 30 ] || complain "found only $quoted lines in docs/log-lines.md"

# Each line of level 0 is explained, by what it has before the first thing that a format puts in.
errors=0
while IFS= read -r line; do
  line=${line%%'%'*}
  [ "${#line}" -ge 12 ] || continue # only a context, which the caller's line has
  errors=$((errors + 1))
  grep -qF -- "$line" docs/log-lines.md docs/feature-synchronisation.md ||
    complain "docs/log-lines.md does not explain \"$line\""
done < <(grep -oE '(\b(Error|ErrorText|LogFault|Report|ReportSdkError)\(|LogErrorLine\(log,|kMvLogError,) *"[^"]*"' <<<"$lines" |
  sed 's/^[^"]*"//; s/"$//' | sort -u)
[ "$errors" -ge 60 ] || complain "found only $errors lines of level 0 in the sources"

# The driver's own page is what it prints.
for command in $(./dev | sed -n 's/^  \([a-z]\{1,\}\) .*/\1/p'); do
  grep -qE "^  $command\) " dev || complain "./dev tells of $command, which it cannot do"
done
exit "$status"
