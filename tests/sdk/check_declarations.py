#!/usr/bin/env python3
"""Holds the C# and Python declarations of ostrel.dll's C interface to its header.

    check_declarations.py HEADER VERSION_HEADER_IN CSHARP PYTHON [--project-version X.Y.Z]

HEADER is ostrel_c.h and VERSION_HEADER_IN ostrel_version.h.in, whose @PROJECT_VERSION...@ are
filled with --project-version (by default the version in project() of the CMakeLists.txt beside
the header's folder). Every function, record, callback and constant of the header must be
declared in both files, and nothing else, with the types mapping() allows. Neither .NET nor a
Windows Python runs here: the C# file is read with regular expressions (it keeps one style), the
Python module is imported and its ctypes objects inspected.

Prints one line per mismatch and exits 1, or one summary line and exits 0.
"""

import argparse
import ast
import ctypes
import importlib.util
import re
import sys
import tokenize
import types
from dataclasses import dataclass
from pathlib import Path

# ---- The mapping, written once -----------------------------------------------------------------

# C scalar -> (C#, ctypes)
SCALARS = {
    "int8_t": ("sbyte", "c_int8"),
    "uint8_t": ("byte", "c_uint8"),
    "int16_t": ("short", "c_int16"),
    "uint16_t": ("ushort", "c_uint16"),
    "int32_t": ("int", "c_int32"),
    "uint32_t": ("uint", "c_uint32"),
    "int64_t": ("long", "c_int64"),
    "uint64_t": ("ulong", "c_uint64"),
    "float": ("float", "c_float"),
    "double": ("double", "c_double"),
}


@dataclass(frozen=True)
class CType:
    base: str
    const: bool = False
    pointers: int = 0
    array: int | None = None  # the length of an array declarator: active[4], calCoef[6]

    def __str__(self):
        text = ("const " if self.const else "") + self.base + "*" * self.pointers
        return text + (f"[{self.array}]" if self.array is not None else "")


def type_name(c_name):
    """The C# and Python name of a record or callback: ostrel_factory_cal -> FactoryCal."""
    return "".join(word.capitalize() for word in c_name.removeprefix("ostrel_").split("_"))


def mapping(header, ct, role):
    """The C# and Python spellings allowed for C type ct as a 'return', 'param', 'field',
    'callback return' or 'callback param'; None when the mapping has no rule for it. A const
    pointer is never C#'s 'in': not every runtime marshals a readonly reference as a pointer."""
    base = header.scalars.get(ct.base, ct.base)
    depth = ct.pointers + (ct.array is not None and role != "field")
    if base == "void" and depth == 0 and role.endswith("return"):
        return {"void"}, {"None"}
    if base == "char" and ct.const and depth == 1:
        if role == "param":
            return {"string LPUTF8Str"}, {"c_char_p"}
        if role == "return":
            return {"IntPtr"}, {"c_char_p", "c_void_p"}
        if role == "callback param":
            return {"IntPtr", "string LPUTF8Str"}, {"c_char_p", "c_void_p"}
    if base == "void" and depth == 1:
        arrays = {f"{cs}[]" for cs, _ in SCALARS.values()}
        return {"IntPtr"} | arrays, {"c_void_p"}
    if base in SCALARS:
        cs, py = SCALARS[base]
        if role == "field" and ct.array is not None and ct.pointers == 0:
            return {f"{cs}[{ct.array}]"}, {f"{py}*{ct.array}"}
        if depth == 0:
            return {cs}, {py}
        if depth == 1 and ct.array is not None:
            return {f"{cs}[]"}, {f"POINTER({py})", f"{py}*{ct.array}"}
        if depth == 1:
            by_ref = {"ref"} if ct.const else {"out", "ref"}
            return {f"{cs}[]"} | {f"{m} {cs}" for m in by_ref}, {f"POINTER({py})"}
    if base in header.records and depth == 1 and role == "param":
        name = type_name(base)
        by_ref = {"ref"} if ct.const else {"out", "ref"}
        return {f"{m} {name}" for m in by_ref}, {f"POINTER({name})"}
    if base in header.opaque and depth == 1:
        return {"IntPtr"}, {"c_void_p"}
    if base in header.opaque and depth == 2 and not ct.const:
        return {"out IntPtr", "ref IntPtr"}, {"POINTER(c_void_p)"}
    if base in header.callbacks and depth == 0 and role == "param":
        return {type_name(base)}, {type_name(base)}
    return None


