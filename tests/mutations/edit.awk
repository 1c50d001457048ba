# edit.awk - applies a mutation to a source and prints it: awk -f edit.awk EDIT SOURCE
#
# EDIT holds the lines `after: TEXT`, `- TEXT` and `+ TEXT` of one mutation. Lines are compared, and
# replaced, without their indentation.

function trimmed(text) {
  gsub(/^[ \t]+|[ \t\r]+$/, "", text)
  return text
}

function fail(why) {
  print why > "/dev/stderr"
  failed = 1
  exit 1
}

FNR == NR {
  kind = /^after:/ ? "after" : substr($0, 1, 1)
  text = trimmed(kind == "after" ? substr($0, 7) : substr($0, 2))
  # A group: where, the lines that go, the lines that come.
  if (kind == "after" || (kind == "-" && last == "+")) ++groups
  if (!groups) groups = 1
  if (kind == "after") place[groups] = text
  if (kind == "-") old[groups, ++olds[groups]] = text
  if (kind == "+") new[groups, ++news[groups]] = text
  last = kind
  next
}

{ source[++lines] = $0 }

function matches(group, at, i) {
  for (i = 1; i <= olds[group]; ++i)
    if (trimmed(source[at + i - 1]) != old[group, i]) return 0
  return 1
}

function indentation(text) {
  match(text, /^[ \t]*/)
  return substr(text, 1, RLENGTH)
}

# The line at which the group begins, which must be the only one.
function find(group, at, first, found) {
  first = 1
  if (group in place) {
    while (first <= lines && trimmed(source[first]) != place[group]) ++first
    if (first > lines) fail("no line '" place[group] "'")
    ++first
    if (!olds[group]) return first
  }
  for (at = first; at <= lines; ++at) {
    if (!matches(group, at)) continue
    if (group in place) return at
    if (found) fail("more than one line '" old[group, 1] "'")
    found = at
  }
  if (!found) fail("no line '" old[group, 1] "'")
  return found
}

function apply(group, at, shift, margin, i) {
  if (!olds[group] && !(group in place)) fail("lines that come without a place")
  at = find(group)
  margin = indentation(source[olds[group] ? at : at - 1])
  shift = news[group] - olds[group]
  if (shift > 0)
    for (i = lines; i >= at + olds[group]; --i) source[i + shift] = source[i]
  if (shift < 0)
    for (i = at + olds[group]; i <= lines; ++i) source[i + shift] = source[i]
  lines += shift
  for (i = 1; i <= news[group]; ++i)
    source[at + i - 1] = new[group, i] == "" ? "" : margin new[group, i]
}

END {
  if (failed) exit 1
  for (group = 1; group <= groups; ++group) apply(group)
  for (i = 1; i <= lines; ++i) print source[i]
}
