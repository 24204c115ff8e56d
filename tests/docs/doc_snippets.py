#!/usr/bin/env python3
"""Extracts the C and C++ code blocks of Markdown documents into sources the build compiles.

Every block fenced as ```c or ```cpp is compiled. The HTML comment on the line before a block
says how:
  (none)                  a fragment: the body of a function, in a file that includes the
                          interface's header (ostrel.h for C++, ostrel_c.h for C);
  <!-- given: DECLS -->   the same, with DECLS (comma-separated declarations) as the function's
                          parameters: the names the fragment takes from its surroundings;
  <!-- program NAME -->   part of the program NAME: its blocks, in order, make NAME/NAME.cpp or
                          NAME/NAME.c; on a ```cmake block, the program's NAME/CMakeLists.txt,
                          with which a host builds it from the installed SDK;
  <!-- output NAME -->    (on a plain ``` block) what the program NAME prints: NAME/output.txt.
A fragment's #include lines go to the top of its file. #line directives make the compiler's
messages name the document and line.

usage: doc_snippets.py OUT_DIR DOCUMENT...
Writes OUT_DIR/fragments.cpp, OUT_DIR/fragments.c, a folder per program, and
OUT_DIR/programs.cmake, which sets DOC_PROGRAMS to NAME:LANGUAGE of each program.
"""
import pathlib
import re
import shutil
import sys

FENCE = re.compile(r"^```(\w*)\s*$")
DIRECTIVE = re.compile(r"^<!--\s*(given:|program|output)\s*(.*?)\s*-->$")
PRELUDE = {"cpp": ["#include <ostrel.h>", "#include <cstdio>"],
           "c": ["#include <ostrel_c.h>", "#include <stdio.h>"]}


class Block:
    def __init__(self, document, line, language, directive, text):
        self.document, self.line, self.language = document, line, language
        self.directive, self.text = directive, text

    def where(self):
        return f"{self.document}:{self.line}"


def blocks(document):
    lines = pathlib.Path(document).read_text(encoding="utf-8").splitlines()
    index = 0
    while index < len(lines):
        fence = FENCE.match(lines[index])
        if not fence:
            index += 1
            continue
        before = next((l.strip() for l in reversed(lines[:index]) if l.strip()), "")
        directive = DIRECTIVE.match(before)
        end = next((i for i in range(index + 1, len(lines)) if lines[i].startswith("```")), None)
        if end is None:
            sys.exit(f"{document}:{index + 1}: a code block that never ends")
        yield Block(document, index + 2, fence.group(1),
                    directive.groups() if directive else None, lines[index + 1:end])
        index = end + 1


def line_directive(block, offset=0):
    return f'#line {block.line + offset} "{block.document}"'


def fragment(block, number, includes):
    body = []
    for offset, text in enumerate(block.text):
        if text.startswith("#include"):
            includes.append(text)
            body.append("")
        else:
            body.append(text)
    given = block.directive[1] if block.directive else ""
    name = f"doc_fragment_{number}"
    signature = f"int {name}({given or 'void'})"
    return ([f"{signature};", signature + " {", line_directive(block)] + body +
            ["    return 0;", "}", ""])


def main(out_dir, documents):
    out = pathlib.Path(out_dir)
    shutil.rmtree(out, ignore_errors=True)  # no program a document no longer holds
    out.mkdir(parents=True)
    fragments = {"cpp": [], "c": []}
    includes = {"cpp": list(PRELUDE["cpp"]), "c": list(PRELUDE["c"])}
    programs, outputs, projects = {}, {}, {}
    for document in documents:
        for block in blocks(document):
            kind, argument = block.directive or (None, "")
            if kind == "output":
                outputs[argument] = block.text
                continue
            if kind == "program" and block.language == "cmake":
                projects[argument] = block.text
                continue
            if block.language not in ("c", "cpp"):
                if kind is not None:
                    sys.exit(f"{block.where()}: a {kind} directive on a {block.language!r} block")
                continue
            if kind == "program":
                language, text = programs.setdefault(argument, (block.language, []))
                if language != block.language:
                    sys.exit(f"{block.where()}: program {argument} mixes C and C++")
                text += [line_directive(block)] + block.text
            else:
                number = len(fragments["cpp"]) + len(fragments["c"])
                fragments[block.language].append(
                    fragment(block, number, includes[block.language]))
    for language, parts in fragments.items():
        unique = list(dict.fromkeys(includes[language]))
        text = unique + [""] + [line for part in parts for line in part]
        (out / f"fragments.{language}").write_text("\n".join(text) + "\n", encoding="utf-8")
    for name, (language, text) in programs.items():
        if name not in outputs:
            sys.exit(f"program {name} has no output block")
        folder = out / name
        folder.mkdir(exist_ok=True)
        (folder / f"{name}.{language}").write_text("\n".join(text) + "\n", encoding="utf-8")
        (folder / "output.txt").write_text("\n".join(outputs[name]) + "\n", encoding="utf-8")
        if name in projects:
            (folder / "CMakeLists.txt").write_text("\n".join(projects[name]) + "\n",
                                                   encoding="utf-8")
    for name in (outputs.keys() | projects.keys()) - programs.keys():
        sys.exit(f"an output or CMake block for {name}, which no program has")
    listing = " ".join(f"{name}:{language}" for name, (language, _) in sorted(programs.items()))
    (out / "programs.cmake").write_text(f"set(DOC_PROGRAMS {listing})\n", encoding="utf-8")


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2:])
