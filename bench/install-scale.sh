#!/usr/bin/env bash
# How the time of `SuiteDeployer --install` grows with the suite root, against
# the plainest way to the same end state, measured in the same run: a shell
# script of cp, symbolic links, chmod and rm that plain_install.py writes from
# the tool's own result (see there).
#
# For each size three fresh machines with a Photoshop, an Elements and a
# Lightroom get the same suite root from make_suite_root, grown to that many
# files by grow-suite-root.sh (plug-ins, module files, pictures, application
# data and a few executables in a fixed mix). On the first, all twelve
# products are installed, in language 1, into the hosts that the report (the
# tool without option) finds; the plain script, written from that result,
# then brings the second machine to the same end state, in the order in which
# the tool must copy and remove, and the machines are compared (the run stops
# if they differ). The third machine gets the plain script that removes only
# after all copies: against it the order's own cost shows, which no
# implementation of the tool can avoid. Each size runs RUNS times,
# each time on fresh machines; the table shows the medians, the highest peak
# resident memory of the tool, and how the time grows from one size to the
# next against the number of files (linear growth gives the same factor in
# both columns). For the last run of each size the tool's log splits its time
# into the steps of the installation. The last lines are the figures for
# bench/all.sh: figure|baseline|ratio|goal.
#
#   bench/install-scale.sh                      # 1,000, 4,000, 16,000 and 64,000 files, 3 runs each
#   SIZES="1000 8000" RUNS=5 bench/install-scale.sh
#   BUILD_DIR=/tmp/other-build bench/install-scale.sh   # build and measure there
#   KEEP_MACHINES=1 bench/install-scale.sh      # leave the machines for a look
#   TMPDIR=/dev/shm bench/install-scale.sh      # machines on tmpfs
#   FRESH_FS=1 bench/install-scale.sh           # a new file system for each run (root)
#   FRESH_FS=journal bench/install-scale.sh     # the same, always with a journal
#   SUITEDEPLOYER_PROGRAM=/old/build/SuiteDeployer bench/install-scale.sh   # measure another build of the tool
#
# The wall times depend on the file system of the machines as much as on the
# tool: the configuration files that the tool writes are synced to the disk,
# and an ext4 without a journal makes new inodes slowly for a minute after
# many files were deleted (the tool deletes the suite root's pictures,
# application data and shared module). The header names the file system; the
# CPU column and a run on tmpfs show the tool's own share.
set -euo pipefail
source "$(dirname "$0")/../scripts/bootstrap.sh"
source "$SUITEDEPLOYER_ROOT/scripts/machine.sh"

ensure_packages "${BUILD_PACKAGES[@]}" time jq python3
SUITEDEPLOYER_BUILD=${BUILD_DIR:-$SUITEDEPLOYER_BUILD}
build_project >/dev/null

export LC_NUMERIC=C
read -r -a sizes <<<"${SIZES:-1000 4000 16000 64000}"
runs=${RUNS:-3}
deployer=${SUITEDEPLOYER_PROGRAM:-$SUITEDEPLOYER_BUILD/src/installer/utils/SuiteDeployer}
catalogue="$SUITEDEPLOYER_ROOT/src/installer/utils/resources/PluginsConfiguration.json"
products=$(jq -c '[.Defaults[].ProductName]' "$catalogue")
logs_tail="home/.config/Tavrin/Orv Collection/logs"

