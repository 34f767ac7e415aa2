#!/usr/bin/env python3
"""Mutation testing by hand: how many simple faults in a subsystem's rule code
do its tests catch?

    tools/mutate.py SUBSYSTEM [--build-dir build] [--seed 1] [--cap 30]
                    [--timeout 180] [--list]

For each sampled mutant (a comparison flipped, + turned into - or back, a
constant changed by one, && and || swapped, an if condition forced true or
false, a statement removed) the file is rewritten, the subsystem's test
programs are rebuilt incrementally with ninja, the subsystem's tests run under
ctest with a time limit (an endless loop counts as killed), and the file is
restored. Mutants that do not compile are skipped and not counted. The sample
depends only on the seed, the cap and the rule files, so runs before and after
a change to the tests face the same mutants.

The build directory must already be configured (Ninja) and the unmutated
tests must pass. Not part of ./tarn test: a run takes minutes.

The pristine text of every file being mutated is kept under
BUILD_DIR/mutate-backup until the run ends, so a run that is killed outright
(SIGKILL, power loss) is repaired by the next start of this script.
"""

import argparse
import os
import random
import re
import signal
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SRC = ROOT / "src" / "TarnCommon"

# Rule code only: pure functions and state machines, not drawing.
RULE_FILES = {
    "Collapsible": ["Collapsible/KQCollapsibleStacking.cpp"],
    "Diagnostics": ["Diagnostics/KQMessageOutput.cpp", "Diagnostics/KQLog.cpp"],
    "Foundation": ["Foundation/KQColorExtensions.cpp", "Foundation/KQStringExtensions.cpp",
                   "Foundation/KQCharacterSet.cpp"],
    "Geometry": ["Geometry/KQGeometry.cpp", "Geometry/KQColourWheel.cpp"],
    "Inspector": ["Inspector/KQInspectorLayout.cpp", "Inspector/KQInspectorWindow.cpp"],
    "Kit": ["Kit/KQError.cpp", "Kit/KQMenuExtensions.cpp", "Kit/KQURLRequest.cpp", "Kit/KQPrintInfo.cpp"],
    "Platform": ["Platform/KQRectRules.h", "Platform/KQScreenSpace.cpp"],
    "Relayout": ["Relayout/KQRelayoutRules.cpp"],
    "TabView": ["TabView/KQTabBarGeometry.cpp", "TabView/KQTabView.cpp"],
    "ToolTips": ["ToolTips/ToolTipTiming_ZL.cpp", "ToolTips/ToolTipHitTesting_ZL.cpp"],
    "Windows": ["Windows/ConstrainFrameRectToScreen_ZL.cpp", "Windows/CocoaExtensions_ZL.cpp"],
}

# Cosmetic statements (repaints, painting) are not rule code.
COSMETIC_RE = re.compile(r"\b(update|repaint)\(\)|\bpainter\b|\bdraw\w*\(|\bfillRect\(")
# A declaration: removing it cannot compile, so it is never offered.
DECLARATION_RE = re.compile(r"^\s*(?:const\s+)?[A-Za-z_][\w:]*(?:<[^;=()]*>)?[\s*&]+[A-Za-z_]\w*\s*[=({;\[]")

# Tests that rebuild the tree themselves would race the mutant's build.
SKIPPED_TESTS = re.compile(r"^log_format_argument_")

COMPARISONS = {"<": ">=", ">=": "<", ">": "<=", "<=": ">", "==": "!=", "!=": "=="}
COMPARISON_RE = re.compile(r"(?<=\s)(<=|>=|==|!=|<|>)(?=\s)")
ARITHMETIC_RE = re.compile(r"(?<=\s)([+-])(?=\s)")
LOGICAL_RE = re.compile(r"(?<=\s)(&&|\|\|)(?=\s)")
NUMBER_RE = re.compile(r"(?<![\w.])(\d+)(\.\d*)?(?:[eE][-+]?\d+)?([uUlLfF]*)(?![\w.])")
IF_RE = re.compile(r"\b(if|while)\s*\(")
STATEMENT_START_RE = re.compile(r"^\s*(?!return\b|case\b|default\b|else\b|const\b|auto\b|static\b|using\b"
                                r"|typedef\b|namespace\b|template\b|struct\b|class\b|enum\b|public\b"
                                r"|private\b|protected\b)[A-Za-z_*(][\w:.>\-\[\]()*&]*")


