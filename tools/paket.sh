#!/bin/sh
# Builds the Debian package in build/paket and looks it over. Two builds of one commit give the same
# bytes, wherever they lie and whenever they are made.
set -eu
cd "$(dirname "$0")/.."

# The time of the commit; outside of git, of the package's changelog.
zeit=$(git log -1 --format=%ct 2>/dev/null ||
    dpkg-parsechangelog -l packaging/debian/changelog -S Timestamp)
export SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-$zeit}"
export LC_ALL=C.UTF-8 TZ=UTC
umask 022
mkdir -p build

# Debian's hardening; without debug symbols, which nobody would get. Its paths are those of the
# folder that it is called in.
export DEB_BUILD_MAINT_OPTIONS="hardening=+all reproducible=+all optimize=-lto"
export DEB_CXXFLAGS_MAINT_STRIP="-g -O2"
CXXFLAGS="$(dpkg-buildflags --get CXXFLAGS) $(dpkg-buildflags --get CPPFLAGS)"
LDFLAGS="$(dpkg-buildflags --get LDFLAGS) -Wl,--as-needed"
export CXXFLAGS LDFLAGS

tools/bauen.sh paket kalvaro >build/paket-bau.log 2>&1 || {
    tail -n 60 build/paket-bau.log >&2
    exit 1
}
rm -rf build/paket/_CPack_Packages build/paket/kalvaro_*.deb
(cd build/paket && cpack >cpack.log 2>&1) || {
    cat build/paket/cpack.log >&2
    exit 1
}
paket=$(echo build/paket/kalvaro_*.deb)
tools/paketpruefung.sh "$paket"
echo "Package: $paket"
