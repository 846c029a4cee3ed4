#!/usr/bin/env bash
# Fails when an #include goes against the layers: store <- core <- ui <- each area's logic <- each
# area's screens <- app. Every folder may include itself; the table says what else it may include.
# Areas call one another's logic only downwards (payments <- sales <- expenses <- books <- tools <-
# output), so no two areas include each other; screens never include another area's screens.
set -euo pipefail
cd "$(dirname "$0")/.."

declare -A consentiti=(
  [store]="store"
  [core]="store"
  [ui]="store core"
  [payments]="store core"
  [sales]="store core payments"
  [expenses]="store core payments sales"
  [books]="store core payments sales expenses"
  [tools]="store core payments sales expenses books"
  [output]="store core payments sales expenses books tools"
  [apps]="store"
)
aree="payments sales expenses books tools output"
for a in $aree; do consentiti[$a/screens]="${consentiti[$a]} ui $a"; done
consentiti[app]="*"
consentiti[app/screens]="*"

# The folder a file or an included path belongs to, as the table names it.
livello() {
  case "$1" in
    */screens/*) echo "${1%%/screens/*}/screens" ;;
    *) echo "${1%%/*}" ;;
  esac
}

errori=0
while IFS= read -r file; do
  da=$(livello "$file")
  [ -n "${consentiti[$da]+x}" ] || continue
  permessi=" ${consentiti[$da]} $da "
  while IFS=: read -r riga incluso; do
    verso=$(livello "$incluso")
    [ -n "${consentiti[$verso]+x}" ] || continue
    if [ "${consentiti[$da]}" != "*" ] && [[ "$permessi" != *" $verso "* ]]; then
      echo "$file:$riga: $da non può includere $incluso"
      errori=$((errori + 1))
    fi
    if [ "$da" = ui ] && [ "$incluso" = core/session.h ]; then
      echo "$file:$riga: il kit dello schermo non conosce la sessione ($incluso)"
      errori=$((errori + 1))
    fi
  done < <(grep -n -o -E '^#include "[^"]+"' "$file" | sed -E 's/^([0-9]+):#include "(.*)"$/\1:\2/')
  # The core and the areas' logic are plain C++: no widget headers.
  case "$da" in
    store|core|payments|sales|expenses|books|tools|output)
      if grep -n -E '^#include <Q' "$file" >/dev/null; then
        echo "$file: $da non usa Qt"
        errori=$((errori + 1))
      fi ;;
  esac
done < <(git ls-files '*.cpp' '*.h' | grep -v -E '^(tests|bench|fuzz)/')

if [ "$errori" -gt 0 ]; then
  echo "$errori inclusioni contro i livelli"
  exit 1
fi
echo "livelli rispettati"