def code_mask(lines):
    """Per line, a copy with comments and string/char literals blanked out, so
    that operators and numbers inside them are never mutated."""
    masked, in_block = [], False
    for line in lines:
        out, i = [], 0
        while i < len(line):
            if in_block:
                end = line.find("*/", i)
                if end < 0:
                    out.append(" " * (len(line) - i))
                    i = len(line)
                else:
                    out.append(" " * (end + 2 - i))
                    i, in_block = end + 2, False
                continue
            c = line[i]
            if line.startswith("//", i):
                out.append(" " * (len(line) - i))
                break
            if line.startswith("/*", i):
                in_block = True
                continue
            if c in "\"'":
                j = i + 1
                while j < len(line) and line[j] != c:
                    j += 2 if line[j] == "\\" else 1
                out.append(" " * (min(j + 1, len(line)) - i))
                i = j + 1
                continue
            out.append(c)
            i += 1
        masked.append("".join(out))
    return masked


def matching_paren(text, open_index):
    depth = 0
    for i in range(open_index, len(text)):
        if text[i] == "(":
            depth += 1
        elif text[i] == ")":
            depth -= 1
            if depth == 0:
                return i
    return -1


def candidates(relative):
    """Every mutant of one file: (relative path, line index, description, new line)."""
    lines = (SRC / relative).read_text().split("\n")
    masked = code_mask(lines)
    found = []
    previous_end = ";"
    for n, (line, code) in enumerate(zip(lines, masked)):
        stripped = code.strip()
        if not stripped:
            continue
        head = code.split("(")[0]
        if (stripped.startswith("#") or "static_assert" in code or ("Q_" in head and "Q_EMIT" not in head)
                or COSMETIC_RE.search(code)):
            previous_end = stripped[-1]
            continue

        def add(start, end, replacement, what):
            # The column keeps two mutants of one line apart in the report.
            found.append((relative, n, f"col {start + 1}: {what}", line[:start] + replacement + line[end:]))

        for m in COMPARISON_RE.finditer(code):
            op = m.group(1)
            add(m.start(), m.end(), COMPARISONS[op], f"{op} -> {COMPARISONS[op]}")
        for m in ARITHMETIC_RE.finditer(code):
            op = m.group(1)
            other = "-" if op == "+" else "+"
            add(m.start(), m.end(), other, f"{op} -> {other}")
        for m in LOGICAL_RE.finditer(code):
            op = m.group(1)
            other = "||" if op == "&&" else "&&"
            add(m.start(), m.end(), other, f"{op} -> {other}")
        for m in NUMBER_RE.finditer(code):
            whole, fraction, suffix = m.group(1), m.group(2), m.group(3)
            if fraction is not None or "e" in m.group(0).lower():
                value = float(m.group(0).rstrip("uUlLfF"))
                new = repr(value + 1.0) if value < 1 else repr(value * 1.01 + 1e-9)
                new += suffix if "f" in suffix.lower() else ""
            else:
                new = str(int(whole) + 1) + suffix
            add(m.start(), m.end(), new, f"{m.group(0)} -> {new}")
        for m in IF_RE.finditer(code):
            open_index = m.end() - 1
            close = matching_paren(code, open_index)
            if close < 0:
                continue
            inner = code[open_index + 1:close]
            if ";" in inner or "=" in inner.replace("==", "").replace("!=", "").replace("<=", "") \
                    .replace(">=", "") or inner.strip().startswith(("const", "auto")):
                continue  # if with an initializer or a declaration
            if m.group(1) == "if":
                add(open_index + 1, close, "true", f"if ({inner.strip()[:40]}) -> true")
            add(open_index + 1, close, "false", f"{m.group(1)} ({inner.strip()[:40]}) -> false")
        # A whole simple statement on its own line, after a completed one.
        if (stripped.endswith(";") and previous_end in ";{}:" and STATEMENT_START_RE.match(code)
                and code.count("(") == code.count(")") and not DECLARATION_RE.match(code)
                and " return " not in f" {stripped}"):
            indent = line[: len(line) - len(line.lstrip())]
            found.append((relative, n, f"statement removed: {line.strip()[:50]}", indent + ";"))
        previous_end = stripped[-1]
    return found


def sample(subsystem, seed, cap):
    """Up to cap mutants, spread round-robin over the subsystem's rule files."""
    rng = random.Random(f"{seed}:{subsystem}")
    pools = []
    for relative in RULE_FILES[subsystem]:
        pool = candidates(relative)
        rng.shuffle(pool)
        pools.append(pool)
    chosen = []
    while len(chosen) < cap and any(pools):
        for pool in pools:
            if pool and len(chosen) < cap:
                chosen.append(pool.pop())
    return chosen


def subsystem_tests(subsystem):
    """The subsystem's test names and the executables they need, from its CMakeLists."""
    text = (ROOT / "tests" / subsystem / "CMakeLists.txt").read_text()
    tests = re.findall(r"tarn_add_test\(\s*(\w+)", text) + re.findall(r"add_test\(\s*NAME\s+([\w${}]+)", text)
    tests = [t for t in tests if "$" not in t and not SKIPPED_TESTS.match(t)]
    targets = re.findall(r"tarn_add_test\(\s*(\w+)", text) + re.findall(r"add_executable\(\s*(\w+)", text)
    return sorted(set(tests)), sorted(set(targets))


