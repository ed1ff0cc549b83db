# A comment in a header stands for all that follows it up to the next comment or empty line, a field's getter and setter
# say. The reference is told so here, by a group whose words go to each of its members.
function flush(  i) {
  if (count > 1) print "///@{"
  for (i = 0; i < lines; ++i) print kept[i]
  if (count > 1) print "///@}"
  lines = count = 0
}
function ends(line) { sub(/ *\/\/.*/, "", line); return line ~ /[;}]$/ }
{
  isComment = $0 ~ /^ *\/\/\/( |$)/
  opens = gsub(/{/, "{"); closes = gsub(/}/, "}")
  if (isComment && count > 0 || $0 ~ /^ *$/ || !lines && !isComment || !isComment && opens != closes) {
    flush()
    if (!isComment) { print; next }
  }
  kept[lines++] = $0
  if (!isComment && ends($0)) ++count
}
END { flush() }
