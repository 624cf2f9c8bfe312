# For scripts, to be read with ".": starts a demo cloud and waits until it answers.

# cloud_starten PROGRAM OUTPUT [OPTION...]: sets cloud (process id) and port; fails when the cloud
# ended, or has not said its port within a minute.
cloud_starten() {
    cloud_ausgabe=$2
    cloud_programm=$1
    shift 2
    : >"$cloud_ausgabe" # read below, perhaps before the background shell has made it
    "$cloud_programm" --port 0 "$@" >"$cloud_ausgabe" 2>&1 &
    cloud=$!
    for _ in $(seq 600); do
        port=$(sed -n 's/^port=\([0-9]\{1,\}\)$/\1/p' "$cloud_ausgabe")
        [ -z "$port" ] || return 0
        kill -0 "$cloud" 2>/dev/null || break
        sleep 0.1
    done
    echo "The demo cloud did not start: $(cat "$cloud_ausgabe")" >&2
    return 1
}

# Ends it and waits until it is gone.
cloud_beenden() {
    [ -n "${cloud:-}" ] || return 0
    kill "$cloud" 2>/dev/null || true
    wait "$cloud" 2>/dev/null || true
    cloud=""
}
