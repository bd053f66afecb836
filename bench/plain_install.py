#!/usr/bin/env python3
"""The plainest way to the end state of one installation, for its benchmark.

    plain_install.py script DONE FRESH STAGING SCRIPT [--removals-last]
        Compares DONE, a machine on which the tool installed, with FRESH, a
        machine made the same way on which nothing ran yet, and writes SCRIPT:
        a shell script that, run from FRESH, brings FRESH to the end state of
        DONE with cp, symbolic links and rm only. Files that exist in FRESH
        (the suite root) are copied from there; files that the tool wrote
        itself (configuration files, hives, presets) are put into STAGING
        first, as the tool would have them on FRESH, and copied from there.
    plain_install.py compare DONE FRESH
        Prints what differs between the two machines and exits with 1 if
        anything does.

Both leave out the tool's log folder. Machine paths inside files and link
targets are compared with each machine's own folder in their place.

The script makes new folders with one mkdir, copies with one cp per
destination folder, makes all links with one cp -P of a tree of ready links
in STAGING (a symlink call per link, as ln -s makes, without a process per
link), sets the modes that the tool sets with one chmod per mode and removes
with one rm -rf. It keeps the order in which the tool must copy and remove:
first the hosts' files, links and configuration files, with the removal of
the shared Lightroom module's source; then the pictures, copied and removed;
last the application data, copied and removed. With --removals-last it
removes only after all copies, which the tool's order doesn't allow.

The order costs time on an ext4 without a journal: a new inode passes over
every inode of its group that was freed in the last minute (six while the
freed inode's table block waits for the disk), so copies that follow a large
removal near them are slower than the same copies before it.
"""
import hashlib
import os
import shlex
import stat
import sys

LOGS = os.path.join("home", ".config", "Tavrin", "Orv Collection", "logs")


def walk(root):
    """Every entry below root but the logs: path -> (kind, mode, target or content digest)."""
    entries = {}
    marker = root.encode()
    for folder, dirs, files in os.walk(root):
        relative_folder = os.path.relpath(folder, root)
        if relative_folder == LOGS:
            dirs[:] = []
            continue
        for name in dirs + files:
            path = os.path.join(folder, name)
            relative = os.path.normpath(os.path.join(relative_folder, name))
            if relative == LOGS:
                continue
            info = os.lstat(path)
            if stat.S_ISLNK(info.st_mode):
                entries[relative] = ("link", None, os.readlink(path).replace(root, "<machine>"))
            elif stat.S_ISDIR(info.st_mode):
                entries[relative] = ("folder", stat.S_IMODE(info.st_mode), None)
            else:
                with open(path, "rb") as content:
                    digest = hashlib.sha1(content.read().replace(marker, b"<machine>")).hexdigest()
                entries[relative] = ("file", stat.S_IMODE(info.st_mode), digest)
    return entries


def differences(done, fresh):
    found = []
    for path in sorted(set(done) | set(fresh)):
        if done.get(path) != fresh.get(path):
            found.append(f"{path}: {done.get(path)} against {fresh.get(path)}")
    return found


def topmost(paths):
    kept = []
    for path in sorted(paths):
        if not kept or not path.startswith(kept[-1] + os.sep):
            kept.append(path)
    return kept


def stage_file(done_root, fresh_root, staging, relative):
    with open(os.path.join(done_root, relative), "rb") as source:
        content = source.read().replace(done_root.encode(), fresh_root.encode())
    staged = os.path.join(staging, "files", relative)
    os.makedirs(os.path.dirname(staged), exist_ok=True)
    with open(staged, "wb") as target:
        target.write(content)
    os.chmod(staged, os.stat(os.path.join(done_root, relative)).st_mode & 0o7777)
    return staged


def stage_link(staging, relative, target, fresh_root):
    staged = os.path.join(staging, "links", relative)
    os.makedirs(os.path.dirname(staged), exist_ok=True)
    os.symlink(target.replace("<machine>", fresh_root), staged)


# The tool's order: the hosts, whose Lightroom step removes the shared module
# source; then the pictures, copied and removed; then the application data,
# copied and removed.
FIRST_STEP, PICTURES_STEP, APP_DATA_STEP = STEPS = ("hosts", "pictures", "application data")
STEP_SOURCES = {PICTURES_STEP: os.path.join("suite", "pictures"), APP_DATA_STEP: os.path.join("suite", "appData")}


