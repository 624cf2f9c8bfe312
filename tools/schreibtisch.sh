#!/bin/bash
# A whole desktop on a screen that nobody sees, for trying kalvaro by hand. Nothing of it stays.
#   tools/schreibtisch.sh DESKTOP BUILD_FOLDER PICTURES SCRIPT
# DESKTOP is xfce, gnome, plasma, openbox or sway. bash reads SCRIPT on it, which may use
#   kalvaro [ARGUMENT...]  starts the program; $kalvaro is its process id, $protokoll its log
#   foto NAME              the screen as PICTURES/NAME.png
#   dunkel                 the desktop's own switch to dark
# In the environment: GROESSE=1280x800, SZENARIO=abgeglichen (make demo's cloud knows more), DUNKEL=1
# for a session that is dark from its beginning. As root, with the packages of the desktop: xfce4-panel
# xfwm4 xfce4-settings; gnome-shell python3-dbusmock; plasma-workspace plasma-desktop kwin-x11;
# openbox tint2; sway grim; for all of them xvfb dunst xdotool imagemagick xdg-desktop-portal-gtk.
# shellcheck disable=SC1090,SC1091,SC2034,SC2154 # what the scripts read here know and set
set -eu

if [ "${1:-}" != --drinnen ]; then
    exec unshare --pid --mount-proc --fork --kill-child "$0" --drinnen "$@"
fi
if [ "${2:-}" != --am-bus ]; then
    raum=$(mktemp -d)
    trap 'rm -rf "$raum"' EXIT
    mkdir -p "$raum/heim/.config" "$raum/laufzeit" "$raum/daten/kalvaro" "$raum/bilder"
    chmod 700 "$raum/laufzeit"
    chown -R 1000:1000 "$raum" # sway refuses to run as root
    ende=0
    env -u DISPLAY -u WAYLAND_DISPLAY -u XDG_CONFIG_HOME -u QT_QPA_PLATFORM HOME="$raum/heim" \
        XDG_RUNTIME_DIR="$raum/laufzeit" XDG_DATA_HOME="$raum/daten" LANG=C.UTF-8 RAUM="$raum" \
        setpriv --reuid 1000 --regid 1000 --clear-groups \
        dbus-run-session -- "$0" --drinnen --am-bus "$2" "$3" "$5" || ende=$?
    mkdir -p "$4"
    find "$raum/bilder" -name '*.png' -exec cp {} "$4" \;
    exit "$ende"
fi
desktop=$3
bau=$(realpath "$4")
skript=$(realpath "$5")
groesse=${GROESSE:-1280x800}
. "$(dirname "$(realpath "$0")")/democloud.sh"

cloud_starten "$bau/kalvaro-democloud" "${RAUM:?}/cloud" --szenario "${SZENARIO:-abgeglichen}"
cat >"$RAUM/daten/kalvaro/konto.json" <<JSON
{"name": "Demo-Mac", "geraet": "demo-mac", "schluessel": "demo-schluessel",
 "server": ["http://127.0.0.1:$port"]}
JSON
protokoll=$RAUM/daten/kalvaro/kalvaro.log
export KALVARO_APPLICATIONS=$bau/demo/Applications

kalvaro() {
    "$bau/kalvaro" "$@" >>"$RAUM/kalvaro.aus" 2>&1 &
    kalvaro=$!
}

foto() {
    if [ "$desktop" = sway ]; then grim "$RAUM/bilder/$1.png"; else import -window root "$RAUM/bilder/$1.png"; fi
}

bildschirm() {
    Xvfb -displayfd 3 -screen 0 "${groesse}x24" -nolisten tcp 3>"$RAUM/anzeige" 2>/dev/null &
    for _ in $(seq 100); do
        [ ! -s "$RAUM/anzeige" ] || break
        sleep 0.1
    done
    DISPLAY=:$(cat "$RAUM/anzeige")
    export DISPLAY
    # Services that the bus starts shall find the screen.
    dbus-update-activation-environment DISPLAY XDG_CURRENT_DESKTOP
}

im_hintergrund() { # its complaints aside
    "$@" >>"$RAUM/desktop.aus" 2>&1 &
}

case "$desktop" in
xfce)
    export XDG_CURRENT_DESKTOP=XFCE
    dunkel() { xfconf-query -c xsettings -p /Net/ThemeName -n -t string -s Adwaita-dark; }
    bildschirm
    im_hintergrund xfsettingsd --disable-wm-check --no-daemon
    im_hintergrund xfwm4
    im_hintergrund xfce4-panel --disable-wm-check
    im_hintergrund dunst
    ;;
gnome)
    export XDG_CURRENT_DESKTOP=GNOME XDG_SESSION_TYPE=x11
    dunkel() { gsettings set org.gnome.desktop.interface color-scheme prefer-dark; }
    gsettings set org.gnome.shell welcome-dialog-last-shown-version 999
    gsettings set org.gnome.desktop.interface enable-animations false
    bildschirm
    # It asks logind how the session stands.
    dbus-daemon --session --print-address=3 3>"$RAUM/systembus" --nofork >/dev/null 2>&1 &
    for _ in $(seq 100); do
        [ ! -s "$RAUM/systembus" ] || break
        sleep 0.1
    done
    DBUS_SYSTEM_BUS_ADDRESS=$(cat "$RAUM/systembus")
    export DBUS_SYSTEM_BUS_ADDRESS
    im_hintergrund /usr/bin/python3 -m dbusmock --system --template logind
    sleep 1
    im_hintergrund gnome-shell --x11
    sleep 6
    xdotool key Escape # out of the overview, with which a session begins
    ;;
plasma)
    export XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION=5
    dunkel() { plasma-apply-colorscheme BreezeDark; }
    bildschirm
    im_hintergrund kwin_x11
    im_hintergrund kded5
    im_hintergrund plasmashell
    ;;
openbox)
    dunkel() { false; }
    bildschirm
    im_hintergrund openbox
    im_hintergrund tint2
    im_hintergrund dunst
    ;;
sway)
    export XDG_CURRENT_DESKTOP=sway WLR_BACKENDS=headless WLR_RENDERER=pixman \
        WLR_LIBINPUT_NO_DEVICES=1
    dunkel() { gsettings set org.gnome.desktop.interface color-scheme prefer-dark; }
    printf 'output * resolution %s\nbar { position bottom\n tray_output * }\n' "$groesse" \
        >"$RAUM/sway"
    im_hintergrund sway -c "$RAUM/sway"
    for _ in $(seq 100); do
        anzeige=$(find "$XDG_RUNTIME_DIR" -name 'wayland-*' ! -name '*.lock' | head -1)
        [ -z "$anzeige" ] || break
        sleep 0.1
    done
    WAYLAND_DISPLAY=$(basename "$anzeige")
    SWAYSOCK=$(find "$XDG_RUNTIME_DIR" -name 'sway-ipc.*' | head -1)
    export WAYLAND_DISPLAY SWAYSOCK
    dbus-update-activation-environment WAYLAND_DISPLAY XDG_CURRENT_DESKTOP
    ;;
*)
    echo "No desktop of that name: $desktop" >&2
    exit 2
    ;;
esac
[ -z "${DUNKEL:-}" ] || dunkel >>"$RAUM/desktop.aus" 2>&1
sleep "${ANLAUF:-6}"
. "$skript"
