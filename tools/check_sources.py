#!/usr/bin/env python3
"""check_sources.py: what compiles, works under Wine, and fails on Windows or endangers its user. Run by ./dev lint and
./dev test; prints each place and ends with 1 when there is one."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ("src", "launcher", "samples")

ALLOWED = {
    # To go.
    ("library by its bare name", "src/output/ways/mail.cpp"),
    ("program by its bare name", "src/common/shell_start.cpp"),
    ("program by its bare name", "src/main_window/output_commands.cpp"),
    # Only where the compositor names no other; of a child, which has no such borders.
    ("window's rectangle with its invisible borders", "src/capture/window_grab.cpp"),
    ("window's rectangle with its invisible borders", "src/capture/browser_window.cpp"),
    ("window's rectangle with its invisible borders", "src/capture/overlay/window_tree.cpp"),
}

OPENING = re.compile(r"\b(?:_?w?fopen(?:_s)?|_?w?freopen(?:_s)?|_?w?fdopen|_w?fsopen|openFile)\s*\(")
MODE = re.compile(r"[rwa]\+?[bt]?$")
TEXT = re.compile(r'"((?:[^"\\]|\\.)*)"')
BARE = r'L?"[^"\\/:]*"'
LIBRARY = re.compile(r"\bLoadLibrary(?:Ex)?[AW]?\s*\(\s*" + BARE)
PROGRAM = re.compile(
    r'\bShellExecute[AW]?\s*\([^,]*,[^,]*,\s*' + BARE + r'|\blpFile\s*=\s*' + BARE +
    r'|(?:\.|->)open\(\s*"[\w.]+"\s*,|\bstartExternalEditor\(\s*"[\w.]+"')
RECTANGLE = re.compile(r"\bGetWindowRect\s*\(")


def without_comments(text):
    """The text with comments blanked out, line by line as it was."""
    def blank(match):
        found = match.group(0)
        return found if found[0] == '"' else re.sub(r"[^\n]", " ", found)
    return re.sub(r'"(?:[^"\\\n]|\\.)*"|//[^\n]*|/\*.*?\*/', blank, text, flags=re.S)


def arguments(text, start):
    """What stands between the parenthesis that was opened before `start` and its end."""
    depth = 1
    for at in range(start, len(text)):
        depth += {"(": 1, ")": -1}.get(text[at], 0)
        if depth == 0:
            return text[start:at]
    return ""


def places(path, text):
    """The offences in one file: what, and where in the text."""
    # Windows' own run-time refuses a mode with a letter that it does not know, such as the exclusive "x".
    for call in OPENING.finditer(text):
        texts = TEXT.findall(arguments(text, call.end()))
        if texts and not MODE.match(texts[-1]):
            yield "mode of opening a file", call.start()
    # A file of that name in the current folder, or beside the program, is taken for the system's.
    for call in LIBRARY.finditer(text):
        yield "library by its bare name", call.start()
    for call in PROGRAM.finditer(text):
        yield "program by its bare name", call.start()
    # A picture of a window is one of what is seen of it.
    if path.startswith("src/capture/") or re.match(r"src/host/\w*capture\w*\.", path):
        for call in RECTANGLE.finditer(text):
            yield "window's rectangle with its invisible borders", call.start()


def main():
    found = False
    for folder in FOLDERS:
        for file in sorted((ROOT / folder).rglob("*")):
            if file.suffix not in (".cpp", ".h", ".c"):
                continue
            path = file.relative_to(ROOT).as_posix()
            text = without_comments(file.read_text(encoding="utf-8"))
            for what, at in places(path, text):
                if (what, path) not in ALLOWED:
                    print(f"{path}:{text.count(chr(10), 0, at) + 1}: {what}")
                    found = True
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
