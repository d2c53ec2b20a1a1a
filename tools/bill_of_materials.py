#!/usr/bin/env python3
"""What is linked into the programs that are handed out.

  licences   lays NOTICE.txt and the licence texts of what is linked in beside the programs of one archive
  spdx       writes the software bill of materials of a release (SPDX 2.3, JSON)
"""
import argparse
import hashlib
import json
import os
import shutil
import subprocess
import uuid
from datetime import datetime, timezone
from pathlib import Path

# Archives that a static program of each system takes code from, as its compiler knows them.
LINKED = {
    "linux-x86_64": ("g++", ["libstdc++.a", "libgcc.a", "libc.a"]),
    "linux-aarch64": ("aarch64-linux-gnu-g++", ["libstdc++.a", "libgcc.a", "libc.a"]),
    "windows-x86_64": ("x86_64-w64-mingw32-g++-posix", ["libstdc++.a", "libgcc.a", "libmingw32.a", "libwinpthread.a"]),
}
# Name, licence as SPDX writes it. Where the text tells of more than one, it says so itself.
KNOWN = {
    "libstdc++.a": ("libstdc++", "GPL-3.0-or-later WITH GCC-exception-3.1"),
    "libgcc.a": ("libgcc", "GPL-3.0-or-later WITH GCC-exception-3.1"),
    "libc.a": ("glibc", "LGPL-2.1-or-later"),
    "libmingw32.a": ("mingw-w64-crt", "NOASSERTION"),
    "libwinpthread.a": ("winpthreads", "NOASSERTION"),
    "libuv": ("libuv", "MIT"),
}
SOURCE = Path(__file__).resolve().parent.parent


def output_of(*command):
    return subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, text=True, check=True).stdout.strip()


def has_uci(build):
    return any((build / name).exists() for name in ("ondrel-uci", "ondrel-uci.exe"))


def owner_of(path):
    """The Debian package that a file is from, and its version. Where /lib is a link to /usr/lib, dpkg may know the file
    by the other name."""
    path = Path(path).resolve()
    for name in (str(path), str(path).removeprefix("/usr")):
        found = subprocess.run(["dpkg", "-S", name], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        if found.returncode == 0:
            package = found.stdout.split(": ")[0].split(", ")[0]
            return package, output_of("dpkg-query", "-W", "-f", "${Version}", package)
    raise SystemExit(f"no package of Debian's has {path}")


def libuv_of(preset, libuv):
    """Package, version and licence text of libuv: fetched by libuv.sh, or the system's."""
    if preset != "linux-x86_64":
        return "libuv1", (libuv / "version").read_text().strip(), libuv / "copyright"
    package = "libuv1-dev"
    version = output_of("dpkg-query", "-W", "-f", "${Version}", package)
    return package, version, Path("/usr/share/doc", package, "copyright")


def parts(preset, build, libuv):
    """What is linked in: name, licence, package, version, licence text."""
    compiler, archives = LINKED[preset]
    for archive in archives:
        package, version = owner_of(output_of(compiler, f"-print-file-name={archive}"))
        name, licence = KNOWN[archive]
        yield name, licence, package, version, Path("/usr/share/doc", package.split(":")[0], "copyright")
    if has_uci(build):
        name, licence = KNOWN["libuv"]
        yield name, licence, *libuv_of(preset, libuv)


def licence_of_ondrel():
    names = ("LICENSE", "LICENCE", "COPYING")
    return next((path for path in sorted(SOURCE.iterdir()) if path.stem.upper() in names), None)


def lay_licences(args):
    own = licence_of_ondrel()
    lines = ["Ondrel", "======", ""]
    if own:
        shutil.copyfile(own, args.into / own.name)
        lines += [f"The licence of Ondrel itself is in {own.name}."]
    else:
        lines += ["The repository of Ondrel has no licence file: no licence for Ondrel itself comes with these files."]
    lines += ["", "Linked into the programs, with the texts of their licences in the directory licences:", ""]
    texts = args.into / "licences"
    texts.mkdir()
    for name, _, package, version, text in parts(args.preset, args.build, args.libuv):
        shutil.copyfile(text, texts / f"{name}.txt")
        lines.append(f"- {name} (Debian package {package}, version {version})")
    notice = args.into / "NOTICE.txt"
    notice.write_text("\n".join(lines) + "\n")
    for path in (notice, *texts.iterdir()):
        path.chmod(0o644)


def checksum(path):
    return {"algorithm": "SHA256", "checksumValue": hashlib.sha256(path.read_bytes()).hexdigest()}


def package(name, version, licence, **more):
    return {"SPDXID": "SPDXRef-" + "".join(x if x.isalnum() or x in ".-" else "-" for x in f"{name}-{version}"),
            "name": name, "versionInfo": version, "downloadLocation": "NOASSERTION", "filesAnalyzed": False,
            "licenseConcluded": "NOASSERTION", "licenseDeclared": licence, "copyrightText": "NOASSERTION"} | more


def write_spdx(args):
    own_licence = "NOASSERTION" if licence_of_ondrel() else "NONE"
    packages, relations = {}, []

    def relate(one, kind, other):
        relation = {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
        if relation not in relations:
            relations.append(relation)

    def add(x):
        packages.setdefault(x["SPDXID"], x)
        return x["SPDXID"]

    for path in sorted(args.out.iterdir()):
        file_of = add(package(path.name, args.version, own_licence, packageFileName=path.name,
                              checksums=[checksum(path)], primaryPackagePurpose="ARCHIVE"))
        relate("SPDXRef-DOCUMENT", "DESCRIBES", file_of)
        is_debian = path.suffix == ".deb"
        preset = "linux-x86_64" if is_debian else next(x for x in args.presets if x in path.name)
        for name, licence, of, version, _ in parts(preset, args.work / preset, args.work / f"libuv-{preset}"):
            # The Debian package takes the libraries from the system but for the archive of libuv.
            dynamic = is_debian and name != "libuv"
            relate(file_of, "DYNAMIC_LINK" if dynamic else "STATIC_LINK",
                   add(package(name, version, licence, sourceInfo=f"Debian package {of}",
                               primaryPackagePurpose="LIBRARY")))
    contents = {"packages": list(packages.values()), "relationships": relations}
    space = uuid.uuid5(uuid.NAMESPACE_URL, json.dumps(contents, sort_keys=True))
    created = datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")
    document = {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"ondrel-{args.version}",
        "documentNamespace": f"https://spdx.org/spdxdocs/ondrel-{args.version}-{space}",
        "creationInfo": {"created": created, "creators": ["Tool: bill_of_materials.py"]},
    } | contents
    (args.out / f"ondrel-{args.version}.spdx.json").write_text(json.dumps(document, indent=2) + "\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    commands = parser.add_subparsers(required=True)
    licences = commands.add_parser("licences")
    licences.set_defaults(run=lay_licences)
    licences.add_argument("--preset", required=True, choices=LINKED)
    for name in ("--build", "--libuv", "--into"):
        licences.add_argument(name, required=True, type=Path)
    spdx = commands.add_parser("spdx")
    spdx.set_defaults(run=write_spdx)
    spdx.add_argument("--version", required=True)
    spdx.add_argument("--presets", required=True, nargs="+", choices=LINKED)
    for name in ("--work", "--out"):
        spdx.add_argument(name, required=True, type=Path)
    args = parser.parse_args()
    args.run(args)


if __name__ == "__main__":
    main()
