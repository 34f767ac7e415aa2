#!/usr/bin/env python3
"""check_public_symbols.py LIBRARY HEADER_DIR QT_INCLUDE_DIRS (':'-separated): every exported symbol's owner (a
member's class, the function or variable) is declared in a public header, Qt and standard template instantiations set
apart; C names stay unmangled, the private path helper hidden, and plain-C functions have C linkage."""
import pathlib
import re
import subprocess
import sys

IGNORED = re.compile(r"_init|_fini|_edata|_end|__bss_start|__(odr_asan|asan).*")  # the linker's and AddressSanitizer's
PREFIXES = re.compile(r"^((typeinfo name|typeinfo|vtable|VTT|construction vtable|guard variable) for "
                      r"|(non-virtual |virtual |covariant return )thunk to )")
FOREIGN = re.compile(r"^(std|__gnu_cxx|Qt\w*|QtPrivate)$")
C_NAMES = set("""KQAssertionFailed _ZLLogWarning _ZLLogError _ZLLogMsg _ZLLog _ZLMakeLogStr KQLastPathComponentOfPath
    KQDebugBreak KQSetDebugBreakHook g_breakOnWarningsAndErrors TarnCommonVersionNumber TarnCommonVersionString
    KQErrorDomain Secs Unique_ID_ns q_RECT_rect_between_points q_POINT_distance_between_points q_RECT__Get_Centre
    q_RECT_set_edge_to_location q_RECT_set_corner_to_point q_RECT_normalize KQPointConstrainToLine""".split())
PLAIN = re.compile(r"(const )?(void|bool|(signed |unsigned )?char|(unsigned )?(short|int|long|long long)|float|(long )?double"
                   r"|__va_list_tag|RGBColor|KQPoint|KQSize|KQRect)( const)?(\*( const)?)*")
FREE_FUNCTION = re.compile(r"[0-9a-f]+ [TW] ([A-Za-z_]\w*\((.*)\))")


def nm(*options):
    return subprocess.run(["nm", "-D", "--defined-only", *options, sys.argv[1]], check=True, capture_output=True, text=True).stdout


def split_top(text, separator):  # outside <...> and (...)
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
    qt_core = next(pathlib.Path(d) for d in sys.argv[3].split(":") if d.endswith("/QtCore"))
    qt_headers = [d for d in qt_core.parent.iterdir() if d.is_dir()]
    foreign = lambda owner: bool(FOREIGN.match(owner)) or any((d / owner).is_file() for d in qt_headers)
    words = set()
    for header in pathlib.Path(sys.argv[2]).glob("*.h"):
        text = header.read_text(encoding="utf-8")
        forward = re.fullmatch(r'#include "(/[^"]+)"\s*', text)  # the build tree's headers forward to the sources
        words.update(re.findall(r"[A-Za-z_]\w*", pathlib.Path(forward.group(1)).read_text(encoding="utf-8") if forward else text))
    listing = nm("-C")
    symbols = [fields[2] for fields in (line.split(" ", 2) for line in listing.splitlines())
               if len(fields) == 3 and not IGNORED.fullmatch(fields[2])]
    own = [symbol for symbol in symbols if not (owners(symbol) and foreign(owners(symbol)[0]))]
    errors = [f"{symbol} is in no public header" for symbol in own if not any(o in words and not foreign(o) for o in owners(symbol))]
    errors += ["no symbol of the library is exported"] if not own else []
    raw = set(nm().split())
    errors += [f"{name} is not exported unmangled" for name in sorted(C_NAMES - raw)]
    errors += [f"{name} is private but exported" for name in raw if "KQPathComponent" in name]
    for match in filter(None, map(FREE_FUNCTION.fullmatch, listing.splitlines())):
        # Demangled, a C++ name shows its parameters; a plain function pointer counts as plain.
        parameters = match.group(2).replace("void (*)()", "void*")
        if all(PLAIN.fullmatch(p) for p in (split_top(parameters, ", ") if parameters else [])):
            errors.append(f"{match.group(1)} is mangled though its parameters are plain C types")
    print("".join(f"FAIL: {error}\n" for error in errors), end="")
    return 1 if errors else 0


sys.exit(main())
