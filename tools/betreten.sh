#!/bin/sh
# Runs a command in a root folder that holds a whole system, as that system's own: with its own
# mounts and processes, which end with the command. Only the network is this machine's. Unlike in a
# chroot, users in it can make namespaces, as the tests do. Needs root.
#   tools/betreten.sh ROOT COMMAND...
set -eu
wurzel=$(cd "$1" && pwd)
shift
cat /etc/resolv.conf >"$wurzel/etc/resolv.conf"
cat /etc/hosts >"$wurzel/etc/hosts"

export KALVARO_WURZEL_PFAD="$wurzel"
exec unshare --mount --pid --ipc --uts --fork --kill-child sh -c '
    set -eu
    cd "$KALVARO_WURZEL_PFAD"
    mount --bind . .
    cd "$KALVARO_WURZEL_PFAD"
    mount -t proc proc proc
    mount -t tmpfs -o mode=755 dev dev
    for geraet in null zero full random urandom tty; do
        : >"dev/$geraet"
        mount --bind "/dev/$geraet" "dev/$geraet"
    done
    mkdir dev/pts dev/shm
    mount -t devpts -o newinstance,ptmxmode=0666,mode=620 devpts dev/pts
    mount -t tmpfs -o mode=1777 shm dev/shm
    mount -t tmpfs -o mode=1777 tmp tmp
    ln -s pts/ptmx dev/ptmx
    ln -s /proc/self/fd dev/fd
    ln -s fd/0 dev/stdin
    ln -s fd/1 dev/stdout
    ln -s fd/2 dev/stderr
    mkdir -p .vorher
    pivot_root . .vorher
    umount -l /.vorher
    rmdir /.vorher
    cd /
    exec env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        HOME=/root LANG=C TERM=dumb "$@"' sh "$@"