def run(command, timeout):
    """The exit code, or None past the time limit. The command runs in its own
    process group, and the whole group is killed on a time-out or an
    interruption: test programs or compilers left behind would hold the CPU
    and race the next build."""
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               start_new_session=True)
    try:
        return process.wait(timeout=timeout)
    except subprocess.TimeoutExpired:
        return None
    finally:
        if process.poll() is None:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()


def build(build_dir, targets):
    return run(["ninja", "-C", str(build_dir), "-j2", *targets], timeout=1200) == 0


def run_tests(build_dir, tests, timeout):
    regex = "^(" + "|".join(re.escape(t) for t in tests) + ")$"
    return run(["ctest", "--test-dir", str(build_dir), "-R", regex, "--timeout", str(timeout),
                "--stop-on-failure", "-j2"], timeout=timeout * len(tests) + 60)


def backup_dir(build_dir):
    return Path(build_dir) / "mutate-backup"


def restore_from_backup(build_dir):
    """Put back any file a killed run left mutated; returns the files restored."""
    folder = backup_dir(build_dir)
    restored = []
    if folder.is_dir():
        for saved in sorted(p for p in folder.rglob("*") if p.is_file()):
            relative = saved.relative_to(folder)
            target = SRC / relative
            if not target.exists() or target.read_bytes() != saved.read_bytes():
                target.write_bytes(saved.read_bytes())
                restored.append(str(relative))
            saved.unlink()
    return restored


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("subsystem", choices=sorted(RULE_FILES))
    parser.add_argument("--build-dir", default=str(ROOT / "build"))
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--cap", type=int, default=30)
    parser.add_argument("--timeout", type=int, default=180, help="seconds per test program")
    parser.add_argument("--list", action="store_true", help="print the sampled mutants and stop")
    args = parser.parse_args()

    mutants = sample(args.subsystem, args.seed, args.cap)
    if args.list:
        for relative, n, what, _ in mutants:
            print(f"{relative}:{n + 1}: {what}")
        return 0

    build_dir = Path(args.build_dir)
    for relative in restore_from_backup(build_dir):
        print(f"restored {relative} left mutated by an interrupted run", file=sys.stderr)
    tests, targets = subsystem_tests(args.subsystem)
    if not tests:
        print(f"no tests found for {args.subsystem}", file=sys.stderr)
        return 2
    print(f"{args.subsystem}: {len(mutants)} mutants, tests: {' '.join(tests)}", flush=True)
    if not build(build_dir, targets) or run_tests(build_dir, tests, args.timeout) != 0:
        print("the unmutated tests do not build or do not pass; nothing to measure", file=sys.stderr)
        return 2

    originals = {}

    def restore_all():
        for r, t in originals.items():
            if (SRC / r).read_bytes() != t:
                (SRC / r).write_bytes(t)

    def stop(signum, _frame):
        # Unwinds through the finally blocks below, which restore the files.
        raise SystemExit(128 + signum)

    for signum in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(signum, stop)
    killed, survivors, skipped = 0, [], 0
    try:
        for index, (relative, n, what, new_line) in enumerate(mutants, 1):
            path = SRC / relative
            if relative not in originals:
                originals[relative] = path.read_bytes()
                saved = backup_dir(build_dir) / relative
                saved.parent.mkdir(parents=True, exist_ok=True)
                saved.write_bytes(originals[relative])
            original = originals[relative]
            lines = original.decode().split("\n")
            lines[n] = new_line
            path.write_bytes("\n".join(lines).encode())
            started = time.monotonic()
            label = f"{relative}:{n + 1}: {what}"
            try:
                if not build(build_dir, targets):
                    skipped += 1
                    verdict = "skipped (does not compile)"
                else:
                    result = run_tests(build_dir, tests, args.timeout)
                    if result == 0:
                        survivors.append(label)
                        verdict = "SURVIVED"
                    else:
                        killed += 1
                        verdict = "killed" if result is not None else "killed (time limit)"
            finally:
                path.write_bytes(original)
            print(f"[{index}/{len(mutants)}] {verdict:<26} {label} ({time.monotonic() - started:.0f} s)",
                  flush=True)
    finally:
        restore_all()
        restore_from_backup(build_dir)
        build(build_dir, targets)

    total = killed + len(survivors)
    share = 100.0 * killed / total if total else 0.0
    print(f"\n{args.subsystem}: killed {killed}/{total} ({share:.0f}%), survived {len(survivors)}, "
          f"skipped {skipped} (do not compile)")
    for label in survivors:
        print(f"  survivor: {label}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
