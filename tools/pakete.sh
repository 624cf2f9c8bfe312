#!/bin/sh
# Installs the Debian packages that a step needs and that are missing; says what it installs.
#   tools/pakete.sh bauen|testen|pruefen|messen|paket
# "a|b" is whichever of them this release has: names differ between Debian 12, 13 and Ubuntu 24.04.
set -eu

bauen="cmake ninja-build g++ pkg-config qt6-base-dev qt6-svg-dev|libqt6svg6-dev
       qt6-translations-l10n libicu-dev libplist-dev|libplist-2.0-dev libexpected-dev
       libcpp-httplib-dev libcurl4-openssl-dev libssl-dev libxcb1-dev zlib1g-dev procps util-linux fonts-inter ca-certificates"
testen="$bauen appstream at-spi2-core dbus dbus-daemon desktop-file-utils dunst fonts-dejavu-core groff
        hicolor-icon-theme icnsutils imagemagick libglib2.0-bin libplist-utils mount openbox openssl optipng python3-dbus
        python3-dbusmock python3-gi python3-pyatspi qt6-svg-plugins|libqt6svg6 qt6-wayland weston x11-utils xauth xdotool xfce4-panel xfwm4 xvfb"
pruefen="$testen clang clang-format clang-tidy gcovr libblocksruntime-dev libclang-rt-dev libgnustep-gui-dev"
messen="$bauen dbus-daemon fonts-dejavu-core mount python3-dbus python3-gi valgrind xauth xdotool xvfb"
packen="$bauen appstream desktop-file-utils dpkg-dev file groff lintian"

case "${1:-}" in
bauen) pakete=$bauen ;;
testen) pakete=$testen ;;
pruefen) pakete=$pruefen ;;
messen) pakete=$messen ;;
paket) pakete=$packen ;;
*)
    echo "Usage: tools/pakete.sh bauen|testen|pruefen|messen|paket" >&2
    exit 2
    ;;
esac

da() { # PACKAGE: it is installed
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

bekannt() { # PACKAGE: this release has it, as far as apt's lists tell
    apt-cache show --no-all-versions "$1" 2>/dev/null | grep -q '^Package:'
}

# Of each entry the first name that is installed or to be had.
fehlend() {
    for eintrag in $pakete; do
        namen=$(echo "$eintrag" | tr '|' ' ')
        wahl=${namen%% *}
        for paket in $namen; do
            if da "$paket"; then
                wahl=""
                break
            elif bekannt "$paket"; then
                wahl=$paket
                break
            fi
        done
        [ -z "$wahl" ] || printf '%s ' "$wahl"
    done
}

if ! command -v dpkg-query >/dev/null 2>&1 || ! command -v apt-get >/dev/null 2>&1; then
    # Not a Debian: what is needed may be there under other names, so only say so.
    if command -v cmake >/dev/null 2>&1 && command -v ninja >/dev/null 2>&1 &&
        [ -n "${KALVARO_PAKETE_VORHANDEN:-}" ]; then
        exit 0
    fi
    echo "kalvaro is built on Debian 12 and 13. This system has no apt-get; please install what" >&2
    echo "these Debian packages bring (a|b: whichever there is):" >&2
    echo "  $(echo $pakete)" >&2
    echo "and call make again with KALVARO_PAKETE_VORHANDEN=1." >&2
    exit 1
fi

noetig=$(fehlend)
[ -n "$noetig" ] || exit 0

alsRoot=""
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
        echo "These packages are missing, and without root or sudo they cannot be installed:" >&2
        echo "  $noetig" >&2
        echo "Please have them installed: apt-get install $noetig" >&2
        exit 1
    fi
    alsRoot="sudo"
fi

echo "Installing: $noetig"
# Several calls at once wait for each other; dpkg's own lock also for others who install.
warten="-o DPkg::Lock::Timeout=600 -o Acquire::Retries=3"
protokoll=$(mktemp)
trap 'rm -f "$protokoll"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
versuch=0
installieren() {
    $alsRoot env LC_ALL=C apt-get $warten update -q || return 1
    noetig=$(fehlend) # only now do the lists tell which names this release has
    $alsRoot env LC_ALL=C DEBIAN_FRONTEND=noninteractive \
        apt-get $warten install -q -y --no-install-recommends $noetig
}
until installieren >"$protokoll" 2>&1; do
    versuch=$((versuch + 1))
    # The lists' lock knows no waiting, so another apt-get may be in the way.
    if [ "$versuch" -ge 120 ] || ! grep -q 'Could not get lock' "$protokoll"; then
        tail -n 20 "$protokoll" >&2
        echo "The packages could not be installed (see above)." >&2
        exit 1
    fi
    sleep 5
done
