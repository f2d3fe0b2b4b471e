#!/usr/bin/env bash
# Usage: packaging/try_packages.sh BUILD WORK
# Makes the packages of BUILD, a build tree of the preset package, has lintian judge them, installs them on a clean Debian
# in WORK and runs what they bring. As another user than root, and where no clean Debian can be made, it says so and
# unpacks them instead. A clean Debian that an earlier run has made is used again.
set -euo pipefail
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
build=$1 work=$2
mkdir -p "$work"
rm -rf "$work/packages" "$work/root"
cpack --config "$build/CPackConfig.cmake" -B "$work/packages" >"$work/cpack.log" 2>&1 || { cat "$work/cpack.log" >&2; exit 1; }
mapfile -t packages < <(find "$work/packages" -maxdepth 1 -name '*.deb' | sort)
[ ${#packages[@]} -eq 3 ] || { echo "There are ${#packages[@]} packages, not 3." >&2; exit 1; }

lintian --allow-root --fail-on error "${packages[@]}"

make_debian() {
    [ ! -e "$work/debian/complete" ] || return 0
    [ "$(id -u)" -eq 0 ] || { echo 'Not root.'; return 1; }
    rm -rf "$work/debian"
    debootstrap --variant=minbase --include=ca-certificates bookworm "$work/debian" >"$work/debootstrap.log" 2>&1 ||
        { tail -n 5 "$work/debootstrap.log"; return 1; }
    touch "$work/debian/complete"
}

if make_debian; then
    cp -a "$work/debian" "$work/root"
    cp "${packages[@]}" "$work/root/tmp"
    chroot "$work/root" sh -c 'apt-get update -q && DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends /tmp/*.deb' \
        >"$work/install.log" 2>&1 || { tail -n 20 "$work/install.log" >&2; exit 1; }
    cp "$source_dir/examples/vibration-recorder.json" "$work/root/tmp"
    run() { chroot "$work/root" "$@"; }
    design=/tmp/vibration-recorder.json
else
    echo 'The packages are unpacked, not installed.'
    mkdir "$work/root"
    for package in "${packages[@]}"; do dpkg-deb -x "$package" "$work/root"; done
    libraries=$(dirname "$(find "$work/root" -name 'libQuillUtils70.so.*' | head -n 1)")
    run() { LD_LIBRARY_PATH=$libraries "$work/root/usr/bin/$@"; }
    design=$source_dir/examples/vibration-recorder.json
fi
expected=$("$build/bin/quill" pages "$source_dir/examples/vibration-recorder.json")
[ "$(run quill pages "$design")" = "$expected" ] || { echo 'The installed program prints something else.' >&2; exit 1; }
for file in usr/include/quillutils70/pages/page_traverser.h; do
    [ -e "$work/root/$file" ] || { echo "$file is not installed." >&2; exit 1; }
done
printf 'good: %s\n' "${packages[@]##*/}"
