#!/usr/bin/env bash
# Writes the AppInfo.ini that a school delivers: its server's address and its name, so that no question comes first.
# The recent list of an AppInfo.ini that is there already stays.
#   write-appinfo.sh PORTABLE_FOLDER HOST:PORT [SCHOOL]
set -euo pipefail
ini="$1/AppInfo.ini"
recent=""
[ -f "$ini" ] && recent="$(iconv -f GB18030 -t UTF-8 "$ini" | sed -n '/^\[VorelRecentProject\]/,$p')"
printf '[SysInfo]\r\nServerURL=http://%s\r\nProvince=0\r\nSchoolName=%s\r\n%s' "$2" "${3:-示范大学}" "$recent" |
  iconv -f UTF-8 -t GB18030 >"$ini.new"
mv "$ini.new" "$ini"
