#!/usr/bin/env bash
# What keeps the windows from being painted for more than 50 ms: goes through a whole course in the real windows (see
# tests/journey) under a meter, ROUNDS times, and lists each place of the program with its number of stalls, its
# shortest and longest in milliseconds, and the part of the longest that the thread ran. Time in which the processor was
# given to others is taken off.
#   bench/stalls.sh [ROUNDS]     build the preset "release" with the targets "portable", "voreljourney", "vorelstalls"
# Ends with where every single stall stands, in build/release/stalls/stalls.tsv.
set -euo pipefail
cd "$(dirname "$0")/.."
rounds="${1:-3}"
build="$PWD/build/release"
place="$build/stalls"
rm -rf "$place"
mkdir -p "$place"
for round in $(seq "$rounds"); do
  VOREL_STALLS_FILE="$place/raw-$round.tsv" tests/journey/journey.sh "$build" "$place/journey" >"$place/journey.txt" 2>&1 || {
    cat "$place/journey.txt"
    exit 1
  }
done

# Names for the frames: one call for each file.
cut -f5 "$place"/raw-*.tsv | tr '|;' '\n\n' | grep '+' | sort -u >"$place/frames" || true
cut -d+ -f1 "$place/frames" | sort -u | while read -r file; do
  grep -F "$file+" "$place/frames" | sed 's/.*+//' >"$place/offsets"
  # Functions without a name of their own show as "??".
  addr2line -Cfe "$file" <"$place/offsets" 2>/dev/null | awk 'NR % 2 == 1' |
    paste -d'\t' <(sed "s|^|$file+|" "$place/offsets") -
done >"$place/names" || true

awk -F'\t' -v OFS='\t' -v total="$place/stalls.tsv" '
  function short(name) { gsub(/\([^()]*\)|\[clone [^]]*\]| const$/, "", name); return name }
  BEGIN { print "round", "start", "ms", "ran", "delayed", "ours", "innermost" >total }
  FNR == 1 { ++file }
  file == 1 { name[$1] = $2; next }
  {
    # The robot looks at widgets and takes pictures on the same thread.
    if (index($5, "voreljourney.so")) next
    length_ = $2 - $4
    if (length_ <= 50) next
    n = split($5, samples, "|"); best = ""; inner = ""; delete seen
    for (i = 1; i <= n; ++i) {
      m = split(samples[i], frames, ";"); ours = ""; count = 0
      for (k = 1; k <= m && count < 3; ++k)
        if (frames[k] ~ /\/Vorel\+|\/libvorel/ && name[frames[k]] !~ /^(main|_start|std::.*|QtPrivate::.*|\?\?)$/) {
          ours = ours (count++ ? " < " : "") short(name[frames[k]])
        }
      if (ours == "") ours = "(the toolkit alone)"
      if (++seen[ours] > seen[best]) {
        best = ours
        inner = ""
        for (k = 1; k <= m && inner == ""; ++k)
          if (name[frames[k]] != "" && name[frames[k]] != "??") inner = short(name[frames[k]])
      }
    }
    if (best == "") best = "(no sample)"
    print FILENAME, $1, length_, $3, $4, best, inner >total
    number[best]++
    if (!(best in least) || length_ < least[best]) least[best] = length_
    if (length_ > most[best]) { most[best] = length_; ran[best] = $3 }
  }
  END { for (b in number) printf "%d\t%.0f\t%.0f\t%.0f\t%s\n", number[b], least[b], most[b], ran[b], b }
' "$place/names" "$place"/raw-*.tsv | sort -t$'\t' -k3,3nr >"$place/table"
printf 'stalls\tleast\tmost\tran\twhere (%s rounds)\n' "$rounds"
cat "$place/table"
echo "all: ${place#"$PWD"/}/stalls.tsv"