# Nothing is deleted before the end, the plain script's machines neither: on an ext4
# without a journal a new inode passes over those freed in the last minute, so
# a large deletion slows down the file creation that follows it.
machines=()
file_systems=()
measures=$(mktemp -d "${TMPDIR:-/tmp}/install-scale.XXXXXX")
cleanup() {
  local machine file_system
  rm -rf "$measures"
  if [ -n "${KEEP_MACHINES:-}" ]; then
    [ ${#machines[@]} -eq 0 ] || printf 'machine left in place: %s\n' "${machines[@]}" >&2
    return
  fi
  for file_system in "${file_systems[@]}"; do drop_file_system "$file_system"; done
  for machine in "${machines[@]}"; do rm -rf "$machine"; done
}
trap cleanup EXIT

# With FRESH_FS=1 the three machines of each run lie on an ext4 of their own,
# made for the run in a sparse file beside the measures and mounted through a
# loop device (this needs root). Without, a new inode's cost on an ext4
# without a journal depends on what was deleted near it in the last minutes,
# by anything on the machine: the figures then tell the file system's history
# as much as the tool. The new file system has a journal when the one that
# holds it has one (FRESH_FS=journal: always), and its inode tables are left
# unwritten (a sparse file reads as zeros), so that no zeroing runs behind the
# measures.
if [ -n "${FRESH_FS:-}" ]; then
  [ "$(id -u)" -eq 0 ] || { echo "FRESH_FS=1 mounts file systems: run as root" >&2; exit 1; }
  ensure_packages e2fsprogs mount
fi

# new_file_system: mounts a fresh file system for one run; machines_folder
# names its folder then.
machines_folder=${TMPDIR:-/tmp}
new_file_system() {
  local folder journal=
  folder=$(mktemp -d "${TMPDIR:-/tmp}/install-scale-fs.XXXXXX")
  file_systems+=("$folder")
  case $FRESH_FS:$(file_system "$folder") in journal:*) ;; *", no journal)") journal="-O ^has_journal" ;; esac
  truncate -s 32G "$folder/image"
  # shellcheck disable=SC2086 # no option or one
  mkfs.ext4 -q -F $journal -E lazy_itable_init=1,lazy_journal_init=1 "$folder/image"
  mkdir "$folder/mount"
  mount -o loop,noinit_itable "$folder/image" "$folder/mount"
  machines_folder=$folder/mount
  fs="$(file_system "$machines_folder"), made for each run in a file on $(file_system "$folder")"
  kind="fresh $(file_system_kind "$machines_folder")"
}

drop_file_system() {
  local folder=$1
  if mountpoint -q "$folder/mount"; then umount "$folder/mount"; fi
  rm -rf "$folder"
}

# timed OUT MACHINE COMMAND...: runs the command on the machine, from its
# folder, under GNU time, after the disk has caught up with earlier writes.
# OUT.time gets GNU time's report and OUT "wall user sys peak-KiB start end",
# the wall time taken by the shell to the microsecond.
timed() {
  local out=$1 machine=$2 start end status=0
  shift 2
  sync
  start=$EPOCHREALTIME
  (cd "$machine" && run_on_machine "$machine" /usr/bin/time -v -o "$out.time" "$@" >"$out.stdout" 2>"$out.stderr") ||
    status=$?
  end=$EPOCHREALTIME
  if [ "$status" -ne 0 ]; then
    echo "failed: $*" >&2
    cat "$out.stderr" "$out.time" >&2
    return 1
  fi
  awk -v start="$start" -v end="$end" -F': ' '
    /User time/ { user = $2 } /System time/ { sys = $2 } /Maximum resident set size/ { rss = $2 }
    END { printf "%.6f %s %s %s %s %s\n", end - start, user, sys, rss, start, end }' "$out.time" >"$out"
}

# Files and links on the machine outside the suite root and the tool's logs.
machine_entries() {
  find "$1" \( -path "$1/suite" -o -path "$1/$logs_tail" \) -prune -o \( -type f -o -type l \) -print | wc -l
}

# The epoch seconds of a log line's time stamp, "[2024-03-09 14:05:33.123] ...".
stamp_seconds() {
  local stamp=${1:1:23}
  date -d "$stamp" +%s.%N
}

