"""Looks into the headers of what is installed: the guards of the linker and the compiler.

usage: test_hardening.py SANITIZED(0 or 1) PROGRAM... -- MODULE...
"""
import subprocess
import sys

SANITIZED = sys.argv[1] == "1"  # the sanitizers check more than the library's guards
at = sys.argv.index("--")
PROGRAMS, MODULES = sys.argv[2:at], sys.argv[at + 1:]


def readelf(option, file):
    return subprocess.run(["readelf", "-W", option, file], check=True, capture_output=True,
                          text=True, env={"LC_ALL": "C"}).stdout


def missing(file, is_program):
    dynamic, symbols = readelf("--dynamic", file), readelf("--dyn-syms", file)
    flags = [line for line in dynamic.splitlines() if "(FLAGS" in line]
    checks = {
        "position-independent code": "DYN (" in readelf("--file-header", file),
        "position-independent program": not is_program or any("PIE" in line for line in flags),
        "immediate binding": any("BIND_NOW" in line or "NOW" in line for line in flags),
        "read-only relocations": "GNU_RELRO" in readelf("--program-headers", file),
        "no executable stack": "RWE" not in readelf("--program-headers", file),
        "stack protector": "__stack_chk_fail" in symbols,
        "checked library calls": SANITIZED or not is_program or "_chk@" in symbols.replace(
            "__stack_chk_fail@", ""),
        "no text relocations": "TEXTREL" not in dynamic,
    }
    return [f"{file}: no {name}" if not name.startswith("no ") else f"{file}: not {name}"
            for name, holds in checks.items() if not holds]


problems = [problem for files, is_program in ((PROGRAMS, True), (MODULES, False))
            for file in files for problem in missing(file, is_program)]
print("\n".join(problems))
sys.exit(1 if problems or not PROGRAMS or not MODULES else 0)