# ---- Integer expressions (the version number's formula, the version helpers) -------------------


def evaluate(text, names):
    """Evaluates a C or C# integer expression of names, literals, arithmetic, comparisons and
    && || !, without eval."""
    text = re.sub(r"\b(0[xX][0-9a-fA-F]+|\d+)[uUlL]*\b", r"\1", text)
    text = text.replace("&&", " and ").replace("||", " or ")
    text = re.sub(r"!(?!=)", " not ", text).replace("/", "//")
    return _evaluate(ast.parse(text.strip(), mode="eval").body, names)


_OPERATORS = {
    ast.Add: lambda a, b: a + b,
    ast.Sub: lambda a, b: a - b,
    ast.Mult: lambda a, b: a * b,
    ast.FloorDiv: lambda a, b: a // b,
    ast.Mod: lambda a, b: a % b,
    ast.Eq: lambda a, b: a == b,
    ast.NotEq: lambda a, b: a != b,
    ast.Lt: lambda a, b: a < b,
    ast.LtE: lambda a, b: a <= b,
    ast.Gt: lambda a, b: a > b,
    ast.GtE: lambda a, b: a >= b,
}


def _evaluate(node, names):
    if isinstance(node, ast.Constant) and isinstance(node.value, int):
        return node.value
    if isinstance(node, ast.Name):
        return names[node.id]
    if isinstance(node, ast.BinOp) and type(node.op) in _OPERATORS:
        return _OPERATORS[type(node.op)](_evaluate(node.left, names), _evaluate(node.right, names))
    if isinstance(node, ast.Compare):
        left = _evaluate(node.left, names)
        for op, right_node in zip(node.ops, node.comparators):
            right = _evaluate(right_node, names)
            if not _OPERATORS[type(op)](left, right):
                return False
            left = right
        return True
    if isinstance(node, ast.BoolOp):
        values = (_evaluate(value, names) for value in node.values)
        return all(values) if isinstance(node.op, ast.And) else any(values)
    if isinstance(node, ast.UnaryOp) and isinstance(node.op, ast.Not):
        return not _evaluate(node.operand, names)
    raise ValueError(f"not an integer expression: {ast.unparse(node)}")


# ---- The C header ------------------------------------------------------------------------------


@dataclass
class Header:
    scalars: dict  # typedef name -> scalar it names
    records: dict  # name -> [(CType, field)]
    opaque: set
    callbacks: dict  # name -> (CType, [(CType, parameter)])
    functions: dict  # name -> (CType, [(CType, parameter)])
    constants: dict  # name -> value


class HeaderError(Exception):
    pass


def strip_c_comments(text):
    return re.sub(r"/\*.*?\*/|//[^\n]*", " ", text, flags=re.S)


def parse_declarator(text, named=True):
    match = re.fullmatch(
        r"(const\s+)?(\w+)\s*((?:\*\s*)*)(\w+)?\s*(?:\[\s*(\d+)\s*\])?", text.strip()
    )
    if not match or (named and not match[4]):
        raise HeaderError(f"can't read the declaration '{text.strip()}'")
    const, base, stars, name, array = match.groups()
    return CType(base, bool(const), stars.count("*"), int(array) if array else None), name


def parse_parameters(text):
    text = text.strip()
    if text in ("", "void"):
        return []
    return [parse_declarator(part) for part in text.split(",")]


