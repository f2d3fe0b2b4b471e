#!/bin/sh
# Usage: scripts/in_root.sh ROOT SHARED... -- COMMAND [ARGUMENT]...
# Runs a command of the system whose root folder is ROOT, in the working folder, with the SHARED folders of this machine
# in their places. They show there to the command and what it starts alone: whoever removes ROOT removes nothing else.
set -e
if [ "$1" != --mount ]; then
    exec unshare --mount "$0" --mount "$@"
fi
root=$2
shift 2
while [ "$1" != -- ]; do
    mkdir -p "$root$1"
    mount --rbind "$1" "$root$1"
    shift
done
shift
exec chroot "$root" env --chdir="$PWD" "$@"
