#!/usr/bin/env bash
# Usage: scripts/make_wine32.sh FOLDER SHARED...
# Makes a small 32-bit Debian with wine in FOLDER, for machines whose own packages leave no room for a 32-bit wine, and
# in FOLDER/bin the commands wine32 and wineserver, which run there on the SHARED folders of this machine; they are called
# in one of these. Only root can make and run it. What an earlier run has made is used again.
set -euo pipefail
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
. "$source_dir/scripts/common.sh"

folder=$1
root=$folder/debian
shift
[ "$(id -u)" -eq 0 ] || die 'Only root can make it.'
unshare --mount true || die 'This machine does not allow mounts.'
if [ ! -e "$folder/complete" ]; then
    require_packages build wine32
    # From where this machine's own packages come. The main part of Debian is enough to try programs.
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Identifier: Packages' 'Codename: bookworm' | sed -n 1p)
    [ -n "$mirror" ] || die 'apt knows no place that has Debian 12.'
    rm -rf "$root"
    mkdir -p "$folder/bin"
    mmdebstrap --arch=i386 --variant=essential --include=wine32 bookworm "$root" "$mirror" >"$folder/log" 2>&1 || {
        tail -n 5 "$folder/log" >&2
        die 'The 32-bit Debian cannot be made.'
    }
    touch "$folder/complete"
fi

# write_command NAME PROGRAM SHARED...
write_command() {
    printf '#!/usr/bin/env bash\nexec %q %q /proc /dev /tmp %s -- %s "$@"\n' "$source_dir/scripts/in_root.sh" "$root" \
        "$(printf '%q ' "${@:3}")" "$2" >"$folder/bin/$1"
    chmod +x "$folder/bin/$1"
}
write_command wine32 /usr/lib/wine/wine "$@"
write_command wineserver /usr/lib/wine/wineserver32 "$@"
(cd "$1" && "$folder/bin/wine32" --version >/dev/null) || die 'The 32-bit wine does not run here.'
