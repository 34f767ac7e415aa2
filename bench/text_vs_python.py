#!/usr/bin/env python3
"""Runs the text benchmarks of tarn-bench beside what a user would script in
Python on the same inputs, on the same machine at the same time, and prints the
time per operation of both and their ratio.

Usage: bench/text_vs_python.py [path/to/tarn-bench]
"""
import base64
import json
import re
import string
import subprocess
import sys
import timeit
import urllib.parse

SENTENCE = "It's a 'quoted' text: 42 digits, 7 spaces & caf\u00e9 \u2014 ok. "
TEMPLATE_UNIT = "Hello ${name}, your total is ${total}! "
DIGITS = str.maketrans("", "", "0123456789")
QUOTE = {ord("'"): "\\'"}
SPACE = re.compile("[ ]")


def repeated(unit, size):
    return (unit * (size // len(unit) + 1))[:size]


def python_cases(size):
    text = repeated(SENTENCE, size)
    template = string.Template(repeated(TEMPLATE_UNIT, size))
    args = {"name": "Ada", "total": "12.50"}
    data = text.encode("utf-8")[:size]
    encoded = base64.b64encode(data)
    return {
        "BM_TextTemplate": lambda: template.safe_substitute(args),
        "BM_TextEscape": lambda: text.translate(QUOTE),
        "BM_TextRemove": lambda: text.translate(DIGITS),
        "BM_TextReplace": lambda: SPACE.sub("_", text),
        "BM_TextFormEncode": lambda: urllib.parse.quote_plus(text, safe=""),
        "BM_TextBase64Encode": lambda: base64.b64encode(data),
        "BM_TextBase64Decode": lambda: base64.b64decode(encoded, validate=True),
    }


def python_time(function):
    timer = timeit.Timer(function)
    number, _ = timer.autorange()
    return min(timer.repeat(3, number)) / number * 1e9


def main():
    bench = sys.argv[1] if len(sys.argv) > 1 else "build/bench/tarn-bench"
    output = subprocess.run([bench, "--benchmark_filter=BM_Text", "--benchmark_format=json"],
                            check=True, capture_output=True, text=True).stdout
    ours = {b["name"]: b["real_time"] for b in json.loads(output)["benchmarks"]}
    print(f"{'operation':<28}{'TarnCommon ns':>16}{'Python ns':>16}{'Python/ours':>13}")
    for size in (1 << 10, 1 << 20):
        for name, function in python_cases(size).items():
            key = f"{name}/{size}"
            theirs = python_time(function)
            print(f"{key:<28}{ours[key]:>16.0f}{theirs:>16.0f}{theirs / ours[key]:>13.1f}")


if __name__ == "__main__":
    main()
