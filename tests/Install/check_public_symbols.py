#!/usr/bin/env python3
"""Every symbol the shared library exports must belong to a public header.

Usage: check_public_symbols.py LIBRARY HEADER_DIR QT_HEADER_DIR
Reads the dynamic symbol table (nm -D -C --defined-only), finds the name that
owns each symbol (the class of a member, the function or variable itself) and
fails, listing them, when an owner is declared in no installed header.
Instantiations of Qt's and the standard library's templates (which those
headers give default visibility) belong to them, not to this library's ABI:
they are counted apart.
"""
import pathlib
import re
import subprocess
import sys

LINKER_NAMES = {"_init", "_fini", "_edata", "_end", "__bss_start"}
# AddressSanitizer's per-global markers in an instrumented build.
SANITIZER_NAME = re.compile(r"^__(odr_asan|asan)")
PREFIXES = ("typeinfo name for ", "typeinfo for ", "vtable for ", "VTT for ",
            "construction vtable for ", "non-virtual thunk to ", "virtual thunk to ",
            "guard variable for ", "covariant return thunk to ")
FOREIGN = re.compile(r"^(std|__gnu_cxx|Qt\w*|QtPrivate)$")


def is_foreign(owner, qt_headers):
    return bool(FOREIGN.match(owner)) or any((d / owner).is_file() for d in qt_headers)


def split_top(text, separator):
    """Split at separator outside <...> and (...)."""
    parts, depth, current, i = [], 0, "", 0
    while i < len(text):
        c = text[i]
        if depth == 0 and text.startswith(separator, i):
            parts.append(current)
            current, i = "", i + len(separator)
            continue
        if c in "<(":
            depth += 1
        elif c in ">)":
            depth -= 1
        current += c
        i += 1
    parts.append(current)
    return parts


def owners(symbol):
    for prefix in PREFIXES:
        if symbol.startswith(prefix):
            symbol = symbol[len(prefix):]
            break
    head = split_top(symbol, "(")[0].strip()
    first = split_top(head, "::")[0].strip()
    first = re.sub(r"<.*", "", first).split()[-1] if first else first
    if first.startswith("operator"):
        # A free operator belongs to the public type it takes.
        return re.findall(r"[A-Za-z_]\w*", symbol[len(head):])
    return [first]


def main():
    library, header_dir = sys.argv[1], pathlib.Path(sys.argv[2])
    qt_headers = [d for d in pathlib.Path(sys.argv[3]).iterdir() if d.is_dir()]
    words = set()
    for header in header_dir.glob("*.h"):
        text = header.read_text(encoding="utf-8")
        # In the build tree a public header may forward to its source.
        forward = re.fullmatch(r'#include "(/[^"]+)"\s*', text)
        if forward:
            text = pathlib.Path(forward.group(1)).read_text(encoding="utf-8")
        words.update(re.findall(r"[A-Za-z_]\w*", text))
    listing = subprocess.run(["nm", "-D", "-C", "--defined-only", library],
                             check=True, capture_output=True, text=True).stdout
    stray = []
    count = foreign = 0
    for line in listing.splitlines():
        fields = line.split(" ", 2)
        if len(fields) < 3 or fields[2] in LINKER_NAMES or SANITIZER_NAME.match(fields[2]):
            continue
        names = owners(fields[2])
        if names and all(is_foreign(o, qt_headers) for o in names[:1]):
            foreign += 1
            continue
        count += 1
        if not any(o in words and not is_foreign(o, qt_headers) for o in names):
            stray.append(fields[2])
    print(f"{count} exported symbols of the library, {len(stray)} outside the public headers "
          f"({foreign} instantiations of Qt or standard templates set apart)")
    for symbol in stray:
        print("  " + symbol)
    return 1 if stray or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
