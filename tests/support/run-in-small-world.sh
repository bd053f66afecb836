#!/bin/sh
# Runs a command in a mount namespace of its own (unshare --mount) in which
# the file system holds the system's programs, libraries, settings and data
# (/usr/bin, /usr/lib/<arch>, /etc, /var, /dev) and the given paths, and
# nothing else: every other folder at the top and in /usr is an empty tmpfs,
# and /proc shows only the namespace's processes. A run that walks the file
# system from its root, as the tool does with an empty root folder, then
# walks the same short tree on every machine, however many checkouts and
# builds lie in /tmp, /work or /usr/local.
#
#   run-in-small-world.sh KEPT_PATH... -- COMMAND [ARGUMENT...]
set -eu
kept=""
while [ $# -gt 0 ] && [ "$1" != "--" ]; do
  kept="$kept $1"
  shift
done
[ $# -gt 1 ] || { echo "usage: $0 KEPT_PATH... -- COMMAND [ARGUMENT...]" >&2; exit 2; }
shift

mount --make-rprivate /
# The kept paths wait on a tmpfs of their own at /mnt while the others cover
# their top-level folders, then move to where they were.
mount -t tmpfs -o mode=0755 kept /mnt
index=0
for path in $kept; do
  mkdir -p "/mnt/$index"
  mount --bind "$path" "/mnt/$index"
  index=$((index + 1))
done
# Of /usr only the programs and the libraries of this machine's kind stay.
multiarch=/usr/lib/$(uname -m)-linux-gnu
for folder in /* /usr/* /usr/lib/*; do
  [ -d "$folder" ] && [ ! -L "$folder" ] || continue
  case "$folder" in
    /usr | /bin | /sbin | /lib | /lib32 | /lib64 | /libx32 | /etc | /var | /dev | /proc | /mnt) continue ;;
    /usr/bin | /usr/sbin | /usr/lib | /usr/lib64 | /usr/libexec | "$multiarch") continue ;;
    /tmp) mode=1777 ;;
    *) mode=0755 ;;
  esac
  mount -t tmpfs -o "mode=$mode" hidden "$folder"
done
index=0
for path in $kept; do
  mkdir -p "$path"
  mount --move "/mnt/$index" "$path"
  index=$((index + 1))
done
umount /mnt
mount -t tmpfs -o mode=0755 hidden /mnt
exec "$@"
