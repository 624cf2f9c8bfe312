#!/bin/bash
# The part of tools/paketversuch.sh that runs inside of the root, as its first process.
#   paketversuch-innen.sh PORT      of the demo cloud
set -euo pipefail
port=$1
paket=$(echo /versuch/kalvaro_*.deb)
heim=/home/dj
daten=$heim/.local/share/kalvaro
eintrag=$heim/.config/autostart/de.kalvaro.kalvaro.desktop
export DEBIAN_FRONTEND=noninteractive
export LC_ALL=C.UTF-8
cd /

schritt() { echo "✓ $1"; }
scheitern() {
    echo "✗ $1" >&2
    for datei in /versuch/*.log "$daten/kalvaro.log"; do
        [ ! -s "$datei" ] || { echo "── $datei" >&2 && tail -n 25 "$datei" >&2; }
    done
    exit 1
}
muss() { # muss WHAT COMMAND...
    "${@:2}" >/versuch/befehl.log 2>&1 || scheitern "$1"
    schritt "$1"
}
bald() { # bald WHAT COMMAND...: within half a minute
    local i
    for ((i = 0; i < 150; ++i)); do
        if "${@:2}" >/versuch/befehl.log 2>&1; then
            schritt "$1"
            return
        fi
        sleep 0.2
    done
    scheitern "$1"
}
apt() { apt-get -q -y -o Dpkg::Use-Pty=0 "$@" >/versuch/apt.log 2>&1; }

# What is there, but for the user's own files and the records of apt, dpkg and this script.
bestand() {
    find / -xdev \( -path /home/dj -o -path /versuch -o -path /proc -o -path /dev -o -path /tmp \
        -o -path /run -o -path /var/cache -o -path /var/log -o -path /var/lib/apt \
        -o -path /var/lib/dpkg \) -prune -o -print | sort
}

# What the package brings along, without the package: then a list of files tells only of it.
abhaengige() { # abhaengige [OPTION]
    local pakete
    mapfile -t pakete < <(apt-get -s "$@" install "$paket" | sed -n 's/^Inst \([^ ]*\).*/\1/p' |
        grep -vx kalvaro)
    [ ${#pakete[@]} -eq 0 ] || apt "$@" install "${pakete[@]}"
}

# The user's session: a display, a bus, a panel with a tray. What is to last is called with BLEIBT.
alsNutzer() {
    local frist=(timeout -k 1 60)
    [ -z "${BLEIBT:-}" ] || frist=()
    "${frist[@]}" runuser -u dj -- env -i PATH=/usr/local/bin:/usr/bin:/bin HOME=$heim USER=dj LANG=C.UTF-8 \
        XDG_RUNTIME_DIR=/run/dj "${sitzung[@]}" "$@"
}
sitzung=()
sitzungStarten() {
    Xvfb -displayfd 1 -screen 0 1280x1024x24 -nolisten tcp >/versuch/display 2>/versuch/xvfb.log &
    bald "a display" test -s /versuch/display
    sitzung=("DISPLAY=:$(cat /versuch/display)")
    BLEIBT=1 alsNutzer dbus-daemon --session --nofork --print-address=1 \
        >/versuch/bus 2>/versuch/bus.log &
    bald "a session bus" test -s /versuch/bus
    sitzung+=("DBUS_SESSION_BUS_ADDRESS=$(cat /versuch/bus)")
    BLEIBT=1 alsNutzer XFCE_PANEL_MIGRATE_DEFAULT=1 NO_AT_BRIDGE=1 xfce4-panel --disable-wm-check \
        >/versuch/panel.log 2>&1 &
    bald "a panel with a tray" hatName org.kde.StatusNotifierWatcher
}
ruf() { # ruf NAME PATH METHOD [ARGUMENTS...]
    alsNutzer gdbus call --session --timeout 20 -d "$1" -o "$2" -m "$3" "${@:4}"
}
hatName() {
    ruf org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus.NameHasOwner "$1" |
        grep -q true
}
hatNameNicht() { ! hatName "$1"; }
aktivieren() {
    ruf de.kalvaro.kalvaro /de/kalvaro/kalvaro org.freedesktop.Application.Activate '{}'
}
kennzahl() { # the process that owns the name
    ruf org.freedesktop.DBus /org/freedesktop/DBus \
        org.freedesktop.DBus.GetConnectionUnixProcessID de.kalvaro.kalvaro | grep -oE '[0-9]+' |
        tail -n 1
}
laeuftNoch() { [ "$(kennzahl)" = "$1" ]; }
fenster() {
    alsNutzer xwininfo -root -tree |
        sed -n 's/^ *\(0x[0-9a-f]*\) "kalvaro": ("kalvaro" "kalvaro").*/\1/p' | head -n 1
}
fensterDa() {
    local kennung
    kennung=$(fenster)
    [ -n "$kennung" ] && alsNutzer xwininfo -id "$kennung" | grep -q IsViewable
}
protokolliert() { grep -q -- "$1" "$daten/kalvaro.log"; }
wieOft() { grep -c -- "$1" "$daten/kalvaro.log"; }

# The item in the tray, as "name/path", and its menu.
element() {
    ruf org.kde.StatusNotifierWatcher /StatusNotifierWatcher org.freedesktop.DBus.Properties.Get \
        org.kde.StatusNotifierWatcher RegisteredStatusNotifierItems |
        grep -oE "[:.A-Za-z0-9-]+/StatusNotifierItem" | head -n 1
}
elementDa() { [ -n "$(element)" ]; }
menue() { # chooses the row called $1
    local name zeile
    name=$(element)
    name=${name%%/*}
    zeile=$(ruf "$name" /MenuBar com.canonical.dbusmenu.GetLayout -- 0 -1 '[]' |
        grep -oP "\(\K[0-9]+(?=, \{[^}]*'label': <'$1'>)" | head -n 1)
    [ -n "$zeile" ] || return 1
    ruf "$name" /MenuBar com.canonical.dbusmenu.Event "$zeile" clicked "<''>" 0
}

# ── the bare root: only what the package itself asks for
useradd --create-home dj
install -d -o dj -m 700 /run/dj
printf '#!/bin/sh\nexit 101\n' >/usr/sbin/policy-rc.d # no services in a chroot
chmod 755 /usr/sbin/policy-rc.d
install -d -o dj -g dj $heim/.local $heim/.local/share "$daten"
cat >"$daten/konto.json" <<JSON
{"name": "Demo-Mac", "geraet": "demo-mac", "schluessel": "demo-schluessel",
 "server": ["http://127.0.0.1:$port"]}
JSON
chown dj "$daten/konto.json"
chmod 600 "$daten/konto.json"

muss "apt update" apt update
muss "what it depends on" abhaengige --no-install-recommends
bestand >/versuch/vorher
muss "apt install" apt --no-install-recommends install "$paket"
muss "it says its version" grep -qx "kalvaro 1.4" <(alsNutzer kalvaro --version)
alsNutzer QT_QPA_PLATFORM=offscreen kalvaro --bild $heim/bild.png >/versuch/urteil.log 2>&1 ||
    scheitern "it draws a picture: status $?"
muss "it draws a picture" test -s $heim/bild.png
muss "the verdict in it is that of the cloud" grep -qx "Bibliothek ist abgeglichen" /versuch/urteil.log
sed 's/^/    /' /versuch/urteil.log
muss "nothing complains on standard error about a missing part" \
    sh -c '! grep -iE "could not|cannot|failed|missing" /versuch/urteil.log'
muss "it finds Qt's German" test -s /usr/share/qt6/translations/qtbase_de.qm
muss "and what counts processes" test -x /usr/bin/pgrep
muss "apt purge" apt purge kalvaro
bestand >/versuch/nachher
muss "nothing is left but the user's data" diff /versuch/vorher /versuch/nachher

# ── a desktop
muss "the tools of the test" apt install --no-install-recommends xvfb dbus-daemon xfce4-panel \
    x11-utils libglib2.0-bin fonts-dejavu-core
muss "what it recommends" abhaengige
bestand >/versuch/vorher
muss "apt install" apt install "$paket"
dpkg -L kalvaro | while read -r datei; do [ -d "$datei" ] || echo "$datei"; done >/versuch/dateien
sitzungStarten

rm -f "$daten/kalvaro.log"
BLEIBT=1 alsNutzer kalvaro >/versuch/kalvaro.log 2>&1 &
bald "its window is up" fensterDa
bald "it has synced" protokolliert "Abgleich.*vorstart"
sed 's/^/    /' "$daten/kalvaro.log"
muss "its window has an icon" grep -q 'Icon (64 x 64)' \
    <(alsNutzer xprop -id "$(fenster)" _NET_WM_ICON)
muss "window and starter belong together" grep -qx \
    "StartupWMClass=$(alsNutzer xprop -id "$(fenster)" WM_CLASS | sed 's/.*"\(.*\)"$/\1/')" \
    /usr/share/applications/de.kalvaro.kalvaro.desktop
bald "it is in the tray" elementDa
erste=$(kennzahl)
muss "it runs from /usr/bin" test "$(readlink "/proc/$erste/exe")" = /usr/bin/kalvaro
muss "Activate over the bus is answered" aktivieren

muss "„Beim Anmelden starten“ is chosen in its menu" menue "Beim Anmelden starten"
bald "the autostart entry is there" test -s "$eintrag"
muss "it names the installed program" grep -qx 'Exec="/usr/bin/kalvaro" --hintergrund' "$eintrag"
symbol=$(sed -n 's/^Icon=//p' "$eintrag")
muss "and an icon that exists" test -n "$symbol" -a \
    -s "/usr/share/icons/hicolor/scalable/apps/$symbol.svg"

# ── an upgrade while it runs
muss "apt install --reinstall while it runs" apt install --reinstall "$paket"
muss "it still runs" laeuftNoch "$erste"
muss "a second start ends with 0" alsNutzer kalvaro
muss "and reached the first one" laeuftNoch "$erste"
muss "which alone has been started" test "$(wieOft 'gestartet (1.4')" = 1

# ── another start, by the bus, with an entry of a program that has moved
muss "„kalvaro beenden“ is chosen in its menu" menue "kalvaro beenden"
bald "it has ended" hatNameNicht de.kalvaro.kalvaro
sed -i 's,/usr/bin/kalvaro,/opt/alt/kalvaro,' "$eintrag"
muss "the bus starts it" aktivieren
zweite=$(kennzahl)
muss "from /usr/bin" test "$(readlink "/proc/$zweite/exe")" = /usr/bin/kalvaro
bald "its window is up" fensterDa
bald "the autostart entry has followed" grep -qx 'Exec="/usr/bin/kalvaro" --hintergrund' "$eintrag"
kill "$zweite"
bald "it ends when asked to" hatNameNicht de.kalvaro.kalvaro

# ── away
muss "apt remove" apt remove kalvaro
muss "the program's files are gone" sh -c \
    'while read -r datei; do [ ! -e "$datei" ] || { echo "$datei"; exit 1; }; done </versuch/dateien'
muss "the user's data is not" test -s "$daten/konto.json" -a -s "$daten/kalvaro.log" -a -s "$eintrag"
# By now apt may not know it any more, since it came from no archive.
muss "purge" dpkg --purge kalvaro
muss "dpkg does not know it" sh -c '! dpkg -s kalvaro'
bestand >/versuch/nachher
muss "nothing is left but the user's data" diff /versuch/vorher /versuch/nachher
