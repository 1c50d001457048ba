#!/usr/bin/env bash
# A log line whose arguments do not fit its format does not compile.
set -euo pipefail
cd "$1"

compiles() {
  printf '#include "sdk/format_text.h"\n#include "sdk/logger.h"\n#include <cstdint>\nusing namespace pyxen;\nvoid Line(const Logger& log, const char* text) { %s; }\n' "$1" |
    clang++ -std=c++20 -fsyntax-only -I module -I host/include -I pxnc/include -I . -x c++ - 2>/dev/null
}

status=0
while IFS= read -r line; do
  compiles "$line" || { echo "does not compile: $line"; status=1; }
done <<'EOF'
log.Information("plain")
log.Information("%s: %I64u, %I64d", text, std::uint64_t{1}, std::int64_t{1})
log.Error("%u %08X %d %ux%u", 1u, 2u, -1, 3u, std::uint16_t{4})
log.Error("%p %lf %c", nullptr == text ? nullptr : (void*)text, 1.5, text[0])
log.Error("Feature % cannot be written")
FormatText("%s", text)
EOF
while IFS= read -r line; do
  ! compiles "$line" || { echo "compiles and must not: $line"; status=1; }
done <<'EOF'
log.Information("%s")
log.Information("plain", text)
log.Information("%s %s", text)
log.Information("%u", text)
log.Information("%s", 1u)
log.Information("%u", 1)
log.Information("%d", 1u)
log.Information("%u", std::uint64_t{1})
log.Information("%I64u", 1u)
log.Information("%I64u", std::int64_t{1})
log.Information("%I64s", text)
log.Information("%lf", 1.5f)
log.Information("%u", true)
log.Error("%q", 1u)
log.Error("Feature % cannot be written", text)
log.Error(text)
FormatText("%s", 1u)
EOF
exit "$status"
