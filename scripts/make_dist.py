#!/usr/bin/env python3
"""Makes the portable release of larkTools from a build folder:

  OUT/larkTools-VERSION-linux-ARCH.zip   the program folder as the updater unpacks it:
                                         larkTools at the top, executable bits kept,
                                         folders listed before the files in them
  OUT/releases/larkTools_unix.zip        the same zip, and the version reply
  OUT/releases/larkTools_unix.json       {"verNum", "verInfo"} beside it, ready for
                                         deploy/update-server to serve

verInfo is the entry of CHANGELOG for VERSION (its lines after "VERSION DATE"). Neither conf/ nor download/ goes in:
unpacking a release must never overwrite a user's settings.

Usage: make_dist.py BUILD_DIR VERSION OUT_DIR
"""
import json
import os
import platform
import shutil
import subprocess
import sys
import tempfile
import zipfile

SOURCE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def release_notes(version):
    """The lines under VERSION in CHANGELOG, up to the next blank line."""
    with open(os.path.join(SOURCE, "CHANGELOG"), encoding="utf-8") as f:
        blocks = f.read().strip().split("\n\n")
    for block in blocks:
        lines = block.strip().splitlines()
        if lines and lines[0].split()[0] == version:
            return "\n".join(lines[1:])
    sys.exit(f"CHANGELOG has no entry for {version}: add one before releasing it")


def stamped_version(build):
    with open(os.path.join(build, "generated", "LarkRelease.h")) as f:
        parts = {}
        for line in f:
            words = line.split()
            if len(words) == 3 and words[1].startswith("LARK_VERSION_") and words[1][-1].isdigit():
                parts[words[1]] = words[2]
    return ".".join(parts[f"LARK_VERSION_{i}"] for i in range(1, 5))


def add_dir(archive, name):
    info = zipfile.ZipInfo(name.rstrip("/") + "/")
    info.create_system = 3  # unix, so that the mode below is read
    info.external_attr = (0o40755 << 16) | 0x10
    archive.writestr(info, b"")


def add_file(archive, path, name, mode):
    info = zipfile.ZipInfo(name)
    info.create_system = 3
    info.external_attr = (0o100000 | mode) << 16
    info.compress_type = zipfile.ZIP_DEFLATED
    with open(path, "rb") as f:
        archive.writestr(info, f.read())


def main(build, version, out):
    if stamped_version(build) != version:
        sys.exit(f"{build} is stamped {stamped_version(build)}, not {version}: "
                 f"configure it with -DLARK_VERSION={version}")
    notes = release_notes(version)
    os.makedirs(os.path.join(out, "releases"), exist_ok=True)
    zip_name = f"larkTools-{version}-linux-{platform.machine()}.zip"
    zip_path = os.path.join(out, zip_name)

    with tempfile.TemporaryDirectory() as tmp, zipfile.ZipFile(zip_path + ".part", "w") as archive:
        for program in ("larkTools", "larksim"):
            stripped = os.path.join(tmp, program)
            shutil.copy(os.path.join(build, program), stripped)
            # the debugging information is most of the file and no use to a user
            subprocess.run(["strip", "--strip-unneeded", stripped], check=True)
            add_file(archive, stripped, program, 0o755)
        add_file(archive, os.path.join(SOURCE, "LICENSE"), "LICENSE", 0o644)
        add_file(archive, os.path.join(SOURCE, "CHANGELOG"), "CHANGELOG", 0o644)
        add_dir(archive, "doc")
        manual = os.path.join(SOURCE, "doc", "manual")
        for folder, dirs, files in os.walk(manual):
            dirs.sort()
            rel = os.path.relpath(folder, os.path.join(SOURCE))
            add_dir(archive, rel)
            for name in sorted(files):
                add_file(archive, os.path.join(folder, name), f"{rel}/{name}", 0o644)
    os.replace(zip_path + ".part", zip_path)

    shutil.copy(zip_path, os.path.join(out, "releases", "larkTools_unix.zip"))
    with open(os.path.join(out, "releases", "larkTools_unix.json"), "w", encoding="utf-8") as f:
        json.dump({"verNum": version, "verInfo": notes}, f, ensure_ascii=False, indent=1)
        f.write("\n")
    print(f"{zip_path}\n{os.path.join(out, 'releases')}/larkTools_unix.{{zip,json}}")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
