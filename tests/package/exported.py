"""Checks that what the public headers declare can be linked against.

usage: exported.py SOURCE_FOLDER WORK_FOLDER LIBRARY...

Doxygen reads the headers that the umbrella headers name; nm says what the libraries export. Prints each function that is
declared without a body and isn't exported by any of them.
"""
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree as tree

source, work = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
headers = []
for umbrella in ("corvanta", "importer", "renderer"):
    headers += re.findall(r'#include "(corvanta/[^"]+)"', (source / f"corvanta/{umbrella}.h").read_text())
work.mkdir(parents=True, exist_ok=True)
settings = (source / "docs/Doxyfile").read_text() + f"""
INPUT = {" ".join(headers)}
EXCLUDE_PATTERNS =
OUTPUT_DIRECTORY = {work}
GENERATE_HTML = NO
GENERATE_XML = YES
EXTRACT_ALL = YES
"""
subprocess.run(["doxygen", "-"], input=settings, text=True, cwd=source, check=True)

exported = set()
for library in sys.argv[3:]:
    for line in subprocess.run(["nm", "-DC", "--defined-only", library], text=True, check=True,
                               capture_output=True).stdout.splitlines():
        exported.add(re.sub(r"[(\[<].*", "", line.split(" ", 2)[2]) or line)

checked, missing = 0, []
for page in (work / "xml").glob("*.xml"):
    for compound in tree.parse(page).iter("compounddef"):
        scope = compound.findtext("compoundname")
        if compound.get("kind") not in ("class", "struct", "namespace") or compound.find("templateparamlist") is not None or "<" in scope:
            continue
        for member in compound.iter("memberdef"):
            arguments = member.findtext("argsstring") or ""
            name = f"{scope}::{member.findtext('name')}"
            if (member.get("kind") != "function" or member.get("prot") != "public" or member.get("inline") == "yes"
                    or member.find("templateparamlist") is not None or re.search(r"=\s*(0|delete|default)$", arguments)
                    or member.find("location").get("bodyfile") or member.findtext("name").startswith(("operator", "~"))):
                continue
            if "constexpr" in (member.findtext("type") or "") or "friend" in (member.findtext("type") or ""):
                continue
            checked += 1
            if name not in exported:
                missing.append(f"{member.find('location').get('file')}:{member.find('location').get('line')}: {name}")
print(f"{checked} functions, {len(missing)} of them not exported")
print("\n".join(sorted(set(missing))))
sys.exit(1 if missing or checked < 500 else 0)
