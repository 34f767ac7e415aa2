#!/usr/bin/env python3
"""check_public_symbols.py LIBRARY HEADER_DIR QT_HEADER_DIR: every exported symbol's owner (a member's
class, the function or variable) is declared in a public header, Qt and standard template instantiations
set apart; C names stay unmangled, the private path helper hidden, and plain-C functions have C linkage.
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
C_NAMES = set("""KQAssertionFailed _ZLLogWarning _ZLLogError _ZLLogMsg _ZLLog _ZLMakeLogStr KQLastPathComponentOfPath
    KQDebugBreak KQSetDebugBreakHook g_breakOnWarningsAndErrors TarnCommonVersionNumber TarnCommonVersionString
    KQErrorDomain Secs Unique_ID_ns q_RECT_rect_between_points q_POINT_distance_between_points q_RECT__Get_Centre
    q_RECT_set_edge_to_location q_RECT_set_corner_to_point q_RECT_normalize KQPointConstrainToLine""".split())
PLAIN = re.compile(r"(const )?(void|bool|(signed |unsigned )?char|(unsigned )?(short|int|long|long long)|float|(long )?double"
                   r"|__va_list_tag|RGBColor|KQPoint|KQSize|KQRect)( const)?(\*( const)?)*")
FREE_FUNCTION = re.compile(r"[0-9a-f]+ [TW] ([A-Za-z_]\w*\((.*)\))")


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


def linkage_errors(library, listing):
    raw = set(subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True, text=True).stdout.split())
    errors = [f"{name} is not exported unmangled" for name in sorted(C_NAMES - raw)]
    errors += [f"{name} is private but exported" for name in raw if "KQPathComponent" in name]
    for match in filter(None, map(FREE_FUNCTION.fullmatch, listing.splitlines())):
        # Demangled, a C++ name shows its parameters; a plain function pointer counts as plain.
        parameters = match.group(2).replace("void (*)()", "void*")
        if all(PLAIN.fullmatch(p) for p in (split_top(parameters, ", ") if parameters else [])):
            errors.append(f"{match.group(1)} is mangled though its parameters are plain C types")
    return errors


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
    stray, count = [], 0
    for fields in (line.split(" ", 2) for line in listing.splitlines()):
        if len(fields) < 3 or fields[2] in LINKER_NAMES or SANITIZER_NAME.match(fields[2]):
            continue
        names = owners(fields[2])
        if names and foreign(names[0]):
            continue
        count += 1
        if not any(o in words and not foreign(o) for o in names):
            stray.append(fields[2])
    errors = [f"{symbol} is in no public header" for symbol in stray] + linkage_errors(library, listing)
    errors += ["no symbol of the library is exported"] if count == 0 else []
    print("".join(f"FAIL: {error}\n" for error in errors), end="")
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
