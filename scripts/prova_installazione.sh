#!/usr/bin/env bash
# Builds the .deb from a built tree, installs it into a scratch root, checks its files and its
# declared dependencies, then starts the installed program under Xvfb as a user who cannot write
# into the program folder: it must come up and seed that user's own folder.
# Usage: scripts/prova_installazione.sh BUILD_DIR
set -euo pipefail
build=$(realpath "$1")
scratch=$(mktemp -d)
xpid=""
cleanup() {
  [ -n "$xpid" ] && kill "$xpid" 2>/dev/null || true
  rm -rf "$scratch"
}
trap cleanup EXIT
chmod 755 "$scratch"
fail() { echo "FAIL: $*" >&2; exit 1; }

cpack --config "$build/CPackConfig.cmake" -B "$scratch/pacchetto" >"$scratch/cpack.log" 2>&1 || { cat "$scratch/cpack.log"; fail "cpack"; }
deb=$(ls "$scratch"/pacchetto/*.deb)
depends=$(dpkg-deb -f "$deb" Depends)
for d in libqt6widgets6 libsqlite3 tango-icon-theme; do
  [[ "$depends" == *"$d"* ]] || fail "dipendenza $d non dichiarata: $depends"
done

root="$scratch/root"
dpkg-deb -x "$deb" "$root"
lib="$root/usr/lib/brevano"
for f in brevano Servizio.mdb temp.mdb "Utilità.mdb" Italiano.lng Base/Aziende.mdb Fatture.rpf guida/index.html; do
  [ -f "$lib/$f" ] || fail "manca $f"
done
[ "$(readlink -f "$root/usr/bin/brevano")" = "$(readlink -f "$lib/brevano")" ] || fail "usr/bin/brevano"
grep -q '^Exec=brevano$' "$root/usr/share/applications/brevano.desktop" || fail "voce di menu"
grep -q '^Icon=brevano$' "$root/usr/share/applications/brevano.desktop" || fail "voce di menu"
[ -f "$root/usr/share/icons/hicolor/scalable/apps/brevano.svg" ] || fail "icona"

# A user who cannot write into the program folder: nobody when run as root, else this user with
# the folder made read-only.
home="$scratch/home"
mkdir -p "$home"
if [ "$(id -u)" -eq 0 ]; then
  chown nobody "$home"
  come=(runuser -u nobody --)
else
  chmod -R a-w "$lib"
  come=()
fi

exec 3>"$scratch/display"
Xvfb -displayfd 3 -nolisten tcp -screen 0 1024x768x24 >/dev/null 2>&1 &
xpid=$!
exec 3>&-
for _ in $(seq 50); do [ -s "$scratch/display" ] && break; sleep 0.1; done
display=$(cat "$scratch/display")
[ -n "$display" ] || fail "Xvfb"

set +e
timeout 8 "${come[@]}" env -i HOME="$home" DISPLAY=":$display" PATH=/usr/bin:/bin LANG=C.UTF-8 \
  "$root/usr/bin/brevano" >"$scratch/programma.log" 2>&1
esito=$?
set -e
# Still running at the end of the wait (the first-run screen is up): 124.
[ "$esito" -eq 124 ] || { cat "$scratch/programma.log"; fail "il programma è terminato con $esito"; }
utente="$home/.local/share/Brevano"
for f in Servizio.mdb temp.mdb "Utilità.mdb" Italiano.lng Base/Aziende.mdb Fatture.rpf guida/index.html; do
  [ -f "$utente/$f" ] || fail "cartella dell'utente senza $f"
done
[ ! -e "$lib/brevano.lock" ] || fail "il programma ha scritto nella cartella installata"
echo "pacchetto $(basename "$deb"): installato e avviato"
