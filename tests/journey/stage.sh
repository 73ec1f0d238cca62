# Sourced by the scripts that drive the real program, also those of bench/: lays out the portable folder of a build in a fresh place, and starts
# the course server and the program there.
#   root, build     where the sources are and what was built of them
#   place, stage    where it all happens, and the portable folder in it
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
root="$(cd "$here/../.." && pwd)"

lay_out() { # BUILD_FOLDER PLACE
  build="$(cd "$1" && pwd)"
  rm -rf "$2"
  mkdir -p "$2"
  place="$(cd "$2" && pwd)"
  log="$place/log.txt"
  stage="$place/Vorel"
  cmake --install "$build" --prefix "$stage" >"$log" 2>&1 || { tail "$log"; exit 1; }
  [ "$(id -u)" -eq 0 ] && export QTWEBENGINE_DISABLE_SANDBOX=1
  export QT_MEDIA_BACKEND=ffmpeg
}

# Sets server to its process and address to HOST:PORT; the same port again for a later start.
start_server() { # [OPTIONS...]
  coproc SERVER { exec "$stage/vorel-course-server" --port "${address##*:}" --sample --sample-school 示范大学 \
    --data "$place/CourseServer" --templates "$stage/SysData/VorelTemplates" "$@" 2>>"$log"; }
  server=$SERVER_PID
  read -r line <&"${SERVER[0]}"
  address="${line##* }"
}
address=:0
server=
stop_server() { [ -z "$server" ] || { kill -CONT "$server"; kill "$server"; wait "$server"; } 2>/dev/null || true; server=; }
trap stop_server EXIT

# Runs the program with somebody at its windows; answers whether all went as it should. Nobody's desktop learns of it, and
# no first click goes to the splash.
play() { # PART FOLDER SECONDS [COMMAND THAT GIVES A DISPLAY]
  local part="$1" folder="$2" seconds="$3" display="${4:-$root/scripts/with-display.sh}"
  mkdir -p "$folder"
  rm -f "$folder/part.txt"
  [ -z "${VOREL_JOURNEY_COLD:-}" ] || { sync; echo 3 >/proc/sys/vm/drop_caches; }
  env VOREL_JOURNEY_FOLDER="$folder" VOREL_JOURNEY_PART="$part" VOREL_JOURNEY_SERVER="$server" \
    VOREL_JOURNEY_STATE="$place/CourseServer" XDG_DATA_HOME="$place/data" XDG_CONFIG_HOME="$place/config" \
    QT_PLUGIN_PATH="$build/lib/plugins" QT_QPA_GENERIC_PLUGINS="voreljourney${VOREL_STALLS_FILE:+,vorelstalls}" \
    timeout "$seconds" "$display" "$stage/Vorel" --no-splash >>"$log" 2>&1 || true
  [ "$(cat "$folder/part.txt" 2>/dev/null)" = ok ] && return 0
  cat "$folder/part.txt" 2>/dev/null || echo "the program ended before its time"
  tail -n 30 "$log"
  echo "screenshots: $folder/shots"
  return 1
}
fact() { sed -n "s/^$2: //p" "$1/facts.txt" | tail -n 1; }