def parse_header(path):
    text = strip_c_comments(Path(path).read_text())
    text = re.sub(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", " ", text, flags=re.M)
    header = Header({}, {}, set(), {}, {}, {})
    patterns = [
        (
            "function",
            r"OSTREL_C_API\s+(?P<ret>[^;(]*?[\s*])(?P<name>\w+)\s*\((?P<params>[^()]*)\)\s*;",
        ),
        ("record", r"typedef\s+struct\s+(?:\w+\s*)?\{(?P<body>[^{}]*)\}\s*(?P<name>\w+)\s*;"),
        ("opaque", r"typedef\s+struct\s+\w+\s+(?P<name>\w+)\s*;"),
        (
            "callback",
            r"typedef\s+(?P<ret>[^;()]*?)\(\s*\*\s*(?P<name>\w+)\s*\)\s*\((?P<params>[^()]*)\)\s*;",
        ),
        ("scalar", r"typedef\s+(?P<base>\w+)\s+(?P<name>\w+)\s*;"),
        ("enum", r"\benum\s*\{(?P<body>[^{}]*)\}\s*;"),
        ("wrapper", r"extern\s+\"C\"\s*\{|^\s*\}\s*$"),
    ]
    for kind, pattern in patterns:
        for match in re.finditer(pattern, text, flags=re.M):
            if kind == "function":
                ret, _ = parse_declarator(match["ret"], named=False)
                header.functions[match["name"]] = (ret, parse_parameters(match["params"]))
            elif kind == "record":
                fields = [parse_declarator(f) for f in match["body"].split(";") if f.strip()]
                header.records[match["name"]] = fields
            elif kind == "opaque":
                header.opaque.add(match["name"])
            elif kind == "callback":
                ret, _ = parse_declarator(match["ret"], named=False)
                header.callbacks[match["name"]] = (ret, parse_parameters(match["params"]))
            elif kind == "scalar":
                if match["base"] not in SCALARS:
                    raise HeaderError(f"typedef {match['name']} of {match['base']}, not a scalar")
                header.scalars[match["name"]] = match["base"]
            elif kind == "enum":
                value = -1
                for item in filter(str.strip, match["body"].split(",")):
                    name, _, given = item.partition("=")
                    value = int(given, 0) if given.strip() else value + 1
                    header.constants[name.strip()] = value
        text = re.sub(pattern, " ", text, flags=re.M)
    if text.strip():
        raise HeaderError(f"declarations the checker can't read: {' '.join(text.split())[:200]}")
    return header


def parse_version_header(path, version):
    """OSTREL_VERSION_* -> value, with the project's version filled in, and the weight of a major
    version in OSTREL_VERSION_NUMBER's formula."""
    major, minor, patch = (int(part) for part in version.split("."))
    fill = {
        "PROJECT_VERSION_MAJOR": str(major),
        "PROJECT_VERSION_MINOR": str(minor),
        "PROJECT_VERSION_PATCH": str(patch),
        "PROJECT_VERSION": version,
    }
    text = strip_c_comments(Path(path).read_text()).replace("\\\n", " ")
    text = re.sub(r"@(\w+)@", lambda m: fill[m[1]], text)
    values, formulas = {}, {}
    for name, value in re.findall(r"^\s*#define\s+(OSTREL_VERSION_\w+)[ \t]+(.+)$", text, re.M):
        formulas[name] = value = value.strip()
        values[name] = value[1:-1] if value.startswith('"') else evaluate(value, values)
    number = formulas["OSTREL_VERSION_NUMBER"]
    parts = ("OSTREL_VERSION_MAJOR", "OSTREL_VERSION_MINOR", "OSTREL_VERSION_PATCH")
    weight = evaluate(number, {**dict.fromkeys(parts, 0), parts[0]: 1}) - evaluate(
        number, dict.fromkeys(parts, 0)
    )
    return values, weight


def project_version(header_path):
    cmake = Path(header_path).resolve().parent.parent / "CMakeLists.txt"
    match = re.search(r"project\s*\(\s*\w+\s+VERSION\s+(\d+\.\d+\.\d+)", cmake.read_text())
    if not match:
        raise HeaderError(f"no project version in {cmake}: pass --project-version")
    return match[1]


# ---- The C# declarations -----------------------------------------------------------------------

CS_ALIASES = {
    "Byte": "byte", "SByte": "sbyte", "Int16": "short", "UInt16": "ushort", "Int32": "int",
    "UInt32": "uint", "Int64": "long", "UInt64": "ulong", "Single": "float", "Double": "double",
    "String": "string", "nint": "IntPtr",
}
CS_INTEGERS = {
    "sbyte": (-(2**7), 2**7 - 1), "byte": (0, 2**8 - 1), "short": (-(2**15), 2**15 - 1),
    "ushort": (0, 2**16 - 1), "int": (-(2**31), 2**31 - 1), "uint": (0, 2**32 - 1),
    "long": (-(2**63), 2**63 - 1), "ulong": (0, 2**64 - 1),
}


def strip_cs_comments(text):
    pattern = r'("(?:\\.|[^"\\\n])*")|//[^\n]*|/\*.*?\*/'
    return re.sub(pattern, lambda m: m[1] or " ", text, flags=re.S)


def split_top_level(text):
    parts, depth, start = [], 0, 0
    for i, char in enumerate(text):
        if char in "([":
            depth += 1
        elif char in ")]":
            depth -= 1
        elif char == "," and depth == 0:
            parts.append(text[start:i])
            start = i + 1
    parts.append(text[start:])
    return [part.strip() for part in parts if part.strip()]


def cs_type(text):
    array = text.endswith("[]")
    name = text.removesuffix("[]").strip().removeprefix("System.")
    return CS_ALIASES.get(name, name) + ("[]" if array else "")


def cs_entry(text):
    """'[attributes] [ref|out|in] type name' -> (canonical type, name): 'out uint',
    'string LPUTF8Str', 'float[6]' for a ByValArray of 6."""
    attributes, rest = [], text.strip()
    while rest.startswith("["):
        end = rest.index("]") + 1
        attributes.append(rest[1 : end - 1])
        rest = rest[end:].lstrip()
    match = re.fullmatch(
        r"(?:public\s+)?(?:(ref|out|in)\s+)?([\w.]+(?:\s*\[\s*\])?)\s+(\w+)", rest.strip()
    )
    if not match:
        return f"'{' '.join(text.split())}' (unreadable)", None
    modifier, type_text, name = match.groups()
    canonical = cs_type(re.sub(r"\s+", "", type_text))
    for attribute in attributes:
        if re.fullmatch(r"(In|Out)(Attribute)?", attribute.strip()):
            continue
        marshal = re.fullmatch(
            r"MarshalAs\s*\(\s*UnmanagedType\.(\w+)\s*(?:,(.*))?\)", attribute.strip()
        )
        if marshal and marshal[1] == "ByValArray" and canonical.endswith("[]"):
            size = re.search(r"SizeConst\s*=\s*(\d+)", marshal[2] or "")
            canonical = canonical[:-2] + (f"[{size[1]}]" if size else "[?]")
        elif marshal:
            canonical += f" {marshal[1]}"
        else:
            canonical += f" [{attribute.strip()}]"
    return (f"{modifier} {canonical}" if modifier else canonical), name


@dataclass
class CSharp:
    functions: dict  # C name -> [(return, [parameter types])], one per overload
    structs: dict  # name -> [(type, field)]
    delegates: dict  # name -> (return, [parameter types])
    constants: dict  # name -> (type, value)
    text: str
    errors: list


def cs_signature(ret, params):
    entries = [cs_entry(p)[0] for p in split_top_level(params)]
    return cs_type(ret.strip()), entries


def parse_csharp(path):
    text = strip_cs_comments(Path(path).read_text())
    cs = CSharp({}, {}, {}, {}, text, [])
    matched = []

    def unmatched(keyword, form):
        for found in re.finditer(rf"\b{keyword}\b", text):
            if not any(start <= found.start() < end for start, end in matched):
                line = text.count("\n", 0, found.start()) + 1
                cs.errors.append(f"C#: line {line}: a {keyword} declaration not in the form {form}")

    for match in re.finditer(
        r"\[\s*DllImport\s*\((?P<args>[^\]]*)\)\s*\]\s*public\s+static\s+extern\s+"
        r"(?P<ret>[\w.]+)\s+(?P<name>\w+)\s*\((?P<params>[^;{}]*)\)\s*;",
        text,
    ):
        matched.append(match.span())
        entry = re.search(r'EntryPoint\s*=\s*"(\w+)"', match["args"])
        name = entry[1] if entry else match["name"]
        if not re.search(r"CallingConvention\s*=\s*CallingConvention\.Cdecl", match["args"]):
            cs.errors.append(f"C#: {name}: DllImport without CallingConvention.Cdecl")
        cs.functions.setdefault(name, []).append(cs_signature(match["ret"], match["params"]))
    unmatched("extern", "[DllImport(...)] public static extern RET NAME(...);")

    for match in re.finditer(
        r"\[\s*StructLayout\s*\(\s*LayoutKind\.Sequential\s*\)\s*\]\s*public\s+struct\s+"
        r"(?P<name>\w+)\s*\{(?P<body>[^{}]*)\}",
        text,
    ):
        matched.append(match.span())
        fields = [cs_entry(f) for f in match["body"].split(";") if f.strip()]
        cs.structs[match["name"]] = fields
    unmatched("struct", "[StructLayout(LayoutKind.Sequential)] public struct NAME { ... }")

    for match in re.finditer(
        r"\[\s*UnmanagedFunctionPointer\s*\(\s*CallingConvention\.Cdecl\s*\)\s*\]\s*"
        r"public\s+delegate\s+(?P<ret>[\w.]+)\s+(?P<name>\w+)\s*\((?P<params>[^;{}]*)\)\s*;",
        text,
    ):
        matched.append(match.span())
        cs.delegates[match["name"]] = cs_signature(match["ret"], match["params"])
    unmatched("delegate", "[UnmanagedFunctionPointer(CallingConvention.Cdecl)] public delegate")

    for match in re.finditer(r"\bconst\s+([\w.]+)\s+(\w+)\s*=\s*([^;]+);", text):
        value = match[3].strip()
        if value.startswith('"'):
            value = value[1:-1]
        else:
            known = {n: v for n, (_, v) in cs.constants.items() if isinstance(v, int)}
            try:
                value = evaluate(value, known)
            except (KeyError, ValueError, SyntaxError):
                cs.errors.append(f"C#: constant {match[2]}: can't evaluate {value}")
                continue
        cs.constants[match[2]] = (cs_type(match[1]), value)
    return cs


# ---- The Python module -------------------------------------------------------------------------

CTYPES_NAMES = [
    "c_int8", "c_uint8", "c_int16", "c_uint16", "c_int32", "c_uint32", "c_int64", "c_uint64",
    "c_float", "c_double", "c_char_p", "c_void_p", "c_wchar_p", "c_bool", "c_char", "c_wchar",
    "c_longdouble",
]
# Names whose width differs between Linux, where this runs, and Windows, where the module does.
CTYPES_PLATFORM_WIDTH = {"c_long", "c_ulong", "c_wchar", "c_wchar_p"}


def py_describe(t, module):
    if t is None:
        return "None"
    for name in CTYPES_NAMES:
        if t is getattr(ctypes, name):
            return name
    if isinstance(t, type) and issubclass(t, ctypes.Array):
        return f"{py_describe(t._type_, module)}*{t._length_}"
    if isinstance(t, type) and issubclass(t, ctypes._Pointer):
        return f"POINTER({py_describe(t._type_, module)})"
    if isinstance(t, type) and issubclass(t, (ctypes.Structure, ctypes._CFuncPtr)):
        if getattr(module, t.__name__, None) is t:
            return t.__name__
        for name, value in vars(module).items():
            if value is t:
                return name
        return f"{t.__name__} (not one of the module's)"
    return repr(t)


class Recorder:
    """Stands in for the loaded DLL: records what the module sets on each function."""

    def __init__(self):
        self.functions = {}

    def __getattr__(self, name):
        if name.startswith("__"):
            raise AttributeError(name)
        return self.functions.setdefault(name, types.SimpleNamespace())


def import_module(path):
    sys.dont_write_bytecode = True
    spec = importlib.util.spec_from_file_location(Path(path).stem, path)
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


# ---- Comparison ---------------------------------------------------------------------------------


class Checker:
    def __init__(self, header, versions, major_weight, cs, module, module_path):
        self.header = header
        self.versions = versions
        self.major_weight = major_weight
        self.cs = cs
        self.py = module
        self.py_path = module_path
        self.errors = list(cs.errors)

    def fail(self, text):
        self.errors.append(text)

    def compare(self, lang, where, ct, role, actual):
        allowed = mapping(self.header, ct, role)
        if allowed is None:
            self.fail(f"{lang}: {where}: header {ct}, which the checker has no mapping for")
            return
        allowed = allowed[0] if lang == "C#" else allowed[1]
        if actual not in allowed:
            listed = ", ".join(sorted(allowed))
            self.fail(f"{lang}: {where}: header {ct}, {lang} {actual} (allowed: {listed})")

    def compare_signature(self, lang, what, header_signature, signature, callback=False):
        (ret, params), (actual_ret, actual_params) = header_signature, signature
        role = "callback " if callback else ""
        self.compare(lang, f"{what} return", ret, role + "return", actual_ret)
        if len(params) != len(actual_params):
            self.fail(
                f"{lang}: {what}: header has {len(params)} parameters, "
                f"{lang} {len(actual_params)}"
            )
            return
        for k, ((ct, name), actual) in enumerate(zip(params, actual_params), 1):
            self.compare(lang, f"{what} parameter {k} ({name})", ct, role + "param", actual)

    def compare_fields(self, lang, record, fields, actual):
        if len(fields) != len(actual):
            self.fail(f"{lang}: {record}: header has {len(fields)} fields, {lang} {len(actual)}")
        for k, ((ct, name), (actual_type, actual_name)) in enumerate(zip(fields, actual), 1):
            if actual_name != name:
                self.fail(
                    f"{lang}: {record} field {k}: header {ct} {name}, "
                    f"{lang} {actual_type} {actual_name}"
                )
            else:
                self.compare(lang, f"{record} field {k} ({name})", ct, "field", actual_type)

    def names(self, lang, kind, expected, actual):
        """Reports what is missing or extra; returns the names both have."""
        for name in sorted(set(expected) - set(actual)):
            self.fail(f"{lang}: {kind} {name}: missing")
        for name in sorted(set(actual) - set(expected)):
            self.fail(f"{lang}: {kind} {name}: not in the header")
        return sorted(set(expected) & set(actual))

    def expected_constants(self):
        return {**self.header.constants, **self.versions}

    def version_cases(self):
        """Versions around the edges, each with whether the header's rule (the same major
        version, at least OSTREL_VERSION_NUMBER) accepts it."""
        major = self.versions["OSTREL_VERSION_MAJOR"]
        number = self.versions["OSTREL_VERSION_NUMBER"]
        weight = self.major_weight
        candidates = {0, number - 1, number, number + 1, number + 1000, (major + 1) * weight,
                      (major + 1) * weight - 1, max(major - 1, 0) * weight + weight - 1}
        return [(v, v // weight == major and v >= number) for v in sorted(candidates) if v >= 0]

    def check_csharp(self):
        cs, header = self.cs, self.header
        for name in self.names("C#", "function", header.functions, cs.functions):
            overloads = cs.functions[name]
            for k, signature in enumerate(overloads, 1):
                what = f"{name} (overload {k} of {len(overloads)})" if len(overloads) > 1 else name
                self.compare_signature("C#", what, header.functions[name], signature)
        records = {type_name(r): r for r in header.records}
        for name in self.names("C#", "struct", records, cs.structs):
            c_name = records[name]
            fields = header.records[c_name]
            self.compare_fields("C#", f"{c_name} ({name})", fields, cs.structs[name])
        callbacks = {type_name(c): c for c in header.callbacks}
        for name in self.names("C#", "delegate", callbacks, cs.delegates):
            c_name = callbacks[name]
            self.compare_signature(
                "C#", f"{c_name} ({name})", header.callbacks[c_name], cs.delegates[name], True
            )
        expected = self.expected_constants()
        actual = {n: v for n, v in cs.constants.items() if n.startswith("OSTREL_")}
        for name in self.names("C#", "constant", expected, actual):
            type_text, value = actual[name]
            low, high = CS_INTEGERS.get(type_text, (1, 0))
            if value != expected[name]:
                self.fail(f"C#: constant {name}: header {expected[name]!r}, C# {value!r}")
            elif isinstance(value, int) and not low <= value <= high:
                self.fail(f"C#: constant {name}: {type_text} can't hold {value}")
        self.check_csharp_version_helpers()

    def check_csharp_version_helpers(self):
        text = self.cs.text
        helper = re.search(
            r"static\s+bool\s+VersionSupported\s*\(\s*uint\s+(\w+)\s*\)\s*"
            r"\{\s*return\s+([^;]+);\s*\}",
            text,
        )
        if not helper:
            self.fail("C#: VersionSupported: missing, or not 'bool VersionSupported(uint v) "
                      "{ return ...; }'")
        else:
            names = {n: v for n, v in self.expected_constants().items() if isinstance(v, int)}
            for version, accepted in self.version_cases():
                try:
                    answer = bool(evaluate(helper[2], {**names, helper[1]: version}))
                except (KeyError, ValueError, SyntaxError) as error:
                    self.fail(f"C#: VersionSupported: can't evaluate '{helper[2].strip()}': "
                              f"{error}")
                    break
                if answer != accepted:
                    self.fail(f"C#: VersionSupported({version}): {answer}, "
                              f"the header's rule says {accepted}")
        check = re.search(r"static\s+void\s+CheckVersion\s*\(\s*\)\s*\{(.*?)\n\s*\}", text, re.S)
        if not check or "ostrel_version()" not in check[1] or "VersionSupported(" not in check[1]:
            self.fail("C#: CheckVersion: missing, or does not test ostrel_version() with "
                      "VersionSupported")

    def check_python(self):
        py, header = self.py, self.header
        self.check_python_functions()
        for c_name, fields in header.records.items():
            name = type_name(c_name)
            record = getattr(py, name, None)
            if not (isinstance(record, type) and issubclass(record, ctypes.Structure)):
                self.fail(f"Python: record {c_name} ({name}): missing, or not a ctypes.Structure")
                continue
            actual = [(py_describe(t, py), field) for field, t, *_ in record._fields_]
            self.compare_fields("Python", f"{c_name} ({name})", fields, actual)
        for c_name, signature in header.callbacks.items():
            name = type_name(c_name)
            callback = getattr(py, name, None)
            if not (isinstance(callback, type) and issubclass(callback, ctypes._CFuncPtr)):
                self.fail(f"Python: callback {c_name} ({name}): missing, or not a CFUNCTYPE")
                continue
            actual = (
                py_describe(callback._restype_, py),
                [py_describe(t, py) for t in callback._argtypes_],
            )
            self.compare_signature("Python", f"{c_name} ({name})", signature, actual, True)
        expected = self.expected_constants()
        actual = {n: v for n, v in vars(py).items() if n.startswith("OSTREL_")}
        for name in self.names("Python", "constant", expected, actual):
            value = actual[name]
            if type(value) is not type(expected[name]) or value != expected[name]:
                self.fail(f"Python: constant {name}: header {expected[name]!r}, Python {value!r}")
        self.check_python_version_helper()
        with tokenize.open(self.py_path) as source:
            for token in tokenize.generate_tokens(source.readline):
                if token.type == tokenize.NAME and token.string in CTYPES_PLATFORM_WIDTH:
                    self.fail(f"Python: line {token.start[0]}: {token.string} has another width "
                              "on Windows than here: spell the width (c_uint32, c_uint64)")

    def check_python_functions(self):
        declare = getattr(self.py, "declare", None)
        if not callable(declare):
            self.fail("Python: no declare(lib), which sets every function's restype and argtypes")
            return
        recorder = Recorder()
        try:
            declare(recorder)
        except Exception as error:  # the module's own fault, reported as such
            self.fail(f"Python: declare(lib) failed: {type(error).__name__}: {error}")
            return
        for name in self.names("Python", "function", self.header.functions, recorder.functions):
            function = recorder.functions[name]
            if not hasattr(function, "restype") or not hasattr(function, "argtypes"):
                self.fail(f"Python: {name}: restype or argtypes not set")
                continue
            actual = (
                py_describe(function.restype, self.py),
                [py_describe(t, self.py) for t in function.argtypes],
            )
            self.compare_signature("Python", name, self.header.functions[name], actual)

    def check_python_version_helper(self):
        supported = getattr(self.py, "version_supported", None)
        if not callable(supported):
            self.fail("Python: no version_supported(version)")
            return
        for version, accepted in self.version_cases():
            try:
                answer = bool(supported(version))
            except Exception as error:  # the module's own fault, reported as such
                self.fail(f"Python: version_supported({version}) raised {error!r}")
                return
            if answer != accepted:
                self.fail(f"Python: version_supported({version}): {answer}, "
                          f"the header's rule says {accepted}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("header")
    parser.add_argument("version_header_in")
    parser.add_argument("csharp")
    parser.add_argument("python")
    parser.add_argument("--project-version")
    args = parser.parse_args()
    try:
        header = parse_header(args.header)
        version = args.project_version or project_version(args.header)
        versions, major_weight = parse_version_header(args.version_header_in, version)
    except (HeaderError, OSError, ValueError, KeyError) as error:
        print(f"check_declarations: {error}")
        return 1
    try:
        module = import_module(args.python)
    except Exception as error:  # whatever the module raises on import is the finding
        print(f"Python: {args.python} does not import: {type(error).__name__}: {error}")
        return 1
    checker = Checker(header, versions, major_weight, parse_csharp(args.csharp), module,
                      args.python)
    checker.check_csharp()
    checker.check_python()
    for line in checker.errors:
        print(line)
    if checker.errors:
        count = len(checker.errors)
        print(f"check_declarations: {count} mismatch{'es' if count > 1 else ''}")
        return 1
    print(
        f"check_declarations: {Path(args.csharp).name} and {Path(args.python).name} match "
        f"{Path(args.header).name}: {len(header.functions)} functions, "
        f"{len(header.records)} records, {len(header.callbacks)} callbacks, "
        f"{len(header.constants)} constants, {len(versions)} version constants"
    )
    return 0


if __name__ == "__main__":
    sys.exit(main())
