#!/usr/bin/env bash
# What keeps the windows from being painted for more than 50 ms: goes through a whole course, through every window of the
# shell and through the troubles with a silent server in the real windows (see tests/journey) under a meter, ROUNDS
# times. Lists each place of the program with its number of stalls, the shortest and the longest in milliseconds, and how
# much of the longest the thread ran. Time in which the processor was given to others is taken off, and so is the
# robot's own work on that thread.
#   bench/stalls.sh [ROUNDS [cold]]     build the preset "release" with "portable", "voreljourney", "vorelstalls" and
#                                       "vorel-site-check" first; cold, as root: nothing of the disk is in memory
# Ends with where every single stall stands.
set -euo pipefail
cd "$(dirname "$0")/.."
rounds="${1:-3}"
build="$PWD/build/release"
place="$build/stalls"
rm -rf "$place"
mkdir -p "$place"
[ "${2:-}" != cold ] || export VOREL_JOURNEY_COLD=1
for round in $(seq "$rounds"); do
  for way in "journey.sh $build $place/journey" "tour.sh $build $place/tour" "trials.sh $build hanging-server"; do
    export VOREL_STALLS_FILE="$place/raw-$round-${way%%.*}.tsv"
    # Word by word: the way and its arguments.
    tests/journey/$way >"$place/log.txt" 2>&1 || { cat "$place/log.txt"; exit 1; }
    touch "$VOREL_STALLS_FILE"
  done
done

# Names for the frames: one call for each file.
cut -f5 "$place"/raw-*.tsv | tr '|;' '\n\n' | grep '+' | sort -u >"$place/frames" || true
cut -d+ -f1 "$place/frames" | sort -u | while read -r file; do
  grep -F "$file+" "$place/frames" | sed 's/.*+//' >"$place/offsets"
  # Functions without a name of their own show as "??".
  addr2line -Cfe "$file" <"$place/offsets" 2>/dev/null | awk 'NR % 2 == 1' |
    paste -d'\t' <(sed "s|^|$file+|" "$place/offsets") -
done >"$place/names" || true

awk -F'\t' -v OFS='\t' -v names="$place/names" -v total="$place/stalls.tsv" '
  function short(text) { gsub(/\([^()]*\)|\[clone [^]]*\]| const$/, "", text); return text }
  BEGIN {
    print "run", "start", "ms", "ran", "delayed", "ours", "innermost" >total
    while ((getline line <names) > 0) { split(line, pair, "\t"); name[pair[1]] = pair[2] }
  }
  {
    n = split($5, samples, "|"); robot = 0; best = inner = last = ""; delete seen
    for (i = 1; i <= n; ++i) {
      if (index(samples[i], "voreljourney.so")) { ++robot; continue }
      m = split(samples[i], frames, ";"); ours = ""; count = 0
      for (k = 1; k <= m && count < 3; ++k)
        if (frames[k] ~ /\/Vorel\+|\/libvorel/ && name[frames[k]] !~ /^(main|_start|std::.*|QtPrivate::.*|\?\?)$/)
          ours = ours (count++ ? " < " : "") short(name[frames[k]])
      for (k = 1; k <= m; ++k) if (name[frames[k]] != "" && name[frames[k]] != "??") { last = short(name[frames[k]]); break }
      # The engine is built without what tells a caller from its frames.
      if (ours == "") ours = "(the engine or the toolkit alone)"
      if (++seen[ours] > seen[best]) { best = ours; inner = last }
    }
    length_ = ($2 - $4) * (n > 0 ? (n - robot) / n : 1)
    if (length_ <= 50) next
    run = FILENAME; sub(/.*raw-/, "", run); sub(/\.tsv$/, "", run)
    print run, $1, length_, $3, $4, best, inner >total
    number[best]++
    if (!(best in least) || length_ < least[best]) least[best] = length_
    if (length_ > most[best]) { most[best] = length_; ran[best] = $3 }
  }
  END { for (b in number) printf "%d\t%.0f\t%.0f\t%.0f\t%s\n", number[b], least[b], most[b], ran[b], b }
' "$place"/raw-*.tsv | sort -t$'\t' -k3,3nr >"$place/table"
printf 'stalls\tleast\tmost\tran\twhere (%s rounds)\n' "$rounds"
cat "$place/table"
echo "all: ${place#"$PWD"/}/stalls.tsv"
