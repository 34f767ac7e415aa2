#!/usr/bin/env python3
"""Every symbol the shared library exports must belong to a public header.

Usage: check_public_symbols.py LIBRARY HEADER_DIR QT_HEADER_DIR
Finds the name owning each exported symbol (nm -D -C: the class of a member,
the function or variable itself) and fails, listing them, when no installed
header declares it. Instantiations of Qt's and the standard library's
templates belong to them, not to this library's ABI: they are set apart.
"""
import pathlib
import re
import subprocess
import sys

LINKER_NAMES = {"_init", "_fini", "_edata", "_end", "__bss_start"}
SANITIZER_NAME = re.compile(r"^__(odr_asan|asan)")  # AddressSanitizer's per-global markers
PREFIXES = re.compile(r"^(typeinfo name for |typeinfo for |vtable for |VTT for |construction vtable for "
                      r"|non-virtual thunk to |virtual thunk to |guard variable for |covariant return thunk to )")
FOREIGN = re.compile(r"^(std|__gnu_cxx|Qt\w*|QtPrivate)$")


def split_top(text, separator):
    """Split at separator outside <...> and (...)."""
    parts, depth, start = [], 0, 0
    for i, c in enumerate(text):
        if depth == 0 and i >= start and text.startswith(separator, i):
            parts.append(text[start:i])
            start = i + len(separator)
        depth += (c in "<(") - (c in ">)")
    return parts + [text[start:]]


def owners(symbol):
    symbol = PREFIXES.sub("", symbol)
    head = split_top(symbol, "(")[0].strip()
    first = split_top(head, "::")[0].strip()
    first = re.sub(r"<.*", "", first).split()[-1] if first else first
    # A free operator belongs to the public type it takes.
    return re.findall(r"[A-Za-z_]\w*", symbol[len(head):]) if first.startswith("operator") else [first]


def main():
    library, header_dir = sys.argv[1], pathlib.Path(sys.argv[2])
    qt_headers = [d for d in pathlib.Path(sys.argv[3]).iterdir() if d.is_dir()]
    foreign = lambda owner: bool(FOREIGN.match(owner)) or any((d / owner).is_file() for d in qt_headers)
    words = set()
    for header in header_dir.glob("*.h"):
        text = header.read_text(encoding="utf-8")
        forward = re.fullmatch(r'#include "(/[^"]+)"\s*', text)  # the build tree's headers forward to the sources
        words.update(re.findall(r"[A-Za-z_]\w*", pathlib.Path(forward.group(1)).read_text(encoding="utf-8") if forward else text))
    listing = subprocess.run(["nm", "-D", "-C", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    stray, count, instantiations = [], 0, 0
    for fields in (line.split(" ", 2) for line in listing.splitlines()):
        if len(fields) < 3 or fields[2] in LINKER_NAMES or SANITIZER_NAME.match(fields[2]):
            continue
        names = owners(fields[2])
        if names and foreign(names[0]):
            instantiations += 1
            continue
        count += 1
        if not any(o in words and not foreign(o) for o in names):
            stray.append(fields[2])
    print(f"{count} exported symbols of the library, {len(stray)} outside the public headers "
          f"({instantiations} instantiations of Qt or standard templates set apart)")
    print("".join(f"  {symbol}\n" for symbol in stray), end="")
    return 1 if stray or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