def step_of(path):
    """The step that copies from or removes the path below a fresh machine."""
    for step, source in STEP_SOURCES.items():
        if path == source or path.startswith(source + os.sep):
            return step
    return FIRST_STEP


def folder_steps(folders, copies, links):
    """Each new folder's step: the first that puts something into it or below
    it, as the tool makes a folder when it first needs it. Links come in the
    first step."""
    first_step_into = {destination: min(map(step_of, sources), key=STEPS.index)
                       for destination, sources in copies.items()}
    for link in links:
        first_step_into[os.path.dirname(link)] = FIRST_STEP
    steps = {}
    for folder in folders:
        inside = [step for destination, step in first_step_into.items()
                  if destination == folder or destination.startswith(folder + os.sep)]
        steps[folder] = min(inside, key=STEPS.index, default=FIRST_STEP)
    return steps


def folder_lines(folders):
    return ["mkdir -p -- " + " ".join(shlex.quote(folder) for folder in folders)] if folders else []


def copy_lines(copies, wanted):
    lines = []
    for destination, files in sorted(copies.items()):
        chosen = [source for source in files if wanted(source)]
        if chosen:
            lines.append(f"cp -t {shlex.quote(destination)} -- " + " ".join(shlex.quote(f) for f in chosen))
    return lines


def removal_lines(paths):
    return ["rm -rf -- " + " ".join(shlex.quote(path) for path in paths)] if paths else []


def write_script(done_root, fresh_root, staging, script_path, removals_last=False):
    done, fresh = walk(done_root), walk(fresh_root)
    sources = {}
    for path, (kind, mode, digest) in fresh.items():
        if kind == "file":
            sources.setdefault((os.path.basename(path), mode, digest), path)
    mask = os.umask(0)
    os.umask(mask)
    folders, copies, links, modes = [], {}, [], {}
    for path, entry in sorted(done.items()):
        if fresh.get(path) == entry:
            continue
        kind, mode, digest = entry
        if kind == "folder":
            if path in fresh:
                gets = fresh[path][1]
            else:
                folders.append(path)
                gets = 0o777 & ~mask
        elif kind == "link":
            stage_link(staging, path, digest, fresh_root)
            links.append(path)
            continue
        else:
            source = sources.get((os.path.basename(path), mode, digest))
            if source is None or source == path:
                source = stage_file(done_root, fresh_root, staging, path)
            copies.setdefault(os.path.dirname(path), []).append(source)
            gets = fresh[path][1] if path in fresh else mode & ~mask
        if gets != mode:
            modes.setdefault(mode, []).append(path)
    removed = topmost(path for path in fresh if path not in done)
    folder_step = folder_steps(folders, copies, links)
    lines = ["#!/bin/sh", "set -e", f"cd {shlex.quote(fresh_root)}"]
    for step in [None] if removals_last else STEPS:
        lines += folder_lines([folder for folder in folders if step in (None, folder_step[folder])])
        lines += copy_lines(copies, lambda source: step in (None, step_of(source)))
        if step in (None, FIRST_STEP):
            if links:
                lines.append(f"cp -R -P {shlex.quote(os.path.join(staging, 'links'))}/. .")
            for mode, paths in sorted(modes.items()):
                lines.append(f"chmod {mode:o} -- " + " ".join(shlex.quote(path) for path in paths))
        lines += removal_lines([path for path in removed if step in (None, step_of(path))])
    with open(script_path, "w") as script:
        script.write("\n".join(lines) + "\n")
    copied = sum(len(files) for files in copies.values())
    print(f"{copied} copies in {len(copies)} folders, {len(links)} links, {len(folders)} new folders, "
          f"{sum(len(paths) for paths in modes.values())} modes, {len(removed)} removals")


def main(arguments):
    if len(arguments) >= 5 and arguments[0] == "script" and arguments[5:] in ([], ["--removals-last"]):
        write_script(*[os.path.abspath(argument) for argument in arguments[1:5]], removals_last=len(arguments) == 6)
        return 0
    if len(arguments) == 3 and arguments[0] == "compare":
        found = differences(walk(os.path.abspath(arguments[1])), walk(os.path.abspath(arguments[2])))
        for line in found[:20]:
            print(line)
        if found:
            print(f"{len(found)} entries differ")
        return 1 if found else 0
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
