#!/usr/bin/env python3
"""The library's declared interface, read from the public headers.

Every exported declaration in include/tessar/*.h carries the TESSAR_API mark;
this tool lists those names and compares them with what a built library
exports.

  interface.py names                 the declared names, one a line, with their header
  interface.py check-exports LIB     fail on an export that is not declared; report
                                     how many declared names are not defined yet
  interface.py table LIB             the README's implementation table
  interface.py check-readme LIB      fail when the README's table is out of date
  interface.py update-readme LIB     rewrite the README's table
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEADERS = ROOT / "include" / "tessar"
README = ROOT / "README.md"
BEGIN, END = "<!-- interface-table:begin -->", "<!-- interface-table:end -->"

# Headers that declare no interface of their own.
PLUMBING = {"export", "types", "tessar"}


def strip_comments(text):
    text = re.sub(r"/\*.*?\*/", " ", text, flags=re.S)
    return re.sub(r"//[^\n]*", " ", text)


def family_title(text, stem):
    m = re.search(r"Tessar:\s*([^\n.]+)", text)
    return m.group(1).strip() if m else stem


def declared():
    """[(header stem, family title, [names])] in header order."""
    out = []
    for path in sorted(HEADERS.glob("*.h")):
        stem = path.stem
        if stem in PLUMBING:
            continue
        raw = path.read_text()
        text = strip_comments(raw)
        names = []
        for m in re.finditer(r"\bclass\s+TESSAR_API\s+(\w+)", text):
            names.append(m.group(1))
        for m in re.finditer(r"\bTESSAR_API\b([^;{]*?)(?:;|\{)", text):
            decl = m.group(1)
            if re.match(r"\s*\w+\s*$", decl) and "(" not in decl:
                continue  # the class mark above
            fn = re.search(r"(\w+)\s*\(", decl)
            if fn:
                names.append(fn.group(1))
                continue
            data = re.search(r"(\w+)\s*(\[[^\]]*\])?\s*$", decl)
            if data:
                names.append(data.group(1))
        out.append((stem, family_title(raw, stem), names))
    return out


def exported(lib):
    """The defined dynamic symbols of a library: [(raw, demangled)]."""
    def run(*flags):
        res = subprocess.run(["nm", "-D", "--defined-only", *flags, lib],
                             check=True, capture_output=True, text=True)
        rows = []
        for line in res.stdout.splitlines():
            parts = line.split(None, 2)
            if len(parts) == 3 and parts[1] not in ("A",):
                rows.append(parts[2])
        return rows
    return list(zip(run(), run("-C")))


def classes_of(decls):
    return {n for _, _, names in decls for n in names if n[:1].isupper() and n.startswith("Ts")}


def defined_names(lib, decls):
    """Declared names that the library defines, and exports that are not declared."""
    wanted = {n for _, _, names in decls for n in names}
    classes = classes_of(decls)
    defined, stray = set(), []
    for raw, nice in exported(lib):
        if raw in wanted:
            defined.add(raw)
            continue
        owner = None
        for cls in classes:
            if (nice.startswith(cls + "::") or nice in (f"vtable for {cls}", f"typeinfo for {cls}",
                                                         f"typeinfo name for {cls}")):
                owner = cls
        if owner:
            defined.add(owner)
        else:
            stray.append(nice)
    return defined, stray


def table(lib):
    decls = declared()
    defined, _ = defined_names(lib, decls)
    rows = ["| Header | Family | Declared | Implemented |", "|---|---|---:|---:|"]
    total = done = 0
    for stem, title, names in decls:
        n = len(names)
        d = sum(1 for x in names if x in defined)
        total += n
        done += d
        rows.append(f"| `tessar/{stem}.h` | {title} | {n} | {d} |")
    rows.append(f"| | **all** | **{total}** | **{done}** |")
    return "\n".join(rows)


def readme_block():
    text = README.read_text()
    if BEGIN not in text or END not in text:
        return text, None
    start = text.index(BEGIN) + len(BEGIN)
    return text, text[start:text.index(END)].strip()


def main(argv):
    if len(argv) < 2:
        print(__doc__)
        return 2
    cmd = argv[1]
    if cmd == "names":
        for stem, _, names in declared():
            for n in names:
                print(f"{n}\t{stem}.h")
        return 0
    if len(argv) < 3:
        print(__doc__)
        return 2
    lib = argv[2]
    if cmd == "check-exports":
        decls = declared()
        all_names = [n for _, _, names in decls for n in names]
        dupes = sorted({n for n in all_names if all_names.count(n) > 1})
        defined, stray = defined_names(lib, decls)
        umbrella = (HEADERS / "tessar.h").read_text()
        unincluded = [p.name for p in sorted(HEADERS.glob("*.h"))
                      if p.stem != "tessar" and f"<tessar/{p.name}>" not in umbrella]
        for n in unincluded:
            print(f"not included by tessar.h: {n}")
        for n in dupes:
            print(f"declared twice: {n}")
        for n in stray:
            print(f"exported but not declared: {n}")
        missing = [n for n in all_names if n not in defined]
        print(f"{len(all_names)} names declared, {len(defined)} defined, "
              f"{len(missing)} declared but not yet defined")
        return 1 if stray or dupes or unincluded else 0
    if cmd == "table":
        print(table(lib))
        return 0
    if cmd in ("check-readme", "update-readme"):
        text, block = readme_block()
        fresh = table(lib)
        if cmd == "check-readme":
            if block != fresh:
                print("README implementation table is out of date; run:")
                print(f"  python3 tools/interface.py update-readme {lib}")
                print(fresh)
                return 1
            return 0
        if block is None:
            print("README has no interface table markers")
            return 1
        start = text.index(BEGIN) + len(BEGIN)
        README.write_text(text[:start] + "\n" + fresh + "\n" + text[text.index(END):])
        return 0
    print(__doc__)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv))
