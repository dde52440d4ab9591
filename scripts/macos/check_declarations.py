#!/usr/bin/env python3
"""Compares the declarations in tests/macos-declarations with ones that others generated from Apple's SDK.

Fails for a class, base class, selector, property, C function, enumerator, value of an enumerator, or constant that the
SDK does not have, for another number of parameters, and for a class member that belongs to the objects, or the reverse.
Types of parameters, and the values of constants that are no enumerators there, are not compared.

usage: check_declarations.py SDK DECLARATIONS <AST
SDK is the folder with the generated declarations (*.d.ts), AST what clang prints for the headers below DECLARATIONS with
-Xclang -ast-dump=json.
"""

import json
import re
import sys
from dataclasses import dataclass, field
from pathlib import Path

FRAMEWORKS = ["AppKit", "CoreFoundation", "CoreServices", "Foundation", "IOKit", "ServiceManagement"]
# Enumerators of enumerations that C does not name, where the name does not tell which one it is.
RENAMED = {
    "kCFNumberFloat64Type": ("CFNumberType", "Float64"),
    "kCFNumberSInt64Type": ("CFNumberType", "SInt64"),
    "kCFStringEncodingUTF8": ("CFStringBuiltInEncodings", "UTF8"),
}
# In the SDK itself these are macros or inline functions, which the generated declarations leave out.
LEFT_OUT = {"CFBridgingRelease", "CFBridgingRetain", "NSMakeRect", "NSMakeSize"}


def parameter_count(text: str) -> int:
    """The number of parameters in a list, without the `this` of a constructor."""
    depth = 0
    parameters = [""]
    for character in text.replace("=>", ""):
        depth += (character in "(<[{") - (character in ")>]}")
        if character == "," and depth == 0:
            parameters.append("")
        else:
            parameters[-1] += character
    names = [each.split(":")[0].strip() for each in parameters]
    return len([name for name in names if name not in ("", "this")])


def closing(text: str) -> int:
    """Where the parenthesis closes with which the text begins."""
    depth = 0
    for position, character in enumerate(text):
        depth += (character == "(") - (character == ")")
        if depth == 0:
            return position
    raise ValueError(f"no end: {text}")


@dataclass
class Type:
    """A class or protocol of the SDK."""

    bases: list[str]
    methods: set[tuple[bool, str, int]] = field(default_factory=set)  # is of the class, name, number of parameters
    properties: dict[tuple[bool, str], bool] = field(default_factory=dict)  # is of the class, name -> can be set


class SDK:
    """The declarations that were generated from Apple's SDK."""

    def __init__(self, folder: Path) -> None:
        self.types: dict[str, Type] = {}
        self.enumerations: dict[str, dict[str, int]] = {}
        self.constants: set[str] = set()
        self.functions: dict[str, int] = {}
        for framework in [*FRAMEWORKS, "Runtime"]:
            self._read((folder / f"{framework}.d.ts").read_text())

    def _read(self, text: str) -> None:
        for name, parameters in re.findall(r"^declare function (\w+)\((.*)\): ", text, re.M):
            self.functions[name] = parameter_count(parameters)
        self.constants |= set(re.findall(r"^declare const (\w+): \S", text, re.M))
        for name, body in re.findall(r"^declare const (\w+): \{\n(.*?)^\}", text, re.M | re.S):
            self.enumerations[name] = {
                member: int(value) for member, value in re.findall(r"^  (\w+): (-?\d+),$", body, re.M)
            }
        for name, heading, body in re.findall(
            r"^declare (?:class|interface) (\w+)([^\n]*) \{\n(.*?)^\}", text, re.M | re.S
        ):
            self._read_type(name, heading, body)

    def _read_type(self, name: str, heading: str, body: str) -> None:
        bases = re.sub(r"^<.*?>(?= |$)", "", heading)
        bases = re.findall(r"\w+", re.sub(r"<[^<>]*>", "", bases))
        type_ = self.types.setdefault(name, Type([]))
        type_.bases += [base for base in bases if base not in ("extends", "implements", name)]
        for line in body.splitlines():
            match = re.match(r"  (static )?(readonly )?(\w+)\??(<.*?>)?([(:].*)$", line)
            if not match:
                continue
            of_class, member, rest = bool(match[1]), match[3], match[5]
            if rest.startswith("("):
                type_.methods.add((of_class, member, parameter_count(rest[1 : closing(rest)])))
            else:
                type_.properties[of_class, member] = not match[2]

    def family(self, name: str) -> list[Type]:
        """The type and everything that it inherits from."""
        if name not in self.types:
            return []
        type_ = self.types[name]
        return [type_] + [each for base in type_.bases if base != name for each in self.family(base)]

    def inherits(self, name: str, base: str) -> bool:
        return base in self.types[name].bases or any(
            self.inherits(each, base) for each in self.types[name].bases if each in self.types and each != name
        )


