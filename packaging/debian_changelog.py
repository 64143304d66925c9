#!/usr/bin/env python3
"""Writes CHANGELOG as the Debian changelog of the package, gzip-compressed without a
time stamp, keeping the entries up to VERSION: a package never names a later one.

CHANGELOG: blocks separated by a blank line, each "VERSION DATE" then "- " items.

Usage: debian_changelog.py CHANGELOG VERSION MAINTAINER OUTPUT.gz
"""
import datetime
import gzip
import sys


def packed(version):
    return tuple(int(n) for n in version.split("."))


def main(source, version, maintainer, output):
    entries = []
    with open(source, encoding="utf-8") as f:
        for block in f.read().strip().split("\n\n"):
            lines = block.strip().splitlines()
            number, date = lines[0].split()
            if packed(number) > packed(version):
                continue
            when = datetime.datetime.strptime(date, "%Y-%m-%d").replace(tzinfo=datetime.timezone.utc)
            items = "\n".join("  * " + line.lstrip("- ").strip() for line in lines[1:])
            entries.append(f"larktools ({number}) unstable; urgency=medium\n\n{items}\n\n"
                           f" -- {maintainer}  {when.strftime('%a, %d %b %Y %H:%M:%S %z')}\n")
    if not entries:
        sys.exit(f"{source} has no entry up to {version}")
    with open(output, "wb") as raw, gzip.GzipFile(fileobj=raw, mode="wb", mtime=0, filename="") as f:
        f.write("\n".join(entries).encode("utf-8"))


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    main(*sys.argv[1:])
