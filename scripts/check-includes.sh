#!/usr/bin/env bash
# Fails on an include that goes up a floor, on a window in a logic folder, and on a circle between folders (which
# would need one of the two). Run from anywhere; reads tracked and new files.
set -euo pipefail
cd "$(dirname "$0")/.."

git ls-files -co --exclude-standard -- '*.h' '*.cpp' | awk '
  # The floors, from the ground up. A folder may include itself and what has a smaller number.
  BEGIN {
    floor["platform/base"] = 1;  floor["foundation"] = 2
    floor["office"] = 2.5
    floor["course"] = 3;         floor["platform/ui"] = 3;   floor["course/ui"] = 4
    # Below the companions, which write and read the same files of lectures.
    floor["video"] = 3.2
    floor["server"] = 5;         floor["server/ui"] = 6
    floor["content"] = 7;        floor["content/ui"] = 8
    floor["editor"] = 9;         floor["editor/ui"] = 10
    floor["video/ui"] = 12
    floor["app"] = 13;           floor["app/ui"] = 14
    # Programs of their own: the companions on foundation/ and course/ alone; the course server shares the wording of
    # its protocol with the client.
    floor["companions"] = 3.5;   floor["courseserver"] = 5.5
    # A companion may have windows of its own, apart from its logic; those of the application stay out,
    # and what it takes from the platform belongs to none of them.
    floor["companions/ui"] = 3.6
    floor["tests"] = 99;         floor["bench"] = 99
    logicOnly = "^(foundation|office|course|server|content|editor|video|app|platform/base|companions|courseserver)$"
  }
  function room(path,   parts, n) {
    n = split(path, parts, "/")
    if (n < 2) return ""
    if (parts[1] == "companions" && n > 3 && parts[3] == "ui") return "companions/ui"
    if (n > 2 && (parts[1] "/" parts[2]) in floor) return parts[1] "/" parts[2]
    return parts[1]
  }
  {
    file = $0; from = room(file)
    if (!(from in floor)) next
    while ((getline line < file) > 0) {
      if (match(line, /^[ \t]*#[ \t]*include[ \t]*"[^"]+"/)) {
        split(line, quoted, "\""); to = room(quoted[2])
        if (!(to in floor)) {
          if (index(quoted[2], "/") == 0 && quoted[2] !~ /\.moc$|^moc_|^ui_/ && floor[from] < 99) {
            print file ": write \"" quoted[2] "\" from the root of the repository"; bad = 1
          }
          continue
        }
        if (to != from && floor[to] >= floor[from]) {
          print file ": " from " may not include " to " (" quoted[2] ")"; bad = 1
        }
        if (from ~ /^(companions|courseserver)/ && to != from && to ~ /\/ui$/ &&
            !(from == "companions/ui" && to == "platform/ui")) {
          print file ": " from " has no windows (" quoted[2] ")"; bad = 1
        }
      } else if (from ~ logicOnly &&
                 line ~ /^[ \t]*#[ \t]*include[ \t]*<(QWidget|QApplication|QDialog|QGui|QPixmap|QIcon|QImage|QPainter|QMessageBox|QWeb|QtWidgets|QtGui|QtWebEngine)/) {
        print file ": no window library in " from " (" line ")"; bad = 1
      }
    }
    close(file)
  }
  END { exit bad }
'
echo "includes: no folder looks up"