class Comparison:
    """What the declarations have and the SDK has not."""

    def __init__(self, sdk: SDK) -> None:
        self.sdk = sdk
        self.compared = 0
        self.differences: list[str] = []

    def expect(self, agrees: bool, what: str) -> None:
        self.compared += 1
        if not agrees:
            self.differences.append(what)

    def class_(self, node: dict) -> None:
        name = node["name"]
        if name not in self.sdk.types:
            self.expect(False, f"class {name}")
            return
        base = node.get("super", {}).get("name")
        self.expect(base is None or self.sdk.inherits(name, base), f"class {name}: {base} as a base class")
        self.members(node)

    def members(self, node: dict) -> None:
        for member in node.get("inner", []):
            if member.get("isImplicit"):
                continue
            if member["kind"] == "ObjCMethodDecl":
                self.method(node["name"], member)
            elif member["kind"] == "ObjCPropertyDecl":
                self.property(node["name"], member)

    def method(self, owner: str, node: dict) -> None:
        selector, of_class = node["name"], not node["instance"]
        parts = selector.split(":")
        name = parts[0] + "".join(part[:1].upper() + part[1:] for part in parts[1:])
        wanted = (of_class, name, selector.count(":"))
        family = self.sdk.family(owner)
        # A getter that is declared as a method.
        is_getter = ":" not in selector and any((of_class, name) in type_.properties for type_ in family)
        sign = "+" if of_class else "-"
        self.expect(is_getter or any(wanted in type_.methods for type_ in family), f"{sign}[{owner} {selector}]")

    def property(self, owner: str, node: dict) -> None:
        key = (bool(node.get("class")), node["name"])
        found = [type_.properties[key] for type_ in self.sdk.family(owner) if key in type_.properties]
        self.expect(bool(found), f"property {owner}.{node['name']}")
        if found and not node.get("readonly"):
            self.expect(any(found), f"a setter of {owner}.{node['name']}")

    def function(self, node: dict) -> None:
        name = node["name"]
        if name in LEFT_OUT:
            return
        count = len([each for each in node.get("inner", []) if each["kind"] == "ParmVarDecl"])
        self.expect(self.sdk.functions.get(name) == count, f"function {name} with {count} parameters")

    def constant(self, node: dict) -> None:
        self.expect(node["name"] in self.sdk.constants, f"constant {node['name']}")

    def enumerators(self, node: dict) -> None:
        value = -1
        for member in node.get("inner", []):
            if member["kind"] != "EnumConstantDecl":
                continue
            value = explicit_value(member, value + 1)
            self.enumerator(node.get("name"), member["name"], value)

    def enumerator(self, enumeration: str | None, name: str, value: int) -> None:
        values = self.values(enumeration, name)
        if values:
            self.expect(value in values, f"{name} = {value}, but {values[0]}")
        else:
            self.expect(enumeration is None and name in self.sdk.constants, f"enumerator {name}")

    def values(self, enumeration: str | None, name: str) -> list[int]:
        """The values of the enumerator in the SDK, which does not repeat what all names of an enumeration begin with."""
        if name in RENAMED:
            enumeration, member = RENAMED[name]
            return [self.sdk.enumerations[enumeration][member]]
        if enumeration is None:
            return [
                value
                for owner, members in self.sdk.enumerations.items()
                for member, value in members.items()
                if owner.removesuffix("s") + member == name or owner + member == name
            ]
        members = self.sdk.enumerations.get(enumeration, {})
        candidates = [member for member in members if name.endswith(member)]
        return [members[max(candidates, key=len)]] if candidates else []


def explicit_value(node: dict, otherwise: int) -> int:
    """The value that clang has computed for an enumerator."""
    for inner in node.get("inner", []):
        if inner["kind"] == "ConstantExpr":
            return int(inner["value"])
        if (value := explicit_value(inner, None)) is not None:
            return value
    return otherwise


def declarations_in(ast: dict, folder: str):
    """The top-level declarations in files of the folder. Clang names a file only where it differs from the last one."""
    file = ""

    def visit(node) -> None:
        nonlocal file
        if isinstance(node, dict):
            if "file" in node and "offset" in node:
                file = node["file"]
            for each in node.values():
                visit(each)
        elif isinstance(node, list):
            for each in node:
                visit(each)

    def flattened(nodes):
        for node in nodes:
            visit(node.get("loc"))
            yield node, file
            visit({key: value for key, value in node.items() if key not in ("loc", "inner")})
            if node["kind"] == "LinkageSpecDecl":
                yield from flattened(node.get("inner", []))
            else:
                visit(node.get("inner"))

    return [node for node, where in flattened(ast["inner"]) if folder in where]


def main() -> int:
    comparison = Comparison(SDK(Path(sys.argv[1])))
    handlers = {
        "ObjCInterfaceDecl": comparison.class_,
        "FunctionDecl": comparison.function,
        "VarDecl": comparison.constant,
        "EnumDecl": comparison.enumerators,
    }
    for node in declarations_in(json.load(sys.stdin), sys.argv[2]):
        if node["kind"] in handlers:
            handlers[node["kind"]](node)
        elif node["kind"] == "ObjCProtocolDecl":
            comparison.members(node)
    for difference in comparison.differences:
        print(f"Not in the SDK: {difference}", file=sys.stderr)
    if comparison.compared == 0:
        print("Nothing was compared.", file=sys.stderr)
    print(f"{comparison.compared} declarations compared with the SDK's")
    return 1 if comparison.differences or comparison.compared == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
