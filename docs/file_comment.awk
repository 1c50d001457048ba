# file_comment.awk - a header as Doxygen reads it: its first comment describes the file
#
# A plain comment stays one for every other reader. No line is added, so that numbers in messages
# are those of the header.
NR == 1 && sub(/^\/\/ /, "") { print "/// @file " $1 " @brief " substr($0, index($0, " - ") + 3); leading = 1; next }
NR == 1 && sub(/^\/\* /, "") { print "/** @file " $1 " @brief " substr($0, index($0, " - ") + 3); next }
leading && /^\/\// { sub(/^\/\//, "///"); print; next }
{ leading = 0; print }
