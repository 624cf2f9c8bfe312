# shellcheck shell=sh
# For scripts, to be read with ".": what in a bundle is code.

# machos APP: each file that begins like a Mach-O of 64 bits or one for several processors, a line each.
machos() {
    find "$1/Contents" -type f | sort | while IFS= read -r datei; do
        case "$(head -c 4 "$datei" | od -An -tx1 | tr -d ' \n')" in
        cffaedfe | cafebabe | cafebabf) echo "$datei" ;;
        esac
    done
}