# steps LOG START END: the seconds of each step of one installation. A step
# runs from its first log line to the first line of the next one: the start-up
# from the process start, each host in the order of the request, the
# configuration files, the global file with the start-menu links, and last the
# pictures and the application data, which log nothing, up to the process end.
steps() {
  local log=$1 start=$2 end=$3 line previous_name name
  local -a names=() marks=()
  while IFS= read -r line; do
    case $line in
      *"Logger 'app' registered"*) name="start-up" ;;
      *"] Installing PS(E) plugin "*" to "*"/Program Files/Common Files/"*) name="Photoshop" ;;
      *"] Installing PS(E) plugin "*" to "*"/Photoshop Elements "*) name="Elements" ;;
      *"] Installing lightroom module plugin "*"/PluginParam.lrplugin to "*) name="Lightroom" ;;
      *"] Text file created "*"/suite/"*".cfg with content"*) name="configuration files" ;;
      *"] Text file created "*"/ProgramData/"*) name="global file, start menu" ;;
      *) continue ;;
    esac
    [ "$name" = "${previous_name:-}" ] && continue
    names+=("$name")
    marks+=("$(stamp_seconds "$line")")
    previous_name=$name
  done < <(grep -a -E "registered|Installing PS\(E\) plugin|Installing lightroom module plugin|Text file created" "$log")
  names[0]="start-up"
  marks[0]=$start
  names+=("pictures, application data")
  marks+=("$(stamp_seconds "$(grep -a "^\\[" "$log" | tail -n 1)")")
  marks+=("$end")
  local i
  for ((i = 0; i < ${#names[@]}; i++)); do
    awk -v name="${names[i]}" -v from="${marks[i]}" -v to="${marks[i + 1]}" \
      'BEGIN { printf "         %-28s %8.3f s\n", name, to - from }'
  done
}

# The device and type of the file system that holds the folder, for an ext4
# with whether it has a journal (the kernel lists the journals it runs).
file_system() {
  local source type journal=
  read -r source type < <(df --output=source,fstype "$1" | tail -n 1)
  if [ "$type" = ext4 ]; then
    if compgen -G "/proc/fs/jbd2/${source#/dev/}-*" >/dev/null; then journal=", journal"; else journal=", no journal"; fi
  fi
  echo "$source ($type$journal)"
}

# The type with the journal, without the device: "ext4, no journal", "tmpfs".
file_system_kind() {
  local described
  described=$(file_system "$1")
  described=${described##*(}
  echo "${described%)}"
}

median() {
  printf '%s\n' "$@" | sort -g | awk '{ v[NR] = $1 } END { print NR % 2 ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'
}

# Other work on the machine shows in the wall times: the table names the load.
read -r load _ _ _ _ </proc/loadavg
# fresh_machine SIZE NAME: sets the variable NAME to a new machine with the
# hosts and a suite root of SIZE files, and files to the number of its files.
fresh_machine() {
  local made
  made=$(TMPDIR=$machines_folder new_machine)
  machines+=("$made")
  seed_hosts "$made"
  "$SUITEDEPLOYER_BUILD/tests/make_suite_root" "$made/suite"
  files=$("$SUITEDEPLOYER_ROOT/bench/grow-suite-root.sh" "$made/suite" "$1")
  printf -v "$2" '%s' "$made"
}

# plain_run FRESH NAME [--removals-last]: writes the plain script from the
# tool's machine for FRESH, runs it timed into $measures/NAME, checks that it
# reached the tool's end state and prints what the script does.
plain_run() {
  local fresh=$1 name=$2 staging plan
  shift 2
  staging=$(mktemp -d "$measures/staging.XXXXXX")
  plan=$(python3 "$SUITEDEPLOYER_ROOT/bench/plain_install.py" script "$machine" "$fresh" "$staging" "$staging/plain.sh" "$@")
  timed "$measures/$name" "$fresh" sh "$staging/plain.sh"
  if ! python3 "$SUITEDEPLOYER_ROOT/bench/plain_install.py" compare "$machine" "$fresh" >&2; then
    echo "the plain script did not reach the tool's end state ($machine, $fresh)" >&2
    exit 1
  fi
  echo "$plan"
}

declare -A files_of install_of cpu_of plain_of paired_of order_cost_of rss_of
for size in "${sizes[@]}"; do
  install_times=() cpu_times=() plain_times=() paired=() order_costs=() peak=0
  for ((run = 1; run <= runs; run++)); do
    [ -z "${FRESH_FS:-}" ] || new_file_system
    fresh_machine "$size" machine
    fresh_machine "$size" plain
    fresh_machine "$size" removing_last

    answer=$(cd "$machine" && run_on_machine "$machine" env LC_ALL=C.UTF-8 "$deployer" 2>/dev/null)
    hosts=$(printf '%s' "$answer" | base64 -d | jq -c .system.hosts)
    if [ "$(jq length <<<"$hosts")" -ne 3 ]; then
      echo "the report found other hosts than a Photoshop, an Elements and a Lightroom: $hosts" >&2
      exit 1
    fi
    # The report's log would share the file of an installation in the same second.
    mv "$machine/$logs_tail" "$machine/$logs_tail.report"
    request=$(jq -nc --arg root "$machine/suite" --argjson hosts "$hosts" --argjson plugins "$products" \
      '{rootDir: $root, hosts: $hosts, plugins: $plugins, language: 1, version: "4.2.0",
        mixpanelEnabled: true, isUpdate: "false", localAppDataDir: ""}')
    before=$(machine_entries "$machine")
    timed "$measures/install" "$machine" env LC_ALL=C.UTF-8 "$deployer" --install \
      "$(printf '%s' "$request" | base64 -w0)"
    made=$(($(machine_entries "$machine") - before))
    rm -rf "$machine/$logs_tail.report"

    plan=$(plain_run "$plain" plain)
    plain_run "$removing_last" last --removals-last >/dev/null

    read -r plain_wall _ <"$measures/plain"
    read -r last_wall _ <"$measures/last"
    read -r wall user sys rss start end <"$measures/install"
    install_times+=("$wall")
    cpu_times+=("$(awk -v u="$user" -v s="$sys" 'BEGIN { print u + s }')")
    plain_times+=("$plain_wall")
    paired+=("$(awk -v i="$wall" -v c="$plain_wall" 'BEGIN { print i / c }')")
    order_costs+=("$(awk -v c="$plain_wall" -v l="$last_wall" 'BEGIN { print c / l }')")
    if [ "$rss" -gt "$peak" ]; then peak=$rss; fi
    printf '%6d files, run %d/%d: --install %.3f s (user %s s, sys %s s, %.1f MiB), plain %.3f s (removals last %.3f s), %d files and links made\n' \
      "$files" "$run" "$runs" "$wall" "$user" "$sys" "$(awk -v k="$rss" 'BEGIN { print k / 1024 }')" \
      "$plain_wall" "$last_wall" "$made"
    if [ "$run" -eq "$runs" ]; then
      echo "       plain script: $plan"
      echo "       steps of this run, from the tool's log:"
      logs=("$machine/$logs_tail/"*.log)
      steps "${logs[-1]}" "$start" "$end"
    fi
    if [ -n "${FRESH_FS:-}" ] && [ -z "${KEEP_MACHINES:-}" ]; then
      drop_file_system "${file_systems[-1]}"
      unset 'file_systems[-1]'
    fi
  done
  files_of[$size]=$files
  install_of[$size]=$(median "${install_times[@]}")
  cpu_of[$size]=$(median "${cpu_times[@]}")
  plain_of[$size]=$(median "${plain_times[@]}")
  paired_of[$size]=$(median "${paired[@]}")
  order_cost_of[$size]=$(median "${order_costs[@]}")
  rss_of[$size]=$peak
done

if [ -z "${FRESH_FS:-}" ]; then
  fs=$(file_system "$machines_folder")
  kind=$(file_system_kind "$machines_folder")
fi
echo
echo "SuiteDeployer --install against the plain script: medians of $runs run(s) per size on fresh machines,"
echo "$(nproc) cores, machines on $fs, load average before: $load;"
echo "CPU is the tool's user + system time, ratio the median of each run's tool time over the plain script's,"
echo "peak RSS the highest of the runs."
printf '%8s %12s %8s %10s %8s %14s %12s %12s %12s\n' files "--install s" "CPU s" "plain s" ratio "peak RSS MiB" \
  "time growth" "plain growth" "file growth"
previous=
for size in "${sizes[@]}"; do
  awk -v f="${files_of[$size]}" -v i="${install_of[$size]}" -v u="${cpu_of[$size]}" -v c="${plain_of[$size]}" \
    -v r="${rss_of[$size]}" -v p="${paired_of[$size]}" -v pf="${previous:+${files_of[$previous]}}" \
    -v pi="${previous:+${install_of[$previous]}}" -v pc="${previous:+${plain_of[$previous]}}" '
    BEGIN {
      growth = pf == "" ? sprintf("%12s %12s %12s", "-", "-", "-") \
                        : sprintf("%11.2fx %11.2fx %11.2fx", i / pi, c / pc, f / pf)
      printf "%8d %12.3f %8.2f %10.3f %7.2fx %14.1f %s\n", f, i, u, c, p, r / 1024, growth
    }'
  previous=$size
done

# The figures. On a disk one run can take half as long again as the next,
# for the tool and the plain script alike, so each run's tool time is set
# against the plain script's of the same run, right after it, and the ratio
# at 16,000 files (or the largest size below) is the median of those paired
# ratios. Growth: the time each added file costs from the size before last
# to the last, against what it costs from the first size to the one before
# last; fixed costs such as the plain script's processes drop out. A file
# system's own costs grow with its folders, as the plain script shows, so the
# figure is the tool's growth against the plain script's.
goal=1.5
case $kind in tmpfs) goal=1.3 ;; esac
figure_size=
for size in "${sizes[@]}"; do [ "$size" -le 16000 ] && figure_size=$size; done
figure_size=${figure_size:-${sizes[0]}}
echo "paired ratios, medians: $(for size in "${sizes[@]}"; do printf '%s files %.2f, ' "${files_of[$size]}" "${paired_of[$size]}"; done | sed 's/, $//')"
awk -v n="$figure_size" -v r="${paired_of[$figure_size]}" -v g="$goal" -v k="$kind" \
  'BEGIN { printf "--install, %d files, %s|plain cp/ln/chmod/rm script|%.2f|<= %s\n", n, k, r, g }'
echo "the plain script in the tool's order against one that removes last, paired medians: $(for size in "${sizes[@]}"; do printf '%s files %.2f, ' "${files_of[$size]}" "${order_cost_of[$size]}"; done | sed 's/, $//')"
awk -v n="${sizes[-1]}" -v r="${order_cost_of[${sizes[-1]}]}" -v k="$kind" \
  'BEGIN { printf "plain script in the tool'"'"'s order, %d files, %s|the same removing last|%.2f|none (the order is designed)\n", n, k, r }'
if [ "${#sizes[@]}" -gt 2 ]; then
  first=${sizes[0]} middle=${sizes[-2]} last=${sizes[-1]}
  awk -v f0="${files_of[$first]}" -v f1="${files_of[$middle]}" -v f2="${files_of[$last]}" \
    -v i0="${install_of[$first]}" -v i1="${install_of[$middle]}" -v i2="${install_of[$last]}" \
    -v c0="${plain_of[$first]}" -v c1="${plain_of[$middle]}" -v c2="${plain_of[$last]}" -v k="$kind" '
    BEGIN {
      tool = ((i2 - i1) / (f2 - f1)) / ((i1 - i0) / (f1 - f0))
      plain = ((c2 - c1) / (f2 - f1)) / ((c1 - c0) / (f1 - f0))
      printf "time per added file from %d to %d files against from %d to %d: tool %.2f, plain script %.2f\n",
        f1, f2, f0, f1, tool, plain
      printf "--install time per added file, %d-%d against %d-%d files, %s|the plain script%ss|%.2f|<= 1.1\n",
        f1, f2, f0, f1, k, "\047", tool / plain
    }'
fi
